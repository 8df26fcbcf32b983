// Whole LandXML files through the roadx program and the import entry point.
//
// Every file of tests/data/landxml imports without error, and what
// `roadx info --json` reports (roads with their elements, main profile line
// and cross sections; surfaces with vertices, triangles and breaklines; point
// groups, GPS groups and total-station jobs) equals the counts that
// landxml_counts.py takes from the file alone with xml.etree.
//
// Every file of tests/data/landxml/rules breaks one rule that ends an import;
// the program fails with exactly that rule's message, and the import keeps
// what it had added before.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/dtm.h"
#include "host/road.h"
#include "lx1_test_util.h"

namespace {

using nlohmann::json;

const std::string kData = std::string(ROADX_TEST_DATA) + "/landxml/";

std::string ShellQuote(const std::string& s) {
    std::string out = "'";
    for (char c : s) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

struct TCommandResult {
    int exitCode = -1;
    std::string output;
};

// Runs a shell command; its standard output (and standard error when the
// command redirects it).
TCommandResult RunCommand(const std::string& command) {
    TCommandResult r;
    FILE* p = popen(("LC_ALL=C PYTHONIOENCODING=utf-8 " + command).c_str(), "r");
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) r.output.append(buf, n);
    const int status = pclose(p);
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

// The part of the program's summary that the counting script predicts.
json Comparable(const json& s) {
    json out;
    out["roads"] = json::array();
    for (const json& r : s.at("roads"))
        out["roads"].push_back({{"name", r.at("name")},
                                {"elements", r.at("elements")},
                                {"profile", r.at("profile")},
                                {"sections", r.at("sections")},
                                {"sectionPoints", r.at("sectionPoints")}});
    out["surfaces"] = json::array();
    for (const json& p : s.at("surfaces"))
        out["surfaces"].push_back({{"name", p.at("name")},
                                   {"vertices", p.at("vertices")},
                                   {"triangles", p.at("triangles")},
                                   {"breaklines", p.at("breaklines")}});
    out["pointGroups"] = s.at("pointGroups");
    out["gpsGroups"] = s.at("gpsGroups");
    out["jobs"] = s.at("jobs");
    return out;
}

std::vector<std::string> FilesIn(const std::string& dir) {
    std::vector<std::string> files;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        if (e.is_regular_file() && e.path().extension() == ".xml") files.push_back(e.path().filename().string());
    std::sort(files.begin(), files.end());
    return files;
}

std::string TestName(const std::string& file) {
    std::string n;
    for (char c : file.substr(0, file.rfind('.'))) n += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return n;
}

class LandXmlFileCounts : public ::testing::TestWithParam<std::string> {};

TEST_P(LandXmlFileCounts, InfoMatchesTheFilesOwnCounts) {
    const std::string path = kData + GetParam();
    const TCommandResult expected = RunCommand("/usr/bin/python3 " +
                                               ShellQuote(std::string(ROADX_SOURCE_DIR) +
                                                          "/tests/landxml_import/landxml_counts.py") +
                                               " " + ShellQuote(path));
    ASSERT_EQ(expected.exitCode, 0) << expected.output;
    const TCommandResult actual = RunCommand(ShellQuote(ROADX_EXE) + " info --json " + ShellQuote(path) + " 2>&1");
    ASSERT_EQ(actual.exitCode, 0) << actual.output;
    const json want = json::parse(expected.output);
    const json got = Comparable(json::parse(actual.output));
    for (const char* key : {"roads", "surfaces", "pointGroups", "gpsGroups", "jobs"})
        EXPECT_EQ(got.at(key), want.at(key)) << key << "\nprogram: " << got.at(key).dump()
                                             << "\nfile:    " << want.at(key).dump();
}

INSTANTIATE_TEST_SUITE_P(Files, LandXmlFileCounts, ::testing::ValuesIn(FilesIn(kData)),
                         [](const auto& info) { return TestName(info.param); });

// ---------------------------------------------------------------------------

struct TRuleCase {
    const char* file;
    const char* message;
};

class LandXmlRuleFiles : public ::testing::TestWithParam<TRuleCase> {};

TEST_P(LandXmlRuleFiles, ImportEndsWithTheRulesMessage) {
    const std::string path = kData + "rules/" + GetParam().file;
    const TCommandResult r = RunCommand(ShellQuote(ROADX_EXE) + " info " + ShellQuote(path) + " 2>&1");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.output, "roadx: " + path + ": " + GetParam().message + "\n");
}

const TRuleCase kRuleCases[] = {
    {"profile_curve_first.xml",
     "alignment \"Road 1\": ParaCurve \"0 100\" is the first element of its ProfAlign: a vertical curve needs a "
     "vertex before it"},
    {"profile_curve_last.xml",
     "alignment \"Road 1\": CircCurve \"500 105\" is the last element of its ProfAlign: a vertical curve needs a "
     "vertex after it"},
    {"profile_short_vertex.xml", "alignment \"Road 1\": PVI \"250\\n110\": 1 number where 2 are needed"},
    {"cross_sect_odd_count.xml",
     "alignment \"Road 1\", CrossSect \"CS200\" at sta \"200\", CrossSectSurf \"Existing\": a PntList2D of 5 "
     "numbers, where every offset needs an elevation"},
    {"surface_short_point.xml",
     "surface \"Broken\": P \"2010 1000\" holds 2 numbers where 3 (northing, easting, elevation) are needed"},
    {"surface_short_face.xml",
     "surface \"Grid\": F \"1 2 3\" holds 3 numbers where 4 vertex ids are needed (not a TIN surface)"},
    {"surface_boundary_count.xml",
     "surface \"Bounded\": PntList3D \"0 0 1 0 10 1 10\" holds 7 numbers where a multiple of 3 is needed "
     "(Boundary)"},
    {"surface_breakline_short.xml",
     "surface \"Lines\": PntList3D \"7 7 3\" holds 3 numbers where 6 are needed (Breakline)"},
};

INSTANTIATE_TEST_SUITE_P(Rules, LandXmlRuleFiles, ::testing::ValuesIn(kRuleCases),
                         [](const auto& info) { return TestName(info.param.file); });

TEST(LandXmlRuleFiles, EveryRuleFileIsListed) {
    std::vector<std::string> listed;
    for (const TRuleCase& c : kRuleCases) listed.push_back(c.file);
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(FilesIn(kData + "rules/"), listed);
}

// What an ended import keeps: everything added before the rule was met.
struct TEndedImport {
    CVantriDoc doc;
    lx1test::CScriptedUi ui;
    TExchangeStatus status;

    explicit TEndedImport(const std::string& file, bool sections = false) {
        if (sections) {
            ui.chooseAll = false;
            ui.choice.alignments = {"Road 1"};
            ui.choice.crossSectCodes = {{"Existing", "TER"}};
        }
        CHostUiScope scope(&ui);
        status = ImportLandXMLFile(&doc, (kData + "rules/" + file).c_str(), false, false);
    }
};

TEST(LandXmlRuleFiles, SurfaceRuleKeepsPointsAndEarlierSurfaces) {
    TEndedImport r("surface_short_point.xml");
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibPnt()->GetGrpArSize(), 1);
    EXPECT_EQ(r.doc.GetLibPnt()->GetPtnArSize(0), 1);
    ASSERT_EQ(r.doc.GetLibDtm()->GetNoPrj(), 2u);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(0)->GetTris()->GetNoTris(), 1);
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(1)->GetName(), "Broken");
    EXPECT_EQ(r.doc.GetLibDtm()->GetPrj(1)->GetTris()->GetNoTriVrts(), 1);
}

TEST(LandXmlRuleFiles, ProfileRuleKeepsTheRoadAndItsEarlierVertices) {
    TEndedImport r("profile_curve_last.xml");
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibRoad()->GetNumRoads(), 1u);
    CProfileAlti* prj = r.doc.GetLibRoad()->GetRoad(0)->GetRoadProfile()->GetMainPrjAlti();
    ASSERT_NE(prj, nullptr);
    EXPECT_EQ(prj->GetNumVrts(), 2);
}

TEST(LandXmlRuleFiles, SectionRuleKeepsTheSectionsBefore) {
    TEndedImport r("cross_sect_odd_count.xml", true);
    EXPECT_EQ(r.status.code, TExchangeStatus::ENDED_EARLY);
    ASSERT_EQ(r.doc.GetLibRoad()->GetNumRoads(), 1u);
    CRoad* road = r.doc.GetLibRoad()->GetRoad(0);
    ASSERT_EQ(road->GetNumSections(), 1);
    EXPECT_EQ(road->GetSection(0)->GetName(), "CS100");
    EXPECT_EQ(road->GetSection(0)->GetNumTerrVrts(), 3);
}

}  // namespace
