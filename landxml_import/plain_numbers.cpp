#include "landxml_import/plain_numbers.h"

#include <cstddef>
#include <cstdint>

#include "landxml_import/text_lists.h"

namespace plain_numbers {
namespace {

using text_lists_detail::IsSpace;

constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The text trimmed as the text lists trim it.
std::string_view Trim(std::string_view t) {
    size_t b = 0, e = t.size();
    while (b < e && IsSpace(t[b])) ++b;
    while (e > b && IsSpace(t[e - 1])) --e;
    return t.substr(b, e - b);
}

}  // namespace

namespace {

// ParseDouble for any length: leading zeros are not counted as significant.
const char* ParseDoubleSlow(const char* p, const char* end, bool negative, double& out) {
    uint64_t mantissa = 0;
    int significant = 0, afterDot = 0, digits = 0;
    bool dot = false;
    for (; p < end; ++p) {
        const char c = *p;
        if (static_cast<unsigned>(c - '0') < 10) {
            ++digits;
            afterDot += dot;
            if (mantissa == 0 && c == '0') continue;  // leading zeros add nothing
            if (++significant > 19) return nullptr;
            mantissa = mantissa * 10 + static_cast<unsigned>(c - '0');
        } else if (c == '.' && !dot) {
            dot = true;
        } else {
            break;
        }
    }
    if (digits == 0 || afterDot > 22 || mantissa > (uint64_t{1} << 53)) return nullptr;
    const double magnitude = static_cast<double>(mantissa) / kPow10[afterDot];
    out = negative ? -magnitude : magnitude;
    return p;
}

}  // namespace

const char* ParseDouble(const char* p, const char* end, double& out) {
    const bool negative = p < end && *p == '-';
    if (negative) ++p;
    // The common case in two tight loops: digits, '.', digits, 19 at most
    // in all (no overflow of the mantissa); anything longer is read by the
    // general loop, which does not count leading zeros.
    const char* const start = p;
    uint64_t mantissa = 0;
    for (; p < end && static_cast<unsigned>(*p - '0') < 10; ++p) mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    const char* const whole = p;
    int afterDot = 0;
    if (p < end && *p == '.') {
        const char* const frac = ++p;
        for (; p < end && static_cast<unsigned>(*p - '0') < 10; ++p)
            mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
        afterDot = static_cast<int>(p - frac);
    }
    const ptrdiff_t digits = (whole - start) + afterDot;
    if (digits > 19) return ParseDoubleSlow(start, end, negative, out);
    if (digits == 0 || afterDot > 22 || mantissa > (uint64_t{1} << 53)) return nullptr;
    const double magnitude = static_cast<double>(mantissa) / kPow10[afterDot];
    out = negative ? -magnitude : magnitude;
    return p;
}

namespace {

// One token [p, end) that must be a plain double as a whole.
bool WholeDouble(const char* p, const char* end, double& out) { return ParseDouble(p, end, out) == end; }

// One token that must be a plain id.
bool ParseId(const char* p, const char* end, int& out) {
    if (p == end || end - p > 9) return false;
    int v = 0;
    for (; p < end; ++p) {
        if (*p < '0' || *p > '9') return false;
        v = v * 10 + (*p - '0');
    }
    out = v;
    return true;
}

// Cuts the trimmed text at runs of blanks into exactly n tokens, each
// read by parse.
template <class T, class Parse>
bool ReadList(std::string_view text, int n, T* out, Parse&& parse) {
    const std::string_view t = Trim(text);
    const char* p = t.data();
    const char* const end = p + t.size();
    int count = 0;
    while (p < end) {
        const char* stop = p;
        while (stop < end && *stop != ' ') ++stop;
        if (count == n || !parse(p, stop, out[count])) return false;
        ++count;
        p = stop;
        while (p < end && *p == ' ') ++p;
    }
    return count == n;
}

}  // namespace

bool ReadDoubles(std::string_view text, int n, double* out) { return ReadList(text, n, out, WholeDouble); }

bool ReadIds(std::string_view text, int n, int* out) { return ReadList(text, n, out, ParseId); }

bool ReadId(std::string_view text, int& out) { return ParseId(text.data(), text.data() + text.size(), out); }

}  // namespace plain_numbers
