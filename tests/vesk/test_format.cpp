#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>

#include "vesk/format.h"

namespace {

// Reads back what a stream received.
std::string Written(void (*write)(FILE*)) {
    FILE* f = std::tmpfile();
    write(f);
    std::fflush(f);
    std::rewind(f);
    std::string s;
    char buf[256];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) s.append(buf, n);
    std::fclose(f);
    return s;
}

TEST(Format, SprintfUsesPrintfFormats) {
    vesk::String s;
    EXPECT_EQ(vesk_sprintf(s, "%s_P%.1f%%L%.2f", "Sez", 2.5, 3.125), 14);
    EXPECT_EQ(s, "Sez_P2.5%L3.12");
    vesk_sprintf(s, "%d|%f|%.9f", -7, 1.7e200 / 1e200, 0.7853981633974483 * 180.0 / 3.141592653589793);
    EXPECT_EQ(s, "-7|1.700000|45.000000000");
}

TEST(Format, LongOutputIsNotTruncated) {
    vesk::String s;
    const std::string big(1000, 'x');
    vesk_sprintf(s, "<%s>", big.c_str());
    EXPECT_EQ(s.size(), 1002u);
    EXPECT_EQ(vesk::Format("%f", 1.7e200).size(), 201u + 7u);
}

TEST(Format, DecimalPointIgnoresTheLocale) {
    // A locale with a decimal comma, if the machine has one; otherwise the
    // test still proves the C locale result.
    const char* candidates[] = {"it_IT.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8"};
    for (const char* c : candidates)
        if (std::setlocale(LC_NUMERIC, c)) break;
    vesk::String s;
    vesk_sprintf(s, "%f %.9f", 1.5, -0.25);
    EXPECT_EQ(s, "1.500000 -0.250000000");
    EXPECT_EQ(Written([](FILE* f) { vesk_fprintf(f, "%f", 2.75); }), "2.750000");
    std::setlocale(LC_NUMERIC, "C");
}

TEST(Format, NullStreamIsIgnored) {
    EXPECT_EQ(vesk_fprintf(nullptr, "%f", 1.0), 0);
}

TEST(Format, ProgramName) { EXPECT_STREQ(vesk::GetPrgName(), "roadx"); }

}  // namespace
