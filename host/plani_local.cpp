// Passage between an element's local frame and plan coordinates. The
// rotation is done in long double so that a point kilometres from the start
// keeps its last double digit.
#include <cmath>

#include "host/plani_local.h"

namespace roadx::plani {

bool SameValue(double a, double b) {
    if (a == b) return true;
    if (std::isnan(a) && std::isnan(b)) return true;
    if (!std::isfinite(a) || !std::isfinite(b)) return false;  // the tolerance of ∞ would be ∞
    return std::fabs(a - b) <= ProgTol(a);
}

VECTOR_2D SafeDir(const VECTOR_2D& v) {
    if (!std::isfinite(v.x) || !std::isfinite(v.y)) return {1.0, 0.0};
    // Scaling first keeps huge or tiny components from overflowing the norm.
    const double big = std::fmax(std::fabs(v.x), std::fabs(v.y));
    if (big == 0.0) return {1.0, 0.0};
    const Real x = v.x / big;
    const Real y = v.y / big;
    const Real len = std::sqrt(x * x + y * y);
    return {static_cast<double>(x / len), static_cast<double>(y / len)};
}

PNT_2D ToPlan(const PNT_2D& start, const VECTOR_2D& tg, Cplx local) {
    const Real x = start.x + (tg.x * local.real() - tg.y * local.imag());
    const Real y = start.y + (tg.y * local.real() + tg.x * local.imag());
    return {static_cast<double>(x), static_cast<double>(y)};
}

Cplx ToLocal(const PNT_2D& start, const VECTOR_2D& tg, const PNT_2D& p) {
    const Real dx = Real(p.x) - start.x;
    const Real dy = Real(p.y) - start.y;
    return {tg.x * dx + tg.y * dy, tg.x * dy - tg.y * dx};
}

VECTOR_2D ToPlanDir(const VECTOR_2D& tg, Cplx d) {
    return {static_cast<double>(tg.x * d.real() - tg.y * d.imag()),
            static_cast<double>(tg.y * d.real() + tg.x * d.imag())};
}

PNT_2D CurvePoint(const PNT_2D& start, const VECTOR_2D& tg, const LinearCurve& c, double s, double offset) {
    Cplx local = c.Pos(s);
    if (offset != 0.0) {
        const Cplx t = c.Tangent(s);
        local += Cplx(t.imag(), -t.real()) * Real(offset);  // right normal = −i·t
    }
    return ToPlan(start, tg, local);
}

bool ProjectOnCurve(const PNT_2D& start, const VECTOR_2D& tg, const LinearCurve& c, double length, const PNT_2D& p,
                    double& prog, double& offset) {
    const Cplx q = ToLocal(start, tg, p);
    const ProbeFn probe = [&c, q](Real s) {
        // Components of q − P(s) in the tangent's frame: multiply by conj(T).
        const Cplx d = (q - c.Pos(s)) * std::conj(c.Tangent(s));
        return FootProbe{d.real(), d.imag(), c.Curvature(s)};
    };
    const Real maxK = std::fmax(std::fabs(c.K0()), std::fabs(c.Curvature(length)));
    Real s = 0;
    Real left = 0;
    if (!FindFoot(probe, length, maxK, s, left)) return false;
    prog = static_cast<double>(s);
    offset = static_cast<double>(-left);
    return true;
}

}  // namespace roadx::plani
