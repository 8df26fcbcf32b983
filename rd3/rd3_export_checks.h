// What an RD3 file cannot carry of a road, reported to a diagnostics sink
// before the road is written: continuity clothoids, sections without an
// "STF" line, names longer than a name field.
#pragma once
#include <string>

#include "vesk/diagnostics.h"

class CRoad;

namespace roadx::rd3 {

void CheckRD3Export(CRoad& road, vesk::diag::CSink* sink, const std::string& file);

}  // namespace roadx::rd3
