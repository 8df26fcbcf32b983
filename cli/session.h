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

namespace roadx::cli {

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
};

}  // namespace roadx::cli
