// Fast number formatting for the file writers: the exact text that the C
// library's "%f", "%.9f" and "%d" give in the C locale, for every value,
// without printf's format parsing and locale lookups.
//
// Each function writes at `out` and returns one past the last character
// written; nothing is terminated. `out` must have room for kMaxFixedChars
// (resp. kMaxIntChars) characters.
#pragma once
#include <cstddef>

namespace vesk {

// Sign, the 309 integer digits of DBL_MAX, the point and 9 decimals.
inline constexpr size_t kMaxFixedChars = 1 + 309 + 1 + 9;
// Sign and the 10 digits of INT_MIN.
inline constexpr size_t kMaxIntChars = 1 + 10;

// "%.*f" with precision 0..9 (values outside are clamped to that range):
// exact decimal value rounded half to even, "inf", "-inf", "nan", "-nan",
// and the sign of negative zero and of negatives that round to zero kept.
char* FormatFixed(char* out, double v, int precision);
// "%f".
inline char* FormatF6(char* out, double v) { return FormatFixed(out, v, 6); }
// "%.9f".
inline char* FormatF9(char* out, double v) { return FormatFixed(out, v, 9); }
// "%d".
char* FormatInt(char* out, int v);

}  // namespace vesk
