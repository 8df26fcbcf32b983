#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "rd3/rd3_azimuth.h"

using roadx::rd3::AzimuthFromVector;
using roadx::rd3::VectorFromAzimuth;
using vesk::geom::VECTOR_2D;

constexpr double kPi = std::numbers::pi;

TEST(Rd3Azimuth, CompassDirections) {
    EXPECT_EQ(AzimuthFromVector({0.0, 1.0}), 0.0);
    EXPECT_DOUBLE_EQ(AzimuthFromVector({1.0, 0.0}), kPi / 2);
    EXPECT_DOUBLE_EQ(AzimuthFromVector({0.0, -1.0}), kPi);
    EXPECT_DOUBLE_EQ(AzimuthFromVector({-1.0, 0.0}), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(AzimuthFromVector({1.0, 1.0}), kPi / 4);
    EXPECT_DOUBLE_EQ(AzimuthFromVector({-1.0, 1.0}), 7 * kPi / 4);
    // atan2(-0, -1) is -π: the result is still brought into range.
    EXPECT_DOUBLE_EQ(AzimuthFromVector({-1.0, -0.0}), 3 * kPi / 2);
}

TEST(Rd3Azimuth, AlwaysWithinZeroToTwoPi) {
    // Just west of north: π/2 − atan2 is a hair below 0, and adding 2π can
    // round to exactly 2π; the result must still be below 2π.
    for (double e : {1e-300, 1e-17, 2.3e-16, 4.5e-16, 1e-15, 1e-9}) {
        const double a = AzimuthFromVector({-e, 1.0});
        EXPECT_GE(a, 0.0) << e;
        EXPECT_LT(a, 2 * kPi) << e;
    }
    for (int i = 0; i < 3600; ++i) {
        const double ang = i * (2 * kPi / 3600);
        const double a = AzimuthFromVector({std::cos(ang), std::sin(ang)});
        ASSERT_GE(a, 0.0);
        ASSERT_LT(a, 2 * kPi);
    }
}

TEST(Rd3Azimuth, VectorFromAzimuthIsSinCos) {
    const VECTOR_2D v = VectorFromAzimuth(kPi / 2);
    EXPECT_DOUBLE_EQ(v.x, 1.0);
    EXPECT_NEAR(v.y, 0.0, 1e-16);
    const VECTOR_2D n = VectorFromAzimuth(0.0);
    EXPECT_EQ(n.x, 0.0);
    EXPECT_EQ(n.y, 1.0);
    const VECTOR_2D w = VectorFromAzimuth(1.0);
    EXPECT_EQ(w.x, std::sin(1.0));
    EXPECT_EQ(w.y, std::cos(1.0));
}

TEST(Rd3Azimuth, RoundTripOfDirections) {
    for (int i = 0; i < 720; ++i) {
        const double ang = -3.0 + i * 0.0123;
        const VECTOR_2D d(std::cos(ang), std::sin(ang));
        const VECTOR_2D back = VectorFromAzimuth(AzimuthFromVector(d));
        EXPECT_NEAR(back.x, d.x, 1e-15);
        EXPECT_NEAR(back.y, d.y, 1e-15);
    }
}
