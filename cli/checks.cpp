#include "cli/checks.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "cli/app.h"
#include "cli/file_identity.h"
#include "display/tin_contours.h"
#include "host/document.h"

namespace roadx::cli {

namespace {

constexpr size_t kListedNames = 20;

bool Contains(const std::vector<std::string>& v, const std::string& s) {
    return std::find(v.begin(), v.end(), s) != v.end();
}

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

// Throws when a name of `given` is not one of `existing`; `what` names the
// kind ("alignment") and `where` the place looked in ("the inputs").
void RequireNames(const std::string& option, const char* what, const char* where,
                  const std::vector<std::string>& given, const std::vector<std::string>& existing) {
    for (const std::string& name : given) {
        if (Contains(existing, name)) continue;
        std::string msg = option + ": no " + what + " named " + Quoted(name) + " in " + where;
        msg += existing.empty() ? std::string(", which hold none") : "; there are: " + NameList(existing);
        throw CliError(kExitUsage, msg);
    }
}

void RequireNames(const std::string& option, const char* what, const char* where,
                  const std::optional<std::vector<std::string>>& given, const std::vector<std::string>& existing) {
    if (given) RequireNames(option, what, where, *given, existing);
}

// The formats that honour an option, for the message that refuses it.
std::string FormatsUsing(unsigned use) {
    std::vector<std::string> names;
    for (const exchange::TFormat& f : exchange::Formats())
        if (f.exportTo && (f.uses & use)) names.push_back(f.name);
    std::string out;
    for (size_t i = 0; i < names.size(); ++i)
        out += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    return out.empty() ? "no output format" : out;
}

std::string Number(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.6g", v);
    return buf;
}

}  // namespace

void CheckNoInputReplaced(const std::vector<std::string>& inputs, const std::string& output,
                          const std::string& trace) {
    const bool hasTrace = !trace.empty() && trace != "-";
    for (const std::string& in : inputs) {
        if (!output.empty() && SameFile(in, output))
            throw CliError(kExitUsage, "the output " + output + " is the same file as the input " + in +
                                           "; nothing was written");
        if (hasTrace && SameFile(in, trace))
            throw CliError(kExitUsage, "the trace " + trace + " is the same file as the input " + in +
                                           "; nothing was written");
    }
    if (hasTrace && !output.empty() && SameFile(trace, output))
        throw CliError(kExitUsage, "the trace " + trace + " is the same file as the output " + output +
                                       "; nothing was written");
}

void CheckToMatchesName(const std::string& output, const std::string& to) {
    if (to.empty()) return;
    const exchange::TFormat* byName = exchange::FormatOfExtension(output);
    const exchange::TFormat* byTo = exchange::FindFormat(to);
    if (!byName || byName == byTo) return;
    throw CliError(kExitUsage, output + ": the name says " + byName->name + " but --to " + to + " asks for " +
                                   (byTo ? byTo->name : to.c_str()) + "; rename the output or leave --to out");
}

std::string NameList(const std::vector<std::string>& all) {
    std::vector<std::string> names;  // each once, in order
    for (const std::string& n : all)
        if (!Contains(names, n)) names.push_back(n);
    std::string out;
    for (size_t i = 0; i < names.size() && i < kListedNames; ++i) out += (i == 0 ? "" : ", ") + Quoted(names[i]);
    if (names.size() > kListedNames) out += " and " + std::to_string(names.size() - kListedNames) + " more";
    return out;
}

void CheckSectionCodeSyntax(const std::vector<std::string>& pairs) {
    for (const std::string& p : pairs) {
        const size_t eq = p.find('=');
        if (eq == std::string::npos)
            throw CliError(kExitUsage, "--section-code " + Quoted(p) + ": expected SURFACE=CODE (no '=')");
        if (eq == 0) throw CliError(kExitUsage, "--section-code " + Quoted(p) + ": the SURFACE before '=' is empty");
        if (eq + 1 == p.size())
            throw CliError(kExitUsage, "--section-code " + Quoted(p) + ": the CODE after '=' is empty");
    }
}

void CheckImportNames(const ImportOptions& o, const CCliUi::TOffered& offered) {
    RequireNames("--alignments", "alignment", "the inputs", o.alignments, offered.alignments);
    RequireNames("--surfaces", "surface", "the inputs", o.surfaces, offered.surfaces);
    if (!o.terrain.empty())
        RequireNames("--terrain", "surface", "the inputs", std::vector<std::string>{o.terrain}, offered.surfaces);
    for (const std::string& p : o.sectionCodes) {
        const std::string surface = p.substr(0, p.find('='));
        if (Contains(offered.crossSectSurfs, surface)) continue;
        std::string msg = "--section-code " + Quoted(p) + ": no cross section of the inputs has a surface named " +
                          Quoted(surface);
        msg += offered.crossSectSurfs.empty() ? std::string(" (they have no cross-section surfaces)")
                                              : "; there are: " + NameList(offered.crossSectSurfs);
        throw CliError(kExitUsage, msg);
    }
}

const std::vector<TExportOptionUse>& ExportOptionUses() {
    static const std::vector<TExportOptionUse> kUses = {
        {"--export-roads", exchange::kUseRoads},
        {"--export-surfaces", exchange::kUseSurfaces},
        {"--export-point-groups", exchange::kUsePointGroups},
        {"--export-gps", exchange::kUseGpsGroups},
        {"--export-jobs", exchange::kUseJobs},
        {"--road", exchange::kUseOneRoad},
        {"--dxf-version", exchange::kUseDrawingVersion},
        {"--contour-interval", exchange::kUseContours},
        {"--no-clouds", exchange::kUseClouds},
        {"--crs", exchange::kUseCrs},
        {"--cell", exchange::kUseCell},
    };
    return kUses;
}

void CheckOptionsFit(const exchange::TFormat& f, const std::vector<std::string>& given) {
    for (const TExportOptionUse& u : ExportOptionUses()) {
        if (!Contains(given, u.option) || (f.uses & u.use)) continue;
        throw CliError(kExitUsage, std::string(u.option) + " does not apply to " + f.name + " output; it applies to " +
                                       FormatsUsing(u.use) + " output");
    }
}

void CheckImportOptionsFit(const ImportOptions& o, const std::vector<std::string>& inputs) {
    if (o.geometry.empty()) return;
    std::vector<std::string> formats, honouring;
    for (const std::string& in : inputs) {
        const exchange::TFormat* f = exchange::DetectInputFormat(in);
        if (!f) return;
        if (f->importUses & exchange::kUseGeometry) return;
        if (!Contains(formats, f->name)) formats.push_back(f->name);
    }
    for (const exchange::TFormat& f : exchange::Formats())
        if (f.import && (f.importUses & exchange::kUseGeometry)) honouring.push_back(f.name);
    std::string readers;
    for (size_t i = 0; i < honouring.size(); ++i) readers += (i == 0 ? "" : " and ") + honouring[i];
    std::string names;
    for (size_t i = 0; i < formats.size(); ++i) names += (i == 0 ? "" : " and ") + formats[i];
    throw CliError(kExitUsage, "--geometry does not apply to " + names + " input; it applies to " + readers + " input");
}

void CheckExportNames(CVantriDoc& doc, const ExportOptions& o, const exchange::TFormat& f) {
    std::vector<std::string> roads, surfaces, groups, gps, jobs;
    for (unsigned i = 0; i < doc.GetLibRoad()->GetNumRoads(); ++i) roads.push_back(doc.GetLibRoad()->GetRoad(i)->GetName());
    for (unsigned i = 0; i < doc.GetLibDtm()->GetNoPrj(); ++i) surfaces.push_back(doc.GetLibDtm()->GetPrj(i)->GetName());
    for (int i = 0; i < doc.GetLibPnt()->GetGrpArSize(); ++i) groups.push_back(doc.GetLibPnt()->GetGrpAt(i)->GetName());
    for (int i = 0; i < doc.GetLibGps()->GetGrpArSize(); ++i) gps.push_back(doc.GetLibGps()->GetGrpAt(i)->GetNomeGrp());
    for (int i = 0; i < doc.GetLibCmp()->GetJobArSize(); ++i) jobs.push_back(doc.GetLibCmp()->GetJobAt(i)->GetNome());
    const char* where = "the document";
    if (f.uses & exchange::kUseRoads) RequireNames("--export-roads", "road", where, o.roads, roads);
    if (f.uses & exchange::kUseSurfaces) RequireNames("--export-surfaces", "surface", where, o.surfaces, surfaces);
    if (f.uses & exchange::kUsePointGroups)
        RequireNames("--export-point-groups", "point group", where, o.pointGroups, groups);
    if (f.uses & exchange::kUseGpsGroups) RequireNames("--export-gps", "GPS group", where, o.gps, gps);
    if (f.uses & exchange::kUseJobs) RequireNames("--export-jobs", "total-station job", where, o.jobs, jobs);
    if ((f.uses & exchange::kUseOneRoad) && !o.road.empty())
        RequireNames("--road", "road", where, std::vector<std::string>{o.road}, roads);
}

double ParseContourInterval(const std::string& text) {
    const char* s = text.c_str();
    char* end = nullptr;
    errno = 0;
    const double v = std::strtod(s, &end);
    const bool number = !text.empty() && end == s + text.size() && text.find_first_of(" \t\n") == std::string::npos;
    if (!number) throw CliError(kExitUsage, "--contour-interval " + Quoted(text) + ": not a number of metres");
    if (!std::isfinite(v) || v <= 0.0)
        throw CliError(kExitUsage, "--contour-interval " + text + ": must be a positive, finite number of metres");
    return v;
}

void CheckContourLevels(CVantriDoc& doc, double interval, const std::string& text) {
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i) {
        CDtmPrj* prj = dtm->GetPrj(i);
        double zmin = 0, zmax = 0;
        if (!display::ContourElevationRange(*prj->GetTris(), zmin, zmax)) continue;
        const double levels = std::floor((zmax - zmin) / interval) + 1;
        if (levels <= static_cast<double>(display::kMaxContourLevels)) continue;
        throw CliError(kExitUsage, "--contour-interval " + text + ": surface " + Quoted(prj->GetName()) +
                                       " spans " + Number(zmax - zmin) + " m of elevation, which would give " +
                                       Number(levels) + " contour levels (at most " +
                                       std::to_string(display::kMaxContourLevels) + ")");
    }
}

}  // namespace roadx::cli
