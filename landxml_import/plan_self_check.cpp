// The geometry check after a LandXML alignment is imported: the end point
// the import computed for each plan element against the End the writing
// program states, and each End against the next element's Start. The rules
// compute the plan from stations, lengths and directions; a file whose
// directions mean something else (azimuths, grads the other way, no unit)
// lands its road elsewhere, and only this comparison shows it.
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "host/road.h"
#include "landxml_import/import_diag.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/plan_common.h"
#include "landxml_import/plan_geometry.h"

namespace {

using vesk::geom::PNT_2D;

constexpr double kPi = 3.141592653589793;

double Distance(const PNT_2D& a, const PNT_2D& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// Angle difference folded into [0, π].
double AngleGap(double a, double b) {
    double d = std::fmod(std::fabs(a - b), 2 * kPi);
    return d > kPi ? 2 * kPi - d : d;
}

// Ways a direction value can be meant: from east counter-clockwise, from
// north clockwise (an azimuth), from north counter-clockwise.
enum EConvention { kFromEastCcw, kFromNorthCw, kFromNorthCcw, kConventions };

double AsMathAngle(double v, double unitToRad, EConvention c) {
    switch (c) {
        case kFromEastCcw: return v * unitToRad;
        case kFromNorthCw: return kPi / 2 - v * unitToRad;
        default: return kPi / 2 + v * unitToRad;
    }
}

// What the directions of the file's lines fit, when the unit read does not;
// "" when nothing can be told.
std::string LikelyCause(const std::vector<XmlSection>& elements, const XmlSection& firstOff, uint32_t unit,
                        bool isMetric, bool gapBefore) {
    bool hasDir = false;
    int fitRead = 0, lines = 0;
    int fit[kConventions] = {0, 0, 0};
    const double unitToRad = unit == kAngleUnitGrads ? kPi / 200 : unit == kAngleUnitDecimalDegrees ? kPi / 180 : 1.0;
    for (const XmlSection& e : elements) {
        hasDir = hasDir || e.IsPropertyExists("dir") || e.IsPropertyExists("dirStart");
        if (e.GetSectionName() != "Line" || !e.IsPropertyExists("dir") || !e.IsSectionExists("Start") ||
            !e.IsSectionExists("End"))
            continue;
        const PNT_2D s = ReadPlanPoint(e, "Start", isMetric), t = ReadPlanPoint(e, "End", isMetric);
        if (Distance(s, t) < 1e-6) continue;
        ++lines;
        const double bearing = std::atan2(t.y - s.y, t.x - s.x);
        double v = 0;
        PX_Double(e, "dir", v);
        constexpr double kTol = 1e-4;
        if (unit != kAngleUnitNone && AngleGap(AngleFromFile(v, unit), bearing) < kTol) ++fitRead;
        for (int c = 0; c < kConventions; ++c)
            if (AngleGap(AsMathAngle(v, unitToRad, static_cast<EConvention>(c)), bearing) < kTol) ++fit[c];
    }
    if (hasDir && unit == kAngleUnitNone) return "no directionUnit: the file's directions were not read";
    if (lines > 0 && fitRead < lines) {
        static const char* kMeant[kConventions] = {"angles counter-clockwise from east",
                                                   "azimuths from north (clockwise)",
                                                   "angles counter-clockwise from north"};
        for (int c = 0; c < kConventions; ++c)
            if (fit[c] == lines)
                return std::string("the file's directions fit ") + kMeant[c] + ", not the way " +
                       (unit == kAngleUnitGrads ? "grads are" : "decimal degrees are") + " read";
    }
    if (gapBefore) return "a gap between elements in the file itself";
    if (firstOff.GetSectionName() == "Line" && !firstOff.IsPropertyExists("dir"))
        return "the Line has no dir: its direction is the running direction of the element before it, not its "
               "Start to End";
    return "";
}

std::string Metres(double d) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.3f m", d);
    return buf;
}

// In points mode the directions are not read where points are, so a miss
// lies in the element itself: points it lacks, or numbers that disagree
// with its points.
std::string PointsModeCause(const XmlSection& e, bool isMetric) {
    const std::string_view tag = e.GetSectionName();
    const bool hasStart = e.IsSectionExists("Start"), hasEnd = e.IsSectionExists("End");
    if (tag == "Line" && !(hasStart && hasEnd))
        return "the Line lacks its Start or End: placed by its attributes";
    if (tag == "Curve") {
        if (!(hasStart && hasEnd && e.IsSectionExists("Center")))
            return "the Curve lacks its Start, Center or End: placed by its attributes";
        double radius = 0;
        const double fromCenter = Distance(ReadPlanPoint(e, "Start", isMetric), ReadPlanPoint(e, "Center", isMetric));
        if (ReadLength(e, "radius", radius, isMetric) && radius > 0 && std::fabs(radius - fromCenter) > 1e-6)
            return "the file's radius " + Metres(radius) + " is not the distance Start–Center " + Metres(fromCenter);
    }
    if (tag == "Spiral")
        return e.IsSectionExists("PI") ? "the file's length and radii do not reach its End from its Start toward its PI"
                                       : "the Spiral has no PI: it goes on in the direction of the element before it";
    return "";
}

}  // namespace

void CheckPlanAgainstFile(const XmlSection& alignment, CRoad* road, uint32_t directionUnit, bool isMetric,
                          roadx::landxml::EPlanGeometry geometry) {
    CImportDiagScope* diag = CImportDiagScope::Current();
    if (!diag || !road) return;
    // The numbers were reported when the plan was read; not again.
    CImportDiagPause pause;
    std::vector<XmlSection> elements;
    for (const XmlSection coordGeom : alignment.Children("CoordGeom"))
        for (const XmlSection& e : ElementsInDocumentOrder(coordGeom)) elements.push_back(e);
    const std::vector<CPlaniElem*> planned = road->RetrieveLinkedPlaniElems();
    if (planned.size() != elements.size()) return;
    const double tol = diag->Tolerance();

    int off = 0, gaps = 0;
    size_t firstOff = 0, worst = 0, firstGap = 0;
    double firstDist = 0, worstDist = 0, firstGapDist = 0;
    bool gapBeforeFirstOff = false;
    for (size_t i = 0; i < elements.size(); ++i) {
        const XmlSection& e = elements[i];
        if (!e.IsSectionExists("End")) continue;
        const PNT_2D fileEnd = ReadPlanPoint(e, "End", isMetric);
        const double d = Distance(planned[i]->GetEndPnt(), fileEnd);
        if (d > tol) {
            if (off++ == 0) firstOff = i, firstDist = d, gapBeforeFirstOff = gaps > 0;
            if (d > worstDist) worst = i, worstDist = d;
        }
        if (i + 1 < elements.size() && elements[i + 1].IsSectionExists("Start")) {
            const double g = Distance(fileEnd, ReadPlanPoint(elements[i + 1], "Start", isMetric));
            if (g > tol && gaps++ == 0) firstGap = i + 1, firstGapDist = g;
        }
    }
    if (gaps > 0)
        diag->Report("plan-gap-in-file", elements[firstGap],
                     "the file's Start lies " + Metres(firstGapDist) + " from the End of the element before it",
                     "each element starts at its own Start", gaps);
    if (off > 0) {
        const std::string cause =
            geometry == roadx::landxml::EPlanGeometry::Points
                ? PointsModeCause(elements[firstOff], isMetric)
                : LikelyCause(elements, elements[firstOff], directionUnit, isMetric, gapBeforeFirstOff);
        std::string message = "the computed end lies " + Metres(firstDist) + " from the file's End";
        if (worst != firstOff)
            message += " (largest " + Metres(worstDist) + " at " + ElementPath(elements[worst]) + ")";
        if (!cause.empty()) message += "; likely cause: " + cause;
        diag->Report("plan-end-mismatch", elements[firstOff], message, "the computed geometry kept", off);
    }
}
