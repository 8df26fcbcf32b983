// What roadx never does to the user's files, through the real program: an
// output never replaces an input, a write cut short (a file-size limit, a
// full disk, a signal) leaves an older file of the output's name as it was
// and no temporary behind, and each failure is one line in the same words
// for every format.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/cli/roadx_child.h"
#include "tests/common/test_data.h"

namespace {

using clitest::CScratch;
using clitest::ReadBytes;
using clitest::RunRoadx;
using clitest::WriteBytes;

const std::string kSample = roadx::test::SourcePath("samples/road.xml");
const std::vector<std::string> kOutputs = {"xml", "rd3", "dxf", "dwg"};
const std::string kOld = "an older file that must survive\n";

class SafeWrites : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(dir.Path().empty());
        ASSERT_TRUE(clitest::PathExists(roadx::test::RoadxExe())) << "roadx is not built";
        WriteBytes(dir.File("in.xml"), ReadBytes(kSample));
        ASSERT_EQ(RunRoadx({"convert", dir.File("in.xml"), "-o", dir.File("in.rd3")}, Err()).exitCode, 0);
        inXml = ReadBytes(dir.File("in.xml"));
        inRd3 = ReadBytes(dir.File("in.rd3"));
    }
    std::string Err() const { return dir.File("stderr.txt"); }
    // The input a format's output is refused against: an RD3 file for RD3,
    // the LandXML file for the others.
    std::string InputFor(const std::string& fmt) const { return fmt == "rd3" ? "in.rd3" : "in.xml"; }
    void ExpectInputsIntact() const {
        EXPECT_EQ(ReadBytes(dir.File("in.xml")), inXml);
        EXPECT_EQ(ReadBytes(dir.File("in.rd3")), inRd3);
        EXPECT_TRUE(clitest::Leftovers(dir.Path()).empty());
    }

    CScratch dir;
    std::string inXml, inRd3;
};

TEST_F(SafeWrites, AnOutputThatIsAnInputIsRefusedHoweverItIsNamed) {
    // In the folder, so that "in.xml" and "./in.xml" name the input.
    const std::filesystem::path cwd = std::filesystem::current_path();
    ASSERT_EQ(::chdir(dir.Path().c_str()), 0);
    for (const std::string& fmt : kOutputs) {
        const std::string in = InputFor(fmt);
        ASSERT_EQ(::symlink(in.c_str(), dir.File("sym." + fmt).c_str()), 0);
        ASSERT_EQ(::link(dir.File(in).c_str(), dir.File("hard." + fmt).c_str()), 0);
        // The input named plainly, with ./, through the folder and back, by
        // a symbolic link and by a hard link.
        const std::vector<std::string> spellings = {in, "./" + in, dir.Path() + "/../" +
                                                       std::filesystem::path(dir.Path()).filename().string() + "/" + in,
                                                    "sym." + fmt, dir.File("hard." + fmt)};
        for (const std::string& out : spellings) {
            SCOPED_TRACE(fmt + " " + out);
            const auto r = RunRoadx({"convert", in, "-o", out, "--to", fmt}, Err());
            EXPECT_EQ(r.exitCode, 2);
            EXPECT_EQ(r.err, "roadx: the output " + out + " is the same file as the input " + in +
                                 "; nothing was written\n");
            ExpectInputsIntact();
        }
        ASSERT_EQ(::unlink(dir.File("sym." + fmt).c_str()), 0);
        ASSERT_EQ(::unlink(dir.File("hard." + fmt).c_str()), 0);
    }
    // Any of several inputs, and the trace too.
    auto r = RunRoadx({"convert", dir.File("in.rd3"), dir.File("in.xml"), "-o", dir.File("in.xml")}, Err());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("is the same file as the input"), std::string::npos) << r.err;
    r = RunRoadx({"info", "in.xml", "--trace", "./in.xml"}, Err());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "roadx: the trace ./in.xml is the same file as the input in.xml; nothing was written\n");
    ExpectInputsIntact();
    std::filesystem::current_path(cwd);
}

TEST_F(SafeWrites, AFileSizeLimitLeavesTheOldFileAndNoTemporary) {
    for (const std::string& fmt : kOutputs) {
        SCOPED_TRACE(fmt);
        const std::string out = dir.File("out." + fmt);
        WriteBytes(out, kOld);
        // Every output of the sample is larger than the limit.
        const auto r = RunRoadx({"convert", dir.File(InputFor(fmt)), "-o", out}, Err(), "/dev/null", 512);
        EXPECT_EQ(r.signal, 0) << "killed by SIGXFSZ";
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(r.err, "roadx: " + out + ": cannot write: File too large\n");
        EXPECT_EQ(ReadBytes(out), kOld);
        ExpectInputsIntact();
        // Without the limit the same command writes the file.
        ASSERT_EQ(RunRoadx({"convert", dir.File(InputFor(fmt)), "-o", out}, Err()).exitCode, 0);
        EXPECT_GT(ReadBytes(out).size(), 512u);
    }
    // The trace as well.
    const std::string trace = dir.File("trace.txt");
    WriteBytes(trace, kOld);
    const auto r = RunRoadx({"info", dir.File("in.xml"), "--trace", trace}, Err(), "/dev/null", 512);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "roadx: " + trace + ": cannot write: File too large\n");
    EXPECT_EQ(ReadBytes(trace), kOld);
    ExpectInputsIntact();
}

TEST_F(SafeWrites, AFullDiskIsOneLineInTheSameWordsForEveryFormat) {
    // A DWG output must be named *.dwg: a link of that name to /dev/full.
    ASSERT_EQ(::symlink("/dev/full", dir.File("full.dwg").c_str()), 0);
    for (const std::string& fmt : kOutputs) {
        SCOPED_TRACE(fmt);
        const std::string out = fmt == "dwg" ? dir.File("full.dwg") : "/dev/full";
        const auto r = RunRoadx({"convert", dir.File(InputFor(fmt)), "-o", out, "--to", fmt}, Err());
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(r.err, "roadx: " + out + ": cannot write: No space left on device\n");
    }
    auto r = RunRoadx({"info", dir.File("in.xml"), "--trace", "/dev/full"}, Err());
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "roadx: /dev/full: cannot write: No space left on device\n");
    // Standard output is checked too.
    r = RunRoadx({"info", dir.File("in.xml")}, Err(), "/dev/full");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "roadx: standard output: cannot write: No space left on device\n");
    r = RunRoadx({"info", dir.File("in.xml"), "--json", "--trace", "-"}, Err(), "/dev/full");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "roadx: standard output: cannot write: No space left on device\n");
    ExpectInputsIntact();
}

TEST_F(SafeWrites, AMissingFolderIsOneLineInTheSameWordsForEveryFormat) {
    for (const std::string& fmt : kOutputs) {
        SCOPED_TRACE(fmt);
        const std::string out = dir.File("nofolder/out." + fmt);
        const auto r = RunRoadx({"convert", dir.File(InputFor(fmt)), "-o", out}, Err());
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(r.err, "roadx: " + out + ": cannot create: No such file or directory\n");
    }
    const std::string trace = dir.File("nofolder/t.txt");
    const auto r = RunRoadx({"info", dir.File("in.xml"), "--trace", trace}, Err());
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err, "roadx: " + trace + ": cannot create: No such file or directory\n");
    ExpectInputsIntact();
}

// A LandXML surface of n × n points in a regular grid, 2 (n-1)² triangles.
void WriteGridSurface(const std::string& path, int n) {
    FILE* f = std::fopen(path.c_str(), "w");
    ASSERT_NE(f, nullptr);
    std::fprintf(f, "<?xml version=\"1.0\"?>\n<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" "
                    "version=\"1.2\"><Units><Metric linearUnit=\"meter\" areaUnit=\"squareMeter\" "
                    "volumeUnit=\"cubicMeter\" angularUnit=\"decimal degrees\" directionUnit=\"decimal degrees\"/>"
                    "</Units><Surfaces><Surface name=\"Grid\"><Definition surfType=\"TIN\"><Pnts>\n");
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            std::fprintf(f, "<P id=\"%d\">%d %d %.3f</P>\n", i * n + j + 1, i, j, ((i * 7 + j * 3) % 50) * 0.1);
    std::fprintf(f, "</Pnts><Faces>\n");
    for (int i = 0; i + 1 < n; ++i)
        for (int j = 0; j + 1 < n; ++j) {
            const int a = i * n + j + 1, b = a + 1, c = a + n, d = c + 1;
            std::fprintf(f, "<F>%d %d %d</F>\n<F>%d %d %d</F>\n", a, b, c, b, d, c);
        }
    std::fprintf(f, "</Faces></Definition></Surface></Surfaces></LandXML>\n");
    std::fclose(f);
}

// Signals roadx once its temporary output has grown past `bytes`, so the
// signal lands in the middle of the write. False when the program ended
// before that (then nothing was tested).
bool SignalMidWrite(clitest::CRoadxChild& child, const std::string& dir, uintmax_t bytes, int sig) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < deadline) {
        for (const std::string& name : clitest::Leftovers(dir)) {
            std::error_code ec;
            if (std::filesystem::file_size(dir + "/" + name, ec) > bytes && !ec) {
                ::kill(child.Pid(), sig);
                return true;
            }
        }
        if (child.Ended()) return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return false;
}

TEST_F(SafeWrites, ASignalDuringTheWriteLeavesTheOldFileAndNoTemporary) {
    WriteGridSurface(dir.File("grid.xml"), 250);
    struct TCase {
        std::string out;
        int sig;
    };
    for (const TCase& c : {TCase{"out.xml", SIGTERM}, TCase{"out.dxf", SIGINT}, TCase{"out2.xml", SIGHUP}}) {
        SCOPED_TRACE(c.out);
        const std::string out = dir.File(c.out);
        WriteBytes(out, kOld);
        bool signalled = false;
        // A heavily loaded machine may finish the write before the signal
        // is sent; that proves nothing either way, so it is tried again.
        for (int attempt = 0; attempt < 3 && !signalled; ++attempt) {
            clitest::CRoadxChild child({"convert", dir.File("grid.xml"), "-o", out}, Err());
            signalled = SignalMidWrite(child, dir.Path(), 1u << 20, c.sig);
            const clitest::TChildResult r = child.Wait();
            if (!signalled) continue;
            EXPECT_EQ(r.signal, c.sig) << r.err;  // ended as the signal ends a program
            EXPECT_EQ(ReadBytes(out), kOld);
            EXPECT_TRUE(clitest::Leftovers(dir.Path()).empty());
        }
        EXPECT_TRUE(signalled) << "the write always ended before the signal";
    }
}

}  // namespace
