// The "roadx-data" JSON: every key is described in docs/report.md.
#include <algorithm>
#include <cmath>

#include "host/document.h"
#include "report/report.h"
#include "report/report_model.h"
#include "vesk/diagnostics.h"
#include "vesk/undefined.h"

namespace roadx::report {

namespace {

using nlohmann::json;

json Num(double v) { return std::isfinite(v) && vesk::IsDefined(v) ? json(v) : json(nullptr); }

json RoadJson(const TRoadView& v) {
    json r = {{"name", v.name}, {"start_station", Num(v.startProg)}, {"end_station", Num(v.endProg)}};
    json& elems = r["elements"] = json::array();
    for (const TElemView& e : v.elems)
        elems.push_back({{"kind", e.kind},
                         {"start_station", Num(e.startProg)},
                         {"end_station", Num(e.endProg)},
                         {"start", {Num(e.start.x), Num(e.start.y)}},
                         {"end", {Num(e.end.x), Num(e.end.y)}}});
    json& axis = r["axis"] = json::array();
    for (size_t i = 0; i + 2 < v.axis.size(); i += 3) axis.push_back({v.axis[i], v.axis[i + 1], v.axis[i + 2]});
    json& pvis = r["pvis"] = json::array();
    for (const TPvi& p : v.pvis) {
        json j = {{"station", Num(p.prog)}, {"z", Num(p.z)}};
        if (p.curve) j["curve"] = {Num(p.curveStart), Num(p.curveEnd)};
        pvis.push_back(j);
    }
    json& design = r["design_profile"] = json::array();
    for (const auto& p : v.design) design.push_back({Num(p.x), Num(p.y)});
    json& ground = r["ground_profile"] = json::array();
    for (const TGroundVrt& g : v.ground) ground.push_back({Num(g.prog), Num(g.z)});
    json& sections = r["sections"] = json::array();
    for (const TSectionView& s : v.sections) {
        json lines = json::array();
        for (const TLineView& l : s.lines)
            for (const auto& run : l.runs) {
                json pts = json::array();
                for (const auto& p : run) pts.push_back({Num(p.x), Num(p.y)});
                lines.push_back({{"code", l.code}, {"terrain", l.terrain}, {"points", pts}});
            }
        json dtm = json::array();
        for (const TGroundVrt& g : s.dtm) dtm.push_back({Num(g.prog), Num(g.z)});
        sections.push_back({{"name", s.name}, {"station", Num(s.prog)}, {"lines", lines}, {"ground", dtm}});
    }
    return r;
}

json SurfaceJson(const CDtmPrj& p) {
    const auto& verts = p.GetTris()->Verts();
    double e[6] = {HUGE_VAL, HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (const PNT_3D& v : verts) {
        if (!vesk::IsDefined(v.x) || !vesk::IsDefined(v.y) || !vesk::IsDefined(v.z)) continue;
        e[0] = std::min(e[0], v.x), e[1] = std::min(e[1], v.y), e[2] = std::min(e[2], v.z);
        e[3] = std::max(e[3], v.x), e[4] = std::max(e[4], v.y), e[5] = std::max(e[5], v.z);
    }
    json extent = json::array();
    for (double x : e) extent.push_back(Num(x));
    return {{"name", p.GetName()},
            {"points", p.GetTris()->GetNoTriVrts()},
            {"triangles", p.GetTris()->GetNoTris()},
            {"extent", extent},
            {"drawn_faces", size_t(p.GetTris()->GetNoTris()) <= kMaxDrawnFaces}};
}

json PointJson(const CEgn& e) { return {e.GetNome(), Num(e.GetCoordX()), Num(e.GetCoordY()), Num(e.GetCoordZ())}; }

}  // namespace

json WarningJson(const vesk::diag::TRecord& r) {
    return {{"severity", vesk::diag::SeverityName(r.severity)},
            {"kind", r.kind},
            {"file", r.file},
            {"line", r.line},
            {"element", r.element},
            {"message", r.message},
            {"instead", r.instead},
            {"count", r.count}};
}

json ReportDataFromViews(CVantriDoc& doc, const std::vector<TRoadView>& roads, const TReportInput& in,
                         const vesk::diag::CSink& sink) {
    json d;
    d["format"] = "roadx-report";
    d["version"] = 1;
    d["inputs"] = in.inputs;
    d["roads"] = json::array();
    for (const TRoadView& v : roads) d["roads"].push_back(RoadJson(v));
    d["surfaces"] = json::array();
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i) d["surfaces"].push_back(SurfaceJson(*dtm->GetPrj(i)));
    d["point_groups"] = json::array();
    CLibPnt* pnt = doc.GetLibPnt();
    for (int g = 0; g < pnt->GetGrpArSize(); ++g) {
        json pts = json::array();
        for (int i = 0; i < pnt->GetPtnArSize(g); ++i) pts.push_back(PointJson(*pnt->GetPtnAt(g, i)));
        d["point_groups"].push_back({{"name", pnt->GetGrpAt(g)->GetName()}, {"points", pts}});
    }
    d["stations"] = json::array();
    CLibCmp* cmp = doc.GetLibCmp();
    for (int j = 0; j < cmp->GetJobArSize(); ++j)
        for (int s = 0; s < cmp->GetStaArSize(j); ++s) {
            json st = PointJson(*cmp->GetStaAt(j, s));
            st.push_back(cmp->GetJobAt(j)->GetNome());
            d["stations"].push_back(st);
        }
    d["warnings"] = json::array();
    for (const vesk::diag::TRecord& r : sink.Records()) d["warnings"].push_back(WarningJson(r));
    d["summary"] = in.summary;
    return d;
}

json ReportData(CVantriDoc& doc, const TReportInput& in, const vesk::diag::CSink& sink) {
    std::vector<TRoadView> roads;
    CLibRoad* lib = doc.GetLibRoad();
    for (unsigned i = 0; i < lib->GetNumRoads(); ++i)
        roads.push_back(MakeRoadView(*lib->GetRoad(i), doc.GetLibProfile(), in.terrain));
    return ReportDataFromViews(doc, roads, in, sink);
}

}  // namespace roadx::report
