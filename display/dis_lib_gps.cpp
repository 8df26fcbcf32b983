#include "display/dis_lib_gps.h"

#include <cmath>
#include <numbers>

#include "host/document.h"

using namespace roadx::display;

namespace {
constexpr double kBaseSide = 1.0;  // side of the base station's triangle, metres
}

CDisLibGps::CDisLibGps(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibGps) {}

void CDisLibGps::CreaTutto(bool b3D, bool visibleOnly) {
    if (!Ready()) return;
    AnnullaTutto();
    CLibGps* lib = doc_->GetLibGps();
    if (!lib) return;
    const double h = PointTextHeight();
    DrawingHandle labels = 0;
    auto labelsDrawing = [&] {
        if (labels == 0) labels = EnsureTarget(*lib, kDrawingGps);
        return labels;
    };
    for (int g = 0; g < lib->GetGrpArSize(); ++g) {
        CGrpGps* grp = lib->GetGrpAt(g);
        const bool baseOk = IsDefinedXY(grp->GetCoordX(), grp->GetCoordY());
        if (!baseOk && lib->GetPunArSize(g) == 0) continue;
        const DrawingHandle d = EnsureTarget(*grp, ObjectDrawingName("GPS_", grp->GetNomeGrp(), g));
        if (!Shown(d, visibleOnly)) continue;
        const vesk::geom::PNT_3D base = At(grp->GetCoordX(), grp->GetCoordY(), grp->GetCoordZ(), b3D);
        if (baseOk) {
            Point(d, base);
            const double r = kBaseSide / std::sqrt(3.0);
            std::vector<vesk::geom::PNT_3D> tri;
            for (int k = 0; k < 3; ++k) {
                const double a = std::numbers::pi / 2 + k * 2 * std::numbers::pi / 3;
                tri.push_back({base.x + r * std::cos(a), base.y + r * std::sin(a), base.z});
            }
            eng_->AddPolyline3D(Attr(d), tri, true);
            const DrawingHandle l = labelsDrawing();
            if (Shown(l, visibleOnly)) NameElevLabels(l, base, grp->GetNome(), grp->GetCoordZ(), h);
        }
        for (int i = 0; i < lib->GetPunArSize(g); ++i) {
            const CPunGps* p = lib->GetPunAt(g, i);
            if (!p || !IsDefinedXY(p->GetCoordX(), p->GetCoordY())) continue;
            const vesk::geom::PNT_3D at = At(p->GetCoordX(), p->GetCoordY(), p->GetCoordZ(), b3D);
            Point(d, at);
            if (baseOk) Line(d, base, at);
            const DrawingHandle l = labelsDrawing();
            if (Shown(l, visibleOnly)) NameElevLabels(l, at, p->GetNome(), p->GetCoordZ(), h);
        }
    }
}
