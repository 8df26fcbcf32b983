// Entities, and the BLOCKS and ENTITIES sections that hold them.
#include <numbers>

#include "cad/dxf_write_ctx.h"

namespace roadx::cad::dxf {

namespace {

constexpr double kDeg = 180.0 / std::numbers::pi;

void WritePoint(CWriteCtx& c, const TPoint& e, uint64_t h, uint64_t owner) {
    c.StartEntity("POINT", h, owner, e.h);
    c.Subclass("AcDbPoint");
    c.Point(10, e.p);
}

void WriteLine(CWriteCtx& c, const TLine& e, uint64_t h, uint64_t owner) {
    c.StartEntity("LINE", h, owner, e.h);
    c.Subclass("AcDbLine");
    c.Point(10, e.a);
    c.Point(11, e.b);
}

void WriteCircle(CWriteCtx& c, const TCircle& e, uint64_t h, uint64_t owner) {
    c.StartEntity("CIRCLE", h, owner, e.h);
    c.Subclass("AcDbCircle");
    c.Point(10, e.c);
    c.out.Real(40, e.r);
}

void WriteArc(CWriteCtx& c, const TArc& e, uint64_t h, uint64_t owner) {
    c.StartEntity("ARC", h, owner, e.h);
    c.Subclass("AcDbCircle");
    c.Point(10, e.c);
    c.out.Real(40, e.r);
    c.Subclass("AcDbArc");
    c.out.Approx(50, e.a0 * kDeg);
    c.out.Approx(51, e.a1 * kDeg);
}

void WriteLwPolyline(CWriteCtx& c, const TPoly2D& e, uint64_t h, uint64_t owner) {
    c.StartEntity("LWPOLYLINE", h, owner, e.h);
    c.Subclass("AcDbPolyline");
    c.out.Int(90, e.count);
    c.out.Int(70, (e.h.flags & kFlagClosed) ? 1 : 0);
    const double z = c.Z(e.elevation);
    if (z != 0.0) c.out.Real(38, z);
    const TVertex2D* v = c.eng.Vertices2D(e);
    for (uint32_t i = 0; i < e.count; ++i) {
        c.out.Real(10, v[i].x);
        c.out.Real(20, v[i].y);
        if (v[i].bulge != 0.0) c.out.Real(42, v[i].bulge);
    }
}

// POLYLINE, its VERTEX entities and SEQEND: 2D polylines of R12 files and
// 3D polylines of every version. Vertices and SEQEND belong to the POLYLINE.
struct TPolyShape {
    bool threeD;
    bool closed;
    double elevation;
};

void StartPolyline(CWriteCtx& c, const TEntHdr& hdr, uint64_t h, uint64_t owner, const TPolyShape& s) {
    c.StartEntity("POLYLINE", h, owner, hdr);
    c.Subclass(s.threeD ? "AcDb3dPolyline" : "AcDb2dPolyline");
    c.out.Int(66, 1);
    c.out.Point(10, 0.0, 0.0, s.threeD ? 0.0 : c.Z(s.elevation));
    c.out.Int(70, (s.closed ? 1 : 0) | (s.threeD ? 8 : 0));
}

void WriteVertex(CWriteCtx& c, const TEntHdr& hdr, uint64_t h, uint64_t poly, bool threeD, double x, double y, double z,
                 double bulge) {
    c.StartEntity("VERTEX", h, poly, hdr);
    c.Subclass("AcDbVertex");
    c.Subclass(threeD ? "AcDb3dPolylineVertex" : "AcDb2dVertex");
    c.out.Point(10, x, y, c.Z(z));
    if (bulge != 0.0) c.out.Real(42, bulge);
    c.out.Int(70, threeD ? 32 : 0);
}

void WriteSeqend(CWriteCtx& c, const TEntHdr& hdr, uint64_t h, uint64_t poly) { c.StartEntity("SEQEND", h, poly, hdr); }

void WritePolyline2D(CWriteCtx& c, const TPoly2D& e, uint64_t h, uint64_t owner) {
    StartPolyline(c, e.h, h, owner, {false, (e.h.flags & kFlagClosed) != 0, e.elevation});
    const TVertex2D* v = c.eng.Vertices2D(e);
    for (uint32_t i = 0; i < e.count; ++i) WriteVertex(c, e.h, h + 1 + i, h, false, v[i].x, v[i].y, e.elevation, v[i].bulge);
    WriteSeqend(c, e.h, h + 1 + e.count, h);
}

void WritePolyline3D(CWriteCtx& c, const TPoly3D& e, uint64_t h, uint64_t owner) {
    StartPolyline(c, e.h, h, owner, {true, (e.h.flags & kFlagClosed) != 0, 0.0});
    const PNT_3D* v = c.eng.Vertices3D(e);
    for (uint32_t i = 0; i < e.count; ++i) WriteVertex(c, e.h, h + 1 + i, h, true, v[i].x, v[i].y, v[i].z, 0.0);
    WriteSeqend(c, e.h, h + 1 + e.count, h);
}

void WriteFace(CWriteCtx& c, const TFace3D& e, uint64_t h, uint64_t owner) {
    c.StartEntity("3DFACE", h, owner, e.h);
    c.Subclass("AcDbFace");
    for (int i = 0; i < 4; ++i) c.Point(10 + i, e.v[i]);
    if (e.h.flags != 0) c.out.Int(70, e.h.flags);
}

void WriteText(CWriteCtx& c, const TText& e, uint64_t h, uint64_t owner) {
    c.StartEntity("TEXT", h, owner, e.h);
    c.Subclass("AcDbText");
    c.Point(10, e.p);
    c.out.Real(40, e.height);
    c.out.Text(1, c.eng.TextOf(e), EEncoding::Text);
    if (e.rotation != 0.0) c.out.Approx(50, e.rotation * kDeg);
    c.out.Str(7, c.Std("Standard", "STANDARD"));
    const bool aligned = e.halign != EHAlign::Left || e.valign != EVAlign::Baseline;
    if (e.halign != EHAlign::Left) c.out.Int(72, static_cast<int>(e.halign));
    // Readers place aligned text by its second point.
    if (aligned) c.Point(11, e.p);
    c.Subclass("AcDbText");
    if (e.valign != EVAlign::Baseline) c.out.Int(73, static_cast<int>(e.valign));
}

void WriteInsert(CWriteCtx& c, const TInsert& e, uint64_t h, uint64_t owner) {
    c.StartEntity("INSERT", h, owner, e.h);
    c.Subclass("AcDbBlockReference");
    c.out.Text(2, c.g.BlockName(e.blockRef), EEncoding::Name);
    c.Point(10, e.p);
    if (e.sx != 1.0) c.out.Real(41, e.sx);
    if (e.sy != 1.0) c.out.Real(42, e.sy);
    if (e.sz != 1.0) c.out.Real(43, e.sz);
    if (e.rotation != 0.0) c.out.Approx(50, e.rotation * kDeg);
}

// Layout blocks are written empty: their entities are in ENTITIES.
void WriteBlock(CWriteCtx& c, const TBlockRec& b, bool layout, bool paper) {
    CDxfOut& out = c.out;
    c.Start("BLOCK", b.begin, b.record);
    c.Subclass("AcDbEntity");
    if (paper) out.Int(67, 1);
    out.Str(8, "0");
    c.Subclass("AcDbBlockBegin");
    out.Text(2, b.name, EEncoding::Name);
    out.Int(70, 0);
    c.Point(10, b.base);
    out.Text(3, b.name, EEncoding::Name);
    out.Str(1, "");
    if (!layout)
        for (const auto& r : b.ents) WriteEntity(c, r, b.record);
    c.Start("ENDBLK", b.end, b.record);
    c.Subclass("AcDbEntity");
    if (paper) out.Int(67, 1);
    out.Str(8, "0");
    c.Subclass("AcDbBlockEnd");
}

}  // namespace

void WriteEntity(CWriteCtx& c, const TEntRef& r, uint64_t owner) {
    const uint64_t h = c.nextEntityHandle;
    c.nextEntityHandle += HandleCount(c.eng, c.g, r);
    const CZedraEng& e = c.eng;
    switch (r.kind) {
        case EEntKind::Point: WritePoint(c, e.Points()[r.index], h, owner); break;
        case EEntKind::Line: WriteLine(c, e.Lines()[r.index], h, owner); break;
        case EEntKind::Arc: WriteArc(c, e.Arcs()[r.index], h, owner); break;
        case EEntKind::Circle: WriteCircle(c, e.Circles()[r.index], h, owner); break;
        case EEntKind::Poly2D:
            if (c.g.r2000) WriteLwPolyline(c, e.Polys2D()[r.index], h, owner);
            else WritePolyline2D(c, e.Polys2D()[r.index], h, owner);
            break;
        case EEntKind::Poly3D: WritePolyline3D(c, e.Polys3D()[r.index], h, owner); break;
        case EEntKind::Face3D: WriteFace(c, e.Faces()[r.index], h, owner); break;
        case EEntKind::Text: WriteText(c, e.Texts()[r.index], h, owner); break;
        case EEntKind::Insert: WriteInsert(c, e.Inserts()[r.index], h, owner); break;
    }
}

// R2000 files define *Model_Space and *Paper_Space as blocks too (their
// entities are in ENTITIES); R12 files have only the user blocks.
void WriteBlocks(CWriteCtx& c) {
    c.out.Str(0, "SECTION");
    c.out.Str(2, "BLOCKS");
    if (c.g.r2000) {
        WriteBlock(c, c.g.modelSpace, true, false);
        WriteBlock(c, c.g.paperSpace, true, true);
    }
    for (const auto& b : c.g.blocks) WriteBlock(c, b, false, false);
    c.out.Str(0, "ENDSEC");
}

void WriteEntities(CWriteCtx& c) {
    c.out.Str(0, "SECTION");
    c.out.Str(2, "ENTITIES");
    for (const auto& r : c.g.modelSpace.ents) WriteEntity(c, r, c.g.modelSpace.record);
    c.out.Str(0, "ENDSEC");
}

}  // namespace roadx::cad::dxf
