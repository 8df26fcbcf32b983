// The header variables of an AC1015 file, every one in its fixed place.
// The engine's variables (point style, precision, units, extents) are
// written unless DontSaveZedraVars was called; the others have the usual
// values of a new metric drawing. Dates are fixed, so that the same engine
// content always gives the same bytes.
#include <cstdio>
#include <string>

#include "cad/dwg_write_ctx.h"
#include "cad/zedra_eng.h"

namespace roadx::cad::dwg {

namespace {

// 1 January 2000, as a Julian day; creation and update date of every file.
constexpr int32_t kJulianDay = 2451545;

void Flags(CBitWriter& d, std::initializer_list<bool> bits) {
    for (bool b : bits) d.B(b);
}

void Shorts(CBitWriter& d, std::initializer_list<int16_t> values) {
    for (int16_t v : values) d.BS(v);
}

void Doubles(CBitWriter& d, std::initializer_list<double> values) {
    for (double v : values) d.BD(v);
}

void P3(CBitWriter& d, const PNT_3D& p) { d.P3BD(p.x, p.y, p.z); }

// Origin and axes of the world coordinate system, and the six orthographic
// origins that follow them.
void WorldUcs(CBitWriter& d, bool withOrtho) {
    d.P3BD(0.0, 0.0, 0.0);
    d.P3BD(1.0, 0.0, 0.0);
    d.P3BD(0.0, 1.0, 0.0);
    d.H(kHardPointer, 0);  // UCS name
    if (!withOrtho) return;
    d.H(kHardPointer, 0);  // orthographic reference
    d.BS(0);               // orthographic view
    d.H(kHardPointer, 0);  // base UCS
    for (int i = 0; i < 6; ++i) d.P3BD(0.0, 0.0, 0.0);
}

void Space(CBitWriter& d, const PNT_3D& extMin, const PNT_3D& extMax, double limX, double limY) {
    d.P3BD(0.0, 0.0, 0.0);  // insertion base
    P3(d, extMin);
    P3(d, extMax);
    d.P2RD(0.0, 0.0);
    d.P2RD(limX, limY);
    d.BD(0.0);  // elevation
    WorldUcs(d, true);
}

void Dimensions(CBitWriter& d, uint64_t textStyle) {
    d.T("");  // DIMPOST
    d.T("");  // DIMAPOST
    Doubles(d, {1.0, 0.18, 0.0625, 0.38, 0.18, 0.0, 0.0, 0.0, 0.0});  // DIMSCALE .. DIMTM
    Flags(d, {false, false, false, false, false, false});             // DIMTOL .. DIMSE2
    Shorts(d, {0, 0, 0});                                             // DIMTAD DIMZIN DIMAZIN
    Doubles(d, {0.18, 0.09, 0.0, 25.4, 1.0, 0.0, 1.0, 0.09});         // DIMTXT .. DIMGAP
    d.BD(0.0);  // DIMALTRND
    d.B(false);  // DIMALT
    d.BS(2);     // DIMALTD
    Flags(d, {false, false, false, false});  // DIMTOFL DIMSAH DIMTIX DIMSOXD
    Shorts(d, {0, 0, 0});                    // DIMCLRD DIMCLRE DIMCLRT (by block)
    Shorts(d, {0, 4, 4, 2, 2, 0, 0, 2, '.', 0, 0});  // DIMADEC .. DIMJUST
    Flags(d, {false, false});                         // DIMSD1 DIMSD2
    Shorts(d, {1, 0, 0, 0});                          // DIMTOLJ DIMTZIN DIMALTZ DIMALTTZ
    d.B(false);  // DIMUPT
    d.BS(3);     // DIMATFIT
    d.H(kHardPointer, textStyle);  // DIMTXSTY
    for (int i = 0; i < 4; ++i) d.H(kHardPointer, 0);  // DIMLDRBLK DIMBLK DIMBLK1 DIMBLK2
    d.BS(-2);  // DIMLWD
    d.BS(-2);  // DIMLWE
}

// Lineweight by layer, lineweights not displayed, long names, named plot
// styles off.
constexpr int32_t kHeaderFlags = 0x1D | 0x200 | 0x800 | 0x2000;

// A GUID text made from a 64-bit value, so that it follows the content.
std::string Guid(uint64_t v, uint32_t salt) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "{%08X-%04X-%04X-%04X-%012llX}", static_cast<unsigned>(v >> 32),
                  static_cast<unsigned>((v >> 16) & 0xFFFF), static_cast<unsigned>(v & 0xFFFF), salt & 0xFFFF,
                  static_cast<unsigned long long>(v * 0x9E3779B97F4A7C15ull) & 0xFFFFFFFFFFFFull);
    return buf;
}

uint64_t Fnv1a(const std::vector<uint8_t>& data) {
    uint64_t h = 0xcbf29ce484222325ull;
    for (uint8_t b : data) h = (h ^ b) * 0x100000001b3ull;
    return h;
}

}  // namespace

std::vector<uint8_t> HeaderVariables(const CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    const TZedraVars vars = c.saveVars ? c.eng.Vars() : TZedraVars{};
    CBitWriter d;
    Doubles(d, {412148564080.0, 1.0, 1.0, 1.0});
    for (int i = 0; i < 4; ++i) d.T("");
    d.BL(24);
    d.BL(0);
    d.H(kHardPointer, 0);  // current viewport entity header
    // DIMASO DIMSHO PLINEGEN ORTHOMODE REGENMODE FILLMODE QTEXTMODE PSLTSCALE
    // LIMCHECK USRTIMER SKPOLY ANGDIR SPLFRAME MIRRTEXT WORLDVIEW TILEMODE
    // PLIMCHECK VISRETAIN DISPSILH PELLIPSE
    Flags(d, {true, true, false, false, true, true, false, true, false, true, false, false, false, false, true, true,
              false, true, false, false});
    Shorts(d, {1, 3020, 2, static_cast<int16_t>(vars.luprec), 0, 0, 1, static_cast<int16_t>(vars.pdmode)});
    Shorts(d, {0, 0, 0, 0, 0});                                  // USERI1..5
    Shorts(d, {8, 6, 6, 6, 6, 6, 6, 3, 70, 0, 64, 4, 0, 50});    // SPLINESEGS .. TEXTQLTY
    // LTSCALE TEXTSIZE TRACEWID SKETCHINC FILLETRAD THICKNESS ANGBASE PDSIZE PLINEWID
    Doubles(d, {1.0, 2.5, 0.05, 0.1, 0.0, 0.0, 0.0, vars.pdsize, 0.0});
    Doubles(d, {0.0, 0.0, 0.0, 0.0, 0.0});                      // USERR1..5
    Doubles(d, {0.0, 0.0, 0.0, 0.0, 0.5, 1.0, 1.0});            // CHAMFERA..D FACETRES CMLSCALE CELTSCALE
    d.T("acad");                                                 // MENUNAME
    for (int32_t v : {kJulianDay, 0, kJulianDay, 0, 0, 0, 0, 0}) d.BL(v);  // TDCREATE TDUPDATE TDINDWG TDUSRTIMER
    d.CMC(256);                                                  // CECOLOR
    d.H(kHandleOwn, c.handSeed);
    d.H(kHardPointer, c.LayerHandle(c.eng.GetCurrentDrawing()));  // CLAYER
    d.H(kHardPointer, f.styleStandard);
    d.H(kHardPointer, f.ltByLayer);
    d.H(kHardPointer, f.dimstyleStandard);
    d.H(kHardPointer, f.mlineStandard);
    d.BD(0.0);  // PSVPSCALE
    const PNT_3D none(1e20, 1e20, 1e20), noneMax(-1e20, -1e20, -1e20);
    Space(d, none, noneMax, 12.0, 9.0);  // paper space
    const bool ext = c.saveVars && c.g.hasExtents;
    Space(d, ext ? c.g.extMin : none, ext ? c.g.extMax : noneMax, 420.0, 297.0);
    Dimensions(d, f.styleStandard);
    for (uint64_t h : {f.blockRecordTable, f.layerTable, f.styleTable, f.ltypeTable, f.viewTable, f.ucsTable,
                       f.vportTable, f.appidTable, f.dimstyleTable, c.vpEntHdrControl})
        d.H(kHardOwner, h);
    d.H(kHardPointer, f.dictGroup);
    d.H(kHardPointer, f.dictMlineStyle);
    d.H(kHardOwner, f.dictRoot);
    d.BS(1);   // TSTACKALIGN
    d.BS(70);  // TSTACKSIZE
    d.T("");   // HYPERLINKBASE
    d.T("");   // STYLESHEET
    d.H(kHardPointer, f.dictLayout);
    d.H(kHardPointer, 0);  // no plot settings dictionary
    d.H(kHardPointer, f.dictPlotStyle);
    d.BL(kHeaderFlags);
    d.BS(static_cast<int16_t>(vars.insunits));
    d.BS(0);  // plot style by layer
    const uint64_t seed = Fnv1a(c.objects);
    d.T(Guid(seed, 0x4650));
    d.T(Guid(seed ^ 0x5A5A5A5A5A5A5A5Aull, 0x5645));
    d.H(kHardPointer, c.g.paperSpace.record);
    d.H(kHardPointer, c.g.modelSpace.record);
    d.H(kHardPointer, f.ltByLayer);
    d.H(kHardPointer, f.ltByBlock);
    d.H(kHardPointer, f.ltContinuous);
    Shorts(d, {0, 0, 0, 0});
    d.PadToByte();
    return d.Bytes();
}

}  // namespace roadx::cad::dwg
