// What every display object shares: the engine it draws into, the document
// it draws, the tag that marks its entities, and the rule that gives each
// library and each object a drawing (layer) of its own.
//
// A display object never keeps pointers into the document between calls:
// every Crea... walks the libraries afresh. Its entities carry its tag, so
// it can remove them without touching anything else in the engine.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/zedra_eng.h"
#include "host/target_drawing.h"
#include "vesk/geom.h"

class IVantriDati;

namespace roadx::display {

// Tags of the display objects' entities ("ZD" and a number).
inline constexpr uint32_t kTagPtNome = 0x5A440001;
inline constexpr uint32_t kTagLibCmp = 0x5A440002;
inline constexpr uint32_t kTagLibGps = 0x5A440003;
inline constexpr uint32_t kTagLibPnt = 0x5A440004;
inline constexpr uint32_t kTagCts = 0x5A440005;
inline constexpr uint32_t kTagLibDtm = 0x5A440006;
inline constexpr uint32_t kTagRoad = 0x5A440007;
inline constexpr uint32_t kTagLibProfile = 0x5A440008;
inline constexpr uint32_t kTagLibGis = 0x5A440009;
inline constexpr uint32_t kTagCld = 0x5A44000A;

// Names of the libraries' own drawings, and the prefixes of their objects'.
inline constexpr const char* kDrawingPnt = "Punti";
inline constexpr const char* kDrawingGps = "GPS";
inline constexpr const char* kDrawingCmp = "TS";
inline constexpr const char* kDrawingCts = "Curve di livello";
inline constexpr const char* kDrawingGis = "GIS";
inline constexpr const char* kDrawingProfile = "Profili";
inline constexpr const char* kPrefixDtm = "DTM_";
inline constexpr const char* kPrefixRoad = "Strada_";

// A coordinate counts when it is finite and below the undefined limit.
bool IsDefinedValue(double v);
bool IsDefinedXY(double x, double y);

// A name the engine accepts as a new drawing: `base`, or `base_2`, `base_3`...
// when that is taken; an empty base becomes "Grafica".
std::string FreeDrawingName(const CZedraEng& eng, const std::string& base);
// The first colour of the display palette that no drawing of the engine
// has; when all are taken, the palette goes round again.
unsigned NextDrawingColour(const CZedraEng& eng);
// Adds a visible, unlocked, public drawing of a free name and a new colour.
DrawingHandle AddNamedDrawing(CZedraEng& eng, const std::string& base);

// The base name of an object's drawing: prefix + name, or prefix + its
// 1-based position when it has no name.
std::string ObjectDrawingName(const char* prefix, const std::string& name, int index);

// Elevation label text, three decimals, never locale-dependent.
std::string FormatElevation(double z);

class CDisBase {
public:
    CDisBase(CZedraEng* eng, IVantriDati* doc, uint32_t tag) : eng_(eng), doc_(doc), tag_(tag) {}
    virtual ~CDisBase() = default;
    CDisBase(const CDisBase&) = delete;
    CDisBase& operator=(const CDisBase&) = delete;

    CZedraEng* GetEng() const { return eng_; }
    IVantriDati* GetDoc() const { return doc_; }
    uint32_t GetTag() const { return tag_; }
    // Removes every entity this object drew (one pass over the engine).
    void AnnullaTutto();

protected:
    bool Ready() const { return eng_ != nullptr && doc_ != nullptr; }
    // The drawing a holder draws into: its target when that is a drawing of
    // this engine; otherwise a new drawing named after it, which becomes
    // its target (referenced when addRef, as roads and DTM projects are).
    DrawingHandle EnsureTarget(CTargetDrawingHolder& holder, const std::string& name, bool addRef = false);
    // Drawn at all under the visible-only rule: visible and not frozen.
    bool Shown(DrawingHandle d, bool visibleOnly) const;
    roadx::cad::TEntAttr Attr(DrawingHandle d, int colour = roadx::cad::kColorByLayer) const;

    // Entity helpers; each skips what the engine would refuse.
    void Point(DrawingHandle d, const vesk::geom::PNT_3D& p);
    void Line(DrawingHandle d, const vesk::geom::PNT_3D& a, const vesk::geom::PNT_3D& b);
    void Label(DrawingHandle d, const vesk::geom::PNT_3D& p, double height, double rotRad, std::string_view text,
               roadx::cad::EHAlign h, roadx::cad::EVAlign v);
    // Polylines through the runs of defined vertices (at least two each).
    // A closed line with no undefined vertex stays one closed polyline;
    // a last vertex equal to the first is then dropped.
    // Name above right of a point and elevation below right (each only when
    // there is one); returns how many labels were drawn.
    int NameElevLabels(DrawingHandle d, const vesk::geom::PNT_3D& at, std::string_view name, double z, double height);
    // Label height of survey points: the document's point display option.
    double PointTextHeight() const;
    int PolylineRuns(DrawingHandle d, const std::vector<vesk::geom::PNT_3D>& pts, bool closed);

    CZedraEng* eng_;
    IVantriDati* doc_;
    uint32_t tag_;
};

// A point at z when it is defined and 3D drawing is asked for, else at 0.
inline vesk::geom::PNT_3D At(double x, double y, double z, bool b3D) {
    return {x, y, (b3D && IsDefinedValue(z)) ? z : 0.0};
}

}  // namespace roadx::display
