// Byte-level tests of every RD3 record: encoders against bytes written out by
// hand, decoders against the same bytes, and decoders on records cut short.
#include <gtest/gtest.h>

#include <cmath>

#include "rd3/rd3_records.h"
#include "rd3_test_util.h"

using namespace roadx::rd3;
using rd3test::AsciiName;
using rd3test::Cat;
using rd3test::Hex;
using rd3test::Zeros;

namespace {

// Doubles as their little-endian bytes (checked with an independent tool).
const char* k15_24 = "7b 14 ae 47 e1 7a 2e 40";
const char* k2em308 = "a4 d1 33 f0 ac 61 0e 00";
const char* k2e100 = "7d c3 94 25 ad 49 c2 54";
const char* k1_5 = "00 00 00 00 00 00 f8 3f";
const char* k100 = "00 00 00 00 00 00 59 40";
const char* k250 = "00 00 00 00 00 40 6f 40";
const char* k0_25 = "00 00 00 00 00 00 d0 3f";
const char* k1234_5 = "00 00 00 00 00 4a 93 40";
const char* k987_25 = "00 00 00 00 00 da 8e 40";
const char* k3 = "00 00 00 00 00 00 08 40";
const char* kM0_5 = "00 00 00 00 00 00 e0 bf";
const char* k7_5 = "00 00 00 00 00 00 1e 40";
const char* k0 = "00 00 00 00 00 00 00 00";

std::vector<uint8_t> H(std::initializer_list<const char*> parts) {
    std::vector<uint8_t> out;
    for (const char* p : parts) {
        auto b = Hex(p);
        out.insert(out.end(), b.begin(), b.end());
    }
    return out;
}

// Header bytes: type, 18, data size, next, prev.
std::vector<uint8_t> Hdr(const char* type, const char* size, const char* prev = "fe ff ff ff",
                         const char* next = "fe ff ff ff") {
    return H({type, "12 00 00 00", size, next, prev});
}

vesk::CBitStreamReader DataReader(const std::vector<uint8_t>& rec) {
    vesk::CBitStreamReader r(rec.size(), rec.data());
    r.Seek(kRecHeaderSize);
    return r;
}

}  // namespace

TEST(Rd3Records, FileHeaderIs218BytesWithSignatureVersionNameAndDirectory) {
    const auto got = EncodeFileHeader(u"Strada 1");
    const auto want = Cat({Hex("54 6f 70 63 6f 6e 20 52 44 33 00 00 00 00 00 00"),  // signature
                           Hex("02 00 00 00 01 00 00 00 00 00 00 00"),               // version 2.1.0
                           Hex("21 00"),                                             // 33 units
                           AsciiName("Strada 1"), Hex("14 00"),                      // 20 slots
                           Hex("01 00 fe ff ff ff  02 00 fe ff ff ff  05 00 fe ff ff ff  03 00 fe ff ff ff"),
                           Hex("00 00"), Zeros(94)});
    ASSERT_EQ(want.size(), 218u);
    EXPECT_EQ(rd3test::ToHex(got), rd3test::ToHex(want));
}

TEST(Rd3Records, DirectoryReadsFourSlotsFrom98) {
    auto img = EncodeFileHeader(u"x");
    img[100] = 0xDA;  // slot 1 offset = 218
    img[101] = 0;
    img[102] = 0;
    img[103] = 0;
    vesk::CBitStreamReader r(img.size(), img.data());
    RD3DirSlot s[4];
    ASSERT_TRUE(ReadDirectory(r, s));
    EXPECT_EQ(s[0].tag, 1);
    EXPECT_EQ(s[0].offset, 218u);
    EXPECT_EQ(s[1].tag, 2);
    EXPECT_EQ(s[1].offset, kNoRecord);
    EXPECT_EQ(s[2].tag, 5);
    EXPECT_EQ(s[3].tag, 3);
    EXPECT_EQ(s[3].offset, kNoRecord);
    // A file that ends inside the directory.
    std::vector<uint8_t> cut(img.begin(), img.begin() + 110);
    vesk::CBitStreamReader rc(cut.size(), cut.data());
    EXPECT_FALSE(ReadDirectory(rc, s));
}

TEST(Rd3Records, RecordHeaderRoundTrip) {
    const auto b = EncodeRecHeader(21, 70, 0x1234, 0xABCDEF01);
    EXPECT_EQ(b, Hex("15 00 12 00 00 00 46 00 00 00 01 ef cd ab 34 12 00 00"));
    vesk::CBitStreamReader r(b.size(), b.data());
    RD3RecHeader h;
    ASSERT_TRUE(ReadRecHeader(r, h));
    EXPECT_EQ(h.type, 21);
    EXPECT_EQ(h.headerSize, 18u);
    EXPECT_EQ(h.dataSize, 70u);
    EXPECT_EQ(h.next, 0xABCDEF01u);
    EXPECT_EQ(h.prev, 0x1234u);
    vesk::CBitStreamReader cut(17, b.data());
    EXPECT_FALSE(ReadRecHeader(cut, h));
}

TEST(Rd3Records, RoadRecord) {
    RD3RoadRecord rec;
    rec.y = 1234.5;
    rec.x = 987.25;
    rec.azimuth = 1.5;
    rec.prog = 100.0;
    const auto got = EncodeRoadRecord(rec);
    const auto want = Cat({Hdr("01 00", "30 00 00 00"), H({k1234_5, k987_25, k2em308, k1_5, k100, k15_24})});
    EXPECT_EQ(rd3test::ToHex(got), rd3test::ToHex(want));
    auto r = DataReader(got);
    RD3RoadRecord back;
    ASSERT_TRUE(ReadRoadData(r, back));
    EXPECT_EQ(back.y, 1234.5);
    EXPECT_EQ(back.x, 987.25);
    EXPECT_EQ(back.azimuth, 1.5);
    EXPECT_EQ(back.prog, 100.0);
    // The reader takes five doubles: 15.24 is never needed.
    vesk::CBitStreamReader five(18 + 40, got.data());
    five.Seek(18);
    EXPECT_TRUE(ReadRoadData(five, back));
    vesk::CBitStreamReader four(18 + 39, got.data());
    four.Seek(18);
    EXPECT_FALSE(ReadRoadData(four, back));
}

TEST(Rd3Records, StraightRecord) {
    const auto got = EncodeStraightRecord({1.5, 250.0}, 218);
    EXPECT_EQ(got, Cat({Hdr("02 00", "10 00 00 00", "da 00 00 00"), H({k1_5, k250})}));
    auto r = DataReader(got);
    RD3StraightRecord back;
    ASSERT_TRUE(ReadStraightData(r, back));
    EXPECT_EQ(back.azimuth, 1.5);
    EXPECT_EQ(back.length, 250.0);
    vesk::CBitStreamReader cut(got.size() - 1, got.data());
    cut.Seek(18);
    EXPECT_FALSE(ReadStraightData(cut, back));
}

TEST(Rd3Records, ArcRecordLongAndShortForms) {
    RD3ArcRecord arc{1, 250.0, 100.0, true, 0.25};
    const auto got = EncodeArcRecord(arc, 0x10);
    EXPECT_EQ(got, Cat({Hdr("04 00", "1c 00 00 00", "10 00 00 00"), Hex("01 00 00 00"), H({k250, k100, k0_25})}));
    arc.hasAzimuth = false;
    arc.sense = 0;
    const auto shortRec = EncodeArcRecord(arc, 0x10);
    EXPECT_EQ(shortRec, Cat({Hdr("04 00", "14 00 00 00", "10 00 00 00"), Hex("00 00 00 00"), H({k250, k100})}));

    RD3ArcRecord back;
    auto r = DataReader(got);
    ASSERT_TRUE(ReadArcData(r, 28, back));
    EXPECT_EQ(back.sense, 1u);
    EXPECT_EQ(back.radius, 250.0);
    EXPECT_EQ(back.length, 100.0);
    EXPECT_TRUE(back.hasAzimuth);
    EXPECT_EQ(back.azimuth, 0.25);
    auto rs = DataReader(shortRec);
    ASSERT_TRUE(ReadArcData(rs, 20, back));
    EXPECT_FALSE(back.hasAzimuth);
    EXPECT_EQ(back.sense, 0u);
    // Only exactly 28 is the long form: 32 reads as short.
    auto r32 = DataReader(got);
    ASSERT_TRUE(ReadArcData(r32, 32, back));
    EXPECT_FALSE(back.hasAzimuth);
    // The long form cut short fails.
    vesk::CBitStreamReader cut(got.size() - 4, got.data());
    cut.Seek(18);
    EXPECT_FALSE(ReadArcData(cut, 28, back));
}

TEST(Rd3Records, ClothoidRecordLongAndShortForms) {
    RD3ClotRecord c{1, 0, 250.0, 100.0, true, 1.5, 2e100};
    const auto got = EncodeClotRecord(c, 0x20);
    EXPECT_EQ(got, Cat({Hdr("03 00", "28 00 00 00", "20 00 00 00"), Hex("01 00 00 00 00 00 00 00"),
                        H({k250, k100, k1_5, k2e100})}));
    c.isLong = false;
    const auto shortRec = EncodeClotRecord(c, 0x20);
    EXPECT_EQ(shortRec,
              Cat({Hdr("03 00", "18 00 00 00", "20 00 00 00"), Hex("01 00 00 00 00 00 00 00"), H({k250, k100})}));

    RD3ClotRecord back;
    auto r = DataReader(got);
    ASSERT_TRUE(ReadClotData(r, 40, back));
    EXPECT_EQ(back.entry, 1u);
    EXPECT_EQ(back.sense, 0u);
    EXPECT_EQ(back.r1, 250.0);
    EXPECT_EQ(back.length, 100.0);
    EXPECT_TRUE(back.isLong);
    EXPECT_EQ(back.azimuth, 1.5);
    EXPECT_EQ(back.r2, 2e100);
    auto rs = DataReader(shortRec);
    ASSERT_TRUE(ReadClotData(rs, 24, back));
    EXPECT_FALSE(back.isLong);
    vesk::CBitStreamReader cut(got.size() - 1, got.data());
    cut.Seek(18);
    EXPECT_FALSE(ReadClotData(cut, 40, back));
}

TEST(Rd3Records, ProfileAndVertexRecords) {
    EXPECT_EQ(EncodeProfileRecord(), Cat({Hdr("0a 00", "08 00 00 00"), H({k0})}));
    const auto v = EncodeVertexRecord({100.0, 250.0, false, 0.0}, 0xDA);
    EXPECT_EQ(v, Cat({Hdr("0b 00", "10 00 00 00", "da 00 00 00"), H({k100, k250})}));
    const auto c = EncodeVertexRecord({100.0, 250.0, true, 7.5}, 0xDA);
    EXPECT_EQ(c, Cat({Hdr("0c 00", "18 00 00 00", "da 00 00 00"), H({k100, k250, k7_5})}));

    RD3VertexRecord back;
    auto r = DataReader(c);
    ASSERT_TRUE(ReadVertexData(r, 12, back));
    EXPECT_TRUE(back.hasCurve);
    EXPECT_EQ(back.curveLength, 7.5);
    auto r11 = DataReader(v);
    ASSERT_TRUE(ReadVertexData(r11, 11, back));
    EXPECT_FALSE(back.hasCurve);
    EXPECT_EQ(back.prog, 100.0);
    EXPECT_EQ(back.elevation, 250.0);
    EXPECT_EQ(back.curveLength, 0.0);
    vesk::CBitStreamReader cut(v.size(), v.data());  // a type 12 read on a type 11 body
    cut.Seek(18);
    EXPECT_FALSE(ReadVertexData(cut, 12, back));
}

TEST(Rd3Records, CompactTemplateWithInlineEntries) {
    const std::vector<RD3SegmentEntry> entries = {{26, 0.0, -0.5}, {25, 3.0, 100.0}, {24, 0.25, 1.5}};
    const auto got = EncodeTemplateRecord(u"Sez", entries, 0x40);
    const auto entry = [](const char* code, const char* a, const char* b) {
        return Cat({Zeros(66), Hex(code), Hex("03 00"), H({a, b}), Zeros(16)});
    };
    const auto want = Cat({Hdr("15 00", "46 00 00 00", "40 00 00 00"), AsciiName("Sez"), Hex("03 00 66 00"),
                           entry("1a 00", k0, kM0_5),
                           entry("17 00", k3, k100),  // code 25 goes out as 23
                           entry("18 00", k0_25, k1_5)});
    ASSERT_EQ(want.size(), 18u + 70u + 3u * 102u);
    EXPECT_EQ(rd3test::ToHex(got), rd3test::ToHex(want));

    vesk::CBitStreamReader r(got.size(), got.data());
    r.Seek(18);
    RD3Name name;
    ASSERT_TRUE(ReadNameField(r, name));
    EXPECT_EQ(name, u"Sez");
    EXPECT_EQ(r.ReadRawShort(), 3);
    EXPECT_EQ(r.ReadRawShort(), 102);
    RD3SegmentEntry e;
    ASSERT_TRUE(ReadSegmentEntry(r, e));
    EXPECT_EQ(e.code, 26);
    EXPECT_EQ(e.v2, -0.5);
    ASSERT_TRUE(ReadSegmentEntry(r, e));
    EXPECT_EQ(e.code, 23);
    EXPECT_EQ(e.v1, 3.0);
    EXPECT_EQ(e.v2, 100.0);
    ASSERT_TRUE(ReadSegmentEntry(r, e));
    EXPECT_EQ(e.code, 24);
    EXPECT_FALSE(ReadSegmentEntry(r, e));  // nothing left
}

TEST(Rd3Records, ExtendedLayoutRecords) {
    EXPECT_EQ(EncodeNameOnlyTemplateRecord(u"T", 0x30), Cat({Hdr("15 00", "42 00 00 00", "30 00 00 00"),
                                                             AsciiName("T")}));
    EXPECT_EQ(EncodeLayout2SegmentRecord({22, 0.25, 3.0}, 0x30),
              Cat({Hdr("1d 00", "66 00 00 00", "30 00 00 00"), Zeros(66), Hex("16 00 03 00"), H({k0_25, k3}),
                   Zeros(16)}));
    EXPECT_EQ(EncodeLayout3SegmentRecord({24, 0.25, 3.0}, 0x30),
              Cat({Hdr("18 00", "10 00 00 00", "30 00 00 00"), H({k0_25, k3})}));
}

TEST(Rd3Records, AssignmentListAndChain) {
    const std::vector<RD3AssignEntry> list = {{u"A", 100.0, 1}, {u"B", 250.0, 2}};
    const auto got = EncodeAssignListRecord(list);
    const auto want = Cat({Hdr("1f 00", "04 00 00 00"), Hex("02 00 4e 00"), AsciiName("A"), H({k100}),
                           Hex("01 00 00 00"), AsciiName("B"), H({k250}), Hex("02 00 00 00")});
    EXPECT_EQ(rd3test::ToHex(got), rd3test::ToHex(want));
    const auto chain = EncodeAssignChainRecord({u"C", 3.0, 3}, 0x99);
    EXPECT_EQ(chain, Cat({Hdr("14 00", "4e 00 00 00", "99 00 00 00"), AsciiName("C"), H({k3}), Hex("03 00 00 00")}));

    vesk::CBitStreamReader r(got.size(), got.data());
    r.Seek(22);
    RD3AssignEntry e;
    ASSERT_TRUE(ReadAssignEntry(r, e));
    EXPECT_EQ(e.name, u"A");
    EXPECT_EQ(e.prog, 100.0);
    EXPECT_EQ(e.side, 1u);
    ASSERT_TRUE(ReadAssignEntry(r, e));
    EXPECT_EQ(e.name, u"B");
    EXPECT_EQ(e.side, 2u);
    EXPECT_FALSE(ReadAssignEntry(r, e));
}

TEST(Rd3Records, StickyFailureAfterASeekPastTheEnd) {
    const auto b = EncodeProfileRecord();
    vesk::CBitStreamReader r(b.size(), b.data());
    EXPECT_FALSE(r.Seek(1000));
    RD3RecHeader h;
    EXPECT_FALSE(ReadRecHeader(r, h));
    r.ClearFailure();
    r.Seek(0);
    EXPECT_TRUE(ReadRecHeader(r, h));
    EXPECT_EQ(h.type, 10);
}
