// Cross sections from the sorted assignments: one section per distinct
// chainage, numbered from 1, its sides from the templates the assignments
// name, a missing side interpolated between the nearest templates before and
// after it.
#include <cmath>

#include "host/load_vantri_dati.h"
#include "host/plani_elem.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_section_points.h"
#include "vesk/format.h"
#include "vesk/undefined.h"

namespace roadx::rd3 {
namespace {

double Margin(double p) { return 1e-12 + 1e-12 * std::fabs(p); }

// The nearest assignment before (step -1) or after (step +1) entry i, by
// more than the chainage margin, on a side other than the entry's own.
const RD3SectionAssign* Neighbour(const std::vector<RD3SectionAssign>& list, size_t i, int step) {
    const double p = list[i].prog;
    for (size_t j = i; step < 0 ? j-- > 0 : ++j < list.size();) {
        const RD3SectionAssign& a = list[j];
        const bool beyond = step < 0 ? a.prog < p - Margin(p) : a.prog > p + Margin(p);
        if (beyond && a.side != list[i].side) return &a;
    }
    return nullptr;
}

// The template for a side nobody assigned: a blend of the neighbours'.
ReadEnd Interpolate(ReadContext& ctx, size_t i, RD3SectionTemplate*& out) {
    const auto& list = ctx.assigns;
    if (i == 0 || i + 1 == list.size()) return ReadEnd::kNoNeighbour;
    const RD3SectionAssign* before = Neighbour(list, i, -1);
    const RD3SectionAssign* after = Neighbour(list, i, +1);
    if (!before || !after) return ReadEnd::kNoNeighbour;
    RD3SectionTemplate* a = FindTemplate(ctx, before->name);
    RD3SectionTemplate* b = FindTemplate(ctx, after->name);
    if (a == b) {
        out = a;
        return ReadEnd::kOk;
    }
    ctx.pairWork += static_cast<uint64_t>(a->segments.size() + 1) * (b->segments.size() + 1);
    if (ctx.pairWork > kMaxPairWork) return ReadEnd::kTooLarge;
    const double t = (list[i].prog - before->prog) / (after->prog - before->prog);
    auto blend = InterpolateTemplates(*a, *b, t);
    if (!blend) return ReadEnd::kTooLarge;
    ctx.sectionWork += blend->segments.size();
    if (ctx.sectionWork > kMaxSectionWork) return ReadEnd::kTooLarge;
    ctx.templates.push_back(std::make_unique<RD3SectionTemplate>(std::move(*blend)));
    out = ctx.templates.back().get();
    return ReadEnd::kOk;
}

// Builds section number n at p; false when the road gives it no place (no
// elevation or no plan element there).
bool BuildSection(ReadContext& ctx, int n, double p, const RD3SectionTemplate& left,
                  const RD3SectionTemplate& right) {
    CProfile* profile = ctx.road ? ctx.road->GetRoadProfile() : nullptr;
    CProfileAlti* prj = profile ? profile->GetMainPrjAlti() : nullptr;
    bool ok = false;
    const double z0 = prj ? CalcQuoteAtAltiProg(prj, p, ok) : vesk::kUndefined;
    if (!vesk::IsDefined(z0)) return false;

    const std::vector<vesk::geom::PNT_2D> points = SectionPoints(left.segments, right.segments, z0);
    const double w = SectionHalfWidth(points);
    const std::vector<CPlaniElem*> elems = ctx.road->RetrieveLinkedPlaniElems();
    CPlaniElem* elem = nullptr;
    double local = 0.0;
    if (!GetElemAtProg(elems, p, &elem, &local) || !elem) return false;

    VECTOR_2D normal;
    PNT_2D axis;
    elem->GetPerp(local, normal);
    elem->GetPos(local, axis);
    const PNT_2D p1 = axis + normal * -w;
    const PNT_2D p2 = axis + normal * w;
    VECTOR_2D dir = p2 - p1;
    const double length = dir.Length();
    dir.Normalize();
    vesk::String name;
    vesk_sprintf(name, "S%d", n);
    CPlaniElem* trace = new CRettifiloPlaniElem(-w, p1, dir, length);
    ctx.builder.AddSection(name, p, trace);
    trace->SubReference();  // the section keeps its own reference
    ctx.builder.AddSectionProfileAlti("PRO", points);
    return true;
}

}  // namespace

RD3SectionTemplate* FindTemplate(ReadContext& ctx, const RD3Name& name) {
    for (const auto& t : ctx.templates)
        if (t->name == name) return t.get();
    return ctx.templates.empty() ? nullptr : ctx.templates.front().get();
}

ReadEnd BuildSections(ReadContext& ctx) {
    const auto& list = ctx.assigns;
    if (ctx.templates.empty()) return ReadEnd::kOk;
    int n = 1;
    for (size_t i = 0; i < list.size(); ++i) {
        if (i > 0 && list[i].prog == list[i - 1].prog) continue;
        const RD3SectionAssign& e = list[i];
        RD3SectionTemplate* own = FindTemplate(ctx, e.name);
        RD3SectionTemplate* other = nullptr;
        if (e.side != kSideBoth && i + 1 < list.size() && list[i + 1].prog == e.prog)
            other = FindTemplate(ctx, list[i + 1].name);
        RD3SectionTemplate* left = e.side == kSideRight ? other : own;
        RD3SectionTemplate* right = e.side == kSideLeft ? other : own;
        if (!left || !right) {
            const ReadEnd s = Interpolate(ctx, i, left ? right : left);
            if (s != ReadEnd::kOk) return s;
        }
        ctx.sectionWork += left->segments.size() + right->segments.size() + 1;
        if (ctx.sectionWork > kMaxSectionWork) return ReadEnd::kTooLarge;
        BuildSection(ctx, n, e.prog, *left, *right);
        ++n;  // the number is used up whether or not a section was added
    }
    return ReadEnd::kOk;
}

}  // namespace roadx::rd3
