#include "cad/dwg_bits.h"

#include <array>
#include <bit>
#include <cstring>

namespace roadx::cad::dwg {

namespace {

std::array<uint8_t, 8> LeBytes(double v) {
    std::array<uint8_t, 8> b{};
    const auto u = std::bit_cast<uint64_t>(v);
    for (int i = 0; i < 8; ++i) b[i] = static_cast<uint8_t>(u >> (8 * i));
    return b;
}

// Equal bit patterns: 0.0 and -0.0 differ, as the file must keep them.
bool Same(double a, double b) { return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b); }

// The table of the CRC: the reflected polynomial 0xA001, one entry a byte.
std::array<uint16_t, 256> MakeCrcTable() {
    std::array<uint16_t, 256> t{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned c = i;
        for (int k = 0; k < 8; ++k) c = (c & 1) ? (c >> 1) ^ 0xA001 : c >> 1;
        t[i] = static_cast<uint16_t>(c);
    }
    return t;
}

}  // namespace

// Fills the current byte's free bits at once rather than bit by bit: the
// writer spends most of its time here on large drawings.
void CBitWriter::Bits(uint64_t v, int n) {
    if (n <= 0) return;
    if (n < 64) v &= (uint64_t{1} << n) - 1;
    while (n > 0) {
        const int used = static_cast<int>(bits_ & 7);
        if (used == 0) buf_.push_back(0);
        const int room = 8 - used;
        const int take = n < room ? n : room;
        const auto chunk = static_cast<unsigned>((v >> (n - take)) & ((1u << take) - 1));
        buf_.back() |= static_cast<uint8_t>(chunk << (room - take));
        n -= take;
        bits_ += static_cast<size_t>(take);
    }
}

void CBitWriter::RS(uint16_t v) {
    RC(static_cast<uint8_t>(v));
    RC(static_cast<uint8_t>(v >> 8));
}

void CBitWriter::RL(uint32_t v) {
    for (int i = 0; i < 4; ++i) RC(static_cast<uint8_t>(v >> (8 * i)));
}

void CBitWriter::RD(double v) {
    for (uint8_t b : LeBytes(v)) RC(b);
}

void CBitWriter::BS(int16_t v) {
    if (v == 0) BB(2);
    else if (v == 256) BB(3);
    else if (v > 0 && v < 256) { BB(1); RC(static_cast<uint8_t>(v)); }
    else { BB(0); RS(static_cast<uint16_t>(v)); }
}

void CBitWriter::BL(int32_t v) {
    if (v == 0) BB(2);
    else if (v > 0 && v < 256) { BB(1); RC(static_cast<uint8_t>(v)); }
    else { BB(0); RL(static_cast<uint32_t>(v)); }
}

void CBitWriter::BD(double v) {
    if (Same(v, 1.0)) BB(1);
    else if (Same(v, 0.0)) BB(2);
    else { BB(0); RD(v); }
}

void CBitWriter::DD(double v, double def) {
    if (Same(v, def)) { BB(0); return; }
    const auto b = LeBytes(v);
    const auto d = LeBytes(def);
    if (std::memcmp(&b[4], &d[4], 4) == 0) {
        BB(1);
        for (int i = 0; i < 4; ++i) RC(b[i]);
    } else if (b[6] == d[6] && b[7] == d[7]) {
        BB(2);
        RC(b[4]);
        RC(b[5]);
        for (int i = 0; i < 4; ++i) RC(b[i]);
    } else {
        BB(3);
        RD(v);
    }
}

void CBitWriter::BT(double v) {
    if (Same(v, 0.0)) { B(true); return; }
    B(false);
    BD(v);
}

void CBitWriter::BE(double x, double y, double z) {
    if (Same(x, 0.0) && Same(y, 0.0) && Same(z, 1.0)) { B(true); return; }
    B(false);
    P3BD(x, y, z);
}

void CBitWriter::H(unsigned code, uint64_t handle) {
    int n = 0;
    while (n < 8 && (handle >> (8 * n)) != 0) ++n;
    Bits(code & 0xF, 4);
    Bits(static_cast<uint64_t>(n), 4);
    for (int i = n - 1; i >= 0; --i) RC(static_cast<uint8_t>(handle >> (8 * i)));
}

void CBitWriter::T(std::string_view bytes) {
    if (bytes.size() > 32767) bytes = bytes.substr(0, 32767);
    BS(static_cast<int16_t>(bytes.size()));
    for (char c : bytes) RC(static_cast<uint8_t>(c));
}

void CBitWriter::PadToByte() { bits_ = buf_.size() * 8; }

void CBitWriter::PatchRL(size_t bitPos, uint32_t v) {
    const unsigned shift = bitPos & 7;
    size_t at = bitPos / 8;
    for (int i = 0; i < 4; ++i, ++at) {
        const auto b = static_cast<uint8_t>(v >> (8 * i));
        if (shift == 0) {
            buf_[at] = b;
            continue;
        }
        const auto keep = static_cast<uint8_t>(0xFF00u >> shift);  // the bits before bitPos in this byte
        buf_[at] = static_cast<uint8_t>((buf_[at] & keep) | (b >> shift));
        buf_[at + 1] = static_cast<uint8_t>((buf_[at + 1] & ~keep) | (b << (8 - shift)));
    }
}

void CBitWriter::Append(const CBitWriter& other) {
    if ((bits_ & 7) == 0) {
        buf_.insert(buf_.end(), other.buf_.begin(), other.buf_.end());
        bits_ += other.bits_;
        buf_.resize((bits_ + 7) / 8);
        return;
    }
    size_t left = other.bits_;
    for (size_t i = 0; left > 0; ++i) {
        const int n = left >= 8 ? 8 : static_cast<int>(left);
        Bits(static_cast<uint64_t>(other.buf_[i] >> (8 - n)), n);
        left -= static_cast<size_t>(n);
    }
}

void AppendMC(std::vector<uint8_t>& out, int64_t v) {
    const bool negative = v < 0;
    uint64_t u = negative ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
    while (u > 0x3F) {
        out.push_back(static_cast<uint8_t>((u & 0x7F) | 0x80));
        u >>= 7;
    }
    out.push_back(static_cast<uint8_t>(u | (negative ? 0x40 : 0)));
}

void AppendMS(std::vector<uint8_t>& out, uint32_t v) {
    while (v > 0x7FFF) {
        const unsigned s = (v & 0x7FFF) | 0x8000;
        out.push_back(static_cast<uint8_t>(s));
        out.push_back(static_cast<uint8_t>(s >> 8));
        v >>= 15;
    }
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

// Four bytes a step (slicing by four): table k gives the CRC of a byte
// followed by k zero bytes, so four lookups replace four dependent steps.
// The result is the byte-wise CRC bit for bit.
uint16_t Crc8(uint16_t seed, const uint8_t* p, size_t n) {
    static const auto kTables = [] {
        std::array<std::array<uint16_t, 256>, 4> t{};
        t[0] = MakeCrcTable();
        for (int k = 1; k < 4; ++k)
            for (unsigned b = 0; b < 256; ++b) t[k][b] = static_cast<uint16_t>((t[k - 1][b] >> 8) ^ t[0][t[k - 1][b] & 0xFF]);
        return t;
    }();
    uint32_t crc = seed;
    size_t i = 0;
    for (; i + 4 <= n; i += 4) {
        const uint32_t x = crc ^ (uint32_t{p[i]} | uint32_t{p[i + 1]} << 8 | uint32_t{p[i + 2]} << 16 |
                                  uint32_t{p[i + 3]} << 24);
        crc = kTables[3][x & 0xFF] ^ kTables[2][(x >> 8) & 0xFF] ^ kTables[1][(x >> 16) & 0xFF] ^ kTables[0][x >> 24];
    }
    for (; i < n; ++i) crc = (crc >> 8) ^ kTables[0][(p[i] ^ crc) & 0xFF];
    return static_cast<uint16_t>(crc);
}

}  // namespace roadx::cad::dwg
