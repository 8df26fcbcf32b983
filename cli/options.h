// Options shared by the subcommands that import and export.
#pragma once
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI { class App; }

namespace roadx::cli {

struct ImportOptions {
    std::optional<std::vector<std::string>> alignments;  // unset: all
    std::optional<std::vector<std::string>> surfaces;    // unset: all
    std::string terrain;                                 // "": none
    bool noPoints = false;
    std::vector<std::string> sectionCodes;  // SURFACE=CODE, in order given
    bool yes = false;
    bool no = false;
    std::string trace;  // "" off, "-" standard output
    bool quiet = false;
    bool strict = false;  // any warning of an import or export is an error
    double tolerance = 0.001;  // metres: the LandXML geometry check's threshold
    // LandXML plan: "attributes" (the default) or "points"; "" when not
    // given (attributes).
    std::string geometry;
};

struct ExportOptions {
    std::string output;
    std::string to;  // xml, rd3, dxf, dwg; "" = by extension
    std::optional<std::vector<std::string>> roads, surfaces, pointGroups, gps, jobs;
    std::string road;  // RD3: the road to write ("" = first)
    std::string dxfVersion = "R2000";
    double contourInterval = 1.0;
    bool noClouds = false;
    std::string crs;    // GIS: coordinate system ("" = what the inputs state)
    double cell = 0.0;  // elevation model: cell size in metres (0 = from the triangles)
    // Filled after the import: the system the inputs state, and the input.
    std::string statedCrs, statedBy;
};

// Imports and exports report through the session's sink; this says how.
struct DiagOptions {
    bool quiet = false;
    bool strict = false;
};

void AddImportOptions(CLI::App& app, ImportOptions& o);
// Parses "A,B,C" (an empty text gives an empty list).
std::vector<std::string> SplitList(const std::string& s);

}  // namespace roadx::cli
