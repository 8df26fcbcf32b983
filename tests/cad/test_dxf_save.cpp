// Saving drawing files: results, golden bytes, structure and save flags.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <set>
#include <sys/resource.h>

#include "cad_test_util.h"
#include "tests/common/test_data.h"

using namespace roadx::cad;
using cadtest::CountOf;
using cadtest::Groups;
using cadtest::TGroup;
using cadtest::ValuesOf;

namespace {

const std::string kGoldenDir = roadx::test::DataPath("dxf/");

int Save(CZedraEng& eng, const std::string& path, enumZEDRA_DXFDWG_VER ver = ZEDRA_DXFDWG_VER_R2000,
         uint64_t drawing = 0) {
    return eng.SaveFileDXF(path, false, false, false, false, false, ver, drawing);
}

std::vector<TGroup> SavedGroups(CZedraEng& eng, int visibleOnly, int unlockedOnly, int flatten, int used, int r12h,
                                enumZEDRA_DXFDWG_VER ver, uint64_t drawing = 0) {
    cadtest::CTempDir dir;
    const std::string path = dir.File("out.dxf");
    EXPECT_EQ(eng.SaveFileDXF(path, visibleOnly, unlockedOnly, flatten, used, r12h, ver, drawing), kSaveOk);
    return Groups(cadtest::ReadAll(path));
}

// Groups of the section named `name` only.
std::vector<TGroup> Section(const std::vector<TGroup>& g, const std::string& name) {
    std::vector<TGroup> out;
    bool inside = false;
    for (size_t i = 0; i < g.size(); ++i) {
        if (g[i].code == 0 && g[i].value == "SECTION" && i + 1 < g.size()) inside = g[i + 1].value == name;
        else if (g[i].code == 0 && g[i].value == "ENDSEC") inside = false;
        if (inside) out.push_back(g[i]);
    }
    return out;
}

std::vector<std::string> EntityLayers(const std::vector<TGroup>& g) {
    std::vector<std::string> out;
    for (const auto& x : Section(g, "ENTITIES"))
        if (x.code == 8) out.push_back(x.value);
    return out;
}

void CheckGolden(CZedraEng& eng, enumZEDRA_DXFDWG_VER ver, const std::string& golden) {
    cadtest::CTempDir dir;
    const std::string path = dir.File("small.dxf");
    ASSERT_EQ(Save(eng, path, ver), kSaveOk);
    const std::string bytes = cadtest::ReadAll(path);
    if (std::getenv("ROADX_UPDATE_GOLDEN")) cadtest::WriteAll(kGoldenDir + golden, bytes);
    ASSERT_TRUE(cadtest::Exists(kGoldenDir + golden));
    EXPECT_TRUE(bytes == cadtest::ReadAll(kGoldenDir + golden)) << "differs from " << golden;
}

}  // namespace

TEST(DxfSave, SmallR2000MatchesGoldenFile) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    CheckGolden(eng, ZEDRA_DXFDWG_VER_R2000, "small_r2000.dxf");
}

TEST(DxfSave, SmallR12MatchesGoldenFile) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    CheckGolden(eng, ZEDRA_DXFDWG_VER_R12, "small_r12.dxf");
}

TEST(DxfSave, DiskFullIsMinusOne) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    EXPECT_EQ(Save(eng, "/dev/full"), kSaveDiskFull);
    EXPECT_EQ(Save(eng, "/dev/full", ZEDRA_DXFDWG_VER_R12), kSaveDiskFull);
}

// A file size limit makes write() fail with EFBIG part way: the result is
// "disk full" and the truncated file is removed.
TEST(DxfSave, ShortWriteOnARegularFileIsMinusOneAndLeavesNoFile) {
    CZedraEng eng(0, nullptr, true);
    for (int i = 0; i < 20000; ++i) eng.Add3DFace({}, {double(i), 0, 0}, {double(i) + 1, 0, 0}, {double(i), 1, 0.5});
    cadtest::CTempDir dir;
    const std::string path = dir.File("big.dxf");
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 100000;
    auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const int r = Save(eng, path);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(r, kSaveDiskFull);
    EXPECT_FALSE(cadtest::Exists(path));
}

TEST(DxfSave, NotAllowedIsMinusTwo) {
    CZedraEng eng(0, nullptr, true);
    cadtest::CTempDir dir;
    EXPECT_EQ(Save(eng, dir.File("manca/file.dxf")), kSaveNotAllowed);
    EXPECT_FALSE(cadtest::Exists(dir.File("manca")));
    EXPECT_EQ(Save(eng, dir.Path()), kSaveNotAllowed);  // a folder
    EXPECT_EQ(Save(eng, ""), kSaveNotAllowed);
    EXPECT_EQ(Save(eng, "/sys/kernel/notes"), kSaveNotAllowed);  // read-only, even for root
}

TEST(DxfSave, DwgAndUnknownVersionsWriteNothing) {
    CZedraEng eng(0, nullptr, true);
    cadtest::CTempDir dir;
    const std::string path = dir.File("a.dwg");
    // DWG exists only as R2000.
    EXPECT_EQ(eng.SaveFileDWG(path, false, false, false, false, false, ZEDRA_DXFDWG_VER_R12, 0), kSaveDwgUnsupported);
    EXPECT_FALSE(cadtest::Exists(path));
    EXPECT_EQ(Save(eng, dir.File("a.dxf"), static_cast<enumZEDRA_DXFDWG_VER>(14)), kSaveBadVersion);
    EXPECT_FALSE(cadtest::Exists(dir.File("a.dxf")));
}

TEST(DxfSave, HandlesAreUniqueBelowTheSeedAndOwnersExist) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const auto g = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000);
    std::set<unsigned long long> handles;
    size_t count = 0;
    for (const char* section : {"TABLES", "BLOCKS", "ENTITIES", "OBJECTS"})
        for (const auto& x : Section(g, section))
            if (x.code == 5 || x.code == 105) {
                handles.insert(std::stoull(x.value, nullptr, 16));
                ++count;
            }
    EXPECT_EQ(handles.size(), count);
    const auto seed = ValuesOf(g, "SECTION", 5);  // $HANDSEED is the only handle of the header
    ASSERT_EQ(seed.size(), 1u);
    EXPECT_EQ(*handles.rbegin() + 1, std::stoull(seed[0], nullptr, 16));
    for (const auto& x : g)
        if (x.code == 330 || x.code == 340 || x.code == 350 || x.code == 390) {
            const auto h = std::stoull(x.value, nullptr, 16);
            EXPECT_TRUE(h == 0 || handles.count(h)) << x.code << " " << x.value;
        }
}

TEST(DxfSave, LayersCarryColourAndFlags) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    for (auto ver : {ZEDRA_DXFDWG_VER_R2000, ZEDRA_DXFDWG_VER_R12}) {
        const auto g = SavedGroups(eng, 0, 0, 0, 0, 0, ver);
        const auto names = ValuesOf(g, "LAYER", 2);
        const auto colours = ValuesOf(g, "LAYER", 62);
        const auto flags = ValuesOf(g, "LAYER", 70);
        const std::vector<std::string> wantNames{"0", "Grafica", "Strade", "Nascosto", "Citt\xE0", "Gelo"};
        EXPECT_EQ(names, wantNames);
        EXPECT_EQ(colours, (std::vector<std::string>{"7", "7", "1", "-7", "30", "7"}));
        EXPECT_EQ(flags, (std::vector<std::string>{"0", "0", "0", "4", "0", "1"}));
    }
}

TEST(DxfSave, R12HasNoLwpolylineNoObjectsAndHandlesOnlyOnRequest) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const auto plain = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R12);
    EXPECT_EQ(ValuesOf(plain, "SECTION", 1), std::vector<std::string>{"AC1009"});
    EXPECT_EQ(CountOf(plain, "LWPOLYLINE"), 0);
    EXPECT_EQ(CountOf(plain, "POLYLINE"), 2);
    EXPECT_EQ(CountOf(plain, "VERTEX"), 6);
    EXPECT_EQ(CountOf(plain, "SEQEND"), 2);
    EXPECT_TRUE(Section(plain, "OBJECTS").empty());
    EXPECT_TRUE(Section(plain, "CLASSES").empty());
    EXPECT_EQ(std::count_if(plain.begin(), plain.end(), [](const TGroup& x) { return x.code == 5; }), 0);
    const auto withHandles = SavedGroups(eng, 0, 0, 0, 0, 1, ZEDRA_DXFDWG_VER_R12);
    // Every entity (VERTEX and SEQEND too) has a handle.
    const auto ents = Section(withHandles, "ENTITIES");
    EXPECT_EQ(std::count_if(ents.begin(), ents.end(), [](const TGroup& x) { return x.code == 5; }),
              std::count_if(ents.begin(), ents.end(), [](const TGroup& x) { return x.code == 0; }) - 1);
}

TEST(DxfSave, VisibleAndUnlockedOnlySkipEntitiesOfThoseDrawings) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const auto all = EntityLayers(SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000));
    auto has = [](const std::vector<std::string>& v, const char* n) { return std::count(v.begin(), v.end(), n); };
    EXPECT_GT(has(all, "Nascosto"), 0);
    EXPECT_GT(has(all, "Gelo"), 0);
    const auto visible = EntityLayers(SavedGroups(eng, 1, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000));
    EXPECT_EQ(has(visible, "Nascosto"), 0);  // off
    EXPECT_EQ(has(visible, "Gelo"), 0);      // frozen
    EXPECT_EQ(has(visible, "Strade"), has(all, "Strade"));
    const auto unlocked = EntityLayers(SavedGroups(eng, 0, 1, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000));
    EXPECT_EQ(has(unlocked, "Nascosto"), 0);
    EXPECT_EQ(has(unlocked, "Gelo"), has(all, "Gelo"));
}

TEST(DxfSave, OneDrawingAndUsedDrawingsOnly) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    eng.AddDrawing(0, "Vuoto", true, false, false);
    const uint64_t roads = eng.GetDrawingFromName("Strade");
    const auto only = SavedGroups(eng, 0, 0, 0, 1, 0, ZEDRA_DXFDWG_VER_R2000, roads);
    const auto layers = EntityLayers(only);
    EXPECT_EQ(std::set<std::string>(layers.begin(), layers.end()), std::set<std::string>{"Strade"});
    EXPECT_EQ(layers.size(), 5u);  // LINE, ARC, LWPOLYLINE, TEXT, INSERT
    // "0", the current drawing and the drawings of written entities (the
    // block Simbolo draws on Grafica).
    EXPECT_EQ(ValuesOf(only, "LAYER", 2), (std::vector<std::string>{"0", "Grafica", "Strade"}));
    const auto all = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000, 0);
    EXPECT_EQ(ValuesOf(all, "LAYER", 2).back(), "Vuoto");
    // An unknown drawing handle writes everything.
    const auto unknown = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000, 999999);
    EXPECT_EQ(EntityLayers(unknown), EntityLayers(all));
}

TEST(DxfSave, FlattenWritesEveryZAsZero) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    for (auto ver : {ZEDRA_DXFDWG_VER_R2000, ZEDRA_DXFDWG_VER_R12}) {
        const auto ents = Section(SavedGroups(eng, 0, 0, 1, 0, 0, ver), "ENTITIES");
        int zs = 0;
        for (const auto& x : ents)
            if (x.code == 30 || x.code == 31 || x.code == 32 || x.code == 33 || x.code == 38) {
                EXPECT_EQ(x.value, "0.0") << x.code;
                ++zs;
            }
        EXPECT_GT(zs, 10);
    }
}

TEST(DxfSave, HeaderVariablesFollowDontSaveZedraVars) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    eng.Vars().pdmode = 3;
    auto vars = [](const std::vector<TGroup>& g) {
        std::vector<std::string> v;
        for (const auto& x : Section(g, "HEADER"))
            if (x.code == 9) v.push_back(x.value);
        return v;
    };
    const auto full = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000);
    EXPECT_EQ(vars(full), (std::vector<std::string>{"$ACADVER", "$DWGCODEPAGE", "$HANDSEED", "$INSBASE", "$EXTMIN",
                                                    "$EXTMAX", "$LIMMIN", "$LIMMAX", "$LUPREC", "$CLAYER", "$PDMODE",
                                                    "$PDSIZE", "$MEASUREMENT", "$INSUNITS"}));
    EXPECT_EQ(ValuesOf(full, "SECTION", 3), std::vector<std::string>{"ANSI_1252"});
    eng.DontSaveZedraVars();
    EXPECT_EQ(vars(SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000)),
              (std::vector<std::string>{"$ACADVER", "$DWGCODEPAGE", "$HANDSEED"}));
    EXPECT_EQ(vars(SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R12)),
              (std::vector<std::string>{"$ACADVER", "$DWGCODEPAGE"}));
    EXPECT_EQ(vars(SavedGroups(eng, 0, 0, 0, 0, 1, ZEDRA_DXFDWG_VER_R12)),
              (std::vector<std::string>{"$ACADVER", "$DWGCODEPAGE", "$HANDLING", "$HANDSEED"}));
}

TEST(DxfSave, InvalidAndCollidingNamesAreMadeValidAndUnique) {
    CZedraEng eng(0, nullptr, true);
    const uint64_t a = eng.AddDrawing(0, "a/b", true, false, false);
    const uint64_t b = eng.AddDrawing(0, "A_B", true, false, false);
    const uint64_t blk = eng.AddBlock("*Model_Space", false);
    eng.AddPoint({0, kColorByLayer, blk}, {0, 0, 0});
    eng.AddPoint({a}, {0, 0, 0});
    eng.AddPoint({b}, {0, 0, 0});
    eng.AddInsert({}, blk, {0, 0, 0});
    const auto g = SavedGroups(eng, 0, 0, 0, 0, 0, ZEDRA_DXFDWG_VER_R2000);
    EXPECT_EQ(ValuesOf(g, "LAYER", 2), (std::vector<std::string>{"0", "Grafica", "a_b", "A_B_2"}));
    EXPECT_EQ(EntityLayers(g), (std::vector<std::string>{"a_b", "A_B_2", "Grafica"}));
    EXPECT_EQ(ValuesOf(g, "BLOCK_RECORD", 2), (std::vector<std::string>{"*Model_Space", "*Paper_Space", "_Model_Space"}));
    EXPECT_EQ(ValuesOf(g, "INSERT", 2), std::vector<std::string>{"_Model_Space"});
}
