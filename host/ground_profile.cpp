#include "host/ground_profile.h"

#include <algorithm>
#include <cmath>

#include "host/dtm_grid.h"
#include "vesk/undefined.h"

namespace {

constexpr int kMaxChordsPerElem = 1000000;

// Distances along an element at which its chords start and end.
std::vector<double> ChordDistances(const CPlaniElem& e, double tol) {
    const double len = e.GetLength();
    if (!(len > 0) || !std::isfinite(len)) return {};
    int n = 1;
    if (e.GetType() != CPlaniElem::RETTIFILO) {
        const double r = e.GetMinRad();
        if (std::isfinite(r) && r > 0) {
            // Sagitta s²/(8R) <= tol.
            const double step = std::sqrt(8.0 * r * tol);
            n = static_cast<int>(std::min(std::ceil(len / step), double(kMaxChordsPerElem)));
        }
    }
    n = std::max(n, 1);
    std::vector<double> d(size_t(n) + 1);
    for (int i = 0; i <= n; ++i) d[size_t(i)] = len * i / n;
    return d;
}

// Builds the output: vertices in increasing abscissa, one undefined vertex
// per gap, no repeated vertex.
class CGroundOut {
public:
    void Add(double prog, double z) {
        if (!out_.empty() && vesk::IsDefined(out_.back().z) && out_.back().prog == prog) return;
        out_.push_back({prog, z});
        lastTri_ = nullptr;
    }
    // The part of one chord over one triangle. Inside a chord, two parts
    // over the same triangle lie on one straight line: the vertex between
    // them (a cut of the chord into grid-sized pieces) is dropped.
    void AddPart(double p0, double z0, double p1, double z1, const TTriPlane* tri, bool insideChord) {
        if (insideChord && tri == lastTri_ && !out_.empty() && out_.back().prog == p0 && out_.size() >= 2 &&
            vesk::IsDefined(out_[out_.size() - 2].z)) {
            out_.back() = {p1, z1};
            return;
        }
        Add(p0, z0);
        Add(p1, z1);
        lastTri_ = tri;
    }
    void Gap(double prog) {
        if (out_.empty() || vesk::IsDefined(out_.back().z)) out_.push_back({prog, vesk::kUndefined});
        lastTri_ = nullptr;
    }
    // A line that never meets the surface has no ground at all.
    std::vector<TGroundVrt> Take() {
        if (out_.size() == 1 && !vesk::IsDefined(out_[0].z)) out_.clear();
        return std::move(out_);
    }

private:
    std::vector<TGroundVrt> out_;
    const TTriPlane* lastTri_ = nullptr;  // the triangle of the last part added
};

// The part of the segment P(t) = a + t·(b - a), t in [0,1], inside a
// triangle: clipped by the three edge half-planes.
bool ClipToTriangle(const TTriPlane& t, double ax, double ay, double dx, double dy, double& t0, double& t1) {
    t0 = 0.0;
    t1 = 1.0;
    for (int k = 0; k < 3; ++k) {
        const int n = (k + 1) % 3;
        const double ex = t.x[n] - t.x[k], ey = t.y[n] - t.y[k];
        // f(t) = cross(e, P(t) - v_k) = f0 + t·fd, inside where f >= 0.
        const double f0 = ex * (ay - t.y[k]) - ey * (ax - t.x[k]);
        const double fd = ex * dy - ey * dx;
        if (fd == 0.0) {
            if (f0 < 0) return false;
            continue;
        }
        const double r = -f0 / fd;
        if (fd > 0) t0 = std::max(t0, r);
        else t1 = std::min(t1, r);
        if (t0 > t1) return false;
    }
    return true;
}

// One chord: from (ax, ay) at abscissa pa to (bx, by) at pb.
void SampleSegment(const CDtmGrid& grid, double ax, double ay, double pa, double bx, double by, double pb,
                   CGroundOut& out, std::vector<double>& cuts) {
    const double dx = bx - ax, dy = by - ay;
    const double len = std::hypot(dx, dy);
    // Pieces no longer than a cell, so each piece asks for a few cells only.
    const int pieces = std::max(1, static_cast<int>(std::min(std::ceil(len / grid.CellSize()), 1e7)));
    for (int p = 0; p < pieces; ++p) {
        const double s0 = double(p) / pieces, s1 = double(p + 1) / pieces;
        const double x0 = ax + dx * s0, y0 = ay + dy * s0, x1 = ax + dx * s1, y1 = ay + dy * s1;
        const auto& cand = grid.Candidates(std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1));
        cuts.clear();
        cuts.push_back(0.0);
        cuts.push_back(1.0);
        const double px = x1 - x0, py = y1 - y0;
        for (uint32_t i : cand) {
            double t0, t1;
            if (!ClipToTriangle(grid.Plane(i), x0, y0, px, py, t0, t1)) continue;
            cuts.push_back(t0);
            cuts.push_back(t1);
        }
        std::sort(cuts.begin(), cuts.end());
        cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
        for (size_t k = 0; k + 1 < cuts.size(); ++k) {
            const double u0 = cuts[k], u1 = cuts[k + 1];
            if (u1 - u0 < 1e-12) continue;
            const double um = 0.5 * (u0 + u1);
            const double mx = x0 + px * um, my = y0 + py * um;
            const TTriPlane* hit = nullptr;
            for (uint32_t i : cand)
                if (CDtmGrid::Contains(grid.Plane(i), mx, my)) {
                    hit = &grid.Plane(i);
                    break;
                }
            const double g0 = s0 + (s1 - s0) * u0, g1 = s0 + (s1 - s0) * u1;
            const double prog0 = pa + (pb - pa) * g0, prog1 = pa + (pb - pa) * g1;
            if (!hit) {
                out.Gap(prog0);
                continue;
            }
            out.AddPart(prog0, CDtmGrid::ZAt(*hit, x0 + px * u0, y0 + py * u0), prog1,
                        CDtmGrid::ZAt(*hit, x0 + px * u1, y0 + py * u1), hit, g0 > 0.0);
        }
    }
}

}  // namespace

std::vector<TGroundVrt> SampleGround(const std::vector<const CPlaniElem*>& elems, const CDtmGrid& grid,
                                     double chordTol) {
    CGroundOut out;
    if (grid.Empty()) return {};
    std::vector<double> cuts;
    for (const CPlaniElem* e : elems) {
        if (!e) continue;
        const std::vector<double> d = ChordDistances(*e, chordTol);
        PNT_2D a;
        for (size_t i = 0; i < d.size(); ++i) {
            PNT_2D b;
            e->GetPos(d[i], b);
            if (!std::isfinite(b.x) || !std::isfinite(b.y)) return out.Take();
            if (i > 0) SampleSegment(grid, a.x, a.y, e->GetProg() + d[i - 1], b.x, b.y, e->GetProg() + d[i], out, cuts);
            a = b;
        }
    }
    return out.Take();
}
