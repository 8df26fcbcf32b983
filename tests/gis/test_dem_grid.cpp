// The elevation model's grid and rasterisation without GDAL: cell centres
// against a barycentric interpolation computed here, nodata outside, the
// grid's edges on multiples of the cell, the default cell size.
#include <gtest/gtest.h>

#include <cmath>

#include "gis/dem_grid.h"
#include "host/dtm.h"

namespace {

using namespace roadx::gis;

// Barycentric interpolation at (x, y), or NaN outside the triangle.
double Bary(const PNT_3D& a, const PNT_3D& b, const PNT_3D& c, double x, double y) {
    const double d = (b.y - c.y) * (a.x - c.x) + (c.x - b.x) * (a.y - c.y);
    const double l1 = ((b.y - c.y) * (x - c.x) + (c.x - b.x) * (y - c.y)) / d;
    const double l2 = ((c.y - a.y) * (x - c.x) + (a.x - c.x) * (y - c.y)) / d;
    const double l3 = 1 - l1 - l2;
    if (l1 < 0 || l2 < 0 || l3 < 0) return NAN;
    return l1 * a.z + l2 * b.z + l3 * c.z;
}

TEST(DemGrid, CellsEqualBarycentricInterpolation) {
    CTris t;
    // Large coordinates, as in national grids; one triangle, one more apart.
    const PNT_3D a(2500000.3, 6700000.7, 10.0), b(2500040.1, 6700003.2, 17.5), c(2500011.9, 6700031.4, 3.25);
    const PNT_3D d(2500050.0, 6700030.0, 1.0), e(2500055.0, 6700030.0, 2.0), f(2500050.0, 6700035.0, 3.0);
    for (const PNT_3D& p : {a, b, c, d, e, f}) t.AddVert(p);
    t.AddTri(0, 1, 2);
    t.AddTri(3, 4, 5);
    t.AddTri(0, 1, 99);  // a corner that does not exist: skipped
    TDemGrid g;
    ASSERT_TRUE(PlanGrid(t, 0.5, g));
    EXPECT_DOUBLE_EQ(g.west, 2500000.0);
    EXPECT_DOUBLE_EQ(g.north, 6700035.0);
    EXPECT_EQ(g.cols, 110);
    EXPECT_EQ(g.rows, 69);  // down to 6700000.5, below the lowest corner
    std::vector<double> v;
    RasteriseTin(t, g, v);
    int inside = 0;
    for (int64_t r = 0; r < g.rows; ++r)
        for (int64_t col = 0; col < g.cols; ++col) {
            const double x = g.west + (col + 0.5) * g.cell, y = g.north - (r + 0.5) * g.cell;
            double want = Bary(a, b, c, x, y);
            if (std::isnan(want)) want = Bary(d, e, f, x, y);
            const double got = v[r * g.cols + col];
            if (std::isnan(want)) {
                EXPECT_EQ(got, kDemNoData) << r << " " << col;
            } else {
                ++inside;
                EXPECT_NEAR(got, want, 1e-9) << r << " " << col;
            }
        }
    EXPECT_GT(inside, 2000);
}

TEST(DemGrid, DefaultCellFromTriangleSize) {
    CTris t;
    for (const PNT_3D& p : {PNT_3D(0, 0, 0), PNT_3D(100, 0, 0), PNT_3D(100, 100, 0), PNT_3D(0, 100, 0)}) t.AddVert(p);
    t.AddTri(0, 1, 2);
    t.AddTri(0, 2, 3);
    // sqrt(2 · 10000 / 2) = 100, half of it 50.
    EXPECT_DOUBLE_EQ(DefaultCellSize(t), 50.0);
    CTris empty;
    EXPECT_EQ(DefaultCellSize(empty), 0.0);
    TDemGrid g;
    EXPECT_FALSE(PlanGrid(empty, 1.0, g));
}

TEST(DemGrid, DefaultCellGrowsToTheCellLimit) {
    CTris t;
    // Two tiny triangles 100 km apart: their size would ask for a grid of
    // billions of cells.
    for (const PNT_3D& p : {PNT_3D(0, 0, 0), PNT_3D(1, 0, 0), PNT_3D(0, 1, 0), PNT_3D(1e5, 1e5, 0),
                            PNT_3D(1e5 + 1, 1e5, 0), PNT_3D(1e5, 1e5 + 1, 0)})
        t.AddVert(p);
    t.AddTri(0, 1, 2);
    t.AddTri(3, 4, 5);
    const double cell = DefaultCellSize(t);
    TDemGrid g;
    ASSERT_TRUE(PlanGrid(t, cell, g));
    EXPECT_LE(g.Cells(), kMaxDemCells);
    EXPECT_EQ(cell, 20.0);  // 0.5 -> 1, 2, 5, 10, 20: 5001 x 5001 cells at 20 m
}

}  // namespace
