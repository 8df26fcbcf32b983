#include "report/report_model.h"

#include <cmath>

#include "display/road_axis.h"
#include "host/dtm.h"
#include "host/profile.h"
#include "host/road.h"
#include "vesk/undefined.h"

namespace roadx::report {

namespace {

constexpr double kAxisTol = 0.001;   // the JSON axis: 1 mm chord error
constexpr int kCurveSamples = 24;    // points drawn inside a vertical curve

using vesk::geom::PNT_2D;

void AddElems(TRoadView& v, const std::vector<CPlaniElem*>& elems) {
    for (CPlaniElem* e : elems) {
        if (!display::DrawableElem(*e)) continue;
        TElemView ev;
        ev.kind = ElemKindName(e->GetType());
        ev.startProg = e->GetProg();
        ev.endProg = e->GetProg() + e->GetLength();
        ev.start = e->GetStartPnt();
        ev.end = e->GetEndPnt();
        for (const display::TAxisVertex& p : display::AxisPolyline({e}, kAxisTol)) ev.pts.push_back({p.x, p.y});
        v.elems.push_back(std::move(ev));
    }
    for (const display::TAxisVertex& p : display::AxisPolyline(elems, kAxisTol)) {
        v.axis.push_back(p.x);
        v.axis.push_back(p.y);
        v.axis.push_back(p.prog);
    }
}

void AddDesign(TRoadView& v, const CProfileAlti* prj) {
    if (!prj) return;
    for (const TAltiVrt& a : prj->Vrts()) {
        if (!IsPrincAltiVrt(&a) || !vesk::IsDefined(a.prog) || !vesk::IsDefined(a.quota)) continue;
        TPvi p{a.prog, a.quota, IsRaccVertAltiVrt(&a), a.racc.progStart, a.racc.progEnd};
        v.pvis.push_back(p);
    }
    // The design line: straight between PVIs, sampled inside curves.
    for (const TPvi& p : v.pvis) {
        bool ok = false;
        if (p.curve && p.curveEnd > p.curveStart) {
            for (int k = 0; k <= kCurveSamples; ++k) {
                const double s = p.curveStart + (p.curveEnd - p.curveStart) * k / kCurveSamples;
                const double z = CalcQuoteAtAltiProg(prj, s, ok);
                if (ok && (v.design.empty() || s > v.design.back().x)) v.design.push_back({s, z});
            }
        } else if (v.design.empty() || p.prog > v.design.back().x) {
            const double z = CalcQuoteAtAltiProg(prj, p.prog, ok);
            v.design.push_back({p.prog, ok ? z : p.z});
        }
    }
}

TLineView LineView(CProfileAlti* line, CLibProfile* lib) {
    TLineView lv;
    lv.terrain = line->IsTerr();
    const TProfileAltiCode* code = lib ? lib->FindSectionAltiCode(line->GetCode()) : nullptr;
    lv.code = code ? std::string(code->name) : std::string(line->GetCode());
    std::vector<PNT_2D> run;
    for (const TAltiVrt& a : line->Vrts()) {
        if (!lv.terrain && !IsPrincAltiVrt(&a)) continue;
        if (vesk::IsDefined(a.prog) && vesk::IsDefined(a.quota)) {
            run.push_back({a.prog, a.quota});
            continue;
        }
        if (run.size() > 1) lv.runs.push_back(run);
        run.clear();
    }
    if (run.size() > 1) lv.runs.push_back(run);
    return lv;
}

}  // namespace

const char* ElemKindName(int type) {
    switch (type) {
        case CPlaniElem::RETTIFILO: return "line";
        case CPlaniElem::ARCO: return "arc";
        case CPlaniElem::CLOTOIDE: return "clothoid";
        default: return "continuity_clothoid";
    }
}

TRoadView MakeRoadView(CRoad& road, CLibProfile* lib, const CDtmPrj* fallbackTerrain) {
    TRoadView v;
    v.name = road.GetName();
    v.startProg = road.GetStartProg();
    v.endProg = road.GetEndProg();
    const std::vector<CPlaniElem*> elems = road.RetrieveLinkedPlaniElems();
    AddElems(v, elems);
    CProfile* prof = road.GetRoadProfile();
    AddDesign(v, prof->GetMainPrjAlti());
    const CProfileAlti* terr = prof->GetTerrAlti();
    const CDtmPrj* dtm = terr ? terr->GetDtmPrj() : nullptr;
    if (dtm) {
        v.ground = terr->GetGround();
    } else if (fallbackTerrain) {
        dtm = fallbackTerrain;
        v.ground = SampleGround({elems.begin(), elems.end()}, dtm->GetGrid());
    }
    for (int i = 0; i < road.GetNumSections(); ++i) {
        CProfile* s = road.GetSection(i);
        TSectionView sv;
        sv.name = s->GetName();
        sv.prog = s->GetSectionProg();
        for (int k = 0; k < s->GetNumProfileAlti(); ++k) sv.lines.push_back(LineView(s->GetProfileAlti(k), lib));
        if (dtm && s->GetTrace()) sv.dtm = SampleGround({s->GetTrace()}, dtm->GetGrid());
        v.sections.push_back(std::move(sv));
    }
    return v;
}

}  // namespace roadx::report
