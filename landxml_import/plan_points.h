// The plan in points mode: what an element's own coordinates say about where
// it goes. Writing programs compute Start, End, Center and PI from their own
// geometry, so these hold even when the file's directions are azimuths, have
// no unit or count grads the other way. Each function answers only when the
// element has the points it needs (and they do not coincide); otherwise the
// caller reads the attributes as in the default mode.
#pragma once
#include "landxml_import/xml_reader.h"
#include "vesk/geom.h"

// A Line's direction and length from its Start to its End.
bool LineFromPoints(const XmlSection& line, bool isMetric, vesk::geom::VECTOR_2D& dir, double& length);

// A Curve's start tangent (perpendicular to Start − Center, turning in its
// `rot` sense) and sweep (from Start to End round Center in that sense).
// When End is where Start is, `turns` (the element's length over its
// radius) tells a full circle (more than half a turn) from none.
// `radius` is the distance Start–Center.
bool CurveFromPoints(const XmlSection& curve, bool isMetric, bool ccw, double turns, vesk::geom::VECTOR_2D& startDir,
                     double& sweep, double& radius);

// A Spiral's start tangent, toward its PI.
bool SpiralDirFromPoints(const XmlSection& spiral, bool isMetric, vesk::geom::VECTOR_2D& dir);
