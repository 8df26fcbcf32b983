#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "vesk/bit_stream_reader.h"

namespace {

TEST(BitStreamReader, ReadsLittleEndianValues) {
    std::vector<uint8_t> b = {0x34, 0x12, 0x78, 0x56, 0x34, 0x12};
    const double d = -1234.5e-7;
    uint8_t raw[8];
    std::memcpy(raw, &d, 8);  // the test host is little-endian
    b.insert(b.end(), raw, raw + 8);
    vesk::CBitStreamReader r(b.size(), b.data());
    EXPECT_EQ(r.ReadRawShort(), 0x1234);
    EXPECT_EQ(r.ReadRawInt(), 0x12345678u);
    EXPECT_EQ(r.ReadDouble(), d);
    EXPECT_TRUE(r.Good());
    EXPECT_EQ(r.Remaining(), 0u);
}

TEST(BitStreamReader, ReadPastTheEndFailsStickyAndYieldsZero) {
    const uint8_t b[3] = {1, 2, 3};
    vesk::CBitStreamReader r(sizeof b, b);
    EXPECT_EQ(r.ReadRawShort(), 0x0201);
    EXPECT_EQ(r.ReadRawShort(), 0);  // only one byte left
    EXPECT_TRUE(r.Failed());
    EXPECT_TRUE(r.Seek(0));
    EXPECT_EQ(r.ReadRawShort(), 0x0201);
    EXPECT_TRUE(r.Failed()) << "the failure is sticky until cleared";
    r.ClearFailure();
    EXPECT_TRUE(r.Good());
}

TEST(BitStreamReader, SeekBeyondSizeFails) {
    const uint8_t b[4] = {0, 0, 0, 0};
    vesk::CBitStreamReader r(sizeof b, b);
    EXPECT_TRUE(r.Seek(4));  // the end itself is a valid position
    EXPECT_FALSE(r.Failed());
    EXPECT_FALSE(r.Seek(5));
    EXPECT_TRUE(r.Failed());
    EXPECT_EQ(r.GetPos(), 4u);
    EXPECT_FALSE(r.Seek(0xFFFFFFFEu));
}

TEST(BitStreamReader, ReadBytesZeroFillsOnShortBuffer) {
    const uint8_t b[5] = {9, 8, 7, 6, 5};
    vesk::CBitStreamReader r(sizeof b, b);
    r.Seek(2);
    uint8_t out[6];
    std::memset(out, 0xAA, sizeof out);
    EXPECT_FALSE(r.ReadBytes(sizeof out, out));
    for (uint8_t c : out) EXPECT_EQ(c, 0);
    EXPECT_TRUE(r.Failed());
}

TEST(BitStreamReader, EveryReadStaysInsideAnOddSizedHeapBuffer) {
    // Under AddressSanitizer any byte read outside the buffer aborts the test.
    for (size_t size = 0; size < 20; ++size) {
        std::vector<uint8_t> heap(size, 0x5A);
        vesk::CBitStreamReader r(size, heap.data());
        for (int i = 0; i < 10; ++i) {
            r.ReadDouble();
            r.ReadRawInt();
            r.ReadRawShort();
        }
        EXPECT_EQ(r.Failed(), size < 14 * 10);
    }
}

TEST(BitStreamReader, NullBufferIsEmpty) {
    vesk::CBitStreamReader r(100, nullptr);
    EXPECT_EQ(r.GetSize(), 0u);
    EXPECT_EQ(r.ReadRawInt(), 0u);
    EXPECT_TRUE(r.Failed());
}

}  // namespace
