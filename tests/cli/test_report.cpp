// roadx report: the page of a road with and without terrain, of a surface
// without roads and of points alone; the ground profile against an
// independent barycentric computation (tests/report/check_ground.py).
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "tests/cli/report_page.h"
#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;
using nlohmann::json;

class ReportTest : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/roadx-report-XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        dir_ = tmpl;
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    // Runs roadx report on the inputs; the page's text.
    std::string Report(const std::string& inputs, const std::string& options = "") {
        const std::string out = dir_ + "/out.html";
        const TCommandResult r = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " report " + inputs + " -o " +
                                            ShellQuote(out) + " --yes " + options + " 2>&1");
        EXPECT_EQ(r.exitCode, 0) << r.output;
        EXPECT_EQ(r.output, "");
        return ReadFile(out);
    }

    std::string dir_;
};

std::string Data(const std::string& rel) { return ShellQuote(roadx::test::DataPath(rel)); }

// A page is whole: one html element, the data parse, no reference to
// anything outside the file.
void ExpectSelfContained(const std::string& page) {
    EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
    EXPECT_EQ(Count(page, "</html>"), 1u);
    EXPECT_EQ(Count(page, "src="), 0u);
    EXPECT_EQ(Count(page, "<link"), 0u);
    EXPECT_EQ(Count(page, "url("), 0u);
    EXPECT_EQ(Count(page, "@import"), 0u);
    EXPECT_EQ(Count(page, "http://www.w3.org/2000/svg"), Count(page, "http"));
}

TEST_F(ReportTest, RoadWithTerrainHasGroundAndEverySection) {
    const std::string page = Report(ShellQuote(roadx::test::SourcePath("samples/road.xml")), "--terrain EG");
    ExpectSelfContained(page);
    const json d = ReportData(page);
    ASSERT_EQ(d.at("roads").size(), 1u);
    const json& r = d["roads"][0];
    EXPECT_EQ(r.at("name"), "Main Road");
    EXPECT_EQ(r.at("start_station"), 0.0);
    EXPECT_EQ(r.at("end_station"), 950.0);
    // The sample's chain: line, clothoid, arc, clothoid, line, clothoid,
    // arc, continuity clothoid, arc, clothoid, line.
    std::vector<std::string> kinds;
    for (const json& e : r.at("elements")) kinds.push_back(e.at("kind"));
    EXPECT_EQ(kinds, (std::vector<std::string>{"line", "clothoid", "arc", "clothoid", "line", "clothoid", "arc",
                                               "continuity_clothoid", "arc", "clothoid", "line"}));
    EXPECT_EQ(r["elements"][0].at("start"), json({2000.0, 5000.0}));
    EXPECT_EQ(r.at("sections").size(), 5u);
    EXPECT_EQ(r["sections"][0].at("name"), "S100");
    EXPECT_EQ(r["sections"][0].at("station"), 100.0);
    EXPECT_FALSE(r.at("ground_profile").empty());
    EXPECT_EQ(r["ground_profile"][0][0], 0.0);
    EXPECT_EQ(r.at("design_profile").front(), json({0.0, 101.0}));
    EXPECT_EQ(Count(page, "class=\"axis\""), 1u);
    EXPECT_EQ(Count(page, "class=\"section-chart\""), 5u);
    EXPECT_EQ(d.at("surfaces").size(), 1u);
    EXPECT_EQ(d["surfaces"][0].at("triangles"), 162);
    EXPECT_EQ(d.at("point_groups").size(), 1u);
    EXPECT_EQ(d["point_groups"][0].at("points").size(), 6u);
    EXPECT_TRUE(d.at("warnings").is_array());
}

TEST_F(ReportTest, RoadWithoutTerrainHasNoGround) {
    const std::string page = Report(Data("landxml/aplitop_grads_spirals_paracurve.xml"));
    ExpectSelfContained(page);
    const json d = ReportData(page);
    ASSERT_EQ(d.at("roads").size(), 1u);
    EXPECT_TRUE(d.at("surfaces").empty());
    EXPECT_TRUE(d["roads"][0].at("ground_profile").empty());
    EXPECT_EQ(d["roads"][0].at("pvis").size(), 4u);
    EXPECT_FALSE(d["roads"][0].at("design_profile").empty());
    EXPECT_EQ(Count(page, "class=\"axis\""), 1u);
    EXPECT_EQ(Count(page, "class=\"pvi\""), 4u);
    EXPECT_EQ(Count(page, "class=\"curve-label\""), 2u);
    EXPECT_NE(Count(page, "(no ground)"), 0u);
}

// Without --terrain the document's only surface is the ground: the same
// profile as with it.
TEST_F(ReportTest, OnlySurfaceIsTheDefaultGround) {
    const json with = ReportData(Report(ShellQuote(roadx::test::SourcePath("samples/road.xml")), "--terrain EG"));
    const json without = ReportData(Report(ShellQuote(roadx::test::SourcePath("samples/road.xml"))));
    EXPECT_FALSE(without["roads"][0].at("ground_profile").empty());
    EXPECT_EQ(with["roads"][0].at("ground_profile"), without["roads"][0].at("ground_profile"));
    EXPECT_EQ(with["roads"][0].at("sections"), without["roads"][0].at("sections"));
}

TEST_F(ReportTest, SurfaceWithoutRoads) {
    // -q: the file's breaklines of more than two points are a warning.
    const std::string page = Report(Data("landxml/c3d_tin_boundaries_breaklines.xml"), "-q");
    ExpectSelfContained(page);
    const json d = ReportData(page);
    EXPECT_TRUE(d.at("roads").empty());
    ASSERT_EQ(d.at("surfaces").size(), 1u);
    const json& ext = d["surfaces"][0].at("extent");
    ASSERT_EQ(ext.size(), 6u);
    EXPECT_LT(ext[0].get<double>(), ext[3].get<double>());
    EXPECT_LT(ext[1].get<double>(), ext[4].get<double>());
    EXPECT_EQ(Count(page, "class=\"axis\""), 0u);
    EXPECT_NE(Count(page, "class=\"contour"), 0u);
    EXPECT_NE(Count(page, "<p>No roads.</p>"), 0u);
}

// The import's diagnostics are the page's warnings, as records.
TEST_F(ReportTest, WarningsAreTheImportsDiagnostics) {
    const json d = ReportData(Report(Data("landxml/diag/surface_numbers.xml"), "-q"));
    const json& w = d.at("warnings");
    ASSERT_TRUE(w.is_array());
    const json* numbers = nullptr;
    for (const json& r : w)
        if (r.at("kind") == "number-not-read") numbers = &r;
    ASSERT_NE(numbers, nullptr) << w.dump();
    EXPECT_EQ(numbers->at("count"), 2);
    EXPECT_EQ(numbers->at("line"), 8);
    EXPECT_EQ(numbers->at("element"), "Surfaces / Surface \"G\" / Definition / Pnts / P 1");
    EXPECT_EQ(numbers->at("severity"), "warning");
    EXPECT_NE(numbers->at("file").get<std::string>().find("surface_numbers.xml"), std::string::npos);
}

TEST_F(ReportTest, PointsOnly) {
    const std::string page = Report(Data("landxml/lx2_points_surveys_gps.xml"), "-q");  // the file warns of a lost target
    ExpectSelfContained(page);
    const json d = ReportData(page);
    EXPECT_TRUE(d.at("roads").empty());
    EXPECT_TRUE(d.at("surfaces").empty());
    ASSERT_EQ(d.at("point_groups").size(), 1u);
    EXPECT_EQ(d["point_groups"][0].at("name"), "Field");
    EXPECT_EQ(d["point_groups"][0].at("points").size(), 1u);
    EXPECT_EQ(d.at("stations").size(), 2u);
    EXPECT_EQ(Count(page, "class=\"point\""), 1u);
    EXPECT_EQ(Count(page, "class=\"station\""), 2u);
}

TEST_F(ReportTest, GroundMatchesBarycentricTinWithGaps) {
    Report(Data("report/ground_gaps.xml"), "--terrain BUMPS");
    const TCommandResult r = RunCommand("/usr/bin/python3 " + ShellQuote(roadx::test::SourcePath("tests/report/check_ground.py")) +
                                        " " + Data("report/ground_gaps.xml") + " BUMPS " + ShellQuote(dir_ + "/out.html"));
    EXPECT_EQ(r.exitCode, 0) << r.output;
    // Before the surface, the hole, and after the surface.
    EXPECT_NE(r.output.find(" vertices, 3 gaps, 600 stations"), std::string::npos) << r.output;
}

TEST_F(ReportTest, GroundMatchesBarycentricTinOnTheSample) {
    Report(ShellQuote(roadx::test::SourcePath("samples/road.xml")), "--terrain EG");
    const TCommandResult r =
        RunCommand("/usr/bin/python3 " + ShellQuote(roadx::test::SourcePath("tests/report/check_ground.py")) + " " +
                   ShellQuote(roadx::test::SourcePath("samples/road.xml")) + " EG " + ShellQuote(dir_ + "/out.html"));
    EXPECT_EQ(r.exitCode, 0) << r.output;
    EXPECT_NE(r.output.find("Main Road: "), std::string::npos) << r.output;
}

TEST_F(ReportTest, UnknownTerrainIsOneError) {
    const TCommandResult r = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " report " +
                                        ShellQuote(roadx::test::SourcePath("samples/road.xml")) + " -o " +
                                        ShellQuote(dir_ + "/x.html") + " --yes --terrain NOPE 2>&1");
    EXPECT_EQ(r.exitCode, 2);  // a name that matches nothing is a usage error, as for every command
    EXPECT_EQ(r.output, "roadx: --terrain: no surface named \"NOPE\" in the inputs; there are: \"EG\"\n");
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/x.html"));
}

TEST_F(ReportTest, UnwritableOutputIsOneError) {
    const std::string out = (std::filesystem::path(dir_) / "no" / "such" / "dir" / "x.html").string();
    const TCommandResult r = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " report " +
                                        ShellQuote(roadx::test::SourcePath("samples/road.xml")) + " -o " +
                                        ShellQuote(out) + " --yes 2>&1");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.output.find(out + ": cannot create"), std::string::npos) << r.output;
}

}  // namespace
