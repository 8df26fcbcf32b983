// Saving drawing files.
#include "cad/dxf_writer.h"
#include "cad/zedra_eng.h"

namespace {

zedra::dxf::TSaveOptions MakeOptions(bool visibleOnly, bool unlockedOnly, bool flatten, bool usedDrawingsOnly,
                                     bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing) {
    zedra::dxf::TSaveOptions o;
    o.visibleOnly = visibleOnly;
    o.unlockedOnly = unlockedOnly;
    o.flatten = flatten;
    o.usedDrawingsOnly = usedDrawingsOnly;
    o.r12Handles = r12Handles;
    o.version = ver;
    o.drawing = drawing;
    return o;
}

}  // namespace

int CZedraEng::SaveFileDXF(const std::string& path, bool visibleOnly, bool unlockedOnly, bool flatten,
                           bool usedDrawingsOnly, bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing) {
    return zedra::dxf::WriteDxf(
        *this, MakeOptions(visibleOnly, unlockedOnly, flatten, usedDrawingsOnly, r12Handles, ver, drawing), saveVars_,
        path);
}

// The DWG writer will build the same object graph (dxf_graph.h) and write
// it in the binary format; until then nothing is written.
int CZedraEng::SaveFileDWG(const std::string&, bool, bool, bool, bool, bool, enumZEDRA_DXFDWG_VER, uint64_t) {
    return zedra::kSaveDwgUnsupported;
}
