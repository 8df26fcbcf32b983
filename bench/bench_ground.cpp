// The ground under a road: the grid over a million triangles, and the exact
// ground profile of a 10 km road (straights, arcs and clothoids) through it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "host/dtm.h"
#include "host/ground_profile.h"
#include "host/plani_elem.h"

namespace {

// 708 x 708 vertices 15 m apart: 1,000,000 triangles over 10.6 km square.
std::unique_ptr<CTris> BigTin() {
    constexpr int n = 708;
    constexpr double step = 15.0;
    auto t = std::make_unique<CTris>();
    t->Reserve(size_t(n) * n, size_t(n - 1) * (n - 1) * 2);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            const double x = i * step, y = j * step;
            t->AddVert(PNT_3D{x, y, 100 + 10 * std::sin(x / 400) * std::cos(y / 300)});
        }
    for (int j = 0; j + 1 < n; ++j)
        for (int i = 0; i + 1 < n; ++i) {
            const int a = j * n + i;
            t->AddTri(a, a + 1, a + n + 1);
            t->AddTri(a, a + n + 1, a + n);
        }
    return t;
}

// About 10 km: repeated straight, clothoid, arc, clothoid, straight, turning
// left then right, from the south-west corner towards the north-east.
struct TRoad {
    std::vector<CPlaniElem*> elems;
    ~TRoad() {
        for (CPlaniElem* e : elems) e->SubReference();
    }
    void Add(CPlaniElem* e) {
        elems.push_back(e);
        prog += e->GetLength();
        at = e->GetEndPnt();
        e->GetTg(e->GetLength(), dir);
    }
    double prog = 0.0;
    PNT_2D at{200.0, 200.0};
    VECTOR_2D dir{std::sqrt(0.5), std::sqrt(0.5)};
};

std::unique_ptr<TRoad> TenKmRoad() {
    auto r = std::make_unique<TRoad>();
    bool ccw = true;
    while (r->prog < 10000.0) {
        const double R = 600.0, L = 80.0, A = std::sqrt(R * L);
        r->Add(new CRettifiloPlaniElem(r->prog, r->at, r->dir, 400.0));
        r->Add(new CClotPlaniElem(r->prog, r->at, r->dir, 1.0, A, R, ccw, true));
        r->Add(new CArcPlaniElem(r->prog, r->at, r->dir, R, 0.3, ccw));
        r->Add(new CClotPlaniElem(r->prog, r->at, r->dir, 1.0, A, R, ccw, false));
        ccw = !ccw;
    }
    return r;
}

void BM_GridBuild(benchmark::State& state) {
    const auto tin = BigTin();
    for (auto _ : state) {
        CDtmGrid grid(*tin);
        benchmark::DoNotOptimize(grid.NumIndexed());
    }
}
BENCHMARK(BM_GridBuild)->Unit(benchmark::kMillisecond);

void BM_GroundProfile10km(benchmark::State& state) {
    const auto tin = BigTin();
    const CDtmGrid grid(*tin);
    const auto road = TenKmRoad();
    const std::vector<const CPlaniElem*> elems(road->elems.begin(), road->elems.end());
    size_t n = 0;
    for (auto _ : state) {
        const auto g = SampleGround(elems, grid);
        n = g.size();
        benchmark::DoNotOptimize(g.data());
    }
    state.counters["vertices"] = double(n);
    state.counters["road_m"] = road->prog;
}
BENCHMARK(BM_GroundProfile10km)->Unit(benchmark::kMillisecond);

// What Recalc costs the first time: the grid, then the profile.
void BM_GridAndProfile10km(benchmark::State& state) {
    const auto tin = BigTin();
    const auto road = TenKmRoad();
    const std::vector<const CPlaniElem*> elems(road->elems.begin(), road->elems.end());
    for (auto _ : state) {
        CDtmGrid grid(*tin);
        benchmark::DoNotOptimize(SampleGround(elems, grid).size());
    }
}
BENCHMARK(BM_GridAndProfile10km)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
