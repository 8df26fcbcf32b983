// The export step of roadx convert: the document written in one format of
// the exchange table, the host's dialogs answered from the options.
#pragma once
#include "cli/options.h"
#include "exchange/common/status.h"
#include "exchange/formats.h"

namespace roadx::cli {

class Session;

// The status names the problem; a message box the user would have seen is
// added to it word for word.
// Warnings of the export go to the session's diagnostics.
TExchangeStatus ExportFile(Session& session, const exchange::TFormat& f, const ExportOptions& o);

}  // namespace roadx::cli
