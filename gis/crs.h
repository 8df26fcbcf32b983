// The coordinate system of a GIS output: the user's --crs where given, else
// what the inputs state, else none (written without one, with a warning).
#pragma once
#include <memory>
#include <string>

#include <ogr_spatialref.h>

#include "exchange/common/status.h"
#include "gis/gis_export.h"

namespace roadx::gis {

struct TCrsChoice {
    std::unique_ptr<OGRSpatialReference> srs;  // null: none known
    std::string label;                         // "EPSG:3878" or the system's name, for messages
    // Plan coordinates of the document are metres; a projected system in
    // other units (US survey feet) gets x·scale, y·scale.
    double scale = 1.0;
};

// Resolves the request's system. A --crs or a stated system that GDAL does
// not accept fails with one line naming it; none at all is not a failure
// (a warning goes to the request's sink).
TExchangeStatus ChooseCrs(const TGisRequest& r, TCrsChoice& out);

// WGS 84 longitude/latitude (GeoJSON's system), x = longitude.
std::unique_ptr<OGRSpatialReference> Wgs84LonLat();

}  // namespace roadx::gis
