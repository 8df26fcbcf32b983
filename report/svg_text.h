// Text helpers of the page: numbers written the same in every locale, and
// XML escaping.
#pragma once
#include <string>
#include <vector>

#include "vesk/geom.h"

namespace roadx::report {

// Fixed-point with the given decimals, "-0" written "0".
std::string Fx(double v, int decimals = 2);
// Escapes & < > " ' for text and attribute values.
std::string Esc(const std::string& s);
// A "nice" step (1, 2 or 5 times a power of ten) not smaller than v.
double NiceStep(double v);
// Douglas-Peucker simplification of an open polyline within tol.
std::vector<vesk::geom::PNT_3D> Simplify(const std::vector<vesk::geom::PNT_3D>& pts, double tol);

}  // namespace roadx::report
