#include "display/dis_lib_dtm.h"

#include "host/document.h"

using namespace roadx::display;

namespace roadx::display {

std::vector<std::vector<vesk::geom::PNT_3D>> ChainSegments(const std::vector<vesk::geom::LINE_3D>& segs) {
    std::vector<std::vector<vesk::geom::PNT_3D>> out;
    for (const auto& s : segs) {
        if (!out.empty() && out.back().back() == s.p1) {
            out.back().push_back(s.p2);
        } else {
            out.push_back({s.p1, s.p2});
        }
    }
    return out;
}

}  // namespace roadx::display

CDisLibDtm::CDisLibDtm(CZedraEng* eng, IVantriDati* doc) : CDisBase(eng, doc, kTagLibDtm) {}

DrawingHandle CDisLibDtm::GetTargetDrawingOfPrj(const CDtmPrj* prj) const { return prj ? prj->GetTargetDrawing() : 0; }

void CDisLibDtm::SetTargetDrawingOfPrj(CDtmPrj* prj, DrawingHandle h) {
    if (prj) prj->SetTargetDrawing(h);
}

void CDisLibDtm::AddAllDtm(bool visibleOnly) {
    if (!Ready()) return;
    AnnullaTutto();
    CLibDtm* lib = doc_->GetLibDtm();
    if (!lib) return;
    for (unsigned i = 0; i < lib->GetNoPrj(); ++i)
        if (CDtmPrj* prj = lib->GetPrj(i)) AddDtm(*prj, static_cast<int>(i), visibleOnly);
}

void CDisLibDtm::AddDtm(CDtmPrj& prj, int index, bool visibleOnly) {
    const CTris& tris = *prj.GetTris();
    if (tris.GetNoTris() == 0 && prj.GetCntsExt()->GetNoCnts() == 0 && prj.GetCntsInt()->GetNoCnts() == 0 &&
        prj.GetVncs()->GetNoVncs() == 0)
        return;
    const DrawingHandle d = EnsureTarget(prj, ObjectDrawingName(kPrefixDtm, prj.GetName(), index), true);
    if (!Shown(d, visibleOnly)) return;
    const roadx::cad::TEntAttr a = Attr(d);
    const auto& verts = tris.Verts();
    auto ok = [&](int32_t v) {
        if (v < 0 || static_cast<size_t>(v) >= verts.size()) return false;
        const auto& p = verts[static_cast<size_t>(v)];
        return IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z);
    };
    for (const CTri& t : tris.Tris()) {
        if (!ok(t.v[0]) || !ok(t.v[1]) || !ok(t.v[2])) continue;
        eng_->Add3DFace(a, verts[static_cast<size_t>(t.v[0])], verts[static_cast<size_t>(t.v[1])],
                        verts[static_cast<size_t>(t.v[2])]);
    }
    for (const CCnts* cnts : {prj.GetCntsExt(), prj.GetCntsInt()})
        for (int c = 0; c < cnts->GetNoCnts(); ++c) PolylineRuns(d, cnts->GetCntAt(c)->Vrts(), true);
    // Segments with an undefined end are left out, which also ends a chain.
    std::vector<vesk::geom::LINE_3D> segs;
    const CVncs& vncs = *prj.GetVncs();
    for (int v = 0; v < vncs.GetNoVncs(); ++v) {
        const auto l = vncs.GetVncAt(v)->GetCoords();
        const bool good = IsDefinedXY(l.p1.x, l.p1.y) && IsDefinedValue(l.p1.z) && IsDefinedXY(l.p2.x, l.p2.y) &&
                          IsDefinedValue(l.p2.z);
        if (good) {
            segs.push_back(l);
        } else {
            for (const auto& chain : ChainSegments(segs)) eng_->AddPolyline3D(a, chain, false);
            segs.clear();
        }
    }
    for (const auto& chain : ChainSegments(segs)) eng_->AddPolyline3D(a, chain, false);
}
