// Drawing export: the whole graphic content of the document saved as a DXF
// (or, where allowed, DWG) file through a temporary CAD engine.
//
// The document's engine is copied into the export engine, every library is
// drawn into it afresh by the display objects (each holder of a target
// drawing pointed at a "Grafica..." drawing of the export engine that stands
// for its own), and the engine saves the file. The document's own display is
// removed during the export and drawn again afterwards; its target drawings
// are put back as they were.
#pragma once
#include <string>

#include "cad/zedra_types.h"
#include "exchange/common/status.h"

class IVantriDati;
class CZedraEng;

// True only when dwgAllowed and the path ends in ".dwg", ASCII case ignored
// (a path shorter than five characters is compared whole).
bool FIsDwgPath(const std::string& path, bool dwgAllowed);

namespace roadx::dxfdwg {

// SaveAllDataToDxfDwg saying how it ended. Whether the file is DWG is the
// caller's decision (the entry point decides with FIsDwgPath), so this file
// and the file dialog's export do not depend on each other. CANCELLED: the
// option dialog was cancelled, nothing happened; WRITE_FAILED: the engine's
// save result (roadx::cad::kSave...) is the detail, the message is the
// engine's reason (GetLastSaveError) or else SaveResultText; OK. The two
// message boxes (disk full, writing not allowed) are shown as the host
// expects.
TExchangeStatus SaveAllDataToDxfDwgStatus(IVantriDati* doc, const std::string& path, enumZEDRA_DXFDWG_VER ver,
                                          bool dwg, CZedraEng* eng);

// FExportFileDxfDwgNew saying how it ended: CANCELLED (either dialog), OK,
// or WRITE_FAILED as above.
TExchangeStatus ExportFileDxfDwgStatus(IVantriDati* doc, const char* path, bool dwgAllowed);

}  // namespace roadx::dxfdwg
