// Whole-engine operations: copy and purge.
#include <algorithm>
#include <unordered_set>

#include "cad/zedra_eng.h"

using namespace roadx::cad;

// Holders reference drawings of the engine they live in, so reference
// counts are not carried over: every drawing of the copy starts at 0.
void CZedraEng::CopiaDa(CZedraEng* src, bool withEntities) {
    if (src == nullptr || src == this) return;
    drawings_ = src->drawings_;
    for (auto& d : drawings_) d.refs = 0;
    blocks_ = src->blocks_;
    ReindexDrawings();
    ReindexBlocks();
    current_ = src->current_;
    vars_ = src->vars_;
    // Handles issued here before stay unused, so that an old handle never
    // names a copied object by accident.
    nextHandle_ = std::max(nextHandle_, src->nextHandle_);
    if (withEntities) {
        points_ = src->points_;
        lines_ = src->lines_;
        arcs_ = src->arcs_;
        circles_ = src->circles_;
        polys2d_ = src->polys2d_;
        polys3d_ = src->polys3d_;
        faces_ = src->faces_;
        texts_ = src->texts_;
        inserts_ = src->inserts_;
        vtx2d_ = src->vtx2d_;
        vtx3d_ = src->vtx3d_;
        textPool_ = src->textPool_;
    } else {
        points_.clear();
        lines_.clear();
        arcs_.clear();
        circles_.clear();
        polys2d_.clear();
        polys3d_.clear();
        faces_.clear();
        texts_.clear();
        inserts_.clear();
        vtx2d_.clear();
        vtx3d_.clear();
        textPool_.clear();
    }
    Changed();
}

int CZedraEng::PurgePrivateObjects() {
    int removed = 0;
    // Removing a block removes its inserts, which may leave further blocks
    // unused: repeat until nothing changes.
    for (;;) {
        std::unordered_set<uint64_t> used;
        for (const auto& ins : inserts_) used.insert(ins.blockRef);
        std::unordered_set<uint64_t> gone;
        for (const auto& b : blocks_)
            if (b.priv && !used.count(b.handle)) gone.insert(b.handle);
        if (gone.empty()) break;
        EraseEntities([&](const TEntHdr& e) { return e.block != 0 && gone.count(e.block) > 0; });
        std::erase_if(blocks_, [&](const TZedraBlock& b) { return gone.count(b.handle) > 0; });
        removed += static_cast<int>(gone.size());
    }
    ReindexBlocks();

    std::unordered_set<uint64_t> drawn;
    for (const auto& r : CollectEntities()) drawn.insert(Header(r).drawing);
    const size_t before = drawings_.size();
    std::erase_if(drawings_, [&](const TZedraDrawing& d) {
        return d.priv && d.refs == 0 && d.handle != current_ && !drawn.count(d.handle);
    });
    removed += static_cast<int>(before - drawings_.size());
    ReindexDrawings();
    if (removed > 0) Changed();
    return removed;
}
