// The drawing export behind FExportFileDxfDwgNew: the file dialog, the
// export engine and the export.
#include <memory>

#include "cad/zedra_eng.h"
#include "dxfdwg/drawing_export.h"
#include "host/ui.h"

namespace roadx::dxfdwg {

TExchangeStatus ExportFileDxfDwgStatus(IVantriDati* doc, const char* path, bool dwgAllowed) {
    std::string p = path ? path : "";
    enumZEDRA_DXFDWG_VER ver = ZEDRA_DXFDWG_VER_R2000;
    if (!FInpNomeFileExportDxfDwg(p, dwgAllowed, ver, true))
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "no file was chosen");
    auto eng = std::make_unique<CZedraEng>(0, nullptr, true);
    eng->DontSaveZedraVars();
    TExchangeStatus st = SaveAllDataToDxfDwgStatus(doc, p, ver, FIsDwgPath(p, dwgAllowed), eng.get());
    eng.reset();
    return st;
}

}  // namespace roadx::dxfdwg
