// FExportFileDxfDwgNew: the file dialog, the export engine and the call.
#include <memory>

#include "cad/zedra_eng.h"
#include "dxfdwg/drawing_export.h"
#include "host/ui.h"

namespace {

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

std::string SaveFailure(int result) {
    switch (result) {
        case zedra::kSaveDiskFull: return "disk full";
        case zedra::kSaveNotAllowed: return "writing not allowed";
        case zedra::kSaveDwgUnsupported: return "DWG files are written as R2000 only; nothing was written";
        case zedra::kSaveBadVersion: return "unknown drawing file version; nothing was written";
        case zedra::kSaveIoError: return "write error";
        default: return "the drawing could not be written (result " + std::to_string(result) + ")";
    }
}

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

TExchangeStatus ExportFileDxfDwg(IVantriDati* doc, const char* path, bool dwgAllowed, TDrawingExportOutcome* outcome) {
    TDrawingExportOutcome local;
    TDrawingExportOutcome& out = outcome ? *outcome : local;
    out = TDrawingExportOutcome{};
    out.cancelled = true;
    std::string p = path ? path : "";
    enumZEDRA_DXFDWG_VER ver = ZEDRA_DXFDWG_VER_R2000;
    if (!FInpNomeFileExportDxfDwg(p, dwgAllowed, ver, true))
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "no file was chosen");
    auto eng = std::make_unique<CZedraEng>(0, nullptr, true);
    eng->DontSaveZedraVars();
    out = SaveAllDataToDxfDwgOutcome(doc, p, ver, dwgAllowed, eng.get());
    eng.reset();
    if (out.cancelled) return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "the export options were cancelled");
    if (out.saveResult != zedra::kSaveOk)
        return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, SaveFailure(out.saveResult));
    return TExchangeStatus::Ok();
}

bool FExportFileDxfDwgNew(IVantriDati* doc, const char* path, bool dwgAllowed) {
    ExportFileDxfDwg(doc, path, dwgAllowed);
    return false;
}
