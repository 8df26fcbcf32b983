#include <cmath>

#include "host/plani_elem.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/plan_common.h"
#include "landxml_import/plan_geometry.h"
#include "landxml_import/plan_points.h"
#include "vesk/undefined.h"

namespace {

// The sweep of an arc: the converted `delta` when given with an angle unit,
// else length / radius, else the absolute difference of the directions of
// Start and End seen from Center.
double ReadSweep(const XmlSection& curve, uint32_t angularUnit, bool isMetric, double length, double radius,
                 const vesk::geom::PNT_2D& start) {
    double delta = vesk::kUndefined;
    if (PX_Double(curve, "delta", delta) && angularUnit != kAngleUnitNone) return AngleFromFile(delta, angularUnit);
    if (curve.IsPropertyExists("length")) return length / radius;
    const vesk::geom::PNT_2D center = ReadPlanPoint(curve, "Center", isMetric);
    const vesk::geom::PNT_2D end = ReadPlanPoint(curve, "End", isMetric);
    const double a1 = std::atan2(start.y - center.y, start.x - center.x);
    const double a2 = std::atan2(end.y - center.y, end.x - center.x);
    return std::fabs(a2 - a1);
}

}  // namespace

void ReadCurve(const XmlSection& curve, CLoadVantriDati& builder, uint32_t directionUnit, uint32_t angularUnit,
               bool isMetric, double& prog, vesk::geom::VECTOR_2D& dir, roadx::landxml::EPlanGeometry geometry) {
    double length = vesk::kUndefined;
    double radius = 0.0;
    ReadLength(curve, "length", length, isMetric);
    ReadLength(curve, "radius", radius, isMetric);
    const double startProg = ReadStartProg(curve, isMetric, prog);
    const vesk::geom::PNT_2D start = ReadPlanPoint(curve, "Start", isMetric);
    double sweep = NormalizeSweep(ReadSweep(curve, angularUnit, isMetric, length, radius, start));
    const bool ccw = ReadCounterClockwise(curve);
    // Points mode: the tangent and sweep from Center, Start and End; the
    // stated radius (the distance Start–Center when none is stated).
    double turns = vesk::IsDefined(length) && radius > 0.0 ? length / radius : sweep, centerRadius = 0.0;
    const bool fromPoints = geometry == roadx::landxml::EPlanGeometry::Points &&
                            CurveFromPoints(curve, isMetric, ccw, turns, dir, sweep, centerRadius);
    if (fromPoints && !(radius > 0.0)) radius = centerRadius;
    if (!fromPoints) ReadDirection(curve, "dirStart", directionUnit, dir);
    const vesk::geom::VECTOR_2D startDir = dir;
    builder.AddRoadArc(startProg, start, startDir, radius, sweep, ccw);

    // Points mode ends in the arc's own end tangent, not the stated dirEnd.
    const bool endDirGiven = !fromPoints && ReadDirection(curve, "dirEnd", directionUnit, dir);
    if (!endDirGiven || !vesk::IsDefined(length)) {
        const vesk::RefPtr<CArcPlaniElem> arc(new CArcPlaniElem(startProg, start, startDir, radius, sweep, ccw));
        if (!vesk::IsDefined(length)) length = arc->GetLength();
        if (!endDirGiven) arc->GetTg(fromPoints ? arc->GetLength() : length, dir);
    }
    prog += length;
}
