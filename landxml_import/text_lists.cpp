#include "landxml_import/text_lists.h"

#include <charconv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <locale.h>
#include <string>

#include "landxml_import/import_diag.h"
#include "landxml_import/reader_messages.h"

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

// The number texts that lose or change data, reported where the import has
// a diagnostics sink. Kept out of line: the common path only tests.
enum class EBadNumber { NotANumber, Cut, Overflow };

[[gnu::noinline, gnu::cold]] void ReportBadNumber(EBadNumber what, std::string_view token, double readAs) {
    CImportDiagScope* d = CImportDiagScope::Current();
    if (!d) return;
    const std::string quoted = QuoteForMessage(token);
    char value[64];
    std::snprintf(value, sizeof value, "%.17g", readAs);
    switch (what) {
        case EBadNumber::NotANumber:
            d->ReportText("number-not-read", token, "text " + quoted + " is not a number", "read as 0");
            break;
        case EBadNumber::Cut:
            d->ReportText("number-cut", token, "text " + quoted + " is a number followed by other text",
                          std::string("read as ") + value + ", the rest ignored");
            break;
        case EBadNumber::Overflow:
            d->ReportText("number-out-of-range", token, "number " + quoted + " is beyond the range of its type",
                          std::string("read as ") + value);
            break;
    }
}

// Text after the number that is not white space.
bool HasRest(std::string_view token, size_t end) {
    for (size_t i = end; i < token.size(); ++i)
        if (!IsSpace(token[i])) return true;
    return false;
}

}  // namespace

double ReadStreamDouble(std::string_view token) {
    size_t i = 0;
    while (i < token.size() && IsSpace(token[i])) ++i;
    const FloatSpan s = ScanFloat(token, i);
    if (!s.complete) {
        if (CImportDiagScope::Current()) ReportBadNumber(EBadNumber::NotANumber, token, 0.0);
        return 0.0;
    }
    if (s.end != token.size() && HasRest(token, s.end) && CImportDiagScope::Current())
        ReportBadNumber(EBadNumber::Cut, token, ReadStreamDouble(token.substr(0, s.end)));
    // from_chars rounds correctly like strtod but takes no '+', so the
    // magnitude is read and the sign applied (rounding is symmetric).
    const char* first = token.data() + s.digitsPos;
    const char* last = token.data() + s.end;
    double magnitude = 0.0;
    const auto [ptr, ec] = std::from_chars(first, last, magnitude);
    if (ec != std::errc() || ptr != last || std::isinf(magnitude)) {
        const double v = StrtodLikeStream(token.substr(s.signPos, s.end - s.signPos));
        if ((v == DBL_MAX || v == -DBL_MAX) && CImportDiagScope::Current())
            ReportBadNumber(EBadNumber::Overflow, token, v);
        return v;
    }
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
    if (!anyDigit) {
        if (CImportDiagScope::Current()) ReportBadNumber(EBadNumber::NotANumber, token, 0.0);
        return 0;
    }
    const int value = negative ? (magnitude >= kCap ? INT_MIN : -static_cast<int>(magnitude))
                               : (magnitude >= kCap ? INT_MAX : static_cast<int>(magnitude));
    if ((i < n || magnitude >= kCap) && CImportDiagScope::Current()) {
        if (magnitude > kCap || (magnitude == kCap && !negative))
            ReportBadNumber(EBadNumber::Overflow, token, value);
        else if (i < n && HasRest(token, i))
            ReportBadNumber(EBadNumber::Cut, token, value);
    }
    return value;
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
