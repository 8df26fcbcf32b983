#include "vesk/fixed_format.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vesk {

namespace {

char* Copy(char* out, const char* text) {
    const size_t n = std::strlen(text);
    std::memcpy(out, text, n);
    return out + n;
}

constexpr double kPow10[10] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
constexpr uint64_t kPow10Int[10] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

// The common case of the writers (coordinates, elevations): |v| * 10^p well
// inside the exact integers of a double. The exact product v * 10^p is the
// sum of its rounded value and the fma remainder, so its distance to the
// nearest integer is known exactly enough to round half to even as printf
// does; values that come within 1e-6 of a tie are left to the exact path.
// Gives null when it does not decide.
char* FastFixed(char* out, double v, int precision) {
    const double scale = kPow10[precision];
    const double product = v * scale;
    if (!(std::fabs(product) < 4e15)) return nullptr;
    const double remainder = std::fma(v, scale, -product);
    const double nearest = std::nearbyint(product);
    const double d = (product - nearest) + remainder;
    if (std::fabs(std::fabs(d) - 0.5) < 1e-6) return nullptr;
    double rounded = nearest;
    if (d > 0.5) rounded += 1.0;
    if (d < -0.5) rounded -= 1.0;
    const uint64_t magnitude = static_cast<uint64_t>(std::fabs(rounded));
    // printf keeps the sign of negative values that round to zero, and of -0.
    if (std::signbit(v)) *out++ = '-';
    const uint64_t unit = kPow10Int[precision];
    out = std::to_chars(out, out + 20, magnitude / unit).ptr;
    if (precision == 0) return out;
    *out++ = '.';
    uint64_t frac = magnitude % unit;
    for (int i = precision - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + frac % 10);
        frac /= 10;
    }
    return out + precision;
}

}  // namespace

char* FormatFixed(char* out, double v, int precision) {
    if (precision < 0) precision = 0;
    if (precision > 9) precision = 9;
    // printf spells non-finite values itself, with the sign bit of NaN
    // shown; to_chars is not relied on for these.
    if (std::isnan(v)) return Copy(out, std::signbit(v) ? "-nan" : "nan");
    if (std::isinf(v)) return Copy(out, v < 0 ? "-inf" : "inf");
    if (char* end = FastFixed(out, v, precision)) return end;
    // to_chars in fixed form with a precision prints the exact binary value
    // rounded half to even, as glibc's printf does, and keeps the sign of
    // negative zero.
    return std::to_chars(out, out + kMaxFixedChars, v, std::chars_format::fixed, precision).ptr;
}

char* FormatInt(char* out, int v) { return std::to_chars(out, out + kMaxIntChars, v).ptr; }

}  // namespace vesk
