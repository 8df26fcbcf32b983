// The coordinate system the inputs state (LandXML's CoordinateSystem), for
// the GIS outputs and `roadx info`.
#pragma once
#include <string>
#include <vector>

namespace roadx::exchange {

struct TStatedCrs {
    std::string file;        // the input, as given
    std::string definition;  // "EPSG:3878" or the WKT as stated
    std::string name;        // the element's name ("" when none)
};

// What one input states; an empty definition when it states nothing (or
// its format carries no coordinate system).
TStatedCrs StatedCoordinateSystem(const std::string& path);

// Whether an output format carries a coordinate system (the GIS ones).
bool CarriesCoordinateSystem(const struct TFormat& f);

// The systems of several inputs: those that state one, in input order.
std::vector<TStatedCrs> StatedCoordinateSystems(const std::vector<std::string>& paths);

}  // namespace roadx::exchange
