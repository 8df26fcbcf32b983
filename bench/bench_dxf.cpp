// Export of a one-million-triangle surface (1,000,000 3D faces) to DXF
// R2000 and R12 and to DWG R2000: time per export and the size of the file.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "cad/zedra_eng.h"

namespace {

// A 1000 x 500 grid of cells, two triangles each, with realistic
// coordinates (easting/northing in the millions, elevations with decimals).
void BuildSurface(CZedraEng& eng, int nx, int ny) {
    const uint64_t dtm = eng.AddDrawing(0, "DTM", true, false, false);
    auto z = [](int i, int j) { return 100.0 + 5.0 * std::sin(i * 0.013) + 3.0 * std::cos(j * 0.021) + i * 0.001; };
    for (int i = 0; i < nx; ++i)
        for (int j = 0; j < ny; ++j) {
            const double x0 = 1500000.0 + i * 2.5, y0 = 5000000.0 + j * 2.5;
            const roadx::cad::PNT_3D a(x0, y0, z(i, j)), b(x0 + 2.5, y0, z(i + 1, j));
            const roadx::cad::PNT_3D c(x0 + 2.5, y0 + 2.5, z(i + 1, j + 1)), d(x0, y0 + 2.5, z(i, j + 1));
            eng.Add3DFace({dtm}, a, b, c);
            eng.Add3DFace({dtm}, a, c, d);
        }
}

// Each run writes the whole file through the atomic writer (temporary file,
// fsync, rename), as `roadx convert` does.
void SaveBench(benchmark::State& state, bool dwg) {
    CZedraEng eng(0, nullptr, true);
    BuildSurface(eng, 1000, 500);
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("roadx_bench_dxf_" + std::to_string(getpid()) + (dwg ? ".dwg" : ".dxf")))
                                 .string();
    const auto ver = state.range(0) == 12 ? ZEDRA_DXFDWG_VER_R12 : ZEDRA_DXFDWG_VER_R2000;
    for (auto _ : state) {
        const int r = dwg ? eng.SaveFileDWG(path, false, false, false, false, false, ver, 0)
                          : eng.SaveFileDXF(path, false, false, false, false, false, ver, 0);
        if (r != 0) state.SkipWithError("save failed");
    }
    struct stat st {};
    stat(path.c_str(), &st);
    state.counters["faces"] = static_cast<double>(eng.GetNoEntities());
    state.counters["MB"] = static_cast<double>(st.st_size) / 1e6;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * st.st_size);
    std::remove(path.c_str());
}

void BM_Dxf1MFaces(benchmark::State& state) { SaveBench(state, false); }
void BM_Dwg1MFaces(benchmark::State& state) { SaveBench(state, true); }

}  // namespace

BENCHMARK(BM_Dxf1MFaces)->Arg(2000)->Arg(12)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Dwg1MFaces)->Arg(2000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
