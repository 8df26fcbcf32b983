#include "host/dtm_grid.h"

#include <algorithm>
#include <cmath>

#include "host/dtm.h"
#include "vesk/undefined.h"

namespace {

bool MakePlane(const PNT_3D& p0, const PNT_3D& p1, const PNT_3D& p2, TTriPlane& t) {
    for (const PNT_3D* p : {&p0, &p1, &p2})
        if (!vesk::IsDefined(p->x) || !vesk::IsDefined(p->y) || !vesk::IsDefined(p->z) || !std::isfinite(p->x) ||
            !std::isfinite(p->y) || !std::isfinite(p->z) || p->x < -vesk::kUndefinedLimit ||
            p->y < -vesk::kUndefinedLimit)
            return false;
    const double ux = p1.x - p0.x, uy = p1.y - p0.y, vx = p2.x - p0.x, vy = p2.y - p0.y;
    const double det = ux * vy - uy * vx;
    if (!(std::fabs(det) > 0.0) || !std::isfinite(det)) return false;
    // The plane through the three vertices: z = a + b x + c y.
    const double uz = p1.z - p0.z, vz = p2.z - p0.z;
    t.b = (uz * vy - vz * uy) / det;
    t.c = (ux * vz - vx * uz) / det;
    t.a = p0.z - t.b * p0.x - t.c * p0.y;
    // Counter-clockwise corners, so that inside is left of every edge.
    const PNT_3D* q[3] = {&p0, &p1, &p2};
    if (det < 0) std::swap(q[1], q[2]);
    for (int k = 0; k < 3; ++k) {
        t.x[k] = q[k]->x;
        t.y[k] = q[k]->y;
    }
    return std::isfinite(t.a) && std::isfinite(t.b) && std::isfinite(t.c);
}

}  // namespace

CDtmGrid::CDtmGrid(const CTris& tris) {
    const auto& verts = tris.Verts();
    const auto& faces = tris.Tris();
    planes_.reserve(faces.size());
    double xmin = HUGE_VAL, ymin = HUGE_VAL, xmax = -HUGE_VAL, ymax = -HUGE_VAL;
    const auto nv = static_cast<int64_t>(verts.size());
    for (const CTri& f : faces) {
        if (f.v[0] < 0 || f.v[1] < 0 || f.v[2] < 0 || f.v[0] >= nv || f.v[1] >= nv || f.v[2] >= nv) continue;
        TTriPlane t;
        if (!MakePlane(verts[size_t(f.v[0])], verts[size_t(f.v[1])], verts[size_t(f.v[2])], t)) continue;
        planes_.push_back(t);
        for (int k = 0; k < 3; ++k) {
            xmin = std::min(xmin, t.x[k]);
            xmax = std::max(xmax, t.x[k]);
            ymin = std::min(ymin, t.y[k]);
            ymax = std::max(ymax, t.y[k]);
        }
    }
    if (planes_.empty()) return;
    // About two triangles per cell; the grid never exceeds 4096 cells a side.
    const double w = std::max(xmax - xmin, 1e-9), h = std::max(ymax - ymin, 1e-9);
    const double cells = std::max(1.0, planes_.size() / 2.0);
    cell_ = std::max(std::sqrt(w * h / cells), std::max(w, h) / 4096.0);
    x0_ = xmin;
    y0_ = ymin;
    cols_ = std::clamp(static_cast<int>(w / cell_) + 1, 1, 4097);
    rows_ = std::clamp(static_cast<int>(h / cell_) + 1, 1, 4097);
    cellStart_.assign(size_t(cols_) * size_t(rows_) + 1, 0);
    auto forCells = [&](const TTriPlane& t, auto&& fn) {
        const int cx0 = CellX(std::min({t.x[0], t.x[1], t.x[2]})), cx1 = CellX(std::max({t.x[0], t.x[1], t.x[2]}));
        const int cy0 = CellY(std::min({t.y[0], t.y[1], t.y[2]})), cy1 = CellY(std::max({t.y[0], t.y[1], t.y[2]}));
        for (int cy = cy0; cy <= cy1; ++cy)
            for (int cx = cx0; cx <= cx1; ++cx) fn(size_t(cy) * size_t(cols_) + size_t(cx));
    };
    for (const TTriPlane& t : planes_) forCells(t, [&](size_t c) { ++cellStart_[c + 1]; });
    for (size_t c = 1; c < cellStart_.size(); ++c) cellStart_[c] += cellStart_[c - 1];
    cellTris_.resize(cellStart_.back());
    std::vector<uint32_t> fill(cellStart_.begin(), cellStart_.end() - 1);
    for (uint32_t i = 0; i < planes_.size(); ++i) forCells(planes_[i], [&](size_t c) { cellTris_[fill[c]++] = i; });
    stamp_.assign(planes_.size(), 0);
}

int CDtmGrid::CellX(double x) const {
    const double c = std::floor((x - x0_) / cell_);
    return static_cast<int>(std::clamp(c, 0.0, double(cols_ - 1)));
}

int CDtmGrid::CellY(double y) const {
    const double c = std::floor((y - y0_) / cell_);
    return static_cast<int>(std::clamp(c, 0.0, double(rows_ - 1)));
}

const std::vector<uint32_t>& CDtmGrid::Candidates(double xmin, double ymin, double xmax, double ymax) const {
    found_.clear();
    if (Empty() || !(xmax >= x0_ && ymax >= y0_ && xmin <= x0_ + cols_ * cell_ && ymin <= y0_ + rows_ * cell_))
        return found_;
    if (++query_ == 0) {  // the stamps wrapped: start them again
        std::fill(stamp_.begin(), stamp_.end(), 0);
        query_ = 1;
    }
    const int cx0 = CellX(xmin), cx1 = CellX(xmax), cy0 = CellY(ymin), cy1 = CellY(ymax);
    for (int cy = cy0; cy <= cy1; ++cy)
        for (int cx = cx0; cx <= cx1; ++cx) {
            const size_t c = size_t(cy) * size_t(cols_) + size_t(cx);
            for (uint32_t k = cellStart_[c]; k < cellStart_[c + 1]; ++k) {
                const uint32_t t = cellTris_[k];
                if (stamp_[t] == query_) continue;
                stamp_[t] = query_;
                found_.push_back(t);
            }
        }
    return found_;
}

bool CDtmGrid::Contains(const TTriPlane& t, double x, double y) {
    for (int k = 0; k < 3; ++k) {
        const int n = (k + 1) % 3;
        const double ex = t.x[n] - t.x[k], ey = t.y[n] - t.y[k];
        const double cross = ex * (y - t.y[k]) - ey * (x - t.x[k]);
        // A nanometre of slack, so that a point on an edge shared by two
        // triangles belongs to both whatever the rounding.
        if (cross < -1e-9 * std::hypot(ex, ey)) return false;
    }
    return true;
}

bool CDtmGrid::ElevationAt(double x, double y, double& z) const {
    for (uint32_t i : Candidates(x, y, x, y))
        if (Contains(planes_[i], x, y)) {
            z = ZAt(planes_[i], x, y);
            return true;
        }
    return false;
}
