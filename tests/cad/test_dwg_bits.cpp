// The number encodings and CRCs of the DWG writer against the worked
// examples of the format's published description, and round trips through
// the independent reader of dwg_test_reader.h.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <string>

#include "cad/dwg_bits.h"
#include "cad/dwg_object.h"
#include "cad/dwg_sections.h"
#include "dwg_test_reader.h"

using namespace roadx::cad::dwg;

namespace {

// The bits written so far as a string of 0 and 1.
std::string BitString(const CBitWriter& w) {
    std::string s;
    for (size_t i = 0; i < w.BitPos(); ++i) s += ((w.Bytes()[i / 8] >> (7 - i % 8)) & 1) ? '1' : '0';
    return s;
}

std::vector<uint8_t> Mc(int64_t v) {
    std::vector<uint8_t> out;
    AppendMC(out, v);
    return out;
}

// The header variables section of the published example file: its size,
// data and CRC (the bytes between the two sentinels).
const char* const kExampleHeaderSection =
    "C7010000000007001FBF55D095405B6A51A9431A65AC405023302D02412A4050"
    "1901AA90841906419064190640D469304124C926A666666666724FC9A9999999"
    "999A93F26A6666666666E4FC000000000000E03FAAAA8000000000000E03F000"
    "000000000380FD8000000000000E03F5404B8B56525002D1A60008B565250020"
    "29E000A330F40002330F40003014D510F51105114511D511CA8408CB5781DAF1"
    "54410232D5E076BC5510408CB5781DAF154410232D5E076BC5710408CB5781DA"
    "F15C410232D5E076BC5710000000000000000000000000000000000000000000"
    "00A1000000000000008902A9A9942A10232D5E076BC5510408CB5781DAF15441"
    "0232D5E076BC5510408CB5781DAF15C410232D5E076BC5710408CB5781DAF15C"
    "4000000000000000000000000000000000000000000002840000000000000224"
    "0AA6A65030004000080018000000010290441102409444102B5E8DC0F42B1CFC"
    "000000000000B03F14AE07A17AD4760FC0AD7A3703D0AC73FAA02B5E8DC0F42B"
    "1CFC0AD7A3703D0AB73F86666666666663940640AD7A3703D0AB73FAAAA31013"
    "102310331053106310731083109310A310B510D510E310C51165119511451135"
    "1151D558D4A034264B76E05B27"
    ;

}  // namespace

TEST(DwgBits, BitshortsOfTheWorkedExample) {
    CBitWriter w;
    for (int16_t v : {257, 0, 256, 15, 0}) w.BS(v);
    EXPECT_EQ(BitString(w), "0000000001000000011011010000111110");
}

TEST(DwgBits, NegativeBitshortsUseTheShortForm) {
    CBitWriter w;
    w.BS(-1);
    EXPECT_EQ(BitString(w), "00" "11111111" "11111111");
}

TEST(DwgBits, BitlongsOfTheWorkedExample) {
    CBitWriter w;
    for (int32_t v : {257, 0, 15, 0}) w.BL(v);
    EXPECT_EQ(BitString(w), "000000000100000001000000000000000010010000111110");
    CBitWriter n;
    n.BL(-1);
    EXPECT_EQ(BitString(n), "00" + std::string(32, '1'));
}

TEST(DwgBits, BitdoublesKeepOneAndZeroShortAndEveryOtherBitPattern) {
    CBitWriter w;
    w.BD(1.0);
    w.BD(0.0);
    EXPECT_EQ(BitString(w), "0110");
    CBitWriter v;
    v.BD(-0.0);  // not the short 0.0: the sign must survive
    EXPECT_EQ(BitString(v), "00" + std::string(7 * 8, '0') + "10000000");
    CBitWriter x;
    x.BD(2.5);  // 0x4004000000000000, little-endian bytes
    EXPECT_EQ(BitString(x), "00" + std::string(6 * 8, '0') + "00000100" "01000000");
}

TEST(DwgBits, BitdoublesWithDefaultPatchOnlyTheBytesThatDiffer) {
    const double def = 1.0;  // 00 00 00 00 00 00 F0 3F
    CBitWriter w;
    w.DD(1.0, def);
    EXPECT_EQ(BitString(w), "00");
    CBitWriter low;
    low.DD(std::bit_cast<double>(0x3FF0000000000001ull), def);  // first 4 bytes differ
    EXPECT_EQ(BitString(low), "01" "00000001" "00000000" "00000000" "00000000");
    CBitWriter mid;
    mid.DD(std::bit_cast<double>(0x3FF0ABCD00000002ull), def);  // bytes 5 and 6 differ too
    EXPECT_EQ(BitString(mid), "10" "11001101" "10101011" "00000010" "00000000" "00000000" "00000000");
    CBitWriter full;
    full.DD(-1.0, def);
    EXPECT_EQ(full.BitPos(), 2u + 64u);
    EXPECT_EQ(BitString(full).substr(0, 2), "11");
}

TEST(DwgBits, ThicknessAndExtrusionSpendOneBitOnTheUsualValue) {
    CBitWriter w;
    w.BT(0.0);
    w.BE(0.0, 0.0, 1.0);
    EXPECT_EQ(BitString(w), "11");
    CBitWriter v;
    v.BT(2.0);
    v.BE(0.0, 1.0, 0.0);
    dwgtest::CBitReader r(v.Bytes());
    EXPECT_EQ(r.Bit(), 0u);
    EXPECT_EQ(r.BD(), 2.0);
    EXPECT_EQ(r.Bit(), 0u);
    EXPECT_EQ(r.BD(), 0.0);
    EXPECT_EQ(r.BD(), 1.0);
    EXPECT_EQ(r.BD(), 0.0);
}

TEST(DwgBits, ModularCharsOfTheWorkedExamples) {
    EXPECT_EQ(Mc(4610), (std::vector<uint8_t>{0x82, 0x24}));
    EXPECT_EQ(Mc(112823273), (std::vector<uint8_t>{0xE9, 0x97, 0xE6, 0x35}));
    EXPECT_EQ(Mc(-1413), (std::vector<uint8_t>{0x85, 0x4B}));
    // 0x40 of the last byte is the sign: 64 needs a second byte.
    EXPECT_EQ(Mc(64), (std::vector<uint8_t>{0xC0, 0x00}));
    EXPECT_EQ(Mc(63), (std::vector<uint8_t>{0x3F}));
    EXPECT_EQ(Mc(0), (std::vector<uint8_t>{0x00}));
}

TEST(DwgBits, ModularShortsOfTheWorkedExample) {
    std::vector<uint8_t> out;
    AppendMS(out, 4650033);
    EXPECT_EQ(out, (std::vector<uint8_t>{0x31, 0xF4, 0x8D, 0x00}));
    out.clear();
    AppendMS(out, 27);
    EXPECT_EQ(out, (std::vector<uint8_t>{0x1B, 0x00}));
}

TEST(DwgBits, ModularNumbersRoundTrip) {
    std::mt19937_64 rng(7);
    for (int i = 0; i < 2000; ++i) {
        const int64_t v = static_cast<int64_t>(rng() >> (rng() % 40)) * ((i % 2) ? 1 : -1);
        std::vector<uint8_t> mc;
        AppendMC(mc, v);
        size_t at = 0;
        EXPECT_EQ(dwgtest::ReadMC(mc, at), v);
        EXPECT_EQ(at, mc.size());
        const auto u = static_cast<uint32_t>(rng() >> 33);
        std::vector<uint8_t> ms;
        AppendMS(ms, u);
        at = 0;
        EXPECT_EQ(dwgtest::ReadMS(ms, at), u);
    }
}

TEST(DwgBits, HandleReferencesOfTheWorkedExample) {
    CBitWriter w;
    w.H(kHardPointer, 0x5E7);
    EXPECT_EQ(BitString(w), "0101" "0010" "00000101" "11100111");
    CBitWriter z;
    z.H(kSoftPointer, 0);
    EXPECT_EQ(BitString(z), "0100" "0000");
    CBitWriter big;
    big.H(kHandleOwn, 0x0102030405060708ull);
    dwgtest::CBitReader r(big.Bytes());
    const auto h = r.H();
    EXPECT_EQ(h.code, 0u);
    EXPECT_EQ(h.value, 0x0102030405060708ull);
}

TEST(DwgBits, TextIsAByteCountAndTheBytes) {
    CBitWriter w;
    w.T("DEFPOINTS");
    EXPECT_EQ(BitString(w).substr(0, 10), "01" "00001001");
    dwgtest::CBitReader r(w.Bytes());
    EXPECT_EQ(r.T(), "DEFPOINTS");
    CBitWriter e;
    e.T("");
    EXPECT_EQ(BitString(e), "10");
}

TEST(DwgBits, RandomValuesRoundTripThroughTheReader) {
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    CBitWriter w;
    std::vector<double> doubles;
    std::vector<int32_t> longs;
    for (int i = 0; i < 500; ++i) {
        const double d = std::ldexp(unit(rng), static_cast<int>(rng() % 200) - 100);
        const double def = (i % 3 == 0) ? d : std::nextafter(d, 1e300);
        doubles.push_back(d);
        doubles.push_back(def);
        longs.push_back(static_cast<int32_t>(rng()));
        w.BD(d);
        w.DD(d, def);
        w.BL(longs.back());
        w.BS(static_cast<int16_t>(longs.back()));
        w.RD(d);
    }
    dwgtest::CBitReader r(w.Bytes());
    for (size_t i = 0; i < longs.size(); ++i) {
        const double d = doubles[2 * i], def = doubles[2 * i + 1];
        EXPECT_EQ(std::bit_cast<uint64_t>(r.BD()), std::bit_cast<uint64_t>(d));
        EXPECT_EQ(std::bit_cast<uint64_t>(r.DD(def)), std::bit_cast<uint64_t>(d));
        EXPECT_EQ(r.BL(), longs[i]);
        EXPECT_EQ(r.BS(), static_cast<int16_t>(longs[i]));
        EXPECT_EQ(std::bit_cast<uint64_t>(r.RD()), std::bit_cast<uint64_t>(d));
    }
    EXPECT_EQ(r.Pos(), w.BitPos());
}

TEST(DwgBits, PatchAndAppendKeepEveryBit) {
    CBitWriter a;
    a.Bits(0b101, 3);
    const size_t at = a.BitPos();
    a.RL(0);
    a.B(true);
    a.PatchRL(at, 0xDEADBEEF);
    CBitWriter b;
    b.Bits(0b11001, 5);
    b.H(kHardOwner, 0x1234);
    a.Append(b);
    dwgtest::CBitReader r(a.Bytes());
    EXPECT_EQ(r.Bits(3), 0b101u);
    EXPECT_EQ(r.RL(), 0xDEADBEEFu);
    EXPECT_EQ(r.Bit(), 1u);
    EXPECT_EQ(r.Bits(5), 0b11001u);
    const auto h = r.H();
    EXPECT_EQ(h.code, 3u);
    EXPECT_EQ(h.value, 0x1234u);
    EXPECT_EQ(a.BitPos(), 3u + 32u + 1u + 5u + 8u + 16u);
}

// A raw long patched at every bit offset keeps the bits on both sides, set
// or clear, and reads back whole.
TEST(DwgBits, PatchAtEveryOffsetKeepsTheNeighbours) {
    for (int lead = 0; lead < 8; ++lead)
        for (bool ones : {false, true}) {
            CBitWriter w;
            for (int i = 0; i < lead; ++i) w.B(ones);
            const size_t at = w.BitPos();
            w.RL(ones ? 0xFFFFFFFFu : 0u);
            for (int i = 0; i < 9; ++i) w.B(ones);
            w.PatchRL(at, 0x8C3A5E01u);
            dwgtest::CBitReader r(w.Bytes());
            for (int i = 0; i < lead; ++i) EXPECT_EQ(r.Bit(), ones ? 1u : 0u) << lead;
            EXPECT_EQ(r.RL(), 0x8C3A5E01u) << lead << ones;
            for (int i = 0; i < 9; ++i) EXPECT_EQ(r.Bit(), ones ? 1u : 0u) << lead;
        }
}

// The four-bytes-a-step CRC against the reader's byte-wise one, on every
// length up to 70 (so every tail) and random seeds.
TEST(DwgCrc, MatchesTheBytewiseCrcOnRandomData) {
    std::mt19937 rng(15);
    for (size_t n = 0; n <= 70; ++n) {
        std::vector<uint8_t> data(n);
        for (auto& b : data) b = static_cast<uint8_t>(rng());
        const auto seed = static_cast<uint16_t>(rng());
        EXPECT_EQ(Crc8(seed, data.data(), n), dwgtest::Crc(seed, data.data(), n)) << n;
    }
}

// CRC of the file header of the published example: five locators, so the
// CRC is XORed with 0x3CC4; stored 2D 5C.
TEST(DwgCrc, FileHeaderOfTheWorkedExample) {
    const auto bytes = dwgtest::Hex(
        "41 43 31 30 31 34 00 00 00 00 00 00 01 3F 0C 00 00 00 00 1E 00 05 00 00 00 00 58 00 00 00 ED 01 00 00"
        "01 45 02 00 00 26 00 00 00 02 27 0B 00 00 50 00 00 00 03 77 0B 00 00 35 00 00 00 04 3B 0C 00 00 04 00 00 00");
    ASSERT_EQ(bytes.size(), 70u);
    EXPECT_EQ(Crc8(0, bytes.data(), bytes.size()) ^ FileHeaderCrcMask(5), 0x5C2D);
    EXPECT_EQ(FileHeaderCrcMask(3), 0xA598);
    EXPECT_EQ(FileHeaderCrcMask(4), 0x8101);
    EXPECT_EQ(FileHeaderCrcMask(6), 0x8461);
}

TEST(DwgCrc, HeaderSectionOfTheWorkedExample) {
    const auto bytes = dwgtest::Hex(kExampleHeaderSection);
    ASSERT_EQ(bytes.size(), 461u);
    const size_t n = bytes.size() - 2;
    const uint16_t stored = static_cast<uint16_t>(bytes[n] | (bytes[n + 1] << 8));
    EXPECT_EQ(stored, 0x275B);
    EXPECT_EQ(Crc8(kCrcSeed, bytes.data(), n), stored);
    EXPECT_EQ(dwgtest::Crc(kCrcSeed, bytes.data(), n), stored);
}

// Objects of the published examples: size, data and CRC (seed 0xC0C1, the
// size bytes included), stored little-endian.
TEST(DwgCrc, ObjectsOfTheWorkedExamples) {
    const char* const kObjects[] = {
        "0F 00 41 40 46 E2 48 00 00 05 5B 18 28 87 A0 20 20 2E 8B",                    // ENDBLK
        "11 00 41 80 54 E2 48 00 00 01 5B 60 81 18 28 87 A0 20 08 88 C7",              // SEQEND
        "16 00 41 00 53 A3 D8 00 00 01 5B 20 A9 AB 28 49 89 70 06 0A 21 E8 08 00 39 F3",  // BLOCK
        "0F 00 4C 80 40 A4 80 00 00 09 02 40 30 21 0F 21 99 C3 1D",                    // LAYER CONTROL
    };
    for (const char* hex : kObjects) {
        const auto bytes = dwgtest::Hex(hex);
        const size_t n = bytes.size() - 2;
        ASSERT_EQ(bytes[0] + 2u, n) << hex;
        EXPECT_EQ(Crc8(kCrcSeed, bytes.data(), n), bytes[n] | (bytes[n + 1] << 8)) << hex;
    }
}

TEST(DwgCrc, TableMatchesThePublishedEntries) {
    // The first and last entries of the published table are the CRC of a
    // single byte from seed 0.
    const uint8_t one = 1, two = 2, last = 255;
    EXPECT_EQ(Crc8(0, &one, 1), 0xC0C1);
    EXPECT_EQ(Crc8(0, &two, 1), 0xC181);
    EXPECT_EQ(Crc8(0, &last, 1), 0x4040);
}

TEST(DwgSections, SentinelsAreThePublishedBytes) {
    EXPECT_EQ(dwgtest::Hex("95A04E2899821AE55E41E05F9D3A4D00"), std::vector<uint8_t>(kFileHeaderEnd.begin(), kFileHeaderEnd.end()));
    EXPECT_EQ(dwgtest::Hex("CF7B1F23FDDE38A95F7C68B84E6D335F"), std::vector<uint8_t>(kHeaderBegin.begin(), kHeaderBegin.end()));
    EXPECT_EQ(dwgtest::Hex("3084E0DC0221C756A0839747B192CCA0"), std::vector<uint8_t>(kHeaderEnd.begin(), kHeaderEnd.end()));
    EXPECT_EQ(dwgtest::Hex("8DA1C4B8C4A9F8C5C0DCF45FE7CFB68A"), std::vector<uint8_t>(kClassesBegin.begin(), kClassesBegin.end()));
    EXPECT_EQ(dwgtest::Hex("725E3B473B56073A3F230BA018304975"), std::vector<uint8_t>(kClassesEnd.begin(), kClassesEnd.end()));
    EXPECT_EQ(dwgtest::Hex("D47B21CE28939FBF53244009123CAA01"), std::vector<uint8_t>(kSecondHeaderBegin.begin(), kSecondHeaderBegin.end()));
    EXPECT_EQ(dwgtest::Hex("2B84DE31D76C6040ACDBBFF6EDC355FE"), std::vector<uint8_t>(kSecondHeaderEnd.begin(), kSecondHeaderEnd.end()));
    EXPECT_EQ(dwgtest::Hex("1F256D07D43628289D57CA3F9D44102B"), std::vector<uint8_t>(kImageBegin.begin(), kImageBegin.end()));
    EXPECT_EQ(dwgtest::Hex("E0DA92F82BC9D7D762A835C062BBEFD4"), std::vector<uint8_t>(kImageEnd.begin(), kImageEnd.end()));
}

// A finished object: modular-short size, the bit size of the data before
// the handles, the handle, the handles where the bit size says, the CRC.
TEST(DwgObject, FramingGivesSizeBitSizeHandlesAndCrc) {
    CObjWriter w(kTypeDictionary, 0x1C, {0x0C});
    w.D().BL(0);
    w.D().BS(1);
    w.D().RC(0);
    w.OwnerHandles(0x0C);
    const auto bytes = w.Finish();
    size_t at = 0;
    const uint64_t size = dwgtest::ReadMS(bytes, at);
    ASSERT_EQ(at + size + 2, bytes.size());
    EXPECT_EQ(Crc8(kCrcSeed, bytes.data(), at + size), bytes[at + size] | (bytes[at + size + 1] << 8));
    dwgtest::CBitReader r(bytes.data() + at, size);
    EXPECT_EQ(r.BS(), kTypeDictionary);
    const uint32_t handlesAt = r.RL();
    EXPECT_EQ(r.H().value, 0x1Cu);
    EXPECT_EQ(r.BS(), 0);  // no extended data
    EXPECT_EQ(r.BL(), 1);  // one reactor
    EXPECT_EQ(r.BL(), 0);
    EXPECT_EQ(r.BS(), 1);
    EXPECT_EQ(r.RC(), 0);
    EXPECT_EQ(r.Pos(), handlesAt);
    const auto owner = r.H();
    const auto reactor = r.H();
    const auto xdic = r.H();
    EXPECT_EQ(owner.code, 4u);
    EXPECT_EQ(owner.value, 0x0Cu);
    EXPECT_EQ(reactor.value, 0x0Cu);
    EXPECT_EQ(xdic.code, 3u);
    EXPECT_EQ(xdic.value, 0u);
    EXPECT_LE(size * 8 - r.Pos(), 7u);  // only padding is left
}

TEST(DwgSections, ObjectMapSectionsRestartAndStayBelowTheLimit) {
    std::vector<TMapEntry> entries;
    for (uint32_t i = 0; i < 3000; ++i) entries.push_back({1 + i * 3, 0x1000 + i * 97});
    const auto map = ObjectMap(entries);
    size_t at = 0;
    size_t read = 0;
    while (true) {
        const size_t size = (map.at(at) << 8) | map.at(at + 1);
        ASSERT_LE(size, kMapSectionMax);
        const uint16_t crc = static_cast<uint16_t>((map.at(at + size) << 8) | map.at(at + size + 1));
        EXPECT_EQ(dwgtest::Crc(kCrcSeed, map.data() + at, size), crc);
        if (size == 2) break;
        std::vector<uint8_t> sec(map.begin() + static_cast<long>(at) + 2, map.begin() + static_cast<long>(at + size));
        int64_t handle = 0, loc = 0;  // every section starts from 0
        for (size_t i = 0; i < sec.size();) {
            handle += dwgtest::ReadMC(sec, i);
            loc += dwgtest::ReadMC(sec, i);
            ASSERT_LT(read, entries.size());
            EXPECT_EQ(static_cast<uint64_t>(handle), entries[read].handle);
            EXPECT_EQ(static_cast<uint64_t>(loc), entries[read].location);
            ++read;
        }
        at += size + 2;
    }
    EXPECT_EQ(read, entries.size());
    EXPECT_EQ(at + 4, map.size());
    EXPECT_GT(at, 2 * kMapSectionMax);  // several sections were needed
}
