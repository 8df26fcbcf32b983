// The plan in points mode: each element's start tangent and sweep from the
// file's Start, End, Center and PI. Checked through the builder calls on
// small files whose directions say one thing and whose points another, and
// on every sample of tests/data/landxml that states End points: the end of
// every imported element against the End the file states, read with pugixml
// here, and the import's own geometry check.
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include "host/plani_elem.h"
#include "host/road.h"
#include "lx1_test_util.h"
#include "tests/common/test_data.h"
#include "vesk/diagnostics.h"

namespace {

using namespace lx1test;
using roadx::landxml::EPlanGeometry;

constexpr double kPi = std::numbers::pi;
const char* kDegrees = "<Units><Metric directionUnit=\"decimal degrees\" angularUnit=\"decimal degrees\"/></Units>";

// One import in the given mode, with the trace and diagnostics recorded.
struct TModeRun : TImportRun {
    vesk::diag::CSink told;
    TExchangeStatus RunIn(const std::string& path, EPlanGeometry geometry) {
        CTraceScope traceScope(&trace);
        CHostUiScope uiScope(&ui);
        roadx::landxml::TImportOptions options;
        options.sink = &told;
        options.geometry = geometry;
        status = roadx::landxml::ImportLandXMLWith(&doc, path.c_str(), false, false, options);
        return status;
    }
    std::vector<std::string> Plan(const std::string& elements, EPlanGeometry geometry) {
        CTempFile file(LandXml(Alignment("A", elements), kDegrees));
        RunIn(file.path(), geometry);
        EXPECT_TRUE(status.ok()) << status.message;
        return PlanLines();
    }
};

// The file says east (0 degrees from east); its points say north, 100 m.
// Its stated length 90 still advances the chainage.
TEST(PlanPoints, LineRunsFromStartToEnd) {
    const std::string xml = "<Line dir=\"0\" length=\"90\"><Start>0 0</Start><End>100 0</End></Line>"
                            "<Line length=\"10\"><Start>100 0</Start></Line>";
    EXPECT_EQ(TModeRun().Plan(xml, EPlanGeometry::Points),
              Expect({L("AddRoadRect").D(0).P({0, 0}).V({0, 1}).D(100),
                      L("AddRoadRect").D(90).P({0, 100}).V({0, 1}).D(10)}));
    EXPECT_EQ(TModeRun().Plan(xml, EPlanGeometry::Attributes),
              Expect({L("AddRoadRect").D(0).P({0, 0}).V({1, 0}).D(90),
                      L("AddRoadRect").D(90).P({0, 100}).V({1, 0}).D(10)}));
}

// A right turn from (0, 0) round the centre 100 m east: heading north, a
// quarter turn to (100, 100), whatever dirStart says.
TEST(PlanPoints, CurveTangentAndSweepFromCenterStartEnd) {
    const std::string xml = "<Curve rot=\"cw\" radius=\"100\" length=\"157.07963267948966\" dirStart=\"0\">"
                            "<Start>0 0</Start><Center>0 100</Center><End>100 100</End></Curve>";
    EXPECT_EQ(TModeRun().Plan(xml, EPlanGeometry::Points),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V({0, 1}).D(100).D(kPi / 2).B(false)}));
    // A left turn round the same centre would start south and sweep three
    // quarters to the same End.
    const std::string left = "<Curve rot=\"ccw\" radius=\"100\" length=\"471.23889803846896\">"
                             "<Start>0 0</Start><Center>0 100</Center><End>100 100</End></Curve>";
    EXPECT_EQ(TModeRun().Plan(left, EPlanGeometry::Points),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V({0, -1}).D(100).D(kPi / 2 - kPi + 2 * kPi).B(true)}));
}

// End on Start: the length over the radius tells a full circle from none.
TEST(PlanPoints, CurveEndOnStartIsAFullCircleOrNone) {
    const std::string circle = "<Curve rot=\"ccw\" radius=\"100\" length=\"628.3\">"
                               "<Start>0 0</Start><Center>0 100</Center><End>0 0</End></Curve>";
    EXPECT_EQ(TModeRun().Plan(circle, EPlanGeometry::Points),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V({0, -1}).D(100).D(2 * kPi).B(true)}));
    const std::string none = "<Curve rot=\"ccw\" radius=\"100\" length=\"0.0000001\">"
                             "<Start>0 0</Start><Center>0 100</Center><End>0 0</End></Curve>";
    EXPECT_EQ(TModeRun().Plan(none, EPlanGeometry::Points),
              Expect({L("AddRoadArc").D(0).P({0, 0}).V({0, -1}).D(100).D(0).B(true)}));
}

// A Curve without its Center is placed by its attributes, as by default.
TEST(PlanPoints, ElementWithoutItsPointsKeepsTheAttributes) {
    const std::string xml = "<Curve rot=\"cw\" radius=\"100\" length=\"10\" dirStart=\"90\">"
                            "<Start>0 0</Start><End>100 100</End></Curve>";
    EXPECT_EQ(TModeRun().Plan(xml, EPlanGeometry::Points), TModeRun().Plan(xml, EPlanGeometry::Attributes));
}

// A Spiral heads for its PI; without one it goes on from the element before
// (here a Line that runs north by its points), not by its own dirStart.
TEST(PlanPoints, SpiralHeadsForItsPIElseGoesOn) {
    const double A = std::sqrt(250.0 * 60);
    const std::string toPI = "<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" dirStart=\"0\">"
                             "<Start>0 0</Start><PI>40 0</PI><End>59 3</End></Spiral>";
    EXPECT_EQ(TModeRun().Plan(toPI, EPlanGeometry::Points),
              Expect({L("AddRoadClot").D(0).P({0, 0}).V({0, 1}).D(1).D(A).D(250).B(true).B(true)}));
    const std::string onFromLine = "<Line dir=\"0\" length=\"100\"><Start>0 0</Start><End>100 0</End></Line>"
                                   "<Spiral length=\"60\" radiusStart=\"INF\" radiusEnd=\"250\" dirStart=\"0\">"
                                   "<Start>100 0</Start></Spiral>";
    const std::vector<std::string> lines = TModeRun().Plan(onFromLine, EPlanGeometry::Points);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], L("AddRoadClot").D(100).P({0, 100}).V({0, 1}).D(1).D(A).D(250).B(true).B(true).str());
}

// A file that contradicts itself still misses in points mode; the check
// names the element's own numbers. Radius 90 round a Center 100 m away: a
// quarter turn ends at (90, 90), 10·√2 = 14.142 m from the End (100, 100).
TEST(PlanPoints, CheckNamesAnElementThatContradictsItself) {
    TModeRun run;
    run.Plan("<Curve rot=\"cw\" radius=\"90\" length=\"141.37\">"
             "<Start>0 0</Start><Center>0 100</Center><End>100 100</End></Curve>",
             EPlanGeometry::Points);
    int found = 0;
    for (const vesk::diag::TRecord& r : run.told.Records()) {
        if (r.kind != "plan-end-mismatch") continue;
        ++found;
        EXPECT_EQ(r.element, "Alignments / Alignment \"A\" / CoordGeom / Curve");
        EXPECT_EQ(r.message, "the computed end lies 14.142 m from the file's End; likely cause: the file's radius "
                             "90.000 m is not the distance Start–Center 100.000 m");
    }
    EXPECT_EQ(found, 1);
}

// The samples ------------------------------------------------------------------

// The US survey foot in metres: what the import reads every Imperial
// length as.
constexpr double kUsFoot = 1200.0 / 3937.0;

struct TStatedEnd {
    std::string element;  // "Alignment / Tag N" (N counts the plan elements read)
    double x = 0, y = 0;  // easting, northing in metres
    bool hasEnd = false;
};

// Per alignment, in document order: the Line, Curve and Spiral elements of
// its CoordGeoms, with the End each states.
std::vector<std::pair<std::string, std::vector<TStatedEnd>>> StatedEnds(const std::string& path) {
    pugi::xml_document doc;
    EXPECT_TRUE(doc.load_file(path.c_str()));
    std::vector<std::pair<std::string, std::vector<TStatedEnd>>> out;
    const pugi::xml_node root = doc.document_element();
    const double scale = root.child("Units").child("Imperial") ? kUsFoot : 1.0;
    for (const pugi::xml_node alignments : root.children("Alignments"))
        for (const pugi::xml_node a : alignments.children("Alignment")) {
            std::vector<TStatedEnd> ends;
            for (const pugi::xml_node cg : a.children("CoordGeom"))
                for (const pugi::xml_node e : cg.children()) {
                    const std::string tag = e.name();
                    if (tag != "Line" && tag != "Curve" && tag != "Spiral") continue;
                    TStatedEnd s;
                    s.element = std::string(a.attribute("name").value()) + " / " + tag + " " +
                                std::to_string(ends.size() + 1);
                    if (const pugi::xml_node end = e.child("End")) {
                        double n = 0, east = 0;
                        s.hasEnd = std::sscanf(end.child_value(), "%lf %lf", &n, &east) == 2;
                        s.x = east * scale;
                        s.y = n * scale;
                    }
                    ends.push_back(s);
                }
            out.emplace_back(a.attribute("name").value(), ends);
        }
    return out;
}

std::vector<std::string> SampleFiles() {
    std::vector<std::string> files;
    for (const char* dir : {"landxml", "landxml/diag"})
        for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath(dir)))
            if (e.is_regular_file() && e.path().extension() == ".xml") files.push_back(e.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

// Where a file contradicts itself, so that no placement meets its End: the
// file, the element, and the geometry check's record that names it.
struct TContradiction {
    const char* file;
    const char* kind;
    const char* element;
    const char* message;
};

const TContradiction kContradictions[] = {
    // Line 2 starts 0.5 m from the End of Line 1; each ends on its own End.
    {"diag/geometry_check.xml", "plan-gap-in-file",
     "Alignments / Alignment \"North\" (station 0) / CoordGeom / Line 2 (station 100)",
     "the file's Start lies 0.500 m from the End of the element before it"},
};

std::string Relative(const std::string& path) { return path.substr(roadx::test::DataPath("landxml/").size()); }

// The imported end of every element that states an End, against it.
struct TEndsCompared {
    int files = 0;     // files with at least one End compared
    int elements = 0;  // Ends compared
    int off = 0;       // computed end more than 1 mm from the End
};

void CompareEnds(const std::string& path, TModeRun& run, TEndsCompared& c, bool expectOn) {
    const auto stated = StatedEnds(path);
    CLibRoad* roads = run.doc.GetLibRoad();
    bool compared = false;
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        CRoad* road = roads->GetRoad(i);
        const auto it = std::find_if(stated.begin(), stated.end(),
                                     [&](const auto& s) { return s.first == std::string(road->GetName()); });
        ASSERT_NE(it, stated.end()) << path << ": " << road->GetName();
        const std::vector<CPlaniElem*> planned = road->RetrieveLinkedPlaniElems();
        // Every sample's plan elements are all read (no spiral refused).
        ASSERT_EQ(planned.size(), it->second.size()) << Relative(path) << ": " << road->GetName();
        for (size_t k = 0; k < planned.size(); ++k) {
            const TStatedEnd& s = it->second[k];
            if (!s.hasEnd) continue;
            compared = true;
            ++c.elements;
            const PNT_2D end = planned[k]->GetEndPnt();
            const double d = std::hypot(end.x - s.x, end.y - s.y);
            c.off += d > 0.001 ? 1 : 0;
            if (expectOn) {
                EXPECT_LE(d, 0.001) << Relative(path) << ": " << s.element;
            }
        }
    }
    c.files += compared ? 1 : 0;
}

// Every element that states an End ends within 1 mm of it; the check
// reports no mismatch; the contradictions above are named, nothing else.
TEST(PlanPointsSamples, EveryElementEndsOnItsStatedEnd) {
    TEndsCompared compared;
    for (const std::string& path : SampleFiles()) {
        TModeRun run;
        run.RunIn(path, EPlanGeometry::Points);
        CompareEnds(path, run, compared, true);
        for (const vesk::diag::TRecord& r : run.told.Records()) {
            EXPECT_NE(r.kind, "plan-end-mismatch") << Relative(path) << ": " << r.element << ": " << r.message;
            if (r.kind != "plan-gap-in-file") continue;
            const auto named = std::find_if(std::begin(kContradictions), std::end(kContradictions), [&](const auto& c) {
                return Relative(path) == c.file && r.kind == c.kind;
            });
            ASSERT_NE(named, std::end(kContradictions)) << Relative(path) << ": " << r.element << ": " << r.message;
            EXPECT_EQ(r.element, named->element);
            EXPECT_EQ(r.message, named->message);
        }
    }
    // 12 samples of tests/data/landxml and 3 of its diag folder state End
    // points: 262 of them.
    EXPECT_EQ(compared.files, 15);
    EXPECT_EQ(compared.elements, 262);
    EXPECT_EQ(compared.off, 0);
}

// The same comparison in the default mode finds the ends the geometry
// check reports there: 1 + 15 + 15 + 19 + 7 elements of five samples (as
// pinned in tests/cli/test_diagnostics.cpp), 2 of diag/geometry_check.xml
// and 1 of diag/alignment_rules.xml (a Line without dir).
TEST(PlanPointsSamples, DefaultModeMissesWhereTheCheckSays) {
    TEndsCompared compared;
    for (const std::string& path : SampleFiles()) {
        TModeRun run;
        run.RunIn(path, EPlanGeometry::Attributes);
        CompareEnds(path, run, compared, false);
    }
    EXPECT_EQ(compared.elements, 262);
    EXPECT_EQ(compared.off, 1 + 15 + 15 + 19 + 7 + 2 + 1);
}

// Each contradiction is reported in the default mode too: it is the file's,
// not the mode's.
TEST(PlanPointsSamples, ContradictionsAreTheFilesOwn) {
    for (const TContradiction& c : kContradictions) {
        TModeRun run;
        run.RunIn(roadx::test::DataPath(std::string("landxml/") + c.file), EPlanGeometry::Attributes);
        int found = 0;
        for (const vesk::diag::TRecord& r : run.told.Records())
            if (r.kind == c.kind && r.element == c.element && r.message == c.message) ++found;
        EXPECT_EQ(found, 1) << c.file;
    }
}

// Bad input in points mode: every input of the LandXML fuzz corpus
// finishes, ending as it does in the default mode (points mode reads more
// of an element's points, but a point text a rule refuses is refused in the
// default mode too, by the geometry check's reading or the element's own).
TEST(PlanPointsSamples, FuzzCorpusFinishesAsInTheDefaultMode) {
    int inputs = 0;
    unsigned roads = 0;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::SourcePath("fuzz/corpus/landxml"))) {
        if (!e.is_regular_file()) continue;
        ++inputs;
        TModeRun points, attributes;
        points.RunIn(e.path().string(), EPlanGeometry::Points);
        attributes.RunIn(e.path().string(), EPlanGeometry::Attributes);
        EXPECT_EQ(points.status.code, attributes.status.code) << e.path() << ": " << points.status.message;
        roads += points.doc.GetLibRoad()->GetNumRoads();
    }
    EXPECT_GE(inputs, 100);
    EXPECT_GE(roads, 19u);  // the roads of the inputs that hold alignments
}

}  // namespace
