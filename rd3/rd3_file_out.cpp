#include "rd3/rd3_file_out.h"

#include <algorithm>

#include "rd3/rd3_bytes.h"

namespace roadx::rd3 {

void Rd3FileOut::Write(const std::vector<uint8_t>& bytes) {
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), f_) != bytes.size()) failed_ = true;
    pos_ += static_cast<uint32_t>(bytes.size());
    end_ = std::max(end_, pos_);
}

void Rd3FileOut::PatchU32(uint32_t pos, uint32_t v) {
    if (pos >= end_ || end_ - pos < 4) return;
    ByteSink s;
    s.U32(v);
    if (std::fseek(f_, static_cast<long>(pos), SEEK_SET) != 0 ||
        std::fwrite(s.Data().data(), 1, 4, f_) != 4 ||
        std::fseek(f_, static_cast<long>(pos_), SEEK_SET) != 0)
        failed_ = true;
}

void Rd3FileOut::PatchDirectory(int slot) {
    PatchU32(kFirstDirOffsetPos + static_cast<uint32_t>(slot) * kDirSlotSize, pos_);
}

uint32_t Rd3Chain::Link() {
    const uint32_t prev = last_;
    if (prev != kNoRecord) out_.PatchU32(prev + kNextLinkPos, out_.Pos());
    Mark();
    return prev;
}

}  // namespace roadx::rd3
