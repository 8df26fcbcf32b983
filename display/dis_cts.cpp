#include "display/dis_cts.h"

#include <cmath>
#include <numbers>

#include "display/tin_contours.h"
#include "host/document.h"
#include "vesk/format.h"

using namespace roadx::display;

namespace {

constexpr long long kIndexEvery = 5;
constexpr double kLabelHeight = 1.0;  // metres

// Direction of the text along a segment, turned so that it never reads
// upside down.
double ReadableAngle(const vesk::geom::PNT_3D& a, const vesk::geom::PNT_3D& b) {
    double ang = std::atan2(b.y - a.y, b.x - a.x);
    if (ang > std::numbers::pi / 2) ang -= std::numbers::pi;
    if (ang <= -std::numbers::pi / 2) ang += std::numbers::pi;
    return ang;
}

// "100", "100.5", "100.25": the level without trailing zeros.
std::string LevelText(double z) {
    std::string t = vesk::Format("%.2f", z);
    while (!t.empty() && t.back() == '0') t.pop_back();
    if (!t.empty() && t.back() == '.') t.pop_back();
    return t == "-0" ? "0" : t;
}

}  // namespace

CDisCts::CDisCts(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagCts) {}

void CDisCts::CreaTutto(bool b3D, bool visibleOnly) {
    if (!Ready()) return;
    AnnullaTutto();
    CCts* cts = doc_->GetCts();
    CLibDtm* lib = doc_->GetLibDtm();
    if (!cts || !lib || !cts->IsEnabled()) return;
    DrawingHandle d = 0;
    for (unsigned i = 0; i < lib->GetNoPrj(); ++i) {
        const CDtmPrj* prj = lib->GetPrj(i);
        if (!prj || prj->GetTris()->GetNoTris() == 0) continue;
        const DrawingHandle own = prj->GetTargetDrawing();
        if (visibleOnly && own != 0 && eng_->FindDrawing(own) && !Shown(own, true)) continue;
        const std::vector<TContour> lines = ComputeContours(*prj->GetTris(), cts->GetInterval());
        if (lines.empty()) continue;
        if (d == 0) {
            d = EnsureTarget(*cts, kDrawingCts);
            if (!Shown(d, visibleOnly)) return;
        }
        for (const TContour& c : lines) {
            if (c.pts.size() < 2) continue;
            std::vector<vesk::geom::PNT_3D> pts = c.pts;
            if (!b3D)
                for (auto& p : pts) p.z = 0.0;
            if (eng_->AddPolyline3D(Attr(d), pts, c.closed && pts.size() > 2) == 0) continue;
            if (c.level % kIndexEvery != 0) continue;
            const size_t m = (pts.size() - 1) / 2;
            const vesk::geom::PNT_3D& a = pts[m];
            const vesk::geom::PNT_3D& b = pts[m + 1];
            Label(d, {(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2}, kLabelHeight, ReadableAngle(a, b),
                  LevelText(c.z), roadx::cad::EHAlign::Center, roadx::cad::EVAlign::Middle);
        }
    }
}
