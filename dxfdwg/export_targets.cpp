#include "dxfdwg/export_targets.h"

#include <string>

#include "display/dis_lib_dtm.h"
#include "cad/zedra_eng.h"
#include "host/document.h"

namespace roadx::dxfdwg {

namespace {

const char* const kExportDrawing = "Grafica";

std::string Candidate(const std::string& srcName, int n) {
    if (n == 0) return kExportDrawing;
    if (n == 1) return std::string(kExportDrawing) + "_" + srcName;
    return std::string(kExportDrawing) + "_" + srcName + std::to_string(n);
}

CTargetDrawingHolder* Holder(IVantriDati* doc, TSavedTarget::Kind kind, int i) {
    switch (kind) {
        case TSavedTarget::LIB_CMP: return doc->GetLibCmp();
        case TSavedTarget::LIB_GPS: return doc->GetLibGps();
        case TSavedTarget::CTS: return doc->GetCts();
        case TSavedTarget::LIB_PNT: return doc->GetLibPnt();
        case TSavedTarget::LIB_GIS: return doc->GetLibGis();
        case TSavedTarget::LIB_PROFILE: return doc->GetLibProfile();
        case TSavedTarget::JOB: return doc->GetLibCmp()->GetJobAt(i);
        case TSavedTarget::GRP_GPS: return doc->GetLibGps()->GetGrpAt(i);
        case TSavedTarget::GRP_PNT: return doc->GetLibPnt()->GetGrpAt(i);
        case TSavedTarget::ROAD: return doc->GetLibRoad()->GetRoad(static_cast<unsigned>(i));
        default: return nullptr;  // themes and DTM projects go through their own accessors
    }
}

// The holder's drawing, read or written through the document.
DrawingHandle Get(IVantriDati* doc, const TSavedTarget& t) {
    if (t.kind == TSavedTarget::THEME) return doc->GetLibGis()->GetThemeTargetDrawing(t.index);
    if (t.kind == TSavedTarget::DTM_PRJ) {
        CDtmPrj* prj = doc->GetLibDtm()->GetPrj(static_cast<unsigned>(t.index));
        CDisLibDtm* dis = doc->GetDisLibDtm();
        return dis ? dis->GetTargetDrawingOfPrj(prj) : (prj ? prj->GetTargetDrawing() : 0);
    }
    const CTargetDrawingHolder* h = Holder(doc, t.kind, t.index);
    return h ? h->GetTargetDrawing() : 0;
}

void Set(IVantriDati* doc, const TSavedTarget& t, DrawingHandle d) {
    if (t.kind == TSavedTarget::THEME) {
        doc->GetLibGis()->SetThemeTargetDrawing(t.index, d);
    } else if (t.kind == TSavedTarget::DTM_PRJ) {
        CDtmPrj* prj = doc->GetLibDtm()->GetPrj(static_cast<unsigned>(t.index));
        if (CDisLibDtm* dis = doc->GetDisLibDtm()) dis->SetTargetDrawingOfPrj(prj, d);
        else if (prj) prj->SetTargetDrawing(d);
    } else if (CTargetDrawingHolder* h = Holder(doc, t.kind, t.index)) {
        h->SetTargetDrawing(d);
    }
}

void Add(IVantriDati* doc, CSavedTargets& out, TSavedTarget::Kind kind, int count) {
    for (int i = 0; i < count; ++i) {
        TSavedTarget t{kind, i};
        t.saved = Get(doc, t);
        out.push_back(t);
    }
}

}  // namespace

DrawingHandle FindOrAddExportDrawing(CZedraEng* eng, DrawingHandle src) {
    if (eng == nullptr || src == 0 || eng->FindDrawing(src) == nullptr) return 0;
    const bool locked = eng->IsDrawingLocked(src);
    const bool visible = eng->IsDrawingVisible(src);
    bool colourSet = false;
    unsigned colour = 0;
    eng->GetDrawingColor(src, colourSet, colour);
    const std::string name = eng->GetDrawingName(src);
    // Each n either takes, adds or skips a drawing that exists, so the walk
    // ends within the engine's drawing count plus one.
    const size_t limit = eng->GetDrawings().size() + 2;
    for (size_t n = 0; n <= limit; ++n) {
        const std::string cand = Candidate(name, static_cast<int>(n));
        const DrawingHandle h = eng->GetDrawingFromName(cand);
        if (h == 0) {
            const DrawingHandle added = eng->AddDrawing(0, cand, visible, locked, false);
            if (added == 0) continue;
            eng->SetDrawingColor(added, colourSet, colour);
            return added;
        }
        bool f = false;
        unsigned c = 0;
        eng->GetDrawingColor(h, f, c);
        if (eng->IsDrawingLocked(h) == locked && eng->IsDrawingVisible(h) == visible && f == colourSet && c == colour)
            return h;
    }
    return 0;
}

void SaveTargetDrawings(IVantriDati* doc, CSavedTargets& saved) {
    saved.clear();
    if (!doc) return;
    for (auto k : {TSavedTarget::LIB_CMP, TSavedTarget::LIB_GPS, TSavedTarget::CTS, TSavedTarget::LIB_PNT,
                   TSavedTarget::LIB_GIS, TSavedTarget::LIB_PROFILE})
        Add(doc, saved, k, 1);
    Add(doc, saved, TSavedTarget::JOB, doc->GetLibCmp()->GetJobArSize());
    Add(doc, saved, TSavedTarget::GRP_GPS, doc->GetLibGps()->GetGrpArSize());
    Add(doc, saved, TSavedTarget::GRP_PNT, doc->GetLibPnt()->GetGrpArSize());
    Add(doc, saved, TSavedTarget::THEME, doc->GetLibGis()->GetNumThemes());
    Add(doc, saved, TSavedTarget::DTM_PRJ, static_cast<int>(doc->GetLibDtm()->GetNoPrj()));
    Add(doc, saved, TSavedTarget::ROAD, static_cast<int>(doc->GetLibRoad()->GetNumRoads()));
}

void SetExportTargetDrawings(IVantriDati* doc, CZedraEng* eng, CSavedTargets& saved) {
    if (!doc || !eng) return;
    const DrawingHandle grafica = eng->GetDrawingFromName(kExportDrawing);
    for (TSavedTarget& t : saved) {
        DrawingHandle h = FindOrAddExportDrawing(eng, t.saved);
        if (h == 0) h = grafica;
        t.exported = h;
        Set(doc, t, h);
        t.referenced = (t.kind == TSavedTarget::DTM_PRJ || t.kind == TSavedTarget::ROAD) && h != 0 &&
                       CZedraEng::AddDrawingRef(eng, h) >= 0;
    }
}

void RestoreTargetDrawings(IVantriDati* doc, CZedraEng* eng, const CSavedTargets& saved) {
    if (!doc) return;
    for (const TSavedTarget& t : saved) {
        if (t.referenced) CZedraEng::SubDrawingRef(eng, t.exported);
        Set(doc, t, t.saved);
    }
}

}  // namespace roadx::dxfdwg
