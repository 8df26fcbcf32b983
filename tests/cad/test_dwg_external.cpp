// DWG files written by the engine, read back by independent readers
// installed from the npm registry (tests/package.json): libredwg-web and
// libdxfrw-web read the file, dwg2dxf converts it to DXF for ezdxf's audit
// (tests/cad/dwg/check_dwg.mjs and check_dwg_dxf.py). Values are compared
// with numbers taken from the engine, not only "it opened".
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "cad_test_util.h"
#include "dxf_expect.h"
#include "tests/common/test_data.h"

using namespace roadx::cad;

namespace {

const std::string kDir = roadx::test::SourcePath("tests/cad/dwg/");

bool ReadersInstalled() {
    const std::string modules = roadx::test::SourcePath("tests/node_modules/");
    return std::system("node --version >/dev/null 2>&1") == 0 &&
           cadtest::Exists(modules + "@mlightcad/libredwg-web") && cadtest::Exists(modules + "@mlightcad/libdxfrw-web") &&
           cadtest::Exists(modules + "dwg2dxf") &&
           std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
}

// Saves eng as DWG and runs both checks on it; true when they pass.
bool SaveAndCheck(CZedraEng& eng, const std::string& expectJson) {
    cadtest::CTempDir dir;
    const std::string dwg = dir.File("out.dwg"), dxf = dir.File("out.dxf"), expect = dir.File("expect.json");
    if (eng.SaveFileDWG(dwg, false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0) != kSaveOk) return false;
    cadtest::WriteAll(expect, expectJson);
    const std::string node = "node '" + kDir + "check_dwg.mjs' '" + dwg + "' '" + expect + "' '" + dxf + "'";
    const bool read = std::system(node.c_str()) == 0;
    const std::string py = "/usr/bin/python3 '" + kDir + "check_dwg_dxf.py' '" + dxf + "' '" + expect + "'";
    const bool converted = cadtest::Exists(dxf) && std::system(py.c_str()) == 0;
    return read && converted;
}

constexpr const char* kNeed = "needs node with `npm ci --prefix tests` and python3-ezdxf (scripts/install-deps.sh --test)";

}  // namespace

TEST(DwgExternal, SmallDrawingEveryEntityKind) {
    ASSERT_TRUE(ReadersInstalled()) << kNeed;
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    EXPECT_TRUE(SaveAndCheck(eng, cadtest::ExpectJson(eng, false)));
}

TEST(DwgExternal, SmallDrawingWithoutEngineVariables) {
    ASSERT_TRUE(ReadersInstalled()) << kNeed;
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    eng.DontSaveZedraVars();
    EXPECT_TRUE(SaveAndCheck(eng, cadtest::ExpectJson(eng, false)));
}

// Layers in every state, closed and open polylines, texts beyond the code
// page, a block inserted with different scales and a block in a block.
TEST(DwgExternal, LayerStatesTextsAndNestedBlocks) {
    ASSERT_TRUE(ReadersInstalled()) << kNeed;
    CZedraEng eng(0, nullptr, true);
    const uint64_t off = eng.AddDrawing(0, "Spento", false, false, false);
    eng.SetDrawingColor(off, true, 200);
    const uint64_t all = eng.AddDrawing(0, "Tutto chiuso", false, true, false);
    eng.SetDrawingFrozen(all, true);
    eng.SetDrawingColor(all, true, 255);
    const uint64_t greek = eng.AddDrawing(0, "Strato € ü", true, false, false);
    const uint64_t inner = eng.AddBlock("Interno", false, {1, 2, 3});
    eng.AddPoint({0, 1, inner}, {0, 0, 0});
    const uint64_t outer = eng.AddBlock("Esterno", false);
    eng.AddInsert({0, kColorByBlock, outer}, inner, {1, 1, 0}, 0.5, 0.5, 0.5);
    eng.AddInsert({off}, outer, {5, 6, 7}, 1, 2, 3, -1.25);
    eng.AddInsert({greek}, outer, {-5, -6, 0});
    eng.AddInsert({all}, inner, {1e7, -1e-7, 2}, 1, 1.5, 1);
    eng.AddPolyline2D({greek}, {{1, 1, 0}, {2, 2, 0}}, false);
    eng.AddPolyline2D({off}, {{1, 1, -0.25}, {2, 1, 1}, {2, 3, 0}, {1, 3, 0}}, true, -12.5);
    eng.AddPolyline3D({all}, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 5}}, true);
    eng.AddText({greek}, {1, 2, 3}, 1.25, -0.5, "αβγ \xF0\x9F\x98\x80 Ü", EHAlign::Right, EVAlign::Top);
    eng.AddText({off, 7}, {-1, -2, 0}, 3, 0, "Città ^ 50%", EHAlign::Left, EVAlign::Bottom);
    eng.AddArc({all, 256}, {1, 1, 1}, 0.5, 5.5, 0.25);
    eng.AddLine({greek}, {1.0 / 3.0, 2.0 / 3.0, 0}, {1.0 / 3.0, 2.0 / 3.0, 1e-300});
    EXPECT_TRUE(SaveAndCheck(eng, cadtest::ExpectJson(eng, false)));
}

// Random coordinates over 48 binary orders of magnitude survive exactly;
// the object map needs many sections, and one polyline object is larger
// than a single modular-short unit can say.
TEST(DwgExternal, RandomSurfaceAndALongPolylineRoundTripExactly) {
    ASSERT_TRUE(ReadersInstalled()) << kNeed;
    CZedraEng eng(0, nullptr, true);
    const uint64_t dtm = eng.AddDrawing(0, "Superficie", true, false, false);
    std::mt19937_64 rng(2024);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> expo(-8, 8);
    auto r = [&] { return std::ldexp(unit(rng), expo(rng) * 3); };
    for (int i = 0; i < 3000; ++i) eng.Add3DFace({dtm}, {r(), r(), r()}, {r(), r(), r()}, {r(), r(), r()}, {r(), r(), r()});
    std::vector<TVertex2D> v;
    for (int i = 0; i < 3000; ++i) v.push_back({r(), r(), i % 3 ? 0.0 : r()});
    eng.AddPolyline2D({dtm}, v, false, r());
    EXPECT_TRUE(SaveAndCheck(eng, cadtest::ExpectJson(eng, false)));
}
