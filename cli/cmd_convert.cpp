// roadx convert INPUT... -o OUTPUT: import the inputs into one document, then
// export it in the format the output names.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "cli/app.h"
#include "cli/checks.h"
#include "cli/commands.h"
#include "cli/convert.h"
#include "cli/session.h"
#include "exchange/crs.h"
#include "host/document.h"
#include "vesk/diagnostics.h"

namespace roadx::cli {

namespace {

std::string Join(const std::vector<std::string>& v, const char* sep) {
    std::string out;
    for (const std::string& s : v) out += (out.empty() ? "" : sep) + s;
    return out;
}

// The coordinate system the inputs state, for a GIS output; inputs that
// state different ones need --crs.
void StateCoordinateSystem(const std::vector<std::string>& files, ExportOptions& exp) {
    const std::vector<exchange::TStatedCrs> stated = exchange::StatedCoordinateSystems(files);
    if (stated.empty()) return;
    for (const exchange::TStatedCrs& s : stated)
        if (s.definition != stated.front().definition && exp.crs.empty())
            throw CliError(kExitBadInput, "the inputs state different coordinate systems (" + stated.front().file +
                                              ": " + stated.front().definition + ", " + s.file + ": " +
                                              s.definition + "); give --crs");
    exp.statedCrs = stated.front().definition;
    exp.statedBy = stated.front().file;
}

struct ConvertArgs {
    std::vector<std::string> files;
    ImportOptions imp;
    ExportOptions exp;
    std::string contourText;          // --contour-interval as given
    std::vector<std::string> given;   // the export options given (long names)
};

int RunConvert(ConvertArgs& a) {
    // Everything that can be refused is refused before any file is read
    // or written; an output that would replace an input first of all.
    CheckNoInputReplaced(a.files, a.exp.output, a.imp.trace);
    const exchange::TFormat* out = exchange::OutputFormat(a.exp.output, a.exp.to);
    if (!out)
        throw CliError(kExitUsage, a.exp.output + ": cannot tell the output format from the name; use --to " +
                                       Join(exchange::OutputKeys(), "|"));
    CheckToMatchesName(a.exp.output, a.exp.to);
    CheckOptionsFit(*out, a.given);
    CheckSectionCodeSyntax(a.imp.sectionCodes);
    const bool contourGiven = std::find(a.given.begin(), a.given.end(), "--contour-interval") != a.given.end();
    if (contourGiven) a.exp.contourInterval = ParseContourInterval(a.contourText);

    Session session(a.imp, a.exp);
    session.ImportAll(a.files);
    CheckExportNames(session.Doc(), a.exp, *out);
    if (out->uses & exchange::kUseContours)
        CheckContourLevels(session.Doc(), a.exp.contourInterval,
                           contourGiven ? a.contourText : std::string("1"));
    if (exchange::CarriesCoordinateSystem(*out)) StateCoordinateSystem(a.files, a.exp);
    const TExchangeStatus st = ExportFile(session, *out, a.exp);
    if (st.code == TExchangeStatus::UNSUPPORTED) throw CliError(kExitUsage, a.exp.output + ": " + st.message);
    if (!st.ok()) throw CliError(kExitBadInput, a.exp.output + ": " + st.message);
    session.CloseTrace();
    return 0;
}

void AddExportList(CLI::App& cmd, const std::string& name, std::optional<std::vector<std::string>>& target,
                   const std::string& help) {
    cmd.add_option_function<std::string>(
           name, [&target](const std::string& v) { target = SplitList(v); }, help)
        ->type_name("A,B,...");
}

}  // namespace

TExchangeStatus ExportFile(Session& session, const exchange::TFormat& f, const ExportOptions& o) {
    exchange::TExportRequest request;
    // The save dialogs are answered with -o made absolute; the request says
    // the same.
    request.path = AbsolutePath(o.output);
    request.road = o.road;
    request.contourInterval = o.contourInterval;
    request.crs = o.crs;
    request.statedCrs = o.statedCrs;
    request.statedBy = o.statedBy;
    request.cell = o.cell;
    request.failOnWarning = session.Strict();
    session.Ui().ClearMessages();
    // A message box the host would have shown stays the host's: it is in
    // the trace (and in Ui().Messages()), not in the error line, which says
    // the cause in the same words for every format.
    TExchangeStatus st = exchange::ExportFile(session.Doc(), f, request, &session.Diagnostics());
    // An export that fails prints only its error, as an import does; with
    // --strict its warnings are why it wrote nothing.
    if (!st.ok() && !session.Strict()) session.SkipDiagnostics();
    session.FlushDiagnostics(o.output);
    return st;
}

void AddConvertCommand(CLI::App& app, SetRun setRun) {
    auto args = std::make_shared<ConvertArgs>();
    CLI::App* cmd = app.add_subcommand("convert", "Import files into one document and export it");
    cmd->add_option("inputs", args->files, "LandXML (.xml) or RD3 (.rd3) files")->required();
    cmd->add_option("-o,--output", args->exp.output,
                    "output file: .xml LandXML, .rd3 RD3, .dxf/.dwg drawing, .gpkg/.geojson GIS vectors, "
                    ".shp/.fgb a folder of GIS layers, .tif elevation model")
        ->required();
    cmd->add_option("--to", args->exp.to, "output format when the name does not tell it")
        ->check(CLI::IsMember(exchange::OutputKeys()));
    AddImportOptions(*cmd, args->imp);
    AddExportList(*cmd, "--export-roads", args->exp.roads, "LandXML: roads to export (default: all; '' none)");
    AddExportList(*cmd, "--export-surfaces", args->exp.surfaces, "LandXML: surfaces to export (default: all)");
    AddExportList(*cmd, "--export-point-groups", args->exp.pointGroups, "LandXML: point groups to export (default: all)");
    AddExportList(*cmd, "--export-gps", args->exp.gps, "LandXML: GPS groups to export (default: all)");
    AddExportList(*cmd, "--export-jobs", args->exp.jobs, "LandXML: total-station jobs to export (default: all)");
    cmd->add_option("--road", args->exp.road, "RD3: the road to write (default: the first)");
    cmd->add_option("--dxf-version", args->exp.dxfVersion,
                    "drawing: file version, R12 (AC1009, for old readers) or R2000 (AC1015, default); "
                    "DWG files are R2000 only")
        ->check(CLI::IsMember({"R12", "R2000"}));
    cmd->add_option("--contour-interval", args->contourText,
                    "drawing: contour lines of every surface, one every this many metres, every fifth "
                    "labelled (default 1); GIS: the contours layer")
        ->type_name("METRES");
    cmd->add_option("--crs", args->exp.crs,
                    "GIS: coordinate system of the coordinates (EPSG:NNNN, WKT or any definition GDAL accepts); "
                    "overrides what the inputs state")
        ->type_name("DEFINITION");
    cmd->add_option("--cell", args->exp.cell,
                    "elevation model: cell size in metres (default: half the typical triangle size, as 1, 2 or "
                    "5 times a power of ten)")
        ->check(CLI::PositiveNumber)
        ->type_name("SIZE");
    cmd->add_flag("--no-clouds", args->exp.noClouds,
                  "drawing: leave the point clouds (layers named after each cloud) out");
    cmd->callback([args, setRun, cmd] {
        for (const TExportOptionUse& u : ExportOptionUses())
            if (cmd->count(u.option) > 0) args->given.push_back(u.option);
        setRun([args] { return RunConvert(*args); });
    });
}

}  // namespace roadx::cli
