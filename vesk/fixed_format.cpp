#include "vesk/fixed_format.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace vesk {

namespace {

char* Copy(char* out, const char* text) {
    const size_t n = std::strlen(text);
    std::memcpy(out, text, n);
    return out + n;
}

}  // namespace

char* FormatFixed(char* out, double v, int precision) {
    if (precision < 0) precision = 0;
    if (precision > 9) precision = 9;
    // printf spells non-finite values itself, with the sign bit of NaN
    // shown; to_chars is not relied on for these.
    if (std::isnan(v)) return Copy(out, std::signbit(v) ? "-nan" : "nan");
    if (std::isinf(v)) return Copy(out, v < 0 ? "-inf" : "inf");
    // to_chars in fixed form with a precision prints the exact binary value
    // rounded half to even, as glibc's printf does, and keeps the sign of
    // negative zero.
    return std::to_chars(out, out + kMaxFixedChars, v, std::chars_format::fixed, precision).ptr;
}

char* FormatInt(char* out, int v) { return std::to_chars(out, out + kMaxIntChars, v).ptr; }

}  // namespace vesk
