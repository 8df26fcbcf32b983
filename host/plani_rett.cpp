// Straight.
#include <cmath>
#include <limits>

#include "host/plani_elem.h"
#include "host/plani_local.h"

namespace rp = roadx::plani;

namespace {

double CleanLength(double length) { return std::isfinite(length) && length > 0.0 ? length : 0.0; }

}  // namespace

CRettifiloPlaniElem::CRettifiloPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& dir, double length)
    : CPlaniElem(prog, start, dir), length_(CleanLength(length)) {}

void CRettifiloPlaniElem::Reverse() {
    start_ = GetEndPnt();
    startTg_ = -startTg_;
}

void CRettifiloPlaniElem::GetPos(double prog, double offset, PNT_2D& pnt) const {
    pnt = rp::CurvePoint(start_, startTg_, rp::LinearCurve(), prog, offset);
}

void CRettifiloPlaniElem::GetPos(double prog, PNT_2D& pnt) const { GetPos(prog, 0.0, pnt); }

void CRettifiloPlaniElem::GetTg(double, VECTOR_2D& tg) const { tg = startTg_; }

double CRettifiloPlaniElem::GetRad(double) const { return std::numeric_limits<double>::infinity(); }

double CRettifiloPlaniElem::GetMinRad() const { return std::numeric_limits<double>::infinity(); }

CPlaniElem* CRettifiloPlaniElem::Clone() const { return new CRettifiloPlaniElem(*this); }

bool CRettifiloPlaniElem::GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const {
    const rp::Cplx q = rp::ToLocal(start_, startTg_, p);
    const double s = static_cast<double>(q.real());
    if (!(s >= -rp::ProgTol(0.0) && s <= length_ + rp::ProgTol(length_))) return false;
    prog = std::fmin(std::fmax(s, 0.0), length_);
    offset = static_cast<double>(-q.imag());
    return true;
}

bool CRettifiloPlaniElem::InternalEquals(const CPlaniElem* other) const {
    const auto* o = dynamic_cast<const CRettifiloPlaniElem*>(other);
    return o != nullptr && rp::SameValue(length_, o->length_);
}
