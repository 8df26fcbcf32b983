#include <gtest/gtest.h>

#include "rd3/rd3_section_points.h"
#include "vesk/undefined.h"

using namespace roadx::rd3;
using vesk::geom::PNT_2D;

namespace {
RD3TemplateSegment Seg(int kind, double v1, double v2) {
    RD3TemplateSegment s;
    s.kind = kind;
    s.val1 = v1;
    s.val2 = v2;
    return s;
}
void ExpectPts(const std::vector<PNT_2D>& got, const std::vector<PNT_2D>& want) {
    ASSERT_EQ(got.size(), want.size());
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_DOUBLE_EQ(got[i].x, want[i].x) << i;
        EXPECT_DOUBLE_EQ(got[i].y, want[i].y) << i;
    }
}
}  // namespace

TEST(Rd3SectionPoints, BothSidesShareTheAxisPoint) {
    const auto pts = SectionPoints({Seg(2, -0.02, 3.5), Seg(3, 0.7, 0.5)}, {Seg(2, -0.025, 3.0), Seg(3, 0.7, 0.5)},
                                   100.0);
    ExpectPts(pts, {{-3.5, 99.93}, {0.0, 100.0}, {3.0, 99.925}});
    EXPECT_EQ(SectionHalfWidth(pts), 10.0);
}

TEST(Rd3SectionPoints, StepKindsAndFurtherSegments) {
    // Width-height and plain steps: (val1, val2); a gradient: (val2, val1·val2).
    const auto pts = SectionPoints({}, {Seg(1, 2.0, 0.1), Seg(5, 0.5, -1.0), Seg(2, 0.5, 4.0)}, 10.0);
    ExpectPts(pts, {{0.0, 10.0}, {2.0, 10.1}, {2.5, 9.1}, {6.5, 11.1}});
    EXPECT_EQ(SectionHalfWidth(pts), 10.0);
}

TEST(Rd3SectionPoints, OffsetSegmentFirst) {
    // Width not 0: a mid-width point of undefined elevation instead of (0, z0).
    auto pts = SectionPoints({}, {Seg(0, 2.0, 0.5), Seg(0, 3.0, 0.0)}, 100.0);
    ASSERT_EQ(pts.size(), 4u);
    EXPECT_EQ(pts[0].x, 1.0);
    EXPECT_EQ(pts[0].y, vesk::kUndefined);
    EXPECT_EQ(pts[1], PNT_2D(2.0, 100.5));
    EXPECT_EQ(pts[2].x, 3.5);
    EXPECT_EQ(pts[2].y, vesk::kUndefined);
    EXPECT_EQ(pts[3], PNT_2D(5.0, 100.5));
    // Width 0: no first point, the step's end only.
    pts = SectionPoints({}, {Seg(0, 0.0, 0.3), Seg(2, 0.02, 4.0)}, 100.0);
    ExpectPts(pts, {{0.0, 100.3}, {4.0, 100.38}});
    // On the left the offsets are negated, the mid point too.
    pts = SectionPoints({Seg(0, 2.0, 0.5)}, {}, 100.0);
    ASSERT_EQ(pts.size(), 2u);
    EXPECT_EQ(pts[0], PNT_2D(-2.0, 100.5));
    EXPECT_EQ(pts[1].x, -1.0);
    EXPECT_EQ(pts[1].y, vesk::kUndefined);
}

TEST(Rd3SectionPoints, SlopesAndMarks) {
    // A slope segment first adds the axis point only; later it is skipped.
    auto pts = SectionPoints({}, {Seg(3, 0.7, 0.5), Seg(2, 0.1, 2.0), Seg(3, 0.7, 0.5)}, 5.0);
    ExpectPts(pts, {{0.0, 5.0}, {2.0, 5.2}});
    // A later mark segment repeats the last point (no duplicate test).
    pts = SectionPoints({}, {Seg(2, 0.1, 2.0), Seg(4, 9.0, 9.0)}, 5.0);
    ExpectPts(pts, {{0.0, 5.0}, {2.0, 5.2}, {2.0, 5.2}});
    // Marks on both sides first: the axis point once.
    pts = SectionPoints({Seg(4, 1.0, 1.0)}, {Seg(4, 1.0, 1.0)}, 5.0);
    ExpectPts(pts, {{0.0, 5.0}});
    EXPECT_EQ(SectionHalfWidth(pts), 0.0);
}

TEST(Rd3SectionPoints, HalfWidthRoundsUpToTens) {
    EXPECT_EQ(SectionHalfWidth({}), 10.0);
    EXPECT_EQ(SectionHalfWidth({{-25.0, 0.0}, {3.0, 0.0}}), 30.0);
    EXPECT_EQ(SectionHalfWidth({{-3.0, 0.0}, {30.0, 0.0}}), 30.0);
    EXPECT_EQ(SectionHalfWidth({{-3.0, 0.0}, {30.5, 0.0}}), 40.0);
    // Only the first and last points count.
    EXPECT_EQ(SectionHalfWidth({{-3.0, 0.0}, {90.0, 0.0}, {4.0, 0.0}}), 10.0);
}
