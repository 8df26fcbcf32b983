// Checks shared by the two clothoid element kinds.
#pragma once
#include <cmath>

namespace roadx::plani {

// The scale factor k of the clothoid constructors: anything but a finite
// positive number counts as 1.
inline double CleanK(double k) { return std::isfinite(k) && k > 0.0 ? k : 1.0; }
// A parameter A or radius R that can make a clothoid: finite and positive.
inline bool ValidParam(double v) { return std::isfinite(v) && v > 0.0; }

}  // namespace roadx::plani
