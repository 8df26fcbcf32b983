#include "vesk/out_buffer.h"

#include <cstdarg>
#include <cstring>
#include <string>

#include "vesk/fixed_format.h"
#include "vesk/format.h"

namespace vesk {

COutBuffer::COutBuffer(FILE* file) : file_(file) {
    if (file_) buf_ = std::make_unique<char[]>(kCapacity);
}

COutBuffer::~COutBuffer() { WriteOut(); }

void COutBuffer::WriteOut() {
    if (file_ && used_ > 0 && !failed_) {
        if (std::fwrite(buf_.get(), 1, used_, file_) != used_) failed_ = true;
    }
    used_ = 0;
}

char* COutBuffer::Reserve(size_t n) {
    if (kCapacity - used_ < n) WriteOut();
    return buf_.get() + used_;
}

void COutBuffer::Str(std::string_view text) {
    if (!file_ || failed_) return;
    if (text.size() <= kCapacity - used_) {
        std::memcpy(buf_.get() + used_, text.data(), text.size());
        used_ += text.size();
        return;
    }
    WriteOut();
    if (text.size() < kCapacity) {
        std::memcpy(buf_.get(), text.data(), text.size());
        used_ = text.size();
    } else if (!failed_ && std::fwrite(text.data(), 1, text.size(), file_) != text.size()) {
        failed_ = true;
    }
}

void COutBuffer::Ch(char c) {
    if (!file_ || failed_) return;
    *Reserve(1) = c;
    ++used_;
}

void COutBuffer::F6(double v) {
    if (!file_ || failed_) return;
    char* p = Reserve(kMaxFixedChars);
    used_ += static_cast<size_t>(FormatF6(p, v) - p);
}

void COutBuffer::F9(double v) {
    if (!file_ || failed_) return;
    char* p = Reserve(kMaxFixedChars);
    used_ += static_cast<size_t>(FormatF9(p, v) - p);
}

void COutBuffer::I(int v) {
    if (!file_ || failed_) return;
    char* p = Reserve(kMaxIntChars);
    used_ += static_cast<size_t>(FormatInt(p, v) - p);
}

void COutBuffer::Printf(const char* fmt, ...) {
    if (!file_ || failed_ || fmt == nullptr) return;
    va_list ap;
    va_start(ap, fmt);
    const std::string text = VFormat(fmt, ap);
    va_end(ap);
    Str(text);
}

bool COutBuffer::Flush() {
    if (!file_) return true;
    WriteOut();
    if (!failed_ && std::fflush(file_) != 0) failed_ = true;
    return !failed_;
}

}  // namespace vesk
