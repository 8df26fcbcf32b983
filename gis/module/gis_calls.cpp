// What the GIS module exports: its two calls in one table.
#include "gis/gis_export.h"

extern "C" const roadx::gis::TGisCalls* roadx_gis_calls() {
    static const roadx::gis::TGisCalls calls{roadx::gis::kGisAbi, roadx::gis::ExportVectorsStatus,
                                             roadx::gis::ExportElevationModelStatus};
    return &calls;
}
