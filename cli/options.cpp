#include "cli/options.h"

#include <CLI/CLI.hpp>

namespace roadx::cli {

std::vector<std::string> SplitList(const std::string& s) {
    std::vector<std::string> out;
    if (s.empty()) return out;
    size_t start = 0;
    for (;;) {
        const size_t comma = s.find(',', start);
        out.push_back(s.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return out;
}

namespace {

// A comma list option that stays unset when not given, and may be given empty.
void AddListOption(CLI::App& app, const std::string& name, std::optional<std::vector<std::string>>& target,
                   const std::string& help) {
    app.add_option_function<std::string>(
           name, [&target](const std::string& v) { target = SplitList(v); }, help)
        ->type_name("A,B,...")
        ->expected(1);
}

}  // namespace

void AddImportOptions(CLI::App& app, ImportOptions& o) {
    AddListOption(app, "--alignments", o.alignments, "LandXML alignments to import (default: all)");
    AddListOption(app, "--surfaces", o.surfaces,
                  "LandXML surfaces to import (default: all); an elevation model (.tif) needs exactly one");
    app.add_option("--terrain", o.terrain, "surface whose DTM becomes every imported road's terrain (default: none)");
    app.add_flag("--no-points", o.noPoints, "do not import points and surveys");
    app.add_option("--section-code", o.sectionCodes,
                   "SURFACE=CODE: store cross-section lines of SURFACE under section CODE (repeatable; when given, "
                   "exactly these pairs are used)")
        ->type_name("SURFACE=CODE")
        ->allow_extra_args(false);
    auto* yes = app.add_flag("--yes", o.yes, "answer yes to every question");
    auto* no = app.add_flag("--no", o.no, "answer no to every question");
    yes->excludes(no);
    app.add_option("--trace", o.trace, "write every builder call and message to FILE ('-' = standard output)")
        ->type_name("FILE");
    app.add_flag("-q,--quiet", o.quiet, "no warnings or progress on standard error");
    app.add_option("--tolerance", o.tolerance,
                   "LandXML geometry check: report plan elements whose computed end lies more than this many "
                   "metres from the file's End (default 0.001)")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--geometry", o.geometry,
                   "LandXML plan: 'attributes' places each element by its directions, lengths and stations (the "
                   "default); 'points' takes its start direction and sweep from its Start, End, Center and PI")
        ->type_name("points|attributes")
        ->check(CLI::Validator(
            [](std::string& v) {
                return v == "points" || v == "attributes"
                           ? std::string()
                           : "\"" + v + "\" is neither \"points\" nor \"attributes\"";
            },
            "", "geometry mode"));
    app.add_flag("--strict", o.strict,
                 "any warning (data left out, defaulted, cut or changed) is an error: exit 1, nothing written");
}

}  // namespace roadx::cli
