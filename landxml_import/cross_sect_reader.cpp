// Cross sections of one Alignment: each CrossSect with surfaces gets a
// straight trace laid across the road at its station, from the lowest to the
// highest offset of its points (the axis always included), and one section
// line per surface that the user mapped to a section code.
#include <cmath>
#include <string>
#include <vector>

#include "host/plani_elem.h"
#include "host/road.h"
#include "landxml_import/import_diag.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/readers.h"
#include "landxml_import/text_lists.h"
#include "vesk/format.h"
#include "vesk/refcounter.h"

namespace {

using vesk::geom::PNT_2D;
using vesk::geom::VECTOR_2D;

// Chainage and offset tolerance.
double Tol(double a) { return 1e-12 + 1e-12 * std::fabs(a); }

[[noreturn]] void ThrowOddCount(const XmlSection& surf, size_t count) {
    const XmlSection crossSect(surf.Node().parent());
    const XmlSection alignment(crossSect.Node().parent().parent());
    throw CLandXmlImportEnded("alignment " + QuoteForMessage(alignment.Attribute("name")) + ", CrossSect " +
                              QuoteForMessage(crossSect.Attribute("name")) + " at sta " +
                              QuoteForMessage(crossSect.Attribute("sta")) + ", CrossSectSurf " +
                              QuoteForMessage(surf.Attribute("name")) + ": a PntList2D of " + CountOfNumbers(count) +
                              ", where every offset needs an elevation");
}

// Calls fn(point) for every (offset, elevation) pair of every PntList2D of a
// CrossSectSurf. An odd count ends the import: the last offset has no
// elevation.
template <class Fn>
void ForEachSectionPoint(const XmlSection& surf, bool isMetric, std::vector<double>& nums, Fn&& fn) {
    for (XmlSection list : surf.Children("PntList2D")) {
        nums.clear();
        ReadDoubleList(list.Text(), nums, isMetric);
        if (nums.size() % 2 != 0) ThrowOddCount(surf, nums.size());
        for (size_t k = 0; 2 * k < nums.size(); ++k) fn(PNT_2D(nums[2 * k], nums[2 * k + 1]));
    }
}

// The section's offset range, starting from the axis.
struct TOffsetRange {
    double lowest = 0.0;
    double highest = 0.0;

    void Take(double x) {
        if (std::isfinite(lowest) ? lowest - Tol(lowest) > x : lowest > x) lowest = x;
        if (std::isfinite(highest) ? x > highest + Tol(highest) : x > highest) highest = x;
    }
    bool HasWidth() const { return lowest + Tol(lowest) < highest; }
};

// The section's plan trace, or null when it has no width or its station lies
// outside the road's plan. The trace's own chainage is the offset from the
// axis; the host's normal decides which side is positive.
CPlaniElem* MakeSectionTrace(const XmlSection& crossSect, CRoad* road, double station, bool isMetric) {
    TOffsetRange range;
    std::vector<double> nums;
    for (XmlSection surf : crossSect.Children("CrossSectSurf"))
        ForEachSectionPoint(surf, isMetric, nums, [&](const PNT_2D& p) { range.Take(p.x); });
    if (!range.HasWidth() || road == nullptr) return nullptr;

    // The road lends its elements for this query; their references stay
    // with the road.
    const std::vector<CPlaniElem*> elems = road->RetrieveLinkedPlaniElems();
    CPlaniElem* elem = nullptr;
    double local = 0.0;
    if (!GetElemAtProg(elems, station, &elem, &local)) return nullptr;
    PNT_2D axis;
    VECTOR_2D normal;
    elem->GetPos(local, axis);
    elem->GetPerp(local, normal);
    const PNT_2D p1 = axis + normal * range.lowest;
    const PNT_2D p2 = axis + normal * range.highest;
    VECTOR_2D dir = p2 - p1;
    dir.Normalize();
    return new CRettifiloPlaniElem(range.lowest, p1, dir, vesk::geom::dist(p1, p2));
}

// One surface's points in reading order. A point is kept when it extends the
// line to the right of the last point kept that way, or (turning back) to the
// left of the leftmost start; such a turn-back point is stored at the end but
// becomes the start that later points are compared with. Repeats and points
// falling inside the covered range are dropped.
// `dropped` counts the points dropped that are not a repeat of the one
// before.
void ReadCrossSectSurf(const XmlSection& surf, bool isMetric, vesk::String& name, std::vector<PNT_2D>& points,
                       int64_t& dropped) {
    dropped = 0;
    name.clear();
    PX_String(surf, "name", name);
    points.clear();
    PNT_2D first, last;
    std::vector<double> nums;
    ForEachSectionPoint(surf, isMetric, nums, [&](const PNT_2D& p) {
        if (points.empty()) {
            first = last = p;
        } else if (p.x >= last.x && !(p == last)) {
            last = p;
        } else if (p.x <= first.x && !(p == first)) {
            first = p;
        } else {
            if (!(p == points.back())) ++dropped;
            return;
        }
        points.push_back(p);
    });
}

// The code a surface is stored under: the first non-empty code among the
// pairs that name it, or empty.
vesk::String CodeOfSurface(const CrossSectCodes& codes, const vesk::String& surface) {
    vesk::String code;
    for (const auto& [name, c] : codes) {
        if (!code.empty()) break;
        if (name == surface) code = c;
    }
    return code;
}

void ImportCrossSect(const XmlSection& crossSect, CLoadVantriDati& builder, CRoad* road, const CrossSectCodes& codes,
                     bool isMetric) {
    if (!crossSect.IsSectionExists("CrossSectSurf")) return;
    double station = 0.0;
    PX_Double(crossSect, "sta", station);
    if (!isMetric) FeetToMeters(station);
    vesk::String name;
    PX_String(crossSect, "name", name);
    if (name.empty()) name = vesk::Format("S%f", station);

    vesk::RefPtr<CPlaniElem> trace(MakeSectionTrace(crossSect, road, station, isMetric));
    if (!trace) {
        DiagReport("cross-sect-not-imported", crossSect,
                   "CrossSect has no width (all its points at one offset) or its station lies outside the road's "
                   "plan",
                   "not imported");
        return;
    }
    // The section keeps its own reference to the trace.
    builder.AddSection(name, station, trace.get());

    vesk::String surfName;
    std::vector<PNT_2D> points;
    int64_t dropped = 0;
    for (XmlSection surf : crossSect.Children("CrossSectSurf")) {
        ReadCrossSectSurf(surf, isMetric, surfName, points, dropped);
        if (points.empty()) continue;
        if (surfName.empty()) {
            DiagReport("cross-sect-surf-unnamed", surf, "CrossSectSurf without a name", "not imported");
            continue;
        }
        const vesk::String code = CodeOfSurface(codes, surfName);
        if (!code.empty() && dropped > 0)
            DiagReport("cross-sect-point-dropped", surf,
                       "CrossSectSurf point neither right of the points before it nor left of all of them (the line "
                       "turns back)",
                       "not imported", dropped);
        if (!code.empty()) builder.AddSectionProfileAlti(code, points);
        else
            DiagReport("cross-sect-surf-no-code", surf,
                       "CrossSectSurf " + QuoteForMessage(surfName) + " maps to no section code",
                       "not imported (--section-code SURFACE=CODE maps it)");
    }
}

}  // namespace

bool ImportCrossSects(const XmlSection& alignment, CLoadVantriDati& builder, CRoad* road, const CrossSectCodes& codes,
                      bool isMetric) {
    for (XmlSection crossSects : alignment.Children("CrossSects"))
        for (XmlSection crossSect : crossSects.Children("CrossSect"))
            ImportCrossSect(crossSect, builder, road, codes, isMetric);
    return true;
}
