// Small pieces of LandXML text shared by the section writers. Every number
// goes through the buffered writer, so it reads exactly as "%f" would give
// it; coordinates are written northing first.
#pragma once
#include <string_view>

#include "vesk/geom.h"
#include "vesk/out_buffer.h"

namespace roadx::landxml {

// Text inside an attribute value or element: "&", "<", ">" and '"' become
// entities so that any name keeps the file well-formed; other text is written
// as it stands.
void PutText(vesk::COutBuffer& out, std::string_view text);

// "%f %f" with Y, X.
inline void PutYX(vesk::COutBuffer& out, const vesk::geom::PNT_2D& p) {
    out.F6(p.y);
    out.Ch(' ');
    out.F6(p.x);
}

// "%f %f %f" with Y, X, Z.
inline void PutYXZ(vesk::COutBuffer& out, double x, double y, double z) {
    out.F6(y);
    out.Ch(' ');
    out.F6(x);
    out.Ch(' ');
    out.F6(z);
}

inline void PutYXZ(vesk::COutBuffer& out, const vesk::geom::PNT_3D& p) { PutYXZ(out, p.x, p.y, p.z); }

}  // namespace roadx::landxml
