// --geometry on the command line: points mode removes the geometry check's
// warning from a sample whose directions are azimuths; the default and
// "attributes" are the same import; other values and inputs that cannot
// use it are refused as wrong usage (exit 2).
#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;
using nlohmann::json;

// Directions written as azimuths: 7 elements off by up to 324 m by default.
const std::string kAzimuths = roadx::test::DataPath("landxml/novapoint_inframodel_circcurve_profile.xml");

std::string Roadx() { return ShellQuote(roadx::test::RoadxExe()); }

std::vector<std::string> PlanWarnings(const std::string& options) {
    const TCommandResult r =
        RunCommand(Roadx() + " info --json " + options + " " + ShellQuote(kAzimuths) + " 2>/dev/null");
    EXPECT_EQ(r.exitCode, 0);
    std::vector<std::string> kinds;
    const json info = json::parse(r.output);
    for (const json& w : info.at("warnings"))
        if (w.at("kind").get<std::string>().rfind("plan-", 0) == 0) kinds.push_back(w.at("kind"));
    return kinds;
}

TEST(GeometryMode, PointsModeRemovesTheMismatchWarning) {
    EXPECT_EQ(PlanWarnings(""), std::vector<std::string>{"plan-end-mismatch"});
    EXPECT_EQ(PlanWarnings("--geometry attributes"), std::vector<std::string>{"plan-end-mismatch"});
    EXPECT_EQ(PlanWarnings("--geometry points"), std::vector<std::string>{});
    // The summary line on standard error goes too.
    const std::string stderrOnly = " 2>&1 >/dev/null";
    const TCommandResult plain = RunCommand(Roadx() + " info " + ShellQuote(kAzimuths) + stderrOnly);
    const TCommandResult points = RunCommand(Roadx() + " info --geometry points " + ShellQuote(kAzimuths) + stderrOnly);
    EXPECT_NE(plain.output.find("[plan-end-mismatch]"), std::string::npos) << plain.output;
    EXPECT_EQ(points.output.find("[plan-end-mismatch]"), std::string::npos) << points.output;
    EXPECT_EQ(points.exitCode, 0);
}

// A temporary folder, removed at the end of the test.
struct TTempDir {
    std::string path;
    TTempDir() {
        char tmpl[] = "/tmp/roadx-geometry-XXXXXX";
        path = mkdtemp(tmpl);
    }
    ~TTempDir() { std::filesystem::remove_all(path); }
};

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The trace of `roadx info` with the options.
std::string Trace(const TTempDir& tmp, const std::string& name, const std::string& options) {
    const std::string trace = tmp.path + "/" + name;
    const TCommandResult r = RunCommand(Roadx() + " info -q --trace " + ShellQuote(trace) + " " + options + " " +
                                        ShellQuote(kAzimuths) + " >/dev/null 2>&1");
    EXPECT_EQ(r.exitCode, 0) << options;
    return ReadFile(trace);
}

// The lines of a trace other than the plan element calls.
std::string WithoutPlanElements(const std::string& trace) {
    std::istringstream in(trace);
    std::string kept, line;
    while (std::getline(in, line))
        if (line.rfind("AddRoadRect ", 0) != 0 && line.rfind("AddRoadArc ", 0) != 0) kept += line + "\n";
    return kept;
}

// The builder calls: "attributes" is the default to the byte; "points"
// changes only the plan element calls.
TEST(GeometryMode, AttributesIsTheDefaultTrace) {
    TTempDir tmp;
    const std::string plain = Trace(tmp, "plain", "");
    const std::string attributes = Trace(tmp, "attributes", "--geometry attributes");
    const std::string points = Trace(tmp, "points", "--geometry points");
    ASSERT_NE(plain.find("AddRoadArc "), std::string::npos);
    EXPECT_EQ(attributes, plain);
    EXPECT_NE(points, plain);
    EXPECT_EQ(WithoutPlanElements(points), WithoutPlanElements(plain));
}

TEST(GeometryMode, OtherValuesAreWrongUsage) {
    for (const char* command : {"info", "convert -o /nonexistent/out.xml", "report -o /nonexistent/out.html"}) {
        const TCommandResult r =
            RunCommand(Roadx() + " " + command + " --geometry bogus " + ShellQuote(kAzimuths) + " 2>&1");
        EXPECT_EQ(r.exitCode, 2) << command;
        EXPECT_NE(r.output.find("--geometry: \"bogus\" is neither \"points\" nor \"attributes\""), std::string::npos)
            << command << ": " << r.output;
    }
}

TEST(GeometryMode, RefusedWhenNoInputIsLandXML) {
    const std::string rd3 = roadx::test::SourcePath("fuzz/corpus/rd3/writer_sections.rd3");
    const TCommandResult r = RunCommand(Roadx() + " info --geometry points " + ShellQuote(rd3) + " 2>&1");
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.output, "roadx: --geometry does not apply to RD3 input; it applies to LandXML input\n");
    // Beside a LandXML input it applies to that one.
    const TCommandResult both = RunCommand(Roadx() + " info -q --geometry points " + ShellQuote(rd3) + " " +
                                           ShellQuote(kAzimuths) + " >/dev/null 2>&1");
    EXPECT_EQ(both.exitCode, 0);
}

}  // namespace
