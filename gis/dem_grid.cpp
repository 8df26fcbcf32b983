#include "gis/dem_grid.h"

#include <algorithm>
#include <cmath>

#include "host/dtm.h"
#include "vesk/undefined.h"

namespace roadx::gis {

namespace {

bool Finite(double v) { return std::isfinite(v) && vesk::IsDefined(v); }

// The three corners of a triangle that can be drawn.
bool Corners(const CTris& t, const CTri& tri, const PNT_3D*& a, const PNT_3D*& b, const PNT_3D*& c) {
    const std::vector<PNT_3D>& v = t.Verts();
    const int64_t n = static_cast<int64_t>(v.size());
    for (int k = 0; k < 3; ++k)
        if (tri.v[k] < 0 || tri.v[k] >= n) return false;
    a = &v[tri.v[0]];
    b = &v[tri.v[1]];
    c = &v[tri.v[2]];
    for (const PNT_3D* p : {a, b, c})
        if (!Finite(p->x) || !Finite(p->y) || !Finite(p->z)) return false;
    return true;
}

// 1, 2 or 5 times a power of ten, at most x.
double NiceFloor(double x) {
    const double p = std::pow(10.0, std::floor(std::log10(x)));
    for (double m : {5.0, 2.0, 1.0})
        if (m * p <= x) return m * p;
    return p;
}

double NiceNext(double x) {
    const double p = std::pow(10.0, std::floor(std::log10(x) + 1e-9));
    const double m = x / p;
    return m < 1.5 ? 2 * p : m < 3.5 ? 5 * p : 10 * p;
}

}  // namespace

bool TinExtent(const CTris& tris, double& minX, double& minY, double& maxX, double& maxY) {
    minX = minY = INFINITY;
    maxX = maxY = -INFINITY;
    const PNT_3D *a, *b, *c;
    for (const CTri& tri : tris.Tris()) {
        if (!Corners(tris, tri, a, b, c)) continue;
        for (const PNT_3D* p : {a, b, c}) {
            minX = std::min(minX, p->x);
            maxX = std::max(maxX, p->x);
            minY = std::min(minY, p->y);
            maxY = std::max(maxY, p->y);
        }
    }
    return minX <= maxX;
}

double DefaultCellSize(const CTris& tris) {
    double area = 0.0;
    double n = 0.0;
    const PNT_3D *a, *b, *c;
    for (const CTri& tri : tris.Tris()) {
        if (!Corners(tris, tri, a, b, c)) continue;
        area += 0.5 * std::fabs((b->x - a->x) * (c->y - a->y) - (c->x - a->x) * (b->y - a->y));
        n += 1.0;
    }
    if (n == 0.0 || !(area > 0.0) || !std::isfinite(area)) return 0.0;
    double cell = NiceFloor(0.5 * std::sqrt(2.0 * area / n));
    TDemGrid g;
    while (PlanGrid(tris, cell, g) && g.Cells() > kMaxDemCells) cell = NiceNext(cell);
    return cell;
}

bool PlanGrid(const CTris& tris, double cell, TDemGrid& grid) {
    double minX, minY, maxX, maxY;
    if (!(cell > 0.0) || !std::isfinite(cell) || !TinExtent(tris, minX, minY, maxX, maxY)) return false;
    grid.cell = cell;
    grid.west = std::floor(minX / cell) * cell;
    grid.north = std::ceil(maxY / cell) * cell;
    const double cols = std::max(1.0, std::ceil((maxX - grid.west) / cell));
    const double rows = std::max(1.0, std::ceil((grid.north - minY) / cell));
    // Beyond this the grid is refused by its cell count anyway.
    constexpr double kHuge = 4e18;
    grid.cols = static_cast<int64_t>(std::min(cols, kHuge));
    grid.rows = static_cast<int64_t>(std::min(rows, kHuge));
    return std::isfinite(cols) && std::isfinite(rows);
}

namespace {

// floor and ceil to integers for values well inside the int64 range (the
// callers' values lie within the grid, give or take a cell); cheaper than
// the library calls on the baseline instruction set.
inline int64_t FloorI(double x) {
    const int64_t i = static_cast<int64_t>(x);
    return i - (x < static_cast<double>(i));
}
inline int64_t CeilI(double x) {
    const int64_t i = static_cast<int64_t>(x);
    return i + (x > static_cast<double>(i));
}

// One triangle into the grid. Its corners sorted from north to south
// (top, mid, low) give, for each row, the long edge top-low on one side and
// top-mid or mid-low on the other.
void RasteriseTriangle(const PNT_3D* a, const PNT_3D* b, const PNT_3D* c, const TDemGrid& g, double inv,
                       double* values) {
    // The plane through the corners, relative to a corner (large
    // coordinates lose nothing): z = top.z + gx·(x - top.x) + gy·(y - top.y).
    const double ux = b->x - a->x, uy = b->y - a->y, uz = b->z - a->z;
    const double vx = c->x - a->x, vy = c->y - a->y, vz = c->z - a->z;
    const double det = ux * vy - vx * uy;
    if (det == 0.0 || !std::isfinite(det)) return;
    const double inverse = 1.0 / det;
    const double gx = (uz * vy - vz * uy) * inverse;
    const double gy = (ux * vz - vx * uz) * inverse;
    if (a->y < b->y) std::swap(a, b);
    if (b->y < c->y) std::swap(b, c);
    if (a->y < b->y) std::swap(a, b);
    const PNT_3D& top = *a;
    const PNT_3D& mid = *b;
    const PNT_3D& low = *c;
    // Slopes dx/dy of the three edges (a horizontal edge is never used as a
    // slope: its rows are covered by the other two).
    const double sLong = (low.x - top.x) / (low.y - top.y);
    const double sUpper = top.y != mid.y ? (mid.x - top.x) / (mid.y - top.y) : 0.0;
    const double sLower = mid.y != low.y ? (low.x - mid.x) / (low.y - mid.y) : 0.0;
    // Rows whose centre line y = north - (r + 0.5)·cell meets the triangle.
    const int64_t r0 = std::max<int64_t>(0, CeilI((g.north - top.y) * inv - 0.5));
    const int64_t r1 = std::min<int64_t>(g.rows - 1, FloorI((g.north - low.y) * inv - 0.5));
    for (int64_t r = r0; r <= r1; ++r) {
        const double y = g.north - (static_cast<double>(r) + 0.5) * g.cell;
        const double xa = top.x + (y - top.y) * sLong;
        // On a horizontal edge (y equal to both its ends) the span runs to mid.
        const double xb = y >= mid.y ? (top.y != mid.y ? top.x + (y - top.y) * sUpper : mid.x)
                                     : (mid.y != low.y ? mid.x + (y - mid.y) * sLower : mid.x);
        const double xl = std::min(xa, xb), xr = std::max(xa, xb);
        const int64_t c0 = std::max<int64_t>(0, CeilI((xl - g.west) * inv - 0.5));
        const int64_t c1 = std::min<int64_t>(g.cols - 1, FloorI((xr - g.west) * inv - 0.5));
        double* row = values + r * g.cols;
        const double base = top.z + gy * (y - top.y);
        const double dx0 = g.west + 0.5 * g.cell - top.x;  // x of column 0's centre, from top
        for (int64_t col = c0; col <= c1; ++col) row[col] = base + gx * (dx0 + static_cast<double>(col) * g.cell);
    }
}

}  // namespace

void RasteriseTin(const CTris& tris, const TDemGrid& g, std::vector<double>& values) {
    values.assign(static_cast<size_t>(g.cols * g.rows), kDemNoData);
    const double inv = 1.0 / g.cell;
    // Each vertex serves about six triangles: whether it is usable is
    // decided once, not at every triangle (the same rule as Corners).
    const std::vector<PNT_3D>& v = tris.Verts();
    std::vector<unsigned char> usable(v.size());
    for (size_t i = 0; i < v.size(); ++i) usable[i] = Finite(v[i].x) && Finite(v[i].y) && Finite(v[i].z);
    const int64_t n = static_cast<int64_t>(v.size());
    for (const CTri& tri : tris.Tris()) {
        const int64_t i = tri.v[0], j = tri.v[1], k = tri.v[2];
        if (i < 0 || j < 0 || k < 0 || i >= n || j >= n || k >= n) continue;
        if (!usable[i] || !usable[j] || !usable[k]) continue;
        RasteriseTriangle(&v[i], &v[j], &v[k], g, inv, values.data());
    }
}

}  // namespace roadx::gis
