// The ground under a plan line: the exact piecewise-linear profile of a DTM
// project's triangulation along a chain of elements (a road's axis, or a
// section's trace).
#pragma once
#include <vector>

#include "host/plani_elem.h"

class CDtmGrid;

// One vertex of a ground line: abscissa (chainage, or offset in a section)
// and elevation. An undefined elevation (vesk::kUndefined) starts a gap:
// there is no ground from this abscissa up to the next vertex, or up to the
// line's end when it is the last one.
struct TGroundVrt {
    double prog = 0.0;
    double z = 0.0;
};

// Plan chord tolerance of the ground sampling: arcs and clothoids are cut
// into chords within a millimetre of the curve.
inline constexpr double kGroundChordTol = 0.001;

// The ground along the chain, abscissa = element's GetProg() + distance
// along it. A vertex at every element boundary and at every crossing of a
// triangle edge (and at the chord points of curves); a gap (one undefined
// vertex) where the line leaves the triangulation, also before the first
// and after the last ground it meets. Empty when the line never meets the
// surface.
std::vector<TGroundVrt> SampleGround(const std::vector<const CPlaniElem*>& elems, const CDtmGrid& grid,
                                     double chordTol = kGroundChordTol);
