// Contour lines of a triangulation: every level k·interval is traced
// through the triangles it crosses and the pieces are joined into lines.
//
// A vertex exactly at a level counts as above it, so every triangle meets a
// level in no segment or in exactly one, whose ends lie on two of its edges.
// An end is named by its edge (the two vertex indices) and the level, and is
// computed from the edge's lower-index vertex, so the two triangles of an
// edge give the bit-identical point and the pieces join exactly.
#pragma once
#include <cstddef>
#include <vector>

#include "vesk/geom.h"

class CTris;

namespace roadx::display {

struct TContour {
    long long level = 0;  // the line's elevation is level · interval
    double z = 0.0;
    std::vector<vesk::geom::PNT_3D> pts;
    bool closed = false;  // the first vertex is not repeated at the end
};

// The most contour levels one surface may span: beyond it the interval is
// far too small for the surface (the command line refuses such an interval).
inline constexpr size_t kMaxContourLevels = 1000000;

// The lowest and highest elevation of the triangles contours are traced
// through (those whose three vertices are defined); false when there is none.
bool ContourElevationRange(const CTris& tris, double& zmin, double& zmax);

// Lines ordered by level. Nothing for an interval that is not finite and
// positive, or when the surface spans more than maxLevels levels (a guard
// against an interval far too small for the surface). Triangles with an
// undefined or missing vertex are skipped.
std::vector<TContour> ComputeContours(const CTris& tris, double interval, size_t maxLevels = kMaxContourLevels);

}  // namespace roadx::display
