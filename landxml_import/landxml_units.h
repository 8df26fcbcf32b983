// The units of one LandXML file: metric or US survey feet for lengths, and
// the codes of the direction and angle units that plan geometry converts.
#pragma once
#include <cstdint>

#include "landxml_import/xml_reader.h"
#include "vesk/geom.h"

// Unit codes of directions (`directionUnit`) and angles (`angularUnit`).
enum : uint32_t {
    kAngleUnitNone = 0,            // not given, or a text not recognised
    kAngleUnitRadians = 1,         // "radians"
    kAngleUnitGrads = 2,           // "grads"
    kAngleUnitDecimalDegrees = 3,  // "decimal degrees"
};

struct TLandXmlUnits {
    bool isMetric = true;
    uint32_t directionUnit = kAngleUnitNone;
    uint32_t angularUnit = kAngleUnitNone;
};

// The code of a unit text; the comparison is exact, so "Decimal Degrees" or
// "decimal dd.mm.ss" give kAngleUnitNone.
uint32_t AngleUnitCode(const CString& text);

// Reads every Units element of the root. Within one Units element all Metric
// children are read before all Imperial children (so Imperial wins when both
// are there); across several Units elements the last counts. Each Metric or
// Imperial read sets both angle codes afresh. A file without Units is metric
// with no angle units.
TLandXmlUnits ReadUnits(const XmlSection& root);

// A direction or angle value of a file as a mathematical angle in radians
// (counter-clockwise from +x), by unit code:
//   radians: v;  grads: (100 − v)·0.015707963267948 (azimuth from north,
//   clockwise);  decimal degrees: v·0.01745329251994, not turned;  any other
//   nonzero code: v.  Code 0 is not converted (callers ignore the value).
double AngleFromFile(double v, uint32_t unit);

// The unit vector (cos a, sin a).
vesk::geom::VECTOR_2D DirectionFromAngle(double a);
