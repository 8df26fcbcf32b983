// Helpers shared by the Line, Curve and Spiral readers.
#pragma once
#include <cstdint>

#include "landxml_import/xml_reader.h"
#include "vesk/geom.h"

// Reads a length-like attribute, converting feet when not metric; a missing
// attribute leaves `value` as it was (and is not converted).
bool ReadLength(const XmlSection& e, const char* name, double& value, bool isMetric);

// The plan point (x = easting, y = northing) of the last child `tag`, or
// (0, 0) when there is none. A point text with fewer than two numbers ends
// the import.
vesk::geom::PNT_2D ReadPlanPoint(const XmlSection& e, const char* tag, bool isMetric);

// When the attribute exists and the unit code is nonzero, converts it and,
// when the result is defined, makes it the running direction. True when the
// running direction was set.
bool ReadDirection(const XmlSection& e, const char* name, uint32_t directionUnit, vesk::geom::VECTOR_2D& dir);

// A sweep angle brought into [0, 2π) by whole turns; a value that is not
// finite is left as it is.
double NormalizeSweep(double a);

// The start chainage of an element: its staStart when given (converted),
// else the running chainage.
double ReadStartProg(const XmlSection& e, bool isMetric, double runningProg);

// Turn: counter-clockwise unless `rot` is exactly "cw".
bool ReadCounterClockwise(const XmlSection& e);

// |a − b| <= |b|·1e-12 + 1e-12; exact comparison when b is not finite.
bool TolerantEqual(double a, double b);

bool IsDefinedDir(const vesk::geom::VECTOR_2D& d);
