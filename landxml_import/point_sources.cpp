#include "landxml_import/point_sources.h"

#include "landxml_import/fixed_numbers.h"

bool CCgPointIndex::FindCgPoint(std::string_view name, XmlSection& found) {
    if (!built_) {
        built_ = true;
        for (XmlSection group : source_.Children("CgPoints"))
            for (XmlSection point : group.Children("CgPoint")) first_.try_emplace(point.Attribute("name"), point);
    }
    const auto it = first_.find(name);
    if (it == first_.end()) return false;
    found = it->second;
    return true;
}

bool ReadThreeNumbers(const XmlSection& elem, bool isMetric, TNorthEastElev& out) {
    TFixedNumbers<double, 3> n;
    ReadFixed(elem.Text(), isMetric, n);
    if (n.count != 3) return false;
    out = {n.v[0], n.v[1], n.v[2]};
    return true;
}

bool FindCgPointCoords(const TPointSources& sources, std::string_view name, bool isMetric, TNorthEastElev& out) {
    for (CCgPointIndex* source : {sources.root, sources.survey}) {
        XmlSection point;
        if (source && source->FindCgPoint(name, point) && ReadThreeNumbers(point, isMetric, out)) return true;
    }
    return false;
}

bool ResolvePoint(const XmlSection& elem, const TPointSources& sources, bool isMetric, PointTable& referenced,
                  TNorthEastElev& out) {
    if (ReadThreeNumbers(elem, isMetric, out)) return true;
    const std::string_view ref = elem.Attribute("pntRef");
    if (ref.empty() || !FindCgPointCoords(sources, ref, isMetric, out)) return false;
    referenced.insert(vesk::String(ref));
    return true;
}
