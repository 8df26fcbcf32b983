// Helpers shared by the horizontal element classes: tolerances, the start
// direction's clean-up, the passage between an element's local frame (see
// plani_curve.h) and plan coordinates, and the search for the foot of a
// perpendicular.
#pragma once
#include <functional>

#include "host/plani_curve.h"
#include "vesk/geom.h"

namespace roadx::plani {

using vesk::geom::PNT_2D;
using vesk::geom::VECTOR_2D;

// Chainage tolerance: a chainage counts as reaching a when it is at least
// a − ProgTol(a).
inline double ProgTol(double a) { return 1e-12 + 1e-12 * (a < 0 ? -a : a); }
// Equality of element data within the chainage tolerance; NaN equals NaN so
// that a copy of any element equals its original.
bool SameValue(double a, double b);

// Unit direction; a zero or non-finite vector becomes +x (1, 0).
VECTOR_2D SafeDir(const VECTOR_2D& v);

// Plan point of a local point, for an element starting at start with unit
// tangent tg; and the reverse.
PNT_2D ToPlan(const PNT_2D& start, const VECTOR_2D& tg, Cplx local);
Cplx ToLocal(const PNT_2D& start, const VECTOR_2D& tg, const PNT_2D& p);
// Plan direction of a local direction.
VECTOR_2D ToPlanDir(const VECTOR_2D& tg, Cplx localDir);

// Point at distance s along a curve and offset across it (positive right).
PNT_2D CurvePoint(const PNT_2D& start, const VECTOR_2D& tg, const LinearCurve& c, double s, double offset);

// Where a point lies as seen from the axis at distance s: its component
// along the tangent and to the left, and the axis' signed curvature there.
struct FootProbe {
    Real along = 0;
    Real left = 0;
    Real curvature = 0;
};
using ProbeFn = std::function<FootProbe(Real s)>;

// Foot of the perpendicular from a point onto an axis of the given length,
// whose curvature never exceeds maxCurvature in magnitude. Among several
// feet the nearest wins. Feet beyond an end by no more than the chainage
// tolerance count as that end. False when no foot lies on the axis.
bool FindFoot(const ProbeFn& probe, Real length, Real maxCurvature, Real& prog, Real& left);

// FindFoot on a linear-curvature curve, with a point in plan coordinates;
// offset comes out positive to the right.
bool ProjectOnCurve(const PNT_2D& start, const VECTOR_2D& tg, const LinearCurve& c, double length, const PNT_2D& p,
                    double& prog, double& offset);

}  // namespace roadx::plani
