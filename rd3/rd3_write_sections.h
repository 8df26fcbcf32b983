// The writer's section part: templates (type 21 chain) and the assignment
// list (type 31).
#pragma once
#include <vector>

#include "rd3/rd3_file_out.h"
#include "rd3/rd3_template_plan.h"

class CRoad;

namespace roadx::rd3 {

// The sections of the road that can go into the file: each with a template,
// an "STF" line with at least one usable vertex, and a project elevation at
// its chainage. anyTemplate tells whether any section has a template at all.
std::vector<Rd3SectionData> CollectSections(CRoad& road, bool& anyTemplate);

// Directory slots 3 and 4, the templates and the assignment list.
void WriteTemplatesAndAssignments(Rd3FileOut& out, const Rd3Plan& plan);

}  // namespace roadx::rd3
