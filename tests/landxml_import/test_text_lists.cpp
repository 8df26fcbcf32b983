// LandXML text lists: splitting rules, unit conversion, and a differential
// test of the number reading against std::istringstream extraction over
// systematic and random tokens, compared bit for bit.
#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "landxml_import/text_lists.h"

namespace {

// The reference: what the stream gives, value initialised to 0.
double StreamDouble(const std::string& token) {
    std::istringstream is(token);
    is.imbue(std::locale::classic());
    double v = 0.0;
    is >> v;
    return v;
}

int StreamInt(const std::string& token) {
    std::istringstream is(token);
    is.imbue(std::locale::classic());
    int v = 0;
    is >> v;
    return v;
}

std::string Printable(const std::string& s) {
    std::string out;
    for (const unsigned char c : s) {
        if (c >= 0x20 && c < 0x7f) {
            out += static_cast<char>(c);
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02x", c);
            out += hex;
        }
    }
    return out.size() > 120 ? out.substr(0, 120) + "...(" + std::to_string(s.size()) + " chars)" : out;
}

// Compares one token; returns the number of mismatches (0 or 1) so that a
// broken build reports a few tokens instead of thousands.
int CheckToken(const std::string& token) {
    const uint64_t want = std::bit_cast<uint64_t>(StreamDouble(token));
    const uint64_t got = std::bit_cast<uint64_t>(ReadStreamDouble(token));
    const int wantInt = StreamInt(token);
    const int gotInt = ReadStreamInt(token);
    int bad = 0;
    if (want != got) {
        ADD_FAILURE() << "double of [" << Printable(token) << "]: stream " << std::hexfloat
                      << std::bit_cast<double>(want) << " ours " << std::bit_cast<double>(got);
        bad = 1;
    }
    if (wantInt != gotInt) {
        ADD_FAILURE() << "int of [" << Printable(token) << "]: stream " << wantInt << " ours " << gotInt;
        bad = 1;
    }
    return bad;
}

int CheckAll(const std::vector<std::string>& tokens) {
    int bad = 0;
    for (const auto& t : tokens) {
        bad += CheckToken(t);
        if (bad > 20) break;
    }
    return bad;
}

// The splitting rule written out literally as the text is consumed: take the
// run up to the first blank, drop it and the one blank after it.
std::vector<std::string> SplitLiterally(std::string text) {
    const char* ws = " \t\n\v\f\r";
    const size_t first = text.find_first_not_of(ws);
    if (first == std::string::npos) return {};
    text = text.substr(first, text.find_last_not_of(ws) - first + 1);
    std::vector<std::string> tokens;
    while (!text.empty()) {
        const size_t blank = text.find(' ');
        std::string token = text.substr(0, blank);
        text.erase(0, blank == std::string::npos ? std::string::npos : blank + 1);
        if (!token.empty()) tokens.push_back(token);
    }
    return tokens;
}

std::vector<std::string> Strings(const std::vector<vesk::String>& v) { return {v.begin(), v.end()}; }

}  // namespace

// ---- splitting and lists -------------------------------------------------

TEST(TextLists, TwoBlanksInARowGiveNoExtraValue) {
    std::vector<double> v;
    ReadDoubleList("100  50", v, true);
    EXPECT_EQ(v, (std::vector<double>{100.0, 50.0}));
}

TEST(TextLists, SurroundingBlanksAreIgnored) {
    std::vector<double> a, b;
    ReadDoubleList("  \n 1.5 -2 3e2 \t\n  ", a, true);
    ReadDoubleList("1.5 -2 3e2", b, true);
    EXPECT_EQ(a, (std::vector<double>{1.5, -2.0, 300.0}));
    EXPECT_EQ(a, b);
}

TEST(TextLists, LineBreakOnlySeparatorGivesOneValue) {
    std::vector<double> v;
    ReadDoubleList("3\n4\n5", v, true);
    EXPECT_EQ(v, (std::vector<double>{3.0}));
    std::vector<int> iv;
    ReadIntList("7\t8", iv);
    EXPECT_EQ(iv, (std::vector<int>{7}));
}

TEST(TextLists, TokensKeepTabsAndLineBreaks) {
    std::vector<vesk::String> t{"keep"};
    ReadTokenList(" a  b\tc \n d ", t);
    EXPECT_EQ(Strings(t), (std::vector<std::string>{"keep", "a", "b\tc", "\n", "d"}));
    // A token that is only a line break still yields a value, 0; the one
    // after a blank and a line break is read past the line break.
    std::vector<double> v;
    ReadDoubleList("1 \n 2 \n3", v, true);
    EXPECT_EQ(v, (std::vector<double>{1.0, 0.0, 2.0, 3.0}));
}

TEST(TextLists, EmptyAndBlankTextsAppendNothing) {
    std::vector<double> v{9.0};
    ReadDoubleList("", v, false);
    ReadDoubleList(" \t\r\n ", v, false);
    EXPECT_EQ(v, (std::vector<double>{9.0}));
    std::vector<vesk::String> t;
    ReadTokenList("   ", t);
    EXPECT_TRUE(t.empty());
}

TEST(TextLists, ListsAppendInTokenOrder) {
    std::vector<int> v{1};
    ReadIntList("2 3", v);
    ReadIntList("4", v);
    EXPECT_EQ(v, (std::vector<int>{1, 2, 3, 4}));
}

TEST(TextLists, NonNumbersYieldZeroEntries) {
    std::vector<double> v;
    ReadDoubleList("abc 1.5 inf nan -x 0x10 .", v, true);
    EXPECT_EQ(v, (std::vector<double>{0.0, 1.5, 0.0, 0.0, 0.0, 0.0, 0.0}));
    std::vector<int> iv;
    ReadIntList("abc 12abc -7.9 +4 1e3", iv);
    EXPECT_EQ(iv, (std::vector<int>{0, 12, -7, 4, 1}));
}

TEST(TextLists, ImperialValuesAreConvertedIntegersNever) {
    std::vector<double> v;
    ReadDoubleList("500 -10", v, false);
    ASSERT_EQ(v.size(), 2u);
    EXPECT_NEAR(v[0], 152.4003048006, 1e-10);
    EXPECT_EQ(v[0], 500.0 * 0.3048006096012);
    EXPECT_EQ(v[1], -10.0 * 0.3048006096012);
    std::vector<int> iv;
    ReadIntList("500", iv);
    EXPECT_EQ(iv, (std::vector<int>{500}));
}

TEST(TextLists, FeetToMetersUsesTheSurveyFoot) {
    double x = 100.0;
    FeetToMeters(x);
    EXPECT_EQ(x, 30.48006096012);
    // 1200/3937 m to 13 decimals.
    EXPECT_NEAR(kFeetToMeters, 1200.0 / 3937.0, 5e-14);
}

namespace fake_reader {
// Stands in for the XML section reader: PX_String with an empty property
// name gives the element's text.
struct Node {
    std::string text;
    std::string askedName = "unset";
};
void PX_String(Node* node, const char* name, CString& value) {
    node->askedName = name;
    value = node->text;
}
}  // namespace fake_reader

TEST(TextLists, NodeOverloadsReadTheElementText) {
    fake_reader::Node node{"\n  10 20  30\n", {}};
    std::vector<double> v;
    ReadDoubleList(&node, v, false);
    EXPECT_EQ(node.askedName, "");
    EXPECT_EQ(v, (std::vector<double>{10.0 * kFeetToMeters, 20.0 * kFeetToMeters, 30.0 * kFeetToMeters}));
    std::vector<int> iv;
    ReadIntList(&node, iv);
    EXPECT_EQ(iv, (std::vector<int>{10, 20, 30}));
    std::vector<vesk::String> t;
    ReadTokenList(&node, t);
    EXPECT_EQ(Strings(t), (std::vector<std::string>{"10", "20", "30"}));
}

// ---- number reading: fixed expectations ----------------------------------

TEST(TextLists, DoubleReadingMatchesStreamRules) {
    EXPECT_EQ(ReadStreamDouble("1e"), 0.0);           // exponent without digits
    EXPECT_EQ(ReadStreamDouble("1e+"), 0.0);
    EXPECT_EQ(ReadStreamDouble("-"), 0.0);
    EXPECT_EQ(ReadStreamDouble("+.5"), 0.5);
    EXPECT_EQ(ReadStreamDouble("5."), 5.0);
    EXPECT_EQ(ReadStreamDouble("1.5.3"), 1.5);
    EXPECT_EQ(ReadStreamDouble("2e3e4"), 2000.0);
    EXPECT_EQ(ReadStreamDouble("\n\t-4.25xyz"), -4.25);
    EXPECT_EQ(ReadStreamDouble("1e400"), DBL_MAX);     // overflow gives the largest value
    EXPECT_EQ(ReadStreamDouble("-1e400"), -DBL_MAX);
    EXPECT_EQ(ReadStreamDouble("1e-400"), 0.0);        // underflow gives strtod's result
    EXPECT_TRUE(std::signbit(ReadStreamDouble("-1e-400")));
    EXPECT_EQ(ReadStreamDouble("4.9e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(std::signbit(ReadStreamDouble("-0")));
    EXPECT_EQ(ReadStreamDouble("infinity"), 0.0);
}

TEST(TextLists, IntReadingClampsLikeTheStream) {
    EXPECT_EQ(ReadStreamInt("2147483647"), INT_MAX);
    EXPECT_EQ(ReadStreamInt("2147483648"), INT_MAX);
    EXPECT_EQ(ReadStreamInt("-2147483648"), INT_MIN);
    EXPECT_EQ(ReadStreamInt("-2147483649"), INT_MIN);
    EXPECT_EQ(ReadStreamInt("99999999999999999999999999"), INT_MAX);
    EXPECT_EQ(ReadStreamInt("0x1F"), 0);
    EXPECT_EQ(ReadStreamInt("000042"), 42);
    EXPECT_EQ(ReadStreamInt("\r+42"), 42);
}

// ---- number reading: differential against the stream --------------------

TEST(TextListsDifferential, AllShortTokensOverANumberAlphabet) {
    const std::string alphabet = "019+-.eE\n\tx";
    std::vector<std::string> tokens{""};
    std::vector<std::string> level{""};
    for (int len = 1; len <= 5; ++len) {
        std::vector<std::string> next;
        for (const auto& s : level)
            for (const char c : alphabet) next.push_back(s + c);
        tokens.insert(tokens.end(), next.begin(), next.end());
        level = std::move(next);
    }
    EXPECT_GT(tokens.size(), 170000u);
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, MantissasExponentsAndGarbage) {
    const std::vector<std::string> mantissas = {
        "0", "1", "7", "4.9", "2.4703282292062327", "2.4703282292062328", "1.7976931348623157",
        "1.7976931348623158", "1.7976931348623159", "2.2250738585072011", "2.2250738585072014",
        "9007199254740993", "123456789012345678901234567890", ".5", "5.", "00012.5000", "0.000",
        "999999999999999999999"};
    const std::vector<std::string> signs = {"", "+", "-"};
    const std::vector<std::string> expForms = {"e", "E", "e+", "e-", "E-"};
    const std::vector<std::string> prefixes = {"", "\n", "\t\r "};
    const std::vector<std::string> suffixes = {"", "x", "e", "e+", ".", "\n4", "\t", "nan", "-1", "0"};
    std::vector<int> exps;
    for (int e = -400; e <= 400; e += 37) exps.push_back(e);
    for (int e = -345; e <= -300; ++e) exps.push_back(e);
    for (int e = 280; e <= 330; ++e) exps.push_back(e);
    std::vector<std::string> tokens;
    for (const auto& m : mantissas)
        for (const auto& s : signs) {
            for (const auto& p : prefixes)
                for (const auto& x : suffixes) tokens.push_back(p + s + m + x);
            for (const int e : exps)
                for (const auto& f : expForms) {
                    const std::string num = s + m + f + std::to_string(e < 0 && f.back() == '-' ? -e : e);
                    tokens.push_back(num);
                    tokens.push_back(num + "garbage");
                    tokens.push_back("\n" + num + "\n7");
                }
        }
    EXPECT_GT(tokens.size(), 50000u);
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, WordsHexAndOddForms) {
    const std::vector<std::string> tokens = {
        "inf", "-inf", "+inf", "INF", "infinity", "nan", "-nan", "NaN", "nan(0x1)", "0x1p3", "0X1A",
        "-0x10", "0x", "0", "-0", "+0", "00", "-00.00e-00", ".", "-.", "+.", ".e1", "e1", "E5", "-e5",
        "+-5", "-+5", "--5", "1e+-5", "1e-+5", "1..2", "1.e5", "1.E-5", "1e5.5", "1,5", "1_000",
        "\xc2\xa0" "5", "\v5", "\f-5", std::string("5\0" "7", 3), std::string("\0" "7", 2), "\x80", "12\xff"};
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, RandomDoublesPrintedManyWays) {
    std::mt19937_64 rng(20240611);
    std::vector<std::string> tokens;
    char buf[1600];
    for (int i = 0; i < 40000; ++i) {
        double d;
        do {
            d = std::bit_cast<double>(rng());
        } while (!std::isfinite(d));
        const int prec = static_cast<int>(rng() % 25);
        switch (i % 5) {
            case 0: std::snprintf(buf, sizeof buf, "%.17g", d); break;
            case 1: std::snprintf(buf, sizeof buf, "%.*e", prec, d); break;
            case 2: std::snprintf(buf, sizeof buf, "%.*g", prec, d); break;
            case 3: {
                // Moderate magnitudes, where "%f" gives long plain digit runs.
                const double base = d != 0.0 ? d : 1.0;
                const int scale = -std::ilogb(base) + static_cast<int>(rng() % 60) - 30;
                std::snprintf(buf, sizeof buf, "%.*f", prec, std::ldexp(base, scale));
                break;
            }
            default: std::snprintf(buf, sizeof buf, "%.*E", prec, d * 1e-10); break;
        }
        tokens.emplace_back(buf);
        if (i % 5 == 0) {
            // Independent check: 17 significant digits read back exactly.
            EXPECT_EQ(std::bit_cast<uint64_t>(ReadStreamDouble(buf)), std::bit_cast<uint64_t>(d)) << buf;
        }
    }
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, ExactHalfwayCasesWithLongDigitStrings) {
    // The exact decimal midpoint between two neighbouring doubles (exact in
    // the 64-bit long double) must round to even; one more tiny digit must
    // round up. Digit strings run to hundreds of characters.
    static_assert(LDBL_MANT_DIG >= 64);
    std::mt19937_64 rng(77);
    std::vector<std::string> tokens;
    std::vector<char> buf(2000);
    for (int i = 0; i < 600; ++i) {
        double a;
        do {
            a = std::bit_cast<double>(rng() & 0x7fffffffffffffffULL);
        } while (!std::isfinite(a) || a == DBL_MAX);
        if (i % 3 == 0) a = std::ldexp(a, -std::ilogb(a) - 1040);  // subnormal range
        const long double mid = (static_cast<long double>(a) + std::nextafter(a, INFINITY)) / 2;
        std::snprintf(buf.data(), buf.size(), "%.1100Le", mid);
        std::string exact(buf.data());
        const size_t e = exact.find('e');
        std::string mantissa = exact.substr(0, e);
        const std::string exponent = exact.substr(e);
        while (mantissa.back() == '0') mantissa.pop_back();
        tokens.push_back(mantissa + exponent);
        tokens.push_back(mantissa + "0000000001" + exponent);
        tokens.push_back("-" + mantissa + "1" + exponent + "x");
        // Independent check of the round-half-to-even rule.
        const uint64_t bitsA = std::bit_cast<uint64_t>(a);
        const double even = (bitsA & 1) ? std::nextafter(a, INFINITY) : a;
        EXPECT_EQ(std::bit_cast<uint64_t>(ReadStreamDouble(mantissa + exponent)), std::bit_cast<uint64_t>(even))
            << mantissa.size() << " digits";
        EXPECT_EQ(std::bit_cast<uint64_t>(ReadStreamDouble(mantissa + "1" + exponent)),
                  std::bit_cast<uint64_t>(std::nextafter(a, INFINITY)));
    }
    const std::string nines(5000, '9');
    tokens.push_back(nines);
    tokens.push_back("0." + nines);
    tokens.push_back("-" + nines + "e-5000");
    tokens.push_back("0.000" + std::string(400, '0') + "1e90");
    tokens.push_back(std::string(400, '0') + "1");
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, RandomCharacterSoup) {
    const std::string alphabet = "0123456789+-.eEx\n\t\rnaif ";
    std::mt19937 rng(4242);
    std::vector<std::string> tokens;
    for (int i = 0; i < 100000; ++i) {
        std::string t;
        const size_t len = rng() % 30;
        for (size_t k = 0; k < len; ++k) {
            // Digits are drawn more often so that long numbers occur.
            const size_t pick = rng() % (alphabet.size() + 12);
            t += pick < alphabet.size() ? alphabet[pick] : static_cast<char>('0' + pick % 10);
        }
        tokens.push_back(t);
    }
    EXPECT_EQ(CheckAll(tokens), 0);
}

TEST(TextListsDifferential, WholeTextsMatchTokenByTokenStreamReading) {
    // The text overloads (no per-token allocation) against the literal
    // splitting rule followed by one stream per token.
    const std::vector<std::string> pieces = {"1", "-2.5", "3e2", "x", "\n", "4\n5", "\t6", "1e400", "-0",
                                             "2147483648", "-7e-400", ".", "+.25", "1e"};
    std::mt19937 rng(99);
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        const int n = static_cast<int>(rng() % 12);
        for (int k = 0; k < n; ++k) {
            text += std::string(rng() % 3, ' ');
            if (rng() % 8 == 0) text += "\n ";
            text += pieces[rng() % pieces.size()];
        }
        text += std::string(rng() % 3, ' ');
        const std::vector<std::string> want = SplitLiterally(text);

        std::vector<vesk::String> tokens;
        ReadTokenList(text, tokens);
        ASSERT_EQ(Strings(tokens), want) << Printable(text);

        std::vector<double> metric, imperial;
        std::vector<int> ints;
        ReadDoubleList(text, metric, true);
        ReadDoubleList(text, imperial, false);
        ReadIntList(text, ints);
        ASSERT_EQ(metric.size(), want.size());
        ASSERT_EQ(imperial.size(), want.size());
        ASSERT_EQ(ints.size(), want.size());
        for (size_t k = 0; k < want.size(); ++k) {
            const double s = StreamDouble(want[k]);
            EXPECT_EQ(std::bit_cast<uint64_t>(metric[k]), std::bit_cast<uint64_t>(s));
            EXPECT_EQ(std::bit_cast<uint64_t>(imperial[k]), std::bit_cast<uint64_t>(s * 0.3048006096012));
            EXPECT_EQ(ints[k], StreamInt(want[k]));
        }
    }
}
