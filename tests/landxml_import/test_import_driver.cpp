// The LandXML import driver: what the dialog is shown, nothing before the
// user's confirmation, the units, the readers' fixed order, the alignment
// loop with its builder calls, change events, recalculation and terrain link,
// and how each way out is reported.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/road.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/xml_reader.h"
#include "lx1_test_util.h"
#include "exchange/exchange.h"

namespace {

using namespace lx1test;

constexpr double kFt = 0.3048006096012;

const char* kSurface =
    "<Surfaces><Surface name=\"S1\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">0 0 0</P><P id=\"2\">0 10 0</P>"
    "<P id=\"3\">10 0 0</P></Pnts><Faces><F>1 2 3</F></Faces></Definition></Surface></Surfaces>";
const char* kPoints = "<CgPoints name=\"G\"><CgPoint name=\"P1\">5000 1000 10</CgPoint></CgPoints>";
const char* kLine = "<Line length=\"10\"><Start>0 0</Start><End>0 10</End></Line>";
// A spiral whose constant matches neither A nor A²: the question.
const char* kBadSpiral =
    "<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" constant=\"99\"><Start>0 0</Start></Spiral>";

std::string Aligns(std::initializer_list<std::pair<const char*, const char*>> list) {
    std::string out = "<Alignments>";
    for (const auto& [name, elems] : list)
        out += std::string("<Alignment name=\"") + name + "\"><CoordGeom>" + elems + "</CoordGeom></Alignment>";
    return out + "</Alignments>";
}

size_t IndexOf(const std::vector<std::string>& lines, std::string_view prefix) {
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i].rfind(prefix, 0) == 0) return i;
    return lines.size();
}

TEST(ImportDriver, DialogIsShownWhatTheFileHolds) {
    TImportRun run;
    run.ui.confirm = false;
    const std::string xml = LandXml(
        std::string("<Surfaces><Surface name=\"T\"/><Surface name=\"U\"/></Surfaces><Surfaces><Surface name=\"T\"/></Surfaces>"
                    "<Alignments><Alignment name=\"A\"><CrossSects><CrossSect><CrossSectSurf name=\"EG\"/>"
                    "<CrossSectSurf name=\"FG\"/></CrossSect><CrossSect><CrossSectSurf name=\"EG\"/><CrossSectSurf name=\"eg\"/>"
                    "</CrossSect></CrossSects></Alignment><Alignment name=\"A\"/><Alignment/></Alignments>"));
    EXPECT_EQ(run.Run(xml).code, TExchangeStatus::CANCELLED);
    EXPECT_EQ(run.status.message, "import cancelled");
    EXPECT_EQ(run.ui.surfaces, (std::vector<CString>{"T", "U", "T"}));
    EXPECT_EQ(run.ui.alignments, (std::vector<CString>{"A", "A", ""}));
    EXPECT_EQ(run.ui.crossSectSurfs, (std::vector<CString>{"EG", "FG", "eg"}));
    EXPECT_EQ(run.ui.codes, (std::vector<vesk::String>{"TER", "PRO", "STF"}));
    EXPECT_FALSE(run.ui.hasPointData);
    EXPECT_FALSE(run.ui.flagA);
    // The dialog's trace line is all there is: nothing reaches the builder.
    ASSERT_EQ(run.trace.lines.size(), 1u);
    EXPECT_EQ(run.trace.lines[0],
              "FDlgImportLandXML {\"surfaces\":[\"T\",\"U\",\"T\"],\"alignments\":[\"A\",\"A\",\"\"],"
              "\"hasPointData\":false,\"crossSectSurfs\":[\"EG\",\"FG\",\"eg\"],\"sectionCodes\":[\"TER\",\"PRO\",\"STF\"]}");
    EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 0u);
}

TEST(ImportDriver, DialogFlagsArePassedUnchanged) {
    CTempFile f(LandXml(""));
    CScriptedUi ui;
    ui.confirm = false;
    CHostUiScope scope(&ui);
    CVantriDoc doc;
    ImportLandXML(&doc, f.path().c_str(), true, false);
    EXPECT_TRUE(ui.flagA);
    EXPECT_FALSE(ui.flagB);
    ImportLandXML(&doc, f.path().c_str(), false, true);
    EXPECT_FALSE(ui.flagA);
    EXPECT_TRUE(ui.flagB);
}

TEST(ImportDriver, PointDataFromCgPointsOrASurveySetup) {
    auto has = [](const std::string& body) {
        TImportRun run;
        run.ui.confirm = false;
        run.Run(LandXml(body));
        return run.ui.hasPointData;
    };
    EXPECT_TRUE(has("<Survey><GPSSetup id=\"1\"/></Survey>"));
    EXPECT_TRUE(has("<Survey/><Survey><InstrumentSetup/></Survey>"));
    EXPECT_TRUE(has("<CgPoints/>"));
    EXPECT_FALSE(has("<Survey><CgPoints/></Survey>"));
    EXPECT_FALSE(has("<Alignments/>"));
}

TEST(ImportDriver, ReadersRunInTheirFixedOrder) {
    TImportRun run;
    const std::string xml = LandXml(Aligns({{"A", kLine}}) + kSurface + kPoints +
                                    "<Survey desc=\"job\"><SurveyHeader name=\"h\"/><InstrumentSetup stationName=\"s\"/>"
                                    "<GPSSetup id=\"g\" stationName=\"b\"/></Survey>");
    ASSERT_TRUE(run.Run(xml).ok()) << run.status.message;
    const auto lines = run.Lines();
    const size_t job = IndexOf(lines, "AddJob"), gps = IndexOf(lines, "AddGrpGps"), pnt = IndexOf(lines, "AddGrpPnt"),
                 dtm = IndexOf(lines, "AddDtmPrj"), road = IndexOf(lines, "AddRoad ");
    EXPECT_LT(IndexOf(lines, "FDlgImportLandXML"), job);
    EXPECT_LT(job, gps);
    EXPECT_LT(gps, pnt);
    EXPECT_LT(pnt, dtm);
    EXPECT_LT(dtm, road);
    EXPECT_LT(road, lines.size());
}

TEST(ImportDriver, PointsAndSurveysOnlyWhenChosen) {
    TImportRun run;
    run.ui.choosePoints = false;
    ASSERT_TRUE(run.Run(LandXml(std::string(kPoints) + "<Survey desc=\"j\"><InstrumentSetup/></Survey>")).ok());
    EXPECT_TRUE(run.Lines({"AddGrpPnt", "AddPunPnt", "AddJob", "AddSta"}).empty());
}

TEST(ImportDriver, OneRoadWithItsCallsInOrder) {
    TImportRun run;
    const std::string xml = LandXml(
        "<Alignments><Alignment name=\"A\" staStart=\"12.5\"><CoordGeom>" + std::string(kLine) +
        "</CoordGeom><Profile><ProfAlign><PVI>0 100</PVI><PVI>10 101</PVI></ProfAlign></Profile></Alignment></Alignments>");
    ASSERT_TRUE(run.Run(xml).ok());
    EXPECT_EQ(run.Lines({"AddRoad", "StartRoadPlani", "EndRoadPlani", "AddRoadRect", "StartRoadAlti", "EndRoadAlti",
                         "AddRoadPrj", "AddRoadProfAltiPrincVrt", "RemoveRoad"}),
              Expect({L("AddRoad").S("A").D(12.5).B(false), L("StartRoadPlani"),
                      L("AddRoadRect").D(0).P({0, 0}).V({1, 0}).D(10), L("EndRoadPlani"), L("StartRoadAlti"),
                      L("AddRoadPrj"), L("AddRoadProfAltiPrincVrt").D(0).D(100),
                      L("AddRoadProfAltiPrincVrt").D(10).D(101), L("EndRoadAlti")}));
    // One recalculation, inside the first change event; recalculation stays
    // blocked after the second.
    CRoad* road = run.doc.GetLibRoad()->GetRoad(0);
    EXPECT_EQ(road->GetRecalcCount(), 1);
    EXPECT_TRUE(road->GetOpzRoadRecalc()->IsBlockRecalc());
    EXPECT_EQ(run.doc.GetLibRoad()->GetContext()->GetBatchCount(), 2);
    EXPECT_EQ(run.doc.GetLibRoad()->GetContext()->GetDepth(), 0);
}

TEST(ImportDriver, OnlyChosenAlignmentsAndSameNamesBoth) {
    TImportRun run;
    run.ui.chooseAll = false;
    run.ui.choice.alignments = {"B"};
    ASSERT_TRUE(run.Run(LandXml(Aligns({{"A", kLine}, {"B", kLine}, {"b", kLine}, {"B", kLine}}))).ok());
    EXPECT_EQ(run.Lines({"AddRoad"}), Expect({L("AddRoad").S("B").D(0).B(false), L("AddRoad").S("B").D(0).B(false)}));
}

TEST(ImportDriver, ImperialStartChainage) {
    TImportRun run;
    ASSERT_TRUE(run.Run(LandXml("<Alignments><Alignment name=\"A\" staStart=\"100\"/></Alignments>",
                                "<Units><Imperial/></Units>"))
                    .ok());
    EXPECT_EQ(run.Lines({"AddRoad"}), Expect({L("AddRoad").S("A").D(30.48006096012).B(false)}));
}

TEST(ImportDriver, MissingStaStartIsZero) {
    TImportRun run;
    ASSERT_TRUE(run.Run(LandXml("<Alignments><Alignment name=\"A\"/></Alignments>", "")).ok());
    EXPECT_EQ(run.Lines({"AddRoad"}), Expect({L("AddRoad").S("A").D(0).B(false)}));
}

TEST(ImportUnits, MetricImperialAndAngleCodes) {
    auto units = [](const std::string& u) {
        CXmlReader r;
        EXPECT_TRUE(r.LoadFromText(LandXml("", u)));
        return ReadUnits(r.Root());
    };
    TLandXmlUnits x = units("<Units><Imperial angularUnit=\"decimal degrees\"/></Units>");
    EXPECT_FALSE(x.isMetric);
    EXPECT_EQ(x.angularUnit, 3u);
    EXPECT_EQ(x.directionUnit, 0u);
    x = units("<Units><Imperial angularUnit=\"Decimal Degrees\" directionUnit=\"Radians\"/></Units>");
    EXPECT_EQ(x.angularUnit, 0u);
    EXPECT_EQ(x.directionUnit, 0u);
    x = units("<Units><Metric directionUnit=\"grads\" angularUnit=\"radians\"/></Units>");
    EXPECT_TRUE(x.isMetric);
    EXPECT_EQ(x.directionUnit, 2u);
    EXPECT_EQ(x.angularUnit, 1u);
    // Imperial read after Metric within one Units; its codes replace all.
    x = units("<Units><Imperial/><Metric directionUnit=\"grads\"/></Units>");
    EXPECT_FALSE(x.isMetric);
    EXPECT_EQ(x.directionUnit, 0u);
    // Across Units elements the last counts.
    x = units("<Units><Imperial directionUnit=\"radians\"/></Units><Units><Metric angularUnit=\"grads\"/></Units>");
    EXPECT_TRUE(x.isMetric);
    EXPECT_EQ(x.directionUnit, 0u);
    EXPECT_EQ(x.angularUnit, 2u);
    x = units("");
    EXPECT_TRUE(x.isMetric);
    EXPECT_EQ(x.directionUnit, 0u);
    EXPECT_EQ(x.angularUnit, 0u);
    x = units("<Units><Metric directionUnit=\"decimal dd.mm.ss\"/></Units>");
    EXPECT_EQ(x.directionUnit, 0u);
}

TEST(ImportUnits, ImperialWithDecimalDegreesReachesTheCurve) {
    // angularUnit 3 converts delta as degrees; spelt with capitals it is
    // ignored and the sweep comes from length / radius.
    const char* curve = "<Curve delta=\"30\" length=\"100\" radius=\"200\"><Start>0 0</Start></Curve>";
    TImportRun a, b;
    ASSERT_TRUE(a.Run(LandXml(Aligns({{"A", curve}}), "<Units><Imperial angularUnit=\"decimal degrees\"/></Units>")).ok());
    ASSERT_TRUE(b.Run(LandXml(Aligns({{"A", curve}}), "<Units><Imperial angularUnit=\"Decimal degrees\"/></Units>")).ok());
    const VECTOR_2D undef(1.7e200, 1.7e200);
    EXPECT_EQ(a.PlanLines(),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V(undef).D(200 * kFt).D(30 * 0.01745329251994).B(true)}));
    EXPECT_EQ(b.PlanLines(),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V(undef).D(200 * kFt).D((100 * kFt) / (200 * kFt)).B(true)}));
}

TEST(ImportDriver, TerrainSurfaceLinksEveryRoad) {
    for (const char* terrain : {"S1", "nope", ""}) {
        TImportRun run;
        run.ui.terrain = terrain;
        ASSERT_TRUE(run.Run(LandXml(std::string(kSurface) + Aligns({{"A", kLine}, {"B", kLine}}))).ok());
        ASSERT_EQ(run.doc.GetLibDtm()->GetNoPrj(), 1u);
        CDtmPrj* expected = std::string(terrain) == "S1" ? run.doc.GetLibDtm()->GetPrj(0) : nullptr;
        for (unsigned r = 0; r < 2; ++r)
            EXPECT_EQ(run.doc.GetLibRoad()->GetRoad(r)->GetRoadProfile()->GetTerrAlti()->GetDtmPrj(), expected)
                << terrain;
    }
}

TEST(ImportDriver, RefusedPlanRemovesThatRoadAndStopsTheLoop) {
    TImportRun run;
    run.ui.answers = {false};
    const std::string xml = LandXml(Aligns({{"A", kLine}, {"B", (std::string(kLine) + kBadSpiral).c_str()}, {"C", kLine}}));
    EXPECT_EQ(run.Run(xml).code, TExchangeStatus::ENDED_EARLY);
    EXPECT_EQ(run.status.message,
              "alignment \"B\": plan geometry refused (spiral constant question answered no)");
    EXPECT_EQ(run.Lines({"AddRoad", "EndRoadPlani", "RemoveRoad", "Question", "StartRoadAlti"}),
              Expect({L("AddRoad").S("A").D(0).B(false), L("EndRoadPlani"), L("StartRoadAlti"),
                      L("AddRoad").S("B").D(0).B(false),
                      L("Question").S("Planimetria.").S("Non è stato possibile trovare un valore valido per una "
                                                        "clotoide. Il risultato finale potrebbe non coincidere con "
                                                        "quello voluto. Procedere ugualmente?").B(false),
                      L("EndRoadPlani"), L("RemoveRoad")}));
    ASSERT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 1u);
    EXPECT_EQ(run.doc.GetLibRoad()->GetRoad(0)->GetName(), "A");
}

TEST(ImportDriver, RefusedFirstAlignmentKeepsSurfacesAndPoints) {
    TImportRun run;
    run.ui.answers = {false};
    const std::string xml = LandXml(std::string(kSurface) + kPoints + Aligns({{"A", kBadSpiral}, {"B", kLine}}));
    EXPECT_EQ(run.Run(xml).code, TExchangeStatus::ENDED_EARLY);
    EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 0u);
    EXPECT_EQ(run.doc.GetLibDtm()->GetNoPrj(), 1u);
    EXPECT_EQ(run.doc.GetLibPnt()->GetGrpArSize(), 1);
    EXPECT_EQ(run.Lines({"AddRoad"}).size(), 1u);
}

TEST(ImportDriver, AnsweringYesGoesOn) {
    TImportRun run;
    ASSERT_TRUE(run.Run(LandXml(Aligns({{"A", kBadSpiral}, {"B", kLine}}))).ok());
    EXPECT_EQ(run.ui.questions.size(), 1u);
    EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 2u);
}

TEST(ImportDriver, ShortPointTextEndsTheImportKeepingWhatWasAdded) {
    TImportRun run;
    const std::string xml = LandXml(std::string(kSurface) +
                                    Aligns({{"A", kLine},
                                            {"B", "<Line length=\"5\"><Start>0 0</Start></Line><Line length=\"5\"><Start>5000</Start></Line>"},
                                            {"C", kLine}}));
    EXPECT_EQ(run.Run(xml).code, TExchangeStatus::ENDED_EARLY);
    EXPECT_EQ(run.status.message, "alignment \"B\": Line Start \"5000\": 1 number where 2 are needed");
    // A and the first element of B stay; C is not imported.
    ASSERT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 2u);
    EXPECT_EQ(run.doc.GetLibRoad()->GetRoad(1)->GetNumRoadPlaniElems(), 1);
    EXPECT_EQ(run.doc.GetLibDtm()->GetNoPrj(), 1u);
    EXPECT_EQ(run.Lines({"AddRoad"}).size(), 2u);
    EXPECT_TRUE(run.Lines({"RemoveRoad"}).empty());
}

TEST(ImportDriver, EmptyPointElementEndsTheImport) {
    TImportRun run;
    EXPECT_EQ(run.Run(LandXml(Aligns({{"A", "<Curve radius=\"10\" length=\"5\"><Start/></Curve>"}}))).code,
              TExchangeStatus::ENDED_EARLY);
    EXPECT_EQ(run.status.message, "alignment \"A\": Curve Start \"\": 0 numbers where 2 are needed");
}

TEST(ImportDriver, AbsurdNumbersDoNotHang) {
    TImportRun run;
    const std::string xml = LandXml(
        Aligns({{"A", "<Line length=\"1e999\" dir=\"1e999\"><Start>1e999 -1e999</Start></Line>"
                      "<Curve delta=\"1e300\" radius=\"1e-300\" length=\"1e308\" dirStart=\"-1e999\"><Start>0 0</Start></Curve>"
                      "<Curve radius=\"0\" length=\"5\"><Start>0 0</Start></Curve>"
                      "<Spiral length=\"1e999\" radiusStart=\"nan\" radiusEnd=\"-1e999\" constant=\"1e999\"><Start>0 0</Start></Spiral>"
                      "<Spiral length=\"-5\" radiusStart=\"0\" radiusEnd=\"0\"><Start>0 0</Start></Spiral>"}}),
        "<Units><Metric directionUnit=\"radians\" angularUnit=\"grads\"/></Units>");
    EXPECT_TRUE(run.Run(xml).ok()) << run.status.message;
    EXPECT_EQ(run.PlanLines().size(), 5u);
}

TEST(ImportDriver, BadFilesAreReportedAndTouchNothing) {
    TImportRun malformed;
    EXPECT_EQ(malformed.Run("<LandXML>\n<Alignments>\n</LandXML>").code, TExchangeStatus::BAD_INPUT);
    EXPECT_EQ(malformed.status.message, "malformed XML at line 3: end tag does not match its start tag");
    EXPECT_EQ(malformed.ui.dialogs, 0);
    EXPECT_TRUE(malformed.trace.lines.empty());

    TImportRun noRoot;
    EXPECT_EQ(noRoot.Run("<?xml version=\"1.0\"?><Other/>").code, TExchangeStatus::BAD_INPUT);
    EXPECT_EQ(noRoot.status.message, "no LandXML root element (found 'Other')");
    EXPECT_EQ(noRoot.ui.dialogs, 0);

    TImportRun missing;
    EXPECT_EQ(missing.RunFile("/nonexistent/roadx/x.xml").code, TExchangeStatus::OPEN_FAILED);
    EXPECT_EQ(missing.status.message, "cannot open the file");
    EXPECT_TRUE(missing.trace.lines.empty());
}

}  // namespace
