#include "vesk/bit_stream_reader.h"

#include <cstring>

namespace vesk {

bool CBitStreamReader::Seek(unsigned int offset) {
    if (offset > size_) {
        failed_ = true;
        pos_ = size_;
        return false;
    }
    pos_ = offset;
    return true;
}

bool CBitStreamReader::Take(size_t n, const uint8_t** p) {
    if (n > size_ - pos_) {
        failed_ = true;
        pos_ = size_;
        return false;
    }
    *p = data_ + pos_;
    pos_ += n;
    return true;
}

uint16_t CBitStreamReader::ReadRawShort() {
    const uint8_t* p;
    if (!Take(2, &p)) return 0;
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

uint32_t CBitStreamReader::ReadRawInt() {
    const uint8_t* p;
    if (!Take(4, &p)) return 0;
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

double CBitStreamReader::ReadDouble() {
    const uint8_t* p;
    if (!Take(8, &p)) return 0.0;
    uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = (bits << 8) | p[i];
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

bool CBitStreamReader::ReadBytes(size_t count, void* dest) {
    const uint8_t* p;
    if (!Take(count, &p)) {
        if (dest && count) std::memset(dest, 0, count);
        return false;
    }
    if (count) std::memcpy(dest, p, count);
    return true;
}

}  // namespace vesk
