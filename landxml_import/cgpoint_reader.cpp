// Coordinate points: every CgPoints element of the root, then of each Survey,
// is one point group of its direct CgPoint children. Points that a survey
// referenced by name were imported with the survey and are left out; points
// without exactly three coordinates are skipped, and a group left empty is
// not created.
#include <string_view>

#include "landxml_import/import_diag.h"
#include "landxml_import/point_sources.h"
#include "landxml_import/readers.h"

namespace {

void ImportCgPointGroup(const XmlSection& group, CLoadVantriDati& builder, bool isMetric,
                        const PointTable& referenced) {
    CString groupName;
    PX_String(group, "name", groupName);
    bool created = false;
    CString name;
    for (XmlSection point : group.Children("CgPoint")) {
        name.clear();
        PX_String(point, "name", name);
        if (referenced.count(name) != 0) continue;
        TNorthEastElev p;
        if (!ReadThreeNumbers(point, isMetric, p)) {
            // A point given by pntRef alone has no text: it loses nothing.
            if (point.Text().find_first_not_of(" \t\r\n") != std::string_view::npos)
                DiagReport("cgpoint-not-three-numbers", point,
                           "CgPoint has not exactly three coordinates (northing, easting, elevation)",
                           "not imported");
            continue;
        }
        if (!created) {
            builder.AddGrpPnt(groupName);
            created = true;
        }
        builder.AddPunPnt(name, p.east, p.north, p.elev);
    }
}

}  // namespace

void ImportCgPoints(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced) {
    for (XmlSection group : root.Children("CgPoints")) ImportCgPointGroup(group, builder, isMetric, referenced);
    for (XmlSection survey : root.Children("Survey"))
        for (XmlSection group : survey.Children("CgPoints")) ImportCgPointGroup(group, builder, isMetric, referenced);
}
