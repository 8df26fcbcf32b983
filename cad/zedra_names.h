// Name comparison of the engine: drawing and block names are equal when
// they match without regard to ASCII case, as layer and block names of
// drawing files do. Other bytes (UTF-8) compare exactly.
#pragma once
#include <string_view>

namespace roadx::cad {

inline char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

inline bool SameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    return true;
}

}  // namespace roadx::cad
