// RD3 export: writes one road (plan, main profile, section templates and
// their assignments) as an RD3 road file.
#pragma once
#include <string>

#include "exchange/common/status.h"
#include "vesk/diagnostics.h"

class CRoad;

namespace roadx::rd3 {

// Writes the road to path, no dialog. The status tells whether the file
// could be created and written.
TExchangeStatus WriteRD3File(CRoad& road, const std::string& path);

// FExportRD3 saying how it ended: asks for the file with the host's save
// dialog, then writes it; a cancelled dialog writes nothing. With a sink,
// what the file cannot carry is reported to it first, under `file` (the
// output as the user named it).
TExchangeStatus ExportRD3Status(CRoad& road, vesk::diag::CSink* sink = nullptr, const std::string& file = "");

}  // namespace roadx::rd3
