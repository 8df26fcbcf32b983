// What a drawing export of a document must hold, counted from the document
// itself by rules written out here (not by the display code): entities per
// layer and type, for check_drawing.py. The layer of each holder is
// "Grafica_" + the name of its drawing in the document's engine (the holders
// are back on those drawings after the export).
#pragma once
#include <cmath>
#include <map>
#include <numbers>
#include <string>

#include <nlohmann/json.hpp>

#include "cad/dxf_text.h"
#include "cad/zedra_eng.h"
#include "host/document.h"

namespace dxtest {

using TCounts = std::map<std::string, std::map<std::string, int>>;

inline bool Def(double v) { return std::isfinite(v) && std::fabs(v) < 8.5e199; }
inline bool DefPt(const vesk::geom::PNT_3D& p) { return Def(p.x) && Def(p.y) && Def(p.z); }

inline std::string LayerOf(CVantriDoc& doc, DrawingHandle h) {
    return roadx::cad::dxf::SanitizeTableName("Grafica_" + doc.GetZedraEng()->GetDrawingName(h));
}

// Runs of at least two consecutive defined vertices.
template <class Pred>
int Runs(int n, Pred defined) {
    int runs = 0, len = 0;
    for (int i = 0; i <= n; ++i) {
        if (i < n && defined(i)) {
            ++len;
            continue;
        }
        runs += len >= 2 ? 1 : 0;
        len = 0;
    }
    return runs;
}

inline int BoundaryLines(const std::vector<vesk::geom::PNT_3D>& v) {
    bool all = true;
    for (const auto& p : v) all = all && DefPt(p);
    if (all) return v.size() >= 2 ? 1 : 0;
    return Runs(static_cast<int>(v.size()), [&](int i) { return DefPt(v[static_cast<size_t>(i)]); });
}

inline void CountSurvey(CVantriDoc& doc, TCounts& c) {
    const std::string lp = LayerOf(doc, doc.GetLibPnt()->GetTargetDrawing());
    for (int g = 0; g < doc.GetLibPnt()->GetGrpArSize(); ++g) {
        const std::string layer = LayerOf(doc, doc.GetLibPnt()->GetGrpAt(g)->GetTargetDrawing());
        for (int i = 0; i < doc.GetLibPnt()->GetPtnArSize(g); ++i) {
            const CPunPnt* p = doc.GetLibPnt()->GetPtnAt(g, i);
            if (!Def(p->GetCoordX()) || !Def(p->GetCoordY())) continue;
            ++c[layer]["POINT"];
            c[lp]["TEXT"] += (p->GetNome().empty() ? 0 : 1) + (Def(p->GetCoordZ()) ? 1 : 0);
        }
    }
    const std::string lg = LayerOf(doc, doc.GetLibGps()->GetTargetDrawing());
    for (int g = 0; g < doc.GetLibGps()->GetGrpArSize(); ++g) {
        const CGrpGps* grp = doc.GetLibGps()->GetGrpAt(g);
        const std::string layer = LayerOf(doc, grp->GetTargetDrawing());
        const bool base = Def(grp->GetCoordX()) && Def(grp->GetCoordY());
        if (base) {
            ++c[layer]["POINT"];
            ++c[layer]["POLYLINE3D"];
            c[lg]["TEXT"] += (grp->GetNome().empty() ? 0 : 1) + (Def(grp->GetCoordZ()) ? 1 : 0);
        }
        for (int i = 0; i < doc.GetLibGps()->GetPunArSize(g); ++i) {
            const CPunGps* p = doc.GetLibGps()->GetPunAt(g, i);
            if (!Def(p->GetCoordX()) || !Def(p->GetCoordY())) continue;
            ++c[layer]["POINT"];
            c[layer]["LINE"] += base ? 1 : 0;
            c[lg]["TEXT"] += (p->GetNome().empty() ? 0 : 1) + (Def(p->GetCoordZ()) ? 1 : 0);
        }
    }
    CLibCmp* cmp = doc.GetLibCmp();
    const std::string lc = LayerOf(doc, cmp->GetTargetDrawing());
    for (int j = 0; j < cmp->GetJobArSize(); ++j) {
        const std::string layer = LayerOf(doc, cmp->GetJobAt(j)->GetTargetDrawing());
        for (int s = 0; s < cmp->GetStaArSize(j); ++s) {
            const CSta* st = cmp->GetStaAt(j, s);
            const bool sta = Def(st->GetCoordX()) && Def(st->GetCoordY());
            if (sta) {
                ++c[layer]["POINT"];
                ++c[layer]["CIRCLE"];
                c[lc]["TEXT"] += (st->GetNome().empty() ? 0 : 1) + (Def(st->GetCoordZ()) ? 1 : 0);
            }
            for (int i = 0; i < cmp->GetPunArSize(j, s); ++i) {
                const CPun* p = cmp->GetPunAt(j, s, i);
                if (!Def(p->GetCoordX()) || !Def(p->GetCoordY())) continue;
                ++c[layer]["POINT"];
                c[layer]["LINE"] += sta ? 1 : 0;
                c[lc]["TEXT"] += (p->GetNome().empty() ? 0 : 1) + (Def(p->GetCoordZ()) ? 1 : 0);
            }
        }
    }
}

inline void CountDtm(CVantriDoc& doc, TCounts& c) {
    for (unsigned i = 0; i < doc.GetLibDtm()->GetNoPrj(); ++i) {
        const CDtmPrj* prj = doc.GetLibDtm()->GetPrj(i);
        const std::string layer = LayerOf(doc, prj->GetTargetDrawing());
        const auto& v = prj->GetTris()->Verts();
        for (const CTri& t : prj->GetTris()->Tris()) {
            bool ok = true;
            for (int k = 0; k < 3; ++k)
                ok = ok && t.v[k] >= 0 && static_cast<size_t>(t.v[k]) < v.size() && DefPt(v[static_cast<size_t>(t.v[k])]);
            c[layer]["3DFACE"] += ok ? 1 : 0;
        }
        for (const CCnts* cs : {prj->GetCntsExt(), prj->GetCntsInt()})
            for (int k = 0; k < cs->GetNoCnts(); ++k) c[layer]["POLYLINE3D"] += BoundaryLines(cs->GetCntAt(k)->Vrts());
        // Breaklines: a chain goes on while each segment starts where the
        // last one ended; an undefined segment ends it.
        bool open = false;
        vesk::geom::PNT_3D end;
        for (int k = 0; k < prj->GetVncs()->GetNoVncs(); ++k) {
            const auto l = prj->GetVncs()->GetVncAt(k)->GetCoords();
            if (!DefPt(l.p1) || !DefPt(l.p2)) {
                open = false;
                continue;
            }
            if (!open || !(l.p1 == end)) ++c[layer]["POLYLINE3D"];
            open = true;
            end = l.p2;
        }
    }
}

inline void CountRoads(CVantriDoc& doc, TCounts& c) {
    const std::string lprof = LayerOf(doc, doc.GetLibProfile()->GetTargetDrawing());
    for (unsigned r = 0; r < doc.GetLibRoad()->GetNumRoads(); ++r) {
        CRoad* road = doc.GetLibRoad()->GetRoad(r);
        if (road->IsEmpty()) continue;
        const std::string layer = LayerOf(doc, road->GetTargetDrawing());
        double first = INFINITY, last = -INFINITY;
        for (const CPlaniElem* e : road->RetrieveLinkedPlaniElems()) {
            const double len = e->GetLength();
            if (!(len > 0) || !std::isfinite(len)) continue;
            first = std::fmin(first, e->GetProg());
            last = std::fmax(last, e->GetProg() + len);
            switch (e->GetType()) {
                case CPlaniElem::RETTIFILO: ++c[layer]["LINE"]; break;
                case CPlaniElem::ARCO:
                    ++c[layer][static_cast<const CArcPlaniElem*>(e)->GetAngle() >= 2 * std::numbers::pi - 1e-12 ? "CIRCLE" : "ARC"];
                    break;
                default: ++c[layer]["POLYLINE2D"];
            }
        }
        if (!(first < last)) continue;
        // Ticks: both ends (labelled) and every multiple of 20 m strictly
        // between them that an element covers (chainage equations leave
        // gaps), labelled at the multiples of 100 m.
        auto covered = [&](double prog) {
            for (const CPlaniElem* e : road->RetrieveLinkedPlaniElems())
                if (e->GetLength() > 0 && prog >= e->GetProg() - 1e-9 && prog <= e->GetProg() + e->GetLength() + 1e-9)
                    return true;
            return false;
        };
        int ticks = 2, labels = 2;
        for (long long k = static_cast<long long>(std::ceil(first / 20)); k * 20.0 < last - 1e-6; ++k) {
            if (k * 20.0 <= first + 1e-6 || !covered(k * 20.0)) continue;
            ++ticks;
            labels += k % 5 == 0 ? 1 : 0;
        }
        c[layer]["LINE"] += ticks;
        c[layer]["TEXT"] += labels;

        CProfile* prof = road->GetRoadProfile();
        auto inRoad = [&](double prog) { return prog >= first - 1e-9 && prog <= last + 1e-9; };
        if (CProfileAlti* g = prof->GetMainPrjAlti()) {
            double lo = INFINITY, hi = -INFINITY;
            for (const TAltiVrt& v : g->Vrts())
                if (Def(v.prog) && Def(v.quota)) lo = std::fmin(lo, v.prog), hi = std::fmax(hi, v.prog);
            if (std::fmax(lo, first) < std::fmin(hi, last)) ++c[lprof]["POLYLINE3D"];
        }
        if (CProfileAlti* t = prof->GetTerrAlti()) {
            const auto& v = t->Vrts();
            c[lprof]["POLYLINE3D"] += Runs(static_cast<int>(v.size()), [&](int i) {
                const TAltiVrt& x = v[static_cast<size_t>(i)];
                return Def(x.prog) && Def(x.quota) && inRoad(x.prog);
            });
        }
        for (int s = 0; s < prof->GetNumSections(); ++s) {
            CProfile* sec = prof->GetSection(s);
            if (!inRoad(sec->GetSectionProg())) continue;
            for (int l = 0; l < sec->GetNumProfileAlti(); ++l) {
                const auto& v = sec->GetProfileAlti(l)->Vrts();
                if (v.size() < 2) continue;
                c[lprof]["POLYLINE3D"] += Runs(static_cast<int>(v.size()), [&](int i) {
                    return Def(v[static_cast<size_t>(i)].prog) && Def(v[static_cast<size_t>(i)].quota);
                });
            }
        }
    }
}

inline void CountGisAndClouds(CVantriDoc& doc, bool clouds, TCounts& c) {
    gis::CLibGis* lib = doc.GetLibGis();
    for (int t = 0; t < lib->GetNumThemes(); ++t) {
        const gis::CTheme* th = lib->GetTheme(t);
        if (th->Features().empty()) continue;
        const std::string layer = LayerOf(doc, th->GetTargetDrawing());
        bool drawn = false;
        for (const auto& f : th->Features()) {
            if (f.kind == gis::CTheme::Feature::POINT) {
                const bool ok = !f.pts.empty() && DefPt(f.pts.front());
                c[layer]["POINT"] += ok ? 1 : 0;
                drawn = drawn || ok;
                continue;
            }
            int n = 0;
            if (f.kind == gis::CTheme::Feature::POLYGON) {
                n = BoundaryLines(f.pts);
            } else {
                n = Runs(static_cast<int>(f.pts.size()), [&](int i) { return DefPt(f.pts[static_cast<size_t>(i)]); });
            }
            c[layer]["POLYLINE3D"] += n;
            drawn = drawn || n > 0;
        }
        if (drawn) ++c[LayerOf(doc, lib->GetTargetDrawing())]["TEXT"];
    }
    if (!clouds) return;
    for (unsigned i = 0; i < doc.GetLibCld()->GetNoCld(); ++i) {
        const CCld* cld = doc.GetLibCld()->GetCld(i);
        for (const auto& p : cld->Points()) c[roadx::cad::dxf::SanitizeTableName(cld->GetName())]["POINT"] += DefPt(p) ? 1 : 0;
    }
}

// The whole expectation for check_drawing.py; contours are checked for their
// levels, not counted (minLines: how many lines there must be at least).
inline nlohmann::json Expect(CVantriDoc& doc, const std::string& version, double interval, int minLines,
                             bool clouds = true) {
    TCounts c;
    CountSurvey(doc, c);
    CountDtm(doc, c);
    CountRoads(doc, c);
    CountGisAndClouds(doc, clouds, c);
    nlohmann::json j;
    j["version"] = version;
    j["layers"] = nlohmann::json::object();
    for (const auto& [layer, kinds] : c)
        for (const auto& [k, n] : kinds)
            if (n) j["layers"][layer][k] = n;
    if (doc.GetCts()->GetTargetDrawing() != 0) {
        j["contours"] = {{"layer", LayerOf(doc, doc.GetCts()->GetTargetDrawing())},
                         {"interval", interval},
                         {"min_lines", minLines}};
    }
    return j;
}

}  // namespace dxtest
