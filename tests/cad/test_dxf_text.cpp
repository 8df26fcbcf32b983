// Text encoding, table names and number formatting of drawing files.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include "cad/dxf_out.h"
#include "cad/dxf_text.h"

using namespace roadx::cad::dxf;

TEST(DxfText, AsciiStaysNonAsciiBecomesEscapes) {
    EXPECT_EQ(EncodeDxfText("Strada 1", EEncoding::Text), "Strada 1");
    EXPECT_EQ(EncodeDxfText("Città", EEncoding::Text), "Citt\\U+00E0");
    EXPECT_EQ(EncodeDxfText("1€", EEncoding::Text), "1\\U+20AC");
    // U+1F600 is the UTF-16 pair D83D DE00.
    EXPECT_EQ(EncodeDxfText("\xF0\x9F\x98\x80", EEncoding::Text), "\\U+D83D\\U+DE00");
}

TEST(DxfText, ControlCharactersCaretsAndBadBytes) {
    EXPECT_EQ(EncodeDxfText("a\nb\r\tc", EEncoding::Text), "a b  c");
    EXPECT_EQ(EncodeDxfText("2^3", EEncoding::Text), "2^ 3");
    EXPECT_EQ(EncodeDxfText("2^3", EEncoding::Name), "2^3");
    EXPECT_EQ(EncodeDxfText("a\xFF" "b", EEncoding::Text), "a?b");
    EXPECT_EQ(EncodeDxfText("\xC3", EEncoding::Text), "?");                 // truncated sequence
    EXPECT_EQ(EncodeDxfText("\xC0\xAF", EEncoding::Text), "??");            // overlong '/'
    EXPECT_EQ(EncodeDxfText("\xED\xA0\x80", EEncoding::Text), "???");       // a surrogate in UTF-8
    EXPECT_EQ(EncodeDxfText("\xF4\x90\x80\x80", EEncoding::Text), "????");  // beyond U+10FFFF
}

TEST(DxfText, NamesUseCodePage1252WhereItHasTheCharacter) {
    EXPECT_EQ(EncodeDxfText("Città", EEncoding::Name), "Citt\xE0");
    EXPECT_EQ(EncodeDxfText("1€ Œ ÿ", EEncoding::Name), "1\x80 \x8C \xFF");
    EXPECT_EQ(EncodeDxfText("Ω", EEncoding::Name), "\\U+03A9");
    EXPECT_EQ(EncodeDxfText("\xC2\x81", EEncoding::Name), "\\U+0081");  // a hole of the code page
    EXPECT_EQ(ToCp1252(0x20AC), 0x80);
    EXPECT_EQ(ToCp1252(0x0178), 0x9F);
    EXPECT_EQ(ToCp1252(0x00A0), 0xA0);
    EXPECT_EQ(ToCp1252(0x0100), 0);
}

TEST(DxfText, TableNamesLoseForbiddenCharacters) {
    EXPECT_EQ(SanitizeTableName("Strade/Assi: <1>"), "Strade_Assi_ _1_");
    EXPECT_EQ(SanitizeTableName("a\\b\"c;d?e*f|g=h`i"), "a_b_c_d_e_f_g_h_i");
    EXPECT_EQ(SanitizeTableName("x\ny"), "x_y");
    EXPECT_EQ(SanitizeTableName(""), "_");
    EXPECT_EQ(SanitizeTableName("Città"), "Città");
}

TEST(DxfText, TableNamesKeepCharactersTheCodePageLacksAsEscapes) {
    // Kept in the name, escaped when written: two names that differ in such
    // a character stay two names.
    EXPECT_EQ(SanitizeTableName("国道１号線"), "国道１号線");
    EXPECT_EQ(EncodeDxfText(SanitizeTableName("国道１号線"), EEncoding::Name), "\\U+56FD\\U+9053\\U+FF11\\U+53F7\\U+7DDA");
    EXPECT_EQ(EncodeDxfText(SanitizeTableName("Città Ω"), EEncoding::Name), "Citt\xE0 \\U+03A9");
    EXPECT_EQ(EncodeDxfText(SanitizeTableName("\xF0\x9D\x94\xB8"), EEncoding::Name), "\\U+D835\\U+DD38");
    EXPECT_EQ(SanitizeTableName("a\xFF" "b"), "a_b");  // broken UTF-8
}

namespace {
std::string Fmt(double v) {
    char buf[40];
    char* end = FormatReal(buf, v);
    return std::string(buf, end);
}
}  // namespace

TEST(DxfText, RealsAreShortestAndAlwaysLookReal) {
    EXPECT_EQ(Fmt(0.0), "0.0");
    EXPECT_EQ(Fmt(-0.0), "0.0");
    EXPECT_EQ(Fmt(12.0), "12.0");
    EXPECT_EQ(Fmt(-3.5), "-3.5");
    EXPECT_EQ(Fmt(0.1), "0.1");
    EXPECT_EQ(Fmt(4500123.456), "4500123.456");
    EXPECT_EQ(Fmt(1e20), "1e+20");
    EXPECT_EQ(Fmt(1.7e200), "1.7e+200");
}

TEST(DxfText, RealsReadBackExactly) {
    std::mt19937_64 rng(12345);
    for (int i = 0; i < 100000; ++i) {
        uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v)) continue;
        const std::string s = Fmt(v);
        EXPECT_EQ(std::strtod(s.c_str(), nullptr), v) << s;
    }
    std::uniform_real_distribution<double> coord(-1e7, 1e7);
    for (int i = 0; i < 100000; ++i) {
        const double v = coord(rng);
        EXPECT_EQ(std::strtod(Fmt(v).c_str(), nullptr), v);
    }
}
