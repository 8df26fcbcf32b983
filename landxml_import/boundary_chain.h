// Chaining of surface boundary pieces: pieces that share an end point in plan
// (x and y equal, z ignored) are joined into longer lines before the lines
// reach the document.
#pragma once
#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <vector>

#include "vesk/geom.h"

using TBoundaryLine = std::vector<vesk::geom::PNT_3D>;

// An ordered list of lines that pieces are added to.
//
// AddBoundaryPiece: the first line of the list sharing an end point with the
// piece takes it in (tests, in order: piece start = line end, piece end =
// line end, piece end = line start, piece start = line start); the grown
// line is then tried once against the other lines, and the first that shares
// an end point with it is merged with it (the union takes that other line's
// place, the grown line leaves the list). A piece that joins nothing becomes
// a new line at the end of the list; an empty piece is ignored.
//
// Lines are found through an index of their end points, so adding stays
// cheap however many lines the list holds.
class CBoundaryLines {
public:
    void AddBoundaryPiece(const TBoundaryLine& piece);
    // The lines in list order.
    std::vector<TBoundaryLine*> Lines();

private:
    struct TPlanKey {
        double x, y;
        bool operator==(const TPlanKey& o) const { return x == o.x && y == o.y; }
    };
    struct TPlanHash {
        size_t operator()(const TPlanKey& k) const;
    };

    // The first live line other than `skip` with an end at a or b.
    std::ptrdiff_t FirstLineAt(const TPlanKey& a, const TPlanKey& b, std::ptrdiff_t skip) const;
    void Index(size_t slot);
    void Unindex(size_t slot);

    // A line keeps its slot while it grows; a merged-away line leaves its
    // slot empty. List order is slot order.
    std::vector<TBoundaryLine> slots_;
    // The slots of the lines ending at each plan point (a closed line once).
    std::unordered_map<TPlanKey, std::set<size_t>, TPlanHash> ends_;
};
