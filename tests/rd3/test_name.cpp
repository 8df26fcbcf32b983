#include <gtest/gtest.h>

#include "rd3/rd3_name.h"
#include "rd3_test_util.h"

using namespace roadx::rd3;
using rd3test::Hex;

namespace {

std::string Bytes(std::initializer_list<int> b) {
    std::string s;
    for (int v : b) s.push_back(static_cast<char>(v));
    return s;
}

}  // namespace

TEST(Rd3Name, AsciiAndTwoAndThreeByteSequences) {
    EXPECT_EQ(Utf8ToUtf16("Strada"), u"Strada");
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xC3, 0xA8})), std::u16string(1, char16_t(0x00E8)));
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xE2, 0x82, 0xAC})), std::u16string(1, char16_t(0x20AC)));
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t(0x20AC))), Bytes({0xE2, 0x82, 0xAC}));
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t(0x07FF))), Bytes({0xDF, 0xBF}));
}

TEST(Rd3Name, CodePointAboveBmpBecomesSurrogatePair) {
    // U+1D11E MUSICAL SYMBOL G CLEF
    const std::string clef = Bytes({0xF0, 0x9D, 0x84, 0x9E});
    const std::u16string u = Utf8ToUtf16(clef);
    ASSERT_EQ(u.size(), 2u);
    EXPECT_EQ(u[0], 0xD834);
    EXPECT_EQ(u[1], 0xDD1E);
    EXPECT_EQ(Utf16ToUtf8(u), clef);
    // The last code point of all.
    const std::u16string last = Utf8ToUtf16(Bytes({0xF4, 0x8F, 0xBF, 0xBF}));
    ASSERT_EQ(last.size(), 2u);
    EXPECT_EQ(last[0], 0xDBFF);
    EXPECT_EQ(last[1], 0xDFFF);
}

TEST(Rd3Name, IllFormedUtf8BecomesOneReplacementPerMaximalSubpart) {
    const char16_t R = 0xFFFD;
    // Overlong NUL: C0 is never a lead, 80 is a stray continuation.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xC0, 0x80})), (std::u16string{R, R}));
    // An encoded surrogate: ED A0 is not well-formed past ED.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xED, 0xA0, 0x80})), (std::u16string{R, R, R}));
    // Truncated three-byte sequence at the end: one replacement.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0x41, 0xE2, 0x82})), (std::u16string{u'A', R}));
    // Truncated sequence followed by ASCII keeps the ASCII.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xE2, 0x82, 0x41})), (std::u16string{R, u'A'}));
    // Above U+10FFFF.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xF4, 0x90, 0x80, 0x80})), (std::u16string{R, R, R, R}));
    // Overlong three-byte form of '/'.
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xE0, 0x80, 0xAF})), (std::u16string{R, R, R}));
    EXPECT_EQ(Utf8ToUtf16(Bytes({0xFF})), (std::u16string{R}));
}

TEST(Rd3Name, UnpairedSurrogatesBecomeReplacementInUtf8) {
    const std::string rep = Bytes({0xEF, 0xBF, 0xBD});
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xD834), u'A'}), rep + "A");
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xDD1E)}), rep);
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xD834)}), rep);
    // Reversed pair: two lone halves.
    EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xDD1E), char16_t(0xD834)}), rep + rep);
}

TEST(Rd3Name, CutNeverSplitsASurrogatePair) {
    const std::u16string clef{char16_t(0xD834), char16_t(0xDD1E)};
    const std::u16string a32(32, u'a');
    // 32 units and a pair: cutting at 33 would split it, so the pair goes.
    EXPECT_EQ(CutUtf16(a32 + clef, 33), a32);
    // 31 units and a pair fit exactly.
    const std::u16string a31(31, u'a');
    EXPECT_EQ(CutUtf16(a31 + clef + u"b", 33), a31 + clef);
    // A lone high surrogate at the cut is an ordinary unit: kept.
    const std::u16string lone = a32 + char16_t(0xD834) + u"x";
    EXPECT_EQ(CutUtf16(lone, 33), a32 + char16_t(0xD834));
    EXPECT_EQ(CutUtf16(u"abc", 33), u"abc");
    EXPECT_EQ(CutUtf16(clef, 1), u"");
}

TEST(Rd3Name, MakeNameCutsTo33Units) {
    const std::string s(40, 'x');
    EXPECT_EQ(MakeName(s), std::u16string(33, u'x'));
    // Sixteen G clefs are 32 units; a seventeenth would make 34: dropped.
    std::string clefs;
    for (int i = 0; i < 17; ++i) clefs += Bytes({0xF0, 0x9D, 0x84, 0x9E});
    const RD3Name n = MakeName("z" + clefs);
    EXPECT_EQ(n.size(), 33u);
    EXPECT_EQ(MakeName(clefs).size(), 32u);
}

TEST(Rd3Name, EncodeIsZeroPaddedLittleEndian) {
    uint8_t field[kNameBytes];
    EncodeName(u"AB\u00e8", field);
    std::vector<uint8_t> got(field, field + kNameBytes);
    EXPECT_EQ(got, rd3test::Cat({Hex("41 00 42 00 e8 00"), rd3test::Zeros(60)}));
    // All 33 units used: no terminator.
    std::u16string full(33, char16_t(0x20AC));
    EncodeName(full, field);
    for (size_t i = 0; i < 33; ++i) {
        EXPECT_EQ(field[2 * i], 0xAC);
        EXPECT_EQ(field[2 * i + 1], 0x20);
    }
    // Units past the 33rd are not written.
    EncodeName(std::u16string(40, u'q'), field);
    EXPECT_EQ(DecodeName(field), std::u16string(33, u'q'));
}

TEST(Rd3Name, DecodeStopsAtTheFirstZeroUnit) {
    std::vector<uint8_t> f = rd3test::Cat({Hex("53 00 31 00 00 00 58 00 59 00"), rd3test::Zeros(56)});
    EXPECT_EQ(DecodeName(f.data()), u"S1");
    std::vector<uint8_t> full(66, 0);
    for (size_t i = 0; i < 33; ++i) full[2 * i] = static_cast<uint8_t>('a' + i % 26);
    EXPECT_EQ(DecodeName(full.data()).size(), 33u);
    // A lone surrogate in a file is kept as it is (names compare by units).
    std::vector<uint8_t> lone = rd3test::Cat({Hex("34 d8 41 00"), rd3test::Zeros(62)});
    EXPECT_EQ(DecodeName(lone.data()), (std::u16string{char16_t(0xD834), u'A'}));
}

TEST(Rd3Name, EveryScalarValueConvertsBothWays) {
    // UTF-8 and UTF-16 of each code point built by hand from its bits.
    std::string utf8;
    std::u16string utf16;
    for (char32_t cp = 1; cp <= 0x10FFFF; cp += (cp < 0x3000 ? 1 : 97)) {
        if (cp >= 0xD800 && cp <= 0xDFFF) continue;
        if (cp < 0x80) {
            utf8 += Bytes({int(cp)});
        } else if (cp < 0x800) {
            utf8 += Bytes({int(0xC0 | (cp >> 6)), int(0x80 | (cp & 63))});
        } else if (cp < 0x10000) {
            utf8 += Bytes({int(0xE0 | (cp >> 12)), int(0x80 | ((cp >> 6) & 63)), int(0x80 | (cp & 63))});
        } else {
            utf8 += Bytes({int(0xF0 | (cp >> 18)), int(0x80 | ((cp >> 12) & 63)), int(0x80 | ((cp >> 6) & 63)),
                           int(0x80 | (cp & 63))});
        }
        if (cp < 0x10000) {
            utf16.push_back(static_cast<char16_t>(cp));
        } else {
            utf16.push_back(static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10)));
            utf16.push_back(static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF)));
        }
    }
    EXPECT_EQ(Utf8ToUtf16(utf8), utf16);
    EXPECT_EQ(Utf16ToUtf8(utf16), utf8);
}
