// Extents (x, y, z) of what a document holds, for `roadx info`: each road
// (its plan axis, z from its main profile), surface, point group, and the
// whole document.
#pragma once
#include <nlohmann/json.hpp>

#include "host/document.h"

namespace roadx::cli {

// The box of a set of points; empty until a point is added. Coordinates
// that carry the undefined value are left out (z alone when only z is).
class CExtent {
public:
    void Add(double x, double y, double z);
    void AddXY(double x, double y);
    void AddZ(double z);
    void Add(const CExtent& other);
    // [xmin, ymin, zmin, xmax, ymax, zmax]; null when no point was added,
    // a null z pair when no elevation was.
    nlohmann::json Json() const;

private:
    bool xy_ = false, z_ = false;
    double min_[3] = {0, 0, 0}, max_[3] = {0, 0, 0};
};

// A road's plan axis, sampled along each element (arcs and spirals at 32
// points), with z from its main profile's vertices.
CExtent RoadExtent(CRoad& road);
CExtent SurfaceExtent(const CDtmPrj& prj);
CExtent PointGroupExtent(CLibPnt& lib, int group);

}  // namespace roadx::cli
