// Assembles a whole AC1015 file around the objects a CDwgCtx has built.
#pragma once
#include <cstdint>
#include <vector>

#include "cad/dwg_write_ctx.h"

namespace roadx::cad::dwg {

std::vector<uint8_t> AssembleFile(CDwgCtx& c);

}  // namespace roadx::cad::dwg
