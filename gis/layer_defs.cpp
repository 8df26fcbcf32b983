#include "gis/layer_defs.h"

#include <cstring>
#include <stdexcept>

namespace roadx::gis {

namespace {
constexpr OGRFieldType S = OFTString, R = OFTReal, I = OFTInteger;
}

const std::vector<TLayerDef>& LayerDefs() {
    static const std::vector<TLayerDef> kLayers = {
        {"alignments", wkbLineStringZM,
         {{"name", S}, {"sta_start", R}, {"sta_end", R}, {"length", R}, {"elements", I}, {"profile", I}}},
        {"alignment_elements", wkbLineString,
         {{"road", S}, {"index", I}, {"kind", S}, {"sta_start", R}, {"sta_end", R}, {"length", R}, {"radius", R},
          {"r_start", R}, {"r_end", R}, {"clot_a", R}, {"turn", S}, {"angle_deg", R}}},
        {"cross_sections", wkbLineString, {{"road", S}, {"name", S}, {"station", R}, {"length", R}}},
        {"cross_section_lines", wkbLineString25D,
         {{"road", S}, {"section", S}, {"station", R}, {"code", S}, {"code_name", S}, {"terrain", I}}},
        {"tin", wkbPolygon25D, {{"surface", S}}},
        {"surface_boundaries", wkbPolygon25D, {{"surface", S}, {"kind", S}, {"index", I}}},
        {"breaklines", wkbLineString25D, {{"surface", S}, {"index", I}}},
        {"contours", wkbLineString25D, {{"surface", S}, {"elev", R}}},
        {"points", wkbPoint25D, {{"group", S}, {"name", S}, {"desc", S}, {"elev", R}}},
        {"survey_stations", wkbPoint25D, {{"job", S}, {"setup", I}, {"name", S}, {"desc", S}, {"inst_h", R}}},
        {"observations", wkbPoint25D,
         {{"job", S}, {"setup", I}, {"sta_name", S}, {"name", S}, {"desc", S}, {"target_h", R}, {"slope_dist", R},
          {"zenith", R}, {"horiz_ang", R}}},
        {"gps_points", wkbPoint25D,
         {{"group", S}, {"base", S}, {"name", S}, {"desc", S}, {"lat", R}, {"lon", R}, {"height", R},
          {"quality", I}, {"soln_type", S}, {"sats", I}}},
    };
    return kLayers;
}

const TLayerDef& LayerDef(const char* name) {
    for (const TLayerDef& d : LayerDefs())
        if (std::strcmp(d.name, name) == 0) return d;
    throw std::logic_error(std::string("no GIS layer named ") + name);
}

}  // namespace roadx::gis
