// Whole files compared with the golden files of tests/data/landxml_export
// (made independently by gen_golden.py from the same input values).
#include <gtest/gtest.h>

#include "lxe_documents.h"
#include "lxe_test_util.h"

namespace {

using lxetest::CExportUi;
using lxetest::CTempDir;

struct Case {
    const char* golden;
    bool roads, surfaces, surveys;
};

class GoldenExport : public ::testing::TestWithParam<Case> {};

TEST_P(GoldenExport, WritesTheGoldenText) {
    const Case c = GetParam();
    CVantriDoc doc;
    if (c.roads) lxetest::BuildRoads(doc);
    if (c.surveys) lxetest::BuildSurveys(doc);
    if (c.surfaces) lxetest::BuildSurfaces(doc);
    CTempDir dir;
    CExportUi ui;
    ui.path = dir.Path("out.xml");
    const std::string got = lxetest::Export(doc, ui);
    EXPECT_SAME_TEXT(got, lxetest::Golden(c.golden, ui.path));
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenExport,
                         ::testing::Values(Case{"header_only.xml", false, false, false},
                                           Case{"alignments.xml", true, false, false},
                                           Case{"surfaces.xml", false, true, false},
                                           Case{"surveys.xml", false, false, true},
                                           Case{"full.xml", true, true, true}),
                         [](const auto& info) {
                             std::string n = info.param.golden;
                             return n.substr(0, n.find('.'));
                         });

}  // namespace
