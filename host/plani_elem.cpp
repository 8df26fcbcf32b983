// Common part of the horizontal elements, and the chain lookup.
#include "host/plani_elem.h"

#include <cmath>
#include <limits>

#include "host/plani_local.h"

namespace rp = roadx::plani;

CPlaniElem::CPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg)
    : prog_(prog), start_(start), startTg_(rp::SafeDir(startTg)) {}

void CPlaniElem::GetPerp(double prog, VECTOR_2D& perp) const {
    VECTOR_2D tg;
    GetTg(prog, tg);
    perp = VECTOR_2D(tg.y, -tg.x);
}

bool CPlaniElem::Equals(const CPlaniElem* other) const {
    if (other == nullptr) return false;
    if (other == this) return true;
    return GetType() == other->GetType() && rp::SameValue(prog_, other->prog_) &&
           rp::SameValue(start_.x, other->start_.x) && rp::SameValue(start_.y, other->start_.y) &&
           rp::SameValue(startTg_.x, other->startTg_.x) && rp::SameValue(startTg_.y, other->startTg_.y) &&
           InternalEquals(other);
}

PNT_2D CPlaniElem::GetEndPnt() const {
    PNT_2D p;
    GetPos(GetLength(), p);
    return p;
}

void CPlaniElem::GetPos(double prog, double offset, PNT_2D& pnt) const {
    GetPos(prog, pnt);
    VECTOR_2D n;
    GetPerp(prog, n);
    pnt = pnt + n * offset;
}

void CPlaniElem::SetStartTg(const VECTOR_2D& tg) { startTg_ = rp::SafeDir(tg); }

// Works for any element through its public queries; the element kinds of
// this library override it with their exact local-frame versions.
bool CPlaniElem::GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const {
    const rp::ProbeFn probe = [this, &p](rp::Real s) {
        PNT_2D a;
        VECTOR_2D t;
        GetPos(static_cast<double>(s), a);
        GetTg(static_cast<double>(s), t);
        const rp::Real dx = rp::Real(p.x) - a.x;
        const rp::Real dy = rp::Real(p.y) - a.y;
        const double r = GetRad(static_cast<double>(s));
        const rp::Real k = (IsLeftTurn() ? 1 : -1) / rp::Real(r);
        return rp::FootProbe{t.x * dx + t.y * dy, t.x * dy - t.y * dx, k};
    };
    rp::Real s = 0;
    rp::Real left = 0;
    if (!rp::FindFoot(probe, GetLength(), 1 / rp::Real(GetMinRad()), s, left)) return false;
    prog = static_cast<double>(s);
    offset = static_cast<double>(-left);
    return true;
}

bool GetElemAtProg(const std::vector<CPlaniElem*>& elems, double prog, CPlaniElem** elem, double* local) {
    const auto give = [&](CPlaniElem* e, bool atEnd) {
        const double len = e->GetLength();
        const double d = atEnd ? len : std::fmin(std::fmax(prog - e->GetProg(), 0.0), len);
        if (elem) *elem = e;
        if (local) *local = d;
        return true;
    };
    // An element holds [start, end): the start within tolerance, the end
    // left to the next element.
    for (CPlaniElem* e : elems) {
        if (e == nullptr) continue;
        const double start = e->GetProg();
        const double end = start + e->GetLength();
        if (prog >= start - rp::ProgTol(start) && prog < end - rp::ProgTol(end)) return give(e, false);
    }
    // Otherwise the end of an element, within tolerance: the last one's end
    // or the end before a gap.
    for (CPlaniElem* e : elems) {
        if (e == nullptr) continue;
        const double end = e->GetProg() + e->GetLength();
        if (std::fabs(prog - end) <= rp::ProgTol(end)) return give(e, true);
    }
    return false;
}
