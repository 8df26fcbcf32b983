#include "rd3/rd3_bytes.h"

#include <cstring>

#include "rd3/rd3_name.h"

namespace roadx::rd3 {

void ByteSink::U16(uint16_t v) {
    bytes_.push_back(static_cast<uint8_t>(v & 0xFF));
    bytes_.push_back(static_cast<uint8_t>(v >> 8));
}

void ByteSink::U32(uint32_t v) {
    for (int i = 0; i < 4; ++i) bytes_.push_back(static_cast<uint8_t>((v >> (8 * i)) & 0xFF));
}

void ByteSink::F64Bits(uint64_t bits) {
    for (int i = 0; i < 8; ++i) bytes_.push_back(static_cast<uint8_t>((bits >> (8 * i)) & 0xFF));
}

void ByteSink::F64(double v) {
    uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    F64Bits(bits);
}

void ByteSink::Zeros(size_t n) { bytes_.insert(bytes_.end(), n, uint8_t{0}); }

void ByteSink::Bytes(const uint8_t* p, size_t n) { bytes_.insert(bytes_.end(), p, p + n); }

void ByteSink::Name(std::u16string_view name) {
    uint8_t field[kNameBytes];
    EncodeName(name, field);
    Bytes(field, kNameBytes);
}

bool PatchU32(std::vector<uint8_t>& image, size_t pos, uint32_t v) {
    if (pos > image.size() || image.size() - pos < 4) return false;
    for (int i = 0; i < 4; ++i) image[pos + i] = static_cast<uint8_t>((v >> (8 * i)) & 0xFF);
    return true;
}

}  // namespace roadx::rd3
