// GIS outputs of the document, written through GDAL: the vector layers of
// roads, terrain, points and surveys (docs/gis.md), and a GeoTIFF elevation
// model of one surface. The coordinate system travels with them.
#pragma once
#include <string>

#include "exchange/common/status.h"

class IVantriDati;

namespace vesk::diag { class CSink; }

namespace roadx::gis {

enum class EVectorFormat { GeoPackage, GeoJSON, Shapefile, FlatGeobuf };

struct TGisRequest {
    std::string path;            // the output (a folder for Shapefile and FlatGeobuf)
    std::string crs;             // the user's definition ("EPSG:3878", WKT, ...); "" none
    std::string statedCrs;       // what the inputs state ("EPSG:3878" or WKT); "" none
    std::string statedBy;        // the input that states it, for messages
    double contourInterval = 1.0;  // metres between contour lines
    double cell = 0.0;           // elevation model: cell size in metres; 0 = from the triangles
    vesk::diag::CSink* sink = nullptr;  // warnings (no coordinate system); may be null
};

// The document's layers in one vector format. Empty layers are not written.
TExchangeStatus ExportVectorsStatus(IVantriDati& doc, const TGisRequest& request, EVectorFormat format);

// The elevation model of the document's one surface as a GeoTIFF.
TExchangeStatus ExportElevationModelStatus(IVantriDati& doc, const TGisRequest& request);

// The two calls above as the GIS module hands them out. GDAL and its hundred
// libraries take longer to load than most commands take to run, so the
// program links none of them: the module (roadx_gis.so) is loaded the first
// time a GIS output is written (exchange/gis_module.h).
struct TGisCalls {
    int abi;  // kGisAbi of the module's build
    TExchangeStatus (*exportVectors)(IVantriDati& doc, const TGisRequest& request, EVectorFormat format);
    TExchangeStatus (*exportElevationModel)(IVantriDati& doc, const TGisRequest& request);
};
// Changes whenever TGisCalls or TGisRequest change.
inline constexpr int kGisAbi = 1;

}  // namespace roadx::gis

// The module's one exported symbol.
extern "C" const roadx::gis::TGisCalls* roadx_gis_calls();
