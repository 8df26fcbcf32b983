// Little-endian reader over a byte buffer that it does not own. Every read is
// bounds-checked: a read past the end sets a sticky failure, yields zeros and
// never touches memory outside the buffer.
#pragma once
#include <cstddef>
#include <cstdint>

namespace vesk {

class CBitStreamReader {
public:
    CBitStreamReader(size_t size, const uint8_t* buffer) : data_(buffer), size_(buffer ? size : 0) {}

    // Seeking past the end fails (sticky) and leaves the position at the end.
    bool Seek(unsigned int offset);
    uint16_t ReadRawShort();
    uint32_t ReadRawInt();
    double ReadDouble();
    // Copies count bytes; on a short buffer the destination is zero-filled.
    bool ReadBytes(size_t count, void* dest);

    size_t GetPos() const { return pos_; }
    size_t GetSize() const { return size_; }
    size_t Remaining() const { return size_ - pos_; }
    bool Failed() const { return failed_; }
    bool Good() const { return !failed_; }
    void ClearFailure() { failed_ = false; }

private:
    bool Take(size_t n, const uint8_t** p);

    const uint8_t* data_;
    size_t size_;
    size_t pos_ = 0;
    bool failed_ = false;
};

}  // namespace vesk
