#include "gis/crs.h"

#include <cmath>

#include "vesk/diagnostics.h"

namespace roadx::gis {

namespace {

// The system from a definition text, x easting (or longitude) whatever the
// authority says; null when GDAL does not accept it.
std::unique_ptr<OGRSpatialReference> Parse(const std::string& definition) {
    auto srs = std::make_unique<OGRSpatialReference>();
    if (srs->SetFromUserInput(definition.c_str()) != OGRERR_NONE) return nullptr;
    srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs;
}

std::string Label(const OGRSpatialReference& srs, const std::string& definition) {
    const char* auth = srs.GetAuthorityName(nullptr);
    const char* code = srs.GetAuthorityCode(nullptr);
    if (auth && code) return std::string(auth) + ":" + code;
    if (const char* name = srs.GetName()) return name;
    return definition.size() <= 40 ? definition : definition.substr(0, 40) + "...";
}

}  // namespace

std::unique_ptr<OGRSpatialReference> Wgs84LonLat() {
    auto srs = std::make_unique<OGRSpatialReference>();
    srs->importFromEPSG(4326);
    srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs;
}

TExchangeStatus ChooseCrs(const TGisRequest& r, TCrsChoice& out) {
    out = TCrsChoice{};
    std::string definition = r.crs.empty() ? r.statedCrs : r.crs;
    if (definition.empty()) {
        vesk::diag::TRecord rec;
        rec.kind = "gis-no-crs";
        rec.file = r.path;
        rec.message = "output without a coordinate system (the inputs state none and no --crs was given)";
        rec.instead = "written without one";
        vesk::diag::Report(r.sink, std::move(rec));
        return TExchangeStatus::Ok();
    }
    out.srs = Parse(definition);
    if (!out.srs) {
        if (!r.crs.empty())
            return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                         "--crs \"" + r.crs + "\" is not a coordinate system GDAL knows");
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                     r.statedBy + " states the coordinate system \"" + r.statedCrs +
                                         "\", which GDAL does not know; give --crs");
    }
    out.label = Label(*out.srs, definition);
    if (out.srs->IsProjected()) {
        const double metresPerUnit = out.srs->GetLinearUnits(nullptr);
        if (std::isfinite(metresPerUnit) && metresPerUnit > 0.0) out.scale = 1.0 / metresPerUnit;
    }
    return TExchangeStatus::Ok();
}

}  // namespace roadx::gis
