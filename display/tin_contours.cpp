#include "display/tin_contours.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "display/dis_common.h"
#include "host/dtm.h"

namespace roadx::display {

namespace {

using vesk::geom::PNT_3D;

constexpr double kMaxLevelNumber = 1e15;

// One piece of a contour inside a triangle: its ends are on two edges.
struct TSeg {
    long long level;
    int32_t e[2][2];  // per end: the edge's vertex indices, lower first
};

uint64_t EdgeKey(const int32_t e[2]) {
    return (static_cast<uint64_t>(static_cast<uint32_t>(e[0])) << 32) | static_cast<uint32_t>(e[1]);
}

PNT_3D EdgePoint(const std::vector<PNT_3D>& v, const int32_t e[2], double z) {
    const PNT_3D& a = v[static_cast<size_t>(e[0])];
    const PNT_3D& b = v[static_cast<size_t>(e[1])];
    const double t = (z - a.z) / (b.z - a.z);
    return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), z};
}

// Levels a triangle meets: z with zmin < z <= zmax.
void LevelRange(double zmin, double zmax, double interval, long long& lo, long long& hi) {
    lo = static_cast<long long>(std::floor(zmin / interval));
    while (static_cast<double>(lo) * interval <= zmin) ++lo;
    while (static_cast<double>(lo - 1) * interval > zmin) --lo;
    hi = static_cast<long long>(std::floor(zmax / interval));
    while (static_cast<double>(hi) * interval > zmax) --hi;
    while (static_cast<double>(hi + 1) * interval <= zmax) ++hi;
}

void CollectSegments(const std::vector<PNT_3D>& v, const CTri& t, double interval, std::vector<TSeg>& out) {
    const int32_t idx[3] = {t.v[0], t.v[1], t.v[2]};
    double zmin = v[static_cast<size_t>(idx[0])].z, zmax = zmin;
    for (int i = 1; i < 3; ++i) {
        zmin = std::min(zmin, v[static_cast<size_t>(idx[i])].z);
        zmax = std::max(zmax, v[static_cast<size_t>(idx[i])].z);
    }
    long long lo = 0, hi = 0;
    LevelRange(zmin, zmax, interval, lo, hi);
    for (long long k = lo; k <= hi; ++k) {
        const double z = static_cast<double>(k) * interval;
        TSeg s{k, {{0, 0}, {0, 0}}};
        int ends = 0;
        for (int i = 0; i < 3 && ends < 2; ++i) {
            const int32_t a = idx[i], b = idx[(i + 1) % 3];
            const bool aAbove = v[static_cast<size_t>(a)].z >= z, bAbove = v[static_cast<size_t>(b)].z >= z;
            if (aAbove == bAbove) continue;
            s.e[ends][0] = std::min(a, b);
            s.e[ends][1] = std::max(a, b);
            ++ends;
        }
        if (ends == 2) out.push_back(s);
    }
}

// Joins the pieces of one level into lines.
void ChainLevel(const std::vector<PNT_3D>& v, const TSeg* segs, size_t n, double z, std::vector<TContour>& out) {
    // Edge -> the (up to two) pieces that end on it.
    std::unordered_map<uint64_t, std::pair<int64_t, int64_t>> byEdge;
    byEdge.reserve(n * 2);
    for (size_t i = 0; i < n; ++i)
        for (int e = 0; e < 2; ++e) {
            auto [it, fresh] = byEdge.try_emplace(EdgeKey(segs[i].e[e]), static_cast<int64_t>(i), -1);
            if (!fresh && it->second.second < 0 && it->second.first != static_cast<int64_t>(i))
                it->second.second = static_cast<int64_t>(i);
        }
    std::vector<char> used(n, 0);
    // From piece s leaving through end `end`: the next piece and the end it
    // enters by, or -1.
    auto next = [&](size_t s, int end, int& enterEnd) -> int64_t {
        const auto& p = byEdge[EdgeKey(segs[s].e[end])];
        const int64_t o = p.first == static_cast<int64_t>(s) ? p.second : p.first;
        if (o < 0 || used[static_cast<size_t>(o)]) return -1;
        enterEnd = EdgeKey(segs[o].e[0]) == EdgeKey(segs[s].e[end]) ? 0 : 1;
        return o;
    };
    for (size_t start = 0; start < n; ++start) {
        if (used[start]) continue;
        used[start] = 1;
        std::vector<const int32_t*> fwd{segs[start].e[0], segs[start].e[1]};
        // Forward from end 1.
        size_t cur = start;
        int out_end = 1, enter = 0;
        bool closed = false;
        for (int64_t o; (o = next(cur, out_end, enter)) >= 0;) {
            cur = static_cast<size_t>(o);
            used[cur] = 1;
            out_end = 1 - enter;
            fwd.push_back(segs[cur].e[out_end]);
        }
        if (EdgeKey(fwd.back()) == EdgeKey(fwd.front()) && fwd.size() > 3) {
            closed = true;
            fwd.pop_back();
        } else {
            // Backward from end 0 of the first piece.
            std::vector<const int32_t*> back;
            cur = start;
            out_end = 0;
            for (int64_t o; (o = next(cur, out_end, enter)) >= 0;) {
                cur = static_cast<size_t>(o);
                used[cur] = 1;
                out_end = 1 - enter;
                back.push_back(segs[cur].e[out_end]);
            }
            fwd.insert(fwd.begin(), back.rbegin(), back.rend());
        }
        TContour c;
        c.level = segs[start].level;
        c.z = z;
        c.pts.reserve(fwd.size());
        // A line through a vertex at its level meets that vertex from two
        // edges: the repeated point is dropped, and a line that only
        // touches the surface at one point is no line.
        for (const int32_t* e : fwd) {
            const PNT_3D p = EdgePoint(v, e, z);
            if (c.pts.empty() || !(c.pts.back() == p)) c.pts.push_back(p);
        }
        while (closed && c.pts.size() > 1 && c.pts.back() == c.pts.front()) c.pts.pop_back();
        c.closed = closed && c.pts.size() > 2;
        if (c.pts.size() >= 2) out.push_back(std::move(c));
    }
}

}  // namespace

bool ContourElevationRange(const CTris& tris, double& zmin, double& zmax) {
    const auto& v = tris.Verts();
    auto ok = [&](int32_t i) {
        if (i < 0 || static_cast<size_t>(i) >= v.size()) return false;
        const auto& p = v[static_cast<size_t>(i)];
        return IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z);
    };
    zmin = INFINITY;
    zmax = -INFINITY;
    for (const CTri& t : tris.Tris()) {
        if (!ok(t.v[0]) || !ok(t.v[1]) || !ok(t.v[2])) continue;
        for (int i = 0; i < 3; ++i) {
            zmin = std::min(zmin, v[static_cast<size_t>(t.v[i])].z);
            zmax = std::max(zmax, v[static_cast<size_t>(t.v[i])].z);
        }
    }
    return zmin <= zmax;
}

std::vector<TContour> ComputeContours(const CTris& tris, double interval, size_t maxLevels) {
    std::vector<TContour> out;
    if (!std::isfinite(interval) || interval <= 0.0) return out;
    const auto& v = tris.Verts();
    auto ok = [&](int32_t i) {
        if (i < 0 || static_cast<size_t>(i) >= v.size()) return false;
        const auto& p = v[static_cast<size_t>(i)];
        return IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z);
    };
    double zmin = 0, zmax = 0;
    ContourElevationRange(tris, zmin, zmax);
    if (!(zmin <= zmax) || (zmax - zmin) / interval > static_cast<double>(maxLevels)) return out;
    // Level numbers must fit the integers they are counted in.
    if (std::fabs(zmin / interval) > kMaxLevelNumber || std::fabs(zmax / interval) > kMaxLevelNumber) return out;
    std::vector<TSeg> segs;
    for (const CTri& t : tris.Tris())
        if (ok(t.v[0]) && ok(t.v[1]) && ok(t.v[2])) CollectSegments(v, t, interval, segs);
    std::stable_sort(segs.begin(), segs.end(), [](const TSeg& a, const TSeg& b) { return a.level < b.level; });
    for (size_t i = 0; i < segs.size();) {
        size_t j = i;
        while (j < segs.size() && segs[j].level == segs[i].level) ++j;
        ChainLevel(v, segs.data() + i, j - i, static_cast<double>(segs[i].level) * interval, out);
        i = j;
    }
    return out;
}

}  // namespace roadx::display
