#include "cli/app.h"

#include <CLI/CLI.hpp>
#include <cstdio>
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

}  // namespace

// The program's one top-level catch.
int Main(int argc, char** argv) {
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

}  // namespace roadx::cli
