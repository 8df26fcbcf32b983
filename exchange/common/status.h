// How an import or export call ended, for callers that need to know (the
// command line). The exported entry points themselves stay silent, as the
// host expects; they wrap functions that return this.
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
    };
    Code code = OK;
    std::string message;  // one line for the user, naming the problem

    bool ok() const { return code == OK; }
    static TExchangeStatus Ok() { return {}; }
    static TExchangeStatus Fail(Code c, std::string msg) { return {c, std::move(msg)}; }
};
