#include "landxml_import/plan_common.h"

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "landxml_import/import_ended.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/text_lists.h"
#include "vesk/undefined.h"

bool ReadLength(const XmlSection& e, const char* name, double& value, bool isMetric) {
    if (!PX_Double(e, name, value)) return false;
    if (!isMetric) FeetToMeters(value);
    return true;
}

vesk::geom::PNT_2D ReadPlanPoint(const XmlSection& e, const char* tag, bool isMetric) {
    vesk::geom::PNT_2D p(0.0, 0.0);
    std::vector<double> n;
    for (const XmlSection point : e.Children(tag)) {
        n.clear();
        ReadDoubleList(point.Text(), n, isMetric);
        if (n.size() < 2) {
            const std::string what = std::string(e.GetSectionName()) + " " + tag + " " + QuoteForMessage(point.Text());
            ListAt(n, 1, what);
        }
        p.y = n[0];
        p.x = n[1];
    }
    return p;
}

bool ReadDirection(const XmlSection& e, const char* name, uint32_t directionUnit, vesk::geom::VECTOR_2D& dir) {
    double v = vesk::kUndefined;
    if (!PX_Double(e, name, v) || directionUnit == kAngleUnitNone) return false;
    const double a = AngleFromFile(v, directionUnit);
    if (!vesk::IsDefined(a)) return false;
    dir = DirectionFromAngle(a);
    return true;
}

double NormalizeSweep(double a) {
    constexpr double kTurn = 2.0 * std::numbers::pi;
    if (!std::isfinite(a)) return a;
    // Whole turns one at a time, as far as that is quick; beyond, the
    // remainder (which the steps would reach anyway up to rounding).
    if (std::fabs(a) > 64.0 * kTurn) a = std::fmod(a, kTurn);
    while (a < 0.0) a += kTurn;
    while (a >= kTurn) a -= kTurn;
    return a;
}

double ReadStartProg(const XmlSection& e, bool isMetric, double runningProg) {
    double sta = 0.0;
    if (!ReadLength(e, "staStart", sta, isMetric)) return runningProg;
    return sta;
}

bool ReadCounterClockwise(const XmlSection& e) { return e.Attribute("rot") != "cw"; }

bool TolerantEqual(double a, double b) {
    if (!std::isfinite(b)) return a == b;
    return std::fabs(a - b) <= std::fabs(b) * 1e-12 + 1e-12;
}

bool IsDefinedDir(const vesk::geom::VECTOR_2D& d) { return vesk::IsDefined(d.x) && vesk::IsDefined(d.y); }
