#include "cli/session.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "cli/app.h"
#include "cli/checks.h"
#include "cli/diag_output.h"
#include "display/doc_display.h"
#include "exchange/formats.h"

namespace roadx::cli {

namespace {

constexpr uintmax_t kProgressBytes = 4u << 20;

// "LandXML or RD3": the formats that can be read.
std::string ReadableFormats() {
    std::vector<std::string> names;
    for (const exchange::TFormat& f : exchange::Formats())
        if (f.import) names.push_back(f.name);
    std::string out;
    for (size_t i = 0; i < names.size(); ++i)
        out += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
    return out;
}

}  // namespace

Session::Session(const ImportOptions& imp, const ExportOptions& exp) : imp_(imp), ui_(imp, exp), uiScope_(&ui_) {
    ui_.SetProfileLibrary(doc_.GetLibProfile());
    sink_.checkTolerance = imp.tolerance;
    InstallDocumentDisplay(doc_);
    if (imp.trace.empty()) return;
    if (imp.trace == "-") {
        traceFile_ = stdout;
    } else {
        // Written to a temporary beside it, put in place when the run ends.
        if (!traceOut_.Open(imp.trace)) throw CliError(kExitBadInput, imp.trace + ": " + traceOut_.Error());
        traceFile_ = traceOut_.Stream();
        if (!traceFile_) throw CliError(kExitBadInput, imp.trace + ": cannot write: " + std::strerror(ENOMEM));
    }
    traceSink_ = std::make_unique<CTraceFile>(traceFile_);
    traceScope_ = std::make_unique<CTraceScope>(traceSink_.get());
}

Session::~Session() {
    try {
        CloseTrace();
    } catch (const CliError& e) {
        std::fprintf(stderr, "roadx: %s\n", e.what());
    }
}

void Session::CloseTrace() {
    traceScope_.reset();
    traceSink_.reset();
    FILE* f = traceFile_;
    traceFile_ = nullptr;
    if (!f || f == stdout) return;  // standard output is checked when the program ends
    if (!traceOut_.Commit()) throw CliError(kExitBadInput, imp_.trace + ": " + traceOut_.Error());
}

void Session::ImportAll(const std::vector<std::string>& files) {
    CheckImportOptionsFit(imp_, files);
    for (const auto& f : files) ImportOne(f);
    CheckImportNames(imp_, ui_.Offered());
}

void Session::ImportOne(const std::string& path) {
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status))
        throw CliError(kExitBadInput, path + ": no such file");
    if (std::filesystem::is_directory(status)) throw CliError(kExitBadInput, path + ": is a directory");
    if (access(path.c_str(), R_OK) != 0)
        throw CliError(kExitBadInput, path + ": cannot read: " + std::strerror(errno));
    const uintmax_t size = std::filesystem::file_size(path, ec);
    if (!ec && size == 0) throw CliError(kExitBadInput, path + ": the file is empty");
    const exchange::TFormat* f = exchange::DetectInputFormat(path);
    if (!f) throw CliError(kExitBadInput, path + ": not a " + ReadableFormats() + " file");
    const bool progress = !imp_.quiet && !ec && size >= kProgressBytes && isatty(STDERR_FILENO);
    if (progress) std::fprintf(stderr, "roadx: reading %s (%.1f MB)...", path.c_str(), size / 1048576.0);
    ui_.ClearMessages();
    TInputBlock block;
    block.path = path;
    block.format = f->name;
    block.firstRecord = sink_.Records().size();
    block.roads[0] = doc_.GetLibRoad()->GetNumRoads();
    block.surfaces[0] = doc_.GetLibDtm()->GetNoPrj();
    block.pointGroups[0] = doc_.GetLibPnt()->GetGrpArSize();
    exchange::TImportRequest request;
    request.pointsGeometry = imp_.geometry == "points";
    const TExchangeStatus st = exchange::ImportFile(doc_, path, *f, &sink_, request);
    block.endRecord = sink_.Records().size();
    block.roads[1] = doc_.GetLibRoad()->GetNumRoads();
    block.surfaces[1] = doc_.GetLibDtm()->GetNoPrj();
    block.pointGroups[1] = doc_.GetLibPnt()->GetGrpArSize();
    if (f->sniff && std::string(f->name) == "LandXML")
        for (const auto& [surface, code] : ui_.LastCrossSectCodes()) block.crossSectCodes.emplace_back(surface, code);
    inputs_.push_back(std::move(block));
    if (progress) std::fprintf(stderr, " done\n");
    // A failed import says what stopped it in one line; what it reported
    // before stays in the sink (info --json) but is not printed.
    if (!st.ok()) {
        printed_ = sink_.Records().size();
        throw CliError(kExitBadInput, path + ": " + st.message);
    }
    FlushDiagnostics(path);
}

void Session::FlushDiagnostics(const std::string& what) {
    const std::vector<vesk::diag::TRecord>& records = sink_.Records();
    size_t warnings = 0;
    for (size_t i = printed_; i < records.size(); ++i) {
        // Notes (the units a file was read in) are for `info`, not warnings.
        if (records[i].severity < vesk::diag::ESeverity::Warning) continue;
        ++warnings;
        if (!imp_.quiet) std::fprintf(stderr, "%s\n", DiagnosticLine(records[i]).c_str());
    }
    printed_ = records.size();
    if (imp_.strict && warnings > 0)
        throw CliError(kExitBadInput, what + ": " + std::to_string(warnings) +
                                          " kind(s) of warning, an error with --strict; nothing written");
}

}  // namespace roadx::cli
