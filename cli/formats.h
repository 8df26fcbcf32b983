// Which exchange format a path means, and the calls into the module for each.
#pragma once
#include <string>

#include "cli/options.h"
#include "exchange/common/status.h"

class CVantriDoc;

namespace roadx::cli {

enum class Format { Unknown, LandXML, RD3, DXF, DWG };

const char* FormatName(Format f);
// Inputs: ".rd3" is RD3, ".xml" LandXML; otherwise the content decides.
Format DetectInputFormat(const std::string& path);
// Outputs: --to wins; otherwise the extension (case-insensitive).
Format OutputFormat(const std::string& path, const std::string& to);

TExchangeStatus ImportFile(CVantriDoc& doc, const std::string& path, Format f);
TExchangeStatus ExportFile(CVantriDoc& doc, Format f, const ExportOptions& o);

}  // namespace roadx::cli
