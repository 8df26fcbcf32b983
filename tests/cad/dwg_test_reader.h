// A small reader of the DWG bit codes for the tests, written from the
// format's description and independent of the writer: it decodes what the
// writer encodes, so that round trips and file structure can be checked.
#pragma once
#include <cctype>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace dwgtest {

class CBitReader {
public:
    CBitReader(const uint8_t* data, size_t bytes, size_t bitPos = 0) : p_(data), bits_(bytes * 8), pos_(bitPos) {}
    explicit CBitReader(const std::vector<uint8_t>& v, size_t bitPos = 0) : CBitReader(v.data(), v.size(), bitPos) {}

    size_t Pos() const { return pos_; }
    void Seek(size_t bit) { pos_ = bit; }

    unsigned Bit() {
        if (pos_ >= bits_) throw std::out_of_range("read past the end");
        const unsigned b = (p_[pos_ / 8] >> (7 - pos_ % 8)) & 1;
        ++pos_;
        return b;
    }
    uint64_t Bits(int n) {
        uint64_t v = 0;
        for (int i = 0; i < n; ++i) v = (v << 1) | Bit();
        return v;
    }
    unsigned BB() { return static_cast<unsigned>(Bits(2)); }
    uint8_t RC() { return static_cast<uint8_t>(Bits(8)); }
    uint16_t RS() { const uint16_t lo = RC(); return static_cast<uint16_t>(lo | (RC() << 8)); }
    uint32_t RL() { const uint32_t lo = RS(); return lo | (static_cast<uint32_t>(RS()) << 16); }
    double RD() {
        uint64_t u = 0;
        for (int i = 0; i < 8; ++i) u |= static_cast<uint64_t>(RC()) << (8 * i);
        double d;
        std::memcpy(&d, &u, 8);
        return d;
    }
    int16_t BS() {
        switch (BB()) {
            case 0: return static_cast<int16_t>(RS());
            case 1: return RC();
            case 2: return 0;
            default: return 256;
        }
    }
    int32_t BL() {
        switch (BB()) {
            case 0: return static_cast<int32_t>(RL());
            case 1: return RC();
            case 2: return 0;
            default: throw std::runtime_error("BL code 3 is not used");
        }
    }
    double BD() {
        switch (BB()) {
            case 0: return RD();
            case 1: return 1.0;
            case 2: return 0.0;
            default: throw std::runtime_error("BD code 3 is not used");
        }
    }
    // Bytes of the default patched as the opcode says.
    double DD(double def) {
        uint8_t b[8];
        std::memcpy(b, &def, 8);
        switch (BB()) {
            case 0: break;
            case 1:
                for (int i = 0; i < 4; ++i) b[i] = RC();
                break;
            case 2:
                b[4] = RC();
                b[5] = RC();
                for (int i = 0; i < 4; ++i) b[i] = RC();
                break;
            default: return RD();
        }
        double d;
        std::memcpy(&d, b, 8);
        return d;
    }
    struct THandle {
        unsigned code;
        uint64_t value;
    };
    THandle H() {
        THandle h{static_cast<unsigned>(Bits(4)), 0};
        const int n = static_cast<int>(Bits(4));
        for (int i = 0; i < n; ++i) h.value = (h.value << 8) | RC();
        return h;
    }
    std::string T() {
        const int n = BS();
        std::string s;
        for (int i = 0; i < n; ++i) s += static_cast<char>(RC());
        return s;
    }

private:
    const uint8_t* p_;
    size_t bits_;
    size_t pos_;
};

// Modular char at p[i]; advances i.
inline int64_t ReadMC(const std::vector<uint8_t>& p, size_t& i) {
    uint64_t v = 0;
    int shift = 0;
    while (true) {
        const uint8_t b = p.at(i++);
        if (b & 0x80) {
            v |= static_cast<uint64_t>(b & 0x7F) << shift;
            shift += 7;
            continue;
        }
        v |= static_cast<uint64_t>(b & 0x3F) << shift;
        return (b & 0x40) ? -static_cast<int64_t>(v) : static_cast<int64_t>(v);
    }
}

// Modular short at p[i]; advances i.
inline uint64_t ReadMS(const std::vector<uint8_t>& p, size_t& i) {
    uint64_t v = 0;
    int shift = 0;
    while (true) {
        const unsigned s = p.at(i) | (p.at(i + 1) << 8);
        i += 2;
        v |= static_cast<uint64_t>(s & 0x7FFF) << shift;
        if (!(s & 0x8000)) return v;
        shift += 15;
    }
}

// The CRC as the format describes it, table made from the polynomial.
inline uint16_t Crc(uint16_t seed, const uint8_t* p, size_t n) {
    unsigned crc = seed;
    for (size_t i = 0; i < n; ++i) {
        crc ^= p[i];
        for (int k = 0; k < 8; ++k) crc = (crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1;
    }
    return static_cast<uint16_t>(crc);
}

inline std::vector<uint8_t> Hex(const std::string& text) {
    std::vector<uint8_t> out;
    std::string digits;
    for (char c : text)
        if (std::isxdigit(static_cast<unsigned char>(c))) digits += c;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) out.push_back(static_cast<uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return out;
}

}  // namespace dwgtest
