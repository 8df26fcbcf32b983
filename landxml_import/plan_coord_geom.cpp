#include <cstring>
#include <string>
#include <vector>

#include "landxml_import/import_checks.h"
#include "landxml_import/plan_geometry.h"
#include "vesk/undefined.h"

TPlanRun::TPlanRun() : dir(vesk::kUndefined, vesk::kUndefined) {}

std::vector<int> PlanKindsInTextOrder(const std::string& xml) {
    static constexpr const char* kTags[3] = {"<Line", "<Curve", "<Spiral"};
    static constexpr int kKinds[3] = {PLAN_LINE, PLAN_CURVE, PLAN_SPIRAL};
    std::vector<int> kinds;
    // The next occurrence of each tag at or after the search position; only
    // the one taken is searched again, one character after it.
    size_t next[3];
    for (int k = 0; k < 3; ++k) next[k] = xml.find(kTags[k]);
    for (;;) {
        int first = -1;
        for (int k = 0; k < 3; ++k)
            if (next[k] != std::string::npos && (first < 0 || next[k] < next[first])) first = k;
        if (first < 0) break;
        kinds.push_back(kKinds[first]);
        next[first] = xml.find(kTags[first], next[first] + 1);
    }
    return kinds;
}

// The kinds come from the element's text, the elements of each kind from the
// reader's enumeration by tag.
std::vector<XmlSection> ElementsInDocumentOrder(const XmlSection& coordGeom) {
    const std::vector<int> kinds = PlanKindsInTextOrder(coordGeom.GetXML());
    std::vector<XmlSection> byKind[3];
    const char* tags[3] = {"Line", "Curve", "Spiral"};
    for (int k = 0; k < 3; ++k)
        for (const XmlSection e : coordGeom.Children(tags[k])) byKind[k].push_back(e);
    size_t taken[3] = {0, 0, 0};
    std::vector<XmlSection> ordered;
    ordered.reserve(kinds.size());
    for (const int kind : kinds) {
        const int k = kind - PLAN_LINE;
        if (taken[k] < byKind[k].size()) ordered.push_back(byKind[k][taken[k]++]);
    }
    return ordered;
}

bool ReadCoordGeom(const XmlSection& alignment, CLoadVantriDati& builder, uint32_t directionUnit,
                   uint32_t angularUnit, bool isMetric, TPlanRefusal* refusal,
                   roadx::landxml::EPlanGeometry geometry) {
    for (const XmlSection coordGeom : alignment.Children("CoordGeom")) {
        TPlanRun run;
        CheckCoordGeomChildren(coordGeom);
        for (const XmlSection& e : ElementsInDocumentOrder(coordGeom)) {
            const std::string_view tag = e.GetSectionName();
            CheckPlanElement(e);
            if (tag == "Line") {
                ReadLine(e, builder, directionUnit, isMetric, run.prog, run.dir, geometry);
            } else if (tag == "Curve") {
                ReadCurve(e, builder, directionUnit, angularUnit, isMetric, run.prog, run.dir, geometry);
            } else if (!ReadSpiral(e, builder, directionUnit, isMetric, run.prog, run.dir, refusal, geometry)) {
                return false;
            }
        }
    }
    return true;
}
