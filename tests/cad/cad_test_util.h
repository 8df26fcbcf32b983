// Helpers of the CAD tests: temporary folders, whole-file reads, a reader
// of DXF group pairs, and the small drawing that the golden files hold.
#pragma once
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "cad/zedra_eng.h"

namespace cadtest {

// A fresh folder under the system temporary folder, removed by the destructor.
class CTempDir {
public:
    CTempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "roadx_cad_XXXXXX").string();
        if (mkdtemp(tmpl.data()) != nullptr) path_ = tmpl;
    }
    ~CTempDir() {
        if (!path_.empty()) std::system(("rm -rf '" + path_ + "'").c_str());
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

inline bool Exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

inline std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void WriteAll(const std::string& path, const std::string& data) {
    std::ofstream out(path, std::ios::binary);
    out << data;
}

struct TGroup {
    int code;
    std::string value;
};

// Splits a DXF text into (code, value) pairs; the code line keeps its
// leading blanks out, the value is taken as it stands.
inline std::vector<TGroup> Groups(const std::string& text) {
    std::vector<TGroup> out;
    std::istringstream in(text);
    std::string code, value;
    while (std::getline(in, code) && std::getline(in, value)) out.push_back({std::stoi(code), value});
    return out;
}

// Values of every group with this code that follows a (0, type) group
// within the same object.
inline std::vector<std::string> ValuesOf(const std::vector<TGroup>& g, const std::string& type, int code) {
    std::vector<std::string> out;
    bool inside = false;
    for (const auto& x : g) {
        if (x.code == 0) inside = x.value == type;
        else if (inside && x.code == code) out.push_back(x.value);
    }
    return out;
}

inline int CountOf(const std::vector<TGroup>& g, const std::string& type) {
    int n = 0;
    for (const auto& x : g) n += (x.code == 0 && x.value == type) ? 1 : 0;
    return n;
}

// The drawing of the golden files: every kind of entity, a hidden and
// locked layer, a coloured layer with a non-ASCII name, a user block with an
// insert, a private block that nothing uses (purged).
inline void BuildSmallDrawing(CZedraEng& eng) {
    using namespace roadx::cad;
    const uint64_t roads = eng.AddDrawing(0, "Strade", true, false, false);
    eng.SetDrawingColor(roads, true, 1);
    const uint64_t hidden = eng.AddDrawing(0, "Nascosto", false, true, false);
    const uint64_t city = eng.AddDrawing(0, "Città", true, false, false);
    eng.SetDrawingColor(city, true, 30);
    const uint64_t frozen = eng.AddDrawing(0, "Gelo", true, false, false);
    eng.SetDrawingFrozen(frozen, true);
    const uint64_t sym = eng.AddBlock("Simbolo", false, {0.5, 0.25, 0.0}, true);
    eng.AddCircle({0, 3, sym}, {0, 0, 0}, 0.5);
    eng.AddLine({0, kColorByBlock, sym}, {-1, 0, 0}, {1, 0, 0});
    const uint64_t junk = eng.AddBlock("Privato", true);
    eng.AddPoint({0, kColorByLayer, junk}, {9, 9, 9});
    eng.AddPoint({}, {1.5, 2.25, 100.125});
    eng.AddLine({roads}, {0, 0, 0}, {4500123.456, 5012345.789, 12.5});
    eng.AddArc({roads, 5}, {10, 10, 0}, 2.0, 0.0, std::numbers::pi / 2);
    eng.AddCircle({city}, {-3.0, 0.1, 0.2}, 1e-3);
    eng.AddPolyline2D({roads}, {{0, 0, 0}, {10, 0, 0.5}, {10, 10, 0}}, true, 3.5);
    eng.AddPolyline3D({hidden}, {{0, 0, 1}, {1, 1, 2}, {2, 0, 3}}, false);
    eng.Add3DFace({}, {0, 0, 0}, {1, 0, 0.1}, {0, 1, 0.2});
    eng.Add3DFace({frozen}, {0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, 5);
    eng.AddText({city}, {5, 5, 0}, 2.5, std::numbers::pi / 2, "Città ^ 1€", EHAlign::Center, EVAlign::Middle);
    eng.AddText({roads, 2}, {-7.25, 1.0 / 3.0, 0}, 0.5, 0.0, "km 0+100");
    eng.AddInsert({roads}, sym, {20, 20, 0}, 2, 2, 1, 0.3);
    eng.PurgePrivateObjects();
}

}  // namespace cadtest
