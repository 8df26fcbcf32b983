// Alignments: directions, the element kinds, the profile and the cross
// sections, each edge case on a small road of its own.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "host/load_vantri_dati.h"
#include "landxml_export/landxml_writers.h"
#include "lxe_documents.h"
#include "lxe_test_util.h"

namespace {

using lxetest::Between;
using lxetest::Count;
using lxetest::HasLine;
using vesk::kUndefined;

std::string ExportRoads(CVantriDoc& doc) {
    return lxetest::ExportSelection(doc, [&doc](TExportLandXMLResult& r) {
        for (unsigned i = 0; i < doc.GetLibRoad()->GetNumRoads(); ++i) r.roads.push_back(doc.GetLibRoad()->GetRoad(i));
    });
}

std::string F6(double v) {
    char buf[400];
    std::snprintf(buf, sizeof buf, "%f", v);
    return buf;
}

TEST(ExportAlignment, DirectionsAreDegreesCounterClockwiseFromEastNever360) {
    EXPECT_EQ(F6(CalcDirDeg({0.0, -1.0})), "270.000000");
    EXPECT_EQ(F6(CalcDirDeg({1.0, 0.0})), "0.000000");
    EXPECT_EQ(F6(CalcDirDeg({1.0, -0.0})), "0.000000");
    EXPECT_EQ(CalcDirDeg({1.0, -1e-300}), 0.0);  // 360 after the wrap, so back to 0
    EXPECT_EQ(F6(CalcDirDeg({0.0, 1.0})), "90.000000");
    EXPECT_EQ(F6(CalcDirDeg({-1.0, 0.0})), "180.000000");
    EXPECT_EQ(F6(CalcDirDeg({-1.0, -1.0})), "225.000000");
    EXPECT_EQ(F6(CalcDirDeg({0.6, 0.8})), "53.130102");
}

TEST(ExportAlignment, StraightCurveStraightWritesLineCurveLine) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(0.0, {0.0, 0.0}, {1.0, 0.0}, 100.0);
        b.AddRoadArc(100.0, {100.0, 0.0}, {1.0, 0.0}, 200.0, 0.5, true);
        b.AddRoadRect(200.0, {195.885108, 47.942554}, {0.877583, 0.479426}, 10.0);
        b.EndRoadPlani();
    }
    const std::string geom = Between(ExportRoads(doc), "<CoordGeom", "</CoordGeom>");
    const size_t line1 = geom.find("<Line "), curve = geom.find("<Curve "), line2 = geom.rfind("<Line ");
    ASSERT_NE(curve, std::string::npos);
    EXPECT_LT(line1, curve);
    EXPECT_LT(curve, line2);
    EXPECT_EQ(Count(geom, "<Line "), 2u);
    EXPECT_EQ(Count(geom, "<Curve "), 1u);
}

TEST(ExportAlignment, ContinuityClothoidBetweenTwoArcsIsLeftOut) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        b.AddRoadArc(0.0, {0.0, 0.0}, {1.0, 0.0}, 300.0, 0.1, false);
        b.AddRoadClotCont(30.0, {29.950025, -1.499250}, {0.995004, -0.099833}, 1.0, 150.0, 300.0, 150.0, false);
        b.AddRoadArc(105.0, {100.0, -10.0}, {0.9, -0.43589}, 150.0, 0.1, false);
        b.EndRoadPlani();
    }
    const std::string geom = Between(ExportRoads(doc), "<CoordGeom", "</CoordGeom>");
    EXPECT_EQ(Count(geom, "<Curve "), 2u);
    EXPECT_EQ(geom.find("<Spiral"), std::string::npos);
    EXPECT_NE(geom.find("staStart=\"0.000000\">"), std::string::npos);
    EXPECT_NE(geom.find("staStart=\"105.000000\">"), std::string::npos);
    EXPECT_EQ(geom.find("staStart=\"30.000000\">"), std::string::npos);
}

TEST(ExportAlignment, ClothoidsHaveInfOnTheStraightSideAndMinusASquared) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        b.AddRoadClot(0.0, {0.0, 0.0}, {1.0, 0.0}, 1.0, 100.0, 250.0, true, true);     // entrance
        b.AddRoadClot(40.0, {50.0, 50.0}, {0.0, 1.0}, 1.0, 100.0, 500.0, false, false);  // exit
        b.EndRoadPlani();
    }
    const std::string text = ExportRoads(doc);
    EXPECT_NE(text.find("\t\t\t\t<Spiral length=\"40.000000\" radiusEnd=\"250.000000\" radiusStart=\"INF\" rot=\"ccw\" "
                        "spiType=\"clothoid\" constant=\"-10000.000000\" dirEnd=\"4.583662\" dirStart=\"0.000000\" "
                        "staStart=\"0.000000\">\n\t\t\t\t\t<Start>0.000000 0.000000</Start>\n\t\t\t\t\t<PI>"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\t\t\t\t<Spiral length=\"20.000000\" radiusEnd=\"INF\" radiusStart=\"500.000000\" rot=\"cw\" "
                        "spiType=\"clothoid\" constant=\"-10000.000000\" dirEnd=\"88.854084\" dirStart=\"90.000000\" "
                        "staStart=\"40.000000\">\n\t\t\t\t\t<Start>50.000000 50.000000</Start>\n\t\t\t\t\t<PI>"),
              std::string::npos)
        << text;
}

TEST(ExportAlignment, CurveChildrenAreStartCenterEndPi) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        // A quarter circle turning right from north: centre 100 m east.
        b.AddRoadArc(0.0, {0.0, 0.0}, {0.0, 1.0}, 100.0, M_PI / 2, false);
        b.EndRoadPlani();
    }
    const std::string curve = Between(ExportRoads(doc), "\t\t\t\t<Curve ", "</Curve>\n");
    // The start tangent is vertical: the slope form divides by zero and its
    // result is written as it comes (x86-64 gives the negative default NaN).
    EXPECT_EQ(curve,
              "\t\t\t\t<Curve rot=\"cw\" delta=\"1.570796\" dirEnd=\"0.000000\" dirStart=\"90.000000\" "
              "length=\"157.079633\" radius=\"100.000000\" staStart=\"0.000000\">\n"
              "\t\t\t\t\t<Start>0.000000 0.000000</Start>\n"
              "\t\t\t\t\t<Center>0.000000 100.000000</Center>\n"
              "\t\t\t\t\t<End>100.000000 100.000000</End>\n"
              "\t\t\t\t\t<PI>-nan -nan</PI>\n"
              "\t\t\t\t</Curve>\n");
}

TEST(ExportAlignment, EmptyRoadWritesItsStartButNoCoordGeom) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("E", 12.5, false);
    }
    const std::string text = ExportRoads(doc);
    EXPECT_NE(text.find("\t\t<Alignment name=\"E\" length=\"0.000000\" staStart=\"12.500000\" state=\"existing\">\n"
                        "\t\t\t<Start name=\"Start_E\" state=\"existing\">0.000000 0.000000 0.000000</Start>\n"
                        "\t\t</Alignment>\n"),
              std::string::npos)
        << text;
}

TEST(ExportAlignment, WithoutDesignLineTheStartIsAtZeroAndNoProfileIsWritten) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 10.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(10.0, {3.0, 4.0}, {1.0, 0.0}, 5.0);
        b.EndRoadPlani();
        b.AddRoad("B", 10.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(10.0, {3.0, 4.0}, {1.0, 0.0}, 5.0);
        b.EndRoadPlani();
        b.StartRoadAlti();
        b.AddRoadPrj();  // a design line without vertices
        b.EndRoadAlti();
    }
    const std::string text = ExportRoads(doc);
    EXPECT_TRUE(HasLine(text, "\t\t<Alignment name=\"A\" length=\"5.000000\" staStart=\"10.000000\" state=\"existing\">"));
    EXPECT_TRUE(HasLine(text, "\t\t\t<Start name=\"Start_A\" state=\"existing\">4.000000 3.000000 0.000000</Start>"))
        << text;
    // An empty design line is no profile, but it is asked for the elevation.
    EXPECT_TRUE(HasLine(text, "\t\t\t<Start name=\"Start_B\" state=\"existing\">4.000000 3.000000 " +
                                  F6(kUndefined) + "</Start>"));
    EXPECT_EQ(text.find("<Profile>"), std::string::npos);
}

TEST(ExportAlignment, StartElevationIsTakenWhereverTheDesignLineIs) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(0.0, {0.0, 0.0}, {1.0, 0.0}, 100.0);
        b.EndRoadPlani();
        b.StartRoadAlti();
        b.AddRoadPrj();
        b.AddRoadProfAltiPrincVrt(10.0, 50.0);  // starts after the road
        b.AddRoadProfAltiPrincVrt(90.0, 60.0);
        b.EndRoadAlti();
        b.AddRoad("B", 30.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(30.0, {0.0, 0.0}, {1.0, 0.0}, 40.0);
        b.EndRoadPlani();
        b.StartRoadAlti();
        b.AddRoadPrj();
        b.AddRoadProfAltiPrincVrt(10.0, 50.0);
        b.AddRoadProfAltiPrincVrt(90.0, 60.0);
        b.EndRoadAlti();
    }
    const std::string text = ExportRoads(doc);
    // Outside the line the host gives its undefined value, written as it is.
    EXPECT_TRUE(HasLine(text, "\t\t\t<Start name=\"Start_A\" state=\"existing\">0.000000 0.000000 " +
                                  F6(kUndefined) + "</Start>"));
    EXPECT_TRUE(HasLine(text, "\t\t\t<Start name=\"Start_B\" state=\"existing\">0.000000 0.000000 52.500000</Start>"));
}

TEST(ExportAlignment, ProfileWritesPviParaCurveAndCircCurveChainageFirst) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadAlti();
        b.AddRoadPrj();
        b.AddRoadProfAltiPrincVrt(0.0, 10.0);
        b.AddRoadProfAltiRaccVrt(100.0, 12.0, 0.0, 10.0, 200.0, 11.0, 2000.0, false);
        b.AddRoadProfAltiRaccVrt(200.0, 11.0, 100.0, 12.0, 300.0, 13.0, 1000.0, false);
        b.AddRoadProfAltiPrincVrt(300.0, 13.0);
        b.EndRoadAlti();
    }
    CProfileAlti* prj = doc.GetLibRoad()->GetRoad(0)->GetRoadProfile()->GetMainPrjAlti();
    prj->Vrts()[2].racc.kind = 0;  // any kind but 2 is circular
    const std::string text = ExportRoads(doc);
    // Grades 0.02 / -0.01 / 0.02: curve lengths 2000·0.03 and 1000·0.03.
    EXPECT_NE(text.find("\t\t\t<Profile>\n"
                        "\t\t\t\t<ProfAlign name=\"Profile_A\" state=\"existing\">\n"
                        "\t\t\t\t\t<PVI>0.000000 10.000000</PVI>\n"
                        "\t\t\t\t\t<ParaCurve length=\"60.000000\">100.000000 12.000000</ParaCurve>\n"
                        "\t\t\t\t\t<CircCurve length=\"30.000000\" radius=\"1000.000000\">200.000000 11.000000</CircCurve>\n"
                        "\t\t\t\t\t<PVI>300.000000 13.000000</PVI>\n"
                        "\t\t\t\t</ProfAlign>\n"
                        "\t\t\t</Profile>\n"),
              std::string::npos)
        << text;
    // An empty road still writes its profile, but no CoordGeom.
    EXPECT_EQ(text.find("<CoordGeom"), std::string::npos);
}

TEST(ExportAlignment, TerrainCutByAnUndefinedVertexGivesTwoTerrenoSurfaces) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    const std::string s1 = Between(ExportRoads(doc), "<CrossSect sta=\"1050.000000\" name=\"S1\">", "</CrossSect>");
    EXPECT_EQ(Count(s1, "<CrossSectSurf name=\"TERRENO\">"), 2u);
    EXPECT_NE(s1.find("<PntList2D>-10.000000 99.000000 -5.000000 99.500000 </PntList2D>"), std::string::npos);
    EXPECT_NE(s1.find("<PntList2D>0.000000 100.000000 5.000000 100.200000 10.000000 100.125000 </PntList2D>"),
              std::string::npos);
}

TEST(ExportAlignment, RunsOfOnePointAreNotWritten) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    const std::string s2 = Between(ExportRoads(doc), "<CrossSect sta=\"1150.000000\" name=\"S2\">", "</CrossSect>");
    EXPECT_EQ(s2.find("-4.000000 101.000000"), std::string::npos);  // alone before an undefined elevation
    EXPECT_EQ(s2.find("3.000000 100.000000"), std::string::npos);   // alone at the end
    EXPECT_EQ(s2.find("150.000000 "), std::string::npos);           // a vertex that is not principal
    EXPECT_NE(s2.find("<CrossSectSurf name=\"STF\">\n\t\t\t\t\t\t<PntList2D>-2.000000 101.000000 2.000000 101.000000 "
                      "</PntList2D>"),
              std::string::npos)
        << s2;
}

TEST(ExportAlignment, DesignLineUnderAnUnknownCodeHasAnEmptyName) {
    CVantriDoc doc;
    lxetest::BuildRoads(doc);
    const std::string text = ExportRoads(doc);
    EXPECT_NE(text.find("\t\t\t\t\t<CrossSectSurf name=\"\">\n"
                        "\t\t\t\t\t\t<PntList2D>-1.000000 100.000000 1.000000 100.000000 </PntList2D>\n"
                        "\t\t\t\t\t</CrossSectSurf>\n"),
              std::string::npos);
    // A known code goes out under its name, not its code.
    doc.GetLibProfile()->GetSectionCodes()[1]->name = "Progetto";
    EXPECT_NE(ExportRoads(doc).find("<CrossSectSurf name=\"Progetto\">"), std::string::npos);
}

TEST(ExportAlignment, RoadProfileWithoutSectionsWritesNoCrossSects) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddRoad("A", 0.0, false);
        b.StartRoadPlani();
        b.AddRoadRect(0.0, {0.0, 0.0}, {1.0, 0.0}, 1.0);
        b.EndRoadPlani();
    }
    EXPECT_EQ(ExportRoads(doc).find("CrossSects"), std::string::npos);
}

}  // namespace
