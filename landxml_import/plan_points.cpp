#include "landxml_import/plan_points.h"

#include <cmath>
#include <numbers>

#include "landxml_import/plan_common.h"

namespace {

using vesk::geom::PNT_2D;
using vesk::geom::VECTOR_2D;

// Points closer than this are one point: no direction can be read from them.
constexpr double kSamePoint = 1e-9;

bool HasPoints(const XmlSection& e, const char* a, const char* b) {
    return e.IsSectionExists(a) && e.IsSectionExists(b);
}

}  // namespace

bool LineFromPoints(const XmlSection& line, bool isMetric, VECTOR_2D& dir, double& length) {
    if (!HasPoints(line, "Start", "End")) return false;
    const VECTOR_2D d = ReadPlanPoint(line, "End", isMetric) - ReadPlanPoint(line, "Start", isMetric);
    if (!(d.Length() > kSamePoint) || !std::isfinite(d.Length())) return false;
    length = d.Length();
    dir = VECTOR_2D(d).Normalize();
    return true;
}

bool CurveFromPoints(const XmlSection& curve, bool isMetric, bool ccw, double turns, VECTOR_2D& startDir,
                     double& sweep, double& radius) {
    if (!HasPoints(curve, "Start", "Center") || !curve.IsSectionExists("End")) return false;
    const PNT_2D center = ReadPlanPoint(curve, "Center", isMetric);
    const VECTOR_2D toStart = ReadPlanPoint(curve, "Start", isMetric) - center;
    const VECTOR_2D toEnd = ReadPlanPoint(curve, "End", isMetric) - center;
    const double r = toStart.Length();
    if (!(r > kSamePoint) || !std::isfinite(r) || !(toEnd.Length() > kSamePoint) || !std::isfinite(toEnd.Length()))
        return false;
    // Turning left the tangent is the radius vector turned a quarter left.
    // (0.0 − v keeps a zero component +0, as the trace shows it.)
    startDir = ccw ? VECTOR_2D(0.0 - toStart.y, toStart.x) : VECTOR_2D(toStart.y, 0.0 - toStart.x);
    startDir.Normalize();
    const double from = std::atan2(toStart.y, toStart.x), to = std::atan2(toEnd.y, toEnd.x);
    sweep = NormalizeSweep(ccw ? to - from : from - to);
    radius = r;
    // End on Start (within a nanometre along the arc): a full circle or none.
    constexpr double kTurn = 2.0 * std::numbers::pi;
    if (sweep * r < kSamePoint || (kTurn - sweep) * r < kSamePoint)
        sweep = std::isfinite(turns) && turns > std::numbers::pi ? kTurn : 0.0;
    return true;
}

bool SpiralDirFromPoints(const XmlSection& spiral, bool isMetric, VECTOR_2D& dir) {
    if (!HasPoints(spiral, "Start", "PI")) return false;
    const VECTOR_2D d = ReadPlanPoint(spiral, "PI", isMetric) - ReadPlanPoint(spiral, "Start", isMetric);
    if (!(d.Length() > kSamePoint) || !std::isfinite(d.Length())) return false;
    dir = VECTOR_2D(d).Normalize();
    return true;
}
