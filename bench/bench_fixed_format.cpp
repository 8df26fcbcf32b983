// Number formatting for the writers: snprintf against the to_chars based
// formatting, per number and through the buffered writer, on the values a
// LandXML file is made of (coordinates, elevations, the undefined 1.7e200).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <vector>

#include "vesk/fixed_format.h"
#include "vesk/out_buffer.h"

namespace {

std::vector<double> Coordinates() {
    std::mt19937_64 rng(1);
    std::uniform_real_distribution<double> d(-5e6, 5e6);
    std::vector<double> v(4096);
    for (auto& x : v) x = d(rng);
    return v;
}

std::vector<int> Ids() {
    std::mt19937 rng(2);
    std::uniform_int_distribution<int> d(0, 5000000);
    std::vector<int> v(4096);
    for (auto& x : v) x = d(rng);
    return v;
}

void BM_SnprintfF6(benchmark::State& state) {
    const auto v = Coordinates();
    char buf[400];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, "%f", v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_SnprintfF6);

void BM_FormatF6(benchmark::State& state) {
    const auto v = Coordinates();
    char buf[vesk::kMaxFixedChars];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vesk::FormatF6(buf, v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FormatF6);

void BM_SnprintfF9(benchmark::State& state) {
    const auto v = Coordinates();
    char buf[400];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, "%.9f", v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_SnprintfF9);

void BM_FormatF9(benchmark::State& state) {
    const auto v = Coordinates();
    char buf[vesk::kMaxFixedChars];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vesk::FormatF9(buf, v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FormatF9);

// The undefined value prints 201 integer digits.
void BM_SnprintfUndefined(benchmark::State& state) {
    char buf[400];
    double u = 1.7e200;
    for (auto _ : state) {
        benchmark::DoNotOptimize(u);
        benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, "%f", u));
    }
}
BENCHMARK(BM_SnprintfUndefined);

void BM_FormatUndefined(benchmark::State& state) {
    char buf[vesk::kMaxFixedChars];
    double u = 1.7e200;
    for (auto _ : state) {
        benchmark::DoNotOptimize(u);
        benchmark::DoNotOptimize(vesk::FormatF6(buf, u));
    }
}
BENCHMARK(BM_FormatUndefined);

void BM_SnprintfInt(benchmark::State& state) {
    const auto v = Ids();
    char buf[32];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, "%d", v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_SnprintfInt);

void BM_FormatInt(benchmark::State& state) {
    const auto v = Ids();
    char buf[vesk::kMaxIntChars];
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vesk::FormatInt(buf, v[i++ & 4095]));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FormatInt);

// One surface point line "<P id="n">northing easting elevation</P>" per
// iteration, written to /dev/null through stdio and through the writer.
void BM_FprintfPointLine(benchmark::State& state) {
    const auto v = Coordinates();
    const auto ids = Ids();
    FILE* f = std::fopen("/dev/null", "w");
    size_t i = 0;
    for (auto _ : state) {
        const size_t k = i++ & 4095;
        std::fprintf(f, "<P id=\"%d\">%.9f %.9f %f</P>\n", ids[k], v[k], v[(k + 1) & 4095], v[k] * 1e-4);
    }
    std::fclose(f);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FprintfPointLine);

void BM_OutBufferPointLine(benchmark::State& state) {
    const auto v = Coordinates();
    const auto ids = Ids();
    FILE* f = std::fopen("/dev/null", "w");
    {
        vesk::COutBuffer out(f);
        size_t i = 0;
        for (auto _ : state) {
            const size_t k = i++ & 4095;
            out.Str("<P id=\"");
            out.I(ids[k]);
            out.Str("\">");
            out.F9(v[k]);
            out.Ch(' ');
            out.F9(v[(k + 1) & 4095]);
            out.Ch(' ');
            out.F6(v[k] * 1e-4);
            out.Str("</P>\n");
        }
    }
    if (f) std::fclose(f);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_OutBufferPointLine);

}  // namespace

BENCHMARK_MAIN();
