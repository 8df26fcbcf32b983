// Geometry shared by every horizontal element: a curve whose signed curvature
// varies linearly with the distance along it. Straights (no curvature), arcs
// (constant curvature) and clothoids (linear curvature) are all special cases.
//
// Everything here works in the element's local frame: the start point at the
// origin, the start tangent along +x, left turns towards +y. Points are
// complex numbers x + iy. Long double keeps the many-turn clothoids exact
// enough: their direction angle reaches millions of radians.
#pragma once
#include <complex>

namespace roadx::plani {

using Real = long double;
using Cplx = std::complex<Real>;

// e^{i·angle}: the unit vector at that angle.
Cplx UnitDir(Real angle);

class LinearCurve {
public:
    LinearCurve() = default;
    LinearCurve(Real k0, Real dk) : k0_(k0), dk_(dk) {}

    Real K0() const { return k0_; }
    Real Dk() const { return dk_; }
    Real Curvature(Real s) const { return k0_ + dk_ * s; }
    // Direction change from the start to distance s (radians, signed).
    Real Angle(Real s) const { return s * (k0_ + dk_ * s / 2); }
    Cplx Tangent(Real s) const { return UnitDir(Angle(s)); }
    // Total turning (sum of |direction change|) between 0 and s.
    Real Turning(Real s) const;
    // Point at distance s (s may also lie outside the element).
    Cplx Pos(Real s) const;

private:
    Cplx ArcPos(Real s) const;
    Cplx QuadraturePos(Real s) const;
    Cplx FresnelPos(Real s) const;

    Real k0_ = 0;
    Real dk_ = 0;
};

// Fresnel integral F(x) = ∫0^x e^{iπt²/2} dt, by its power series; accurate
// for 0 <= x <= kFresnelSplit.
Cplx FresnelSeries(Real x);
// Scaled tail G(x) = e^{-iπx²/2} ∫x^∞ e^{iπt²/2} dt, by a continued fraction;
// accurate for x >= kFresnelSplit. F(x) = (1+i)/2 − G(x)·e^{iπx²/2}.
Cplx FresnelTail(Real x);
inline constexpr Real kFresnelSplit = 2.0L;

}  // namespace roadx::plani
