// Every file of tests/data/landxml through `roadx info --json`: what the
// program reports (roads with their elements, main profile line and cross
// sections; surfaces with vertices, triangles and breaklines; point groups,
// GPS groups and total-station jobs) equals the counts that
// tests/landxml_import/landxml_counts.py takes from the file alone with
// xml.etree.
#include <gtest/gtest.h>

#include <string>

#include <nlohmann/json.hpp>

#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;
using nlohmann::json;

const std::string kData = roadx::test::DataPath("landxml/");

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
    // The extents that info also gives are not counts: the script does not
    // predict them.
    for (const char* key : {"pointGroups", "gpsGroups", "jobs"}) {
        out[key] = json::array();
        for (json o : s.at(key)) {
            o.erase("extent");
            out[key].push_back(std::move(o));
        }
    }
    return out;
}

class LandXmlFileCounts : public ::testing::TestWithParam<std::string> {};

TEST_P(LandXmlFileCounts, InfoMatchesTheFilesOwnCounts) {
    const std::string path = kData + GetParam();
    const std::string script = roadx::test::SourcePath("tests/landxml_import/landxml_counts.py");
    const TCommandResult expected = RunCommand("/usr/bin/python3 " + ShellQuote(script) + " " + ShellQuote(path));
    ASSERT_EQ(expected.exitCode, 0) << expected.output;
    const TCommandResult actual = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " info --json -q " + ShellQuote(path) + " 2>&1");
    ASSERT_EQ(actual.exitCode, 0) << actual.output;
    const json want = json::parse(expected.output);
    const json got = Comparable(json::parse(actual.output));
    for (const char* key : {"roads", "surfaces", "pointGroups", "gpsGroups", "jobs"})
        EXPECT_EQ(got.at(key), want.at(key)) << key << "\nprogram: " << got.at(key).dump()
                                             << "\nfile:    " << want.at(key).dump();
}

INSTANTIATE_TEST_SUITE_P(Files, LandXmlFileCounts, ::testing::ValuesIn(FilesIn(kData)),
                         [](const auto& info) { return TestName(info.param); });

}  // namespace
