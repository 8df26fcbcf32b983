// The points (offset, elevation) of an imported cross section, built from
// its left and right templates outward from the axis at elevation z0. The
// list runs from the far left (negative offsets) to the far right.
#pragma once
#include <vector>

#include "rd3/rd3_template.h"
#include "vesk/geom.h"

namespace roadx::rd3 {

std::vector<vesk::geom::PNT_2D> SectionPoints(const std::vector<RD3TemplateSegment>& left,
                                              const std::vector<RD3TemplateSegment>& right, double z0);

// Half width of the section trace: the larger |offset| of the first and last
// point (10 without points), rounded up to a multiple of 10.
double SectionHalfWidth(const std::vector<vesk::geom::PNT_2D>& points);

}  // namespace roadx::rd3
