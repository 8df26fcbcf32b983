// The vector outputs: one GDAL driver per format, the layers of layers.h,
// the coordinate system of crs.h, the atomic output of gdal_output.h.
#include <cpl_string.h>

#include "gis/crs.h"
#include "gis/gdal_output.h"
#include "gis/gis_export.h"
#include "gis/layers.h"
#include "gis/vector_writer.h"
#include "host/document.h"

namespace roadx::gis {

namespace {

struct TDriver {
    const char* name;
    vesk::CAtomicFile::EKind kind;
    std::vector<const char*> layerOptions;
};

TDriver DriverOf(EVectorFormat f) {
    using K = vesk::CAtomicFile::EKind;
    switch (f) {
        case EVectorFormat::GeoPackage: return {"GPKG", K::File, {}};
        // RFC 7946: WGS 84 lon/lat, right-hand rings; ten decimals of a
        // degree keep about ten micrometres.
        case EVectorFormat::GeoJSON: return {"GeoJSON", K::File, {"RFC7946=YES", "COORDINATE_PRECISION=10"}};
        case EVectorFormat::Shapefile: return {"ESRI Shapefile", K::Folder, {"ENCODING=UTF-8"}};
        case EVectorFormat::FlatGeobuf: return {"FlatGeobuf", K::Folder, {}};
    }
    return {"GPKG", K::File, {}};
}

TExchangeStatus WriteFailed(const std::string& msg) {
    return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, msg);
}

}  // namespace

TExchangeStatus ExportVectorsStatus(IVantriDati& doc, const TGisRequest& r, EVectorFormat format) {
    CGdalScope scope;
    if (format == EVectorFormat::GeoJSON && r.crs.empty() && r.statedCrs.empty())
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                     "GeoJSON is written in WGS 84 longitude/latitude, but the inputs state no "
                                     "coordinate system to transform from: give --crs (for example --crs EPSG:3878)");
    TCrsChoice crs;
    if (TExchangeStatus st = ChooseCrs(r, crs); !st.ok()) return st;
    const TDriver drv = DriverOf(format);
    CPLStringList layerOptions;
    for (const char* o : drv.layerOptions) layerOptions.AddString(o);
    CGdalOutput out(scope);
    GDALDataset* ds = out.Create(r.path, drv.kind, drv.name, 0, 0, 0, GDT_Unknown, nullptr);
    if (!ds) return WriteFailed(out.Error());
    CVectorWriter w(*ds, crs, format == EVectorFormat::GeoJSON, layerOptions.List());
    WriteRoadLayers(doc, w);
    WriteSurfaceLayers(doc, w, r.contourInterval);
    WriteSurveyLayers(doc, w);
    if (!w.Finish()) return WriteFailed("cannot write: " + w.Error());
    // A dataset without a layer is not one GIS programs open.
    if (w.Written() == 0)
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                     "the inputs hold nothing with coordinates to write as GIS layers; "
                                     "nothing was written");
    if (!out.Commit()) return WriteFailed(out.Error());
    return TExchangeStatus::Ok();
}

}  // namespace roadx::gis
