#include "landxml_import/boundary_chain.h"

#include <bit>
#include <iterator>

namespace {

using vesk::geom::PNT_3D;

bool SamePlan(const PNT_3D& a, const PNT_3D& b) { return a.x == b.x && a.y == b.y; }

// Joins piece n into line e when they share an end point; false (e
// untouched) otherwise. Neither may be empty.
bool Join(TBoundaryLine& e, const TBoundaryLine& n) {
    if (SamePlan(n.front(), e.back())) {
        e.insert(e.end(), n.begin() + 1, n.end());
        return true;
    }
    if (SamePlan(n.back(), e.back())) {
        e.insert(e.end(), n.rbegin() + 1, n.rend());
        return true;
    }
    if (SamePlan(n.back(), e.front())) {
        TBoundaryLine joined(n);
        joined.insert(joined.end(), e.begin() + 1, e.end());
        e.swap(joined);
        return true;
    }
    if (SamePlan(n.front(), e.front())) {
        // The piece runs backwards into the line's start; its own start is
        // the line's first point.
        TBoundaryLine joined(n.rbegin(), std::prev(n.rend()));
        joined.insert(joined.end(), e.begin(), e.end());
        e.swap(joined);
        return true;
    }
    return false;
}

}  // namespace

size_t CBoundaryLines::TPlanHash::operator()(const TPlanKey& k) const {
    // Equal coordinates must hash alike: -0 and +0 compare equal.
    const uint64_t x = std::bit_cast<uint64_t>(k.x == 0.0 ? 0.0 : k.x);
    const uint64_t y = std::bit_cast<uint64_t>(k.y == 0.0 ? 0.0 : k.y);
    return static_cast<size_t>(x * 0x9E3779B97F4A7C15ull ^ (y + 0x632BE59BD9B4E019ull + (x << 6) + (x >> 2)));
}

void CBoundaryLines::Index(size_t slot) {
    const TBoundaryLine& l = slots_[slot];
    ends_[TPlanKey{l.front().x, l.front().y}].insert(slot);
    ends_[TPlanKey{l.back().x, l.back().y}].insert(slot);
}

void CBoundaryLines::Unindex(size_t slot) {
    const TBoundaryLine& l = slots_[slot];
    for (const TPlanKey key : {TPlanKey{l.front().x, l.front().y}, TPlanKey{l.back().x, l.back().y}}) {
        const auto it = ends_.find(key);
        if (it == ends_.end()) continue;
        it->second.erase(slot);
        if (it->second.empty()) ends_.erase(it);
    }
}

std::ptrdiff_t CBoundaryLines::FirstLineAt(const TPlanKey& a, const TPlanKey& b, std::ptrdiff_t skip) const {
    std::ptrdiff_t best = -1;
    for (const TPlanKey& key : {a, b}) {
        const auto it = ends_.find(key);
        if (it == ends_.end()) continue;
        // The lowest slot there other than `skip`.
        for (size_t slot : it->second) {
            if (static_cast<std::ptrdiff_t>(slot) == skip) continue;
            if (best < 0 || static_cast<std::ptrdiff_t>(slot) < best) best = static_cast<std::ptrdiff_t>(slot);
            break;
        }
    }
    return best;
}

void CBoundaryLines::AddBoundaryPiece(const TBoundaryLine& piece) {
    if (piece.empty()) return;
    const std::ptrdiff_t hit = FirstLineAt({piece.front().x, piece.front().y}, {piece.back().x, piece.back().y}, -1);
    if (hit < 0) {
        slots_.push_back(piece);
        Index(slots_.size() - 1);
        return;
    }
    const auto i = static_cast<size_t>(hit);
    Unindex(i);
    Join(slots_[i], piece);
    Index(i);
    // The grown line meets at most one more line.
    const TBoundaryLine& grown = slots_[i];
    const std::ptrdiff_t other =
        FirstLineAt({grown.front().x, grown.front().y}, {grown.back().x, grown.back().y}, hit);
    if (other < 0) return;
    const auto k = static_cast<size_t>(other);
    Unindex(i);
    Unindex(k);
    Join(slots_[k], slots_[i]);
    Index(k);
    TBoundaryLine().swap(slots_[i]);
}

std::vector<TBoundaryLine*> CBoundaryLines::Lines() {
    std::vector<TBoundaryLine*> out;
    for (TBoundaryLine& l : slots_)
        if (!l.empty()) out.push_back(&l);
    return out;
}
