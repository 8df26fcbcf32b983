// Plain records of the CAD engine: file versions, save results, entity
// records. Entities are stored by value in one flat vector per kind, so a
// million 3D faces are one allocation, not a million.
#pragma once
#include <cstdint>

#include "vesk/geom.h"

// Versions the engine can save. R2000 is the default and the richest; R12 is
// for old readers (no LWPOLYLINE, no OBJECTS section).
enum enumZEDRA_DXFDWG_VER {
    ZEDRA_DXFDWG_VER_R12 = 12,
    ZEDRA_DXFDWG_VER_R2000 = 2000,
};

namespace roadx::cad {

using vesk::geom::PNT_3D;

// Results of CZedraEng::SaveFileDXF / SaveFileDWG.
inline constexpr int kSaveOk = 0;
inline constexpr int kSaveDiskFull = -1;        // ENOSPC, EDQUOT, EFBIG, short write, failed close
inline constexpr int kSaveNotAllowed = -2;      // the file cannot be created or opened for writing
inline constexpr int kSaveDwgUnsupported = -3;  // DWG of a version other than R2000; nothing written
inline constexpr int kSaveBadVersion = -4;      // version value unknown; nothing written
inline constexpr int kSaveIoError = -5;         // any other write error (EIO, ...)
inline constexpr int kSaveRefused = -6;         // the caller's diagnostics scope refused a warning; nothing written

// Entity colours: ACI 1..255, or these two.
inline constexpr int16_t kColorByBlock = 0;
inline constexpr int16_t kColorByLayer = 256;

enum class EEntKind : uint8_t { Point, Line, Arc, Circle, Poly2D, Poly3D, Face3D, Text, Insert };
inline constexpr int kEntKindCount = 9;

// Per-kind bits of TEntHdr::flags.
inline constexpr uint16_t kFlagClosed = 1;  // Poly2D, Poly3D
// Face3D: the low four bits are the invisible-edge bits of the file (1 = first edge, 2, 4, 8).

// Common part of every entity. `block` is 0 for model space, otherwise the
// handle of the block whose definition holds the entity. `tag` is free for
// the caller (display objects mark their entities with it).
struct TEntHdr {
    uint64_t handle = 0;
    uint64_t drawing = 0;
    uint64_t block = 0;
    int16_t colour = kColorByLayer;
    uint16_t flags = 0;
    uint32_t tag = 0;
};

// What a caller gives when adding an entity. drawing 0 means the engine's
// current drawing.
struct TEntAttr {
    uint64_t drawing = 0;
    int colour = kColorByLayer;
    uint64_t block = 0;
    uint32_t tag = 0;
};

struct TPoint { TEntHdr h; PNT_3D p; };
struct TLine { TEntHdr h; PNT_3D a; PNT_3D b; };
// Angles in radians, counter-clockwise from +X; the arc runs from a0 to a1.
struct TArc { TEntHdr h; PNT_3D c; double r; double a0; double a1; };
struct TCircle { TEntHdr h; PNT_3D c; double r; };

// A vertex of a 2D polyline: bulge = tan(sweep/4) of the arc to the next vertex.
struct TVertex2D { double x; double y; double bulge; };

// Polylines keep their vertices in the engine's shared vertex pools.
struct TPoly2D { TEntHdr h; uint64_t first; uint32_t count; double elevation; };
struct TPoly3D { TEntHdr h; uint64_t first; uint32_t count; };
// Triangles repeat their third vertex as the fourth.
struct TFace3D { TEntHdr h; PNT_3D v[4]; };

enum class EHAlign : uint8_t { Left = 0, Center = 1, Right = 2 };
enum class EVAlign : uint8_t { Baseline = 0, Bottom = 1, Middle = 2, Top = 3 };
// Text bytes (UTF-8) live in the engine's shared text pool.
struct TText {
    TEntHdr h;
    PNT_3D p;
    double height;
    double rotation;
    uint64_t first;
    uint32_t len;
    EHAlign halign;
    EVAlign valign;
};
struct TInsert { TEntHdr h; uint64_t blockRef; PNT_3D p; double sx; double sy; double sz; double rotation; };

// One entity named by kind and position in its kind's vector.
struct TEntRef {
    EEntKind kind;
    uint32_t index;
};

}  // namespace roadx::cad
