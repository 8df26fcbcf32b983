// Buffered writer: bytes written equal what fprintf would write, across
// buffer boundaries; failures are remembered; a null stream is harmless.
#include <gtest/gtest.h>

#include <cfloat>
#include <cstdio>
#include <random>
#include <string>

#include "vesk/out_buffer.h"

namespace {

std::string ReadBack(FILE* f) {
    std::fflush(f);
    std::rewind(f);
    std::string s;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) s.append(buf, n);
    return s;
}

std::string Snprintf(const char* fmt, double v) {
    char buf[400];
    const int n = std::snprintf(buf, sizeof buf, fmt, v);
    return std::string(buf, static_cast<size_t>(n));
}

}  // namespace

TEST(OutBuffer, WritesTheSameBytesAsPrintfAcrossBufferBoundaries) {
    FILE* f = std::tmpfile();
    ASSERT_NE(f, nullptr);
    std::string want;
    {
        vesk::COutBuffer out(f);
        std::mt19937_64 rng(3);
        std::uniform_real_distribution<double> coord(-5e6, 5e6);
        for (int i = 0; i < 30000; ++i) {
            const double x = coord(rng);
            const int id = static_cast<int>(rng());
            out.Str("<P id=\"");
            out.I(id);
            out.Str("\">");
            out.F6(x);
            out.Ch(' ');
            out.F9(x / 7);
            out.Str("</P>\n");
            want += "<P id=\"" + std::to_string(id) + "\">" + Snprintf("%f", x) + ' ' + Snprintf("%.9f", x / 7) +
                    "</P>\n";
            if (i % 5000 == 0) {
                out.F6(DBL_MAX);  // longest number text, forces a refill near the end
                want += Snprintf("%f", DBL_MAX);
            }
        }
        EXPECT_GT(want.size(), 4 * vesk::COutBuffer::kCapacity);
        // Texts longer than, equal to and just under the buffer.
        for (const size_t len : {vesk::COutBuffer::kCapacity * 3 + 17, vesk::COutBuffer::kCapacity,
                                 vesk::COutBuffer::kCapacity - 1}) {
            const std::string big(len, static_cast<char>('a' + len % 26));
            out.Str(big);
            want += big;
        }
        out.Printf("%s|%8.3f|%d|%%|%x", "end", 2.5, -42, 255u);
        want += "end|   2.500|-42|%|ff";
        EXPECT_TRUE(out.Flush());
        EXPECT_FALSE(out.Failed());
        out.Str("tail written by the destructor");
        want += "tail written by the destructor";
    }
    EXPECT_EQ(ReadBack(f), want);
    std::fclose(f);
}

TEST(OutBuffer, PrintfLongerThanItsStackBuffer) {
    FILE* f = std::tmpfile();
    ASSERT_NE(f, nullptr);
    const std::string word(3000, 'w');
    {
        vesk::COutBuffer out(f);
        out.Printf("[%s]%f", word.c_str(), 1e100);
    }
    EXPECT_EQ(ReadBack(f), "[" + word + "]" + Snprintf("%f", 1e100));
    std::fclose(f);
}

TEST(OutBuffer, NullStreamIgnoresEverything) {
    vesk::COutBuffer out(nullptr);
    out.Str("abc");
    out.Str(std::string(3 * vesk::COutBuffer::kCapacity, 'x'));
    out.Ch('c');
    out.F6(1.0);
    out.F9(-DBL_MAX);
    out.I(7);
    out.Printf("%d", 1);
    EXPECT_TRUE(out.Flush());
    EXPECT_FALSE(out.Failed());
}

TEST(OutBuffer, FullDiskIsReportedAtFlush) {
    FILE* f = std::fopen("/dev/full", "w");
    if (f == nullptr) GTEST_SKIP() << "/dev/full is not available";
    {
        vesk::COutBuffer out(f);
        out.Str("short text, held in the buffers until the flush");
        EXPECT_FALSE(out.Failed());
        EXPECT_FALSE(out.Flush());
        EXPECT_TRUE(out.Failed());
        out.F6(1.0);  // dropped, still failed
        EXPECT_FALSE(out.Flush());
    }
    std::fclose(f);
}

TEST(OutBuffer, FullDiskIsSeenWhenTheBufferSpills) {
    FILE* f = std::fopen("/dev/full", "w");
    if (f == nullptr) GTEST_SKIP() << "/dev/full is not available";
    std::setvbuf(f, nullptr, _IONBF, 0);
    {
        vesk::COutBuffer out(f);
        for (size_t i = 0; i < vesk::COutBuffer::kCapacity / 8 + 1; ++i) out.F6(1.5);  // 8 chars each
        EXPECT_TRUE(out.Failed());
    }
    std::fclose(f);
}
