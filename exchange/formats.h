// The format table: every file format roadx reads or writes, registered in
// one place (formats.cpp). A row names the format, the extensions and --to
// keys that choose it, how to recognise its content, and the functions that
// import and export it; a new format is one more row.
#pragma once
#include <string>
#include <vector>

#include "exchange/common/status.h"
#include "vesk/diagnostics.h"

class CVantriDoc;

namespace roadx::exchange {

// What an export needs beyond the document and the host's dialogs (which
// the caller answers: file names, selections, options).
struct TExportRequest {
    std::string path;               // the output, as the user gave it
    std::string road;               // one-road formats: the road ("" = first)
    double contourInterval = 1.0;   // drawings, GIS: metres between contour lines
    // GIS outputs: the coordinate system given by the user (overrides),
    // the one the inputs state and the input stating it ("" = none), the
    // elevation model's cell size in metres (0 = from the triangles).
    std::string crs;
    std::string statedCrs;
    std::string statedBy;
    double cell = 0.0;
    // With a sink: when the export would report a warning, nothing is
    // written and the status is BAD_INPUT.
    bool failOnWarning = false;
};

// What of an export a format uses beyond the path: the command line refuses
// an option that the chosen output format does not use, and names the
// formats it applies to. A row declares its own; a new format declares what
// it honours and gets the refusal of the rest for free.
enum EExportUse : unsigned {
    kUseRoads = 1u << 0,           // which roads (--export-roads)
    kUseSurfaces = 1u << 1,        // which surfaces (--export-surfaces)
    kUsePointGroups = 1u << 2,     // which point groups (--export-point-groups)
    kUseGpsGroups = 1u << 3,       // which GPS groups (--export-gps)
    kUseJobs = 1u << 4,            // which total-station jobs (--export-jobs)
    kUseOneRoad = 1u << 5,         // the one road written (--road)
    kUseDrawingVersion = 1u << 6,  // the drawing file version (--dxf-version)
    kUseContours = 1u << 7,        // the contour interval (--contour-interval)
    kUseClouds = 1u << 8,          // point clouds on or off (--no-clouds)
    kUseCrs = 1u << 9,             // the coordinate system written (--crs)
    kUseCell = 1u << 10,           // the elevation model's cell size (--cell)
};

// What an import needs beyond the path and the host's dialogs. The default
// request is the import the host gets.
struct TImportRequest {
    // LandXML: each plan element's start tangent and sweep from the file's
    // coordinates (Start, End, Center, PI) instead of its directions.
    bool pointsGeometry = false;
};

// What of an import request a format honours: the command line refuses an
// import option that no input's format uses (as EExportUse for outputs).
enum EImportUse : unsigned {
    kUseGeometry = 1u << 0,  // how the plan is placed (--geometry)
};

// `sink` (may be null) receives what the import or export skipped, defaulted,
// clamped, cut or could not carry; it changes nothing else.
using ImportFn = TExchangeStatus (*)(CVantriDoc& doc, const std::string& path, vesk::diag::CSink* sink,
                                     const TImportRequest& request);
using ExportFn = TExchangeStatus (*)(CVantriDoc& doc, const TExportRequest& request, vesk::diag::CSink* sink);
// True when the first bytes of a file are this format's.
using SniffFn = bool (*)(const std::string& head);

struct TFormat {
    const char* name;                     // for messages: "LandXML"
    std::vector<std::string> keys;        // --to values, the first shown in help
    std::vector<std::string> extensions;  // lower case, no dot
    SniffFn sniff = nullptr;              // nullptr: the extension only
    ImportFn import = nullptr;            // nullptr: not read
    ExportFn exportTo = nullptr;          // nullptr: not written
    unsigned uses = 0;                    // EExportUse bits: what the export honours
    unsigned importUses = 0;              // EImportUse bits: what the import honours
};

// Every format, in the order of the table.
const std::vector<TFormat>& Formats();

// The format of --to key `key` (exact, lower case), or nullptr.
const TFormat* FindFormat(const std::string& key);
// An input's format: a readable format's extension (case ignored) first,
// else the first bytes of the file; nullptr when neither tells.
const TFormat* DetectInputFormat(const std::string& path);
// An output's format: --to when given, else the extension (case ignored;
// a --to key counts as an extension); nullptr when neither names a
// writable format.
const TFormat* OutputFormat(const std::string& path, const std::string& to);
// The format whose extensions or --to keys hold the name's extension (case
// ignored), readable or writable; nullptr when the extension names none.
const TFormat* FormatOfExtension(const std::string& path);
// The --to keys of every writable format (first key of each), in order.
std::vector<std::string> OutputKeys();
// The extensions of every readable format, in order.
std::vector<std::string> InputExtensions();

// The import and export of a format; BAD_INPUT when it does not read or
// write files of this kind.
// With a sink, their diagnostics go to it (see vesk/diagnostics.h).
TExchangeStatus ImportFile(CVantriDoc& doc, const std::string& path, const TFormat& f,
                           vesk::diag::CSink* sink = nullptr, const TImportRequest& request = {});
TExchangeStatus ExportFile(CVantriDoc& doc, const TFormat& f, const TExportRequest& request,
                           vesk::diag::CSink* sink = nullptr);

}  // namespace roadx::exchange
