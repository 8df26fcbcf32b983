#include "cad/doc_symbol_manager.h"

#include <vector>

#include "cad/zedra_eng.h"

using namespace roadx::cad;

int CDocSymbolManager::GetNoUserSymbols() const {
    int n = 0;
    if (eng_)
        for (const auto& b : eng_->GetBlocks()) n += b.userSymbol ? 1 : 0;
    return n;
}

int CDocSymbolManager::CopyUserSymbolsFrom(const CDocSymbolManager& other) {
    if (eng_ == nullptr || other.eng_ == nullptr || eng_ == other.eng_) return 0;
    std::unordered_map<uint64_t, uint64_t> copied;
    int count = 0;
    for (const auto& b : other.eng_->GetBlocks())
        if (b.userSymbol && eng_->GetBlockFromName(b.name) == 0) CopyBlock(*other.eng_, b.handle, copied, count);
    return count;
}

uint64_t CDocSymbolManager::MapDrawing(const CZedraEng& src, uint64_t drawing) {
    const TZedraDrawing* d = src.FindDrawing(drawing);
    if (d == nullptr) return 0;
    if (const uint64_t h = eng_->GetDrawingFromName(d->name)) return h;
    const uint64_t h = eng_->AddDrawing(d->type, d->name, d->visible, d->locked, d->priv);
    eng_->SetDrawingColor(h, d->colourSet, d->colour);
    eng_->SetDrawingFrozen(h, d->frozen);
    return h;
}

// Returns the handle in this engine of the block `block` of src, copying it
// (and the blocks its inserts use) when this engine has no block of its name.
uint64_t CDocSymbolManager::CopyBlock(const CZedraEng& src, uint64_t block, std::unordered_map<uint64_t, uint64_t>& copied,
                                      int& count) {
    if (auto it = copied.find(block); it != copied.end()) return it->second;
    const TZedraBlock* b = src.FindBlock(block);
    if (b == nullptr) return 0;
    if (const uint64_t existing = eng_->GetBlockFromName(b->name)) return copied[block] = existing;
    const uint64_t nb = eng_->AddBlock(b->name, b->priv, b->base, b->userSymbol);
    copied[block] = nb;
    ++count;
    for (const TEntRef& r : src.CollectEntities()) {
        const TEntHdr& h = src.Header(r);
        if (h.block != block) continue;
        const TEntAttr a{MapDrawing(src, h.drawing), h.colour, nb, h.tag};
        const uint32_t i = r.index;
        switch (r.kind) {
            case EEntKind::Point: eng_->AddPoint(a, src.Points()[i].p); break;
            case EEntKind::Line: eng_->AddLine(a, src.Lines()[i].a, src.Lines()[i].b); break;
            case EEntKind::Arc: {
                const TArc& e = src.Arcs()[i];
                eng_->AddArc(a, e.c, e.r, e.a0, e.a1);
                break;
            }
            case EEntKind::Circle: eng_->AddCircle(a, src.Circles()[i].c, src.Circles()[i].r); break;
            case EEntKind::Poly2D: {
                const TPoly2D& e = src.Polys2D()[i];
                const TVertex2D* v = src.Vertices2D(e);
                eng_->AddPolyline2D(a, std::vector<TVertex2D>(v, v + e.count), (e.h.flags & kFlagClosed) != 0, e.elevation);
                break;
            }
            case EEntKind::Poly3D: {
                const TPoly3D& e = src.Polys3D()[i];
                const PNT_3D* v = src.Vertices3D(e);
                eng_->AddPolyline3D(a, std::vector<PNT_3D>(v, v + e.count), (e.h.flags & kFlagClosed) != 0);
                break;
            }
            case EEntKind::Face3D: {
                const TFace3D& e = src.Faces()[i];
                eng_->Add3DFace(a, e.v[0], e.v[1], e.v[2], e.v[3], e.h.flags);
                break;
            }
            case EEntKind::Text: {
                const TText& e = src.Texts()[i];
                eng_->AddText(a, e.p, e.height, e.rotation, src.TextOf(e), e.halign, e.valign);
                break;
            }
            case EEntKind::Insert: {
                const TInsert& e = src.Inserts()[i];
                const uint64_t ref = CopyBlock(src, e.blockRef, copied, count);
                eng_->AddInsert(a, ref, e.p, e.sx, e.sy, e.sz, e.rotation);
                break;
            }
        }
    }
    return nb;
}
