// The elevation model of a surface of one million triangles (a 708 x 708
// vertex grid, 2.5 m apart, with noise): the rasterisation alone at several
// cell sizes, counted in grid cells per second, and the whole GeoTIFF
// written through GDAL.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "gis/dem_grid.h"
#include "gis/gis_export.h"
#include "host/document.h"

namespace {

constexpr int kGrid = 708;  // 2·707² = 999,698 triangles

void BuildSurface(CVantriDoc& doc) {
    CTris* t = doc.GetLibDtm()->AddPrj("grid")->GetTris();
    std::mt19937 rng(16);
    std::uniform_real_distribution<double> noise(-0.4, 0.4);
    for (int r = 0; r < kGrid; ++r)
        for (int c = 0; c < kGrid; ++c)
            t->AddVert({2500000.0 + 2.5 * c + noise(rng), 6700000.0 + 2.5 * r + noise(rng),
                        50.0 + 0.02 * r + 0.01 * c + noise(rng)});
    for (int r = 0; r + 1 < kGrid; ++r)
        for (int c = 0; c + 1 < kGrid; ++c) {
            const int a = r * kGrid + c;
            t->AddTri(a, a + 1, a + kGrid + 1);
            t->AddTri(a, a + kGrid + 1, a + kGrid);
        }
}

CVantriDoc& Doc() {
    static CVantriDoc* doc = [] {
        auto* d = new CVantriDoc;
        BuildSurface(*d);
        return d;
    }();
    return *doc;
}

// Cell sizes in centimetres: the default (1 m here), and finer.
void BM_Rasterise(benchmark::State& state) {
    const CTris& t = *Doc().GetLibDtm()->GetPrj(0)->GetTris();
    const double cell = state.range(0) / 100.0;
    roadx::gis::TDemGrid g;
    roadx::gis::PlanGrid(t, cell, g);
    std::vector<double> v;
    for (auto _ : state) {
        roadx::gis::RasteriseTin(t, g, v);
        benchmark::DoNotOptimize(v.data());
    }
    state.counters["cells"] = g.Cells();
    state.counters["cells_per_s"] = benchmark::Counter(g.Cells() * state.iterations(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Rasterise)->Arg(100)->Arg(50)->Arg(25)->Unit(benchmark::kMillisecond);

void BM_GeoTiff(benchmark::State& state) {
    const std::string path = std::filesystem::temp_directory_path() / ("roadx_bench_dem_" + std::to_string(getpid()) + ".tif");
    roadx::gis::TGisRequest r;
    r.path = path;
    r.crs = "EPSG:3878";
    r.cell = state.range(0) / 100.0;
    for (auto _ : state) {
        const TExchangeStatus st = roadx::gis::ExportElevationModelStatus(Doc(), r);
        if (!st.ok()) state.SkipWithError(st.message.c_str());
    }
    roadx::gis::TDemGrid g;
    roadx::gis::PlanGrid(*Doc().GetLibDtm()->GetPrj(0)->GetTris(), r.cell, g);
    state.counters["cells_per_s"] = benchmark::Counter(g.Cells() * state.iterations(), benchmark::Counter::kIsRate);
    std::filesystem::remove(path);
}
BENCHMARK(BM_GeoTiff)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace

BENCHMARK_MAIN();
