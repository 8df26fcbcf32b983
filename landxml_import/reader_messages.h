// Texts of the file quoted in the one-line messages that end an import: kept
// short and on one line whatever the file holds.
#pragma once
#include <string>
#include <string_view>

// The text in double quotes, trimmed, each inner run of white space shown as
// one blank, or as \n when it holds a line break (only blanks separate the
// numbers of a list, so a line break matters); cut after 40 characters with
// "..." (a cut never splits a UTF-8 sequence).
std::string QuoteForMessage(std::string_view text);

// "1 number", "0 numbers", "5 numbers".
std::string CountOfNumbers(size_t count);
