// Adding, counting, ordering and removing the engine's entities.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "cad/zedra_eng.h"

using namespace roadx::cad;

namespace {

bool Finite(const PNT_3D& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
bool Finite(double d) { return std::isfinite(d); }

// Entity indices are 32-bit (TEntRef), so a kind holds at most this many.
constexpr size_t kMaxPerKind = std::numeric_limits<uint32_t>::max();

template <class V>
bool Room(const V& v) { return v.size() < kMaxPerKind; }

}  // namespace

bool CZedraEng::MakeHeader(const TEntAttr& a, TEntHdr& h) {
    const uint64_t drawing = a.drawing ? a.drawing : current_;
    if (!FindDrawing(drawing)) return false;
    if (a.block != 0 && !FindBlock(a.block)) return false;
    if (a.colour < kColorByBlock || a.colour > kColorByLayer) return false;
    h.drawing = drawing;
    h.block = a.block;
    h.colour = static_cast<int16_t>(a.colour);
    h.flags = 0;
    h.tag = a.tag;
    h.handle = NewHandle();
    return true;
}

uint64_t CZedraEng::AddPoint(const TEntAttr& a, const PNT_3D& p) {
    TPoint e{};
    if (!Finite(p) || !Room(points_) || !MakeHeader(a, e.h)) return 0;
    e.p = p;
    points_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddLine(const TEntAttr& a, const PNT_3D& p1, const PNT_3D& p2) {
    TLine e{};
    if (!Finite(p1) || !Finite(p2) || !Room(lines_) || !MakeHeader(a, e.h)) return 0;
    e.a = p1;
    e.b = p2;
    lines_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddArc(const TEntAttr& a, const PNT_3D& centre, double radius, double startRad, double endRad) {
    TArc e{};
    if (!Finite(centre) || !Finite(radius) || radius <= 0.0 || !Finite(startRad) || !Finite(endRad) || !Room(arcs_) ||
        !MakeHeader(a, e.h))
        return 0;
    e.c = centre;
    e.r = radius;
    e.a0 = startRad;
    e.a1 = endRad;
    arcs_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddCircle(const TEntAttr& a, const PNT_3D& centre, double radius) {
    TCircle e{};
    if (!Finite(centre) || !Finite(radius) || radius <= 0.0 || !Room(circles_) || !MakeHeader(a, e.h)) return 0;
    e.c = centre;
    e.r = radius;
    circles_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddPolyline2D(const TEntAttr& a, const std::vector<TVertex2D>& v, bool closed, double elevation) {
    if (v.size() < 2 || v.size() > kMaxPerKind || !Finite(elevation) || !Room(polys2d_)) return 0;
    for (const auto& p : v)
        if (!Finite(p.x) || !Finite(p.y) || !Finite(p.bulge)) return 0;
    TPoly2D e{};
    if (!MakeHeader(a, e.h)) return 0;
    e.h.flags = closed ? kFlagClosed : 0;
    e.first = vtx2d_.size();
    e.count = static_cast<uint32_t>(v.size());
    e.elevation = elevation;
    vtx2d_.insert(vtx2d_.end(), v.begin(), v.end());
    polys2d_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddPolyline3D(const TEntAttr& a, const std::vector<PNT_3D>& v, bool closed) {
    if (v.size() < 2 || v.size() > kMaxPerKind || !Room(polys3d_)) return 0;
    for (const auto& p : v)
        if (!Finite(p)) return 0;
    TPoly3D e{};
    if (!MakeHeader(a, e.h)) return 0;
    e.h.flags = closed ? kFlagClosed : 0;
    e.first = vtx3d_.size();
    e.count = static_cast<uint32_t>(v.size());
    vtx3d_.insert(vtx3d_.end(), v.begin(), v.end());
    polys3d_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::Add3DFace(const TEntAttr& a, const PNT_3D& p1, const PNT_3D& p2, const PNT_3D& p3) {
    return Add3DFace(a, p1, p2, p3, p3, 0);
}

uint64_t CZedraEng::Add3DFace(const TEntAttr& a, const PNT_3D& p1, const PNT_3D& p2, const PNT_3D& p3, const PNT_3D& p4,
                              unsigned invisibleEdges) {
    TFace3D e{};
    if (!Finite(p1) || !Finite(p2) || !Finite(p3) || !Finite(p4) || invisibleEdges > 15 || !Room(faces_) ||
        !MakeHeader(a, e.h))
        return 0;
    e.h.flags = static_cast<uint16_t>(invisibleEdges);
    e.v[0] = p1;
    e.v[1] = p2;
    e.v[2] = p3;
    e.v[3] = p4;
    faces_.push_back(e);
    Changed();
    return e.h.handle;
}

uint64_t CZedraEng::AddText(const TEntAttr& a, const PNT_3D& pos, double height, double rotationRad, std::string_view text,
                            EHAlign h, EVAlign v) {
    if (!Finite(pos) || !Finite(height) || height <= 0.0 || !Finite(rotationRad) || text.size() > kMaxPerKind ||
        !Room(texts_) || static_cast<unsigned>(h) > 2 || static_cast<unsigned>(v) > 3)
        return 0;
    TText e{};
    if (!MakeHeader(a, e.h)) return 0;
    e.p = pos;
    e.height = height;
    e.rotation = rotationRad;
    e.first = textPool_.size();
    e.len = static_cast<uint32_t>(text.size());
    e.halign = h;
    e.valign = v;
    textPool_.insert(textPool_.end(), text.begin(), text.end());
    texts_.push_back(e);
    Changed();
    return e.h.handle;
}

// True when block `from` holds, directly or through nested inserts, an
// insert of `target` (or is `target`).
bool CZedraEng::BlockReaches(uint64_t from, uint64_t target) const {
    std::vector<uint64_t> todo{from};
    std::vector<uint64_t> seen;
    while (!todo.empty()) {
        const uint64_t b = todo.back();
        todo.pop_back();
        if (b == target) return true;
        if (std::find(seen.begin(), seen.end(), b) != seen.end()) continue;
        seen.push_back(b);
        for (const auto& ins : inserts_)
            if (ins.h.block == b) todo.push_back(ins.blockRef);
    }
    return false;
}

uint64_t CZedraEng::AddInsert(const TEntAttr& a, uint64_t block, const PNT_3D& pos, double sx, double sy, double sz,
                              double rotationRad) {
    if (!FindBlock(block) || !Finite(pos) || !Finite(sx) || !Finite(sy) || !Finite(sz) || !Finite(rotationRad) ||
        sx == 0.0 || sy == 0.0 || sz == 0.0 || !Room(inserts_))
        return 0;
    // An insert inside block X of a block that reaches X would nest forever.
    if (a.block != 0 && BlockReaches(block, a.block)) return 0;
    TInsert e{};
    if (!MakeHeader(a, e.h)) return 0;
    e.blockRef = block;
    e.p = pos;
    e.sx = sx;
    e.sy = sy;
    e.sz = sz;
    e.rotation = rotationRad;
    inserts_.push_back(e);
    Changed();
    return e.h.handle;
}

// ---- counting and ordering

size_t CZedraEng::GetNoEntities() const {
    return points_.size() + lines_.size() + arcs_.size() + circles_.size() + polys2d_.size() + polys3d_.size() +
           faces_.size() + texts_.size() + inserts_.size();
}

size_t CZedraEng::GetNoEntities(EEntKind kind) const {
    switch (kind) {
        case EEntKind::Point: return points_.size();
        case EEntKind::Line: return lines_.size();
        case EEntKind::Arc: return arcs_.size();
        case EEntKind::Circle: return circles_.size();
        case EEntKind::Poly2D: return polys2d_.size();
        case EEntKind::Poly3D: return polys3d_.size();
        case EEntKind::Face3D: return faces_.size();
        case EEntKind::Text: return texts_.size();
        case EEntKind::Insert: return inserts_.size();
    }
    return 0;
}

const TEntHdr& CZedraEng::Header(const TEntRef& r) const {
    switch (r.kind) {
        case EEntKind::Point: return points_[r.index].h;
        case EEntKind::Line: return lines_[r.index].h;
        case EEntKind::Arc: return arcs_[r.index].h;
        case EEntKind::Circle: return circles_[r.index].h;
        case EEntKind::Poly2D: return polys2d_[r.index].h;
        case EEntKind::Poly3D: return polys3d_[r.index].h;
        case EEntKind::Face3D: return faces_[r.index].h;
        case EEntKind::Text: return texts_[r.index].h;
        case EEntKind::Insert: break;
    }
    return inserts_[r.index].h;
}

size_t CZedraEng::GetNoEntitiesOfDrawing(uint64_t h, EEntKind kind) const {
    size_t n = 0;
    const size_t count = GetNoEntities(kind);
    for (size_t i = 0; i < count; ++i) n += Header({kind, static_cast<uint32_t>(i)}).drawing == h ? 1 : 0;
    return n;
}

size_t CZedraEng::GetNoEntitiesOfDrawing(uint64_t h) const {
    size_t n = 0;
    for (int k = 0; k < kEntKindCount; ++k) n += GetNoEntitiesOfDrawing(h, static_cast<EEntKind>(k));
    return n;
}

// Each kind's vector is in increasing handle order (handles only grow and
// removal keeps order), so a merge of the heads gives creation order.
std::vector<TEntRef> CZedraEng::CollectEntities() const {
    std::vector<TEntRef> out;
    out.reserve(GetNoEntities());
    std::array<uint32_t, kEntKindCount> pos{};
    for (;;) {
        int best = -1;
        uint64_t bestHandle = 0;
        for (int k = 0; k < kEntKindCount; ++k) {
            const EEntKind kind = static_cast<EEntKind>(k);
            if (pos[k] >= GetNoEntities(kind)) continue;
            const uint64_t h = Header({kind, pos[k]}).handle;
            if (best < 0 || h < bestHandle) {
                best = k;
                bestHandle = h;
            }
        }
        if (best < 0) return out;
        out.push_back({static_cast<EEntKind>(best), pos[best]++});
    }
}

// ---- removal

size_t CZedraEng::EraseEntities(const std::function<bool(const TEntHdr&)>& pred) {
    auto erase = [&](auto& v) { return std::erase_if(v, [&](const auto& e) { return pred(e.h); }); };
    size_t n = erase(points_) + erase(lines_) + erase(arcs_) + erase(circles_) + erase(polys2d_) + erase(polys3d_) +
               erase(faces_) + erase(texts_) + erase(inserts_);
    if (n == 0) return 0;
    PackPools();
    Changed();
    return n;
}

// Pools keep the bytes of removed polylines and texts until more than half
// of them is garbage; then they are packed again.
void CZedraEng::PackPools() {
    auto pack = [](auto& pool, auto& ents, auto size) {
        size_t live = 0;
        for (const auto& e : ents) live += size(e);
        if (live * 2 >= pool.size()) return;
        std::remove_reference_t<decltype(pool)> packed;
        packed.reserve(live);
        for (auto& e : ents) {
            const auto* from = pool.data() + e.first;
            e.first = packed.size();
            packed.insert(packed.end(), from, from + size(e));
        }
        pool.swap(packed);
    };
    pack(vtx2d_, polys2d_, [](const TPoly2D& e) { return e.count; });
    pack(vtx3d_, polys3d_, [](const TPoly3D& e) { return e.count; });
    pack(textPool_, texts_, [](const TText& e) { return e.len; });
}

size_t CZedraEng::DeleteEntitiesOfDrawing(uint64_t h) {
    return EraseEntities([h](const TEntHdr& e) { return e.drawing == h; });
}

size_t CZedraEng::DeleteEntitiesWithTag(uint32_t tag) {
    return EraseEntities([tag](const TEntHdr& e) { return e.tag == tag; });
}

bool CZedraEng::DeleteEntity(uint64_t handle) {
    return handle != 0 && EraseEntities([handle](const TEntHdr& e) { return e.handle == handle; }) > 0;
}
