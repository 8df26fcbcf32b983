#include "landxml_import/xml_text_encoding.h"

#include <algorithm>
#include <cstdint>

namespace {

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
    return true;
}

// The value of encoding="..." in a leading XML declaration, or "".
std::string_view DeclaredEncodingName(std::string_view bytes) {
    if (bytes.substr(0, 5) != "<?xml") return {};
    const size_t close = bytes.find("?>");
    const std::string_view decl = bytes.substr(0, close == std::string_view::npos ? std::min<size_t>(bytes.size(), 256) : close);
    const size_t key = decl.find("encoding");
    if (key == std::string_view::npos) return {};
    size_t i = key + 8;
    auto skipBlanks = [&] {
        while (i < decl.size() && (decl[i] == ' ' || decl[i] == '\t' || decl[i] == '\r' || decl[i] == '\n')) ++i;
    };
    skipBlanks();
    if (i >= decl.size() || decl[i] != '=') return {};
    ++i;
    skipBlanks();
    if (i >= decl.size() || (decl[i] != '"' && decl[i] != '\'')) return {};
    const char quote = decl[i++];
    const size_t end = decl.find(quote, i);
    if (end == std::string_view::npos) return {};
    return decl.substr(i, end - i);
}

// Unicode code points of windows-1252 bytes 0x80 to 0x9F; the five unassigned
// bytes keep their ISO-8859-1 meaning (the C1 control of the same value).
constexpr uint16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98-9F
};

void AppendCodePoint(uint32_t cp, std::string& out) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

}  // namespace

TXmlDeclaredEncoding DetectXmlEncoding(std::string_view bytes) {
    if (bytes.size() >= 2) {
        const auto b0 = static_cast<unsigned char>(bytes[0]);
        const auto b1 = static_cast<unsigned char>(bytes[1]);
        if ((b0 == 0xFE && b1 == 0xFF) || (b0 == 0xFF && b1 == 0xFE) || b0 == 0 || b1 == 0)
            return TXmlDeclaredEncoding::WIDE;
    }
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") return TXmlDeclaredEncoding::UTF8;
    const std::string_view name = DeclaredEncodingName(bytes);
    for (const char* latin1 : {"ISO-8859-1", "ISO_8859-1", "ISO8859-1", "latin1", "latin-1", "l1", "iso-ir-100",
                               "cp819", "IBM819", "csISOLatin1"})
        if (EqualNoCase(name, latin1)) return TXmlDeclaredEncoding::LATIN1;
    for (const char* cp1252 : {"windows-1252", "cp1252", "x-cp1252", "cp-1252"})
        if (EqualNoCase(name, cp1252)) return TXmlDeclaredEncoding::CP1252;
    return TXmlDeclaredEncoding::UTF8;
}

void AppendLatin1AsUtf8(unsigned char c, std::string& out) { AppendCodePoint(c, out); }

void AppendCp1252AsUtf8(unsigned char c, std::string& out) {
    AppendCodePoint((c >= 0x80 && c <= 0x9F) ? kCp1252High[c - 0x80] : c, out);
}

pugi::xml_encoding ConvertXmlTextToUtf8(std::string& text) {
    const TXmlDeclaredEncoding enc = DetectXmlEncoding(text);
    if (enc == TXmlDeclaredEncoding::WIDE) return pugi::encoding_auto;
    if (enc == TXmlDeclaredEncoding::UTF8) {
        if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
        return pugi::encoding_utf8;
    }
    size_t high = 0;
    for (const char c : text) high += static_cast<unsigned char>(c) >= 0x80;
    if (high == 0) return pugi::encoding_utf8;  // plain ASCII reads the same
    std::string out;
    out.reserve(text.size() + 2 * high);
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (enc == TXmlDeclaredEncoding::LATIN1)
            AppendLatin1AsUtf8(u, out);
        else
            AppendCp1252AsUtf8(u, out);
    }
    text.swap(out);
    return pugi::encoding_utf8;
}
