// RD3 export: writes one road (plan, main profile, section templates and
// their assignments) as an RD3 road file.
#pragma once
#include <string>

#include "exchange/common/status.h"

class CRoad;

// Writes the road to path. The status tells whether the file could be
// created and written; FExportRD3 shows no message either way.
TExchangeStatus ExportRD3File(CRoad& road, const std::string& path);

// Asks for the file with the host's save dialog, then writes it; a
// cancelled dialog writes nothing. The first form tells the caller how it
// went; the exported entry point stays silent.
TExchangeStatus ExportRD3WithDialog(CRoad& road);
void FExportRD3(CRoad& road);
