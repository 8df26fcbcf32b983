// Fresnel integrals in long double, for the clothoid positions.
//
// Below kFresnelSplit the power series is used: its terms grow to about 100
// times the result at the split, so at most two of the long double's 19
// digits are lost. Above it, the tail comes from the
// continued fraction of the complementary error function, which converges
// the faster the larger x is. The tail is kept scaled by e^{-iπx²/2} so that
// the caller never has to subtract two nearly equal values of F.
#include <cmath>
#include <limits>

#include "host/plani_curve.h"

namespace roadx::plani {

namespace {

constexpr Real kPi = 3.141592653589793238462643383279502884L;
constexpr Real kEps = std::numeric_limits<Real>::epsilon();
// Enough for every x >= kFresnelSplit (about 90 are needed at the split);
// the bound only guards against a non-finite argument.
constexpr int kMaxFractionTerms = 2000;

// Plain complex arithmetic: std::complex<long double> goes through the
// library's NaN-aware multiply and divide, which is many times slower and
// never needed here (all values stay finite and away from zero).
Cplx Mul(Cplx a, Cplx b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}
Cplx Inv(Cplx a) {
    const Real n = a.real() * a.real() + a.imag() * a.imag();
    return {a.real() / n, -a.imag() / n};
}
Real Norm1(Cplx a) { return std::fabs(a.real()) + std::fabs(a.imag()); }

}  // namespace

Cplx FresnelSeries(Real x) {
    // F(x) = Σ x·(iφ)^k / (k!·(2k+1)), φ = πx²/2.
    const Real phi = kPi * x * x / 2;
    Cplx term(x, 0);
    Cplx sum = term;
    for (int k = 1; k < 200; ++k) {
        const Real f = phi / k;
        term = Cplx(-term.imag() * f, term.real() * f);  // term *= iφ/k
        const Cplx add = term / Real(2 * k + 1);
        sum += add;
        if (k > phi && Norm1(add) <= kEps / 8 * Norm1(sum)) break;
    }
    return sum;
}

Cplx FresnelTail(Real x) {
    // ∫x^∞ e^{iπt²/2} dt = (1+i)/2 · erfc(z), z = (1−i)·√π/2·x, and
    // e^{-iπx²/2} = e^{z²}; e^{z²}·erfc(z) = 1/(√π·K) with the continued
    // fraction K = z + (1/2)/(z + (2/2)/(z + (3/2)/(z + ...))), evaluated
    // front to back by the modified Lentz method.
    const Real sqrtPi = std::sqrt(kPi);
    const Cplx z = Cplx(1, -1) * (sqrtPi / 2 * x);
    // Re z > 0 keeps every partial denominator away from zero, so the
    // method's guard against zero denominators is not needed.
    Cplx f = z;
    Cplx c = z;
    Cplx d = 0;
    for (int n = 1; n < kMaxFractionTerms; ++n) {
        const Real a = Real(n) / 2;
        d = Inv(z + a * d);
        c = z + a * Inv(c);
        const Cplx delta = Mul(c, d);
        f = Mul(f, delta);
        if (Norm1(delta - Real(1)) <= kEps) break;
    }
    return Mul(Cplx(1, 1), Inv(f * (2 * sqrtPi)));
}

}  // namespace roadx::plani
