// The OBJECTS section of R2000 files: the root dictionary and what R2000
// readers expect under it (groups, layouts, multiline styles, plot styles).
#include "cad/dxf_write_ctx.h"

namespace roadx::cad::dxf {

namespace {

void Reactors(CDxfOut& out, uint64_t owner) {
    out.Str(102, "{ACAD_REACTORS");
    out.Hex(330, owner);
    out.Str(102, "}");
}

void StartObject(CWriteCtx& c, const char* type, uint64_t handle, uint64_t owner) {
    c.out.Str(0, type);
    c.out.Hex(5, handle);
    if (owner != 0) Reactors(c.out, owner);
    c.out.Hex(330, owner);
}

struct TEntry {
    const char* name;
    uint64_t handle;
};

// Entries must come sorted by name.
void Dictionary(CWriteCtx& c, const char* type, uint64_t handle, uint64_t owner, std::initializer_list<TEntry> entries) {
    StartObject(c, type, handle, owner);
    c.out.Str(100, "AcDbDictionary");
    c.out.Int(281, 1);
    for (const auto& e : entries) {
        c.out.Str(3, e.name);
        c.out.Hex(350, e.handle);
    }
}

void PlotSettings(CDxfOut& out) {
    out.Str(100, "AcDbPlotSettings");
    out.Str(1, "");
    out.Str(2, "none_device");
    out.Str(4, "");
    out.Str(6, "");
    for (int code : {40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 140, 141}) out.Real(code, 0.0);
    out.Real(142, 1.0);
    out.Real(143, 1.0);
    out.Int(70, 688);
    out.Int(72, 1);  // millimetres
    out.Int(73, 0);
    out.Int(74, 5);  // plot the layout
    out.Str(7, "");
    out.Int(75, 16);  // scale 1:1
    out.Real(147, 1.0);
    out.Real(148, 0.0);
    out.Real(149, 0.0);
}

void Layout(CWriteCtx& c, uint64_t handle, const char* name, int tab, const TBlockRec& block) {
    CDxfOut& out = c.out;
    StartObject(c, "LAYOUT", handle, c.g.fixed.dictLayout);
    PlotSettings(out);
    out.Str(100, "AcDbLayout");
    out.Str(1, name);
    out.Int(70, 1);
    out.Int(71, tab);
    out.Real(10, 0.0);
    out.Real(20, 0.0);
    out.Real(11, 420.0);
    out.Real(21, 297.0);
    out.Point(12, 0.0, 0.0, 0.0);
    out.Point(14, 1e20, 1e20, 1e20);
    out.Point(15, -1e20, -1e20, -1e20);
    out.Real(146, 0.0);
    out.Point(13, 0.0, 0.0, 0.0);
    out.Point(16, 1.0, 0.0, 0.0);
    out.Point(17, 0.0, 1.0, 0.0);
    out.Int(76, 0);
    out.Hex(330, block.record);
}

void MlineStyle(CWriteCtx& c) {
    CDxfOut& out = c.out;
    const TFixedHandles& f = c.g.fixed;
    StartObject(c, "MLINESTYLE", f.mlineStandard, f.dictMlineStyle);
    out.Str(100, "AcDbMlineStyle");
    out.Str(2, "Standard");
    out.Int(70, 0);
    out.Str(3, "");
    out.Int(62, 256);
    out.Real(51, 90.0);
    out.Real(52, 90.0);
    out.Int(71, 2);
    for (double offset : {0.5, -0.5}) {
        out.Real(49, offset);
        out.Int(62, 256);
        out.Str(6, "BYLAYER");
    }
}

}  // namespace

void WriteObjects(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    CDxfOut& out = c.out;
    out.Str(0, "SECTION");
    out.Str(2, "OBJECTS");
    Dictionary(c, "DICTIONARY", f.dictRoot, 0,
               {{"ACAD_GROUP", f.dictGroup}, {"ACAD_LAYOUT", f.dictLayout}, {"ACAD_MLINESTYLE", f.dictMlineStyle},
                {"ACAD_PLOTSTYLENAME", f.dictPlotStyle}});
    Dictionary(c, "DICTIONARY", f.dictGroup, f.dictRoot, {});
    Dictionary(c, "DICTIONARY", f.dictLayout, f.dictRoot, {{"Layout1", f.layoutPaper}, {"Model", f.layoutModel}});
    Dictionary(c, "DICTIONARY", f.dictMlineStyle, f.dictRoot, {{"Standard", f.mlineStandard}});
    Dictionary(c, "ACDBDICTIONARYWDFLT", f.dictPlotStyle, f.dictRoot, {{"Normal", f.plotStyleNormal}});
    out.Str(100, "AcDbDictionaryWithDefault");
    out.Hex(340, f.plotStyleNormal);
    StartObject(c, "ACDBPLACEHOLDER", f.plotStyleNormal, f.dictPlotStyle);
    MlineStyle(c);
    Layout(c, f.layoutModel, "Model", 0, c.g.modelSpace);
    Layout(c, f.layoutPaper, "Layout1", 1, c.g.paperSpace);
    out.Str(0, "ENDSEC");
}

}  // namespace roadx::cad::dxf
