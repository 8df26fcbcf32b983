// The control objects of the symbol tables and their records: the LAYER,
// STYLE, LTYPE, VPORT, APPID and DIMSTYLE records of the DXF writer, with
// the same names, flags and handles.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "cad/dwg_write_ctx.h"

namespace roadx::cad::dwg {

namespace {

void Control(CDwgCtx& c, int16_t type, uint64_t handle, const std::vector<uint64_t>& softOwned,
             const std::vector<uint64_t>& hardOwned, int32_t count) {
    CObjWriter w(type, handle);
    w.D().BL(count);
    // The dimension style table of R2000 files has a count of further
    // handles; there are none.
    if (type == kTypeDimstyleControl) w.D().RC(0);
    w.OwnerHandles(0);
    for (uint64_t h : softOwned) w.H().H(kSoftOwner, h);
    for (uint64_t h : hardOwned) w.H().H(kHardOwner, h);
    c.Add(handle, w);
}

// Name and flags every table record starts with: not from an external
// reference.
void RecordStart(CObjWriter& w, std::string_view name) {
    w.D().T(CDwgCtx::Text(name));
    w.D().B(false);  // 64-flag
    w.D().BS(0);     // external reference index + 1
    w.D().B(false);  // not dependent on an external reference
}

// Owner, empty extension dictionary, no external reference block.
void RecordHandles(CObjWriter& w, uint64_t table) {
    w.OwnerHandles(table);
    w.H().H(kHardPointer, 0);
}

constexpr int16_t kLayerPlotted = 16;
constexpr int16_t kLineweightDefault = 31 << 5;

void Layer(CDwgCtx& c, const dxf::TLayerRec& l) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeLayer, l.handle);
    RecordStart(w, l.name);
    // Bit 2 marks a layer that is off, as readers take it in files of
    // every origin (the published layout calls it "on").
    int16_t values = kLayerPlotted | kLineweightDefault;
    if (l.flags & 1) values |= 1;  // frozen
    if (l.colour < 0) values |= 2;
    if (l.flags & 4) values |= 8;  // locked
    w.D().BS(values);
    w.D().CMC(static_cast<int16_t>(std::abs(l.colour)));
    RecordHandles(w, f.layerTable);
    w.H().H(kHardPointer, f.plotStyleNormal);
    w.H().H(kHardPointer, f.ltContinuous);
    w.H().H(kHardPointer, 0);
    c.Add(l.handle, w);
}

void Style(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeStyle, f.styleStandard);
    RecordStart(w, "Standard");
    CBitWriter& d = w.D();
    d.B(false);  // not vertical
    d.B(false);  // a font, not a shape file
    d.BD(0.0);   // no fixed height
    d.BD(1.0);   // width factor
    d.BD(0.0);   // oblique angle
    d.RC(0);     // generation flags
    d.BD(2.5);   // last height used
    d.T("txt");
    d.T("");
    RecordHandles(w, f.styleTable);
    c.Add(f.styleStandard, w);
}

void Ltype(CDwgCtx& c, uint64_t handle, const char* name, const char* description) {
    CObjWriter w(kTypeLtype, handle);
    RecordStart(w, name);
    CBitWriter& d = w.D();
    d.T(description);
    d.BD(0.0);  // pattern length
    d.RC('A');  // alignment
    d.RC(0);    // no dashes
    for (int i = 0; i < 256; ++i) d.RC(0);  // text area of complex dashes
    RecordHandles(w, c.g.fixed.ltypeTable);
    c.Add(handle, w);
}

// The active viewport looks at the extents, as in the DXF file.
void Vport(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeVport, f.vportActive);
    RecordStart(w, "*Active");
    CBitWriter& d = w.D();
    double cx = 0.0, cy = 0.0, height = 1.0;
    const double aspect = 1.5;
    if (c.g.hasExtents) {
        cx = (c.g.extMin.x + c.g.extMax.x) / 2.0;
        cy = (c.g.extMin.y + c.g.extMax.y) / 2.0;
        height = std::max(c.g.extMax.y - c.g.extMin.y, (c.g.extMax.x - c.g.extMin.x) / aspect) * 1.1;
        if (!(height > 0.0) || !std::isfinite(height)) height = 1.0;
    }
    d.BD(height);
    d.BD(aspect * height);  // the file keeps the width, not the ratio
    d.P2RD(cx, cy);
    d.P3BD(0.0, 0.0, 0.0);  // target
    d.P3BD(0.0, 0.0, 1.0);  // direction
    d.BD(0.0);              // twist
    d.BD(50.0);             // lens length
    d.BD(0.0);              // front clip
    d.BD(0.0);              // back clip
    d.Bits(0b0001, 4);      // view mode: the last bit is the opposite of bit 16
    d.RC(0);                // render mode
    d.P2RD(0.0, 0.0);       // lower left
    d.P2RD(1.0, 1.0);       // upper right
    d.B(false);             // UCSFOLLOW
    d.BS(1000);             // circle zoom
    d.B(true);              // fast zoom
    d.Bits(0b11, 2);        // UCS icon on, at the origin
    d.B(false);             // grid off
    d.P2RD(0.0, 0.0);       // grid spacing
    d.B(false);             // snap off
    d.B(false);             // snap style
    d.BS(0);                // snap isopair
    d.BD(0.0);              // snap rotation
    d.P2RD(0.0, 0.0);       // snap base
    d.P2RD(1.0, 1.0);       // snap spacing
    d.B(false);
    d.B(true);              // UCS per viewport
    d.P3BD(0.0, 0.0, 0.0);  // UCS origin
    d.P3BD(1.0, 0.0, 0.0);
    d.P3BD(0.0, 1.0, 0.0);
    d.BD(0.0);              // UCS elevation
    d.BS(0);                // not orthographic
    RecordHandles(w, f.vportTable);
    w.H().H(kHardPointer, 0);  // named UCS
    w.H().H(kHardPointer, 0);  // base UCS
    c.Add(f.vportActive, w);
}

void Appid(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeAppid, f.appidAcad);
    RecordStart(w, "ACAD");
    w.D().RC(0);
    RecordHandles(w, f.appidTable);
    c.Add(f.appidAcad, w);
}

// The Standard dimension style with the usual defaults.
void Dimstyle(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeDimstyle, f.dimstyleStandard);
    RecordStart(w, "Standard");
    CBitWriter& d = w.D();
    d.T("");  // DIMPOST
    d.T("");  // DIMAPOST
    for (double v : {1.0, 0.18, 0.0625, 0.38, 0.18, 0.0, 0.0, 0.0, 0.0}) d.BD(v);  // DIMSCALE .. DIMTM
    for (int i = 0; i < 6; ++i) d.B(false);  // DIMTOL .. DIMSE2
    d.BS(0);  // DIMTAD
    d.BS(0);  // DIMZIN
    d.BS(0);  // DIMAZIN
    for (double v : {0.18, 0.09, 0.0, 25.4, 1.0, 0.0, 1.0, 0.09, 0.0}) d.BD(v);  // DIMTXT .. DIMALTRND
    d.B(false);  // DIMALT
    d.BS(2);     // DIMALTD
    d.B(false);  // DIMTOFL
    d.B(false);  // DIMSAH
    d.B(false);  // DIMTIX
    d.B(false);  // DIMSOXD
    d.BS(0);     // DIMCLRD
    d.BS(0);     // DIMCLRE
    d.BS(0);     // DIMCLRT
    d.BS(0);     // DIMADEC
    d.BS(4);     // DIMDEC
    d.BS(4);     // DIMTDEC
    d.BS(2);     // DIMALTU
    d.BS(2);     // DIMALTTD
    d.BS(0);     // DIMAUNIT
    d.BS(0);     // DIMFRAC
    d.BS(2);     // DIMLUNIT
    d.BS('.');   // DIMDSEP
    d.BS(0);     // DIMTMOVE
    d.BS(0);     // DIMJUST
    d.B(false);  // DIMSD1
    d.B(false);  // DIMSD2
    d.BS(1);     // DIMTOLJ
    d.BS(0);     // DIMTZIN
    d.BS(0);     // DIMALTZ
    d.BS(0);     // DIMALTTZ
    d.B(false);  // DIMUPT
    d.BS(3);     // DIMATFIT
    d.BS(-2);    // DIMLWD by block
    d.BS(-2);    // DIMLWE by block
    d.B(false);
    RecordHandles(w, f.dimstyleTable);
    w.H().H(kHardPointer, f.styleStandard);  // DIMTXSTY
    for (int i = 0; i < 4; ++i) w.H().H(kHardPointer, 0);  // default arrow blocks
    c.Add(f.dimstyleStandard, w);
}

}  // namespace

void WriteControlObjects(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    std::vector<uint64_t> blocks;
    for (const auto& b : c.g.blocks) blocks.push_back(b.record);
    Control(c, kTypeBlockControl, f.blockRecordTable, blocks, {c.g.modelSpace.record, c.g.paperSpace.record},
            static_cast<int32_t>(blocks.size()));
    std::vector<uint64_t> layers;
    for (const auto& l : c.g.layers) layers.push_back(l.handle);
    Control(c, kTypeLayerControl, f.layerTable, layers, {}, static_cast<int32_t>(layers.size()));
    Control(c, kTypeStyleControl, f.styleTable, {f.styleStandard}, {}, 1);
    Control(c, kTypeLtypeControl, f.ltypeTable, {f.ltContinuous}, {f.ltByLayer, f.ltByBlock}, 1);
    Control(c, kTypeViewControl, f.viewTable, {}, {}, 0);
    Control(c, kTypeUcsControl, f.ucsTable, {}, {}, 0);
    Control(c, kTypeVportControl, f.vportTable, {f.vportActive}, {}, 1);
    Control(c, kTypeAppidControl, f.appidTable, {f.appidAcad}, {}, 1);
    Control(c, kTypeDimstyleControl, f.dimstyleTable, {f.dimstyleStandard}, {}, 1);
    Control(c, kTypeVpEntHdrControl, c.vpEntHdrControl, {}, {}, 0);
}

void WriteTableRecords(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    Vport(c);
    Ltype(c, f.ltByBlock, "ByBlock", "");
    Ltype(c, f.ltByLayer, "ByLayer", "");
    Ltype(c, f.ltContinuous, "Continuous", "Solid line");
    for (const auto& l : c.g.layers) Layer(c, l);
    Style(c);
    Appid(c);
    Dimstyle(c);
}

}  // namespace roadx::cad::dwg
