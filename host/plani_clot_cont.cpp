// Continuity clothoid between two radii.
#include <cmath>
#include <limits>
#include <utility>

#include "host/plani_clot_param.h"
#include "host/plani_elem.h"
#include "host/plani_local.h"

namespace rp = roadx::plani;

namespace {

// Radii are positive; an infinite one is a straight end (curvature 0).
bool ValidRadius(double r) { return r > 0.0; }

bool ValidData(double a, double r1, double r2) {
    return roadx::plani::ValidParam(a) && ValidRadius(r1) && ValidRadius(r2);
}

constexpr double kInf = std::numeric_limits<double>::infinity();

}  // namespace

CClotContPlaniElem::CClotContPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double k, double A,
                                       double R1, double R2, bool ccw)
    : CPlaniElem(prog, start, startTg), k_(k), clot_(A), r1_(R1), r2_(R2), ccw_(ccw) {
    Setup();
}

// Curvature runs linearly from ±1/R1 to ±1/R2 at the rate k/A².
void CClotContPlaniElem::Setup() {
    length_ = 0.0;
    curve_ = rp::LinearCurve();
    const double a = clot_.GetA();
    const double kk = rp::CleanK(k_);
    if (!ValidData(a, r1_, r2_)) return;
    const double change = 1.0 / r2_ - 1.0 / r1_;
    const double len = a * a * std::fabs(change) / kk;
    if (!(std::isfinite(len) && len > 0.0)) return;
    length_ = len;
    const rp::Real sign = ccw_ ? 1 : -1;
    const rp::Real rate = (change > 0 ? sign : -sign) * kk / (rp::Real(a) * a);
    curve_ = rp::LinearCurve(sign / r1_, rate);
}

void CClotContPlaniElem::Reverse() {
    VECTOR_2D endTg;
    GetTg(length_, endTg);
    start_ = GetEndPnt();
    startTg_ = -endTg;
    ccw_ = !ccw_;
    std::swap(r1_, r2_);
    Setup();
}

double CClotContPlaniElem::GetLength() const { return length_; }

void CClotContPlaniElem::GetPos(double prog, PNT_2D& pnt) const {
    pnt = rp::CurvePoint(start_, startTg_, curve_, prog, 0.0);
}

void CClotContPlaniElem::GetTg(double prog, VECTOR_2D& tg) const {
    tg = rp::ToPlanDir(startTg_, curve_.Tangent(prog));
}

// Curvature interpolated between the ends; the ends give exactly R1 and R2.
// Equal radii make a valid element of length 0, of that radius.
double CClotContPlaniElem::GetRad(double prog) const {
    if (!ValidData(clot_.GetA(), r1_, r2_)) return kInf;
    if (length_ == 0.0) return r1_;
    const double t = std::fmin(std::fmax(prog / length_, 0.0), 1.0);
    if (!(t > 0.0)) return r1_;
    if (t == 1.0) return r2_;
    return 1.0 / ((1.0 - t) / r1_ + t / r2_);
}

double CClotContPlaniElem::GetMinRad() const {
    if (!ValidData(clot_.GetA(), r1_, r2_)) return kInf;
    return std::fmin(r1_, r2_);
}

CPlaniElem* CClotContPlaniElem::Clone() const { return new CClotContPlaniElem(*this); }

// Nothing derived depends on the direction: the shape stays and turns.
void CClotContPlaniElem::SetStartTg(const VECTOR_2D& tg) { CPlaniElem::SetStartTg(tg); }

double CClotContPlaniElem::GetAngleDev() const {
    return length_ > 0.0 ? length_ * (1.0 / r1_ + 1.0 / r2_) / 2.0 : 0.0;
}

bool CClotContPlaniElem::GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const {
    return rp::ProjectOnCurve(start_, startTg_, curve_, length_, p, prog, offset);
}

bool CClotContPlaniElem::InternalEquals(const CPlaniElem* other) const {
    const auto* o = dynamic_cast<const CClotContPlaniElem*>(other);
    return o != nullptr && rp::SameValue(k_, o->k_) && rp::SameValue(clot_.GetA(), o->clot_.GetA()) &&
           rp::SameValue(r1_, o->r1_) && rp::SameValue(r2_, o->r2_) && ccw_ == o->ccw_;
}
