#include "rd3/rd3_azimuth.h"

#include <cmath>
#include <numbers>

namespace roadx::rd3 {

double AzimuthFromVector(const vesk::geom::VECTOR_2D& dir) {
    constexpr double kTwoPi = 2.0 * std::numbers::pi;
    double a = std::numbers::pi / 2.0 - std::atan2(dir.y, dir.x);
    // atan2 is bounded, so each loop runs at most once or twice; a value just
    // below 0 can round up to exactly 2π, which the second loop brings to 0.
    while (a < 0.0) a += kTwoPi;
    while (a >= kTwoPi) a -= kTwoPi;
    return a;
}

vesk::geom::VECTOR_2D VectorFromAzimuth(double azimuth) {
    return {std::sin(azimuth), std::cos(azimuth)};
}

}  // namespace roadx::rd3
