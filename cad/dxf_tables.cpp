// The TABLES section: VPORT, LTYPE, LAYER, STYLE, VIEW, UCS, APPID,
// DIMSTYLE and, in R2000, BLOCK_RECORD.
#include <algorithm>

#include "cad/dxf_write_ctx.h"

namespace roadx::cad::dxf {

namespace {

void BeginTable(CWriteCtx& c, const char* name, uint64_t handle, long long count) {
    c.out.Str(0, "TABLE");
    c.out.Str(2, name);
    if (c.g.r2000) {
        c.out.Hex(5, handle);
        c.out.Hex(330, 0);
        c.out.Str(100, "AcDbSymbolTable");
    }
    c.out.Int(70, count);
}

void EndTable(CWriteCtx& c) { c.out.Str(0, "ENDTAB"); }

// Table records carry handles in R2000 files only.
void StartRecord(CWriteCtx& c, const char* type, uint64_t handle, uint64_t table, const char* subclass) {
    c.out.Str(0, type);
    if (!c.g.r2000) return;
    c.out.Hex(5, handle);
    c.out.Hex(330, table);
    c.out.Str(100, "AcDbSymbolTableRecord");
    c.out.Str(100, subclass);
}

// The active viewport looks at the extents of the drawing.
void WriteVport(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    CDxfOut& out = c.out;
    BeginTable(c, "VPORT", f.vportTable, 1);
    StartRecord(c, "VPORT", f.vportActive, f.vportTable, "AcDbViewportTableRecord");
    out.Str(2, c.Std("*Active", "*ACTIVE"));
    out.Int(70, 0);
    double cx = 0.0, cy = 0.0, height = 1.0;
    const double aspect = 1.5;
    if (c.g.hasExtents) {
        cx = (c.g.extMin.x + c.g.extMax.x) / 2.0;
        cy = (c.g.extMin.y + c.g.extMax.y) / 2.0;
        height = std::max(c.g.extMax.y - c.g.extMin.y, (c.g.extMax.x - c.g.extMin.x) / aspect) * 1.1;
        if (!(height > 0.0)) height = 1.0;
    }
    out.Real(10, 0.0);
    out.Real(20, 0.0);
    out.Real(11, 1.0);
    out.Real(21, 1.0);
    out.Real(12, cx);
    out.Real(22, cy);
    for (int code : {13, 23, 14, 24, 15, 25, 16, 26}) out.Real(code, code == 14 || code == 24 ? 1.0 : 0.0);
    out.Real(36, 1.0);
    for (int code : {17, 27, 37}) out.Real(code, 0.0);
    out.Real(40, height);
    out.Real(41, aspect);
    out.Real(42, 50.0);
    for (int code : {43, 44, 50, 51}) out.Real(code, 0.0);
    out.Int(71, 0);
    out.Int(72, 1000);
    out.Int(73, 1);
    out.Int(74, 3);
    for (int code : {75, 76, 77, 78}) out.Int(code, 0);
    if (c.g.r2000) {
        out.Int(281, 0);
        out.Int(65, 1);
        out.Point(110, 0.0, 0.0, 0.0);
        out.Point(111, 1.0, 0.0, 0.0);
        out.Point(112, 0.0, 1.0, 0.0);
        out.Int(79, 0);
        out.Real(146, 0.0);
    }
    EndTable(c);
}

void WriteLtype(CWriteCtx& c, uint64_t handle, const char* name, const char* description) {
    StartRecord(c, "LTYPE", handle, c.g.fixed.ltypeTable, "AcDbLinetypeTableRecord");
    c.out.Str(2, name);
    c.out.Int(70, 0);
    c.out.Str(3, description);
    c.out.Int(72, 65);
    c.out.Int(73, 0);
    c.out.Real(40, 0.0);
}

// ByBlock and ByLayer are records of R2000 files; R12 knows them by name.
void WriteLtypes(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    BeginTable(c, "LTYPE", f.ltypeTable, c.g.r2000 ? 3 : 1);
    if (c.g.r2000) {
        WriteLtype(c, f.ltByBlock, "ByBlock", "");
        WriteLtype(c, f.ltByLayer, "ByLayer", "");
    }
    WriteLtype(c, f.ltContinuous, c.Std("Continuous", "CONTINUOUS"), "Solid line");
    EndTable(c);
}

void WriteLayers(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    BeginTable(c, "LAYER", f.layerTable, static_cast<long long>(c.g.layers.size()));
    for (const TLayerRec& l : c.g.layers) {
        StartRecord(c, "LAYER", l.handle, f.layerTable, "AcDbLayerTableRecord");
        c.out.Text(2, l.name, EEncoding::Name);
        c.out.Int(70, l.flags);
        c.out.Int(62, l.colour);
        c.out.Str(6, c.Std("Continuous", "CONTINUOUS"));
        if (c.g.r2000) {
            c.out.Int(370, -3);  // default line weight
            c.out.Hex(390, f.plotStyleNormal);
        }
    }
    EndTable(c);
}

void WriteStyles(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    CDxfOut& out = c.out;
    BeginTable(c, "STYLE", f.styleTable, 1);
    StartRecord(c, "STYLE", f.styleStandard, f.styleTable, "AcDbTextStyleTableRecord");
    out.Str(2, c.Std("Standard", "STANDARD"));
    out.Int(70, 0);
    out.Real(40, 0.0);
    out.Real(41, 1.0);
    out.Real(50, 0.0);
    out.Int(71, 0);
    out.Real(42, 2.5);
    out.Str(3, "txt");
    out.Str(4, "");
    EndTable(c);
}

void WriteSimpleTable(CWriteCtx& c, const char* name, uint64_t handle) {
    BeginTable(c, name, handle, 0);
    EndTable(c);
}

void WriteAppids(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    BeginTable(c, "APPID", f.appidTable, 1);
    StartRecord(c, "APPID", f.appidAcad, f.appidTable, "AcDbRegAppTableRecord");
    c.out.Str(2, "ACAD");
    c.out.Int(70, 0);
    EndTable(c);
}

// DIMSTYLE records give their handle with group 105, not 5.
void WriteDimstyles(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    CDxfOut& out = c.out;
    BeginTable(c, "DIMSTYLE", f.dimstyleTable, 1);
    if (c.g.r2000) out.Str(100, "AcDbDimStyleTable");
    out.Str(0, "DIMSTYLE");
    if (c.g.r2000) {
        out.Hex(105, f.dimstyleStandard);
        out.Hex(330, f.dimstyleTable);
        out.Str(100, "AcDbSymbolTableRecord");
        out.Str(100, "AcDbDimStyleTableRecord");
    }
    out.Str(2, c.Std("Standard", "STANDARD"));
    out.Int(70, 0);
    EndTable(c);
}

void WriteBlockRecord(CWriteCtx& c, const TBlockRec& b) {
    StartRecord(c, "BLOCK_RECORD", b.record, c.g.fixed.blockRecordTable, "AcDbBlockTableRecord");
    c.out.Text(2, b.name, EEncoding::Name);
    if (b.layout != 0) c.out.Hex(340, b.layout);
}

void WriteBlockRecords(CWriteCtx& c) {
    BeginTable(c, "BLOCK_RECORD", c.g.fixed.blockRecordTable, 2 + static_cast<long long>(c.g.blocks.size()));
    WriteBlockRecord(c, c.g.modelSpace);
    WriteBlockRecord(c, c.g.paperSpace);
    for (const auto& b : c.g.blocks) WriteBlockRecord(c, b);
    EndTable(c);
}

}  // namespace

void WriteTables(CWriteCtx& c) {
    const TFixedHandles& f = c.g.fixed;
    c.out.Str(0, "SECTION");
    c.out.Str(2, "TABLES");
    WriteVport(c);
    WriteLtypes(c);
    WriteLayers(c);
    WriteStyles(c);
    WriteSimpleTable(c, "VIEW", f.viewTable);
    WriteSimpleTable(c, "UCS", f.ucsTable);
    WriteAppids(c);
    WriteDimstyles(c);
    if (c.g.r2000) WriteBlockRecords(c);
    c.out.Str(0, "ENDSEC");
}

}  // namespace roadx::cad::dxf
