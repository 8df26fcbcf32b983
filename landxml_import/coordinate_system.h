// The coordinate system a LandXML file states: its CoordinateSystem element
// (epsgCode, name, ogcWktCode). Read beside the import, which does not use
// it; the GIS outputs and `roadx info` do.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

class CXmlReader;

namespace roadx::landxml {

struct TCoordinateSystem {
    bool found = false;      // the file has a CoordinateSystem element
    std::string name;        // its name attribute ("" when none)
    std::string epsgCode;    // as written, blanks trimmed ("" when none)
    std::string ogcWktCode;  // the WKT as written ("" when none)

    // What the file states, for GDAL: "EPSG:" and the code when there is
    // one, else the WKT, else "".
    std::string Definition() const;
};

// The first CoordinateSystem under the LandXML root of a file. A file that
// cannot be read or parsed states none (the import reports those).
TCoordinateSystem ReadCoordinateSystem(const std::string& path);

// The same for a file's bytes.
TCoordinateSystem CoordinateSystemOfText(std::string_view bytes);

// Where the first "<CoordinateSystem" tag (followed by a blank, '/' or '>')
// starts in a text, or npos.
size_t FindCoordinateSystemTag(std::string_view text);

// An import that has loaded a file notes what it states, when its reader can
// tell without a search of its own (the tag was looked for in the parser's
// skeleton): a later ReadCoordinateSystem of that same, unchanged file (same
// device, inode, size and modification time) answers without reading it
// again. A surface file is thus searched once, not twice.
void RememberCoordinateSystem(const std::string& path, const CXmlReader& reader);

}  // namespace roadx::landxml
