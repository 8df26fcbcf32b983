// Writes features layer by layer into an OGR dataset. A layer is created on
// its first feature, so empty layers are never written. For GeoJSON (one
// collection per file) every layer goes into one collection whose features
// carry their layer's name in "layer", reprojected to WGS 84 lon/lat.
#pragma once
#include <memory>
#include <string>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include "gis/crs.h"
#include "gis/layer_defs.h"

namespace roadx::gis {

class CVectorWriter {
public:
    // ds: the open dataset; crs: the layers' system (may hold none);
    // oneCollection: GeoJSON.
    CVectorWriter(GDALDataset& ds, const TCrsChoice& crs, bool oneCollection, CSLConstList layerOptions);
    ~CVectorWriter();

    // Starts a layer (ends the one before).
    void Begin(const TLayerDef& def);
    // A new feature of the current layer, to fill by field name.
    OGRFeature& New();
    // Writes the feature made by New() with its geometry, whose plan
    // coordinates are in the system's units (see Plan()). After a failure,
    // does nothing.
    void Add(std::unique_ptr<OGRGeometry> geometry);
    // Ends the last layer; false with Error() when anything failed.
    bool Finish();
    const std::string& Error() const { return error_; }
    bool Ok() const { return error_.empty(); }
    // Features written so far.
    long long Written() const { return written_; }
    // Plan coordinates of the document (metres) in the system's units.
    double Plan(double metres) const { return metres * crs_.scale; }

private:
    bool EnsureLayer();
    bool EndLayer();
    void Fail(const std::string& what);

    GDALDataset& ds_;
    const TCrsChoice& crs_;
    bool one_;
    CSLConstList options_;
    std::unique_ptr<OGRSpatialReference> wgs84_;
    std::unique_ptr<OGRCoordinateTransformation> toWgs84_;
    const TLayerDef* def_ = nullptr;
    OGRLayer* layer_ = nullptr;       // the current layer, once created
    bool inTransaction_ = false;
    OGRFeatureDefn* spare_;           // for features filled after a failure
    OGRFeature* feature_ = nullptr;   // the one being filled
    long long written_ = 0;
    std::string error_;
};

// Field setters that leave a field null for an undefined (>= 8.5e199) or
// non-finite value, and for an empty text.
void SetReal(OGRFeature& f, const char* field, double v);
void SetText(OGRFeature& f, const char* field, const std::string& s);
void SetInt(OGRFeature& f, const char* field, long long v);

}  // namespace roadx::gis
