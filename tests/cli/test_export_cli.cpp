// The command line's LandXML output: `roadx convert ... --to xml`.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "tests/common/test_data.h"
#include "tests/landxml_export/lxe_test_util.h"

namespace {

struct TRun {
    int exitCode = -1;
    std::string output;  // standard output and error together
};

TRun RunRoadx(const std::string& args) {
    TRun r;
    const std::string cmd = roadx::test::RoadxExe() + " " + args + " 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) r.output.append(buf, n);
    const int st = pclose(p);
    r.exitCode = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

const std::string kSample = roadx::test::DataPath("landxml/blender_ussurveyfoot_tin_3k_faces.xml");

class CliExport : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(lxetest::FileExists(roadx::test::RoadxExe())) << "roadx is not built";
        ASSERT_TRUE(lxetest::FileExists(kSample)) << kSample;
    }
};

TEST_F(CliExport, FullDiskGivesAClearErrorAndExitCode1) {
    const TRun r = RunRoadx("convert " + kSample + " -o /dev/full --to xml");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.output, "roadx: /dev/full: cannot write: No space left on device\n");
}

TEST_F(CliExport, MissingFolderGivesAClearErrorAndExitCode1) {
    lxetest::CTempDir dir;
    const std::string out = dir.Path("missing/out.xml");
    const TRun r = RunRoadx("convert " + kSample + " -o " + out);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.output, "roadx: " + out + ": cannot create: No such file or directory\n");
}

TEST_F(CliExport, WritesTheChosenObjectsUnderTheAbsolutePath) {
    lxetest::CTempDir dir;
    const std::string out = dir.Path("cli.xml");
    const TRun r = RunRoadx("convert " + kSample + " -o " + out + " --export-surfaces ''");
    ASSERT_EQ(r.exitCode, 0) << r.output;
    const std::string text = lxetest::ReadFile(out);
    EXPECT_TRUE(lxetest::HasLine(text, "\t<Project name=\"" + out + "\"/>"));
    EXPECT_EQ(text.find("<Surface"), std::string::npos);  // none chosen
    const TRun all = RunRoadx("convert " + kSample + " -o " + out);
    ASSERT_EQ(all.exitCode, 0) << all.output;
    EXPECT_EQ(lxetest::Count(lxetest::ReadFile(out), "\t\t<Surface name="), 1u);
}

}  // namespace
