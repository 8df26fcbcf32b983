#include "landxml_import/text_lists.h"

#include <charconv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <locale.h>
#include <string>

namespace {

using text_lists_detail::IsSpace;

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The part of a token that stream extraction of a double takes: an optional
// sign, digits with at most one '.', then an 'e' or 'E' (only after a digit)
// with an optional sign and digits. The stream then converts those
// characters with strtod and yields 0 unless strtod takes all of them.
struct FloatSpan {
    size_t signPos = 0;     // start of the taken characters (sign included)
    size_t digitsPos = 0;   // after the sign
    size_t end = 0;         // one past the last taken character
    bool negative = false;
    bool complete = false;  // strtod would take all taken characters
};

FloatSpan ScanFloat(std::string_view tok, size_t i) {
    FloatSpan s;
    const size_t n = tok.size();
    s.signPos = i;
    if (i < n && (tok[i] == '+' || tok[i] == '-')) {
        s.negative = tok[i] == '-';
        ++i;
    }
    s.digitsPos = i;
    bool mantissaDigit = false;
    bool dot = false;
    bool exponent = false;
    bool exponentDigit = false;
    for (; i < n; ++i) {
        const char c = tok[i];
        if (IsDigit(c)) {
            (exponent ? exponentDigit : mantissaDigit) = true;
        } else if (c == '.' && !dot && !exponent) {
            dot = true;
        } else if ((c == 'e' || c == 'E') && !exponent && mantissaDigit) {
            exponent = true;
            if (i + 1 < n && (tok[i + 1] == '+' || tok[i + 1] == '-')) ++i;
        } else {
            break;
        }
    }
    s.end = i;
    s.complete = mantissaDigit && (!exponent || exponentDigit);
    return s;
}

// The C locale made once, for the rare conversions left to strtod.
locale_t CLocale() {
    static const locale_t loc = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return loc;
}

// What the stream's strtod step gives for the taken characters; used when
// from_chars reports a range error (overflow, or underflow to zero) or does
// not take the same characters.
double StrtodLikeStream(std::string_view taken) {
    const std::string copy(taken);
    char* stop = nullptr;
    const locale_t loc = CLocale();
    const double v = loc ? strtod_l(copy.c_str(), &stop, loc) : std::strtod(copy.c_str(), &stop);
    if (stop == copy.c_str() || *stop != '\0') return 0.0;
    if (v == HUGE_VAL) return DBL_MAX;
    if (v == -HUGE_VAL) return -DBL_MAX;
    return v;
}

}  // namespace

double ReadStreamDouble(std::string_view token) {
    size_t i = 0;
    while (i < token.size() && IsSpace(token[i])) ++i;
    const FloatSpan s = ScanFloat(token, i);
    if (!s.complete) return 0.0;
    // from_chars rounds correctly like strtod but takes no '+', so the
    // magnitude is read and the sign applied (rounding is symmetric).
    const char* first = token.data() + s.digitsPos;
    const char* last = token.data() + s.end;
    double magnitude = 0.0;
    const auto [ptr, ec] = std::from_chars(first, last, magnitude);
    if (ec != std::errc() || ptr != last || std::isinf(magnitude))
        return StrtodLikeStream(token.substr(s.signPos, s.end - s.signPos));
    return s.negative ? -magnitude : magnitude;
}

int ReadStreamInt(std::string_view token) {
    const size_t n = token.size();
    size_t i = 0;
    while (i < n && IsSpace(token[i])) ++i;
    bool negative = false;
    if (i < n && (token[i] == '+' || token[i] == '-')) {
        negative = token[i] == '-';
        ++i;
    }
    // The stream reads a long and clamps it to int; any magnitude above 2^31
    // clamps the same way, so accumulation stops there.
    constexpr uint64_t kCap = uint64_t{1} << 31;
    uint64_t magnitude = 0;
    bool anyDigit = false;
    for (; i < n && IsDigit(token[i]); ++i) {
        anyDigit = true;
        if (magnitude <= kCap) magnitude = magnitude * 10 + static_cast<unsigned>(token[i] - '0');
    }
    if (!anyDigit) return 0;
    if (negative) return magnitude >= kCap ? INT_MIN : -static_cast<int>(magnitude);
    return magnitude >= kCap ? INT_MAX : static_cast<int>(magnitude);
}

void ReadTokenList(std::string_view text, std::vector<vesk::String>& tokens) {
    ForEachToken(text, [&](std::string_view tok) { tokens.emplace_back(tok); });
}

void ReadDoubleList(std::string_view text, std::vector<double>& values, bool isMetric) {
    ForEachToken(text, [&](std::string_view tok) {
        double v = ReadStreamDouble(tok);
        if (!isMetric) FeetToMeters(v);
        values.push_back(v);
    });
}

void ReadIntList(std::string_view text, std::vector<int>& values) {
    ForEachToken(text, [&](std::string_view tok) { values.push_back(ReadStreamInt(tok)); });
}
