// Every file of tests/data/landxml/rules breaks one rule that ends an
// import; the roadx program fails with exactly that rule's message.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"

namespace {

using namespace clitest;

const std::string kData = roadx::test::DataPath("landxml/");

struct TRuleCase {
    const char* file;
    const char* message;
};

class LandXmlRuleFiles : public ::testing::TestWithParam<TRuleCase> {};

TEST_P(LandXmlRuleFiles, ImportEndsWithTheRulesMessage) {
    const std::string path = kData + "rules/" + GetParam().file;
    const TCommandResult r = RunCommand(ShellQuote(roadx::test::RoadxExe()) + " info " + ShellQuote(path) + " 2>&1");
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

}  // namespace
