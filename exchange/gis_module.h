// The GIS module (roadx_gis.so), loaded the first time a GIS output is
// written: the program itself links no GDAL, so every other command starts
// without loading its hundred libraries (about 40 ms on every run).
#pragma once
#include <string>

#include "gis/gis_export.h"

namespace roadx::exchange {

// The module's calls, or null with `error` saying why it could not be
// loaded. The module is the file the environment variable ROADX_GIS_MODULE
// names, else roadx_gis.so beside the running program, else the one the
// build made; it is loaded once and stays.
const gis::TGisCalls* GisCalls(std::string& error);

}  // namespace roadx::exchange
