#include "landxml_import/import_scan.h"

#include <algorithm>

namespace {

// The `name` attribute; "" when there is none.
CString NameOf(const XmlSection& e) {
    CString name;
    PX_String(e, "name", name);
    return name;
}

void AddCrossSectSurfNames(const XmlSection& alignment, std::vector<CString>& names) {
    for (const XmlSection sects : alignment.Children("CrossSects"))
        for (const XmlSection sect : sects.Children("CrossSect"))
            for (const XmlSection surf : sect.Children("CrossSectSurf")) {
                CString name = NameOf(surf);
                if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
            }
}

bool HasPointData(const XmlSection& root) {
    if (root.IsSectionExists("CgPoints")) return true;
    for (const XmlSection survey : root.Children("Survey"))
        if (survey.IsSectionExists("InstrumentSetup") || survey.IsSectionExists("GPSSetup")) return true;
    return false;
}

}  // namespace

TLandXmlContents ScanLandXml(const XmlSection& root) {
    TLandXmlContents c;
    for (const XmlSection surfaces : root.Children("Surfaces"))
        for (const XmlSection surface : surfaces.Children("Surface")) c.surfaceNames.push_back(NameOf(surface));
    for (const XmlSection alignments : root.Children("Alignments"))
        for (const XmlSection alignment : alignments.Children("Alignment")) {
            c.alignmentNames.push_back(NameOf(alignment));
            AddCrossSectSurfNames(alignment, c.crossSectSurfNames);
        }
    c.hasPointData = HasPointData(root);
    return c;
}
