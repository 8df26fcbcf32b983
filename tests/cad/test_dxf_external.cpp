// Files written by the engine, read back by independent readers: ezdxf
// (audit without errors or fixes, layers, blocks, every model-space entity
// with exact coordinates) and GDAL's ogrinfo, through check_dxf.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "cad_test_util.h"
#include "dxf_expect.h"
#include "tests/common/test_data.h"

using namespace roadx::cad;

namespace {

const std::string kScript = roadx::test::SourcePath("tests/cad/check_dxf.py");

bool ReadersInstalled() {
    return std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0 &&
           std::system("ogrinfo --version >/dev/null 2>&1") == 0;
}

// Runs check_dxf.py on path against the expectations; true when they match.
bool Check(const std::string& path, const std::string& expectJson, const cadtest::CTempDir& dir) {
    const std::string expect = dir.File("expect.json");
    cadtest::WriteAll(expect, expectJson);
    const std::string cmd = "/usr/bin/python3 '" + kScript + "' '" + path + "' '" + expect + "'";
    return std::system(cmd.c_str()) == 0;
}

void CheckSaved(CZedraEng& eng, enumZEDRA_DXFDWG_VER ver, bool r12Handles, long features = -1) {
    ASSERT_TRUE(ReadersInstalled()) << "needs python3-ezdxf and gdal-bin (apt-get install -y python3-ezdxf gdal-bin)";
    cadtest::CTempDir dir;
    const std::string path = dir.File("out.dxf");
    ASSERT_EQ(eng.SaveFileDXF(path, false, false, false, false, r12Handles, ver, 0), kSaveOk);
    EXPECT_TRUE(Check(path, cadtest::ExpectJson(eng, ver == ZEDRA_DXFDWG_VER_R12, features), dir));
}

}  // namespace

TEST(DxfExternal, SmallDrawingR2000) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R2000, false);
}

TEST(DxfExternal, SmallDrawingR12WithAndWithoutHandles) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R12, false);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R12, true);
}

TEST(DxfExternal, SmallDrawingWithoutEngineVariables) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    eng.DontSaveZedraVars();
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R2000, false);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R12, true);
}

// The golden files themselves are valid drawings with the expected content.
TEST(DxfExternal, GoldenFilesAreValid) {
    ASSERT_TRUE(ReadersInstalled());
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    cadtest::CTempDir dir;
    const std::string data = roadx::test::DataPath("dxf/");
    EXPECT_TRUE(Check(data + "small_r2000.dxf", cadtest::ExpectJson(eng, false), dir));
    EXPECT_TRUE(Check(data + "small_r12.dxf", cadtest::ExpectJson(eng, true), dir));
}

// Random coordinates over many magnitudes survive the file exactly, and
// ogrinfo sees one feature per face.
TEST(DxfExternal, RandomSurfaceRoundTripsExactly) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t dtm = eng.AddDrawing(0, "Superficie", true, false, false);
    std::mt19937_64 rng(2024);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> expo(-8, 8);
    auto coord = [&] { return std::ldexp(unit(rng), 3 * expo(rng)); };
    const int n = 3000;
    for (int i = 0; i < n; ++i)
        eng.Add3DFace({dtm}, {coord(), coord(), coord()}, {coord(), coord(), coord()}, {coord(), coord(), coord()});
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R2000, false, n);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R12, false, n);
}

TEST(DxfExternal, PolylinesAndTextsOfManyKinds) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "Testi àèìòù", true, false, false);
    eng.AddText({a}, {1, 2, 3}, 1.25, 0.5, "caret ^ e \"virgolette\" e \\ barra");
    eng.AddText({a}, {1, 2, 3}, 1.25, -0.25, "Ωμέγα ЖЖ 中文", EHAlign::Right, EVAlign::Top);
    eng.AddText({a}, {1, 2, 3}, 1.25, 0, "", EHAlign::Left, EVAlign::Bottom);
    std::vector<TVertex2D> v2;
    std::vector<PNT_3D> v3;
    for (int i = 0; i < 500; ++i) {
        v2.push_back({i * 0.1, std::sin(i * 0.1) * 1e5, (i % 3) * 0.25});
        v3.push_back({i * 0.3, -i * 0.7, i * 1e-3});
    }
    eng.AddPolyline2D({a, 44}, v2, false, -12.75);
    eng.AddPolyline3D({a, kColorByBlock}, v3, true);
    eng.AddArc({a}, {1, 1, 1}, 3, -0.5, 4.0);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R2000, false);
    CheckSaved(eng, ZEDRA_DXFDWG_VER_R12, true);
}
