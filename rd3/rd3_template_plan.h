// Which section templates the writer puts in the file, under which names,
// and the assignments that place them. The first and last sections are
// always written; any other side only when the reader's interpolation
// between its neighbours cannot give it back.
#pragma once
#include <string>
#include <vector>

#include "rd3/rd3_format.h"
#include "rd3/rd3_section_lists.h"
#include "rd3/rd3_template.h"

namespace roadx::rd3 {

struct Rd3SectionData {
    double prog = 0.0;
    Rd3SideLists sides;
};

struct Rd3PlannedTemplate {
    RD3Name name;
    Rd3SegmentList segments;
};

struct Rd3Plan {
    std::vector<Rd3PlannedTemplate> templates;  // in writing order
    std::vector<RD3AssignEntry> assigns;        // in the order added
    bool sidesToldApart = false;
};

// Same count, and segment by segment the same code and values equal within
// 1e-4 + 1e-4 × |b's value|.
bool WriterListsEqual(const Rd3SegmentList& a, const Rd3SegmentList& b);

// The segments as the reader will hold them after reading this list back
// from a file and normalising it (names kept).
std::vector<RD3TemplateSegment> ImporterView(const Rd3SegmentList& list);

// True when no section's left list equals any section's right list.
bool SidesToldApart(const std::vector<Rd3SectionData>& sections);

// Per side, which segment positions vary from section to section. When the
// sides are not told apart, both sides share one set of marks.
struct Rd3VaryingMarks {
    std::vector<bool> marks[2];
    bool shared = false;
    const std::vector<bool>& For(int side) const { return marks[shared ? kLeft : side]; }
};
Rd3VaryingMarks ComputeVaryingMarks(const std::vector<Rd3SectionData>& sections, bool toldApart);

// Whether side (kLeft, kRight) of section i needs a template in the file.
bool SideNeedsTemplate(const std::vector<Rd3SectionData>& sections, size_t i, int side);

// The name of a new template: "<prefix>_P<100 × angle>%L<width>" from its
// widest varying code 22 segment, cut to 32 units, made unique among the
// assignment names with "_2", "_3", ...
RD3Name TemplateName(const std::string& prefix, const Rd3SegmentList& list, const std::vector<bool>& varying,
                     const std::vector<RD3AssignEntry>& assigns);

Rd3Plan PlanTemplates(const std::vector<Rd3SectionData>& sections);

}  // namespace roadx::rd3
