// Round trip of the real LandXML samples: import, export, import again. Files
// that hold only what the export writes come back with the same builder
// trace apart from names and rounding to six decimals; for every other file
// the test names what the export cannot carry, checks that this is where the
// traces differ, and that they agree once that difference is set aside.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "tests/cli/lxe_samples.h"
#include "tests/landxml_export/trace_compare.h"
#include "vesk/undefined.h"

namespace {

using lxetest::TTraceCall;

using TFilter = std::function<bool(const TTraceCall&)>;

struct TSample {
    const char* file;
    // "" when everything the import takes from the file comes back (what it
    // does not take, such as parcels or pipes, is in neither trace).
    const char* why;
    TFilter dropFirst;      // calls of the first import the export cannot carry
    TFilter dropSecond;     // calls only the second import makes
    bool signlessRadius = false;   // vertical curve radii come back without their sign
    bool noPointData = false;      // the file offers points the import made nothing of
    bool undefinedIsAny = false;   // values the first document held undefined come back as anything
};

bool Op(const TTraceCall& c, const char* op) { return c.op == op; }

const TSample kAll[] = {
    {"aplitop_grads_spirals_paracurve.xml", "", {}, {}},
    {"blender_ussurveyfoot_tin_3k_faces.xml", "", {}, {}},
    {"c3d2018_tin_44k_faces.xml", "", {}, {}},
    {"c3d2020_imperial_tin_cyrillic.xml", "", {}, {}},
    {"c3d2023_imperial_alignment_paracurve.xml", "", {}, {}},
    {"c3d2023_tin_no_namespace.xml", "", {}, {}},
    {"c3d_tin_boundaries_breaklines.xml", "", {}, {}},
    {"c3d2014_imperial_crosssects_tin.xml", "", {}, {}},
    {"c3d2007_lx11_survey_rawobs_ddmmss.xml", "", {}, {}},
    {"freecad_sugargrove_pi_only_curves.xml", "", {}, {}},
    {"inframodel_3dwin_terrain_36k_faces.xml", "", {}, {}},
    {"ldt2005_lx11_subdivision_profiles_pipes_tin.xml", "", {}, {}},
    {"novapoint_inframodel_circcurve_profile.xml", "", {}, {}},
    {"novapoint_inframodel_tin_latin1.xml", "", {}, {}},
    {"ord_tin_22k_faces_breaklines.xml", "", {}, {}},
    {"sdms_alignpis_spirals_radius0.xml", "", {}, {}},
    {"inframodel_3dwin_nested_cgpoints.xml",
     "its points are nested CgPoints, which the import does not take: the file offers point data, the "
     "export of the empty document none",
     {}, {}, false, true},
    {"ord_ussurveyfoot_alignment_paracurve.xml",
     "an empty CgPoints offers point data that the document never held", {}, {}, false, true},
    {"aplitop_grads_spiral_chain.xml", "a clothoid between two radii has no form in the export",
     [](const TTraceCall& c) { return Op(c, "AddRoadClotCont"); }, {}},
    {"c3d2020_alignment_spirals_tr.xml",
     "clothoid lengths with more than six decimals: the written constant -A² no longer matches the rounded "
     "length, so the second import asks about it",
     {}, [](const TTraceCall& c) { return Op(c, "Question"); }},
    {"divcibare_lx10_spirals_paracurve_tin.xml",
     "clothoids between two radii are left out, and rounded clothoid lengths make the second import ask about "
     "the written constant",
     [](const TTraceCall& c) { return Op(c, "AddRoadClotCont"); },
     [](const TTraceCall& c) { return Op(c, "Question"); }},
    {"inframodel_3dwin_grads_circcurve.xml",
     "signed (crest) radii of circular vertical curves: the document keeps every vertical curve as a parabola, "
     "written as a ParaCurve length, which has no sign",
     {}, {}, true},
    {"jlandxml_sample_crosssects_spirals.xml",
     "a clothoid between two radii is left out; its CgPoints made no point group",
     [](const TTraceCall& c) { return Op(c, "AddRoadClotCont"); }, {}, false, true},
    {"carlson2014_lx11_ussft_crosssects_tin.xml",
     "every cross-section line holds a single point, and runs of one point are not written: the sections come "
     "back empty and are not made again; a curve without a start direction holds an undefined tangent, "
     "written as the direction of that vector",
     [](const TTraceCall& c) { return Op(c, "AddSection") || Op(c, "AddSectionProfileAlti"); }, {}, false, false,
     true},
    {"tops_survey_grads_rawobs.xml",
     "the stations have no coordinates, so no InstrumentPoint carries their description",
     [](const TTraceCall& c) { return Op(c, "SetStaDesc"); }, {}},
};

class RoundTrip : public ::testing::TestWithParam<TSample> {};

TEST_P(RoundTrip, SecondImportMatchesTheFirst) {
    const TSample& s = GetParam();
    const std::string in = lxetest::kSamples + s.file;
    lxetest::CTempDir dir;
    const std::string out = dir.Path("round.xml");
    const auto first = lxetest::NormaliseTrace(lxetest::ImportAndExport(in, out));
    const auto second = lxetest::NormaliseTrace(lxetest::ImportAndExport(out, ""));
    ASSERT_GT(first.size(), 0u);

    const std::string plain = lxetest::CompareTraces(first, second);
    if (*s.why == '\0') {
        EXPECT_EQ(plain, "") << s.file;
        return;
    }
    // The stated difference is real ...
    EXPECT_NE(plain, "") << s.file << " was expected to differ: " << s.why;
    // ... and it is the only one.
    auto a = s.dropFirst ? lxetest::Without(first, s.dropFirst) : first;
    auto b = s.dropSecond ? lxetest::Without(second, s.dropSecond) : second;
    for (size_t i = 0; s.undefinedIsAny && i < a.size() && i < b.size(); ++i)
        for (size_t k = 0; k < a[i].nums.size() && k < b[i].nums.size(); ++k)
            if (!vesk::IsDefined(a[i].nums[k])) b[i].nums[k] = a[i].nums[k];
    for (auto* v : {&a, &b})
        for (auto& c : *v)
            if (s.noPointData && c.op == "FDlgImportLandXML" && c.nums.size() == 3) c.nums[2] = 0.0;
    if (s.signlessRadius) {
        for (auto* v : {&a, &b})
            for (auto& c : *v)
                if (c.op == "AddRoadProfAltiRaccVrt" && c.nums.size() > 6) c.nums[6] = std::fabs(c.nums[6]);
    }
    EXPECT_EQ(lxetest::CompareTraces(a, b), "") << s.file << ": " << s.why;
}

INSTANTIATE_TEST_SUITE_P(Samples, RoundTrip, ::testing::ValuesIn(kAll), [](const auto& info) {
    std::string n = info.param.file;
    n = n.substr(0, n.find('.'));
    for (char& ch : n)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return n;
});

}  // namespace
