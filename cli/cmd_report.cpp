// roadx report INPUT... -o OUT.html: import the inputs into one document and
// write one self-contained HTML page that shows it.
#include <CLI/CLI.hpp>

#include "cli/app.h"
#include "cli/commands.h"
#include "cli/session.h"
#include "cli/summary.h"
#include "host/document.h"
#include "report/report.h"

namespace roadx::cli {

namespace {

struct ReportArgs {
    std::vector<std::string> files;
    ImportOptions imp;
    ExportOptions exp;
};

// The ground of roads that came without a terrain link (RD3 roads, a
// surface from another file, no --terrain): the surface --terrain names, or
// else the document's only surface.
const CDtmPrj* FindTerrain(CVantriDoc& doc, const std::string& name) {
    CLibDtm* dtm = doc.GetLibDtm();
    if (name.empty()) return dtm->GetNoPrj() == 1 ? dtm->GetPrj(0) : nullptr;
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i)
        if (dtm->GetPrj(i)->GetName() == name) return dtm->GetPrj(i);
    throw CliError(kExitBadInput, "--terrain " + name + ": no surface of that name was imported");
}

int RunReport(ReportArgs& a) {
    Session session(a.imp, a.exp);
    session.ImportAll(a.files);
    report::TReportInput in;
    in.inputs = a.files;
    in.summary = DocumentSummary(session.Doc());
    in.summaryText = SummaryText(in.summary);
    in.terrain = FindTerrain(session.Doc(), a.imp.terrain);
    const TExchangeStatus st = report::WriteReport(session.Doc(), a.exp.output, in, session.Diagnostics());
    if (!st.ok()) throw CliError(kExitBadInput, a.exp.output + ": " + st.message);
    return 0;
}

}  // namespace

void AddReportCommand(CLI::App& app, SetRun setRun) {
    auto args = std::make_shared<ReportArgs>();
    CLI::App* cmd = app.add_subcommand("report", "Import files into one document and write an HTML page showing it");
    cmd->add_option("inputs", args->files, "LandXML (.xml) or RD3 (.rd3) files")->required();
    cmd->add_option("-o,--output", args->exp.output, "the HTML page to write")->required();
    AddImportOptions(*cmd, args->imp);
    cmd->callback([args, setRun] { setRun([args] { return RunReport(*args); }); });
}

}  // namespace roadx::cli
