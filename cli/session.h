// One run of roadx on one document: the dialogs answered from the options,
// the trace recording, and the inputs imported in order.
#pragma once
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cli/cli_ui.h"
#include "cli/options.h"
#include "host/document.h"
#include "host/trace.h"
#include "vesk/atomic_file.h"
#include "vesk/diagnostics.h"

namespace roadx::cli {

// One input file and what its import added to the document.
struct TInputBlock {
    std::string path;
    std::string format;
    size_t firstRecord = 0, endRecord = 0;  // its records in the sink
    unsigned roads[2] = {0, 0};             // [first, end) indices it added
    unsigned surfaces[2] = {0, 0};
    int pointGroups[2] = {0, 0};
    std::vector<std::pair<std::string, std::string>> crossSectCodes;  // surface -> section code
};

class Session {
public:
    Session(const ImportOptions& imp, const ExportOptions& exp);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    CVantriDoc& Doc() { return doc_; }
    CCliUi& Ui() { return ui_; }
    // Imports each file into the document; the first failure throws a
    // CliError naming the file and the problem. Then every name the import
    // options give must have matched something (else a CliError, exit 2).
    void ImportAll(const std::vector<std::string>& files);
    // Puts the trace file in place (it was written to a temporary); a trace
    // that could not be written throws a CliError. The destructor does the
    // same for a run that ended with an error, and reports a failure itself.
    void CloseTrace();

    // What the imports and exports reported.
    vesk::diag::CSink& Diagnostics() { return sink_; }
    // Prints the records reported since the last call (unless quiet); with
    // --strict, throws a CliError when there were warnings.
    void FlushDiagnostics(const std::string& what);
    // Marks the records so far as printed without printing them: a failed
    // step says only its error (they stay in the sink for info --json).
    void SkipDiagnostics() { printed_ = sink_.Records().size(); }
    bool Strict() const { return imp_.strict; }
    const std::vector<TInputBlock>& Inputs() const { return inputs_; }

private:
    void ImportOne(const std::string& path);

    const ImportOptions& imp_;
    CVantriDoc doc_;
    CCliUi ui_;
    FILE* traceFile_ = nullptr;
    vesk::CAtomicFile traceOut_;
    std::unique_ptr<CTraceFile> traceSink_;
    std::unique_ptr<CTraceScope> traceScope_;
    CHostUiScope uiScope_;
    vesk::diag::CSink sink_;
    size_t printed_ = 0;
    std::vector<TInputBlock> inputs_;
};

}  // namespace roadx::cli
