// GIS outputs in the format table, and the coordinate systems the inputs
// state.
#include <cstring>

#include "exchange/crs.h"
#include "exchange/gis_module.h"
#include "exchange/gis_rows.h"
#include "gis/gis_export.h"
#include "host/document.h"
#include "landxml_import/coordinate_system.h"

namespace roadx::exchange {

namespace {

gis::TGisRequest GisRequest(const TExportRequest& r, vesk::diag::CSink* sink) {
    gis::TGisRequest g;
    g.path = r.path;
    g.crs = r.crs;
    g.statedCrs = r.statedCrs;
    g.statedBy = r.statedBy;
    g.contourInterval = r.contourInterval;
    g.cell = r.cell;
    g.sink = sink;
    return g;
}

TExchangeStatus ModuleMissing(const std::string& error) {
    return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, error);
}

TExchangeStatus ExportVectors(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink,
                              gis::EVectorFormat format) {
    std::string error;
    const gis::TGisCalls* calls = GisCalls(error);
    return calls ? calls->exportVectors(doc, GisRequest(r, sink), format) : ModuleMissing(error);
}

}  // namespace

TExchangeStatus ExportGeoPackageRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportVectors(doc, r, sink, gis::EVectorFormat::GeoPackage);
}
TExchangeStatus ExportGeoJSONRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportVectors(doc, r, sink, gis::EVectorFormat::GeoJSON);
}
TExchangeStatus ExportShapefileRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportVectors(doc, r, sink, gis::EVectorFormat::Shapefile);
}
TExchangeStatus ExportFlatGeobufRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportVectors(doc, r, sink, gis::EVectorFormat::FlatGeobuf);
}
TExchangeStatus ExportGeoTIFFRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    std::string error;
    const gis::TGisCalls* calls = GisCalls(error);
    return calls ? calls->exportElevationModel(doc, GisRequest(r, sink)) : ModuleMissing(error);
}

TStatedCrs StatedCoordinateSystem(const std::string& path) {
    TStatedCrs out;
    out.file = path;
    const TFormat* f = DetectInputFormat(path);
    if (!f || std::strcmp(f->name, "LandXML") != 0) return out;
    const landxml::TCoordinateSystem cs = landxml::ReadCoordinateSystem(path);
    out.definition = cs.Definition();
    out.name = cs.name;
    return out;
}

bool CarriesCoordinateSystem(const TFormat& f) {
    return f.exportTo == ExportGeoPackageRow || f.exportTo == ExportGeoJSONRow || f.exportTo == ExportShapefileRow ||
           f.exportTo == ExportFlatGeobufRow || f.exportTo == ExportGeoTIFFRow;
}

std::vector<TStatedCrs> StatedCoordinateSystems(const std::vector<std::string>& paths) {
    std::vector<TStatedCrs> out;
    for (const std::string& p : paths)
        if (TStatedCrs s = StatedCoordinateSystem(p); !s.definition.empty()) out.push_back(std::move(s));
    return out;
}

}  // namespace roadx::exchange
