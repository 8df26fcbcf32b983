// The real LandXML files of tests/data/landxml (where each came from: see
// SOURCES.md there).
//
// 1. Every file imports to its end with everything chosen.
// 2. Every Line, Curve and Spiral that carries an End point is built so that
//    the element's own end lies within 1 mm of it. The end points are read
//    here straight from the file with pugixml, walking the CoordGeom children
//    in document order, independently of the importer. Where a file's
//    directions follow a convention other than the one the import reads, or
//    its own data disagree, the elements that therefore end elsewhere are
//    listed with the reason, and the reason itself is checked on the file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "host/plani_elem.h"
#include "host/road.h"
#include "lx1_test_util.h"
#include "tests/common/test_data.h"

namespace {

using namespace lx1test;

const std::string kDir = roadx::test::DataPath("landxml/");
const std::string kRoadSample = roadx::test::SourcePath("samples/road.xml");

// A test file by name, or the repository's own sample.
std::string PathOf(const std::string& file) { return file == "road.xml" ? kRoadSample : kDir + file; }

constexpr double kUsSurveyFoot = 1200.0 / 3937.0;
constexpr double kPi = std::numbers::pi;

// ---------------------------------------------------------------------------
// The files' own data, read with pugixml.

struct TFileElem {
    std::string kind;
    bool hasEnd = false;
    double x = 0.0, y = 0.0;  // End: easting, northing, metres
};

struct TFileAlignment {
    std::string name;
    std::vector<TFileElem> elems;
};

bool IsImperial(const pugi::xml_node& root) {
    bool imperial = false;
    for (pugi::xml_node u : root.children("Units")) {
        if (u.child("Metric")) imperial = false;
        if (u.child("Imperial")) imperial = true;
    }
    return imperial;
}

// Northing and easting of a point element.
bool PointOf(const pugi::xml_node& p, double& n, double& e) {
    std::istringstream is(p.child_value());
    return static_cast<bool>(is >> n >> e);
}

std::vector<TFileAlignment> ReadFileAlignments(const std::string& path) {
    pugi::xml_document doc;
    EXPECT_TRUE(doc.load_file(path.c_str()));
    const pugi::xml_node root = doc.child("LandXML");
    const double unit = IsImperial(root) ? kUsSurveyFoot : 1.0;
    std::vector<TFileAlignment> out;
    for (pugi::xml_node as : root.children("Alignments"))
        for (pugi::xml_node a : as.children("Alignment")) {
            TFileAlignment fa;
            fa.name = a.attribute("name").value();
            for (pugi::xml_node cg : a.children("CoordGeom"))
                for (pugi::xml_node e : cg.children()) {
                    const std::string kind = e.name();
                    if (kind != "Line" && kind != "Curve" && kind != "Spiral") continue;
                    TFileElem fe;
                    fe.kind = kind;
                    double n = 0, east = 0;
                    if (pugi::xml_node end = e.child("End"); end && PointOf(end, n, east)) {
                        fe.hasEnd = true;
                        fe.x = east * unit;
                        fe.y = n * unit;
                    }
                    fa.elems.push_back(fe);
                }
            out.push_back(fa);
        }
    return out;
}

// The n-th Line/Curve/Spiral (document order) of the first CoordGeom of the
// alignment named `name`.
pugi::xml_node FileElement(const pugi::xml_document& doc, const std::string& name, int index) {
    for (pugi::xml_node as : doc.child("LandXML").children("Alignments"))
        for (pugi::xml_node a : as.children("Alignment")) {
            if (name != a.attribute("name").value()) continue;
            int i = 0;
            for (pugi::xml_node e : a.child("CoordGeom").children()) {
                const std::string kind = e.name();
                if (kind != "Line" && kind != "Curve" && kind != "Spiral") continue;
                if (i++ == index) return e;
            }
        }
    return {};
}

// Direction from one point element to another, as a mathematical angle
// (counter-clockwise from east) in radians.
double MathAngle(const pugi::xml_node& from, const pugi::xml_node& to) {
    double n1 = 0, e1 = 0, n2 = 0, e2 = 0;
    EXPECT_TRUE(PointOf(from, n1, e1) && PointOf(to, n2, e2));
    return std::atan2(n2 - n1, e2 - e1);
}

// Difference of two angles, folded into [0, π].
double AngleGap(double a, double b) {
    double d = std::fmod(std::fabs(a - b), 2 * kPi);
    return d > kPi ? 2 * kPi - d : d;
}

// ---------------------------------------------------------------------------
// Importing and measuring.

std::vector<const CPlaniElem*> RoadElems(const CRoad* road) {
    std::vector<const CPlaniElem*> out;
    for (const CRoadPlaniElem* l = road->GetFirstRoadPlaniElem(); l; l = l->GetNextElem()) out.push_back(l->GetElem());
    return out;
}

// Elements expected to end elsewhere than the file says: indices first..last
// (last −1: to the end of the alignment) of one alignment.
struct TKnownOff {
    const char* alignment;
    int first;
    int last;
};

struct TEndPointCase {
    const char* file;
    std::vector<TKnownOff> off;  // empty: every end within 1 mm
};

bool IsKnownOff(const TEndPointCase& c, const std::string& alignment, int i) {
    for (const TKnownOff& k : c.off)
        if (alignment == k.alignment && i >= k.first && (k.last < 0 || i <= k.last)) return true;
    return false;
}

// Imports every alignment of a file (nothing else) and compares every stated
// End point with the end of the element built for it.
void CheckEndPoints(const TEndPointCase& c) {
    const std::string path = PathOf(c.file);
    TImportRun run;
    run.ui.chooseSurfaces = false;
    run.ui.choosePoints = false;
    run.RunFile(path);
    ASSERT_TRUE(run.status.ok()) << run.status.message;

    const std::vector<TFileAlignment> fileAligns = ReadFileAlignments(path);
    CLibRoad* lib = run.doc.GetLibRoad();
    ASSERT_EQ(lib->GetNumRoads(), fileAligns.size());
    double largest = 0.0, largestOff = 0.0;
    std::string where;
    int checked = 0;
    for (unsigned r = 0; r < lib->GetNumRoads(); ++r) {
        const TFileAlignment& fa = fileAligns[r];
        const std::vector<const CPlaniElem*> elems = RoadElems(lib->GetRoad(r));
        ASSERT_EQ(elems.size(), fa.elems.size()) << fa.name;
        for (size_t i = 0; i < elems.size(); ++i) {
            if (!fa.elems[i].hasEnd) continue;
            const PNT_2D end = elems[i]->GetEndPnt();
            const double d = std::hypot(end.x - fa.elems[i].x, end.y - fa.elems[i].y);
            ++checked;
            if (IsKnownOff(c, fa.name, static_cast<int>(i))) {
                EXPECT_GT(d, 0.001) << fa.name << " #" << i << " " << fa.elems[i].kind << " was listed as off";
                largestOff = std::max(largestOff, d);
                continue;
            }
            EXPECT_LE(d, 0.001) << fa.name << " #" << i << " " << fa.elems[i].kind;
            if (d >= largest) {
                largest = d;
                where = fa.name + " #" + std::to_string(i) + " " + fa.elems[i].kind;
            }
        }
    }
    EXPECT_GT(checked, 0);
    std::printf("[ geometry ] %s: %d end points; largest deviation %.6f mm (%s)", c.file, checked, largest * 1000.0,
                where.c_str());
    if (!c.off.empty()) std::printf("; listed elements up to %.3f mm", largestOff * 1000.0);
    std::printf("\n");
}

class EndPoints : public ::testing::TestWithParam<TEndPointCase> {};

TEST_P(EndPoints, EveryStatedEndWithinOneMillimetre) { CheckEndPoints(GetParam()); }

std::string CaseName(const ::testing::TestParamInfo<TEndPointCase>& info) {
    std::string n = info.param.file;
    return n.substr(0, n.find('.'));
}

// Files whose every stated end point is met.
INSTANTIATE_TEST_SUITE_P(Consistent, EndPoints,
                         ::testing::Values(TEndPointCase{"road.xml", {}},
                                           TEndPointCase{"aplitop_grads_spiral_chain.xml", {}},
                                           TEndPointCase{"aplitop_grads_spirals_paracurve.xml", {}},
                                           TEndPointCase{"c3d2014_imperial_crosssects_tin.xml", {}},
                                           TEndPointCase{"c3d2023_imperial_alignment_paracurve.xml", {}},
                                           TEndPointCase{"divcibare_lx10_spirals_paracurve_tin.xml", {}},
                                           TEndPointCase{"jlandxml_sample_crosssects_spirals.xml", {}},
                                           TEndPointCase{"ord_ussurveyfoot_alignment_paracurve.xml", {}}),
                         CaseName);

// Files with listed elements; each reason is checked by a test below.
INSTANTIATE_TEST_SUITE_P(
    Listed, EndPoints,
    ::testing::Values(
        // The 0.8 mm Line's dir disagrees with the following Spiral's tangent.
        TEndPointCase{"c3d2020_alignment_spirals_tr.xml", {{"K1 A Kolu", 1, 1}}},
        // No directionUnit: directions are not read.
        TEndPointCase{"carlson2014_lx11_ussft_crosssects_tin.xml",
                      {{"TROUT RUN ROAD", 0, -1}, {"MIDDLE CALMAR ROAD", 1, -1}}},
        // Grads counted counter-clockwise from north.
        TEndPointCase{"inframodel_3dwin_grads_circcurve.xml", {{"M3_RS - CL", 0, -1}}},
        // Two Lines in a row without dir: the angle point between them.
        TEndPointCase{"ldt2005_lx11_subdivision_profiles_pipes_tin.xml", {{"loop", 5, -1}}},
        // Decimal degrees given as azimuths.
        TEndPointCase{"novapoint_inframodel_circcurve_profile.xml", {{"Sammalniementie_u", 0, -1}}}),
    CaseName);

// ---------------------------------------------------------------------------
// Why the listed elements end elsewhere, checked on the files.

pugi::xml_document LoadDoc(const char* file) {
    pugi::xml_document doc;
    EXPECT_TRUE(doc.load_file((kDir + file).c_str()));
    return doc;
}

// The Line before the first Spiral is 0.8 mm long; its dir (67.2511°, from
// its own rounded end points) is 0.0156° off the Spiral's start tangent
// (Start→PI, 67.2667°). The Spiral has no dirStart, so it starts in the
// Line's direction, and 70 m on that is 24 mm.
TEST(EndPointReasons, C3d2020TinyLineDirectionDisagreesWithSpiral) {
    const pugi::xml_document doc = LoadDoc("c3d2020_alignment_spirals_tr.xml");
    const pugi::xml_node line = FileElement(doc, "K1 A Kolu", 0);
    const pugi::xml_node spiral = FileElement(doc, "K1 A Kolu", 1);
    ASSERT_STREQ(line.name(), "Line");
    ASSERT_STREQ(spiral.name(), "Spiral");
    EXPECT_FALSE(spiral.attribute("dirStart"));
    const double lineDir = line.attribute("dir").as_double() * kPi / 180.0;
    EXPECT_LT(AngleGap(lineDir, MathAngle(line.child("Start"), line.child("End"))), 1e-3);  // its own ends
    const double tangent = MathAngle(spiral.child("Start"), spiral.child("PI"));
    EXPECT_GT(AngleGap(lineDir, tangent), 0.01 * kPi / 180.0);
    EXPECT_LT(AngleGap(lineDir, tangent), 0.02 * kPi / 180.0);
}

// The file gives no directionUnit (nor angularUnit): every dir, dirStart and
// dirEnd is ignored. TROUT RUN ROAD starts with a Curve, which therefore
// starts in no defined direction; on MIDDLE CALMAR ROAD, Lines that follow a
// Line keep its direction, so the angle points between them are lost. Read
// as mathematical angles in radians, the directions do fit.
TEST(EndPointReasons, CarlsonGivesNoDirectionUnit) {
    const pugi::xml_document doc = LoadDoc("carlson2014_lx11_ussft_crosssects_tin.xml");
    const pugi::xml_node imperial = doc.child("LandXML").child("Units").child("Imperial");
    ASSERT_TRUE(imperial);
    EXPECT_FALSE(imperial.attribute("directionUnit"));
    EXPECT_FALSE(imperial.attribute("angularUnit"));
    EXPECT_STREQ(FileElement(doc, "TROUT RUN ROAD", 0).name(), "Curve");
    const pugi::xml_node l0 = FileElement(doc, "MIDDLE CALMAR ROAD", 0);
    const pugi::xml_node l1 = FileElement(doc, "MIDDLE CALMAR ROAD", 1);
    ASSERT_STREQ(l1.name(), "Line");
    for (const pugi::xml_node& l : {l0, l1})
        EXPECT_LT(AngleGap(l.attribute("dir").as_double(), MathAngle(l.child("Start"), l.child("End"))), 1e-6);
    EXPECT_GT(AngleGap(l0.attribute("dir").as_double(), l1.attribute("dir").as_double()), 1e-3);
}

// The import reads grads as azimuths, clockwise from north; this file counts
// them counter-clockwise from north (its dir is 400 minus the azimuth).
TEST(EndPointReasons, InfraModelGradsRunCounterClockwise) {
    const pugi::xml_document doc = LoadDoc("inframodel_3dwin_grads_circcurve.xml");
    const pugi::xml_node line = FileElement(doc, "M3_RS - CL", 0);
    const double azimuthGrads = (kPi / 2 - MathAngle(line.child("Start"), line.child("End"))) * 200.0 / kPi;
    EXPECT_NEAR(line.attribute("dir").as_double(), 400.0 - azimuthGrads, 1e-4);
}

// Two Lines without dir follow each other at an angle point; the second
// starts in the running direction (the first one's), so from there on the
// alignment turns away from the file's.
TEST(EndPointReasons, Ldt2005ConsecutiveLinesWithoutDirection) {
    const pugi::xml_document doc = LoadDoc("ldt2005_lx11_subdivision_profiles_pipes_tin.xml");
    const pugi::xml_node l4 = FileElement(doc, "loop", 4);
    const pugi::xml_node l5 = FileElement(doc, "loop", 5);
    ASSERT_STREQ(l4.name(), "Line");
    ASSERT_STREQ(l5.name(), "Line");
    EXPECT_FALSE(l4.attribute("dir"));
    EXPECT_FALSE(l5.attribute("dir"));
    EXPECT_GT(AngleGap(MathAngle(l4.child("Start"), l4.child("End")), MathAngle(l5.child("Start"), l5.child("End"))),
              1e-3);
}

// Decimal degrees are read as mathematical angles (as Civil 3D writes them);
// this file gives azimuths, clockwise from north.
TEST(EndPointReasons, NovapointDegreesAreAzimuths) {
    const pugi::xml_document doc = LoadDoc("novapoint_inframodel_circcurve_profile.xml");
    const pugi::xml_node line = FileElement(doc, "Sammalniementie_u", 0);
    const double azimuthDeg = (kPi / 2 - MathAngle(line.child("Start"), line.child("End"))) * 180.0 / kPi;
    EXPECT_NEAR(line.attribute("dir").as_double(), azimuthDeg, 1e-4);
}

// ---------------------------------------------------------------------------
// Every file imports to its end with everything chosen: as many roads as
// Alignment elements, as many DTM projects as Surface elements.

int CountPath(const pugi::xml_node& root, const char* outer, const char* inner) {
    int n = 0;
    for (pugi::xml_node o : root.children(outer)) n += static_cast<int>(std::distance(o.children(inner).begin(), o.children(inner).end()));
    return n;
}

class WholeFile : public ::testing::TestWithParam<const char*> {};

TEST_P(WholeFile, ImportsToItsEnd) {
    const std::string path = PathOf(GetParam());
    TImportRun run;
    run.RunFile(path);
    EXPECT_TRUE(run.status.ok()) << run.status.message;
    EXPECT_EQ(run.ui.dialogs, 1);
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_file(path.c_str()));
    const pugi::xml_node root = doc.child("LandXML");
    EXPECT_EQ(static_cast<int>(run.doc.GetLibRoad()->GetNumRoads()), CountPath(root, "Alignments", "Alignment"));
    EXPECT_EQ(static_cast<int>(run.doc.GetLibDtm()->GetNoPrj()), CountPath(root, "Surfaces", "Surface"));
    EXPECT_EQ(run.ui.alignments.size(), run.doc.GetLibRoad()->GetNumRoads());
}

INSTANTIATE_TEST_SUITE_P(
    Samples, WholeFile,
    ::testing::Values("road.xml", "aplitop_grads_spiral_chain.xml", "aplitop_grads_spirals_paracurve.xml",
                      "blender_ussurveyfoot_tin_3k_faces.xml", "c3d2007_lx11_survey_rawobs_ddmmss.xml",
                      "c3d2014_imperial_crosssects_tin.xml", "c3d2018_tin_44k_faces.xml",
                      "c3d2020_alignment_spirals_tr.xml", "c3d2020_imperial_tin_cyrillic.xml",
                      "c3d2023_imperial_alignment_paracurve.xml", "c3d2023_tin_no_namespace.xml",
                      "c3d_tin_boundaries_breaklines.xml", "carlson2014_lx11_ussft_crosssects_tin.xml",
                      "divcibare_lx10_spirals_paracurve_tin.xml", "freecad_sugargrove_pi_only_curves.xml",
                      "inframodel_3dwin_grads_circcurve.xml", "inframodel_3dwin_nested_cgpoints.xml",
                      "inframodel_3dwin_terrain_36k_faces.xml", "jlandxml_sample_crosssects_spirals.xml",
                      "ldt2005_lx11_subdivision_profiles_pipes_tin.xml", "novapoint_inframodel_circcurve_profile.xml",
                      "novapoint_inframodel_tin_latin1.xml", "ord_tin_22k_faces_breaklines.xml",
                      "ord_ussurveyfoot_alignment_paracurve.xml", "sdms_alignpis_spirals_radius0.xml",
                      "tops_survey_grads_rawobs.xml"),
    [](const auto& info) {
        std::string n = info.param;
        return n.substr(0, n.find('.'));
    });

// The repository's sample, everything chosen with its cross-section surfaces
// mapped and its surface as the roads' terrain: what each part adds.
TEST(RoadSample, EveryPartArrives) {
    TImportRun run;
    run.ui.chooseAll = false;
    run.ui.choice.alignments = {"Main Road"};
    run.ui.choice.surfaces = {"EG"};
    run.ui.choice.importPoints = true;
    run.ui.choice.terrain = "EG";
    run.ui.choice.crossSectCodes = {{"EG", "TER"}, {"FG", "PRO"}};
    ASSERT_TRUE(run.RunFile(kRoadSample).ok()) << run.status.message;
    EXPECT_EQ(run.ui.crossSectSurfs, (std::vector<CString>{"EG", "FG"}));
    EXPECT_TRUE(run.ui.hasPointData);
    EXPECT_TRUE(run.ui.questions.empty());  // every spiral constant matches

    ASSERT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 1u);
    CRoad* road = run.doc.GetLibRoad()->GetRoad(0);
    EXPECT_EQ(road->GetNumRoadPlaniElems(), 11);
    EXPECT_NEAR(road->GetEndProg(), 950.0, 1e-6);
    EXPECT_EQ(run.PlanLines().size(), 11u);
    EXPECT_EQ(run.Lines({"AddRoadClot"}).size(), 4u);
    EXPECT_EQ(run.Lines({"AddRoadClotCont"}).size(), 1u);
    EXPECT_EQ(run.Lines({"AddRoadProfAltiPrincVrt"}).size(), 2u);
    EXPECT_EQ(run.Lines({"AddRoadProfAltiRaccVrt"}).size(), 2u);
    EXPECT_EQ(road->GetNumSections(), 5);
    EXPECT_EQ(run.Lines({"AddSectionProfileAlti"}).size(), 10u);

    ASSERT_EQ(run.doc.GetLibDtm()->GetNoPrj(), 1u);
    CDtmPrj* dtm = run.doc.GetLibDtm()->GetPrj(0);
    EXPECT_EQ(road->GetRoadProfile()->GetTerrAlti()->GetDtmPrj(), dtm);
    EXPECT_EQ(dtm->GetCntsExt()->GetNoCnts(), 1);
    EXPECT_GT(dtm->GetTris()->GetNoTris(), 0);
    EXPECT_EQ(dtm->GetTris()->GetNoTris(), static_cast<int>(run.Lines({"AddTri"}).size()));
    ASSERT_EQ(run.doc.GetLibPnt()->GetGrpArSize(), 1);
    EXPECT_EQ(run.doc.GetLibPnt()->GetPtnArSize(0), 6);
}

}  // namespace
