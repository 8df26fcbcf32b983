#include "landxml_import/import_checks.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "host/road.h"
#include "landxml_import/import_diag.h"

namespace {

std::string Quote(std::string_view s) { return "\"" + std::string(s) + "\""; }

std::string Number(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.6g", v);
    return buf;
}

// Counts the elements with a tag anywhere below `e`.
int64_t CountBelow(const XmlSection& e, const char* tag) {
    int64_t n = 0;
    for (pugi::xml_node c = e.Node().first_child(); c; c = c.next_sibling()) {
        if (c.type() != pugi::node_element) continue;
        if (std::string_view(c.name()) == tag) ++n;
        n += CountBelow(XmlSection(c), tag);
    }
    return n;
}

bool Chosen(const std::vector<CString>& chosen, std::string_view name) {
    return std::find(chosen.begin(), chosen.end(), name) != chosen.end();
}

void CheckAngleUnit(const XmlSection& system, const char* attribute) {
    if (!system.IsPropertyExists(attribute)) return;
    const std::string_view text = system.Attribute(attribute);
    if (text == "radians" || text == "grads" || text == "decimal degrees") return;
    DiagReport("angle-unit-not-read", system,
               std::string(attribute) + " " + Quote(text) + " is not one of \"radians\", \"grads\", \"decimal degrees\"",
               "values used as written, without a unit");
}

// Profile content beside the design vertices: terrain profiles (ProfSurf)
// and vertical elements other than PVI, ParaCurve and CircCurve.
void CheckProfiles(const XmlSection& alignment) {
    for (const XmlSection profile : alignment.Children("Profile")) {
        for (const XmlSection surf : profile.Children("ProfSurf"))
            DiagReport("prof-surf-not-imported", surf, "ProfSurf (a terrain profile along the road) not imported",
                       "only ProfAlign is read");
        for (const XmlSection align : profile.Children("ProfAlign"))
            for (pugi::xml_node c = align.Node().first_child(); c; c = c.next_sibling()) {
                if (c.type() != pugi::node_element) continue;
                const std::string_view tag = c.name();
                if (tag == "PVI" || tag == "ParaCurve" || tag == "CircCurve" || tag == "Feature") continue;
                DiagReport("profile-element-not-read", XmlSection(c), Quote(tag) + " in ProfAlign is not read",
                           "left out of the design line");
            }
    }
}

// Numbers in a text, counted by its blank-separated tokens (the numbers
// themselves are read, and checked, by the surface reader).
size_t TokenCount(std::string_view text) {
    size_t n = 0;
    bool in = false;
    for (char c : text) {
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!blank && !in) ++n;
        in = !blank;
    }
    return n;
}

// A breakline is imported as the segment between its first two points: its
// further points are lost, which the user is told.
void CheckBreaklines(const XmlSection& surface) {
    CImportDiagScope* diag = CImportDiagScope::Current();
    for (const XmlSection data : surface.Children("SourceData"))
        for (const XmlSection lines : data.Children("Breaklines"))
            for (const XmlSection line : lines.Children("Breakline"))
                for (const char* tag : {"PntList3D", "PntList2D"})
                    for (const XmlSection list : line.Children(tag))
                        if (TokenCount(list.Text()) > (tag[7] == '3' ? 6u : 4u))
                            diag->Report("breakline-points-ignored", line,
                                         "Breakline of more than two points: only the segment between its first two "
                                         "is imported",
                                         "its further points ignored", 1);
}

void CheckObservationGroups(const XmlSection& survey, bool ddmmss) {
    for (const XmlSection group : survey.Children("ObservationGroup")) {
        const int64_t n = CountBelow(group, "RawObservation");
        if (n == 0) continue;
        if (ddmmss)
            DiagReport("observation-angle-format", group,
                       "RawObservation not imported (angles in \"dd.mm.ss\" are not read)", "", n);
        else
            DiagReport("observation-group-not-read", group,
                       "RawObservation not imported (observations inside ObservationGroup are not read)", "", n);
    }
}

}  // namespace

// The units as the import reads them, as a note for `info`: the last
// Metric or Imperial element counts (Imperial after Metric within one Units).
static void NoteUnits(const XmlSection& root) {
    XmlSection last;
    for (const XmlSection units : root.Children("Units")) {
        for (const XmlSection m : units.Children("Metric")) last = m;
        for (const XmlSection i : units.Children("Imperial")) last = i;
    }
    std::vector<std::pair<std::string, std::string>> v;
    const bool imperial = !last.IsEmpty() && last.GetSectionName() == "Imperial";
    v.emplace_back("system", last.IsEmpty() ? "none (metric assumed)" : std::string(last.GetSectionName()));
    v.emplace_back("linearUnit", last.IsEmpty() ? "" : std::string(last.Attribute("linearUnit")));
    v.emplace_back("lengthsReadAs", imperial ? "US survey foot (0.3048006096012 m)" : "metre");
    auto angle = [&](const char* name) {
        const std::string text = last.IsEmpty() ? "" : std::string(last.Attribute(name));
        v.emplace_back(name, text);
        const char* as = text == "radians"           ? "radians"
                         : text == "grads"           ? "grads (azimuth from north, clockwise)"
                         : text == "decimal degrees" ? "decimal degrees"
                                                     : "not read (values used as written)";
        v.emplace_back(std::string(name) + "ReadAs", as);
    };
    angle("directionUnit");
    angle("angularUnit");
    CImportDiagScope::Current()->Note("units", last, "units as read", std::move(v));
}

void CheckUnits(const XmlSection& root) {
    if (!CImportDiagScope::Current()) return;
    NoteUnits(root);
    for (const XmlSection units : root.Children("Units")) {
        for (const XmlSection m : units.Children("Metric")) {
            const std::string_view lin = m.Attribute("linearUnit");
            if (m.IsPropertyExists("linearUnit") && lin != "meter")
                DiagReport("length-unit-not-read", m, "linearUnit " + Quote(lin) + " is not read",
                           "lengths taken as metres");
            CheckAngleUnit(m, "directionUnit");
            CheckAngleUnit(m, "angularUnit");
        }
        for (const XmlSection i : units.Children("Imperial")) {
            const std::string_view lin = i.Attribute("linearUnit");
            if (lin == "foot")
                DiagReport("length-unit-foot", i,
                           "linearUnit \"foot\" (the international foot, 0.3048 m) is read as the US survey foot",
                           "lengths multiplied by 0.3048006096012 (2 ppm longer: 0.6 m at 300 km)");
            else if (i.IsPropertyExists("linearUnit") && lin != "USSurveyFoot")
                DiagReport("length-unit-not-read", i, "linearUnit " + Quote(lin) + " is not read",
                           "lengths taken as US survey feet");
            CheckAngleUnit(i, "directionUnit");
            CheckAngleUnit(i, "angularUnit");
        }
    }
}

void CheckNotRead(const XmlSection& root, const TImportLandXMLResult& choices) {
    if (!CImportDiagScope::Current()) return;
    bool ddmmss = false;
    for (const XmlSection units : root.Children("Units"))
        for (const char* system : {"Metric", "Imperial"})
            for (const XmlSection s : units.Children(system))
                ddmmss = ddmmss || s.Attribute("angularUnit").find("dd.mm.ss") != std::string_view::npos;
    if (choices.importPoints) {
        for (const XmlSection survey : root.Children("Survey")) CheckObservationGroups(survey, ddmmss);
        auto nested = [](const XmlSection& group) {
            for (const XmlSection inner : group.Children("CgPoints")) {
                const int64_t n = CountBelow(inner, "CgPoint");
                DiagReport("cgpoints-nested", inner, "CgPoint inside CgPoints nested in CgPoints not imported",
                           "", std::max<int64_t>(n, 1));
            }
        };
        for (const XmlSection group : root.Children("CgPoints")) nested(group);
        for (const XmlSection survey : root.Children("Survey"))
            for (const XmlSection group : survey.Children("CgPoints")) nested(group);
    }
    for (const XmlSection surfaces : root.Children("Surfaces"))
        for (const XmlSection surface : surfaces.Children("Surface"))
            if (Chosen(choices.surfaces, surface.Attribute("name"))) CheckBreaklines(surface);
    for (const XmlSection alignments : root.Children("Alignments"))
        for (const XmlSection alignment : alignments.Children("Alignment")) {
            if (!Chosen(choices.alignments, alignment.Attribute("name"))) continue;
            CheckProfiles(alignment);
            if (!alignment.IsSectionExists("CoordGeom") && alignment.IsSectionExists("AlignPIs"))
                DiagReport("alignment-pis-only", alignment.Child("AlignPIs"),
                           "alignment given only by AlignPIs: its plan geometry is not read",
                           "a road without plan elements");
            for (const XmlSection sects : alignment.Children("CrossSects"))
                for (const XmlSection sect : sects.Children("CrossSect")) {
                    const int64_t n = CountBelow(sect, "DesignCrossSectSurf");
                    if (n > 0)
                        DiagReport("design-cross-sect-surf", sect.Child("DesignCrossSectSurf"),
                                   "DesignCrossSectSurf not imported (only CrossSectSurf is read)", "", n);
                }
        }
}

void CheckCoordGeomChildren(const XmlSection& coordGeom) {
    if (!CImportDiagScope::Current()) return;
    for (pugi::xml_node c = coordGeom.Node().first_child(); c; c = c.next_sibling()) {
        if (c.type() != pugi::node_element) continue;
        const std::string_view tag = c.name();
        if (tag == "Line" || tag == "Curve" || tag == "Spiral" || tag == "Feature") continue;
        DiagReport("plan-element-not-read", XmlSection(c), Quote(tag) + " in CoordGeom is not read",
                   "left out of the plan; later elements follow on without it");
    }
}

void CheckPlanElement(const XmlSection& element) {
    if (!CImportDiagScope::Current()) return;
    if (!element.IsSectionExists("Start"))
        DiagReport("plan-element-without-start", element,
                   std::string(element.GetSectionName()) + " has no Start" +
                       (element.IsSectionExists("PI") ? " (only a PI)" : ""),
                   "starts at (0, 0)");
}

void CheckRoadStations(const XmlSection& alignment, const CRoad* road) {
    if (!road || !CImportDiagScope::Current()) return;
    const double start = road->GetStartProg();
    const double end = road->GetEndProg();
    if (road->GetNumRoadPlaniElems() == 0 || end >= start) return;
    DiagReport("road-negative-length", alignment,
               "the road runs from station " + Number(start) + " to " + Number(end) + " (length " +
                   Number(end - start) + "): the alignment's staStart is not followed by its elements' stations",
               "imported as read; its length is negative");
}
