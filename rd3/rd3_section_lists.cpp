#include "rd3/rd3_section_lists.h"

#include <cmath>

#include "host/alti.h"
#include "host/section_template.h"
#include "rd3/rd3_format.h"
#include "vesk/undefined.h"

namespace roadx::rd3 {
namespace {

constexpr double kAxisTol = 1e-12;
constexpr double kAxisElevationTol = 1e-6;

bool IsBreak(int code) { return code >= 12 && code <= 15; }

// The axis point where the walk crosses to the right: on the line between
// the last left vertex and the first right one.
StfPoint CrossingAxis(const std::vector<StfPoint>& kept, const StfPoint& right) {
    if (kept.empty()) return {0.0, right.z, 0};
    const StfPoint& left = kept.back();
    const double t = (0.0 - left.x) / (right.x - left.x);
    return {0.0, left.z + (right.z - left.z) * t, 0};
}

RD3Name SubTypeName(int subType) {
    return MakeName(GetNameFromSubType(static_cast<enumElemSubType>(subType)));
}

// One side, going outward from the axis: step is -1 for the left, +1 for
// the right.
Rd3SegmentList SideList(const StfWalk& w, int step, double z0, const SlopeAngles& slopes) {
    Rd3SegmentList out;
    const StfPoint& axis = w.points[w.axis];
    if (std::fabs(axis.z - z0) > kAxisElevationTol) out.push_back({kCodeOffset, 0.0, axis.z - z0, {}});
    const auto n = static_cast<long>(w.points.size());
    for (long k = static_cast<long>(w.axis); k + step >= 0 && k + step < n; k += step) {
        const StfPoint& in = w.points[static_cast<size_t>(k)];
        const StfPoint& outer = w.points[static_cast<size_t>(k + step)];
        // Widths are measured outward, so left widths are positive too.
        out.push_back({kCodeStep, step * (outer.x - in.x), outer.z - in.z, SubTypeName(outer.subType)});
    }
    out.push_back({kCodeSlopes, slopes.cut, slopes.fill, {}});
    return out;
}

}  // namespace

std::optional<StfWalk> WalkStfLine(const CProfileAlti& stf) {
    StfWalk w;
    bool found = false;
    for (int i = 0; i < stf.GetNumVrts(); ++i) {
        const TAltiVrt* v = stf.GetVrt(i);
        if (!vesk::IsDefined(v->quota) || !vesk::IsDefined(v->prog)) continue;
        if (IsBreak(v->code)) {
            if (found) break;
            w.points.clear();
        }
        const StfPoint p{v->prog, v->quota, v->subType};
        if (!found && std::fabs(p.x) <= kAxisTol) {
            found = true;
            w.axis = w.points.size();
        } else if (!found && p.x > kAxisTol) {
            found = true;
            w.axis = w.points.size();
            w.points.push_back(CrossingAxis(w.points, p));
        }
        w.points.push_back(p);
    }
    if (w.points.empty()) return std::nullopt;
    if (!found) {
        w.axis = w.points.size();
        w.points.push_back({0.0, w.points.back().z, 0});
    }
    return w;
}

SlopeAngles SlopeAnglesOf(CSectionTemplate& tpl) {
    SlopeAngles s;
    for (int i = 0; i < tpl.GetNumElems(); ++i) {
        const CSectionElem* e = tpl.GetElem(i);
        if (!e || e->GetType() != CSectionElem::SCARPATA) continue;
        const double angle = std::atan2(e->GetGradient(), 100.0);
        if (e->GetViewMode() == CSectionElem::VIEW_FILL) s.fill = angle;
        else s.cut = angle;
    }
    return s;
}

void ConvertSegments(Rd3SegmentList& list) {
    for (Rd3WriterSegment& s : list) {
        const double v1 = s.v1;
        const double v2 = s.v2;
        if (s.code == kCodeGrade && std::fabs(v1) >= 10.0) {
            s = {kCodeSteep, v2, v1 * v2, s.name};
        } else if (s.code == kCodeStep) {
            if (std::fabs(v1) > 1e-12 && std::fabs(v2 / v1) < 10.0) s = {kCodeGrade, std::atan2(v2, v1), v1, s.name};
            else s.code = kCodeSteep;
        }
    }
}

Rd3SideLists BuildSideLists(const StfWalk& walk, double z0, const SlopeAngles& slopes) {
    Rd3SideLists out;
    out.absent[kLeft] = walk.axis == 0;
    out.absent[kRight] = walk.axis + 1 == walk.points.size();
    for (int side : {kLeft, kRight}) {
        if (out.absent[side]) continue;
        out.lists[side] = SideList(walk, side == kLeft ? -1 : 1, z0, slopes);
        ConvertSegments(out.lists[side]);
    }
    return out;
}

}  // namespace roadx::rd3
