#include "cad/dxf_graph.h"

#include <algorithm>
#include <unordered_set>

#include "cad/dxf_text.h"
#include "cad/zedra_eng.h"
#include "cad/zedra_names.h"

namespace roadx::cad::dxf {

namespace {

bool ModelEntityWritten(const CZedraEng& eng, const TSaveOptions& opt, const TEntHdr& h) {
    if (opt.drawing != 0 && h.drawing != opt.drawing) return false;
    const TZedraDrawing* d = eng.FindDrawing(h.drawing);
    if (d == nullptr) return false;
    if (opt.visibleOnly && (!d->visible || d->frozen)) return false;
    if (opt.unlockedOnly && d->locked) return false;
    return true;
}

// Gives a name that no earlier name takes (ASCII case ignored) by adding
// "_2", "_3", ... when needed.
std::string UniqueName(const std::string& base, std::vector<std::string>& taken) {
    auto isTaken = [&](const std::string& n) {
        return std::any_of(taken.begin(), taken.end(), [&](const std::string& t) { return SameName(t, n); });
    };
    std::string name = base;
    for (int n = 2; isTaken(name); ++n) name = base + "_" + std::to_string(n);
    taken.push_back(name);
    return name;
}

// Non-private blocks are always written; private ones when a written
// insert uses them, directly or through other blocks.
std::vector<uint64_t> BlocksToWrite(const CZedraEng& eng, const std::vector<TEntRef>& model) {
    std::unordered_set<uint64_t> wanted;
    std::vector<uint64_t> todo;
    auto want = [&](uint64_t b) {
        if (wanted.insert(b).second) todo.push_back(b);
    };
    for (const auto& b : eng.GetBlocks())
        if (!b.priv) want(b.handle);
    for (const auto& r : model)
        if (r.kind == EEntKind::Insert) want(eng.Inserts()[r.index].blockRef);
    while (!todo.empty()) {
        const uint64_t b = todo.back();
        todo.pop_back();
        for (const auto& ins : eng.Inserts())
            if (ins.h.block == b) want(ins.blockRef);
    }
    std::vector<uint64_t> out;
    for (const auto& b : eng.GetBlocks())
        if (wanted.count(b.handle)) out.push_back(b.handle);
    return out;
}

TLayerRec MakeLayer(const TZedraDrawing* d) {
    TLayerRec l;
    if (d == nullptr) return l;  // a plain layer "0"
    l.drawing = d->handle;
    l.colour = d->colourSet ? static_cast<int>(d->colour) : 7;
    if (!d->visible) l.colour = -l.colour;
    l.flags = (d->frozen ? 1 : 0) | (d->locked ? 4 : 0);
    return l;
}

void AddLayers(const CZedraEng& eng, const std::unordered_set<uint64_t>& used, TGraph& g) {
    std::vector<std::string> taken;
    const TZedraDrawing* zero = nullptr;
    for (const auto& d : eng.GetDrawings())
        if (d.name == "0") zero = &d;
    g.layers.push_back(MakeLayer(zero));
    g.layers.back().name = UniqueName("0", taken);
    for (const auto& d : eng.GetDrawings()) {
        if (&d == zero) continue;
        if (g.opt.usedDrawingsOnly && d.handle != eng.GetCurrentDrawing() && !used.count(d.handle)) continue;
        g.layers.push_back(MakeLayer(&d));
        g.layers.back().name = UniqueName(SanitizeTableName(d.name), taken);
    }
    for (size_t i = 0; i < g.layers.size(); ++i)
        if (g.layers[i].drawing != 0) g.layerOfDrawing[g.layers[i].drawing] = i;
}

void AssignFixedHandles(TGraph& g, uint64_t& next) {
    TFixedHandles& f = g.fixed;
    for (uint64_t* h : {&f.vportTable, &f.vportActive, &f.ltypeTable, &f.ltByBlock, &f.ltByLayer, &f.ltContinuous,
                        &f.layerTable, &f.styleTable, &f.styleStandard, &f.viewTable, &f.ucsTable, &f.appidTable,
                        &f.appidAcad, &f.dimstyleTable, &f.dimstyleStandard, &f.blockRecordTable, &f.dictRoot,
                        &f.dictGroup, &f.dictLayout, &f.dictMlineStyle, &f.mlineStandard, &f.dictPlotStyle,
                        &f.plotStyleNormal, &f.layoutModel, &f.layoutPaper})
        *h = next++;
}

void AssignBlockHandles(TBlockRec& b, uint64_t& next) {
    b.record = next++;
    b.begin = next++;
    b.end = next++;
}

void Extend(TGraph& g, double x, double y, double z) {
    if (g.opt.flatten) z = 0.0;
    if (!g.hasExtents) {
        g.extMin = g.extMax = PNT_3D(x, y, z);
        g.hasExtents = true;
        return;
    }
    g.extMin = PNT_3D(std::min(g.extMin.x, x), std::min(g.extMin.y, y), std::min(g.extMin.z, z));
    g.extMax = PNT_3D(std::max(g.extMax.x, x), std::max(g.extMax.y, y), std::max(g.extMax.z, z));
}

void Extend(TGraph& g, const PNT_3D& p) { Extend(g, p.x, p.y, p.z); }

void ExtendCircle(TGraph& g, const PNT_3D& c, double r) {
    Extend(g, c.x - r, c.y - r, c.z);
    Extend(g, c.x + r, c.y + r, c.z);
}

void ExtendBy(const CZedraEng& eng, TGraph& g, const TEntRef& r) {
    switch (r.kind) {
        case EEntKind::Point: Extend(g, eng.Points()[r.index].p); break;
        case EEntKind::Line: Extend(g, eng.Lines()[r.index].a); Extend(g, eng.Lines()[r.index].b); break;
        case EEntKind::Arc: ExtendCircle(g, eng.Arcs()[r.index].c, eng.Arcs()[r.index].r); break;
        case EEntKind::Circle: ExtendCircle(g, eng.Circles()[r.index].c, eng.Circles()[r.index].r); break;
        case EEntKind::Poly2D: {
            const TPoly2D& p = eng.Polys2D()[r.index];
            const TVertex2D* v = eng.Vertices2D(p);
            for (uint32_t i = 0; i < p.count; ++i) Extend(g, v[i].x, v[i].y, p.elevation);
            break;
        }
        case EEntKind::Poly3D: {
            const TPoly3D& p = eng.Polys3D()[r.index];
            const PNT_3D* v = eng.Vertices3D(p);
            for (uint32_t i = 0; i < p.count; ++i) Extend(g, v[i]);
            break;
        }
        case EEntKind::Face3D:
            for (const auto& v : eng.Faces()[r.index].v) Extend(g, v);
            break;
        case EEntKind::Text: Extend(g, eng.Texts()[r.index].p); break;
        case EEntKind::Insert: Extend(g, eng.Inserts()[r.index].p); break;
    }
}

}  // namespace

const std::string& TGraph::LayerName(uint64_t drawing) const {
    auto it = layerOfDrawing.find(drawing);
    return it == layerOfDrawing.end() ? layers[0].name : layers[it->second].name;
}

const std::string& TGraph::BlockName(uint64_t engineBlock) const {
    return blocks[blockOfEngine.at(engineBlock)].name;
}

uint64_t HandleCount(const CZedraEng& eng, const TGraph& g, const TEntRef& r) {
    // POLYLINE + VERTEX... + SEQEND; R2000 writes 2D polylines as LWPOLYLINE.
    if (r.kind == EEntKind::Poly2D) return g.r2000 ? 1 : 2 + uint64_t{eng.Polys2D()[r.index].count};
    if (r.kind == EEntKind::Poly3D) return 2 + uint64_t{eng.Polys3D()[r.index].count};
    return 1;
}

TGraph BuildGraph(const CZedraEng& eng, const TSaveOptions& opt) {
    TGraph g;
    g.opt = opt;
    if (opt.drawing != 0 && eng.FindDrawing(opt.drawing) == nullptr) g.opt.drawing = 0;
    g.r2000 = opt.version != ZEDRA_DXFDWG_VER_R12;
    g.handles = g.r2000 || opt.r12Handles;

    std::vector<std::vector<TEntRef>> ofBlock(eng.GetBlocks().size());
    std::unordered_map<uint64_t, size_t> engineBlockIndex;
    for (size_t i = 0; i < eng.GetBlocks().size(); ++i) engineBlockIndex[eng.GetBlocks()[i].handle] = i;
    for (const TEntRef& r : eng.CollectEntities()) {
        const TEntHdr& h = eng.Header(r);
        if (h.block != 0) ofBlock[engineBlockIndex.at(h.block)].push_back(r);
        else if (ModelEntityWritten(eng, g.opt, h)) g.modelSpace.ents.push_back(r);
    }

    uint64_t next = 1;
    AssignFixedHandles(g, next);
    g.modelSpace.name = "*Model_Space";
    g.paperSpace.name = "*Paper_Space";
    g.modelSpace.layout = g.fixed.layoutModel;
    g.paperSpace.layout = g.fixed.layoutPaper;
    AssignBlockHandles(g.modelSpace, next);
    AssignBlockHandles(g.paperSpace, next);

    std::vector<std::string> takenBlockNames{g.modelSpace.name, g.paperSpace.name};
    std::unordered_set<uint64_t> used;
    for (const auto& r : g.modelSpace.ents) used.insert(eng.Header(r).drawing);
    for (uint64_t b : BlocksToWrite(eng, g.modelSpace.ents)) {
        const TZedraBlock& src = eng.GetBlocks()[engineBlockIndex.at(b)];
        TBlockRec rec;
        rec.engineBlock = b;
        rec.name = UniqueName(SanitizeTableName(src.name), takenBlockNames);
        rec.base = src.base;
        rec.ents = std::move(ofBlock[engineBlockIndex.at(b)]);
        for (const auto& r : rec.ents) used.insert(eng.Header(r).drawing);
        g.blockOfEngine[b] = g.blocks.size();
        g.blocks.push_back(std::move(rec));
    }

    AddLayers(eng, used, g);
    for (auto& l : g.layers) l.handle = next++;
    for (auto& b : g.blocks) AssignBlockHandles(b, next);
    g.currentLayer = g.LayerName(eng.GetCurrentDrawing());

    g.firstEntityHandle = next;
    for (const auto& b : g.blocks)
        for (const auto& r : b.ents) next += HandleCount(eng, g, r);
    for (const auto& r : g.modelSpace.ents) next += HandleCount(eng, g, r);
    g.handSeed = next;

    for (const auto& r : g.modelSpace.ents) ExtendBy(eng, g, r);
    return g;
}

}  // namespace roadx::cad::dxf
