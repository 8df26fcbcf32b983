// Helpers of the RD3 tests: bytes written out by hand as hex text, so that
// expected records never come from the code under test.
#pragma once
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace rd3test {

// "01 0a ff" → {0x01, 0x0a, 0xff}; blanks, newlines and '|' are separators.
inline std::vector<uint8_t> Hex(std::string_view text) {
    std::vector<uint8_t> out;
    int hi = -1;
    for (char c : text) {
        if (!std::isxdigit(static_cast<unsigned char>(c))) continue;
        const int v = std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (std::tolower(c) - 'a' + 10);
        if (hi < 0) {
            hi = v;
        } else {
            out.push_back(static_cast<uint8_t>(hi * 16 + v));
            hi = -1;
        }
    }
    return out;
}

inline std::vector<uint8_t> Zeros(size_t n) { return std::vector<uint8_t>(n, 0); }

inline std::vector<uint8_t> Cat(std::initializer_list<std::vector<uint8_t>> parts) {
    std::vector<uint8_t> out;
    for (const auto& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}

// 66-byte name field of an ASCII text, built byte by byte.
inline std::vector<uint8_t> AsciiName(std::string_view s) {
    std::vector<uint8_t> out(66, 0);
    for (size_t i = 0; i < s.size() && i < 33; ++i) out[2 * i] = static_cast<uint8_t>(s[i]);
    return out;
}

inline std::string ToHex(const std::vector<uint8_t>& b) {
    static const char* d = "0123456789abcdef";
    std::string s;
    for (size_t i = 0; i < b.size(); ++i) {
        if (i) s += (i % 16 == 0) ? '\n' : ' ';
        s += d[b[i] >> 4];
        s += d[b[i] & 15];
    }
    return s;
}

inline uint32_t U32At(const std::vector<uint8_t>& b, size_t pos) {
    return static_cast<uint32_t>(b[pos]) | (static_cast<uint32_t>(b[pos + 1]) << 8) |
           (static_cast<uint32_t>(b[pos + 2]) << 16) | (static_cast<uint32_t>(b[pos + 3]) << 24);
}
inline uint16_t U16At(const std::vector<uint8_t>& b, size_t pos) {
    return static_cast<uint16_t>(b[pos] | (b[pos + 1] << 8));
}
inline double F64At(const std::vector<uint8_t>& b, size_t pos) {
    uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = (bits << 8) | b[pos + static_cast<size_t>(i)];
    double d;
    std::memcpy(&d, &bits, 8);
    return d;
}

}  // namespace rd3test
