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

// The host's entry points; both silent, whatever happens, except for the two
// message boxes (disk full, writing not allowed). FExportFileDxfDwgNew
// always returns false: callers must not read success from it.
void SaveAllDataToDxfDwg(IVantriDati* doc, std::string path, enumZEDRA_DXFDWG_VER ver, bool dwgAllowed,
                         CZedraEng* eng);
bool FExportFileDxfDwgNew(IVantriDati* doc, const char* path, bool dwgAllowed);

// True only when dwgAllowed and the path ends in ".dwg", ASCII case ignored
// (a path shorter than five characters is compared whole).
bool FIsDwgPath(const std::string& path, bool dwgAllowed);

// How SaveAllDataToDxfDwg ended.
struct TDrawingExportOutcome {
    bool cancelled = false;  // the option dialog was cancelled; nothing happened
    bool dwg = false;        // the DWG writer was asked
    int saveResult = 0;      // the engine's result (zedra::kSave...)
};
TDrawingExportOutcome SaveAllDataToDxfDwgOutcome(IVantriDati* doc, const std::string& path,
                                                 enumZEDRA_DXFDWG_VER ver, bool dwgAllowed, CZedraEng* eng);

// FExportFileDxfDwgNew saying how it ended: CANCELLED (a dialog), OK, or
// WRITE_FAILED with one line naming the problem ("disk full", "writing not
// allowed", "DWG files are written as R2000 only", ...). The outcome, when
// asked for, tells the engine's result itself.
TExchangeStatus ExportFileDxfDwg(IVantriDati* doc, const char* path, bool dwgAllowed,
                                 TDrawingExportOutcome* outcome = nullptr);
