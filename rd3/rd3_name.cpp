#include "rd3/rd3_name.h"

#include <algorithm>

namespace roadx::rd3 {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool IsLowSurrogate(char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

void AppendCodePoint(std::u16string& out, char32_t cp) {
    if (cp < 0x10000) {
        out.push_back(static_cast<char16_t>(cp));
        return;
    }
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// Shape of a well-formed sequence by its lead byte (Unicode table 3-7): its
// length and the allowed range of its second byte, which is what excludes
// overlong forms, encoded surrogates and values above U+10FFFF.
struct LeadInfo {
    int length = 0;  // 0: the byte cannot start a sequence
    uint8_t lo = 0x80;
    uint8_t hi = 0xBF;
};

LeadInfo ClassifyLead(uint8_t b) {
    if (b >= 0xC2 && b <= 0xDF) return {2, 0x80, 0xBF};
    if (b == 0xE0) return {3, 0xA0, 0xBF};
    if (b == 0xED) return {3, 0x80, 0x9F};
    if (b >= 0xE1 && b <= 0xEF) return {3, 0x80, 0xBF};
    if (b == 0xF0) return {4, 0x90, 0xBF};
    if (b >= 0xF1 && b <= 0xF3) return {4, 0x80, 0xBF};
    if (b == 0xF4) return {4, 0x80, 0x8F};
    return {};
}

}  // namespace

std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    const auto* s = reinterpret_cast<const uint8_t*>(utf8.data());
    const size_t n = utf8.size();
    size_t i = 0;
    while (i < n) {
        const uint8_t b = s[i];
        if (b < 0x80) {
            out.push_back(b);
            ++i;
            continue;
        }
        const LeadInfo lead = ClassifyLead(b);
        if (lead.length == 0) {
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        char32_t cp = b & (0x7F >> lead.length);
        int k = 1;
        for (; k < lead.length && i + k < n; ++k) {
            const uint8_t c = s[i + k];
            const uint8_t lo = k == 1 ? lead.lo : 0x80;
            const uint8_t hi = k == 1 ? lead.hi : 0xBF;
            if (c < lo || c > hi) break;
            cp = (cp << 6) | (c & 0x3F);
        }
        if (k < lead.length) {
            // One replacement for the maximal well-formed prefix; the byte
            // that broke it is looked at again as a possible lead.
            out.push_back(kReplacement);
            i += k;
            continue;
        }
        AppendCodePoint(out, cp);
        i += lead.length;
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
    std::string out;
    out.reserve(utf16.size() * 3);
    for (size_t i = 0; i < utf16.size(); ++i) {
        const char16_t u = utf16[i];
        if (IsHighSurrogate(u) && i + 1 < utf16.size() && IsLowSurrogate(utf16[i + 1])) {
            const char32_t cp = 0x10000 + ((static_cast<char32_t>(u) - 0xD800) << 10) +
                                (static_cast<char32_t>(utf16[i + 1]) - 0xDC00);
            AppendUtf8(out, cp);
            ++i;
        } else if (IsHighSurrogate(u) || IsLowSurrogate(u)) {
            AppendUtf8(out, kReplacement);
        } else {
            AppendUtf8(out, u);
        }
    }
    return out;
}

std::u16string CutUtf16(std::u16string_view s, size_t maxUnits) {
    if (s.size() <= maxUnits) return std::u16string(s);
    size_t keep = maxUnits;
    // s[keep] is the first unit dropped; if it is the low half of a pair
    // whose high half is kept, drop the high half too.
    if (keep > 0 && IsHighSurrogate(s[keep - 1]) && IsLowSurrogate(s[keep])) --keep;
    return std::u16string(s.substr(0, keep));
}

RD3Name MakeName(std::string_view utf8) { return CutUtf16(Utf8ToUtf16(utf8), kNameUnits); }

void EncodeName(std::u16string_view name, uint8_t out[kNameBytes]) {
    std::fill(out, out + kNameBytes, uint8_t{0});
    const size_t n = std::min(name.size(), kNameUnits);
    for (size_t i = 0; i < n; ++i) {
        out[2 * i] = static_cast<uint8_t>(name[i] & 0xFF);
        out[2 * i + 1] = static_cast<uint8_t>(name[i] >> 8);
    }
}

RD3Name DecodeName(const uint8_t in[kNameBytes]) {
    RD3Name name;
    for (size_t i = 0; i < kNameUnits; ++i) {
        const auto u = static_cast<char16_t>(in[2 * i] | (in[2 * i + 1] << 8));
        if (u == 0) break;
        name.push_back(u);
    }
    return name;
}

}  // namespace roadx::rd3
