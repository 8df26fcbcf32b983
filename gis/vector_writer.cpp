#include "gis/vector_writer.h"

#include <cpl_error.h>

#include <cmath>

#include "vesk/undefined.h"

namespace roadx::gis {

namespace {

// Every field of every layer, once (GeoJSON's one collection).
void AddUnionFields(OGRLayer& layer) {
    OGRFieldDefn name("layer", OFTString);
    layer.CreateField(&name);
    for (const TLayerDef& d : LayerDefs())
        for (const TFieldDef& f : d.fields) {
            if (layer.GetLayerDefn()->GetFieldIndex(f.name) >= 0) continue;
            OGRFieldDefn fd(f.name, f.type);
            layer.CreateField(&fd);
        }
}

}  // namespace

void SetReal(OGRFeature& f, const char* field, double v) {
    const int i = f.GetFieldIndex(field);
    if (i < 0) return;
    if (std::isfinite(v) && vesk::IsDefined(v)) f.SetField(i, v);
    else f.SetFieldNull(i);
}

void SetText(OGRFeature& f, const char* field, const std::string& s) {
    const int i = f.GetFieldIndex(field);
    if (i >= 0 && !s.empty()) f.SetField(i, s.c_str());
}

void SetInt(OGRFeature& f, const char* field, long long v) {
    const int i = f.GetFieldIndex(field);
    if (i >= 0) f.SetField(i, static_cast<GIntBig>(v));
}

CVectorWriter::CVectorWriter(GDALDataset& ds, const TCrsChoice& crs, bool oneCollection, CSLConstList layerOptions)
    : ds_(ds), crs_(crs), one_(oneCollection), options_(layerOptions), spare_(new OGRFeatureDefn("unused")) {
    spare_->Reference();
    if (!one_) return;
    wgs84_ = Wgs84LonLat();
    if (crs_.srs) toWgs84_.reset(OGRCreateCoordinateTransformation(crs_.srs.get(), wgs84_.get()));
    if (!toWgs84_) Fail("no transformation from " + crs_.label + " to WGS 84");
    layer_ = ds_.CreateLayer("roadx", wgs84_.get(), wkbUnknown, const_cast<char**>(options_));
    if (!layer_) {
        Fail("cannot create the feature collection");
        return;
    }
    AddUnionFields(*layer_);
}

CVectorWriter::~CVectorWriter() {
    if (feature_) OGRFeature::DestroyFeature(feature_);
    if (spare_->Dereference() == 0) delete spare_;
}

void CVectorWriter::Fail(const std::string& what) {
    if (!error_.empty()) return;
    error_ = what;
    // GDAL's own words, when it said something.
    const char* why = CPLGetLastErrorMsg();
    if (why && *why) error_ += std::string(" (") + why + ")";
}

void CVectorWriter::Begin(const TLayerDef& def) {
    EndLayer();
    def_ = &def;
    if (!one_) layer_ = nullptr;
}

bool CVectorWriter::EnsureLayer() {
    if (!Ok()) return false;
    if (!inTransaction_) {
        // A transaction per layer: GeoPackage writes are a hundred times
        // faster so. Formats without transactions simply write.
        inTransaction_ = ds_.StartTransaction(FALSE) == OGRERR_NONE;
    }
    if (layer_) return true;
    layer_ = ds_.CreateLayer(def_->name, crs_.srs.get(), def_->geometry, const_cast<char**>(options_));
    if (!layer_) {
        Fail(std::string("cannot create the layer ") + def_->name);
        return false;
    }
    for (const TFieldDef& f : def_->fields) {
        OGRFieldDefn fd(f.name, f.type);
        if (f.type == OFTString) fd.SetWidth(254);
        if (layer_->CreateField(&fd) != OGRERR_NONE) {
            Fail(std::string("cannot create the field ") + f.name + " of layer " + def_->name);
            return false;
        }
    }
    return true;
}

OGRFeature& CVectorWriter::New() {
    if (feature_) OGRFeature::DestroyFeature(feature_);
    feature_ = nullptr;
    // After a failure the caller still fills a feature; it is never written.
    feature_ = OGRFeature::CreateFeature(EnsureLayer() ? layer_->GetLayerDefn() : spare_);
    if (one_) SetText(*feature_, "layer", def_->name);
    return *feature_;
}

void CVectorWriter::Add(std::unique_ptr<OGRGeometry> g) {
    if (!Ok() || !feature_ || !layer_) return;
    if (toWgs84_ && g->transform(toWgs84_.get()) != OGRERR_NONE) {
        Fail(std::string("cannot transform a feature of layer ") + def_->name + " to WGS 84");
        return;
    }
    feature_->SetGeometryDirectly(g.release());
    if (layer_->CreateFeature(feature_) != OGRERR_NONE)
        Fail(std::string("cannot write a feature of layer ") + def_->name);
    else
        ++written_;
}

bool CVectorWriter::EndLayer() {
    if (inTransaction_ && ds_.CommitTransaction() != OGRERR_NONE) Fail("cannot commit the layer's features");
    inTransaction_ = false;
    return Ok();
}

bool CVectorWriter::Finish() {
    EndLayer();
    if (feature_) OGRFeature::DestroyFeature(feature_);
    feature_ = nullptr;
    return Ok();
}

}  // namespace roadx::gis
