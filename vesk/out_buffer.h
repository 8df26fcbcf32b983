// Buffered text output for the file writers: text and numbers are gathered
// in a 64 KiB buffer and written with fwrite when it fills, on Flush and on
// destruction. Numbers come out exactly as "%f", "%.9f" and "%d" in the C
// locale would give them (vesk/fixed_format.h), whatever the process locale.
//
// A failed write is remembered (Failed) so that the caller can report a full
// disk; after a failure further output is dropped. A null FILE* makes every
// call a no-op that never fails. The FILE* stays owned by the caller.
#pragma once
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

#include "vesk/format.h"

namespace vesk {

class COutBuffer {
public:
    static constexpr size_t kCapacity = 64 * 1024;

    explicit COutBuffer(FILE* file);
    // Writes what is still buffered; a failure there is lost, so callers
    // that report errors call Flush first.
    ~COutBuffer();
    COutBuffer(const COutBuffer&) = delete;
    COutBuffer& operator=(const COutBuffer&) = delete;

    void Str(std::string_view text);
    void Ch(char c);
    void F6(double v);  // "%f"
    void F9(double v);  // "%.9f"
    void I(int v);      // "%d"
    // printf-style text in the C locale, for the rare irregular line.
    void Printf(const char* fmt, ...) VESK_PRINTF(2, 3);

    // Writes the buffer and flushes the stream; false once any write failed.
    bool Flush();
    bool Failed() const { return failed_; }

private:
    // Makes room for n more characters, writing the buffer out if needed.
    char* Reserve(size_t n);
    void WriteOut();

    FILE* file_;
    std::unique_ptr<char[]> buf_;
    size_t used_ = 0;
    bool failed_ = false;
};

}  // namespace vesk
