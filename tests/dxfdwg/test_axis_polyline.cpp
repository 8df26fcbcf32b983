// The axis polyline that the report and the GIS layers share: every vertex
// on the element, chords within the tolerance, chainages in step.
#include "display/road_axis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using roadx::display::AxisPolyline;

TEST(AxisPolyline, AStraightThenAnArcGiveVerticesOnTheCircleWithinTheChordTolerance) {
    const double r = 200.0, angle = std::numbers::pi / 2;
    auto* line = new CRettifiloPlaniElem(1000.0, PNT_2D{0.0, 0.0}, VECTOR_2D{1.0, 0.0}, 100.0);
    auto* arc = new CArcPlaniElem(1100.0, PNT_2D{100.0, 0.0}, VECTOR_2D{1.0, 0.0}, r, angle, true);
    const std::vector<CPlaniElem*> elems{line, arc};
    const double tol = 0.001;
    const auto v = AxisPolyline(elems, tol);
    ASSERT_GE(v.size(), 3u);
    EXPECT_DOUBLE_EQ(v.front().prog, 1000.0);
    EXPECT_DOUBLE_EQ(v[1].x, 100.0);  // the shared end appears once
    EXPECT_DOUBLE_EQ(v[1].prog, 1100.0);
    EXPECT_NEAR(v.back().prog, 1100.0 + r * angle, 1e-9);
    // A left turn from (100, 0) heading east: the centre is (100, r).
    EXPECT_NEAR(v.back().x, 100.0 + r, 1e-6);
    EXPECT_NEAR(v.back().y, r, 1e-6);
    for (size_t i = 1; i < v.size(); ++i) {
        EXPECT_GT(v[i].prog, v[i - 1].prog);
        if (i < 2) continue;
        EXPECT_NEAR(std::hypot(v[i].x - 100.0, v[i].y - r), r, 1e-6);
        const double chord = std::hypot(v[i].x - v[i - 1].x, v[i].y - v[i - 1].y);
        EXPECT_LE(chord * chord / (8.0 * r), tol + 1e-12);  // the sagitta of the chord
    }
    line->SubReference();
    arc->SubReference();
}

TEST(AxisPolyline, AnEmptyChainGivesNoVertex) {
    EXPECT_TRUE(AxisPolyline({}, 0.001).empty());
}

}  // namespace
