// Circular arc.
#include <cmath>
#include <limits>

#include "host/plani_elem.h"
#include "host/plani_local.h"

namespace rp = roadx::plani;

namespace {

constexpr rp::Real kTwoPi = 6.283185307179586476925286766559005768L;

bool ValidRadius(double r) { return std::isfinite(r) && r > 0.0; }

}  // namespace

// An unusable radius or sweep leaves an empty arc: sweep 0, infinite radius.
CArcPlaniElem::CArcPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double radius, double angle,
                             bool ccw)
    : CPlaniElem(prog, start, startTg),
      radius_(ValidRadius(radius) ? radius : std::numeric_limits<double>::infinity()),
      angle_(ValidRadius(radius) && std::isfinite(angle) && angle > 0.0 ? angle : 0.0),
      ccw_(ccw) {}

rp::LinearCurve CArcPlaniElem::Curve() const {
    if (!ValidRadius(radius_)) return {};
    return rp::LinearCurve((ccw_ ? 1 : -1) / rp::Real(radius_), 0);
}

PNT_2D CArcPlaniElem::GetCenter() const {
    // The centre lies on the inner side: left of the start for a left turn.
    const VECTOR_2D left(-startTg_.y, startTg_.x);
    return start_ + left * (ccw_ ? radius_ : -radius_);
}

void CArcPlaniElem::Reverse() {
    const double len = GetLength();
    VECTOR_2D endTg;
    GetTg(len, endTg);
    start_ = GetEndPnt();
    startTg_ = -endTg;
    ccw_ = !ccw_;
}

void CArcPlaniElem::GetPos(double prog, double offset, PNT_2D& pnt) const {
    pnt = rp::CurvePoint(start_, startTg_, Curve(), prog, offset);
}

void CArcPlaniElem::GetPos(double prog, PNT_2D& pnt) const { GetPos(prog, 0.0, pnt); }

void CArcPlaniElem::GetTg(double prog, VECTOR_2D& tg) const {
    tg = rp::ToPlanDir(startTg_, Curve().Tangent(prog));
}

double CArcPlaniElem::GetRad(double) const { return radius_; }

double CArcPlaniElem::GetMinRad() const { return radius_; }

CPlaniElem* CArcPlaniElem::Clone() const { return new CArcPlaniElem(*this); }

// Closed form: the foot lies on the ray from the centre through the point.
// Worked in the local frame, mirrored for right turns so that the centre is
// always at (0, R) and the arc runs anticlockwise from the origin.
bool CArcPlaniElem::GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const {
    if (!ValidRadius(radius_)) return CPlaniElem::GetProgAndOffset(p, prog, offset);
    rp::Cplx q = rp::ToLocal(start_, startTg_, p);
    if (!ccw_) q = std::conj(q);
    const rp::Real r = radius_;
    const rp::Real vx = q.real();
    const rp::Real vy = q.imag() - r;
    rp::Real a = std::atan2(vx, -vy);  // angle swept from the start, (−π, π]
    if (a < 0) a += kTwoPi;
    rp::Real s = r * a;
    const double len = GetLength();
    // Just before the start shows up as almost a full turn.
    if (s > len + rp::ProgTol(len) && (a - kTwoPi) * r >= -rp::ProgTol(0.0)) s = 0;
    if (!(s >= -rp::ProgTol(0.0) && s <= len + rp::ProgTol(len))) return false;
    prog = std::fmin(std::fmax(static_cast<double>(s), 0.0), len);
    const rp::Real d = std::sqrt(vx * vx + vy * vy);
    offset = static_cast<double>(ccw_ ? d - r : r - d);
    return true;
}

bool CArcPlaniElem::InternalEquals(const CPlaniElem* other) const {
    const auto* o = dynamic_cast<const CArcPlaniElem*>(other);
    return o != nullptr && rp::SameValue(radius_, o->radius_) && rp::SameValue(angle_, o->angle_) &&
           ccw_ == o->ccw_;
}
