#include "cad/dwg_writer.h"

#include "cad/drawing_diag.h"
#include "cad/dwg_file.h"
#include "cad/dwg_file_out.h"
#include "cad/dxf_text.h"
#include "cad/zedra_eng.h"

namespace roadx::cad::dwg {

CDwgCtx::CDwgCtx(const CZedraEng& e, const dxf::TGraph& graph, bool vars)
    : eng(e), g(graph), saveVars(vars), vpEntHdrControl(graph.handSeed), handSeed(graph.handSeed + 1) {
    // Reserved from the entity count (a 3D face takes about 85 bytes, the
    // tables a few kilobytes), so that a large drawing is not copied each
    // time the section outgrows its buffer.
    const size_t objectsGuess = e.GetNoEntities() + 256;
    objects.reserve(objectsGuess * 96);
    map.reserve(objectsGuess);
}

void CDwgCtx::Add(uint64_t handle, CObjWriter& w) {
    map.push_back({handle, static_cast<uint32_t>(objects.size())});
    w.FinishInto(objects);
}

uint64_t CDwgCtx::LayerHandle(uint64_t drawing) const {
    auto it = g.layerOfDrawing.find(drawing);
    return g.layers[it == g.layerOfDrawing.end() ? 0 : it->second].handle;
}

std::string CDwgCtx::Text(std::string_view utf8) { return dxf::EncodeDxfText(utf8, dxf::EEncoding::Name); }

std::vector<uint8_t> BuildDwg(const CZedraEng& eng, const dxf::TSaveOptions& opt, bool saveVars) {
    return BuildDwg(eng, dxf::BuildGraph(eng, opt), saveVars);
}

std::vector<uint8_t> BuildDwg(const CZedraEng& eng, const dxf::TGraph& g, bool saveVars) {
    CDwgCtx c(eng, g, saveVars);
    WriteControlObjects(c);
    WriteTableRecords(c);
    WriteBlockHeaders(c);
    WriteBlocksAndEntities(c);
    WriteDictionaries(c);
    return AssembleFile(c);
}

int WriteDwg(const CZedraEng& eng, const dxf::TSaveOptions& opt, bool saveVars, const std::string& path,
             std::string* error) {
    if (opt.version == ZEDRA_DXFDWG_VER_R12) return kSaveDwgUnsupported;
    if (opt.version != ZEDRA_DXFDWG_VER_R2000) return kSaveBadVersion;
    const dxf::TGraph g = dxf::BuildGraph(eng, opt);
    if (DiagnoseDrawing(eng, g, true)) return kSaveRefused;
    return WriteFileBytes(path, BuildDwg(eng, g, saveVars), error);
}

}  // namespace roadx::cad::dwg
