#include "display/dis_lib_cmp.h"

#include "host/document.h"

using namespace roadx::display;

namespace {
constexpr double kStationRadius = 0.5;  // metres
}

CDisLibCmp::CDisLibCmp(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibCmp) {}

void CDisLibCmp::CreaTutto(bool b3D, bool visibleOnly) {
    if (!Ready()) return;
    AnnullaTutto();
    CLibCmp* lib = doc_->GetLibCmp();
    if (!lib) return;
    const double h = PointTextHeight();
    DrawingHandle labels = 0;
    auto label = [&](const vesk::geom::PNT_3D& at, const CEgn& e) {
        if (labels == 0) labels = EnsureTarget(*lib, kDrawingCmp);
        if (Shown(labels, visibleOnly)) NameElevLabels(labels, at, e.GetNome(), e.GetCoordZ(), h);
    };
    for (int j = 0; j < lib->GetJobArSize(); ++j) {
        CJob* job = lib->GetJobAt(j);
        if (lib->GetStaArSize(j) == 0) continue;
        const DrawingHandle d = EnsureTarget(*job, ObjectDrawingName("TS_", job->GetNome(), j));
        if (!Shown(d, visibleOnly)) continue;
        for (int s = 0; s < lib->GetStaArSize(j); ++s) {
            const CSta* sta = lib->GetStaAt(j, s);
            const bool staOk = sta && IsDefinedXY(sta->GetCoordX(), sta->GetCoordY());
            vesk::geom::PNT_3D st;
            if (staOk) {
                st = At(sta->GetCoordX(), sta->GetCoordY(), sta->GetCoordZ(), b3D);
                Point(d, st);
                eng_->AddCircle(Attr(d), st, kStationRadius);
                label(st, *sta);
            }
            for (int i = 0; i < lib->GetPunArSize(j, s); ++i) {
                const CPun* p = lib->GetPunAt(j, s, i);
                if (!p || !IsDefinedXY(p->GetCoordX(), p->GetCoordY())) continue;
                const vesk::geom::PNT_3D at = At(p->GetCoordX(), p->GetCoordY(), p->GetCoordZ(), b3D);
                Point(d, at);
                if (staOk) Line(d, st, at);
                label(at, *p);
            }
        }
    }
}
