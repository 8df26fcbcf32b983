// The DWG writer: builds the object graph of an engine (the same graph as
// the DXF writer's) and writes it as an R2000 (AC1015) drawing file.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "cad/dxf_graph.h"

class CZedraEng;

namespace roadx::cad::dwg {

// The bytes of the file. opt.version must be R2000.
std::vector<uint8_t> BuildDwg(const CZedraEng& eng, const dxf::TSaveOptions& opt, bool saveVars);
// The same from a graph already made of the engine.
std::vector<uint8_t> BuildDwg(const CZedraEng& eng, const dxf::TGraph& g, bool saveVars);

// saveVars: write the engine's drawing variables, not the defaults of a new
// drawing. Returns a roadx::cad::kSave... result: kSaveDwgUnsupported (nothing
// written) for R12, the only other version the engine knows. error (when
// given) says in words why the file could not be created or written.
int WriteDwg(const CZedraEng& eng, const dxf::TSaveOptions& opt, bool saveVars, const std::string& path,
             std::string* error = nullptr);

}  // namespace roadx::cad::dwg
