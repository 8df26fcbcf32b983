// roadx info FILE... [--json]: import the files into one document and show
// what it holds.
#include <CLI/CLI.hpp>
#include <cstdio>

#include "cli/commands.h"
#include "cli/diag_output.h"
#include "cli/session.h"
#include "cli/summary.h"

namespace roadx::cli {

namespace {

struct InfoArgs {
    std::vector<std::string> files;
    bool json = false;
    ImportOptions imp;
    ExportOptions exp;
};

int RunInfo(InfoArgs& a) {
    Session session(a.imp, a.exp);
    session.ImportAll(a.files);
    nlohmann::json s = DocumentSummary(session.Doc());
    if (a.json) {
        nlohmann::json warnings = nlohmann::json::array();
        for (const vesk::diag::TRecord& r : session.Diagnostics().Records()) warnings.push_back(DiagnosticJson(r));
        s["warnings"] = std::move(warnings);
    }
    const std::string text = a.json ? s.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
                                    : SummaryText(s);
    std::fwrite(text.data(), 1, text.size(), stdout);
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
