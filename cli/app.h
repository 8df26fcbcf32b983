// The roadx program: parses the command line, runs one subcommand and turns
// every failure into one message and an exit code.
#pragma once
#include <stdexcept>
#include <string>

namespace roadx::cli {

// Exit codes.
enum ExitCode { kExitOk = 0, kExitBadInput = 1, kExitUsage = 2, kExitInternal = 3 };

// A failure the user should read: one line, and the exit code it means.
class CliError : public std::runtime_error {
public:
    CliError(int code, const std::string& msg) : std::runtime_error(msg), code_(code) {}
    int code() const { return code_; }

private:
    int code_;
};

int Main(int argc, char** argv);

// Writes text to standard output, keeping the reason of the first failure
// for the check at the end of the program (a later call may clear errno).
void WriteStandardOutput(const std::string& text);

}  // namespace roadx::cli
