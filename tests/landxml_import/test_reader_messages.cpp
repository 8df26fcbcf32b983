// Texts of the file quoted in messages: one short line whatever they hold.
#include <gtest/gtest.h>

#include "landxml_import/reader_messages.h"

namespace {

TEST(ReaderMessages, QuotedTextsAreTrimmedAndKeepLineBreaksVisible) {
    EXPECT_EQ(QuoteForMessage(""), "\"\"");
    EXPECT_EQ(QuoteForMessage("  1   2\t3  "), "\"1 2 3\"");
    EXPECT_EQ(QuoteForMessage("250\n110"), "\"250\\n110\"");
    EXPECT_EQ(QuoteForMessage("1 \r\n 2"), "\"1\\n2\"");
    EXPECT_EQ(QuoteForMessage("a\x01" "b"), "\"a?b\"");
}

TEST(ReaderMessages, LongTextsAreCutAfterFortyCharacters) {
    const std::string forty(40, 'x');
    EXPECT_EQ(QuoteForMessage(forty), "\"" + forty + "\"");
    EXPECT_EQ(QuoteForMessage(forty + "y"), "\"" + forty + "...\"");
    // Thirty-nine letters and a two-byte letter: the letter is kept whole.
    const std::string mixed = std::string(39, 'x') + "\xC3\xA9" + "zz";
    EXPECT_EQ(QuoteForMessage(mixed), "\"" + std::string(39, 'x') + "\xC3\xA9...\"");
}

TEST(ReaderMessages, CountsOfNumbers) {
    EXPECT_EQ(CountOfNumbers(0), "0 numbers");
    EXPECT_EQ(CountOfNumbers(1), "1 number");
    EXPECT_EQ(CountOfNumbers(7), "7 numbers");
}

}  // namespace
