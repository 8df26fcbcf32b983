#include "cad/dxf_text.h"

#include <cstdint>

namespace roadx::cad::dxf {

namespace {

// Decodes one UTF-8 sequence at s[i]; returns its length, or 0 when it is
// not valid (overlong, surrogate, beyond U+10FFFF, truncated).
size_t DecodeUtf8(std::string_view s, size_t i, uint32_t& cp) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    size_t len;
    uint32_t min;
    if (b0 < 0x80) { cp = b0; return 1; }
    if ((b0 & 0xE0) == 0xC0) { len = 2; cp = b0 & 0x1F; min = 0x80; }
    else if ((b0 & 0xF0) == 0xE0) { len = 3; cp = b0 & 0x0F; min = 0x800; }
    else if ((b0 & 0xF8) == 0xF0) { len = 4; cp = b0 & 0x07; min = 0x10000; }
    else return 0;
    if (i + len > s.size()) return 0;
    for (size_t k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (b & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return len;
}

void AppendEscape(std::string& out, uint32_t unit) {
    static const char kHex[] = "0123456789ABCDEF";
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(unit >> shift) & 0xF];
}

}  // namespace

unsigned char ToCp1252(uint32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
    // 0x80..0x9F of the code page hold these characters.
    static const uint16_t kHigh[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                       0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    for (unsigned i = 0; i < 32; ++i)
        if (kHigh[i] != 0 && kHigh[i] == cp) return static_cast<unsigned char>(0x80 + i);
    return 0;
}

void AppendDxfText(std::string& out, std::string_view utf8, EEncoding enc) {
    for (size_t i = 0; i < utf8.size();) {
        uint32_t cp = 0;
        const size_t len = DecodeUtf8(utf8, i, cp);
        if (len == 0) {
            out += '?';
            ++i;
            continue;
        }
        i += len;
        if (cp < 0x20 || cp == 0x7F) out += ' ';
        else if (cp == '^' && enc == EEncoding::Text) out += "^ ";
        else if (cp < 0x80) out += static_cast<char>(cp);
        else if (enc == EEncoding::Name && ToCp1252(cp) != 0) out += static_cast<char>(ToCp1252(cp));
        else if (cp < 0x10000) AppendEscape(out, cp);
        else {
            AppendEscape(out, 0xD800 + ((cp - 0x10000) >> 10));
            AppendEscape(out, 0xDC00 + ((cp - 0x10000) & 0x3FF));
        }
    }
}

std::string EncodeDxfText(std::string_view utf8, EEncoding enc) {
    std::string out;
    out.reserve(utf8.size());
    AppendDxfText(out, utf8, enc);
    return out;
}

std::string SanitizeTableName(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        uint32_t cp = 0;
        const size_t len = DecodeUtf8(utf8, i, cp);
        // A character the code page lacks is kept: it is written as a
        // \U+XXXX escape, which readers decode, so that every name survives
        // and different names stay different. Only a broken byte becomes '_'.
        if (len == 0) {
            out += '_';
            i += len == 0 ? 1 : len;
            continue;
        }
        if (cp < 0x20 || cp == 0x7F) {
            out += '_';
        } else {
            switch (cp) {
                case '<': case '>': case '/': case '\\': case '"': case ':':
                case ';': case '?': case '*': case '|': case '=': case '`':
                    out += '_';
                    break;
                default:
                    out.append(utf8.substr(i, len));
                    break;
            }
        }
        i += len;
    }
    if (out.empty()) out.push_back('_');
    return out;
}

}  // namespace roadx::cad::dxf
