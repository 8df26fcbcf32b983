// The drawing export behind SaveAllDataToDxfDwg, step by step.
#include <memory>

#include "display/cld_draw.h"
#include "display/display.h"
#include "cad/doc_symbol_manager.h"
#include "cad/save_errors.h"
#include "cad/zedra_eng.h"
#include "cad/zedra_event_sentinel.h"
#include "dxfdwg/drawing_export.h"
#include "dxfdwg/export_targets.h"
#include "exchange/common/module_strings.h"
#include "host/document.h"
#include "host/ui.h"

using namespace roadx::dxfdwg;

namespace {

// The six option bools of the export dialog, in the dialog's order. The
// first is also the visible-only flag of the entity creation.
struct TOptions {
    bool visibleOnly = true;       // 1: hidden drawings are neither drawn nor written
    bool unlockedOnly = false;     // 2: locked drawings are not written
    bool flatten = false;          // 3: every z written as 0
    bool clouds = true;            // 4: point clouds are drawn
    bool usedDrawingsOnly = true;  // 5: empty drawings are not written as layers
    bool r12Handles = true;        // 6: R12 files get handles too
    DrawingHandle drawing = 0;     // the one drawing to write (0: all)
};

// The nine display objects of the export engine.
struct TExportDisplay {
    TExportDisplay(CZedraEng* eng, IVantriDati* doc)
        : ptNome(eng, doc), cmp(eng, doc), gps(eng, doc), cts(eng, doc), pnt(eng, doc), dtm(eng, doc),
          road(eng, doc), profile(eng, doc), gis(eng, doc) {}
    CDisPtNome ptNome;
    CDisLibCmp cmp;
    CDisLibGps gps;
    CDisCts cts;
    CDisLibPnt pnt;
    CDisLibDtm dtm;
    CDisRoad road;
    CDisLibProfile profile;
    CDisLibGis gis;
};

void RemoveDocumentDisplay(IVantriDati* doc) {
    CZedraEventSentinel sentinel(doc->GetZedraEng());
    if (CDisCts* d = doc->GetDisCts()) d->DelTutto();
    if (CDisLibDtm* d = doc->GetDisLibDtm()) d->DelAllDtm();
    if (CDisLibCmp* d = doc->GetDisLibCmp()) d->AnnullaTutto();
    if (CDisLibGps* d = doc->GetDisLibGps()) d->AnnullaTutto();
    if (CDisLibPnt* d = doc->GetDisLibPnt()) d->AnnullaTutto();
    if (CDisLibGis* d = doc->GetDisLibGis()) d->AnnullaTutto();
}

void RecreateDocumentDisplay(IVantriDati* doc, bool visibleOnly) {
    // One notification for the whole re-creation, as for the removal.
    CZedraEventSentinel sentinel(doc->GetZedraEng());
    if (CDisLibCmp* d = doc->GetDisLibCmp()) d->CreaTutto(true, visibleOnly);
    if (CDisLibGps* d = doc->GetDisLibGps()) d->CreaTutto(true, visibleOnly);
    if (CDisLibPnt* d = doc->GetDisLibPnt()) d->CreaTutto(true, visibleOnly);
    if (CDisCts* d = doc->GetDisCts()) d->CreaTutto(true, visibleOnly);
    if (CDisLibDtm* d = doc->GetDisLibDtm()) d->AddAllDtm(visibleOnly);
    if (CDisLibGis* d = doc->GetDisLibGis()) d->CreaTutto();
}

void DrawAll(TExportDisplay& dis, IVantriDati* doc, CZedraEng* eng, const TOptions& o) {
    dis.ptNome.GetOpzListNew()->GetOpzPun() = doc->GetOpzListDisEgn()->GetOpzPun();
    dis.ptNome.RiCreaTutto(true, o.visibleOnly);
    dis.cmp.CreaTutto(true, o.visibleOnly);
    dis.gps.CreaTutto(true, o.visibleOnly);
    dis.pnt.CreaTutto(true, o.visibleOnly);
    dis.cts.CreaTutto(true, o.visibleOnly);
    dis.dtm.AddAllDtm(o.visibleOnly);
    dis.road.AddAllRoads();
    dis.profile.AddAllProfiles();
    dis.gis.CreaTutto();
    if (o.clouds) {
        CLibCld* clds = doc->GetLibCld();
        for (unsigned i = 0; clds && i < clds->GetNoCld(); ++i)
            if (const CCld* c = clds->GetCld(i)) roadx::display::DrawCloud(*c, eng);
    }
}

void ReportSaveResult(int result) {
    int text = 0;
    if (result == roadx::cad::kSaveDiskFull) text = IDS_DISCO_PIENO;
    else if (result == roadx::cad::kSaveNotAllowed) text = IDS_ACCESSO_NEGATO;
    if (text != 0) MessageBoxOkError(nullptr, LoadModuleString(text), LoadModuleString(IDS_CREAZIONE_DXF_DWG));
}

}  // namespace

namespace roadx::dxfdwg {

TExchangeStatus SaveAllDataToDxfDwgStatus(IVantriDati* doc, const std::string& path, enumZEDRA_DXFDWG_VER ver,
                                          bool dwg, CZedraEng* eng) {
    const TExchangeStatus cancelled =
        TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "the export options were cancelled");
    if (!doc || !eng) return cancelled;
    CZedraEng* docEng = doc->GetZedraEng();
    TOptions o;
    if (!FDlgOpzTrasfToDxf(docEng, o.visibleOnly, o.unlockedOnly, o.flatten, o.clouds, o.usedDrawingsOnly,
                           o.r12Handles, docEng ? docEng->GetNoBlocksNotPriv() : 0, o.drawing, doc->GetDocFlag()))
        return cancelled;

    int result = roadx::cad::kSaveOk;
    std::string why;
    RemoveDocumentDisplay(doc);
    {
        CZedraEventSentinel sentinel(eng);
        eng->CopiaDa(docEng, true);
        CDocSymbolManager symbols(eng);
        if (const CDocSymbolManager* docSymbols = doc->GetDocSymbolManager())
            symbols.CopyUserSymbolsFrom(*docSymbols);

        CSavedTargets saved;
        SaveTargetDrawings(doc, saved);
        SetExportTargetDrawings(doc, eng, saved);
        {
            auto dis = std::make_unique<TExportDisplay>(eng, doc);
            DrawAll(*dis, doc, eng, o);
            eng->PurgePrivateObjects();
            result = dwg ? eng->SaveFileDWG(path, o.visibleOnly, o.unlockedOnly, o.flatten, o.usedDrawingsOnly,
                                            o.r12Handles, ver, o.drawing)
                         : eng->SaveFileDXF(path, o.visibleOnly, o.unlockedOnly, o.flatten, o.usedDrawingsOnly,
                                            o.r12Handles, ver, o.drawing);
            why = eng->GetLastSaveError();
            ReportSaveResult(result);
        }
        RestoreTargetDrawings(doc, eng, saved);
        RecreateDocumentDisplay(doc, o.visibleOnly);
    }
    // The engine's own words (the system's reason) where it has them; the
    // host's message box above stays what the host shows.
    if (result != roadx::cad::kSaveOk)
        return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED,
                                     why.empty() ? roadx::cad::SaveResultText(result) : why, result);
    return TExchangeStatus::Ok();
}

}  // namespace roadx::dxfdwg
