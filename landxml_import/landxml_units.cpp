#include "landxml_import/landxml_units.h"

#include <cmath>

namespace {

// The constants as the files' writers and readers have always used them:
// π/200 and π/180 rounded to 15 and 14 decimals.
constexpr double kGradToRad = 0.015707963267948;
constexpr double kDegToRad = 0.01745329251994;

void ReadAngleUnits(const XmlSection& system, TLandXmlUnits& units) {
    units.directionUnit = kAngleUnitNone;
    units.angularUnit = kAngleUnitNone;
    CString text;
    if (PX_String(system, "directionUnit", text)) units.directionUnit = AngleUnitCode(text);
    text.clear();
    if (PX_String(system, "angularUnit", text)) units.angularUnit = AngleUnitCode(text);
}

}  // namespace

uint32_t AngleUnitCode(const CString& text) {
    if (text == "radians") return kAngleUnitRadians;
    if (text == "grads") return kAngleUnitGrads;
    if (text == "decimal degrees") return kAngleUnitDecimalDegrees;
    return kAngleUnitNone;
}

TLandXmlUnits ReadUnits(const XmlSection& root) {
    TLandXmlUnits units;
    for (const XmlSection u : root.Children("Units")) {
        for (const XmlSection m : u.Children("Metric")) {
            ReadAngleUnits(m, units);
            units.isMetric = true;
        }
        for (const XmlSection i : u.Children("Imperial")) {
            ReadAngleUnits(i, units);
            units.isMetric = false;
        }
    }
    return units;
}

double AngleFromFile(double v, uint32_t unit) {
    switch (unit) {
        case kAngleUnitGrads: return (100.0 - v) * kGradToRad;
        case kAngleUnitDecimalDegrees: return v * kDegToRad;
        default: return v;
    }
}

vesk::geom::VECTOR_2D DirectionFromAngle(double a) {
    vesk::geom::VECTOR_2D d(std::cos(a), std::sin(a));
    return d.Normalize();
}
