#include "display/dis_road.h"

#include <cmath>

#include "display/road_axis.h"
#include "host/document.h"

using namespace roadx::display;

namespace {
// Beyond these (chainages gone wild) only the ends get ticks.
constexpr double kMaxTicks = 1e6;
constexpr double kMaxChainage = 1e12;
}

CDisRoad::CDisRoad(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagRoad) {}

void CDisRoad::AddAllRoads() {
    if (!Ready()) return;
    AnnullaTutto();
    CLibRoad* lib = doc_->GetLibRoad();
    if (!lib) return;
    for (unsigned i = 0; i < lib->GetNumRoads(); ++i)
        if (CRoad* r = lib->GetRoad(i); r && !r->IsEmpty()) AddRoad(*r, static_cast<int>(i));
}

void CDisRoad::AddRoad(CRoad& road, int index) {
    const DrawingHandle d = EnsureTarget(road, ObjectDrawingName(kPrefixRoad, road.GetName(), index), true);
    const roadx::cad::TEntAttr a = Attr(d);
    const std::vector<CPlaniElem*> elems = road.RetrieveLinkedPlaniElems();
    double first = INFINITY, last = -INFINITY;
    for (const CPlaniElem* e : elems) {
        if (!e || !DrawableElem(*e)) continue;
        first = std::fmin(first, e->GetProg());
        last = std::fmax(last, e->GetProg() + e->GetLength());
        const PNT_2D s = e->GetStartPnt();
        const PNT_2D t = e->GetEndPnt();
        switch (e->GetType()) {
            case CPlaniElem::RETTIFILO: eng_->AddLine(a, {s.x, s.y, 0.0}, {t.x, t.y, 0.0}); break;
            case CPlaniElem::ARCO: {
                const auto* arc = static_cast<const CArcPlaniElem*>(e);
                const PNT_2D c = arc->GetCenter();
                if (arc->GetAngle() >= 2 * std::acos(-1.0) - 1e-12) {
                    eng_->AddCircle(a, {c.x, c.y, 0.0}, arc->GetRadius());
                    break;
                }
                const double as = std::atan2(s.y - c.y, s.x - c.x);
                const double at = std::atan2(t.y - c.y, t.x - c.x);
                if (arc->IsLeftTurn()) eng_->AddArc(a, {c.x, c.y, 0.0}, arc->GetRadius(), as, at);
                else eng_->AddArc(a, {c.x, c.y, 0.0}, arc->GetRadius(), at, as);
                break;
            }
            default: {
                std::vector<roadx::cad::TVertex2D> v;
                for (double dist : SampleDistances(*e, kAxisChordTol)) {
                    PNT_2D p;
                    e->GetPos(dist, p);
                    v.push_back({p.x, p.y, 0.0});
                }
                eng_->AddPolyline2D(a, v, false);
            }
        }
    }
    if (!(first <= last)) return;
    // Ticks at the multiples of the step strictly inside, long ones at the
    // ends.
    AddTick(d, elems, first, true);
    if ((last - first) / kTickStep > kMaxTicks || std::fabs(first) > kMaxChainage || std::fabs(last) > kMaxChainage) {
        AddTick(d, elems, last, true);
        return;
    }
    const long long k0 = static_cast<long long>(std::floor(first / kTickStep)) + 1;
    for (long long k = k0; static_cast<double>(k) * kTickStep < last - 1e-6; ++k) {
        const double prog = static_cast<double>(k) * kTickStep;
        if (prog <= first + 1e-6) continue;
        AddTick(d, elems, prog, k % kLabelEvery == 0);
    }
    AddTick(d, elems, last, true);
}

void CDisRoad::AddTick(DrawingHandle d, const std::vector<CPlaniElem*>& elems, double prog, bool labelled) {
    const double half = labelled ? kLongTickHalf : kTickHalf;
    PNT_2D l, r;
    if (!AxisPoint(elems, prog, -half, l) || !AxisPoint(elems, prog, half, r)) return;
    Line(d, {l.x, l.y, 0.0}, {r.x, r.y, 0.0});
    if (!labelled) return;
    // The text runs outward from the axis on its left.
    const double rot = std::atan2(l.y - r.y, l.x - r.x);
    PNT_2D at;
    if (!AxisPoint(elems, prog, -(half + 0.5), at)) return;
    Label(d, {at.x, at.y, 0.0}, kTextHeight, rot, FormatChainage(prog), roadx::cad::EHAlign::Left,
          roadx::cad::EVAlign::Middle);
}
