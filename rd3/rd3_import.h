// RD3 import: reads one RD3 road file and adds its road (plan, main profile,
// cross sections) to the document through the builder.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "exchange/common/status.h"
#include "vesk/diagnostics.h"
#include "vesk/string.h"

class IVantriDati;

namespace roadx::rd3 {

// Where the reader stopped, carried in TExchangeStatus::detail. Every end
// other than kOk leaves in the document whatever was added before it.
enum class ReadEnd {
    kOk,              // read to the end (a file without sections included)
    kOpenFailed,      // the file could not be opened
    kEmpty,           // empty file, or fewer bytes read than its size
    kNoRoad,          // the directory names no road record (nothing added)
    kBadDirectory,    // a directory tag out of order
    kBadRoadRecord,   // the road offset does not lead to a road record
    kBadProfileRecord,
    kBadTemplateRecord,
    kBadSegmentCode,  // a template segment of an unknown code
    kBadAssignRecord, // the assignment offset leads to neither list nor chain
    kTruncated,       // an offset or a record runs past the end of the file
    kLoop,            // a chain of next-links comes back to a record
    kNoNeighbour,     // a section side could not be rebuilt: no template
                      // before or after it; sections stop there
    kTooLarge,        // the sections would take more work than the import
                      // allows (see rd3_reader.h)
};

// One line naming the problem, in English, for the command line.
const char* ReadEndText(ReadEnd e);
// The status of an end (OK, OPEN_FAILED, ENDED_EARLY or BAD_INPUT, with the
// end as its detail), and back.
TExchangeStatus StatusOf(ReadEnd e);
ReadEnd ReadEndOf(const TExchangeStatus& s);

// FImportRD3 saying how it ended. The message box is shown for the format
// errors as the host expects; the status tells the rest.
// With a sink, what the file holds that the import leaves out or changes is
// reported to it (see vesk/diagnostics.h); nothing else changes.
TExchangeStatus ImportRD3Status(IVantriDati* doc, const char* path, vesk::diag::CSink* sink = nullptr);

// The same over a file image in memory; roadName is used as it stands.
// `file` names the image in the records.
TExchangeStatus ImportRD3BufferStatus(IVantriDati* doc, const char* roadName, const uint8_t* data, size_t size,
                                      vesk::diag::CSink* sink = nullptr, const std::string& file = "");

// The road name of a file: the part after the last '/' or '\', cut before
// its first '.'.
const char* Rd3RoadNameStart(const char* path);
vesk::String Rd3RoadNameFromPath(const char* path);

}  // namespace roadx::rd3
