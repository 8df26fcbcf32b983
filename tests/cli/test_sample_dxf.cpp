// Every LandXML sample through the command line's own path (import, then
// the drawing export answered from the options) to DXF R2000 and R12, each
// file read back by ezdxf and ogrinfo and counted against the document.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "cli/convert.h"
#include "cli/session.h"
#include "tests/common/test_data.h"
#include "tests/dxfdwg/dxfdwg_expect.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

std::vector<std::string> Samples() {
    std::vector<std::string> out;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(roadx::test::DataPath("landxml"), ec))
        if (e.path().extension() == ".xml") out.push_back(e.path().stem().string());
    std::sort(out.begin(), out.end());
    return out;
}

// At least one contour line wherever a surface rises more than two
// intervals.
int MinContourLines(CVantriDoc& doc, double interval) {
    for (unsigned i = 0; i < doc.GetLibDtm()->GetNoPrj(); ++i) {
        double lo = INFINITY, hi = -INFINITY;
        const CTris* t = doc.GetLibDtm()->GetPrj(i)->GetTris();
        for (const CTri& tri : t->Tris())
            for (int k = 0; k < 3; ++k) {
                if (tri.v[k] < 0 || tri.v[k] >= t->GetNoTriVrts()) continue;
                const double z = t->GetTriVrtAt(tri.v[k]).z;
                if (dxtest::Def(z)) lo = std::fmin(lo, z), hi = std::fmax(hi, z);
            }
        if (hi - lo > 2 * interval) return 1;
    }
    return 0;
}

class Sample : public ::testing::TestWithParam<std::string> {};

TEST_P(Sample, ConvertsToDxfThatReadersAccept) {
    ASSERT_TRUE(dxtest::ReadersInstalled()) << "needs python3-ezdxf and gdal-bin";
    const std::string input = roadx::test::DataPath("landxml/" + GetParam() + ".xml");
    dxtest::CTempDir dir;
    for (const char* version : {"R2000", "R12"}) {
        SCOPED_TRACE(version);
        roadx::cli::ImportOptions imp;
        imp.quiet = true;
        roadx::cli::ExportOptions exp;
        exp.output = dir.File(GetParam() + "_" + version + ".dxf");
        exp.dxfVersion = version;
        roadx::cli::Session session(imp, exp);
        session.ImportAll({input});
        const TExchangeStatus st = roadx::cli::ExportFile(session, *roadx::exchange::FindFormat("dxf"), exp);
        ASSERT_TRUE(st.ok()) << st.message;
        CVantriDoc& doc = session.Doc();
        const nlohmann::json expect = dxtest::Expect(doc, std::string(version) == "R12" ? "AC1009" : "AC1015",
                                                     exp.contourInterval, MinContourLines(doc, exp.contourInterval));
        EXPECT_EQ(dxtest::CheckDrawing(exp.output, expect, dir.Path()), "");
    }
}

INSTANTIATE_TEST_SUITE_P(LandXML, Sample, ::testing::ValuesIn(Samples()),
                         [](const auto& i) {
                             std::string n = i.param;
                             for (char& c : n)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return n;
                         });

}  // namespace
