// The section templates. The compact layout (1) keeps the segments inline
// after each type 21 record; the extended layouts keep each segment in a
// record of its own, chained after the template that owns it: with a type 29
// record somewhere in the chain (layout 2) the code is inside each segment's
// data, otherwise (layout 3) the record type is the code.
#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"

namespace roadx::rd3 {
namespace {

enum class Layout { kCompact = 1, kCodeInData = 2, kCodeIsType = 3 };

struct ChainRecord {
    uint32_t offset;
    RD3RecHeader header;
};

// First pass: every record of the chain, and the layout the last record
// other than a template decides.
ReadEnd WalkChain(ReadContext& ctx, uint32_t offset, std::vector<ChainRecord>& chain, Layout& layout) {
    layout = Layout::kCompact;
    VisitedOffsets visited(ctx.fileSize);
    for (uint32_t next = offset; !IsNoRecord(next);) {
        if (!visited.Visit(next)) return next < ctx.fileSize ? ReadEnd::kLoop : ReadEnd::kTruncated;
        RD3RecHeader h;
        if (SeekRecord(ctx, next, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
        if (h.type == kRecExtendedMark) layout = Layout::kCodeInData;
        else if (h.type != kRecTemplate) layout = Layout::kCodeIsType;
        chain.push_back({next, h});
        next = h.next;
    }
    return ReadEnd::kOk;
}

ReadEnd AddSegment(RD3SectionTemplate& t, uint16_t code, double v1, double v2) {
    RD3TemplateSegment seg;
    if (!SegmentFromCode(code, v1, v2, seg)) return ReadEnd::kBadSegmentCode;
    t.segments.push_back(seg);
    return ReadEnd::kOk;
}

// Compact layout: count, entry size (ignored) and the inline entries.
ReadEnd ReadInlineSegments(ReadContext& ctx, RD3SectionTemplate& t) {
    const uint16_t count = ctx.in.ReadRawShort();
    ctx.in.ReadRawShort();
    if (ctx.in.Failed() || ctx.in.Remaining() / kSegmentEntrySize < count) return ReadEnd::kTruncated;
    t.segments.reserve(count);
    for (uint16_t i = 0; i < count; ++i) {
        RD3SegmentEntry e;
        if (!ReadSegmentEntry(ctx.in, e)) return ReadEnd::kTruncated;
        const ReadEnd s = AddSegment(t, e.code, e.v1, e.v2);
        if (s != ReadEnd::kOk) return s;
    }
    return ReadEnd::kOk;
}

// One segment record of an extended layout. A code 25 segment carries no
// values and adds nothing; the bytes it stands for are not needed, since the
// next record is found by its offset.
ReadEnd ReadSegmentRecord(ReadContext& ctx, const ChainRecord& rec, Layout layout, RD3SectionTemplate& t) {
    RD3RecHeader h;
    if (SeekRecord(ctx, rec.offset, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
    uint16_t code = h.type;
    if (layout == Layout::kCodeInData) {
        uint8_t name[kNameBytes];
        ctx.in.ReadBytes(kNameBytes, name);
        code = ctx.in.ReadRawShort();
        ctx.in.ReadRawShort();
    }
    if (ctx.in.Failed()) return ReadEnd::kTruncated;
    if (code == kCodeSteep) return ReadEnd::kOk;
    const double v1 = ctx.in.ReadDouble();
    const double v2 = ctx.in.ReadDouble();
    if (ctx.in.Failed()) return ReadEnd::kTruncated;
    return AddSegment(t, code, v1, v2);
}

}  // namespace

ReadEnd ReadTemplates(ReadContext& ctx, uint32_t offset) {
    RD3RecHeader first;
    if (SeekRecord(ctx, offset, first) != ReadEnd::kOk) return ReadEnd::kTruncated;
    if (first.type != kRecTemplate) return ReadEnd::kBadTemplateRecord;

    std::vector<ChainRecord> chain;
    Layout layout;
    const ReadEnd walked = WalkChain(ctx, offset, chain, layout);

    // Second pass, over the records the first pass could reach.
    for (const ChainRecord& rec : chain) {
        ReadEnd s = ReadEnd::kOk;
        if (rec.header.type == kRecTemplate) {
            auto t = std::make_unique<RD3SectionTemplate>();
            if (SeekRecord(ctx, rec.offset, first) != ReadEnd::kOk || !ReadNameField(ctx.in, t->name))
                s = ReadEnd::kTruncated;
            else if (layout == Layout::kCompact)
                s = ReadInlineSegments(ctx, *t);
            if (s == ReadEnd::kOk) ctx.templates.push_back(std::move(t));
        } else {
            s = ReadSegmentRecord(ctx, rec, layout, *ctx.templates.back());
        }
        // An unknown code or a damaged record makes the whole list unreadable.
        if (s != ReadEnd::kOk) {
            ctx.templates.clear();
            return s;
        }
    }
    if (walked != ReadEnd::kOk) ctx.templates.clear();
    return walked;
}

}  // namespace roadx::rd3
