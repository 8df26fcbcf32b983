// Section assignments: a type 31 list, or a chain of type 20 records holding
// one entry each.
#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"

namespace roadx::rd3 {
namespace {

// File sides 1, 2, 3 are left, right, both. An entry of another side or
// without a chainage cannot place a section; it is left out (this also keeps
// the sort well defined).
void Keep(ReadContext& ctx, const RD3AssignEntry& e) {
    if (e.side < kFileSideLeft || e.side > kFileSideBoth || std::isnan(e.prog)) {
        Diag(ctx, "rd3-assignment-left-out", -1,
             "section assignment " + std::to_string(ctx.assigns.size() + ctx.assignsLeftOut++ + 1),
             std::isnan(e.prog) ? std::string("section assignment without a station (NaN)")
                                : "section assignment of side " + std::to_string(e.side) +
                                      " (sides are 1 left, 2 right, 3 both)",
             "assignment left out");
        return;
    }
    ctx.assigns.push_back({e.name, e.prog, static_cast<int32_t>(e.side) - 1});
}

ReadEnd ReadList(ReadContext& ctx) {
    const uint16_t count = ctx.in.ReadRawShort();
    ctx.in.ReadRawShort();  // entry size, always 78
    if (ctx.in.Failed() || ctx.in.Remaining() / kAssignEntrySize < count) return ReadEnd::kTruncated;
    for (uint16_t i = 0; i < count; ++i) {
        RD3AssignEntry e;
        if (!ReadAssignEntry(ctx.in, e)) return ReadEnd::kTruncated;
        Keep(ctx, e);
    }
    return ReadEnd::kOk;
}

// Records of another type inside the chain are passed over.
ReadEnd ReadChain(ReadContext& ctx, uint32_t offset, RD3RecHeader h) {
    VisitedOffsets visited(ctx.fileSize);
    visited.Visit(offset);
    for (;;) {
        if (h.type == kRecAssign) {
            RD3AssignEntry e;
            if (!ReadAssignEntry(ctx.in, e)) return ReadEnd::kTruncated;
            Keep(ctx, e);
        }
        const uint32_t next = h.next;
        if (IsNoRecord(next)) return ReadEnd::kOk;
        if (!visited.Visit(next)) return next < ctx.fileSize ? ReadEnd::kLoop : ReadEnd::kTruncated;
        if (SeekRecord(ctx, next, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
    }
}

// Both sides first, then left, then right.
int SideRank(int32_t side) { return side == kSideBoth ? INT_MIN : side; }

}  // namespace

ReadEnd ReadAssignments(ReadContext& ctx, uint32_t offset) {
    RD3RecHeader h;
    if (SeekRecord(ctx, offset, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
    if (h.type == kRecAssignList) return ReadList(ctx);
    if (h.type == kRecAssign) return ReadChain(ctx, offset, h);
    return ReadEnd::kBadAssignRecord;
}

void SortAssignments(std::vector<RD3SectionAssign>& assigns) {
    std::sort(assigns.begin(), assigns.end(), [](const RD3SectionAssign& a, const RD3SectionAssign& b) {
        if (a.prog != b.prog) return a.prog < b.prog;
        return SideRank(a.side) < SideRank(b.side);
    });
}

}  // namespace roadx::rd3
