// The vector layers roadx writes: name, geometry and fields of each. Field
// names stay within the ten characters a Shapefile allows, and a name used
// by several layers has one type everywhere (GeoJSON merges them into one
// collection).
#pragma once
#include <vector>

#include <ogr_core.h>

namespace roadx::gis {

struct TFieldDef {
    const char* name;
    OGRFieldType type;  // OFTString, OFTReal or OFTInteger
};

struct TLayerDef {
    const char* name;
    OGRwkbGeometryType geometry;
    std::vector<TFieldDef> fields;
};

// Every layer, in the order they are written.
const std::vector<TLayerDef>& LayerDefs();
// One layer by name (it must exist).
const TLayerDef& LayerDef(const char* name);

}  // namespace roadx::gis
