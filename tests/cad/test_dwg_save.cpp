// DWG files of the engine taken apart with the independent reader of
// dwg_test_reader.h: file header and locators, sections with their
// sentinels and CRCs, the object map, every object's size and CRC, the
// handles (the same objects as the DXF of the same engine and flags), and
// the results of the save call.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "cad/dwg_sections.h"
#include "cad_test_util.h"
#include "dwg_test_reader.h"

using namespace roadx::cad;
using dwgtest::CBitReader;

namespace {

struct TSaveFlags {
    bool visibleOnly = false, unlockedOnly = false, flatten = false, used = false;
    uint64_t drawing = 0;
};

std::vector<uint8_t> SaveDwg(CZedraEng& eng, const TSaveFlags& f = {}) {
    cadtest::CTempDir dir;
    const std::string path = dir.File("a.dwg");
    EXPECT_EQ(eng.SaveFileDWG(path, f.visibleOnly, f.unlockedOnly, f.flatten, f.used, false, ZEDRA_DXFDWG_VER_R2000,
                              f.drawing),
              kSaveOk);
    const std::string s = cadtest::ReadAll(path);
    return {s.begin(), s.end()};
}

// Handles of every object of the DXF file of the same engine and flags,
// and its $HANDSEED (the first handle it leaves unused).
std::set<uint64_t> DxfHandles(CZedraEng& eng, const TSaveFlags& f = {}) {
    cadtest::CTempDir dir;
    const std::string path = dir.File("a.dxf");
    EXPECT_EQ(eng.SaveFileDXF(path, f.visibleOnly, f.unlockedOnly, f.flatten, f.used, false, ZEDRA_DXFDWG_VER_R2000,
                              f.drawing),
              kSaveOk);
    std::set<uint64_t> out;
    for (const auto& g : cadtest::Groups(cadtest::ReadAll(path)))
        if (g.code == 5 || g.code == 105) out.insert(std::stoull(g.value, nullptr, 16));
    return out;
}

uint32_t Le32(const std::vector<uint8_t>& d, size_t at) {
    return d.at(at) | (d.at(at + 1) << 8) | (d.at(at + 2) << 16) | (static_cast<uint32_t>(d.at(at + 3)) << 24);
}

bool SentinelAt(const std::vector<uint8_t>& d, size_t at, const dwg::TSentinel& s) {
    return at + 16 <= d.size() && std::equal(s.begin(), s.end(), d.begin() + static_cast<long>(at));
}

struct TObject {
    uint64_t handle;
    int type;
    size_t at;     // offset of the size
    size_t data;   // offset of the bit data
    size_t size;   // bytes of bit data
};

// Walks the whole file, checking every sentinel, size and CRC on the way.
struct TParsed {
    uint32_t locator[5][2] = {};
    std::vector<TObject> objects;
};

TParsed Parse(const std::vector<uint8_t>& d) {
    TParsed p;
    EXPECT_EQ(std::string(d.begin(), d.begin() + 6), "AC1015");
    EXPECT_EQ(d.at(0x13) | (d.at(0x14) << 8), dwg::kCodePage1252);
    EXPECT_EQ(Le32(d, 0x15), 5u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(d.at(0x19 + 9 * i), i);
        p.locator[i][0] = Le32(d, 0x19 + 9 * i + 1);
        p.locator[i][1] = Le32(d, 0x19 + 9 * i + 5);
    }
    const size_t crcAt = 0x19 + 45;
    EXPECT_EQ(dwgtest::Crc(0, d.data(), crcAt) ^ 0x3CC4, d.at(crcAt) | (d.at(crcAt + 1) << 8));
    EXPECT_TRUE(SentinelAt(d, crcAt + 2, dwg::kFileHeaderEnd));

    // Header variables and classes: sentinel, size, data, CRC, sentinel,
    // exactly as long as their locators say.
    const dwg::TSentinel* kBegin[2] = {&dwg::kHeaderBegin, &dwg::kClassesBegin};
    const dwg::TSentinel* kEnd[2] = {&dwg::kHeaderEnd, &dwg::kClassesEnd};
    for (int s = 0; s < 2; ++s) {
        const size_t at = p.locator[s][0];
        EXPECT_TRUE(SentinelAt(d, at, *kBegin[s]));
        const uint32_t size = Le32(d, at + 16);
        EXPECT_EQ(16 + 4 + size + 2 + 16, p.locator[s][1]);
        const size_t crc = at + 20 + size;
        EXPECT_EQ(dwgtest::Crc(0xC0C1, d.data() + at + 16, size + 4), d.at(crc) | (d.at(crc + 1) << 8));
        EXPECT_TRUE(SentinelAt(d, crc + 2, *kEnd[s]));
    }

    // The object map, then every object it names.
    size_t at = p.locator[2][0];
    const size_t mapEnd = at + p.locator[2][1];
    while (at < mapEnd) {
        const size_t size = (d.at(at) << 8) | d.at(at + 1);
        EXPECT_EQ(dwgtest::Crc(0xC0C1, d.data() + at, size), (d.at(at + size) << 8) | d.at(at + size + 1));
        std::vector<uint8_t> sec(d.begin() + static_cast<long>(at) + 2, d.begin() + static_cast<long>(at + size));
        int64_t handle = 0, loc = 0;
        for (size_t i = 0; i < sec.size();) {
            handle += dwgtest::ReadMC(sec, i);
            loc += dwgtest::ReadMC(sec, i);
            TObject o{static_cast<uint64_t>(handle), 0, static_cast<size_t>(loc), 0, 0};
            size_t j = o.at;
            std::vector<uint8_t> head(d.begin() + static_cast<long>(j), d.begin() + static_cast<long>(j + 4));
            size_t k = 0;
            o.size = dwgtest::ReadMS(head, k);
            o.data = j + k;
            EXPECT_EQ(dwgtest::Crc(0xC0C1, d.data() + j, k + o.size),
                      d.at(o.data + o.size) | (d.at(o.data + o.size + 1) << 8))
                << "object " << std::hex << o.handle;
            CBitReader r(d.data() + o.data, o.size);
            o.type = r.BS();
            const uint32_t handlesAt = r.RL();
            EXPECT_LE(handlesAt, o.size * 8);
            EXPECT_EQ(r.H().value, o.handle);
            p.objects.push_back(o);
        }
        at += size + 2;
        if (size == 2) break;
    }
    EXPECT_EQ(at, mapEnd);

    EXPECT_EQ(p.locator[3][1], 53u);  // free space record
    EXPECT_EQ(p.locator[4][1], 4u);   // template: MEASUREMENT
    const size_t second = p.locator[4][0] + 4;
    EXPECT_TRUE(SentinelAt(d, second, dwg::kSecondHeaderBegin));
    const uint32_t size = Le32(d, second + 16);
    const size_t crc = second + 20 + size;
    EXPECT_EQ(dwgtest::Crc(0xC0C1, d.data() + second + 16, size + 4), d.at(crc) | (d.at(crc + 1) << 8));
    EXPECT_TRUE(SentinelAt(d, crc + 2, dwg::kSecondHeaderEnd));
    EXPECT_EQ(Le32(d, 0x0D), crc + 18);  // the image data follows
    EXPECT_TRUE(SentinelAt(d, crc + 18, dwg::kImageBegin));
    EXPECT_TRUE(SentinelAt(d, d.size() - 16, dwg::kImageEnd));
    return p;
}

std::string Diff(const std::set<uint64_t>& a, const std::set<uint64_t>& b) {
    std::string s;
    for (uint64_t h : a)
        if (!b.count(h)) s += " +" + std::to_string(h);
    for (uint64_t h : b)
        if (!a.count(h)) s += " -" + std::to_string(h);
    return s;
}

std::set<uint64_t> Handles(const TParsed& p) {
    std::set<uint64_t> out;
    for (const auto& o : p.objects) out.insert(o.handle);
    EXPECT_EQ(out.size(), p.objects.size());  // no handle twice
    return out;
}

}  // namespace

TEST(DwgSave, EveryPartIsWhereTheLocatorsSayWithValidCrcs) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const auto p = Parse(SaveDwg(eng));
    EXPECT_GT(p.objects.size(), 50u);
}

// The DWG has the objects of the DXF, with the same handles, plus the
// viewport entity header table that only DWG files have, which takes the
// first handle the DXF leaves unused.
TEST(DwgSave, HandlesAreTheDxfHandles) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const auto expected = DxfHandles(eng);
    const auto got = Handles(Parse(SaveDwg(eng)));
    EXPECT_EQ(got, expected) << Diff(got, expected);
}

TEST(DwgSave, FiltersAndTheDrawingHandleChooseTheSameObjectsAsTheDxf) {
    CZedraEng eng(0, nullptr, true);
    cadtest::BuildSmallDrawing(eng);
    const uint64_t roads = eng.GetDrawingFromName("Strade");
    for (const TSaveFlags f : {TSaveFlags{true, false, false, false, 0}, TSaveFlags{false, true, false, false, 0},
                               TSaveFlags{false, false, false, true, 0}, TSaveFlags{true, true, false, true, roads},
                               TSaveFlags{false, false, false, false, 999999}}) {
        const auto expected = DxfHandles(eng, f);
        const auto p = Parse(SaveDwg(eng, f));
        EXPECT_EQ(Handles(p), expected) << Diff(Handles(p), expected);
    }
}

TEST(DwgSave, FlattenWritesEveryZAsZero) {
    CZedraEng eng(0, nullptr, true);
    eng.AddLine({}, {1, 2, 3}, {4, 5, 6});
    const auto d = SaveDwg(eng, {false, false, true, false, 0});
    int lines = 0;
    for (const auto& o : Parse(d).objects) {
        if (o.type != 0x13) continue;
        ++lines;
        CBitReader r(d.data() + o.data, o.size);
        r.BS();
        r.RL();
        r.H();
        EXPECT_EQ(r.BS(), 0);     // no extended data
        EXPECT_EQ(r.Bit(), 0u);   // no graphic
        EXPECT_EQ(r.BB(), 2u);    // model space
        EXPECT_EQ(r.BL(), 0);     // no reactors
        EXPECT_EQ(r.Bit(), 0u);   // links given
        EXPECT_EQ(r.BS(), 256);   // by layer
        EXPECT_EQ(r.BD(), 1.0);
        r.BB();
        r.BB();
        r.BS();
        r.RC();
        EXPECT_EQ(r.Bit(), 1u);  // the z values are zero
        EXPECT_EQ(r.RD(), 1.0);
        EXPECT_EQ(r.DD(1.0), 4.0);
        EXPECT_EQ(r.RD(), 2.0);
        EXPECT_EQ(r.DD(2.0), 5.0);
    }
    EXPECT_EQ(lines, 1);
}

TEST(DwgSave, SameEngineGivesTheSameBytes) {
    CZedraEng a(0, nullptr, true), b(0, nullptr, true);
    cadtest::BuildSmallDrawing(a);
    cadtest::BuildSmallDrawing(b);
    EXPECT_EQ(SaveDwg(a), SaveDwg(b));
    b.Vars().pdmode = 3;
    EXPECT_NE(SaveDwg(a), SaveDwg(b));
    b.DontSaveZedraVars();
    a.DontSaveZedraVars();
    EXPECT_EQ(SaveDwg(a), SaveDwg(b));  // the variables are not written
}

TEST(DwgSave, ResultsOfTheSaveCall) {
    CZedraEng eng(0, nullptr, true);
    eng.AddPoint({}, {1, 2, 3});
    cadtest::CTempDir dir;
    EXPECT_EQ(eng.SaveFileDWG(dir.File("manca/a.dwg"), false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0),
              kSaveNotAllowed);
    EXPECT_FALSE(cadtest::Exists(dir.File("manca")));
    EXPECT_EQ(eng.SaveFileDWG(dir.Path(), false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0), kSaveNotAllowed);
    EXPECT_EQ(eng.SaveFileDWG("", false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0), kSaveNotAllowed);
    EXPECT_EQ(eng.SaveFileDWG("/dev/full", false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0), kSaveDiskFull);
    EXPECT_EQ(eng.SaveFileDWG(dir.File("a.dwg"), false, false, false, false, false, ZEDRA_DXFDWG_VER_R12, 0),
              kSaveDwgUnsupported);
    EXPECT_EQ(eng.SaveFileDWG(dir.File("a.dwg"), false, false, false, false, false,
                              static_cast<enumZEDRA_DXFDWG_VER>(14), 0),
              kSaveBadVersion);
    EXPECT_FALSE(cadtest::Exists(dir.File("a.dwg")));
    EXPECT_EQ(eng.SaveFileDWG(dir.File("a.dwg"), false, false, false, false, false, ZEDRA_DXFDWG_VER_R2000, 0), kSaveOk);
    EXPECT_GT(cadtest::ReadAll(dir.File("a.dwg")).size(), 1000u);
}

TEST(DwgSave, AnEmptyEngineGivesAValidFile) {
    CZedraEng eng(0, nullptr, true);
    const auto p = Parse(SaveDwg(eng));
    EXPECT_EQ(Handles(p), DxfHandles(eng));
}
