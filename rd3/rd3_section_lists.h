// The writer's view of a cross section: its "STF" line walked outward from
// the axis into one segment list per side.
#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "rd3/rd3_name.h"

class CProfileAlti;
class CSectionTemplate;

namespace roadx::rd3 {

// A template segment as the writer builds it. The name is kept in memory
// only (it steers the pairing of segments); the file gets zeros.
struct Rd3WriterSegment {
    uint16_t code = 0;
    double v1 = 0.0;
    double v2 = 0.0;
    RD3Name name;
};
using Rd3SegmentList = std::vector<Rd3WriterSegment>;

inline constexpr int kLeft = 0;
inline constexpr int kRight = 1;

// One kept vertex of the walk: offset, elevation and the sub-type of the
// template element it belongs to.
struct StfPoint {
    double x = 0.0;
    double z = 0.0;
    int subType = 0;
};

// The kept vertices, left to right, and the index of the axis vertex.
struct StfWalk {
    std::vector<StfPoint> points;
    size_t axis = 0;
};

// Walks the line: vertices of undefined elevation are left out; a vertex of
// code 12 to 15 is a break, which before the axis throws away what was
// gathered (the break vertex starts the new run) and after it ends the walk.
// An axis vertex (offset within ±1e-12) is inserted where the walk crosses
// from left to right without one, or appended when the walk ends on the
// left. Nothing when no vertex was kept.
std::optional<StfWalk> WalkStfLine(const CProfileAlti& stf);

// Cut and fill slope angles (radians) of the code 24 segment: the default
// values, replaced by the template's slope elements.
struct SlopeAngles {
    double cut = 0.785398;
    double fill = 0.588002;
};
SlopeAngles SlopeAnglesOf(CSectionTemplate& tpl);

// The segment lists of both sides, converted, and which sides are absent
// (no vertex beyond the axis on that side; such a side has an empty list).
struct Rd3SideLists {
    Rd3SegmentList lists[2];
    bool absent[2] = {false, false};
};
Rd3SideLists BuildSideLists(const StfWalk& walk, double z0, const SlopeAngles& slopes);

// The conversion every list goes through once: a code 22 segment of
// |first| >= 10 becomes code 25 (second, first × second); a code 23 step
// (dx, dz) with |dx| > 1e-12 and |dz / dx| < 10 becomes code 22
// (atan2(dz, dx), dx), any other code 23 becomes code 25 unchanged.
void ConvertSegments(Rd3SegmentList& list);

}  // namespace roadx::rd3
