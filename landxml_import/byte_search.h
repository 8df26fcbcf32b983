// Finding a tag in a surface file, where a '<' comes every few dozen bytes.
#pragma once
#include <cstddef>
#include <cstring>
#include <string_view>

// The first `needle` in s from `at`, or npos, found by its byte `rare`: a
// byte that plain points and faces never hold (the 'n' of "</Pnts", the 'y'
// of "<CoordinateSystem"), so memchr runs through a surface at memory speed,
// where a search by the first byte ('<') would stop at every element.
// Correct whatever the text holds; only slower where the byte is common.
inline size_t FindByRareByte(std::string_view s, size_t at, std::string_view needle, size_t rare) {
    for (size_t from = at + rare; from < s.size();) {
        const void* p = std::memchr(s.data() + from, needle[rare], s.size() - from);
        if (!p) break;
        const size_t hit = static_cast<size_t>(static_cast<const char*>(p) - s.data());
        if (s.compare(hit - rare, needle.size(), needle) == 0) return hit - rare;
        from = hit + 1;
    }
    return std::string_view::npos;
}
