// Fixed-point formatting: differential test against snprintf ("%f", "%.9f",
// "%.Nf", "%d") over systematic, halfway and random values.
#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "vesk/fixed_format.h"

namespace {

std::string Ours(double v, int precision) {
    char buf[vesk::kMaxFixedChars + 8];
    std::memset(buf, '#', sizeof buf);
    char* end = vesk::FormatFixed(buf, v, precision);
    EXPECT_LE(static_cast<size_t>(end - buf), vesk::kMaxFixedChars);
    // Nothing past the end is touched.
    EXPECT_EQ(*end, '#');
    return std::string(buf, end);
}

std::string Printf(double v, int precision) {
    char buf[400];
    const int n = std::snprintf(buf, sizeof buf, "%.*f", precision, v);
    EXPECT_GT(n, 0);
    EXPECT_LT(n, static_cast<int>(sizeof buf));
    return std::string(buf, static_cast<size_t>(n));
}

// Compares "%f" and "%.9f" (and, when all is set, every precision 0..9) for
// a list of values; returns the number of mismatching values.
int CheckAll(const std::vector<double>& values, bool all = false) {
    int bad = 0;
    for (const double v : values) {
        for (int p = 0; p <= 9; ++p) {
            if (!all && p != 6 && p != 9) continue;
            const std::string want = Printf(v, p);
            const std::string got = Ours(v, p);
            if (want != got) {
                ADD_FAILURE() << "%." << p << "f of " << std::hexfloat << v << ": printf \"" << want
                              << "\" ours \"" << got << "\"";
                if (++bad > 20) return bad;
            }
        }
    }
    return bad;
}

}  // namespace

TEST(FixedFormat, KnownTexts) {
    char buf[vesk::kMaxFixedChars];
    auto f6 = [&](double v) { return std::string(buf, vesk::FormatF6(buf, v)); };
    auto f9 = [&](double v) { return std::string(buf, vesk::FormatF9(buf, v)); };
    EXPECT_EQ(f6(0.0), "0.000000");
    EXPECT_EQ(f6(-0.0), "-0.000000");
    EXPECT_EQ(f6(-1e-9), "-0.000000");
    EXPECT_EQ(f6(1.5), "1.500000");
    EXPECT_EQ(f6(0.0078125), "0.007812");   // exact tie, to even
    EXPECT_EQ(f6(0.0234375), "0.023438");   // exact tie, to even
    EXPECT_EQ(f9(0.0009765625), "0.000976562");
    EXPECT_EQ(f6(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(f6(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(f9(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(f9(-std::numeric_limits<double>::quiet_NaN()), "-nan");
    EXPECT_EQ(f6(1.7e200).size(), 201u + 7u);
    EXPECT_EQ(f9(-DBL_MAX).size(), 1u + 309u + 10u);
    EXPECT_EQ(vesk::kMaxFixedChars, 1u + 309u + 10u);
}

TEST(FixedFormat, PrecisionIsClamped) {
    char a[vesk::kMaxFixedChars], b[vesk::kMaxFixedChars];
    EXPECT_EQ(std::string(a, vesk::FormatFixed(a, 2.75, -3)), std::string(b, vesk::FormatFixed(b, 2.75, 0)));
    EXPECT_EQ(std::string(a, vesk::FormatFixed(a, 1.0 / 3, 40)), "0.333333333");
}

TEST(FixedFormatDifferential, SpecialAndExtremeValues) {
    const double inf = std::numeric_limits<double>::infinity();
    std::vector<double> v = {0.0, -0.0, DBL_MIN, -DBL_MIN, DBL_MAX, -DBL_MAX,
                             std::numeric_limits<double>::denorm_min(), -std::numeric_limits<double>::denorm_min(),
                             1.7e200, -1.7e200, 8.5e199, 1e308, -1e308, 1e22, 1e23, 9007199254740993.0,
                             inf, -inf, std::numeric_limits<double>::quiet_NaN(),
                             -std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::signaling_NaN(),
                             std::bit_cast<double>(0x7ff0000000000001ULL), std::bit_cast<double>(0xfff8dead00000000ULL),
                             0.0000005, 2.5e-7, 5e-7, 4.9999999999999e-7, 5e-10, 1.5e-9, 2.5e-9, 0.5, 1.5, 2.5,
                             -0.5, -2.5, 0.05, 0.25, 0.125, 0.375, 999999.9999995, 0.9999995, -0.0000004};
    for (int e = -330; e <= 308; ++e) {
        const double p = std::pow(10.0, e);
        v.insert(v.end(), {p, -p, std::nextafter(p, 0.0), std::nextafter(p, inf), 5 * p, 2.5 * p, 0.5 * p});
    }
    EXPECT_EQ(CheckAll(v, true), 0);
}

TEST(FixedFormatDifferential, ExactBinaryTies) {
    // k/2^n with odd k: ties at 6 decimals when n = 7, at 9 decimals when
    // n = 10, and more digits than printed for larger n.
    std::vector<double> v;
    for (int n = 1; n <= 40; ++n)
        for (int k = 1; k < 4096; k += 2) {
            v.push_back(std::ldexp(k, -n));
            v.push_back(-std::ldexp(k, -n));
        }
    std::mt19937_64 rng(5);
    for (int i = 0; i < 4000; ++i) {
        const double k = static_cast<double>((rng() >> 11) | 1);  // odd, up to 53 bits
        v.push_back(std::ldexp(k, -static_cast<int>(rng() % 80)));
    }
    EXPECT_EQ(CheckAll(v, true), 0);
}

TEST(FixedFormatDifferential, DecimalHalfwayPatterns) {
    // x.5e-6 and x.5e-9: the nearest doubles lie just above or below the
    // printed halfway point; their neighbours too.
    std::vector<double> v;
    for (int i = 0; i < 100000; ++i) {
        for (const double d : {(i + 0.5) * 1e-6, (i + 0.5) * 1e-9, i + 0.0000005, i * 1000.0 + 0.0000000005}) {
            v.push_back(d);
            v.push_back(-d);
            v.push_back(std::nextafter(d, 0.0));
            v.push_back(std::nextafter(d, 1e300));
        }
    }
    EXPECT_EQ(CheckAll(v), 0);
}

TEST(FixedFormatDifferential, RandomBitPatternsAndCoordinates) {
    std::mt19937_64 rng(1234567);
    std::uniform_real_distribution<double> coord(-1e7, 1e7);
    std::vector<double> v;
    for (int i = 0; i < 100000; ++i) {
        v.push_back(std::bit_cast<double>(rng()));
        v.push_back(coord(rng));
        v.push_back(std::ldexp(coord(rng), -static_cast<int>(rng() % 64)));
    }
    EXPECT_EQ(CheckAll(v), 0);
}

TEST(FixedFormatDifferential, Integers) {
    std::vector<int> v = {0, 1, -1, 9, 10, -10, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1};
    for (int p = 1;; p *= 10) {
        v.insert(v.end(), {p, p - 1, -p, -p + 1});
        if (p == 1000000000) break;
    }
    std::mt19937 rng(8);
    for (int i = 0; i < 100000; ++i) v.push_back(static_cast<int>(rng()));
    int bad = 0;
    for (const int x : v) {
        char want[32];
        const int n = std::snprintf(want, sizeof want, "%d", x);
        char got[vesk::kMaxIntChars + 1];
        got[vesk::kMaxIntChars] = '#';
        char* end = vesk::FormatInt(got, x);
        EXPECT_EQ(got[vesk::kMaxIntChars], '#');
        if (std::string(want, static_cast<size_t>(n)) != std::string(got, end)) {
            ADD_FAILURE() << x;
            if (++bad > 20) break;
        }
    }
}

// The range the writers meet most (coordinates, elevations, values with a
// few decimals and the neighbours of ties), where a faster path decides the
// rounding: every precision against printf.
TEST(FixedFormat, CoordinateRangeAndNearTiesMatchPrintf) {
    std::mt19937_64 rng(1515);
    std::uniform_real_distribution<double> coord(-6e6, 6e6);
    std::uniform_int_distribution<int64_t> millis(-9000000000LL, 9000000000LL);
    std::vector<double> values;
    for (int i = 0; i < 4000; ++i) {
        values.push_back(coord(rng));
        // Decimal values written with 3 decimals, and the ties of 6 and 9
        // decimals with their neighbours one and two ulps away.
        const double m = static_cast<double>(millis(rng)) / 1000.0;
        values.push_back(m);
        const double tie6 = (static_cast<double>(millis(rng) % 100000000) + 0.5) / 1e6;
        const double tie9 = (static_cast<double>(millis(rng) % 1000000) + 0.5) / 1e9;
        for (double t : {tie6, tie9}) {
            values.push_back(t);
            values.push_back(std::nextafter(t, 1e300));
            values.push_back(std::nextafter(t, -1e300));
            values.push_back(std::nextafter(std::nextafter(t, 1e300), 1e300));
        }
    }
    // Near the end of the fast range and exact binary ties.
    for (double v : {4e9, 4e6, 3.999999999e9, 4503599627.370496, 0.0000005, 0.0000015, 2.5e-7, 1e-7, 4.0000005e8})
        for (double s : {1.0, -1.0}) values.push_back(s * v);
    EXPECT_EQ(CheckAll(values, true), 0);
}
