// How an import or export call ended, for callers that need to know (the
// command line, the tests). The exported entry points themselves stay silent,
// as the host expects; each wraps a function of its format that returns this
// (named after the entry point with a "Status" suffix: ImportLandXMLStatus,
// ExportRD3Status, ...).
#pragma once
#include <string>

struct TExchangeStatus {
    enum Code {
        OK = 0,
        CANCELLED,     // a dialog was cancelled; nothing happened
        OPEN_FAILED,   // the input could not be opened or read
        BAD_INPUT,     // the input is malformed; nothing or part was imported
        ENDED_EARLY,   // the import stopped on a rule; what was added stays
        WRITE_FAILED,  // the output could not be created or written
        UNSUPPORTED,   // the request cannot be met as asked (a format or
                       // version this build does not write); nothing written
    };
    Code code = OK;
    std::string message;  // one line for the user, naming the problem
    // The format's own, finer reason (for example roadx::rd3::ReadEnd); 0
    // when the format gives none.
    int detail = 0;

    bool ok() const { return code == OK; }
    static TExchangeStatus Ok() { return {}; }
    static TExchangeStatus Fail(Code c, std::string msg, int detail = 0) { return {c, std::move(msg), detail}; }
};
