// The DXF writer: walks the object graph of an engine and writes it as an
// R2000 (AC1015) or R12 (AC1009) drawing file.
#pragma once
#include <string>

#include "cad/dxf_graph.h"

class CZedraEng;

namespace roadx::cad::dxf {

// saveVars: write the engine's drawing variables to the header, not only
// what a reader needs. Returns a roadx::cad::kSave... result; error (when
// given) says in words why the file could not be created or written.
int WriteDxf(const CZedraEng& eng, const TSaveOptions& opt, bool saveVars, const std::string& path,
             std::string* error = nullptr);

}  // namespace roadx::cad::dxf
