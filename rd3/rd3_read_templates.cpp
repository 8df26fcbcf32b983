// The section templates. The compact layout (1) keeps the segments inline
// after each type 21 record; the extended layouts keep each segment in a
// record of its own, chained after the template that owns it: with a type 29
// record somewhere in the chain (layout 2) the code is inside each segment's
// data, otherwise (layout 3) the record type is the code.
#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"

namespace rd3 {
namespace {

enum class Layout { kCompact = 1, kCodeInData = 2, kCodeIsType = 3 };

struct ChainRecord {
    uint32_t offset;
    RD3RecHeader header;
};

// First pass: every record of the chain, and the layout the last record
// other than a template decides.
Rd3ImportStatus WalkChain(ReadContext& ctx, uint32_t offset, std::vector<ChainRecord>& chain, Layout& layout) {
    layout = Layout::kCompact;
    VisitedOffsets visited(ctx.fileSize);
    for (uint32_t next = offset; !IsNoRecord(next);) {
        if (!visited.Visit(next)) return next < ctx.fileSize ? Rd3ImportStatus::kLoop : Rd3ImportStatus::kTruncated;
        RD3RecHeader h;
        if (SeekRecord(ctx, next, h) != Rd3ImportStatus::kOk) return Rd3ImportStatus::kTruncated;
        if (h.type == kRecExtendedMark) layout = Layout::kCodeInData;
        else if (h.type != kRecTemplate) layout = Layout::kCodeIsType;
        chain.push_back({next, h});
        next = h.next;
    }
    return Rd3ImportStatus::kOk;
}

Rd3ImportStatus AddSegment(RD3SectionTemplate& t, uint16_t code, double v1, double v2) {
    RD3TemplateSegment seg;
    if (!SegmentFromCode(code, v1, v2, seg)) return Rd3ImportStatus::kBadSegmentCode;
    t.segments.push_back(seg);
    return Rd3ImportStatus::kOk;
}

// Compact layout: count, entry size (ignored) and the inline entries.
Rd3ImportStatus ReadInlineSegments(ReadContext& ctx, RD3SectionTemplate& t) {
    const uint16_t count = ctx.in.ReadRawShort();
    ctx.in.ReadRawShort();
    if (ctx.in.Failed() || ctx.in.Remaining() / kSegmentEntrySize < count) return Rd3ImportStatus::kTruncated;
    t.segments.reserve(count);
    for (uint16_t i = 0; i < count; ++i) {
        RD3SegmentEntry e;
        if (!ReadSegmentEntry(ctx.in, e)) return Rd3ImportStatus::kTruncated;
        const Rd3ImportStatus s = AddSegment(t, e.code, e.v1, e.v2);
        if (s != Rd3ImportStatus::kOk) return s;
    }
    return Rd3ImportStatus::kOk;
}

// One segment record of an extended layout. A code 25 segment carries no
// values and adds nothing; the bytes it stands for are not needed, since the
// next record is found by its offset.
Rd3ImportStatus ReadSegmentRecord(ReadContext& ctx, const ChainRecord& rec, Layout layout, RD3SectionTemplate& t) {
    RD3RecHeader h;
    if (SeekRecord(ctx, rec.offset, h) != Rd3ImportStatus::kOk) return Rd3ImportStatus::kTruncated;
    uint16_t code = h.type;
    if (layout == Layout::kCodeInData) {
        uint8_t name[kNameBytes];
        ctx.in.ReadBytes(kNameBytes, name);
        code = ctx.in.ReadRawShort();
        ctx.in.ReadRawShort();
    }
    if (ctx.in.Failed()) return Rd3ImportStatus::kTruncated;
    if (code == kCodeSteep) return Rd3ImportStatus::kOk;
    const double v1 = ctx.in.ReadDouble();
    const double v2 = ctx.in.ReadDouble();
    if (ctx.in.Failed()) return Rd3ImportStatus::kTruncated;
    return AddSegment(t, code, v1, v2);
}

}  // namespace

Rd3ImportStatus ReadTemplates(ReadContext& ctx, uint32_t offset) {
    RD3RecHeader first;
    if (SeekRecord(ctx, offset, first) != Rd3ImportStatus::kOk) return Rd3ImportStatus::kTruncated;
    if (first.type != kRecTemplate) return Rd3ImportStatus::kBadTemplateRecord;

    std::vector<ChainRecord> chain;
    Layout layout;
    const Rd3ImportStatus walked = WalkChain(ctx, offset, chain, layout);

    // Second pass, over the records the first pass could reach.
    for (const ChainRecord& rec : chain) {
        Rd3ImportStatus s = Rd3ImportStatus::kOk;
        if (rec.header.type == kRecTemplate) {
            auto t = std::make_unique<RD3SectionTemplate>();
            if (SeekRecord(ctx, rec.offset, first) != Rd3ImportStatus::kOk || !ReadNameField(ctx.in, t->name))
                s = Rd3ImportStatus::kTruncated;
            else if (layout == Layout::kCompact)
                s = ReadInlineSegments(ctx, *t);
            if (s == Rd3ImportStatus::kOk) ctx.templates.push_back(std::move(t));
        } else {
            s = ReadSegmentRecord(ctx, rec, layout, *ctx.templates.back());
        }
        // An unknown code or a damaged record makes the whole list unreadable.
        if (s != Rd3ImportStatus::kOk) {
            ctx.templates.clear();
            return s;
        }
    }
    if (walked != Rd3ImportStatus::kOk) ctx.templates.clear();
    return walked;
}

}  // namespace rd3
