#include "display/dis_lib_pnt.h"

#include "host/document.h"

using namespace roadx::display;

CDisLibPnt::CDisLibPnt(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibPnt) {}

void CDisLibPnt::CreaTutto(bool b3D, bool visibleOnly) {
    if (!Ready()) return;
    AnnullaTutto();
    CLibPnt* lib = doc_->GetLibPnt();
    if (!lib) return;
    for (int g = 0; g < lib->GetGrpArSize(); ++g) {
        CGrpPnt* grp = lib->GetGrpAt(g);
        if (lib->GetPtnArSize(g) == 0) continue;
        const DrawingHandle d = EnsureTarget(*grp, ObjectDrawingName("Punti_", grp->GetName(), g));
        if (!Shown(d, visibleOnly)) continue;
        for (int i = 0; i < lib->GetPtnArSize(g); ++i) {
            const CPunPnt* p = lib->GetPtnAt(g, i);
            if (p && IsDefinedXY(p->GetCoordX(), p->GetCoordY()))
                Point(d, At(p->GetCoordX(), p->GetCoordY(), p->GetCoordZ(), b3D));
        }
    }
}
