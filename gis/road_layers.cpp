// Roads as GIS layers: the axis in 3D with the station as M, its elements,
// the cross sections' traces and their lines placed in 3D along the trace.
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "display/road_axis.h"
#include "gis/layers.h"
#include "gis/vector_writer.h"
#include "host/document.h"

namespace roadx::gis {

namespace {

// The axis's chord tolerance, and the same for the design profile's
// vertical curves: the 3D line stays within a millimetre of both.
constexpr double kChordTol = 0.001;
// Most vertices one vertical curve is cut into.
constexpr double kMaxCurvePieces = 100000;
constexpr double kRadToDeg = 57.29577951308232;

bool Finite(double v) { return std::isfinite(v) && vesk::IsDefined(v); }

// Chainages where the profile changes grade: its principal vertices, and
// enough points inside each vertical curve that the chords stay within the
// tolerance of the parabola (curvature |g2 - g1| / L, sagitta k·h²/8).
std::vector<double> ProfileChainages(const CProfileAlti& line) {
    std::vector<double> out;
    for (const TAltiVrt& v : line.Vrts()) {
        if (!IsPrincAltiVrt(&v) || !Finite(v.prog)) continue;
        if (IsRaccVertAltiVrt(&v) && Finite(v.racc.progStart) && Finite(v.racc.progEnd)) {
            const double len = v.racc.progEnd - v.racc.progStart;
            const double k = std::fabs(v.racc.gradeOut - v.racc.gradeIn) / len;
            if (len > 0.0 && std::isfinite(k) && k > 0.0) {
                const double n = std::fmin(kMaxCurvePieces, std::ceil(len / std::sqrt(8.0 * kChordTol / k)));
                for (double i = 0; i <= n; ++i) out.push_back(v.racc.progStart + len * i / n);
                continue;
            }
        }
        out.push_back(v.prog);
    }
    return out;
}

// The axis within the tolerance in plan, element by element, with the
// profile's chainages that fall inside an element added to it. Each
// element places its own points (chains from files may have gaps or
// overlapping chainages; a point is never looked up in another element).
// An end shared with the next element's start appears once.
std::vector<display::TAxisVertex> AxisWithProfile(const std::vector<CPlaniElem*>& elems, const CProfileAlti* line) {
    std::vector<double> extra = line ? ProfileChainages(*line) : std::vector<double>();
    std::sort(extra.begin(), extra.end());
    std::vector<display::TAxisVertex> out;
    std::vector<double> local;
    for (const CPlaniElem* e : elems) {
        if (!e || !display::DrawableElem(*e)) continue;
        const double len = e->GetLength(), prog = e->GetProg();
        local = display::SampleDistances(*e, kChordTol);
        const auto from = std::upper_bound(extra.begin(), extra.end(), prog + 1e-9);
        for (auto it = from; it != extra.end() && *it < prog + len - 1e-9; ++it) local.push_back(*it - prog);
        std::sort(local.begin(), local.end());
        for (double d : local) {
            PNT_2D p;
            e->GetPos(d, p);
            const display::TAxisVertex v{p.x, p.y, prog + d};
            if (!out.empty() && out.back().x == v.x && out.back().y == v.y && out.back().prog == v.prog) continue;
            out.push_back(v);
        }
    }
    return out;
}

void WriteAlignment(CRoad& road, CVectorWriter& w) {
    const std::vector<CPlaniElem*> elems = road.RetrieveLinkedPlaniElems();
    const CProfileAlti* prj = road.GetRoadProfile()->GetMainPrjAlti();
    if (prj && prj->IsEmpty()) prj = nullptr;
    const std::vector<display::TAxisVertex> axis = AxisWithProfile(elems, prj);
    if (axis.size() < 2) return;
    auto line = std::make_unique<OGRLineString>();
    line->setNumPoints(static_cast<int>(axis.size()));
    for (size_t i = 0; i < axis.size(); ++i) {
        bool ok = false;
        double z = prj ? CalcQuoteAtAltiProg(prj, axis[i].prog, ok) : 0.0;
        if (!ok || !Finite(z)) z = 0.0;  // no design elevation here
        line->setPoint(static_cast<int>(i), w.Plan(axis[i].x), w.Plan(axis[i].y), z, axis[i].prog);
    }
    OGRFeature& f = w.New();
    SetText(f, "name", road.GetName());
    SetReal(f, "sta_start", road.GetStartProg());
    SetReal(f, "sta_end", road.GetEndProg());
    SetReal(f, "length", road.GetEndProg() - road.GetStartProg());
    SetInt(f, "elements", road.GetNumRoadPlaniElems());
    SetInt(f, "profile", prj ? 1 : 0);
    w.Add(std::move(line));
}

const char* KindName(CPlaniElem::Type t) {
    switch (t) {
        case CPlaniElem::RETTIFILO: return "line";
        case CPlaniElem::ARCO: return "arc";
        case CPlaniElem::CLOTOIDE: return "spiral";
        default: return "spiralBetweenArcs";
    }
}

void WriteElement(const CRoad& road, int index, const CPlaniElem& e, CVectorWriter& w) {
    if (!display::DrawableElem(e)) return;
    auto line = std::make_unique<OGRLineString>();
    for (double d : display::SampleDistances(e, kChordTol)) {
        PNT_2D p;
        e.GetPos(d, p);
        line->addPoint(w.Plan(p.x), w.Plan(p.y));
    }
    const double len = e.GetLength();
    OGRFeature& f = w.New();
    SetText(f, "road", road.GetName());
    SetInt(f, "index", index);
    SetText(f, "kind", KindName(e.GetType()));
    SetReal(f, "sta_start", e.GetProg());
    SetReal(f, "sta_end", e.GetProg() + len);
    SetReal(f, "length", len);
    if (e.GetType() == CPlaniElem::ARCO) SetReal(f, "radius", e.GetRad(0.0));
    if (e.GetType() == CPlaniElem::CLOTOIDE || e.GetType() == CPlaniElem::CLOTOIDE_CONT) {
        SetReal(f, "r_start", e.GetRad(0.0));  // infinite (a straight end) stays null
        SetReal(f, "r_end", e.GetRad(len));
        SetReal(f, "clot_a", e.GetType() == CPlaniElem::CLOTOIDE
                                 ? static_cast<const CClotPlaniElem&>(e).GetClotoide().GetA()
                                 : static_cast<const CClotContPlaniElem&>(e).GetClotoide().GetA());
    }
    if (e.GetType() != CPlaniElem::RETTIFILO) {
        SetText(f, "turn", e.IsLeftTurn() ? "left" : "right");
        SetReal(f, "angle_deg", e.GetAngleDev() * kRadToDeg);
    }
    w.Add(std::move(line));
}

// The points of a section line: every vertex of the terrain, the principal
// vertices of a design line (as the LandXML export takes them), cut into
// runs at undefined vertices; runs of one point are dropped.
std::vector<std::vector<PNT_2D>> SectionRuns(CProfileAlti& line) {
    std::vector<std::vector<PNT_2D>> runs(1);
    auto take = [&runs](const TAltiVrt& v) {
        if (Finite(v.prog) && Finite(v.quota)) {
            runs.back().emplace_back(v.prog, v.quota);
        } else if (!runs.back().empty()) {
            if (runs.back().size() < 2) runs.back().clear();
            else runs.emplace_back();
        }
    };
    if (line.IsTerr()) {
        for (const TAltiVrt& v : line.Vrts()) take(v);
    } else {
        for (TAltiVrt* v = line.FindNextPrincVrt(-1); v; v = line.FindNextPrincVrt(v)) take(*v);
    }
    if (runs.back().size() < 2) runs.pop_back();
    return runs;
}

void WriteSection(CRoad& road, CProfile& s, CVectorWriter& w) {
    const CPlaniElem* trace = s.GetTrace();
    if (!trace) return;
    const PNT_2D a = trace->GetStartPnt(), b = trace->GetEndPnt();
    auto line = std::make_unique<OGRLineString>();
    line->addPoint(w.Plan(a.x), w.Plan(a.y));
    line->addPoint(w.Plan(b.x), w.Plan(b.y));
    OGRFeature& f = w.New();
    SetText(f, "road", road.GetName());
    SetText(f, "name", s.GetName());
    SetReal(f, "station", s.GetSectionProg());
    SetReal(f, "length", trace->GetLength());
    w.Add(std::move(line));
}

void WriteSectionLines(CRoad& road, CProfile& s, CVectorWriter& w) {
    const CPlaniElem* trace = s.GetTrace();
    if (!trace) return;
    for (int k = 0; k < s.GetNumProfileAlti(); ++k) {
        CProfileAlti* line = s.GetProfileAlti(k);
        if (!line) continue;
        const TProfileAltiCode* code = s.GetLibProfile() ? s.GetLibProfile()->FindSectionAltiCode(line->GetCode())
                                                         : nullptr;
        for (const std::vector<PNT_2D>& run : SectionRuns(*line)) {
            auto g = std::make_unique<OGRLineString>();
            for (const PNT_2D& v : run) {
                // The trace's own chainage is the offset where it starts.
                PNT_2D p;
                trace->GetPos(v.x - trace->GetProg(), p);
                g->addPoint(w.Plan(p.x), w.Plan(p.y), v.y);
            }
            OGRFeature& f = w.New();
            SetText(f, "road", road.GetName());
            SetText(f, "section", s.GetName());
            SetReal(f, "station", s.GetSectionProg());
            SetText(f, "code", line->GetCode());
            SetText(f, "code_name", code ? std::string(code->name) : std::string());
            SetInt(f, "terrain", line->IsTerr() ? 1 : 0);
            w.Add(std::move(g));
        }
    }
}

template <class Fn>
void ForEachRoad(IVantriDati& doc, Fn&& fn) {
    CLibRoad* lib = doc.GetLibRoad();
    for (unsigned i = 0; lib && i < lib->GetNumRoads(); ++i)
        if (CRoad* r = lib->GetRoad(i)) fn(*r);
}

}  // namespace

void WriteRoadLayers(IVantriDati& doc, CVectorWriter& w) {
    w.Begin(LayerDef("alignments"));
    ForEachRoad(doc, [&](CRoad& r) { WriteAlignment(r, w); });
    w.Begin(LayerDef("alignment_elements"));
    ForEachRoad(doc, [&](CRoad& r) {
        const std::vector<CPlaniElem*> elems = r.RetrieveLinkedPlaniElems();
        for (size_t i = 0; i < elems.size(); ++i)
            if (elems[i]) WriteElement(r, static_cast<int>(i), *elems[i], w);
    });
    w.Begin(LayerDef("cross_sections"));
    ForEachRoad(doc, [&](CRoad& r) {
        for (int i = 0; i < r.GetNumSections(); ++i)
            if (CProfile* s = r.GetSection(i)) WriteSection(r, *s, w);
    });
    w.Begin(LayerDef("cross_section_lines"));
    ForEachRoad(doc, [&](CRoad& r) {
        for (int i = 0; i < r.GetNumSections(); ++i)
            if (CProfile* s = r.GetSection(i)) WriteSectionLines(r, *s, w);
    });
}

}  // namespace roadx::gis
