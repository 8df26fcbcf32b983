// Surfaces through the builder's trace: selection and terrain, vertices by
// id, TIN and quadrilateral faces, boundaries and breaklines, unit
// conversion, and the number lists that end the import.
#include <array>

#include "host/dtm.h"
#include "lx2_test_util.h"

namespace {

using lx2test::L;
using lx2test::LandXml;
using lx2test::TDocFixture;

constexpr double kFt = 0.3048006096012;

struct SurfaceRun : TDocFixture {
    CDtmPrj* terrain = nullptr;

    std::vector<std::string> Run(std::string_view surfaces, std::vector<CString> selected, CString terrainName = "",
                                 bool isMetric = true) {
        const XmlSection root = Load(LandXml(surfaces));
        ClearTrace();
        ImportSurfaces(root, builder, std::move(selected), std::move(terrainName), isMetric, terrain);
        return Lines();
    }
    std::string RunEnding(std::string_view surfaces, std::vector<CString> selected) {
        try {
            Run(surfaces, std::move(selected));
        } catch (const CLandXmlImportEnded& e) {
            return e.what();
        }
        return "";
    }
};

std::string Prj(const std::string& name) { return L("AddDtmPrj").S(name).str(); }
std::string Vert(int id, double x, double y, double z) { return L("AddTriVert").I(id).D(x).D(y).D(z).str(); }
std::string Tri(int a, int b, int c) { return L("AddTri").I(a).I(b).I(c).str(); }
std::string Vnc(double x1, double y1, double z1, double x2, double y2, double z2) {
    return L("AddVnc").D(x1).D(y1).D(z1).D(x2).D(y2).D(z2).str();
}
std::string Cnt(bool outer, std::vector<std::array<double, 3>> pts) {
    CTraceLine l("AddCnt");
    l.B(outer).I(static_cast<long long>(pts.size()));
    for (const auto& p : pts) l.D(p[0]).D(p[1]).D(p[2]);
    return l.str();
}

const char* kTwoSurfaces =
    "<Surfaces><Surface name=\"S1\"><Definition surfType=\"TIN\"><Pnts><P id=\"7\">5000 1000 12</P>"
    "<P id=\"8\">5001 1000 13</P><P id=\"9\">5000 1001 14</P></Pnts><Faces><F>7 8 9</F></Faces></Definition></Surface>"
    "<Surface name=\"S2\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">1 2 3</P></Pnts></Definition></Surface>"
    "</Surfaces>";

TEST(SurfaceReader, VerticesAreEastingNorthingElevationWithTheFileIds) {
    SurfaceRun r;
    const auto lines = r.Run(kTwoSurfaces, {"S1"});
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S1"), Vert(7, 1000, 5000, 12), Vert(8, 1000, 5001, 13),
                                               Vert(9, 1001, 5000, 14), Tri(7, 8, 9)}));
    ASSERT_EQ(r.doc.GetLibDtm()->GetNoPrj(), 1u);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTriVrts(), 3);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTris(), 1);
    EXPECT_EQ(r.terrain, nullptr);
}

TEST(SurfaceReader, UnselectedSurfaceCreatesNothingEvenAsTerrain) {
    SurfaceRun r;
    const auto lines = r.Run(kTwoSurfaces, {"S2", "s1"}, "S1");
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S2"), Vert(1, 2, 1, 3)}));
    EXPECT_EQ(r.terrain, nullptr);
}

TEST(SurfaceReader, TerrainIsTheProjectOfTheLastSurfaceOfThatName) {
    SurfaceRun r;
    r.Run("<Surfaces><Surface name=\"T\"/><Surface name=\"U\"/></Surfaces><Surfaces><Surface name=\"T\"/></Surfaces>",
          {"T", "U"}, "T");
    ASSERT_EQ(r.doc.GetLibDtm()->GetNoPrj(), 3u);
    EXPECT_EQ(r.terrain, r.doc.GetLibDtm()->GetPrj(2));
}

TEST(SurfaceReader, ImperialConvertsCoordinatesButNotIds) {
    SurfaceRun r;
    const auto lines = r.Run(kTwoSurfaces, {"S2"}, "", false);
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S2"), Vert(1, 2 * kFt, 1 * kFt, 3 * kFt)}));
    SurfaceRun big;
    const auto l2 = big.Run(kTwoSurfaces, {"S1"}, "", false);
    EXPECT_EQ(l2[1], Vert(7, 1000 * kFt, 5000 * kFt, 12 * kFt));
    EXPECT_NEAR(5000 * kFt, 1524.003048006, 1e-9);
}

TEST(SurfaceReader, FacesOfOtherSurfaceTypesAreQuadrilaterals) {
    SurfaceRun r;
    const auto lines = r.Run(
        "<Surfaces><Surface name=\"Q\"><Definition><Faces><F>1 2 3 4</F><F>5 6 7 8 9</F></Faces></Definition>"
        "<Definition surfType=\"tin\"><Faces><F>11 12 13 14</F></Faces></Definition>"
        "<Definition surfType=\"TIN\"><Faces><F>21 22 23 24</F></Faces></Definition></Surface></Surfaces>",
        {"Q"});
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("Q"), Tri(1, 2, 3), Tri(1, 3, 4), Tri(5, 6, 7), Tri(5, 7, 8),
                                               Tri(11, 12, 13), Tri(11, 13, 14), Tri(21, 22, 23)}));
}

TEST(SurfaceReader, PointWithoutIdTakesThePreviousId) {
    SurfaceRun r;
    const auto lines = r.Run(
        "<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts><P>1 1 1</P><P id=\"4\">2 2 2</P>"
        "<P>3 3 3</P></Pnts></Definition></Surface></Surfaces>",
        {"S"});
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S"), Vert(0, 1, 1, 1), Vert(4, 2, 2, 2), Vert(4, 3, 3, 3)}));
}

TEST(SurfaceReader, SourceDataComesFirstOuterLinesBeforeIslands) {
    SurfaceRun r;
    const auto lines = r.Run(
        "<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">0 0 0</P></Pnts></Definition>"
        "<SourceData><Boundaries>"
        "<Boundary bndType=\"island\"><PntList3D>1 1 5 1 2 5</PntList3D></Boundary>"
        "<Boundary bndType=\"outer\"><PntList3D>0 0 1 0 10 2</PntList3D></Boundary>"
        "<Boundary bndType=\"Island\"><PntList2D>30 30 40 40</PntList2D></Boundary>"
        "<Boundary><PntList3D>0 10 9 10 10 3</PntList3D></Boundary>"
        "</Boundaries>"
        "<Breaklines><Breakline><PntList3D>1 2 3 4 5 6 7 8 9</PntList3D><PntList2D>10 20 30 40 50 60</PntList2D>"
        "</Breakline></Breaklines></SourceData></Surface></Surfaces>",
        {"S"});
    // Points are (easting, northing, elevation); 2D lists have elevation 0.
    // The fourth boundary joins the second at (10, 0) with its own z
    // dropped; the "Island" (capital I) boundary is outer.
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S"), Cnt(true, {{0, 0, 1}, {10, 0, 2}, {10, 10, 3}}),
                                               Cnt(true, {{30, 30, 0}, {40, 40, 0}}),
                                               Cnt(false, {{1, 1, 5}, {2, 1, 5}}), Vnc(2, 1, 3, 5, 4, 6),
                                               Vnc(20, 10, 0, 40, 30, 0), Vert(1, 0, 0, 0)}));
}

TEST(SurfaceReader, ThreeBoundaryPiecesChainIntoOneClosedLine) {
    SurfaceRun two;
    // Pieces A = (0,0)-(10,0) and B = (10,0)-(10,10), given as northing
    // easting pairs.
    const std::string ab = "<Boundary><PntList2D>0 0 0 10</PntList2D></Boundary>"
                           "<Boundary><PntList2D>0 10 10 10</PntList2D></Boundary>";
    EXPECT_EQ(two.Run("<Surfaces><Surface name=\"S\"><SourceData><Boundaries>" + ab +
                          "</Boundaries></SourceData></Surface></Surfaces>",
                      {"S"}),
              (std::vector<std::string>{Prj("S"), Cnt(true, {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}})}));
    SurfaceRun three;
    // C = (10,10)-(0,0) joins at the line's end and closes it.
    EXPECT_EQ(three.Run("<Surfaces><Surface name=\"S\"><SourceData><Boundaries>" + ab +
                            "<Boundary><PntList2D>10 10 0 0</PntList2D></Boundary>"
                            "</Boundaries></SourceData></Surface></Surfaces>",
                        {"S"}),
              (std::vector<std::string>{Prj("S"), Cnt(true, {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 0, 0}})}));
}

TEST(SurfaceReader, EachSourceDataChainsItsOwnPieces) {
    SurfaceRun r;
    const auto lines = r.Run(
        "<Surfaces><Surface name=\"S\"><SourceData><Boundaries><Boundary><PntList2D>0 0 0 10</PntList2D></Boundary>"
        "</Boundaries></SourceData><SourceData><Boundaries><Boundary><PntList2D>0 10 10 10</PntList2D></Boundary>"
        "</Boundaries><Boundaries><Boundary><PntList2D>10 10 10 0</PntList2D></Boundary></Boundaries></SourceData>"
        "</Surface></Surfaces>",
        {"S"});
    EXPECT_EQ(lines, (std::vector<std::string>{Prj("S"), Cnt(true, {{0, 0, 0}, {10, 0, 0}}),
                                               Cnt(true, {{10, 0, 0}, {10, 10, 0}, {0, 10, 0}})}));
}

TEST(SurfaceReader, ImperialBoundariesAndBreaklinesAreConverted) {
    SurfaceRun r;
    const auto lines = r.Run(
        "<Surfaces><Surface name=\"S\"><SourceData><Boundaries><Boundary><PntList3D>1 2 3 4 5 6</PntList3D>"
        "</Boundary></Boundaries><Breaklines><Breakline><PntList2D>1 2 3 4</PntList2D></Breakline></Breaklines>"
        "</SourceData></Surface></Surfaces>",
        {"S"}, "", false);
    EXPECT_EQ(lines, (std::vector<std::string>{
                         Prj("S"), Cnt(true, {{2 * kFt, 1 * kFt, 3 * kFt}, {5 * kFt, 4 * kFt, 6 * kFt}}),
                         Vnc(2 * kFt, 1 * kFt, 0, 4 * kFt, 3 * kFt, 0)}));
}

TEST(SurfaceReader, ShortPointEndsTheImportAfterWhatCameBefore) {
    SurfaceRun r;
    const std::string msg = r.RunEnding(
        "<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">1 2 3</P><P id=\"2\">1 2</P>"
        "<P id=\"3\">1 2 3</P></Pnts></Definition></Surface></Surfaces>",
        {"S"});
    EXPECT_EQ(msg, "surface \"S\": P \"1 2\" holds 2 numbers where 3 (northing, easting, elevation) are needed");
    EXPECT_EQ(r.Lines(), (std::vector<std::string>{Prj("S"), Vert(1, 2, 1, 3)}));
}

TEST(SurfaceReader, ShortFacesEndTheImport) {
    SurfaceRun tin;
    EXPECT_EQ(tin.RunEnding("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Faces><F>1 2</F></Faces>"
                            "</Definition></Surface></Surfaces>",
                            {"S"}),
              "surface \"S\": F \"1 2\" holds 2 numbers where 3 vertex ids are needed (TIN surface)");
    SurfaceRun quad;
    EXPECT_EQ(quad.RunEnding("<Surfaces><Surface name=\"S\"><Definition><Faces><F>1 2 3 4</F><F>1 2 3</F></Faces>"
                             "</Definition></Surface></Surfaces>",
                             {"S"}),
              "surface \"S\": F \"1 2 3\" holds 3 numbers where 4 vertex ids are needed (not a TIN surface)");
    EXPECT_EQ(quad.Lines({"AddTri"}), (std::vector<std::string>{Tri(1, 2, 3), Tri(1, 3, 4)}));
}

TEST(SurfaceReader, BadBoundaryAndBreaklineListsEndTheImport) {
    SurfaceRun b3;
    EXPECT_EQ(b3.RunEnding("<Surfaces><Surface name=\"S\"><SourceData><Boundaries><Boundary><PntList3D>1 2 3 4"
                           "</PntList3D></Boundary></Boundaries></SourceData></Surface></Surfaces>",
                           {"S"}),
              "surface \"S\": PntList3D \"1 2 3 4\" holds 4 numbers where a multiple of 3 is needed (Boundary)");
    SurfaceRun b2;
    EXPECT_EQ(b2.RunEnding("<Surfaces><Surface name=\"S\"><SourceData><Boundaries><Boundary><PntList2D>1"
                           "</PntList2D></Boundary></Boundaries></SourceData></Surface></Surfaces>",
                           {"S"}),
              "surface \"S\": PntList2D \"1\" holds 1 number where a multiple of 2 is needed (Boundary)");
    SurfaceRun k3;
    EXPECT_EQ(k3.RunEnding("<Surfaces><Surface name=\"S\"><SourceData><Breaklines><Breakline><PntList3D>1 2 3 4 5"
                           "</PntList3D></Breakline></Breaklines></SourceData></Surface></Surfaces>",
                           {"S"}),
              "surface \"S\": PntList3D \"1 2 3 4 5\" holds 5 numbers where 6 are needed (Breakline)");
    SurfaceRun k2;
    EXPECT_EQ(k2.RunEnding("<Surfaces><Surface name=\"S\"><SourceData><Breaklines><Breakline><PntList2D>1 2 3"
                           "</PntList2D></Breakline></Breaklines></SourceData></Surface></Surfaces>",
                           {"S"}),
              "surface \"S\": PntList2D \"1 2 3\" holds 3 numbers where 4 are needed (Breakline)");
}

TEST(SurfaceReader, UnknownIdsAreLeftToTheBuilder) {
    SurfaceRun r;
    r.Run("<Surfaces><Surface name=\"S\"><Definition surfType=\"TIN\"><Pnts><P id=\"1\">0 0 0</P>"
          "<P id=\"2\">0 1 0</P><P id=\"3\">1 0 0</P></Pnts><Faces><F>1 2 3</F><F>1 2 99</F></Faces></Definition>"
          "</Surface></Surfaces>",
          {"S"});
    EXPECT_EQ(r.Lines({"AddTri"}), (std::vector<std::string>{Tri(1, 2, 3), Tri(1, 2, 99)}));
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTris(), 1);
    EXPECT_EQ(r.builder.GetDroppedTris(), 1);
}

}  // namespace

TEST(SurfaceReader, EachProjectIsFilledInsideOneChangeEventOfItsOwn) {
    SurfaceRun r;
    int heard = 0;
    r.Run(kTwoSurfaces, {"S1", "S2"});
    ASSERT_EQ(r.doc.GetLibDtm()->GetNoPrj(), 2u);
    for (unsigned i = 0; i < 2; ++i) {
        CDtmPrj* p = r.doc.GetLibDtm()->GetPrj(i);
        EXPECT_EQ(p->GetBatchCount(), 1) << i;
        EXPECT_EQ(p->GetDepth(), 0) << "every event ended";
        heard += p->GetBatchCount();
    }
    EXPECT_EQ(heard, 2);
}
