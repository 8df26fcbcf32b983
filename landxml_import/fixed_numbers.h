// The first numbers of an element text read into a fixed array, for the
// readers of elements that come by the million (surface points and faces,
// coordinate points): no allocation per element. Splitting and conversion
// are those of the text lists; every number is counted, the first N kept.
#pragma once
#include <cstddef>
#include <string_view>

#include "landxml_import/text_lists.h"

template <class T, size_t N>
struct TFixedNumbers {
    T v[N] = {};
    size_t count = 0;
};

template <size_t N>
void ReadFixed(std::string_view text, bool isMetric, TFixedNumbers<double, N>& out) {
    out.count = 0;
    ForEachToken(text, [&](std::string_view tok) {
        if (out.count < N) {
            double d = ReadStreamDouble(tok);
            if (!isMetric) FeetToMeters(d);
            out.v[out.count] = d;
        }
        ++out.count;
    });
}

template <size_t N>
void ReadFixed(std::string_view text, TFixedNumbers<int, N>& out) {
    out.count = 0;
    ForEachToken(text, [&](std::string_view tok) {
        if (out.count < N) out.v[out.count] = ReadStreamInt(tok);
        ++out.count;
    });
}
