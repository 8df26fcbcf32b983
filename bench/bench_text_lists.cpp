// Reading LandXML number texts: one std::istringstream per token (what the
// values must equal) against the allocation-free reader, on a surface-like
// text of point coordinates and on face index triples.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "landxml_import/text_lists.h"

namespace {

std::string PointText(int points) {
    std::mt19937_64 rng(3);
    std::uniform_real_distribution<double> d(1e5, 5e6);
    std::string text;
    char buf[64];
    for (int i = 0; i < points; ++i) {
        std::snprintf(buf, sizeof buf, "%.4f %.4f %.3f ", d(rng), d(rng), d(rng) * 1e-4);
        text += buf;
    }
    return text;
}

std::string FaceText(int faces) {
    std::mt19937 rng(4);
    std::string text;
    for (int i = 0; i < faces; ++i)
        text += std::to_string(rng() % 1000000) + ' ' + std::to_string(rng() % 1000000) + ' ' +
                std::to_string(rng() % 1000000) + ' ';
    return text;
}

void BM_StreamPerToken(benchmark::State& state) {
    const std::string text = PointText(1000);
    std::vector<double> values;
    for (auto _ : state) {
        values.clear();
        std::vector<vesk::String> tokens;
        ReadTokenList(text, tokens);
        for (const auto& t : tokens) {
            std::istringstream is(t);
            double v = 0;
            is >> v;
            values.push_back(v);
        }
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(state.iterations() * 3000);
}
BENCHMARK(BM_StreamPerToken);

void BM_ReadDoubleList(benchmark::State& state) {
    const std::string text = PointText(1000);
    std::vector<double> values;
    for (auto _ : state) {
        values.clear();
        ReadDoubleList(text, values, true);
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(state.iterations() * 3000);
}
BENCHMARK(BM_ReadDoubleList);

void BM_ReadIntList(benchmark::State& state) {
    const std::string text = FaceText(1000);
    std::vector<int> values;
    for (auto _ : state) {
        values.clear();
        ReadIntList(text, values);
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(state.iterations() * 3000);
}
BENCHMARK(BM_ReadIntList);

}  // namespace

BENCHMARK_MAIN();
