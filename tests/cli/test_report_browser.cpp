// The report of every sample (tests/data/landxml, tests/data/report and the
// bundled samples/road.xml) opened in a headless Chromium by
// tests/report/check_page.py: no console message, one axis path per road
// and one chart per section, a screenshot that is not blank.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "tests/cli/report_page.h"
#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;

TEST(ReportBrowser, EverySampleOpensInChromium) {
    char tmpl[] = "/tmp/roadx-report-browser-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string dir = tmpl;
    std::vector<std::string> inputs;
    for (const std::string& f : FilesIn(roadx::test::DataPath("landxml"))) inputs.push_back(roadx::test::DataPath("landxml/" + f));
    for (const std::string& f : FilesIn(roadx::test::DataPath("report"))) inputs.push_back(roadx::test::DataPath("report/" + f));
    inputs.push_back(roadx::test::SourcePath("samples/road.xml"));
    std::string pages;
    for (const std::string& in : inputs) {
        const std::string page = dir + "/" + TestName(std::filesystem::path(in).filename().string()) + ".html";
        const TCommandResult r = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " report " + ShellQuote(in) +
                                            " -o " + ShellQuote(page) + " --yes 2>&1");
        ASSERT_EQ(r.exitCode, 0) << in << ": " << r.output;
        pages += " " + ShellQuote(page);
    }
    const TCommandResult r =
        RunCommand("/usr/bin/python3 " + ShellQuote(roadx::test::SourcePath("tests/report/check_page.py")) + pages + " 2>&1");
    EXPECT_EQ(r.exitCode, 0) << r.output;
    EXPECT_EQ(Count(r.output, " console messages"), inputs.size()) << r.output;
    std::filesystem::remove_all(dir);
}

}  // namespace
