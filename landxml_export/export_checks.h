// What a LandXML file as written cannot carry of the roads chosen for it,
// reported to a diagnostics sink before the file is written: continuity
// clothoids, cross-section points that stand alone between undefined
// vertices, and a start elevation the design line does not have.
#pragma once
#include <string>
#include <vector>

#include "vesk/diagnostics.h"

class CRoad;

namespace roadx::landxml {

// Returns the number of records reported (repeats included).
size_t CheckLandXMLExport(const std::vector<CRoad*>& roads, vesk::diag::CSink* sink, const std::string& file);

}  // namespace roadx::landxml
