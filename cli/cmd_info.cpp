// roadx info FILE... [--json]: import the files into one document and show
// what it holds.
#include <CLI/CLI.hpp>
#include <cstdio>

#include "cli/checks.h"
#include "cli/commands.h"
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

int RunInfo(InfoArgs& a) {
    CheckSectionCodeSyntax(a.imp.sectionCodes);
    CheckNoInputReplaced(a.files, "", a.imp.trace);
    Session session(a.imp, a.exp);
    session.ImportAll(a.files);
    nlohmann::json s = DocumentSummary(session.Doc());
    s["crs"] = StatedCrs(a.files);
    const std::string text = a.json ? s.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
                                    : SummaryText(s) + CrsText(s["crs"]);
    std::fwrite(text.data(), 1, text.size(), stdout);
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
