// Points of a linear-curvature curve, in the local frame.
//
// Three ways, chosen by how much the direction turns between the start and
// the point asked for:
// - constant curvature: the closed form of the circle (or the straight);
// - little turning (at most kQuadratureTurning): Gauss-Legendre quadrature of
//   e^{iθ(t)} over sub-intervals short enough that the largest curvature
//   times their length stays within kTurnPerInterval; the rule's error is
//   then far below long double rounding;
// - more turning: Fresnel integrals measured from the clothoid's origin (the
//   point of zero curvature on the curve's extension). Their cost does not
//   grow with the number of turns, and the scaled tail keeps far-away
//   origins from cancelling digits.
#include <array>
#include <cmath>
#include <limits>

#include "host/plani_curve.h"

namespace roadx::plani {

namespace {

constexpr Real kPi = 3.141592653589793238462643383279502884L;
constexpr Real kQuadratureTurning = 4;
constexpr Real kTurnPerInterval = 2;
constexpr int kGaussPoints = 10;

struct GaussRule {
    std::array<Real, kGaussPoints> node{};
    std::array<Real, kGaussPoints> weight{};
};

// Legendre polynomial P_n(x) and its derivative, by the three-term recurrence.
void Legendre(int n, Real x, Real& p, Real& dp) {
    Real p0 = 1;
    Real p1 = x;
    for (int k = 2; k <= n; ++k) {
        const Real p2 = ((2 * k - 1) * x * p1 - (k - 1) * p0) / k;
        p0 = p1;
        p1 = p2;
    }
    p = p1;
    dp = n * (x * p1 - p0) / (x * x - 1);
}

// Nodes and weights on [-1, 1], found once by Newton's method from the
// usual cosine estimates; computing them keeps them exact to long double.
GaussRule MakeGaussRule() {
    GaussRule rule;
    for (int i = 0; i < kGaussPoints; ++i) {
        Real x = std::cos(kPi * (i + Real(0.75)) / (kGaussPoints + Real(0.5)));
        Real p = 0;
        Real dp = 1;
        for (int iter = 0; iter < 100; ++iter) {
            Legendre(kGaussPoints, x, p, dp);
            const Real dx = p / dp;
            x -= dx;
            if (std::fabs(dx) <= std::numeric_limits<Real>::epsilon()) break;
        }
        Legendre(kGaussPoints, x, p, dp);
        rule.node[i] = x;
        rule.weight[i] = 2 / ((1 - x * x) * dp * dp);
    }
    return rule;
}

const GaussRule& Gauss() {
    static const GaussRule rule = MakeGaussRule();
    return rule;
}

Cplx Half() { return {Real(0.5), Real(0.5)}; }  // F(∞) = (1+i)/2

// e^{-iφ0}·(F(x1) − F(x0)) for x0, x1 >= 0, where φ0 = πx0²/2 and
// dphi = π(x1² − x0²)/2 is given by the caller, who can form it without
// cancellation. Whichever of series or tail suits each end is used.
Cplx Segment(Real x0, Real x1, Real phi0, Real dphi) {
    const bool tail0 = x0 >= kFresnelSplit;
    const bool tail1 = x1 >= kFresnelSplit;
    if (!tail0 && !tail1) return UnitDir(-phi0) * (FresnelSeries(x1) - FresnelSeries(x0));
    if (tail0 && tail1) return FresnelTail(x0) - FresnelTail(x1) * UnitDir(dphi);
    if (tail1) return UnitDir(-phi0) * (Half() - FresnelSeries(x0)) - FresnelTail(x1) * UnitDir(dphi);
    return UnitDir(-phi0) * (FresnelSeries(x1) - Half()) + FresnelTail(x0);
}

}  // namespace

Cplx UnitDir(Real angle) {
    // The long double sine and cosine of the C library are an order of
    // magnitude slower than the double ones. So the angle is reduced to
    // [-π, π] in long double, with 2π split into three parts (the first two
    // of 32 bits, so that n times them is exact), and the double functions
    // finish with a first-order correction for the bits that double cannot
    // hold. The direction comes out within about 1e-16 rad.
    constexpr Real kTwoPi1 = 0xc90fdaa200000000p-61L;
    constexpr Real kTwoPi2 = 0x85a308d300000000p-95L;
    constexpr Real kTwoPi3 = 0x98cc51701b839a25p-130L;
    constexpr Real kReducible = 1e9L;  // n stays below 2^28
    if (!(std::fabs(angle) < kReducible)) return {std::cos(angle), std::sin(angle)};
    const Real n = std::floor(angle / (2 * kPi) + Real(0.5));
    const Real r = ((angle - n * kTwoPi1) - n * kTwoPi2) - n * kTwoPi3;
    const double rd = static_cast<double>(r);
    const double dr = static_cast<double>(r - rd);
    const double c = std::cos(rd);
    const double sn = std::sin(rd);
    return {c - sn * dr, sn + c * dr};
}

Real LinearCurve::Turning(Real s) const {
    const Real k1 = Curvature(s);
    if (dk_ == 0 || (k0_ >= 0) == (k1 >= 0) || k0_ == 0 || k1 == 0) return std::fabs(Angle(s));
    const Real so = -k0_ / dk_;  // the curvature changes sign here
    const Real ao = Angle(so);
    return std::fabs(ao) + std::fabs(Angle(s) - ao);
}

Cplx LinearCurve::Pos(Real s) const {
    if (!std::isfinite(s)) return {std::numeric_limits<Real>::quiet_NaN(), std::numeric_limits<Real>::quiet_NaN()};
    if (dk_ == 0) return ArcPos(s);
    if (Turning(s) <= kQuadratureTurning) return QuadraturePos(s);
    return FresnelPos(s);
}

Cplx LinearCurve::ArcPos(Real s) const {
    if (k0_ == 0) return {s, 0};
    // 1 − cos θ = 2 sin²(θ/2) keeps the offset exact on flat arcs.
    const Real th = k0_ * s;
    const Real h = std::sin(th / 2);
    return {std::sin(th) / k0_, 2 * h * h / k0_};
}

Cplx LinearCurve::QuadraturePos(Real s) const {
    const GaussRule& g = Gauss();
    // What bounds the error is the turning rate times the interval length.
    const Real rate = std::max(std::fabs(k0_), std::fabs(Curvature(s)));
    const int n = std::max(1, static_cast<int>(std::ceil(rate * std::fabs(s) / kTurnPerInterval)));
    const Real h = s / n;
    Cplx sum = 0;
    for (int i = 0; i < n; ++i) {
        const Real mid = (i + Real(0.5)) * h;
        Cplx part = 0;
        for (int j = 0; j < kGaussPoints; ++j) part += g.weight[j] * Tangent(mid + h / 2 * g.node[j]);
        sum += part;
    }
    return sum * (h / 2);
}

Cplx LinearCurve::FresnelPos(Real s) const {
    // A curve turning right is the mirror image of one turning left.
    if (dk_ < 0) return std::conj(LinearCurve(-k0_, -dk_).FresnelPos(s));
    // u: signed distance from the origin; x = u/scale is the argument of F,
    // and the direction there (from the origin's tangent) is πx²/2 = dk·u²/2.
    const Real scale = std::sqrt(kPi / dk_);
    const Real u0 = k0_ / dk_;
    const Real u1 = u0 + s;
    const Real x0 = std::fabs(u0) / scale;
    const Real x1 = std::fabs(u1) / scale;
    const Real phi0 = k0_ * u0 / 2;
    if ((u0 >= 0 && u1 >= 0) || (u0 <= 0 && u1 <= 0)) {
        const Real sign = (u0 > 0 || u1 > 0) ? 1 : -1;  // F is odd
        return scale * sign * Segment(x0, x1, phi0, Angle(s));
    }
    // The curve passes through its origin: go there, then on.
    const Real sign1 = u1 > 0 ? 1 : -1;
    const Real phi1 = dk_ * u1 * u1 / 2;
    return scale * sign1 * (UnitDir(-phi0) * Segment(0, x1, 0, phi1) - Segment(x0, 0, phi0, -phi0));
}

}  // namespace roadx::plani
