#include "display/dis_lib_gis.h"

#include "host/document.h"

using namespace roadx::display;

CDisLibGis::CDisLibGis(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibGis) {}

void CDisLibGis::CreaTutto() {
    if (!Ready()) return;
    AnnullaTutto();
    gis::CLibGis* lib = doc_->GetLibGis();
    if (!lib) return;
    DrawingHandle names = 0;
    for (int t = 0; t < lib->GetNumThemes(); ++t) {
        gis::CTheme* theme = lib->GetTheme(t);
        if (!theme || theme->Features().empty()) continue;
        const DrawingHandle d = EnsureTarget(*theme, ObjectDrawingName("GIS_", theme->GetName(), t));
        const vesk::geom::PNT_3D* firstDrawn = nullptr;
        for (const auto& f : theme->Features()) {
            if (f.kind == gis::CTheme::Feature::POINT) {
                if (f.pts.empty()) continue;
                const auto& p = f.pts.front();
                if (!IsDefinedXY(p.x, p.y) || !IsDefinedValue(p.z)) continue;
                Point(d, p);
                if (!firstDrawn) firstDrawn = &p;
                continue;
            }
            if (PolylineRuns(d, f.pts, f.kind == gis::CTheme::Feature::POLYGON) == 0 || firstDrawn) continue;
            for (const auto& p : f.pts)
                if (IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z)) {
                    firstDrawn = &p;
                    break;
                }
        }
        if (!firstDrawn) continue;
        if (names == 0) names = EnsureTarget(*lib, kDrawingGis);
        Label(names, *firstDrawn, kTextHeight, 0.0, theme->GetName(), roadx::cad::EHAlign::Left, roadx::cad::EVAlign::Bottom);
    }
}
