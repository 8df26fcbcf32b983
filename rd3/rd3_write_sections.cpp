#include "rd3/rd3_write_sections.h"

#include "host/road.h"
#include "rd3/rd3_records.h"
#include "vesk/undefined.h"

namespace roadx::rd3 {

std::vector<Rd3SectionData> CollectSections(CRoad& road, bool& anyTemplate) {
    std::vector<Rd3SectionData> out;
    anyTemplate = false;
    CProfileAlti* prj = road.GetRoadProfile()->GetMainPrjAlti();
    for (int i = 0; i < road.GetNumSections(); ++i) {
        CProfile* section = road.GetSection(i);
        CSectionTemplate* tpl = section ? section->GetSectionTemplate() : nullptr;
        if (!tpl) continue;
        anyTemplate = true;
        const CProfileAlti* stf = section->FindProfileAlti("STF");
        if (!stf) continue;
        const auto walk = WalkStfLine(*stf);
        if (!walk) continue;
        bool ok = false;
        const double z0 = prj ? CalcQuoteAtAltiProg(prj, section->GetSectionProg(), ok) : vesk::kUndefined;
        if (!vesk::IsDefined(z0)) continue;
        out.push_back({section->GetSectionProg(), BuildSideLists(*walk, z0, SlopeAnglesOf(*tpl))});
    }
    return out;
}

void WriteTemplatesAndAssignments(Rd3FileOut& out, const Rd3Plan& plan) {
    out.PatchDirectory(2);
    Rd3Chain chain(out);
    for (const Rd3PlannedTemplate& t : plan.templates) {
        std::vector<RD3SegmentEntry> entries;
        entries.reserve(t.segments.size());
        for (const Rd3WriterSegment& s : t.segments) entries.push_back({s.code, s.v1, s.v2});
        out.Write(EncodeTemplateRecord(t.name, entries, chain.Link()));
    }
    out.PatchDirectory(3);
    out.Write(EncodeAssignListRecord(plan.assigns));
}

}  // namespace roadx::rd3
