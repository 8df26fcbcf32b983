// Block records, BLOCK and ENDBLK, and the entities of every block record.
// Entities of a block record form a chain (previous and next entity), the
// record names the first and the last; a 3D polyline owns its vertices and
// its SEQEND.
#include <bit>

#include "cad/dwg_write_ctx.h"
#include "cad/zedra_eng.h"

namespace roadx::cad::dwg {

namespace {

bool IsZero(double v) { return std::bit_cast<uint64_t>(v) == 0; }
bool IsOne(double v) { return std::bit_cast<uint64_t>(v) == std::bit_cast<uint64_t>(1.0); }

struct TEntCtx {
    CDwgCtx& c;
    TEntityCommon common;  // handle, mode, owner, links; colour and layer per entity
};

TEntityCommon With(const TEntCtx& e, const TEntHdr& h) {
    TEntityCommon c = e.common;
    c.colour = h.colour;
    c.layer = e.c.LayerHandle(h.drawing);
    return c;
}

void Point(TEntCtx& e, const TPoint& p) {
    CEntWriter w(kTypePoint, With(e, p.h));
    w.D().P3BD(p.p.x, p.p.y, e.c.Z(p.p.z));
    w.D().BT(0.0);
    w.D().BE(0.0, 0.0, 1.0);
    w.D().BD(0.0);  // x axis angle
    w.CommonHandles();
    e.c.Add(e.common.handle, w);
}

void Line(TEntCtx& e, const TLine& l) {
    CEntWriter w(kTypeLine, With(e, l.h));
    CBitWriter& d = w.D();
    const double z1 = e.c.Z(l.a.z), z2 = e.c.Z(l.b.z);
    const bool flat = IsZero(z1) && IsZero(z2);
    d.B(flat);
    d.RD(l.a.x);
    d.DD(l.b.x, l.a.x);
    d.RD(l.a.y);
    d.DD(l.b.y, l.a.y);
    if (!flat) {
        d.RD(z1);
        d.DD(z2, z1);
    }
    d.BT(0.0);
    d.BE(0.0, 0.0, 1.0);
    w.CommonHandles();
    e.c.Add(e.common.handle, w);
}

void Circle(TEntCtx& e, const TEntHdr& h, int16_t type, const PNT_3D& centre, double r, const double* angles) {
    CEntWriter w(type, With(e, h));
    CBitWriter& d = w.D();
    d.P3BD(centre.x, centre.y, e.c.Z(centre.z));
    d.BD(r);
    d.BT(0.0);
    d.BE(0.0, 0.0, 1.0);
    if (angles != nullptr) {
        d.BD(angles[0]);
        d.BD(angles[1]);
    }
    w.CommonHandles();
    e.c.Add(e.common.handle, w);
}

constexpr int16_t kLwElevation = 8;
constexpr int16_t kLwBulges = 16;
constexpr int16_t kLwClosed = 512;

void LwPolyline(TEntCtx& e, const TPoly2D& p) {
    const TVertex2D* v = e.c.eng.Vertices2D(p);
    bool bulges = false;
    for (uint32_t i = 0; i < p.count; ++i) bulges = bulges || !IsZero(v[i].bulge);
    const double z = e.c.Z(p.elevation);
    int16_t flag = (p.h.flags & kFlagClosed) ? kLwClosed : 0;
    if (!IsZero(z)) flag |= kLwElevation;
    if (bulges) flag |= kLwBulges;
    CEntWriter w(kTypeLwPolyline, With(e, p.h));
    CBitWriter& d = w.D();
    d.BS(flag);
    if (flag & kLwElevation) d.BD(z);
    d.BL(static_cast<int32_t>(p.count));
    if (bulges) d.BL(static_cast<int32_t>(p.count));
    d.P2RD(v[0].x, v[0].y);
    for (uint32_t i = 1; i < p.count; ++i) {
        d.DD(v[i].x, v[i - 1].x);
        d.DD(v[i].y, v[i - 1].y);
    }
    if (bulges)
        for (uint32_t i = 0; i < p.count; ++i) d.BD(v[i].bulge);
    w.CommonHandles();
    e.c.Add(e.common.handle, w);
}

// POLYLINE, then its vertices and SEQEND, which it owns; the vertices
// form their own chain.
void Polyline3D(TEntCtx& e, const TPoly3D& p) {
    const uint64_t h = e.common.handle;
    const uint64_t seqend = h + 1 + p.count;
    {
        CEntWriter w(kTypePolyline3D, With(e, p.h));
        w.D().RC(0);  // not splined
        w.D().RC((p.h.flags & kFlagClosed) ? 1 : 0);
        w.CommonHandles();
        w.H().H(kSoftPointer, h + 1);
        w.H().H(kSoftPointer, h + p.count);
        w.H().H(kHardOwner, seqend);
        e.c.Add(h, w);
    }
    const PNT_3D* v = e.c.eng.Vertices3D(p);
    TEntCtx owned{e.c, e.common};
    owned.common.mode = kEntModeOwner;
    owned.common.owner = h;
    for (uint32_t i = 0; i < p.count; ++i) {
        owned.common.handle = h + 1 + i;
        owned.common.prev = i > 0 ? h + i : 0;
        owned.common.next = i + 1 < p.count ? h + 2 + i : 0;
        CEntWriter w(kTypeVertex3D, With(owned, p.h));
        w.D().RC(32);  // a 3D polyline vertex
        w.D().P3BD(v[i].x, v[i].y, e.c.Z(v[i].z));
        w.CommonHandles();
        e.c.Add(owned.common.handle, w);
    }
    owned.common.handle = seqend;
    owned.common.prev = owned.common.next = 0;
    CEntWriter w(kTypeSeqend, With(owned, p.h));
    w.CommonHandles();
    e.c.Add(seqend, w);
}

void Face(TEntCtx& e, const TFace3D& f) {
    CEntWriter w(kTypeFace3D, With(e, f.h));
    CBitWriter& d = w.D();
    const unsigned invisible = f.h.flags & 0xF;
    double z[4];
    for (int i = 0; i < 4; ++i) z[i] = e.c.Z(f.v[i].z);
    d.B(invisible == 0);
    d.B(IsZero(z[0]));
    d.RD(f.v[0].x);
    d.RD(f.v[0].y);
    if (!IsZero(z[0])) d.RD(z[0]);
    for (int i = 1; i < 4; ++i) {
        d.DD(f.v[i].x, f.v[i - 1].x);
        d.DD(f.v[i].y, f.v[i - 1].y);
        d.DD(z[i], z[i - 1]);
    }
    if (invisible != 0) d.BS(static_cast<int16_t>(invisible));
    w.CommonHandles();
    e.c.Add(e.common.handle, w);
}

// Data flags of TEXT: a set bit means the value is the default and is not
// stored.
void Text(TEntCtx& e, const TText& t) {
    const double z = e.c.Z(t.p.z);
    const bool aligned = t.halign != EHAlign::Left || t.valign != EVAlign::Baseline;
    uint8_t flags = 0x04 | 0x10 | 0x20;  // no oblique angle, width 1, normal generation
    if (IsZero(z)) flags |= 0x01;
    if (!aligned) flags |= 0x02;
    if (IsZero(t.rotation)) flags |= 0x08;
    if (t.halign == EHAlign::Left) flags |= 0x40;
    if (t.valign == EVAlign::Baseline) flags |= 0x80;
    CEntWriter w(kTypeText, With(e, t.h));
    CBitWriter& d = w.D();
    d.RC(flags);
    if (!(flags & 0x01)) d.RD(z);
    d.P2RD(t.p.x, t.p.y);
    if (aligned) {  // readers place aligned text by its second point
        d.DD(t.p.x, t.p.x);
        d.DD(t.p.y, t.p.y);
    }
    d.BE(0.0, 0.0, 1.0);
    d.BT(0.0);
    if (!(flags & 0x08)) d.RD(t.rotation);
    d.RD(t.height);
    d.T(CDwgCtx::Text(e.c.eng.TextOf(t)));
    if (!(flags & 0x40)) d.BS(static_cast<int16_t>(t.halign));
    if (!(flags & 0x80)) d.BS(static_cast<int16_t>(t.valign));
    w.CommonHandles();
    w.H().H(kHardPointer, e.c.g.fixed.styleStandard);
    e.c.Add(e.common.handle, w);
}

void Insert(TEntCtx& e, const TInsert& ins) {
    CEntWriter w(kTypeInsert, With(e, ins.h));
    CBitWriter& d = w.D();
    d.P3BD(ins.p.x, ins.p.y, e.c.Z(ins.p.z));
    const bool sameScale = std::bit_cast<uint64_t>(ins.sx) == std::bit_cast<uint64_t>(ins.sy) &&
                           std::bit_cast<uint64_t>(ins.sx) == std::bit_cast<uint64_t>(ins.sz);
    if (sameScale && IsOne(ins.sx)) {
        d.BB(3);
    } else if (IsOne(ins.sx)) {
        d.BB(1);
        d.DD(ins.sy, 1.0);
        d.DD(ins.sz, 1.0);
    } else if (sameScale) {
        d.BB(2);
        d.RD(ins.sx);
    } else {
        d.BB(0);
        d.RD(ins.sx);
        d.DD(ins.sy, ins.sx);
        d.DD(ins.sz, ins.sx);
    }
    d.BD(ins.rotation);
    d.P3BD(0.0, 0.0, 1.0);
    d.B(false);  // no attributes
    w.CommonHandles();
    const auto& g = e.c.g;
    w.H().H(kHardPointer, g.blocks[g.blockOfEngine.at(ins.blockRef)].record);
    e.c.Add(e.common.handle, w);
}

void Entity(TEntCtx& e, const TEntRef& r) {
    const CZedraEng& eng = e.c.eng;
    switch (r.kind) {
        case EEntKind::Point: Point(e, eng.Points()[r.index]); break;
        case EEntKind::Line: Line(e, eng.Lines()[r.index]); break;
        case EEntKind::Arc: {
            const TArc& a = eng.Arcs()[r.index];
            const double angles[2] = {a.a0, a.a1};
            Circle(e, a.h, kTypeArc, a.c, a.r, angles);
            break;
        }
        case EEntKind::Circle: {
            const TCircle& ci = eng.Circles()[r.index];
            Circle(e, ci.h, kTypeCircle, ci.c, ci.r, nullptr);
            break;
        }
        case EEntKind::Poly2D: LwPolyline(e, eng.Polys2D()[r.index]); break;
        case EEntKind::Poly3D: Polyline3D(e, eng.Polys3D()[r.index]); break;
        case EEntKind::Face3D: Face(e, eng.Faces()[r.index]); break;
        case EEntKind::Text: Text(e, eng.Texts()[r.index]); break;
        case EEntKind::Insert: Insert(e, eng.Inserts()[r.index]); break;
    }
}

// BLOCK and ENDBLK of the layout blocks say model or paper space; those of
// user blocks name their block record as owner.
void BlockEntity(CDwgCtx& c, int16_t type, uint64_t handle, const dxf::TBlockRec& b, EEntMode mode) {
    TEntityCommon common;
    common.handle = handle;
    common.mode = mode;
    common.owner = mode == kEntModeOwner ? b.record : 0;
    common.layer = c.g.layers[0].handle;
    CEntWriter w(type, common);
    if (type == kTypeBlock) w.D().T(CDwgCtx::Text(b.name));
    w.CommonHandles();
    c.Add(handle, w);
}

void BlockHeader(CDwgCtx& c, const dxf::TBlockRec& b, const std::vector<uint64_t>& ents) {
    CObjWriter w(kTypeBlockHeader, b.record);
    CBitWriter& d = w.D();
    d.T(CDwgCtx::Text(b.name));
    d.B(false);  // 64-flag
    d.BS(0);     // external reference index + 1
    d.B(false);  // not dependent on an external reference
    d.B(false);  // not anonymous
    d.B(false);  // no attribute definitions
    d.B(false);  // not an external reference
    d.B(false);  // not overlaid
    d.B(false);  // loaded
    d.P3BD(b.base.x, b.base.y, c.Z(b.base.z));
    d.T("");     // external reference path
    d.RC(0);     // no insert handles follow
    d.T("");     // description
    d.BL(0);     // no preview
    w.OwnerHandles(c.g.fixed.blockRecordTable);
    CBitWriter& h = w.H();
    h.H(kHardPointer, 0);
    h.H(kHardOwner, b.begin);
    h.H(kSoftPointer, ents.empty() ? 0 : ents.front());
    h.H(kSoftPointer, ents.empty() ? 0 : ents.back());
    h.H(kHardOwner, b.end);
    h.H(kHardPointer, b.layout);
    c.Add(b.record, w);
}

void BlockContent(CDwgCtx& c, const dxf::TBlockRec& b, const std::vector<uint64_t>& hs, EEntMode mode) {
    BlockEntity(c, kTypeBlock, b.begin, b, mode);
    BlockEntity(c, kTypeEndblk, b.end, b, mode);
    TEntCtx e{c, {}};
    e.common.mode = mode;
    e.common.owner = mode == kEntModeOwner ? b.record : 0;
    for (size_t i = 0; i < b.ents.size(); ++i) {
        e.common.handle = hs[i];
        e.common.prev = i > 0 ? hs[i - 1] : 0;
        e.common.next = i + 1 < hs.size() ? hs[i + 1] : 0;
        Entity(e, b.ents[i]);
    }
}

}  // namespace

std::vector<uint64_t> EntityHandles(const CZedraEng& eng, const dxf::TGraph& g, const dxf::TBlockRec& b) {
    uint64_t next = g.firstEntityHandle;
    auto handlesOf = [&](const dxf::TBlockRec& rec) {
        std::vector<uint64_t> hs;
        hs.reserve(rec.ents.size());
        for (const auto& r : rec.ents) {
            hs.push_back(next);
            next += dxf::HandleCount(eng, g, r);
        }
        return hs;
    };
    for (const auto& ub : g.blocks) {
        if (&ub == &b) return handlesOf(ub);
        for (const auto& r : ub.ents) next += dxf::HandleCount(eng, g, r);
    }
    if (&b == &g.modelSpace) return handlesOf(b);
    return {};  // paper space is empty
}

void WriteBlockHeaders(CDwgCtx& c) {
    BlockHeader(c, c.g.modelSpace, EntityHandles(c.eng, c.g, c.g.modelSpace));
    BlockHeader(c, c.g.paperSpace, {});
    for (const auto& b : c.g.blocks) BlockHeader(c, b, EntityHandles(c.eng, c.g, b));
}

void WriteBlocksAndEntities(CDwgCtx& c) {
    BlockContent(c, c.g.paperSpace, {}, kEntModePaper);
    for (const auto& b : c.g.blocks) BlockContent(c, b, EntityHandles(c.eng, c.g, b), kEntModeOwner);
    BlockContent(c, c.g.modelSpace, EntityHandles(c.eng, c.g, c.g.modelSpace), kEntModeModel);
}

}  // namespace roadx::cad::dwg
