// Every LandXML sample through the roadx program to DXF R2000 and to DWG:
// libredwg-web must read the DWG without error and find, layer by layer,
// the same layer properties and entity counts as ezdxf in the DXF; dwg2dxf's
// conversion of the DWG must pass ezdxf's audit and hold the same
// (check_sample_dwg.mjs reads the DWG, check_sample_dwg.py compares).
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tests/common/test_data.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

const std::string kDir = roadx::test::SourcePath("tests/dxfdwg/");

std::vector<std::string> Samples() {
    std::vector<std::string> out;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath("landxml"), ec))
        if (e.path().extension() == ".xml") out.push_back(e.path().stem().string());
    std::sort(out.begin(), out.end());
    return out;
}

bool ToolsInstalled() {
    const std::string modules = roadx::test::SourcePath("tests/node_modules/");
    return std::system("node --version >/dev/null 2>&1") == 0 && dxtest::Exists(modules + "@mlightcad/libredwg-web") &&
           dxtest::Exists(modules + "dwg2dxf") &&
           std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
}

// Runs cmd with its output going to log; returns "" on success, else the
// log (or the status when it printed nothing).
std::string RunLogged(const std::string& cmd, const std::string& log) {
    const int rc = std::system((cmd + " >'" + log + "' 2>&1").c_str());
    if (rc == 0) return "";
    const std::string out = dxtest::ReadAll(log);
    return out.empty() ? "status " + std::to_string(rc) : out;
}

class SampleDwg : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleDwg, DwgHoldsWhatTheDxfHolds) {
    ASSERT_TRUE(ToolsInstalled()) << "needs node with `npm ci --prefix tests` and python3-ezdxf";
    const std::string input = roadx::test::DataPath("landxml/" + GetParam() + ".xml");
    dxtest::CTempDir dir;
    const std::string dxf = dir.File("out.dxf"), dwg = dir.File("out.dwg"), log = dir.File("log.txt");
    const std::string convert =
        std::string("'") + roadx::test::RoadxExe() + "' convert '" + input + "' --yes -q --dxf-version R2000 -o ";
    ASSERT_EQ(RunLogged(convert + "'" + dxf + "'", log), "") << "DXF conversion";
    ASSERT_EQ(RunLogged(convert + "'" + dwg + "'", log), "") << "DWG conversion";

    const std::string summary = dir.File("dwg.json"), converted = dir.File("dwg2dxf.dxf");
    const std::string read =
        "node '" + kDir + "check_sample_dwg.mjs' '" + dwg + "' '" + summary + "' '" + converted + "'";
    EXPECT_EQ(RunLogged(read, log), "");
    ASSERT_TRUE(dxtest::Exists(summary) && dxtest::Exists(converted)) << "the DWG was not read";
    const std::string compare =
        "/usr/bin/python3 '" + kDir + "check_sample_dwg.py' '" + summary + "' '" + dxf + "' '" + converted + "'";
    EXPECT_EQ(RunLogged(compare, log), "");
}

INSTANTIATE_TEST_SUITE_P(LandXML, SampleDwg, ::testing::ValuesIn(Samples()),
                         [](const auto& i) {
                             std::string n = i.param;
                             for (char& c : n)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return n;
                         });

}  // namespace
