// Directions in RD3 files are azimuths: radians from north (+Y) toward east
// (+X), in [0, 2π). The document uses direction vectors.
#pragma once
#include "vesk/geom.h"

namespace roadx::rd3 {

// π/2 − atan2(y, x), brought into [0, 2π).
double AzimuthFromVector(const vesk::geom::VECTOR_2D& dir);

// The unit vector (sin a, cos a).
vesk::geom::VECTOR_2D VectorFromAzimuth(double azimuth);

}  // namespace roadx::rd3
