// The drawing entry points.
#include "dxfdwg/drawing_export.h"
#include "exchange/exchange.h"

void SaveAllDataToDxfDwg(IVantriDati* doc, std::string path, enumZEDRA_DXFDWG_VER ver, bool dwgAllowed,
                         CZedraEng* eng) {
    const bool dwg = FIsDwgPath(path, dwgAllowed);
    (void)roadx::dxfdwg::SaveAllDataToDxfDwgStatus(doc, path, ver, dwg, eng);
}

bool FExportFileDxfDwgNew(IVantriDati* doc, const char* path, bool dwgAllowed) {
    (void)roadx::dxfdwg::ExportFileDxfDwgStatus(doc, path, dwgAllowed);
    return false;
}
