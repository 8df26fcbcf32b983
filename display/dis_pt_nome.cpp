#include "display/dis_pt_nome.h"

#include "host/document.h"

using namespace roadx::display;

CDisPtNome::CDisPtNome(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagPtNome) {
    if (doc && doc->GetOpzListDisEgn()) opz_.GetOpzPun() = doc->GetOpzListDisEgn()->GetOpzPun();
}

void CDisPtNome::RiCreaTutto(bool b3D, bool visibleOnly) {
    AnnullaTutto();
    CreaTutto(b3D, visibleOnly);
}

void CDisPtNome::CreaTutto(bool b3D, bool visibleOnly) {
    if (!Ready()) return;
    CLibPnt* lib = doc_->GetLibPnt();
    if (!lib) return;
    const COpzDisEgn& o = opz_.GetOpzPun();
    const double h = (IsDefinedValue(o.textHeight) && o.textHeight > 0.0) ? o.textHeight : 0.5;
    const double gap = 0.25 * h;
    DrawingHandle labels = 0;
    for (int g = 0; g < lib->GetGrpArSize(); ++g) {
        CGrpPnt* grp = lib->GetGrpAt(g);
        // Points of a hidden group are not drawn, so their labels are not.
        if (visibleOnly && grp->GetTargetDrawing() != 0 && eng_->FindDrawing(grp->GetTargetDrawing()) &&
            !Shown(grp->GetTargetDrawing(), true))
            continue;
        for (int i = 0; i < lib->GetPtnArSize(g); ++i) {
            const CPunPnt* p = lib->GetPtnAt(g, i);
            if (!p || !IsDefinedXY(p->GetCoordX(), p->GetCoordY())) continue;
            const bool name = o.showName && !p->GetNome().empty();
            const bool elev = o.showElev && IsDefinedValue(p->GetCoordZ());
            const bool desc = o.showDesc && !p->GetSecScri().empty();
            if (!name && !elev && !desc) continue;
            if (labels == 0) {
                labels = EnsureTarget(*lib, kDrawingPnt);
                if (!Shown(labels, visibleOnly)) return;
            }
            const vesk::geom::PNT_3D at = At(p->GetCoordX(), p->GetCoordY(), p->GetCoordZ(), b3D);
            if (name)
                Label(labels, {at.x + gap, at.y + gap, at.z}, h, 0.0, p->GetNome(), roadx::cad::EHAlign::Left,
                      roadx::cad::EVAlign::Bottom);
            if (elev)
                Label(labels, {at.x + gap, at.y - gap, at.z}, h, 0.0, FormatElevation(p->GetCoordZ()),
                      roadx::cad::EHAlign::Left, roadx::cad::EVAlign::Top);
            if (desc)
                Label(labels, {at.x + gap, at.y - gap - (elev ? 1.5 * h : 0.0), at.z}, h, 0.0, p->GetSecScri(),
                      roadx::cad::EHAlign::Left, roadx::cad::EVAlign::Top);
        }
    }
}
