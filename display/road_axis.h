// Plan geometry of road axes for drawing: where to sample an element so
// that a polyline stays within a tolerance of it, points at chainages, and
// chainage texts.
#pragma once
#include <string>
#include <vector>

#include "host/plani_elem.h"

namespace roadx::display {

// Chord tolerance of the drawn clothoids: half a millimetre, well inside
// the millimetre promised for the drawing.
inline constexpr double kAxisChordTol = 0.0005;
// Most pieces one element is cut into (a guard against absurd radii).
inline constexpr int kMaxPiecesPerElem = 200000;

// Distances 0 = d0 < d1 < ... < dn = L along the element: equal steps short
// enough that each chord stays within tol of a curve of the element's
// smallest radius (sagitta s²/(8R) <= tol). A straight gives {0, L}.
std::vector<double> SampleDistances(const CPlaniElem& e, double tol);

// Point at a chainage of a chain of elements, offset to the right (negative
// = left); false outside the chain.
bool AxisPoint(const std::vector<CPlaniElem*>& elems, double prog, double offset, PNT_2D& p);

// Chainage as kilometres + metres with centimetres: 1250.004 -> "1+250.00",
// -20 -> "-0+020.00".
std::string FormatChainage(double prog);

// One vertex of an axis polyline: plan position and chainage.
struct TAxisVertex {
    double x = 0.0;
    double y = 0.0;
    double prog = 0.0;
};

// The axis of a chain of elements as one polyline within tol of the true
// curve: every element's ends are vertices (a shared end appears once), and
// clothoids and arcs are cut by SampleDistances. Elements that cannot be
// drawn (DrawableElem) are left out; a gap in the chain stays a jump.
std::vector<TAxisVertex> AxisPolyline(const std::vector<CPlaniElem*>& elems, double tol);

// Whether an element can be drawn: finite start, direction and length > 0.
bool DrawableElem(const CPlaniElem& e);

}  // namespace roadx::display
