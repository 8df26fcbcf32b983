#include <cmath>

#include "landxml_import/plan_common.h"
#include "landxml_import/plan_geometry.h"
#include "landxml_import/plan_points.h"
#include "vesk/undefined.h"

// A straight: its direction from `dir`, else the running direction, else
// Start→End; its length from `length`, else the distance Start–End. It ends
// in its start direction. In points mode a Line with Start and End runs
// from one to the other; its stated length still advances the chainage.
void ReadLine(const XmlSection& line, CLoadVantriDati& builder, uint32_t directionUnit, bool isMetric, double& prog,
              vesk::geom::VECTOR_2D& dir, roadx::landxml::EPlanGeometry geometry) {
    double length = vesk::kUndefined;
    ReadLength(line, "length", length, isMetric);
    double span = 0.0;
    if (geometry == roadx::landxml::EPlanGeometry::Points && LineFromPoints(line, isMetric, dir, span)) {
        builder.AddRoadRect(ReadStartProg(line, isMetric, prog), ReadPlanPoint(line, "Start", isMetric), dir, span);
        prog += vesk::IsDefined(length) ? length : span;
        return;
    }
    ReadDirection(line, "dir", directionUnit, dir);
    const double startProg = ReadStartProg(line, isMetric, prog);
    const vesk::geom::PNT_2D start = ReadPlanPoint(line, "Start", isMetric);
    if (!vesk::IsDefined(length) || !IsDefinedDir(dir)) {
        const vesk::geom::PNT_2D end = ReadPlanPoint(line, "End", isMetric);
        if (!vesk::IsDefined(length)) length = vesk::geom::dist(start, end);
        if (!IsDefinedDir(dir)) dir = (end - start).Normalize();
    }
    builder.AddRoadRect(startProg, start, dir, length);
    prog += length;
}
