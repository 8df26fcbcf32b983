#include "display/dis_lib_profile.h"

#include <algorithm>
#include <cmath>

#include "display/road_axis.h"
#include "host/document.h"

using namespace roadx::display;
using vesk::geom::PNT_3D;

namespace {

constexpr double kMaxSamples = 200000;  // grade-line samples per road at most
const PNT_3D kGap{vesk::kUndefined, vesk::kUndefined, vesk::kUndefined};

// The chainages where a line's elevation is sampled: every vertex, and a
// regular grid in between so that vertical curves keep their shape.
std::vector<double> GradeChainages(const CProfileAlti& line, double first, double last, double step) {
    std::vector<double> c;
    for (const TAltiVrt& v : line.Vrts()) {
        if (!IsDefinedValue(v.prog)) continue;
        c.push_back(v.prog);
        if (IsRaccVertAltiVrt(&v)) {
            c.push_back(v.racc.progStart);
            c.push_back(v.racc.progEnd);
        }
    }
    if (c.empty()) return c;
    const auto [lo, hi] = std::minmax_element(c.begin(), c.end());
    const double a = std::max(*lo, first), b = std::min(*hi, last);
    if (a < b) {
        // Counted, not accumulated: far from 0 a step may be below the
        // spacing of doubles.
        const double s = std::max(step, (b - a) / kMaxSamples);
        for (int i = 1; i < static_cast<int>(kMaxSamples); ++i) {
            const double x = a + i * s;
            if (!(x < b)) break;
            c.push_back(x);
        }
    }
    std::erase_if(c, [&](double x) { return !std::isfinite(x) || x < first || x > last; });
    std::sort(c.begin(), c.end());
    c.erase(std::unique(c.begin(), c.end()), c.end());
    return c;
}

}  // namespace

CDisLibProfile::CDisLibProfile(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibProfile) {}

void CDisLibProfile::AddAllProfiles() {
    if (!Ready()) return;
    AnnullaTutto();
    CLibRoad* lib = doc_->GetLibRoad();
    if (!lib || !doc_->GetLibProfile()) return;
    DrawingHandle d = 0;
    for (unsigned i = 0; i < lib->GetNumRoads(); ++i)
        if (CRoad* r = lib->GetRoad(i); r && !r->IsEmpty()) AddRoadProfiles(*r, d);
}

void CDisLibProfile::AddRoadProfiles(CRoad& road, DrawingHandle& d) {
    const std::vector<CPlaniElem*> elems = road.RetrieveLinkedPlaniElems();
    double first = INFINITY, last = -INFINITY;
    for (const CPlaniElem* e : elems) {
        if (!e || !DrawableElem(*e)) continue;
        first = std::fmin(first, e->GetProg());
        last = std::fmax(last, e->GetProg() + e->GetLength());
    }
    if (!(first <= last)) return;
    auto drawing = [&] {
        if (d == 0) d = EnsureTarget(*doc_->GetLibProfile(), kDrawingProfile);
        return d;
    };
    auto along = [&](double prog, double offset, double z) {
        PNT_2D p;
        if (!IsDefinedValue(z) || !AxisPoint(elems, prog, offset, p)) return kGap;
        return PNT_3D{p.x, p.y, z};
    };
    CProfile* prof = road.GetRoadProfile();
    // Grade line: sampled, since vertical curves bend between vertices.
    if (CProfileAlti* grade = prof->GetMainPrjAlti(); grade && !grade->IsEmpty()) {
        std::vector<PNT_3D> pts;
        for (double c : GradeChainages(*grade, first, last, kGradeStep)) {
            bool ok = false;
            const double z = CalcQuoteAtAltiProg(grade, c, ok);
            pts.push_back(ok ? along(c, 0.0, z) : kGap);
        }
        if (pts.size() >= 2) PolylineRuns(drawing(), pts, false);
    }
    // Terrain line: straight between its vertices.
    if (CProfileAlti* terr = prof->GetTerrAlti(); terr && !terr->IsEmpty()) {
        std::vector<PNT_3D> pts;
        for (const TAltiVrt& v : terr->Vrts())
            pts.push_back(IsDefinedValue(v.prog) ? along(v.prog, 0.0, v.quota) : kGap);
        if (pts.size() >= 2) PolylineRuns(drawing(), pts, false);
    }
    for (int s = 0; s < prof->GetNumSections(); ++s) {
        CProfile* sec = prof->GetSection(s);
        if (!sec) continue;
        const double prog = sec->GetSectionProg();
        PNT_2D probe;
        if (!AxisPoint(elems, prog, 0.0, probe)) continue;
        for (int l = 0; l < sec->GetNumProfileAlti(); ++l) {
            const CProfileAlti* line = sec->GetProfileAlti(l);
            if (!line || line->GetNumVrts() < 2) continue;
            std::vector<PNT_3D> pts;
            for (const TAltiVrt& v : line->Vrts())
                pts.push_back(IsDefinedValue(v.prog) ? along(prog, v.prog, v.quota) : kGap);
            PolylineRuns(drawing(), pts, false);
        }
    }
}
