#include "cli/app.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

#include "cli/commands.h"

#ifndef ROADX_VERSION
#define ROADX_VERSION "0"
#endif

namespace roadx::cli {

namespace {

int Run(int argc, char** argv) {
    CLI::App app{"roadx: exchange roads, terrain models, points and surveys between LandXML 1.0, RD3 road files "
                 "and DXF/DWG drawings.\n\nExit codes: 0 done, 1 bad input or an import that ended early, "
                 "2 wrong usage.",
                 "roadx"};
    app.set_version_flag("--version", std::string("roadx ") + ROADX_VERSION);
    app.require_subcommand(1);
    std::function<int()> run;
    auto setRun = [&run](std::function<int()> f) { run = std::move(f); };
    AddInfoCommand(app, setRun);
    AddConvertCommand(app, setRun);
    AddReportCommand(app, setRun);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        app.exit(e);
        return kExitUsage;
    }
    return run ? run() : kExitUsage;
}

int RunCaught(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const CliError& e) {
        std::fprintf(stderr, "roadx: %s\n", e.what());
        return e.code();
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "roadx: out of memory\n");
        return kExitBadInput;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "roadx: internal error: %s\n", e.what());
        return kExitInternal;
    }
}

int g_stdoutErrno = 0;  // the reason of the first failed write to standard output

// What went to standard output (info, --trace -) must have arrived: a
// failed write or flush there is an error like any other output's.
int CheckStandardOutput(int code) {
    errno = 0;
    const bool flushed = std::fflush(stdout) == 0;
    if (flushed && !std::ferror(stdout)) return code;
    const int err = g_stdoutErrno ? g_stdoutErrno : errno ? errno : EIO;
    std::fprintf(stderr, "roadx: standard output: cannot write: %s\n", strerrordesc_np(err));
    return code == kExitOk ? kExitBadInput : code;
}

}  // namespace

void WriteStandardOutput(const std::string& text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && !g_stdoutErrno)
        g_stdoutErrno = errno ? errno : EIO;
}

// The program's one top-level catch.
int Main(int argc, char** argv) { return CheckStandardOutput(RunCaught(argc, argv)); }

}  // namespace roadx::cli
