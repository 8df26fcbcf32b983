// LandXML export of a large surface: 1 million points and 2 million faces
// written to a file. Reports the output rate and how much the process grew
// while writing (the surface is streamed, so only the buffers should count).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "host/document.h"
#include "landxml_export/export_landxml.h"

namespace {

constexpr int kGrid = 1000;  // kGrid² points, 2·(kGrid-1)² faces

// A gently rolling grid in map coordinates, with millimetre noise so that
// the numbers have all their digits.
void BuildSurface(CVantriDoc& doc) {
    CDtmPrj* prj = doc.GetLibDtm()->AddPrj("grid");
    CTris* tris = prj->GetTris();
    tris->Reserve(static_cast<size_t>(kGrid) * kGrid, 2u * (kGrid - 1) * (kGrid - 1));
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> mm(0.0, 0.999);
    for (int r = 0; r < kGrid; ++r)
        for (int c = 0; c < kGrid; ++c)
            tris->AddVert({512000.0 + 2.5 * c + mm(rng), 5034000.0 + 2.5 * r + mm(rng), 120.0 + 0.01 * (r + c) + mm(rng)});
    for (int r = 0; r + 1 < kGrid; ++r)
        for (int c = 0; c + 1 < kGrid; ++c) {
            const int a = r * kGrid + c;
            tris->AddTri(a, a + 1, a + kGrid + 1);
            tris->AddTri(a, a + kGrid + 1, a + kGrid);
        }
}

long StatusKb(const char* key) {
    std::ifstream in("/proc/self/status");
    std::string line;
    const std::string k = std::string(key) + ":";
    while (std::getline(in, line))
        if (line.compare(0, k.size(), k) == 0) return std::stol(line.substr(k.size()));
    return -1;
}

// Resets the peak resident size so that the next peak is this export's.
void ResetPeak() {
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5";
}

void Export(benchmark::State& state, const char* path) {
    CVantriDoc doc;
    BuildSurface(doc);
    long grewKb = 0;
    size_t bytes = 0;
    for (auto _ : state) {
        ResetPeak();
        const long before = StatusKb("VmRSS");
        const TExchangeStatus st = roadx::landxml::WriteLandXMLFileStatus({}, *doc.GetLibCmp(), {}, *doc.GetLibGps(), {},
                                                          *doc.GetLibPnt(), {}, {doc.GetLibDtm()->GetPrj(0)}, path);
        if (!st.ok()) state.SkipWithError(st.message.c_str());
        grewKb = std::max(grewKb, StatusKb("VmHWM") - before);
        FILE* f = std::fopen(path, "rb");
        if (f) {
            std::fseek(f, 0, SEEK_END);
            bytes = static_cast<size_t>(std::ftell(f));
            std::fclose(f);
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["rss_growth_kB"] = static_cast<double>(grewKb);
}

void BM_ExportSurfaceToFile(benchmark::State& state) {
    const std::string path =
        (std::filesystem::temp_directory_path() /
         ("roadx_bench_landxml_export_" + std::to_string(getpid()) + ".xml"))
            .string();
    Export(state, path.c_str());
    std::remove(path.c_str());
}
// Wall-clock rate, and the rate on the process's own CPU time (user and
// system, so the writes are counted) for a machine busy with other work.
BENCHMARK(BM_ExportSurfaceToFile)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);
BENCHMARK(BM_ExportSurfaceToFile)->Unit(benchmark::kMillisecond)->Iterations(5);

// The same without the file system's cost: the formatting and buffering
// alone, the rate taken on the size of the file the first run writes.
void BM_ExportSurfaceToDevNull(benchmark::State& state) {
    CVantriDoc doc;
    BuildSurface(doc);
    const std::string sizing =
        (std::filesystem::temp_directory_path() /
         ("roadx_bench_landxml_size_" + std::to_string(getpid()) + ".xml"))
            .string();
    roadx::landxml::WriteLandXMLFileStatus({}, *doc.GetLibCmp(), {}, *doc.GetLibGps(), {}, *doc.GetLibPnt(), {},
                           {doc.GetLibDtm()->GetPrj(0)}, sizing.c_str());
    std::error_code ec;
    const auto bytes = std::filesystem::file_size(sizing, ec);
    std::remove(sizing.c_str());
    for (auto _ : state) {
        const TExchangeStatus st = roadx::landxml::WriteLandXMLFileStatus({}, *doc.GetLibCmp(), {}, *doc.GetLibGps(), {},
                                                          *doc.GetLibPnt(), {}, {doc.GetLibDtm()->GetPrj(0)},
                                                          "/dev/null");
        if (!st.ok()) state.SkipWithError(st.message.c_str());
    }
    if (!ec) state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
}
BENCHMARK(BM_ExportSurfaceToDevNull)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);
BENCHMARK(BM_ExportSurfaceToDevNull)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
