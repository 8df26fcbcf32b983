#include "cli/summary.h"

#include "cli/extent.h"
#include "host/document.h"
#include "vesk/format.h"

namespace roadx::cli {

namespace {

using nlohmann::json;

json RoadSummary(CRoad& r) {
    json types = {{"line", 0}, {"arc", 0}, {"spiral", 0}, {"spiralBetweenArcs", 0}};
    for (CPlaniElem* e : r.RetrieveLinkedPlaniElems()) {
        switch (e->GetType()) {
            case CPlaniElem::RETTIFILO: types["line"] = types["line"].get<int>() + 1; break;
            case CPlaniElem::ARCO: types["arc"] = types["arc"].get<int>() + 1; break;
            case CPlaniElem::CLOTOIDE: types["spiral"] = types["spiral"].get<int>() + 1; break;
            default: types["spiralBetweenArcs"] = types["spiralBetweenArcs"].get<int>() + 1; break;
        }
    }
    json profile = {{"vertices", 0}, {"curves", 0}};
    if (CProfileAlti* prj = r.GetRoadProfile()->GetMainPrjAlti()) {
        int curves = 0;
        for (const TAltiVrt& v : prj->Vrts()) curves += IsRaccVertAltiVrt(&v) ? 1 : 0;
        profile = {{"vertices", prj->GetNumVrts()}, {"curves", curves}};
    }
    int sectionPoints = 0;
    for (int i = 0; i < r.GetNumSections(); ++i) {
        CProfile* s = r.GetSection(i);
        for (int k = 0; k < s->GetNumProfileAlti(); ++k) sectionPoints += s->GetProfileAlti(k)->GetNumVrts();
    }
    return {{"name", r.GetName()},
            {"elements", r.GetNumRoadPlaniElems()},
            {"elementTypes", types},
            {"startChainage", r.GetStartProg()},
            {"endChainage", r.GetEndProg()},
            {"length", r.GetEndProg() - r.GetStartProg()},
            {"profile", profile},
            {"sections", r.GetNumSections()},
            {"sectionPoints", sectionPoints},
            {"extent", RoadExtent(r).Json()}};
}

// `extent` is the surface's own (SurfaceExtent), worked out once: a
// surface may have millions of vertices.
json SurfaceSummary(const CDtmPrj& p, const CExtent& extent) {
    return {{"name", p.GetName()},
            {"vertices", p.GetTris()->GetNoTriVrts()},
            {"triangles", p.GetTris()->GetNoTris()},
            {"outerBoundaries", p.GetCntsExt()->GetNoCnts()},
            {"islands", p.GetCntsInt()->GetNoCnts()},
            {"breaklines", p.GetVncs()->GetNoVncs()},
            {"extent", extent.Json()}};
}

}  // namespace

nlohmann::json DocumentSummary(CVantriDoc& doc) {
    json s;
    CExtent all;
    s["roads"] = json::array();
    CLibRoad* roads = doc.GetLibRoad();
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        s["roads"].push_back(RoadSummary(*roads->GetRoad(i)));
        all.Add(RoadExtent(*roads->GetRoad(i)));
    }
    s["surfaces"] = json::array();
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i) {
        const CExtent extent = SurfaceExtent(*dtm->GetPrj(i));
        s["surfaces"].push_back(SurfaceSummary(*dtm->GetPrj(i), extent));
        all.Add(extent);
    }
    s["pointGroups"] = json::array();
    CLibPnt* pnt = doc.GetLibPnt();
    for (int i = 0; i < pnt->GetGrpArSize(); ++i) {
        const CExtent e = PointGroupExtent(*pnt, i);
        all.Add(e);
        s["pointGroups"].push_back(
            {{"name", pnt->GetGrpAt(i)->GetName()}, {"points", pnt->GetPtnArSize(i)}, {"extent", e.Json()}});
    }
    s["extent"] = all.Json();
    s["gpsGroups"] = json::array();
    CLibGps* gps = doc.GetLibGps();
    for (int i = 0; i < gps->GetGrpArSize(); ++i)
        s["gpsGroups"].push_back({{"name", gps->GetGrpAt(i)->GetNomeGrp()},
                                  {"base", gps->GetGrpAt(i)->GetNome()},
                                  {"points", gps->GetPunArSize(i)}});
    s["jobs"] = json::array();
    CLibCmp* cmp = doc.GetLibCmp();
    for (int j = 0; j < cmp->GetJobArSize(); ++j) {
        int obs = 0;
        for (int k = 0; k < cmp->GetStaArSize(j); ++k) obs += cmp->GetPunArSize(j, k);
        s["jobs"].push_back({{"name", cmp->GetJobAt(j)->GetNome()}, {"stations", cmp->GetStaArSize(j)},
                             {"observations", obs}});
    }
    s["sectionCodes"] = json::array();
    for (const TProfileAltiCode* c : doc.GetLibProfile()->GetSectionCodes())
        s["sectionCodes"].push_back({{"code", c->code}, {"name", c->name}});
    return s;
}

std::string SummaryText(const nlohmann::json& s) {
    std::string out;
    auto line = [&out](const std::string& l) { out += l; out += '\n'; };
    line(vesk::Format("Roads: %zu", s["roads"].size()));
    for (const auto& r : s["roads"]) {
        const auto& t = r["elementTypes"];
        line(vesk::Format("  %s: %d elements (%d lines, %d arcs, %d spirals, %d spirals between arcs), "
                          "chainage %.3f to %.3f, length %.3f m",
                          r["name"].get<std::string>().c_str(), r["elements"].get<int>(), t["line"].get<int>(),
                          t["arc"].get<int>(), t["spiral"].get<int>(), t["spiralBetweenArcs"].get<int>(),
                          r["startChainage"].get<double>(), r["endChainage"].get<double>(),
                          r["length"].get<double>()));
        line(vesk::Format("    profile: %d vertices, %d vertical curves; %d cross sections",
                          r["profile"]["vertices"].get<int>(), r["profile"]["curves"].get<int>(),
                          r["sections"].get<int>()));
    }
    line(vesk::Format("Surfaces: %zu", s["surfaces"].size()));
    for (const auto& p : s["surfaces"])
        line(vesk::Format("  %s: %d points, %d triangles, %d outer boundaries, %d islands, %d breaklines",
                          p["name"].get<std::string>().c_str(), p["vertices"].get<int>(), p["triangles"].get<int>(),
                          p["outerBoundaries"].get<int>(), p["islands"].get<int>(), p["breaklines"].get<int>()));
    line(vesk::Format("Point groups: %zu", s["pointGroups"].size()));
    for (const auto& g : s["pointGroups"])
        line(vesk::Format("  %s: %d points", g["name"].get<std::string>().c_str(), g["points"].get<int>()));
    line(vesk::Format("GPS groups: %zu", s["gpsGroups"].size()));
    for (const auto& g : s["gpsGroups"])
        line(vesk::Format("  %s (base %s): %d points", g["name"].get<std::string>().c_str(),
                          g["base"].get<std::string>().c_str(), g["points"].get<int>()));
    line(vesk::Format("Total-station jobs: %zu", s["jobs"].size()));
    for (const auto& j : s["jobs"])
        line(vesk::Format("  %s: %d stations, %d observations", j["name"].get<std::string>().c_str(),
                          j["stations"].get<int>(), j["observations"].get<int>()));
    return out;
}

}  // namespace roadx::cli
