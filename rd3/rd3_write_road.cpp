#include "rd3/rd3_write_road.h"

#include "host/alti.h"
#include "host/road.h"
#include "rd3/rd3_azimuth.h"
#include "rd3/rd3_records.h"

namespace roadx::rd3 {
namespace {

void WriteElement(Rd3FileOut& out, uint32_t prev, const CPlaniElem& e) {
    const double azimuth = AzimuthFromVector(e.GetStartTg());
    const uint32_t sense = e.IsLeftTurn() ? 0 : 1;
    switch (e.GetType()) {
        case CPlaniElem::RETTIFILO:
            out.Write(EncodeStraightRecord({azimuth, e.GetLength()}, prev));
            break;
        case CPlaniElem::ARCO:
            out.Write(EncodeArcRecord({sense, e.GetRad(0.0), e.GetLength(), true, azimuth}, prev));
            break;
        case CPlaniElem::CLOTOIDE: {
            const bool entry = static_cast<const CClotPlaniElem&>(e).IsEntrance();
            RD3ClotRecord rec;
            rec.entry = entry ? 1 : 0;
            rec.sense = sense;
            rec.r1 = entry ? e.GetRad(e.GetLength()) : e.GetRad(0.0);
            rec.length = e.GetLength();
            rec.azimuth = azimuth;
            out.Write(EncodeClotRecord(rec, prev));
            break;
        }
        default: break;  // not carried
    }
}

}  // namespace

void WritePlanChain(Rd3FileOut& out, CRoad& road) {
    const CRoadPlaniElem* link = road.GetFirstRoadPlaniElem();
    if (!link) return;
    const CPlaniElem* first = link->GetElem();
    Rd3Chain chain(out);
    chain.Link();
    out.Write(EncodeRoadRecord(
        {first->GetStartPnt().y, first->GetStartPnt().x, AzimuthFromVector(first->GetStartTg()), first->GetProg()}));
    for (; link; link = link->GetNextElem()) WriteElement(out, chain.Link(), *link->GetElem());
}

void WriteProfileChain(Rd3FileOut& out, CProfileAlti& line) {
    Rd3Chain chain(out);
    chain.Link();
    out.Write(EncodeProfileRecord());
    for (int i = 0; i < line.GetNumVrts(); ++i) {
        const TAltiVrt* v = line.GetVrt(i);
        if (!IsPrincAltiVrt(v) && !IsDtmAltiVrt(v)) continue;
        RD3VertexRecord rec;
        rec.prog = v->prog;
        rec.elevation = v->quota;
        rec.hasCurve = IsRaccVertAltiVrt(v);
        if (rec.hasCurve) rec.curveLength = v->racc.progEnd - v->racc.progStart;
        out.Write(EncodeVertexRecord(rec, chain.Link()));
    }
}

}  // namespace roadx::rd3
