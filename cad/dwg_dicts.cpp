// The root dictionary and what it holds, as in the OBJECTS section of the
// DXF writer: groups, layouts (Model and Layout1), multiline styles
// (Standard) and plot style names (a dictionary with a default whose
// "Normal" placeholder every layer points at).
#include <numbers>

#include "cad/dwg_write_ctx.h"

namespace roadx::cad::dwg {

namespace {

struct TEntry {
    const char* name;
    uint64_t handle;
};

// Entries sorted by name. Returns the writer so that a dictionary with a
// default can add its default entry.
void Dictionary(CDwgCtx& c, int16_t type, uint64_t handle, uint64_t owner, std::initializer_list<TEntry> entries,
                uint64_t defaultEntry = 0) {
    CObjWriter w = owner != 0 ? CObjWriter(type, handle, {owner}) : CObjWriter(type, handle);
    CBitWriter& d = w.D();
    d.BL(static_cast<int32_t>(entries.size()));
    d.BS(1);  // cloning: keep existing entries
    d.RC(0);  // entries are soft owned
    for (const auto& e : entries) d.T(e.name);
    w.OwnerHandles(owner);
    for (const auto& e : entries) w.H().H(kSoftOwner, e.handle);
    if (type == kTypeDictionaryWdflt) w.H().H(kHardPointer, defaultEntry);
    c.Add(handle, w);
}

void MlineStyle(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CObjWriter w(kTypeMlineStyle, f.mlineStandard, {f.dictMlineStyle});
    CBitWriter& d = w.D();
    d.T("Standard");
    d.T("");
    d.BS(0);       // flags
    d.CMC(256);    // fill colour by layer
    d.BD(std::numbers::pi / 2);
    d.BD(std::numbers::pi / 2);
    d.RC(2);
    for (double offset : {0.5, -0.5}) {
        d.BD(offset);
        d.CMC(256);
        d.BS(0x7FFF);  // linetype by layer
    }
    w.OwnerHandles(f.dictMlineStyle);
    c.Add(f.mlineStandard, w);
}

// Plot settings of both layouts: no device, millimetres, the layout plotted
// at 1:1.
void PlotSettings(CBitWriter& d) {
    d.T("");             // page setup name
    d.T("none_device");  // printer
    d.BS(688);           // plot layout flags
    for (int i = 0; i < 6; ++i) d.BD(0.0);  // margins, paper size
    d.T("");             // paper size name
    d.BD(0.0);           // plot origin
    d.BD(0.0);
    d.BS(1);             // millimetres
    d.BS(0);             // no rotation
    d.BS(5);             // plot the layout
    for (int i = 0; i < 4; ++i) d.BD(0.0);  // plot window
    d.T("");             // plot view name
    d.BD(1.0);           // real world units
    d.BD(1.0);           // drawing units
    d.T("");             // style sheet
    d.BS(16);            // scale 1:1
    d.BD(1.0);           // scale factor
    d.BD(0.0);           // paper image origin
    d.BD(0.0);
}

void Layout(CDwgCtx& c, uint64_t handle, const char* name, int tab, const dxf::TBlockRec& block) {
    const uint64_t owner = c.g.fixed.dictLayout;
    CObjWriter w(kTypeLayout, handle, {owner});
    CBitWriter& d = w.D();
    PlotSettings(d);
    d.T(name);
    d.BL(tab);
    d.BS(1);  // flags
    d.P3BD(0.0, 0.0, 0.0);  // UCS origin
    d.P2RD(0.0, 0.0);       // limits
    d.P2RD(420.0, 297.0);
    d.P3BD(0.0, 0.0, 0.0);  // insertion base
    d.P3BD(1.0, 0.0, 0.0);  // UCS axes
    d.P3BD(0.0, 1.0, 0.0);
    d.BD(0.0);              // elevation
    d.BS(0);                // not orthographic
    d.P3BD(1e20, 1e20, 1e20);  // no extents
    d.P3BD(-1e20, -1e20, -1e20);
    w.OwnerHandles(owner);
    w.H().H(kSoftPointer, block.record);
    w.H().H(kSoftPointer, 0);  // no active viewport
    w.H().H(kHardPointer, 0);  // base UCS
    w.H().H(kHardPointer, 0);  // named UCS
    // Readers of this version take one more reference from a layout's
    // handle stream than the published layout lists; a null one is given.
    w.H().H(kHardPointer, 0);
    c.Add(handle, w);
}

}  // namespace

void WriteDictionaries(CDwgCtx& c) {
    const dxf::TFixedHandles& f = c.g.fixed;
    Dictionary(c, kTypeDictionary, f.dictRoot, 0,
               {{"ACAD_GROUP", f.dictGroup}, {"ACAD_LAYOUT", f.dictLayout}, {"ACAD_MLINESTYLE", f.dictMlineStyle},
                {"ACAD_PLOTSTYLENAME", f.dictPlotStyle}});
    Dictionary(c, kTypeDictionary, f.dictGroup, f.dictRoot, {});
    Dictionary(c, kTypeDictionary, f.dictLayout, f.dictRoot, {{"Layout1", f.layoutPaper}, {"Model", f.layoutModel}});
    Dictionary(c, kTypeDictionary, f.dictMlineStyle, f.dictRoot, {{"Standard", f.mlineStandard}});
    Dictionary(c, kTypeDictionaryWdflt, f.dictPlotStyle, f.dictRoot, {{"Normal", f.plotStyleNormal}},
               f.plotStyleNormal);
    {
        CObjWriter w(kTypePlaceholder, f.plotStyleNormal, {f.dictPlotStyle});
        w.OwnerHandles(f.dictPlotStyle);
        c.Add(f.plotStyleNormal, w);
    }
    MlineStyle(c);
    Layout(c, f.layoutModel, "Model", 0, c.g.modelSpace);
    Layout(c, f.layoutPaper, "Layout1", 1, c.g.paperSpace);
}

}  // namespace roadx::cad::dwg
