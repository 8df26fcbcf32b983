// The GIS rows of the format table (formats.cpp): vectors through OGR and
// the GeoTIFF elevation model, over gis/.
#pragma once
#include "exchange/formats.h"

namespace roadx::exchange {

TExchangeStatus ExportGeoPackageRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink);
TExchangeStatus ExportGeoJSONRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink);
TExchangeStatus ExportShapefileRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink);
TExchangeStatus ExportFlatGeobufRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink);
TExchangeStatus ExportGeoTIFFRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink);

}  // namespace roadx::exchange
