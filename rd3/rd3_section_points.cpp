#include "rd3/rd3_section_points.h"

#include <algorithm>
#include <cmath>

#include "vesk/undefined.h"

namespace roadx::rd3 {
namespace {

using vesk::geom::PNT_2D;

struct Step {
    double dx;
    double dz;
};

Step StepOf(const RD3TemplateSegment& s) {
    switch (s.kind) {
        case kKindOffset:
        case kKindStep:
        case kKindWidthHeight: return {s.val1, s.val2};
        case kKindGrade: return {s.val2, s.val1 * s.val2};
        default: return {0.0, 0.0};
    }
}

bool HasMidPoint(const RD3TemplateSegment& s) { return s.kind == kKindOffset && s.val1 != 0.0; }

bool StartsAtAxis(const RD3TemplateSegment& s) {
    return s.kind == kKindStep || s.kind == kKindGrade || s.kind == kKindWidthHeight;
}

// The axis point shows up once when both sides start there: the first
// points of a side are added only when they differ from the list's last.
void AddIfNew(std::vector<PNT_2D>& pts, const PNT_2D& p) {
    if (pts.empty() || !(pts.back() == p)) pts.push_back(p);
}

void AppendSide(std::vector<PNT_2D>& pts, const std::vector<RD3TemplateSegment>& segs, double z0, double sign) {
    double x = 0.0;
    double z = z0;
    for (size_t i = 0; i < segs.size(); ++i) {
        const RD3TemplateSegment& s = segs[i];
        const Step st = StepOf(s);
        if (i == 0) {
            if (HasMidPoint(s)) {
                AddIfNew(pts, {sign * (s.val1 / 2.0), vesk::kUndefined});
            } else if (StartsAtAxis(s)) {
                AddIfNew(pts, {sign * 0.0, z0});
            }
            x = st.dx;
            z = z0 + st.dz;
            AddIfNew(pts, {sign * x, z});
            continue;
        }
        if (s.kind == kKindSlopes) continue;
        if (HasMidPoint(s)) pts.push_back({sign * (x + s.val1 / 2.0), vesk::kUndefined});
        x += st.dx;
        z += st.dz;
        pts.push_back({sign * x, z});
    }
}

}  // namespace

std::vector<PNT_2D> SectionPoints(const std::vector<RD3TemplateSegment>& left,
                                  const std::vector<RD3TemplateSegment>& right, double z0) {
    std::vector<PNT_2D> pts;
    AppendSide(pts, left, z0, -1.0);
    std::reverse(pts.begin(), pts.end());
    AppendSide(pts, right, z0, 1.0);
    return pts;
}

double SectionHalfWidth(const std::vector<PNT_2D>& points) {
    double w = 10.0;
    if (!points.empty()) w = std::max(std::fabs(points.front().x), std::fabs(points.back().x));
    return 10.0 * std::ceil(w / 10.0);
}

}  // namespace roadx::rd3
