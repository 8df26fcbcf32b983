// Cross sections from the sorted assignments: one section per distinct
// chainage, numbered from 1, its sides from the templates the assignments
// name, a missing side interpolated between the nearest templates before and
// after it.
#include <cmath>
#include <string>

#include "host/load_vantri_dati.h"
#include "host/plani_elem.h"
#include "rd3/rd3_name.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_section_points.h"
#include "vesk/format.h"
#include "vesk/undefined.h"
#include "vesk/diagnostics.h"

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

std::string Station(double prog) { return vesk::diag::StationText(prog); }

std::string AssignPath(const RD3SectionAssign& a) { return "section assignment at station " + Station(a.prog); }

// The template an assignment names, saying when the name is unknown and the
// first template stands in for it.
RD3SectionTemplate* AssignedTemplate(ReadContext& ctx, const RD3SectionAssign& a) {
    if (ctx.sink) {
        bool known = false;
        for (const auto& t : ctx.templates) known = known || t->name == a.name;
        if (!known)
            Diag(ctx, "rd3-template-not-found", -1, AssignPath(a),
                 "the assignment names the template \"" + Utf16ToUtf8(a.name) + "\", which the file does not hold",
                 "the first template \"" + Utf16ToUtf8(ctx.templates.front()->name) + "\" used");
    }
    return FindTemplate(ctx, a.name);
}

// Assignments at the chainage of entry i beyond the `used` first ones: one
// section takes one template per side.
void ReportUnused(ReadContext& ctx, size_t i, size_t used) {
    const auto& list = ctx.assigns;
    for (size_t j = i + used; j < list.size() && list[j].prog == list[i].prog; ++j)
        Diag(ctx, "rd3-assignment-not-used", -1, AssignPath(list[j]),
             "another assignment at the same station already gives the section its template",
             "assignment not used");
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
        RD3SectionTemplate* own = AssignedTemplate(ctx, e);
        RD3SectionTemplate* other = nullptr;
        if (e.side != kSideBoth && i + 1 < list.size() && list[i + 1].prog == e.prog)
            other = AssignedTemplate(ctx, list[i + 1]);
        if (ctx.sink) ReportUnused(ctx, i, other ? 2 : 1);
        RD3SectionTemplate* left = e.side == kSideRight ? other : own;
        RD3SectionTemplate* right = e.side == kSideLeft ? other : own;
        if (!left || !right) {
            const ReadEnd s = Interpolate(ctx, i, left ? right : left);
            if (s != ReadEnd::kOk) return s;
        }
        ctx.sectionWork += left->segments.size() + right->segments.size() + 1;
        if (ctx.sectionWork > kMaxSectionWork) return ReadEnd::kTooLarge;
        if (!BuildSection(ctx, n, e.prog, *left, *right))
            Diag(ctx, "rd3-section-not-built", -1, "section S" + std::to_string(n) + " (station " + Station(e.prog) + ")",
                 "the road has no plan element or no profile elevation at the section's station",
                 "section not added; its number is skipped");
        ++n;  // the number is used up whether or not a section was added
    }
    return ReadEnd::kOk;
}

}  // namespace roadx::rd3
