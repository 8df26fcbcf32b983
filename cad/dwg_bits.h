// The bit stream of DWG files and its number encodings. Data of AC1015
// files is written bit by bit, most significant bit of each byte first;
// raw numbers (RS, RL, RD) are little-endian bytes in that stream. The
// compressed forms spend two bits to say either how many bytes follow or
// which common value (0, 1.0, 256) is meant.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace roadx::cad::dwg {

// Handle reference codes: the relation of the referring object to the
// referred one.
enum EHandleCode : unsigned {
    kHandleOwn = 0,        // the object's own handle, the handle seed
    kSoftOwner = 2,
    kHardOwner = 3,
    kSoftPointer = 4,
    kHardPointer = 5,
};

class CBitWriter {
public:
    size_t BitPos() const { return bits_; }
    const std::vector<uint8_t>& Bytes() const { return buf_; }
    void Reserve(size_t bytes) { buf_.reserve(bytes); }

    // n (0..64) low bits of v, most significant first.
    void Bits(uint64_t v, int n);
    void B(bool v) { Bits(v ? 1 : 0, 1); }
    void BB(unsigned v) { Bits(v & 3u, 2); }
    // A whole byte: at most two bytes of the buffer change.
    void RC(uint8_t v) {
        const unsigned used = bits_ & 7;
        if (used == 0) {
            buf_.push_back(v);
        } else {
            buf_.back() |= static_cast<uint8_t>(v >> used);
            buf_.push_back(static_cast<uint8_t>(v << (8 - used)));
        }
        bits_ += 8;
    }
    void RS(uint16_t v);
    void RL(uint32_t v);
    void RD(double v);
    void BS(int16_t v);
    void BL(int32_t v);
    void BD(double v);
    // BitDouble with default: only the bytes that differ from def.
    void DD(double v, double def);
    // Colour of R2000 files: the colour index as a bitshort.
    void CMC(int16_t index) { BS(index); }
    // Thickness and extrusion of R2000: one bit for the usual value.
    void BT(double v);
    void BE(double x, double y, double z);
    void P2RD(double x, double y) { RD(x); RD(y); }
    void P3BD(double x, double y, double z) { BD(x); BD(y); BD(z); }
    // code.counter.bytes: the handle in as few big-endian bytes as it needs.
    void H(unsigned code, uint64_t handle);
    // Text of R2000 files: a bitshort byte count, then the bytes (in the
    // file's code page), no terminator. Longer texts are cut at 32767 bytes.
    void T(std::string_view bytes);
    // Zero bits up to the next byte boundary.
    void PadToByte();
    // Overwrites the 32 bits of a raw long written earlier at bitPos.
    void PatchRL(size_t bitPos, uint32_t v);
    // Appends the bits of another stream.
    void Append(const CBitWriter& other);

private:
    std::vector<uint8_t> buf_;
    size_t bits_ = 0;
};

// Modular char: 7 bits a byte, high bit set on every byte but the last,
// whose 0x40 bit is the sign. Appends to out.
void AppendMC(std::vector<uint8_t>& out, int64_t v);
// Modular short: 15 bits a little-endian short, high bit set on every short
// but the last. Appends to out.
void AppendMS(std::vector<uint8_t>& out, uint32_t v);

// The 16-bit CRC of DWG files ("8-bit CRC": one table lookup per byte),
// accumulated from seed over n bytes.
uint16_t Crc8(uint16_t seed, const uint8_t* p, size_t n);

// Seed of the CRCs of sections and objects.
inline constexpr uint16_t kCrcSeed = 0xC0C1;

}  // namespace roadx::cad::dwg
