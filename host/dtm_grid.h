// A flat grid over the triangles of a DTM project, for point and segment
// queries on the terrain: each cell lists the triangles whose bounding box
// overlaps it, in one index array (cell offsets + triangle numbers), so a
// million triangles cost two arrays and no per-triangle allocation.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

class CTris;

// The plane of one triangle, ready for the queries: z = a + b·x + c·y, and
// its three edge functions oriented so that inside is >= 0.
struct TTriPlane {
    double x[3], y[3];
    double a, b, c;
};

class CDtmGrid {
public:
    // Indexes every triangle whose three vertices exist and are defined and
    // whose plan area is not zero.
    explicit CDtmGrid(const CTris& tris);

    bool Empty() const { return cols_ == 0; }
    size_t NumIndexed() const { return planes_.size(); }

    // Triangles (indices into Plane) of the cells that the box overlaps, each
    // once. The returned reference stays valid until the next call.
    const std::vector<uint32_t>& Candidates(double xmin, double ymin, double xmax, double ymax) const;
    const TTriPlane& Plane(uint32_t i) const { return planes_[i]; }
    double CellSize() const { return cell_; }

    // Elevation of the ground at a point; false outside every triangle.
    bool ElevationAt(double x, double y, double& z) const;

    // Whether a point lies in (or on the border of) a triangle.
    static bool Contains(const TTriPlane& t, double x, double y);
    static double ZAt(const TTriPlane& t, double x, double y) { return t.a + t.b * x + t.c * y; }

private:
    int CellX(double x) const;
    int CellY(double y) const;

    double x0_ = 0.0, y0_ = 0.0, cell_ = 1.0;
    int cols_ = 0, rows_ = 0;
    std::vector<TTriPlane> planes_;
    std::vector<uint32_t> cellStart_;  // cols_·rows_ + 1 offsets into cellTris_
    std::vector<uint32_t> cellTris_;
    mutable std::vector<uint32_t> stamp_;  // last query that saw each triangle
    mutable uint32_t query_ = 0;
    mutable std::vector<uint32_t> found_;
};
