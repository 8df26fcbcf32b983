// The pictures of the page, each one inline SVG.
#pragma once
#include <string>
#include <vector>

#include "report/report_model.h"

class CVantriDoc;

namespace roadx::report {

// The plan: surfaces (faces or contours, boundaries, breaklines), road axes
// by element kind with stations, points and stations, north arrow, scale
// bar and extent coordinates.
std::string PlanSvg(CVantriDoc& doc, const std::vector<TRoadView>& roads);
// The long profile of one road: design line, PVIs, curves, ground line.
std::string ProfileSvg(const TRoadView& road);
// One small chart of a cross section.
std::string SectionSvg(const TSectionView& s);

}  // namespace roadx::report
