// Independent reference for the horizontal element tests: the axis of a
// curve with linearly varying curvature, integrated from x' = cos θ(s),
// y' = sin θ(s) by Taylor-series steps in long double. It shares nothing with
// the library's Fresnel integrals and Gauss-Legendre quadrature: each step
// expands g(t) = e^{i(κt + ct²/2)} as a power series from its differential
// equation g' = i(κ + ct)·g and integrates it term by term.
#pragma once
#include <cmath>
#include <complex>
#include <vector>

#include "vesk/geom.h"

namespace plani_ref {

using Real = long double;
using Cplx = std::complex<Real>;

// θ(s) = th0 + k0·s + dk·s²/2, starting at (x0, y0).
struct Curve {
    Real x0 = 0;
    Real y0 = 0;
    Real th0 = 0;
    Real k0 = 0;
    Real dk = 0;

    Real Theta(Real s) const { return th0 + k0 * s + dk * s * s / 2; }
    Cplx Dir(Real s) const { return {std::cos(Theta(s)), std::sin(Theta(s))}; }
};

// ∫0^h e^{i(κt + ct²/2)} dt for a step short enough that |κ|h and |c|h²
// stay at most 1 (so the terms fall like 1/m! and nothing cancels).
inline Cplx StepIntegral(Real kappa, Real c, Real h) {
    Cplx prev(0, 0);  // e_{m−1}
    Cplx cur(1, 0);   // e_m
    Cplx sum(0, 0);
    Real hp = h;  // h^{m+1}
    int small = 0;
    for (int m = 0; m < 200; ++m) {
        const Cplx add = cur * (hp / (m + 1));
        sum += add;
        // With κ = 0 every other term vanishes: stop after two small ones.
        small = std::abs(add) < 1e-24L * std::fabs(h) ? small + 1 : 0;
        if (m > 4 && small >= 2) break;
        const Cplx next = Cplx(0, 1) * (kappa * cur + c * prev) / Real(m + 1);
        prev = cur;
        cur = next;
        hp *= h;
    }
    return sum;
}

// Points at the given distances (ascending, >= 0), integrated from the start
// with Kahan-compensated sums.
inline std::vector<Cplx> Points(const Curve& cv, const std::vector<Real>& at) {
    std::vector<Cplx> out;
    Cplx sum(cv.x0, cv.y0);
    Cplx comp(0, 0);
    Real s = 0;
    for (Real target : at) {
        while (s < target) {
            const Real kappa = cv.k0 + cv.dk * s;
            Real h = target - s;
            if (std::fabs(kappa) * h > 1) h = 1 / std::fabs(kappa);
            if (std::fabs(cv.dk) * h * h > 1) h = std::sqrt(1 / std::fabs(cv.dk));
            if (h > 50) h = 50;
            if (s + h > target) h = target - s;
            const Cplx d = cv.Dir(s) * StepIntegral(kappa, cv.dk, h) - comp;
            const Cplx t = sum + d;
            comp = (t - sum) - d;
            sum = t;
            s = (target - s <= h) ? target : s + h;
        }
        out.push_back(sum);
    }
    return out;
}

// Direction difference between a tangent and a reference angle, radians.
inline Real AngleBetween(const vesk::geom::VECTOR_2D& tg, Real th) {
    const Real c = std::cos(th);
    const Real s = std::sin(th);
    return std::fabs(std::atan2(c * tg.y - s * tg.x, c * tg.x + s * tg.y));
}

inline Real Dist(const vesk::geom::PNT_2D& p, Cplx q) { return std::hypot(p.x - q.real(), p.y - q.imag()); }

}  // namespace plani_ref
