// Saving drawing files.
#include "cad/dwg_writer.h"
#include "cad/dxf_writer.h"
#include "cad/zedra_eng.h"

namespace {

roadx::cad::dxf::TSaveOptions MakeOptions(bool visibleOnly, bool unlockedOnly, bool flatten, bool usedDrawingsOnly,
                                     bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing) {
    roadx::cad::dxf::TSaveOptions o;
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
    lastSaveError_.clear();
    return roadx::cad::dxf::WriteDxf(
        *this, MakeOptions(visibleOnly, unlockedOnly, flatten, usedDrawingsOnly, r12Handles, ver, drawing), saveVars_,
        path, &lastSaveError_);
}

// The DWG writer builds the same object graph as the DXF writer and writes
// it in the binary format of R2000 (AC1015).
int CZedraEng::SaveFileDWG(const std::string& path, bool visibleOnly, bool unlockedOnly, bool flatten,
                           bool usedDrawingsOnly, bool r12Handles, enumZEDRA_DXFDWG_VER ver, uint64_t drawing) {
    lastSaveError_.clear();
    return roadx::cad::dwg::WriteDwg(
        *this, MakeOptions(visibleOnly, unlockedOnly, flatten, usedDrawingsOnly, r12Handles, ver, drawing), saveVars_,
        path, &lastSaveError_);
}
