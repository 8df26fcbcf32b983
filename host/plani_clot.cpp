// Clothoid parameters, and the clothoid from or to a straight.
#include <cmath>
#include <limits>

#include "host/plani_clot_param.h"
#include "host/plani_elem.h"
#include "host/plani_local.h"

namespace rp = roadx::plani;

double CClotoide::ComputeAFromRadLen(double k, double R, double L) {
    if (!(std::isfinite(R) && R > 0.0 && std::isfinite(L) && L >= 0.0)) return 0.0;
    const double a = std::sqrt(rp::CleanK(k) * R * L);
    return std::isfinite(a) ? a : 0.0;
}

double CClotoideContinuita::ComputeAFromR1R2Len(double k, double R1, double R2, double L) {
    if (!(R1 > 0.0 && R2 > 0.0 && std::isfinite(L) && L >= 0.0)) return 0.0;
    const double dk = std::fabs(1.0 / R2 - 1.0 / R1);
    if (!(dk > 0.0)) return 0.0;
    const double a = std::sqrt(rp::CleanK(k) * L / dk);
    return std::isfinite(a) ? a : 0.0;
}

CClotPlaniElem::CClotPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double k, double A,
                               double R, bool ccw, bool entrance)
    : CPlaniElem(prog, start, startTg), k_(k), clot_(A), radius_(R), ccw_(ccw), entrance_(entrance) {
    Setup();
}

// Curvature runs linearly between 0 and ±1/R at the rate k/A² (= 1/(R·L)).
void CClotPlaniElem::Setup() {
    length_ = 0.0;
    curve_ = rp::LinearCurve();
    const double a = clot_.GetA();
    const double kk = rp::CleanK(k_);
    if (!(rp::ValidParam(a) && rp::ValidParam(radius_))) return;
    const double len = a * a / (kk * radius_);
    if (!(std::isfinite(len) && len > 0.0)) return;
    length_ = len;
    const rp::Real sign = ccw_ ? 1 : -1;
    const rp::Real rate = sign * kk / (rp::Real(a) * a);
    curve_ = entrance_ ? rp::LinearCurve(0, rate) : rp::LinearCurve(sign / radius_, -rate);
}

void CClotPlaniElem::Reverse() {
    VECTOR_2D endTg;
    GetTg(length_, endTg);
    start_ = GetEndPnt();
    startTg_ = -endTg;
    ccw_ = !ccw_;
    entrance_ = !entrance_;
    Setup();
}

double CClotPlaniElem::GetLength() const { return length_; }

void CClotPlaniElem::GetPos(double prog, PNT_2D& pnt) const {
    pnt = rp::CurvePoint(start_, startTg_, curve_, prog, 0.0);
}

void CClotPlaniElem::GetTg(double prog, VECTOR_2D& tg) const {
    tg = rp::ToPlanDir(startTg_, curve_.Tangent(prog));
}

// Radius R/t at the fraction t of the length from the straight end; the
// ends give exactly infinity and R.
double CClotPlaniElem::GetRad(double prog) const {
    if (length_ == 0.0) return std::numeric_limits<double>::infinity();
    double t = std::fmin(std::fmax(prog / length_, 0.0), 1.0);
    if (!entrance_) t = 1.0 - t;
    return t == 1.0 ? radius_ : radius_ / t;
}

double CClotPlaniElem::GetMinRad() const {
    return length_ > 0.0 ? radius_ : std::numeric_limits<double>::infinity();
}

CPlaniElem* CClotPlaniElem::Clone() const { return new CClotPlaniElem(*this); }

// Nothing derived depends on the direction: the shape stays and turns.
void CClotPlaniElem::SetStartTg(const VECTOR_2D& tg) { CPlaniElem::SetStartTg(tg); }

double CClotPlaniElem::GetAngleDev() const { return length_ > 0.0 ? length_ / (2.0 * radius_) : 0.0; }

bool CClotPlaniElem::GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const {
    return rp::ProjectOnCurve(start_, startTg_, curve_, length_, p, prog, offset);
}

bool CClotPlaniElem::InternalEquals(const CPlaniElem* other) const {
    const auto* o = dynamic_cast<const CClotPlaniElem*>(other);
    return o != nullptr && rp::SameValue(k_, o->k_) && rp::SameValue(clot_.GetA(), o->clot_.GetA()) &&
           rp::SameValue(radius_, o->radius_) && ccw_ == o->ccw_ && entrance_ == o->entrance_;
}
