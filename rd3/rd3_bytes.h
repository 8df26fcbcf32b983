// Little-endian byte building for RD3 records.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace roadx::rd3 {

class ByteSink {
public:
    void U16(uint16_t v);
    void U32(uint32_t v);
    void F64(double v);
    void F64Bits(uint64_t bits);
    void Zeros(size_t n);
    void Bytes(const uint8_t* p, size_t n);
    // A 66-byte name field (zero-padded, at most 33 units written).
    void Name(std::u16string_view name);

    const std::vector<uint8_t>& Data() const { return bytes_; }
    std::vector<uint8_t>& Data() { return bytes_; }
    size_t Size() const { return bytes_.size(); }

private:
    std::vector<uint8_t> bytes_;
};

// Overwrites 4 bytes at pos of an image with v, little-endian; false (and
// nothing written) when they do not fit.
bool PatchU32(std::vector<uint8_t>& image, size_t pos, uint32_t v);

}  // namespace roadx::rd3
