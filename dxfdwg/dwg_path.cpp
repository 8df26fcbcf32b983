// Whether a drawing export writes DWG: the name decides, where DWG is allowed.
#include <string>

#include "dxfdwg/drawing_export.h"

namespace {

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool FIsDwgPath(const std::string& path, bool dwgAllowed) {
    if (!dwgAllowed) return false;
    static const std::string kExt = ".dwg";
    const std::string tail = path.size() < 5 ? path : path.substr(path.size() - 4);
    if (tail.size() != kExt.size()) return false;
    for (size_t i = 0; i < tail.size(); ++i)
        if (Lower(tail[i]) != kExt[i]) return false;
    return true;
}
