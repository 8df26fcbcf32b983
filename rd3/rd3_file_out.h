// The RD3 file as the writer makes it: records are written one after the
// other, and links are patched afterwards (the directory offsets, and each
// record's next-link once the following record's position is known).
#pragma once
#include <cstdint>
#include <cstdio>
#include <vector>

#include "rd3/rd3_format.h"

namespace roadx::rd3 {

class Rd3FileOut {
public:
    explicit Rd3FileOut(FILE* f) : f_(f) {}

    uint32_t Pos() const { return pos_; }
    void Write(const std::vector<uint8_t>& bytes);
    // Writes v at pos and comes back. A position at or past the end of what
    // was written is left alone: nothing is there to patch yet, and the
    // record written there later carries its own links.
    void PatchU32(uint32_t pos, uint32_t v);
    // Points directory slot (0 to 3) at the current position.
    void PatchDirectory(int slot);
    bool Failed() const { return failed_; }

private:
    FILE* f_;
    uint32_t pos_ = 0;
    uint32_t end_ = 0;
    bool failed_ = false;
};

// The links of one chain: before each record, the record before it gets its
// next-link pointed here; the record itself names that one as its previous.
class Rd3Chain {
public:
    explicit Rd3Chain(Rd3FileOut& out) : out_(out) {}
    // Call before writing (or skipping) a record; gives its previous-link.
    uint32_t Link();
    // The record at the current position is now the last of the chain.
    void Mark() { last_ = out_.Pos(); }

private:
    Rd3FileOut& out_;
    uint32_t last_ = kNoRecord;
};

}  // namespace roadx::rd3
