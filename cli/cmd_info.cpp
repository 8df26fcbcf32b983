// roadx info FILE... [--json]: import the files into one document and show
// what it holds.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>

#include "cli/checks.h"
#include "cli/app.h"
#include "cli/commands.h"
#include "cli/diag_output.h"
#include "cli/session.h"
#include "cli/summary.h"
#include "exchange/crs.h"

namespace roadx::cli {

namespace {

struct InfoArgs {
    std::vector<std::string> files;
    bool json = false;
    ImportOptions imp;
    ExportOptions exp;
};

// "crs": the coordinate system the files state, as stated ("EPSG:3878" or
// the WKT); null when none does; when files state different ones, an
// object from each such file to its system.
nlohmann::json StatedCrs(const std::vector<std::string>& files) {
    const std::vector<exchange::TStatedCrs> stated = exchange::StatedCoordinateSystems(files);
    if (stated.empty()) return nullptr;
    nlohmann::json byFile = nlohmann::json::object();
    bool same = true;
    for (const exchange::TStatedCrs& c : stated) {
        byFile[c.file] = c.definition;
        same = same && c.definition == stated.front().definition;
    }
    return same ? nlohmann::json(stated.front().definition) : byFile;
}

std::string CrsText(const nlohmann::json& crs) {
    if (crs.is_null()) return "Coordinate system: none stated\n";
    if (crs.is_string()) return "Coordinate system: " + crs.get<std::string>() + "\n";
    std::string out = "Coordinate systems (the files differ):\n";
    for (const auto& [file, def] : crs.items()) out += "  " + file + ": " + def.get<std::string>() + "\n";
    return out;
}

// One block per input file: its format, the units it was read in, what it
// added (names and extents taken from the document summary), the
// cross-section surfaces with their section codes, and its warnings.
nlohmann::json InputBlocks(Session& session, const nlohmann::json& doc) {
    using nlohmann::json;
    json blocks = json::array();
    const auto& records = session.Diagnostics().Records();
    for (const TInputBlock& in : session.Inputs()) {
        json b = {{"file", in.path}, {"format", in.format}, {"units", nullptr}};
        auto names = [&doc](const char* key, size_t first, size_t end) {
            json list = json::array();
            for (size_t i = first; i < end && i < doc[key].size(); ++i)
                list.push_back({{"name", doc[key][i]["name"]}, {"extent", doc[key][i]["extent"]}});
            return list;
        };
        b["roads"] = names("roads", in.roads[0], in.roads[1]);
        b["surfaces"] = names("surfaces", in.surfaces[0], in.surfaces[1]);
        b["pointGroups"] = names("pointGroups", static_cast<size_t>(in.pointGroups[0]),
                                 static_cast<size_t>(in.pointGroups[1]));
        b["crossSectionSurfaces"] = json::array();
        for (const auto& [surface, code] : in.crossSectCodes)
            b["crossSectionSurfaces"].push_back({{"surface", surface}, {"sectionCode", code}});
        json warnings = json::array();
        for (size_t i = in.firstRecord; i < in.endRecord && i < records.size(); ++i) {
            const vesk::diag::TRecord& r = records[i];
            if (r.kind == "units" && r.severity == vesk::diag::ESeverity::Note) {
                json units = json::object();
                for (const auto& [k, v] : r.values) units[k] = v;
                b["units"] = units;
            } else if (r.severity >= vesk::diag::ESeverity::Warning) {
                warnings.push_back(DiagnosticJson(r));
            }
        }
        b["warnings"] = std::move(warnings);
        blocks.push_back(std::move(b));
    }
    return blocks;
}

std::string Str(const nlohmann::json& j) { return j.is_string() ? j.get<std::string>() : j.dump(); }

std::string ExtentText(const nlohmann::json& e) {
    if (e.is_null()) return "no extent";
    char buf[256];
    auto z = [](const nlohmann::json& v) {
        if (v.is_null()) return std::string("-");
        char n[64];
        std::snprintf(n, sizeof n, "%.3f", v.get<double>());
        return std::string(n);
    };
    std::snprintf(buf, sizeof buf, "x %.3f to %.3f, y %.3f to %.3f, z %s to %s", e[0].get<double>(),
                  e[3].get<double>(), e[1].get<double>(), e[4].get<double>(), z(e[2]).c_str(), z(e[5]).c_str());
    return buf;
}

std::string InputBlocksText(const nlohmann::json& files) {
    std::string out;
    for (const auto& b : files) {
        out += "File " + Str(b["file"]) + " (" + Str(b["format"]) + ")\n";
        if (b["units"].is_object()) {
            const auto& u = b["units"];
            out += "  units: " + Str(u["system"]) + ", linearUnit \"" + Str(u["linearUnit"]) + "\" read as " +
                   Str(u["lengthsReadAs"]) + "; directionUnit \"" + Str(u["directionUnit"]) + "\" read as " +
                   Str(u["directionUnitReadAs"]) + "; angularUnit \"" + Str(u["angularUnit"]) + "\" read as " +
                   Str(u["angularUnitReadAs"]) + "\n";
        }
        const std::pair<const char*, const char*> kinds[] = {
            {"roads", "road"}, {"surfaces", "surface"}, {"pointGroups", "point group"}};
        for (const auto& [key, label] : kinds)
            for (const auto& o : b[key])
                out += std::string("  ") + label + " " + Str(o["name"]) + ": " + ExtentText(o["extent"]) + "\n";
        for (const auto& c : b["crossSectionSurfaces"])
            out += "  cross-section surface " + Str(c["surface"]) + " -> section code " + Str(c["sectionCode"]) + "\n";
        out += "  warnings: " + std::to_string(b["warnings"].size()) + " kind(s)\n";
    }
    return out;
}

int RunInfo(InfoArgs& a) {
    CheckSectionCodeSyntax(a.imp.sectionCodes);
    CheckNoInputReplaced(a.files, "", a.imp.trace);
    Session session(a.imp, a.exp);
    session.ImportAll(a.files);
    nlohmann::json s = DocumentSummary(session.Doc());
    s["crs"] = StatedCrs(a.files);
    nlohmann::json warnings = nlohmann::json::array();
    for (const vesk::diag::TRecord& r : session.Diagnostics().Records())
        if (r.severity >= vesk::diag::ESeverity::Warning) warnings.push_back(DiagnosticJson(r));
    s["warnings"] = std::move(warnings);
    s["files"] = InputBlocks(session, s);
    const std::string text = a.json ? s.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
                                    : SummaryText(s) + CrsText(s["crs"]) + InputBlocksText(s["files"]);
    WriteStandardOutput(text);
    session.CloseTrace();
    return 0;
}

}  // namespace

void AddInfoCommand(CLI::App& app, std::function<void(std::function<int()>)> setRun) {
    auto args = std::make_shared<InfoArgs>();
    CLI::App* cmd = app.add_subcommand("info", "Import files into one document and show what it holds");
    cmd->add_option("files", args->files, "LandXML (.xml) or RD3 (.rd3) files")->required();
    cmd->add_flag("--json", args->json, "print one JSON document");
    AddImportOptions(*cmd, args->imp);
    cmd->callback([args, setRun] { setRun([args] { return RunInfo(*args); }); });
}

}  // namespace roadx::cli
