// The fast readers of plain surface numbers against the text-list rules they
// stand in for: wherever they take a text, every value must be the one the
// text lists give, bit for bit, with nothing to report; and they must take
// every text of the forms they promise to take.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "landxml_import/plain_numbers.h"
#include "landxml_import/text_lists.h"

namespace {

uint64_t Bits(double d) {
    uint64_t u;
    std::memcpy(&u, &d, sizeof u);
    return u;
}

// A random decimal of the kinds surface files hold, and some they do not.
std::string RandomToken(std::mt19937_64& rng) {
    static const std::vector<std::string> odd = {"1e5", "+1", "--1", ".", "-", "1..2", "0x10", "nan", "inf",
                                                 "1.5e-3", "1,5", "", "-.5", "5.", ".25", "-0", "-0.000",
                                                 "12345678901234567890", "9007199254740993", "9007199254740992",
                                                 "0.1234567890123456789012", "1.00000000000000000000001"};
    if (rng() % 8 == 0) return odd[rng() % odd.size()];
    std::string t = rng() % 4 == 0 ? "-" : "";
    const int whole = static_cast<int>(rng() % 12);
    for (int k = 0; k < whole; ++k) t += static_cast<char>('0' + rng() % 10);
    if (rng() % 4 != 0) {
        t += '.';
        const int frac = static_cast<int>(rng() % (rng() % 6 == 0 ? 25 : 8));
        for (int k = 0; k < frac; ++k) t += static_cast<char>('0' + rng() % 10);
    }
    return t;
}

TEST(PlainNumbers, DoublesReadAsTheTextListsReadThem) {
    std::mt19937_64 rng(2026);
    size_t taken = 0, left = 0;
    for (int round = 0; round < 200000; ++round) {
        std::string text;
        if (rng() % 3 == 0) text += std::string(rng() % 3, " \t\n"[rng() % 3]);
        const int n = 2 + static_cast<int>(rng() % 3);
        for (int k = 0; k < n; ++k) {
            if (k) text += rng() % 10 == 0 ? "\t" : std::string(1 + rng() % 2, ' ');
            text += RandomToken(rng);
        }
        if (rng() % 3 == 0) text += std::string(rng() % 3, " \r\n"[rng() % 3]);
        double fast[3];
        const bool plain = plain_numbers::ReadDoubles(text, 3, fast);
        std::vector<double> slow;
        ReadDoubleList(text, slow, true);
        if (!plain) {
            ++left;
            continue;
        }
        ++taken;
        ASSERT_EQ(slow.size(), 3u) << "[" << text << "]";
        for (int k = 0; k < 3; ++k)
            ASSERT_EQ(Bits(fast[k]), Bits(slow[static_cast<size_t>(k)])) << "[" << text << "] value " << k;
    }
    EXPECT_GT(taken, 20000u);
    EXPECT_GT(left, 20000u);
}

// Every token of the promised form is taken, and reads bit for bit as
// from the stream rules (decimals of up to 15 digits, the common case).
TEST(PlainNumbers, EveryPromisedDoubleIsTaken) {
    std::mt19937_64 rng(7);
    for (int round = 0; round < 100000; ++round) {
        std::string tok = rng() % 2 ? "-" : "";
        tok += std::to_string(rng() % 10000000);
        tok += "." + std::to_string(rng() % 100000000);
        double v = 0;
        ASSERT_TRUE(plain_numbers::ReadDoubles(tok, 1, &v)) << tok;
        ASSERT_EQ(Bits(v), Bits(ReadStreamDouble(tok))) << tok;
    }
}

TEST(PlainNumbers, EdgesOfTheFastForm) {
    double v = 1;
    // 2^53 is the last mantissa taken; beyond it the ordinary reader decides.
    EXPECT_TRUE(plain_numbers::ReadDoubles("9007199254740992", 1, &v));
    EXPECT_EQ(v, 9007199254740992.0);
    EXPECT_FALSE(plain_numbers::ReadDoubles("9007199254740993", 1, &v));
    // Leading zeros are not significant digits.
    EXPECT_TRUE(plain_numbers::ReadDoubles("0000000000000000000000001.5", 1, &v));
    EXPECT_EQ(v, 1.5);
    EXPECT_TRUE(plain_numbers::ReadDoubles("-0.000", 1, &v));
    EXPECT_TRUE(std::signbit(v));
    EXPECT_FALSE(plain_numbers::ReadDoubles("1.00000000000000000000001", 1, &v));  // 23 after the '.'
    EXPECT_FALSE(plain_numbers::ReadDoubles("1 2", 1, &v));                        // one too many
    EXPECT_FALSE(plain_numbers::ReadDoubles("1\t2", 1, &v));                       // a tab is no separator
    EXPECT_FALSE(plain_numbers::ReadDoubles("", 1, &v));
    int id = 0;
    EXPECT_TRUE(plain_numbers::ReadId("123456789", id));
    EXPECT_EQ(id, 123456789);
    EXPECT_FALSE(plain_numbers::ReadId("1234567890", id));
    EXPECT_FALSE(plain_numbers::ReadId(" 1", id));
    EXPECT_FALSE(plain_numbers::ReadId("", id));
    EXPECT_FALSE(plain_numbers::ReadId("+1", id));
}

}  // namespace
