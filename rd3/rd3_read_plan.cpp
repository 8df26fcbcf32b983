// The road record and the plan chain. No element record holds a start point
// or a chainage: the reader carries the running point, tangent and chainage
// from one element to the next.
#include <string>

#include "host/load_vantri_dati.h"
#include "host/plani_elem.h"
#include "rd3/rd3_azimuth.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"
#include "vesk/diagnostics.h"

namespace roadx::rd3 {

bool VisitedOffsets::Visit(uint32_t offset) {
    if (offset >= seen_.size() || seen_[offset]) return false;
    seen_[offset] = true;
    return true;
}

ReadEnd SeekRecord(ReadContext& ctx, uint32_t offset, RD3RecHeader& h) {
    ctx.in.ClearFailure();
    if (!ctx.in.Seek(offset) || !ReadRecHeader(ctx.in, h)) return ReadEnd::kTruncated;
    return ReadEnd::kOk;
}

namespace {

std::string Station(double prog) { return vesk::diag::StationText(prog); }

struct RunningState {
    double prog = 0.0;
    PNT_2D point;
    VECTOR_2D tangent;  // a default vector until the first element sets it
};

// The end of a locally built element becomes the running state.
void AdvanceAlong(RunningState& st, CPlaniElem* elem, double length) {
    st.point = elem->GetEndPnt();
    elem->GetTg(elem->GetLength(), st.tangent);
    st.prog += length;
    elem->SubReference();
}

ReadEnd ReadStraight(ReadContext& ctx, RunningState& st) {
    RD3StraightRecord rec;
    if (!ReadStraightData(ctx.in, rec)) return ReadEnd::kTruncated;
    const VECTOR_2D dir = VectorFromAzimuth(rec.azimuth);
    ctx.builder.AddRoadRect(st.prog, st.point, dir, rec.length);
    st.point = st.point + dir * rec.length;
    st.prog += rec.length;
    st.tangent = dir;
    return ReadEnd::kOk;
}

ReadEnd ReadArc(ReadContext& ctx, const RD3RecHeader& h, RunningState& st) {
    RD3ArcRecord rec;
    if (!ReadArcData(ctx.in, h.dataSize, rec)) return ReadEnd::kTruncated;
    const bool left = rec.sense == 0;
    const VECTOR_2D tg = rec.hasAzimuth ? VectorFromAzimuth(rec.azimuth) : st.tangent;
    const double angle = rec.length / rec.radius;
    ctx.builder.AddRoadArc(st.prog, st.point, tg, rec.radius, angle, left);
    AdvanceAlong(st, new CArcPlaniElem(st.prog, st.point, tg, rec.radius, angle, left), rec.length);
    return ReadEnd::kOk;
}

ReadEnd ReadClothoid(ReadContext& ctx, const RD3RecHeader& h, RunningState& st) {
    RD3ClotRecord rec;
    if (!ReadClotData(ctx.in, h.dataSize, rec)) return ReadEnd::kTruncated;
    const bool entry = rec.entry == 1;
    const bool left = rec.sense == 0;
    const VECTOR_2D tg = rec.isLong ? VectorFromAzimuth(rec.azimuth) : st.tangent;
    CPlaniElem* local = nullptr;
    if (rec.isLong && rec.r2 < kSecondRadiusLimit) {
        const double a = CClotoideContinuita::ComputeAFromR1R2Len(1.0, rec.r1, rec.r2, rec.length);
        ctx.builder.AddRoadClotCont(st.prog, st.point, tg, 1.0, a, rec.r1, rec.r2, left);
        local = new CClotContPlaniElem(st.prog, st.point, tg, 1.0, a, rec.r1, rec.r2, left);
    } else {
        const double a = CClotoide::ComputeAFromRadLen(1.0, rec.r1, rec.length);
        ctx.builder.AddRoadClot(st.prog, st.point, tg, 1.0, a, rec.r1, left, entry);
        local = new CClotPlaniElem(st.prog, st.point, tg, 1.0, a, rec.r1, left, entry);
    }
    AdvanceAlong(st, local, rec.length);
    return ReadEnd::kOk;
}

ReadEnd ReadElement(ReadContext& ctx, const RD3RecHeader& h, uint32_t offset, RunningState& st) {
    switch (h.type) {
        case kRecStraight: return ReadStraight(ctx, st);
        case kRecClothoid: return ReadClothoid(ctx, h, st);
        case kRecArc: return ReadArc(ctx, h, st);
        default:  // other records are skipped silently
            Diag(ctx, "rd3-plan-record-skipped", offset,
                 "plan record at offset " + std::to_string(offset) + " (station " + Station(st.prog) + ")",
                 "plan record of type " + std::to_string(h.type) + " is not a straight, arc or clothoid",
                 "skipped; the next element starts where the one before ends");
            return ReadEnd::kOk;
    }
}

ReadEnd ReadPlanChain(ReadContext& ctx, uint32_t next, uint32_t roadOffset, RunningState& st) {
    VisitedOffsets visited(ctx.fileSize);
    visited.Visit(roadOffset);
    while (!IsNoRecord(next)) {
        if (!visited.Visit(next)) return next < ctx.fileSize ? ReadEnd::kLoop : ReadEnd::kTruncated;
        RD3RecHeader h;
        ReadEnd s = SeekRecord(ctx, next, h);
        if (s == ReadEnd::kOk) s = ReadElement(ctx, h, next, st);
        if (s != ReadEnd::kOk) return s;
        next = h.next;
    }
    return ReadEnd::kOk;
}

}  // namespace

ReadEnd ReadRoadAndPlan(ReadContext& ctx, uint32_t offset, const vesk::String& roadName) {
    RD3RecHeader h;
    if (SeekRecord(ctx, offset, h) != ReadEnd::kOk) return ReadEnd::kTruncated;
    if (h.type != kRecRoad) return ReadEnd::kBadRoadRecord;
    RD3RoadRecord rec;
    if (!ReadRoadData(ctx.in, rec)) return ReadEnd::kTruncated;
    RunningState st;
    st.point = PNT_2D(rec.x, rec.y);
    st.prog = rec.prog;
    ctx.road = ctx.builder.AddRoad(roadName, rec.prog, true);
    ctx.builder.StartRoadPlani();
    const ReadEnd s = ReadPlanChain(ctx, h.next, offset, st);
    ctx.builder.EndRoadPlani();
    return s;
}

}  // namespace roadx::rd3
