// Foot of a perpendicular on an axis.
//
// f(s) = (p − P(s))·T(s) is minus half the derivative of the squared
// distance, so the nearest points are where f falls through zero; there
// f'(s) = −1 + κ(s)·left(s). The axis is sampled finely enough that the
// tangent turns by at most kTurnPerSample between samples (so no foot hides
// between two samples unless the point lies beyond a centre of curvature),
// each sign change is refined by Newton's method kept inside its bracket,
// and the ends are tried with one Newton step against the chainage
// tolerance. Brackets are refined nearest first, and one that cannot hold a
// point nearer than the best foot so far is skipped: on a spiral winding
// thousands of times most brackets are far away and never refined.
#include <algorithm>
#include <cmath>
#include <vector>

#include "host/plani_local.h"

namespace roadx::plani {

namespace {

constexpr Real kTurnPerSample = 0.5L;
constexpr int kMinSamples = 8;
// Bounds the work on spirals that wind thousands of times; feet may then be
// missed between samples, never an endless search.
constexpr int kMaxSamples = 4096;
constexpr int kMaxNewton = 200;

int SampleCount(Real length, Real maxCurvature) {
    const Real want = std::ceil(length * maxCurvature / kTurnPerSample);
    if (!(want < kMaxSamples)) return kMaxSamples;  // also for NaN
    return std::max(kMinSamples, static_cast<int>(want));
}

// Newton's method on [lo, hi] with f(lo) > 0 >= f(hi), falling back to
// bisection whenever a step would leave the bracket.
Real Refine(const ProbeFn& probe, Real lo, Real hi) {
    Real s = (lo + hi) / 2;
    for (int i = 0; i < kMaxNewton; ++i) {
        const FootProbe pr = probe(s);
        if (pr.along > 0) lo = s;
        else hi = s;
        const Real slope = 1 - pr.curvature * pr.left;  // −f'(s)
        Real next = slope > 0 ? s + pr.along / slope : (lo + hi) / 2;
        if (!(next > lo && next < hi)) next = (lo + hi) / 2;
        // Rounding noise in f grows with the point's distance from the axis.
        const Real tol = 1e-16L * (1 + std::fabs(s) + std::fabs(pr.left));
        const bool done = std::fabs(next - s) <= tol || hi - lo <= tol;
        s = next;
        if (done) break;
    }
    return s;
}

Real Distance(const FootProbe& pr) { return std::hypot(pr.along, pr.left); }

struct Best {
    bool found = false;
    Real prog = 0;
    Real left = 0;
    Real dist = 0;

    void Consider(const ProbeFn& probe, Real s) {
        const FootProbe pr = probe(s);
        const Real d = Distance(pr);
        if (!std::isfinite(d) || (found && d >= dist)) return;
        found = true;
        prog = s;
        left = pr.left;
        dist = d;
    }
};

struct Bracket {
    Real lo;
    Real hi;
    Real bound;  // no point of the axis in [lo, hi] is nearer than this
};

// An end is a foot when one Newton step from it stays within the tolerance.
bool EndIsFoot(const FootProbe& pr, Real end, Real tol, bool atStart) {
    const Real slope = 1 - pr.curvature * pr.left;
    if (!(slope > 0)) return false;
    const Real s = end + pr.along / slope;
    return atStart ? (pr.along <= 0 && s >= end - tol) : (pr.along >= 0 && s <= end + tol);
}

}  // namespace

bool FindFoot(const ProbeFn& probe, Real length, Real maxCurvature, Real& prog, Real& left) {
    if (!(length >= 0) || !std::isfinite(length)) return false;
    const int n = length > 0 ? SampleCount(length, maxCurvature) : 1;
    std::vector<Real> s(n + 1);
    std::vector<FootProbe> f(n + 1);
    for (int i = 0; i <= n; ++i) {
        s[i] = i == n ? length : length * i / n;
        f[i] = probe(s[i]);
    }
    Best best;
    const double len = static_cast<double>(length);
    if (EndIsFoot(f[0], 0, ProgTol(0.0), true)) best.Consider(probe, 0);
    if (EndIsFoot(f[n], length, ProgTol(len), false)) best.Consider(probe, length);
    std::vector<Bracket> brackets;
    for (int i = 0; i < n; ++i) {
        if (!(f[i].along > 0 && f[i + 1].along <= 0)) continue;
        // The axis between two samples stays within half their spacing of
        // one of them, measured along it.
        const Real bound = (Distance(f[i]) + Distance(f[i + 1]) - (s[i + 1] - s[i])) / 2;
        brackets.push_back({s[i], s[i + 1], bound});
    }
    std::sort(brackets.begin(), brackets.end(), [](const Bracket& a, const Bracket& b) { return a.bound < b.bound; });
    for (const Bracket& b : brackets) {
        if (best.found && b.bound >= best.dist) break;
        best.Consider(probe, Refine(probe, b.lo, b.hi));
    }
    if (!best.found) return false;
    prog = best.prog;
    left = best.left;
    return true;
}

}  // namespace roadx::plani
