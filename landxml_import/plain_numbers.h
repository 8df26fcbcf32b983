// The plain forms of the numbers of surface points and faces, read fast.
//
// A surface file holds millions of texts like "5000000.000 400002.500 100.000"
// and "998992 998993 999993". The text-list rules (text_lists.h) read them,
// but most of their work is for forms these texts never take. The readers
// here take only the plain forms, for which they give exactly what the
// text-list rules give, with nothing to report; for any other text they say
// false and the caller reads it the ordinary way.
//
//   plain double: an optional '-', then digits with at most one '.' and at
//                 least one digit, at most 19 significant digits of which
//                 the value fits 2^53, and at most 22 after the '.';
//   plain id:     one to nine decimal digits, nothing else;
//   plain list:   the trimmed text (white space of the classic locale at
//                 both ends) cut at runs of blanks into exactly `n` tokens,
//                 each of them plain.
//
// A plain double's value is its digits as an integer divided by a power of
// ten: both are exact doubles, so the one division rounds the exact decimal
// value correctly, as strtod and from_chars do; the results are the same bit
// for bit (-0 included).
#pragma once
#include <string_view>

namespace plain_numbers {

// `n` plain doubles, or false.
bool ReadDoubles(std::string_view text, int n, double* out);
// `n` plain ids (as the text lists read them: ints), or false.
bool ReadIds(std::string_view text, int n, int* out);
// One plain id (an attribute value), or false.
bool ReadId(std::string_view text, int& out);

// The longest run of [p, end) that may be a plain double ('-', digits, one
// '.') read as one: the end of the run, or null when the run is not a plain
// double. For readers that find the tokens themselves.
const char* ParseDouble(const char* p, const char* end, double& out);

}  // namespace plain_numbers
