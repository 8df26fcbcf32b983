// RD3 export: writes one road (plan, main profile, section templates and
// their assignments) as an RD3 road file.
#pragma once
#include <string>

#include "exchange/common/status.h"

class CRoad;

namespace roadx::rd3 {

// Writes the road to path, no dialog. The status tells whether the file
// could be created and written.
TExchangeStatus WriteRD3File(CRoad& road, const std::string& path);

// FExportRD3 saying how it ended: asks for the file with the host's save
// dialog, then writes it; a cancelled dialog writes nothing.
TExchangeStatus ExportRD3Status(CRoad& road);

}  // namespace roadx::rd3
