// The elevation model's grid and its rasterisation, independent of GDAL:
// square cells aligned on multiples of the cell size, rows from north to
// south, each cell centre linearly interpolated in the triangle that holds
// it (triangle by triangle, over flat arrays).
#pragma once
#include <cstdint>
#include <vector>

class CTris;

namespace roadx::gis {

// Most cells an elevation model may have: 50 million cells of 8 bytes are
// 400 MB in memory.
inline constexpr double kMaxDemCells = 50e6;
// Cells no triangle covers.
inline constexpr double kDemNoData = -99999.0;

struct TDemGrid {
    double west = 0.0;   // x of the grid's left edge
    double north = 0.0;  // y of its top edge
    double cell = 0.0;
    int64_t cols = 0;
    int64_t rows = 0;
    double Cells() const { return static_cast<double>(cols) * static_cast<double>(rows); }
};

// The extent of the triangles that can be drawn (three valid corners with
// defined coordinates); false when there is none.
bool TinExtent(const CTris& tris, double& minX, double& minY, double& maxX, double& maxY);

// The default cell size: half the typical triangle size sqrt(2·area/n),
// taken down to 1, 2 or 5 times a power of ten, and grown by those steps
// until the grid stays within kMaxDemCells. 0 when there is no triangle.
double DefaultCellSize(const CTris& tris);

// The grid of a cell size over the triangles' extent, edges on multiples of
// the cell; false when there is nothing to cover. Cols and rows may exceed
// kMaxDemCells together; the caller checks Cells().
bool PlanGrid(const CTris& tris, double cell, TDemGrid& grid);

// Fills values (rows · cols, row 0 the northern one) with kDemNoData and
// then every cell whose centre lies in a triangle with the triangle's plane
// there. Where triangles overlap, the later one wins.
void RasteriseTin(const CTris& tris, const TDemGrid& grid, std::vector<double>& values);

}  // namespace roadx::gis
