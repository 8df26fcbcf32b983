// Drawings, blocks, references and notifications of the engine.
#include "cad/zedra_eng.h"

#include "cad/zedra_names.h"

namespace {
const char* const kDefaultDrawing = "Grafica";
}

CZedraEng::CZedraEng(int type, void* transactionManager, bool notify)
    : type_(type), transactionManager_(transactionManager), notify_(notify) {
    current_ = AddDrawing(0, kDefaultDrawing, true, false, false);
    // Making the default drawing is not a change anybody must hear about.
    changes_ = 0;
    emitted_ = 0;
}

// ---- notifications

void CZedraEng::Changed() {
    ++changes_;
    if (!notify_) return;
    if (holdDepth_ > 0) {
        ++suppressed_;
        pending_ = true;
        return;
    }
    ++emitted_;
    if (listener_) listener_();
}

void CZedraEng::EndHold() {
    if (holdDepth_ == 0) return;
    if (--holdDepth_ > 0 || !pending_) return;
    pending_ = false;
    ++emitted_;
    if (listener_) listener_();
}

// ---- drawings

void CZedraEng::ReindexDrawings() {
    drawingIndex_.clear();
    for (size_t i = 0; i < drawings_.size(); ++i) drawingIndex_[drawings_[i].handle] = i;
}

const TZedraDrawing* CZedraEng::FindDrawing(uint64_t h) const {
    auto it = drawingIndex_.find(h);
    return it == drawingIndex_.end() ? nullptr : &drawings_[it->second];
}

TZedraDrawing* CZedraEng::Drawing(uint64_t h) {
    auto it = drawingIndex_.find(h);
    return it == drawingIndex_.end() ? nullptr : &drawings_[it->second];
}

uint64_t CZedraEng::AddDrawing(int type, const std::string& name, bool visible, bool locked, bool priv) {
    if (name.empty() || GetDrawingFromName(name) != 0) return 0;
    TZedraDrawing d;
    d.handle = NewHandle();
    d.name = name;
    d.type = type;
    d.visible = visible;
    d.locked = locked;
    d.priv = priv;
    drawingIndex_[d.handle] = drawings_.size();
    drawings_.push_back(std::move(d));
    Changed();
    return drawings_.back().handle;
}

uint64_t CZedraEng::GetDrawingFromName(const std::string& name) const {
    for (const auto& d : drawings_)
        if (roadx::cad::SameName(d.name, name)) return d.handle;
    return 0;
}

std::string CZedraEng::GetDrawingName(uint64_t h) const {
    const TZedraDrawing* d = FindDrawing(h);
    return d ? d->name : std::string();
}

bool CZedraEng::IsDrawingVisible(uint64_t h) const {
    const TZedraDrawing* d = FindDrawing(h);
    return d && d->visible;
}

bool CZedraEng::IsDrawingLocked(uint64_t h) const {
    const TZedraDrawing* d = FindDrawing(h);
    return d && d->locked;
}

bool CZedraEng::IsDrawingFrozen(uint64_t h) const {
    const TZedraDrawing* d = FindDrawing(h);
    return d && d->frozen;
}

bool CZedraEng::SetDrawingVisible(uint64_t h, bool visible) {
    TZedraDrawing* d = Drawing(h);
    if (!d) return false;
    d->visible = visible;
    Changed();
    return true;
}

bool CZedraEng::SetDrawingLocked(uint64_t h, bool locked) {
    TZedraDrawing* d = Drawing(h);
    if (!d) return false;
    d->locked = locked;
    Changed();
    return true;
}

bool CZedraEng::SetDrawingFrozen(uint64_t h, bool frozen) {
    TZedraDrawing* d = Drawing(h);
    if (!d) return false;
    d->frozen = frozen;
    Changed();
    return true;
}

bool CZedraEng::GetDrawingColor(uint64_t h, bool& flag, unsigned& colour) const {
    const TZedraDrawing* d = FindDrawing(h);
    if (!d) {
        flag = false;
        colour = 7;
        return false;
    }
    flag = d->colourSet;
    colour = d->colour;
    return true;
}

bool CZedraEng::SetDrawingColor(uint64_t h, bool flag, unsigned colour) {
    TZedraDrawing* d = Drawing(h);
    if (!d || (flag && (colour < 1 || colour > 255))) return false;
    d->colourSet = flag;
    d->colour = colour;
    Changed();
    return true;
}

bool CZedraEng::SetDrawingName(uint64_t h, const std::string& name) {
    TZedraDrawing* d = Drawing(h);
    if (!d || name.empty()) return false;
    const uint64_t other = GetDrawingFromName(name);
    if (other != 0 && other != h) return false;
    d->name = name;
    Changed();
    return true;
}

bool CZedraEng::SetCurrentDrawing(uint64_t h) {
    if (!FindDrawing(h)) return false;
    current_ = h;
    Changed();
    return true;
}

int CZedraEng::AddDrawingRef(CZedraEng* eng, uint64_t h) {
    TZedraDrawing* d = eng ? eng->Drawing(h) : nullptr;
    return d ? ++d->refs : -1;
}

int CZedraEng::SubDrawingRef(CZedraEng* eng, uint64_t h) {
    TZedraDrawing* d = eng ? eng->Drawing(h) : nullptr;
    if (!d) return -1;
    if (d->refs > 0) --d->refs;
    return d->refs;
}

int CZedraEng::GetDrawingRefCount(uint64_t h) const {
    const TZedraDrawing* d = FindDrawing(h);
    return d ? d->refs : -1;
}

// ---- blocks

void CZedraEng::ReindexBlocks() {
    blockIndex_.clear();
    for (size_t i = 0; i < blocks_.size(); ++i) blockIndex_[blocks_[i].handle] = i;
}

const TZedraBlock* CZedraEng::FindBlock(uint64_t h) const {
    auto it = blockIndex_.find(h);
    return it == blockIndex_.end() ? nullptr : &blocks_[it->second];
}

uint64_t CZedraEng::AddBlock(const std::string& name, bool priv, const roadx::cad::PNT_3D& base, bool userSymbol) {
    if (name.empty() || GetBlockFromName(name) != 0) return 0;
    TZedraBlock b;
    b.handle = NewHandle();
    b.name = name;
    b.base = base;
    b.priv = priv;
    b.userSymbol = userSymbol;
    blockIndex_[b.handle] = blocks_.size();
    blocks_.push_back(std::move(b));
    Changed();
    return blocks_.back().handle;
}

uint64_t CZedraEng::GetBlockFromName(const std::string& name) const {
    for (const auto& b : blocks_)
        if (roadx::cad::SameName(b.name, name)) return b.handle;
    return 0;
}

int CZedraEng::GetNoBlocksNotPriv() const {
    int n = 0;
    for (const auto& b : blocks_) n += b.priv ? 0 : 1;
    return n;
}

bool CZedraEng::SetBlockUserSymbol(uint64_t h, bool userSymbol) {
    auto it = blockIndex_.find(h);
    if (it == blockIndex_.end()) return false;
    blocks_[it->second].userSymbol = userSymbol;
    Changed();
    return true;
}
