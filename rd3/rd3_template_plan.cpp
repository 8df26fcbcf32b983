#include "rd3/rd3_template_plan.h"

#include <algorithm>
#include <cmath>

#include "vesk/format.h"

namespace roadx::rd3 {
namespace {

constexpr size_t kTemplateNameUnits = 32;

bool Differs(double v, double first) { return std::fabs(v - first) > 1e-12 + 1e-12 * std::fabs(first); }

bool Compared(const Rd3WriterSegment& s) { return s.code != kCodeSlopes && s.code != kCodeOffset; }

// Narrows the marks with one list against the first section's list.
void MarkVarying(std::vector<bool>& marks, const Rd3SegmentList& list, const Rd3SegmentList& first) {
    const size_t n = std::min(list.size(), first.size());
    for (size_t i = 0; i < n; ++i) {
        if (!Compared(list[i]) || !Compared(first[i])) continue;
        if (Differs(list[i].v1, first[i].v1) || Differs(list[i].v2, first[i].v2)) marks[i] = true;
    }
}

bool NameTaken(const RD3Name& name, const std::vector<RD3AssignEntry>& assigns) {
    return std::any_of(assigns.begin(), assigns.end(), [&](const RD3AssignEntry& a) { return a.name == name; });
}

// Drops n units from the end, and the high half of a pair that would be
// left without its low half.
void DropUnits(RD3Name& name, size_t n) {
    name.resize(name.size() > n ? name.size() - n : 0);
    if (!name.empty() && name.back() >= 0xD800 && name.back() <= 0xDBFF) name.pop_back();
}

const Rd3WriterSegment* WidestVaryingGrade(const Rd3SegmentList& list, const std::vector<bool>& varying) {
    const Rd3WriterSegment* best = nullptr;
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i].code != kCodeGrade || i >= varying.size() || !varying[i]) continue;
        if (!best || list[i].v2 > best->v2 + 1e-12 + 1e-12 * std::fabs(best->v2)) best = &list[i];
    }
    return best;
}

// Nearest section before (step -1) or after (+1) i whose list on side is
// not empty.
const Rd3SectionData* NonEmptyNeighbour(const std::vector<Rd3SectionData>& s, size_t i, int side, int step) {
    for (size_t j = i; step < 0 ? j-- > 0 : ++j < s.size();)
        if (!s[j].sides.lists[side].empty()) return &s[j];
    return nullptr;
}

}  // namespace

bool WriterListsEqual(const Rd3SegmentList& a, const Rd3SegmentList& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].code != b[i].code || !TemplateValuesEqual(a[i].v1, b[i].v1) || !TemplateValuesEqual(a[i].v2, b[i].v2))
            return false;
    return true;
}

std::vector<RD3TemplateSegment> ImporterView(const Rd3SegmentList& list) {
    std::vector<RD3TemplateSegment> out;
    out.reserve(list.size());
    for (const Rd3WriterSegment& w : list) {
        RD3TemplateSegment s;
        // Code 25 goes out as 23; every code the writer makes is known.
        SegmentFromCode(w.code == kCodeSteep ? kCodeStep : w.code, w.v1, w.v2, s);
        s.name = w.name;
        out.push_back(std::move(s));
    }
    NormaliseSegments(out);
    return out;
}

bool SidesToldApart(const std::vector<Rd3SectionData>& sections) {
    for (const Rd3SectionData& a : sections)
        for (const Rd3SectionData& b : sections)
            if (WriterListsEqual(a.sides.lists[kLeft], b.sides.lists[kRight])) return false;
    return true;
}

Rd3VaryingMarks ComputeVaryingMarks(const std::vector<Rd3SectionData>& sections, bool toldApart) {
    Rd3VaryingMarks m;
    m.shared = !toldApart;
    if (sections.empty()) return m;
    for (int side : {kLeft, kRight}) {
        std::vector<bool>& marks = m.marks[m.shared ? kLeft : side];
        size_t longest = marks.size();
        for (const Rd3SectionData& s : sections) longest = std::max(longest, s.sides.lists[side].size());
        marks.resize(longest, false);
        for (const Rd3SectionData& s : sections) MarkVarying(marks, s.sides.lists[side], sections[0].sides.lists[side]);
    }
    return m;
}

bool SideNeedsTemplate(const std::vector<Rd3SectionData>& sections, size_t i, int side) {
    if (i == 0 || i + 1 >= sections.size()) return true;
    const Rd3SectionData& here = sections[i];
    const Rd3SegmentList& list = here.sides.lists[side];
    if (list.empty() && !here.sides.absent[side]) return false;
    const Rd3SectionData* before = NonEmptyNeighbour(sections, i, side, -1);
    const Rd3SectionData* after = NonEmptyNeighbour(sections, i, side, +1);
    const Rd3SegmentList none;
    const Rd3SegmentList& a = before ? before->sides.lists[side] : none;
    const Rd3SegmentList& b = after ? after->sides.lists[side] : none;
    if (WriterListsEqual(list, a) && WriterListsEqual(list, b)) return false;
    // Without both neighbours the reader has nothing sure to blend: write.
    if (!before || !after) return true;
    const auto va = ImporterView(a);
    const auto vb = ImporterView(b);
    const auto steps = PairSegments(va, vb);
    if (!steps) return true;
    const double t = (here.prog - before->prog) / (after->prog - before->prog);
    return !SegmentListsEqual(ImporterView(list), BlendSegments(va, vb, *steps, t));
}

RD3Name TemplateName(const std::string& prefix, const Rd3SegmentList& list, const std::vector<bool>& varying,
                     const std::vector<RD3AssignEntry>& assigns) {
    const Rd3WriterSegment* g = WidestVaryingGrade(list, varying);
    const double p = g ? 100.0 * g->v1 : 0.0;
    const double l = g ? g->v2 : 0.0;
    RD3Name name = CutUtf16(Utf8ToUtf16(vesk::Format("%s_P%.1f%%L%.2f", prefix.c_str(), p, l)), kTemplateNameUnits);
    for (int counter = 2; NameTaken(name, assigns); ++counter) {
        const RD3Name suffix = Utf8ToUtf16(vesk::Format("_%d", counter));
        if (counter == 2) {
            if (name.size() >= 31) name = CutUtf16(name, 30);
        } else {
            DropUnits(name, suffix.size());
        }
        name += suffix;
    }
    return name;
}

Rd3Plan PlanTemplates(const std::vector<Rd3SectionData>& sections) {
    Rd3Plan plan;
    plan.sidesToldApart = SidesToldApart(sections);
    const Rd3VaryingMarks marks = ComputeVaryingMarks(sections, plan.sidesToldApart);
    for (size_t i = 0; i < sections.size(); ++i) {
        for (int side : {kLeft, kRight}) {
            if (!SideNeedsTemplate(sections, i, side)) continue;
            const Rd3SegmentList& list = sections[i].sides.lists[side];
            auto same = std::find_if(plan.templates.begin(), plan.templates.end(),
                                     [&](const Rd3PlannedTemplate& t) { return WriterListsEqual(t.segments, list); });
            RD3Name name;
            if (same != plan.templates.end()) {
                name = same->name;
            } else {
                const std::string prefix = !plan.sidesToldApart ? "Sez" : side == kLeft ? "Sez_Sx" : "Sez_Dx";
                name = TemplateName(prefix, list, marks.For(side), plan.assigns);
                plan.templates.push_back({name, list});
            }
            plan.assigns.push_back({name, sections[i].prog, side == kLeft ? kFileSideLeft : kFileSideRight});
        }
    }
    return plan;
}

}  // namespace roadx::rd3
