// Chaining of boundary pieces: each of the four ways a piece meets a line,
// the merge of a grown line with a second line, and what is left alone.
#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "landxml_import/boundary_chain.h"

namespace {

using vesk::geom::PNT_3D;

TBoundaryLine Pts(std::initializer_list<std::initializer_list<double>> xyz) {
    TBoundaryLine out;
    for (const auto& p : xyz) {
        const double* v = p.begin();
        out.push_back(PNT_3D(v[0], v[1], p.size() > 2 ? v[2] : 0.0));
    }
    return out;
}

std::vector<TBoundaryLine> Chain(const std::vector<TBoundaryLine>& pieces) {
    CBoundaryLines lines;
    for (const auto& p : pieces) lines.AddBoundaryPiece(p);
    std::vector<TBoundaryLine> out;
    for (TBoundaryLine* l : lines.Lines()) out.push_back(*l);
    return out;
}

TEST(BoundaryChain, PieceStartingAtALineEndIsAppended) {
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{10, 0}, {10, 10}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {10, 10}})}));
}

TEST(BoundaryChain, ThirdPieceClosesTheLine) {
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{10, 0}, {10, 10}}), Pts({{10, 10}, {0, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {10, 10}, {0, 0}})}));
}

TEST(BoundaryChain, PieceEndingAtALineEndIsAppendedReversed) {
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{20, 5}, {15, 5}, {10, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {15, 5}, {20, 5}})}));
}

TEST(BoundaryChain, PieceEndingAtALineStartGoesInFront) {
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{-5, 5}, {-1, 1}, {0, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{-5, 5}, {-1, 1}, {0, 0}, {10, 0}})}));
}

TEST(BoundaryChain, PieceStartingAtALineStartGoesInFrontReversed) {
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{0, 0}, {-1, 1}, {-5, 5}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{-5, 5}, {-1, 1}, {0, 0}, {10, 0}})}));
}

TEST(BoundaryChain, EndTestsComeInTheirOrder) {
    // The piece's start meets the line's end and its end meets the line's
    // start: the first test wins and the piece is appended.
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{10, 0}, {5, 5}, {0, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {5, 5}, {0, 0}})}));
}

TEST(BoundaryChain, OnlyPlanCoordinatesDecide) {
    // Different elevations still join; the line keeps the first piece's
    // point at the joint.
    const auto joined = Chain({Pts({{0, 0, 1}, {10, 0, 2}}), Pts({{10, 0, 9}, {10, 10, 3}})});
    EXPECT_EQ(joined, (std::vector<TBoundaryLine>{Pts({{0, 0, 1}, {10, 0, 2}, {10, 10, 3}})}));
    // Any difference in plan keeps pieces apart.
    const auto apart = Chain({Pts({{0, 0}, {10, 0}}), Pts({{10 + 1e-12, 0}, {10, 10}})});
    EXPECT_EQ(apart.size(), 2u);
}

TEST(BoundaryChain, GrownLineMergesWithTheFirstLineItMeets) {
    // A and C are apart; B joins A's end, and the grown A meets C's start:
    // the union takes C's place and A leaves the list.
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{50, 50}, {60, 60}}), Pts({{20, 0}, {30, 0}}),
                              Pts({{10, 0}, {20, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{50, 50}, {60, 60}}),
                                                 Pts({{0, 0}, {10, 0}, {20, 0}, {30, 0}})}));
}

TEST(BoundaryChain, BridgingPieceJoinsTheFirstLineThenMergesTheOther) {
    // The third piece extends C at once (C = 20..40); B then joins A
    // (A = 0..20) and the grown A merges into C's place.
    const auto lines =
        Chain({Pts({{0, 0}, {10, 0}}), Pts({{20, 0}, {30, 0}}), Pts({{30, 0}, {40, 0}}), Pts({{10, 0}, {20, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}})}));
    // A line that meets neither end of the grown line keeps its place.
    const auto three = Chain({Pts({{0, 0}, {10, 0}}), Pts({{20, 0}, {30, 0}}), Pts({{-10, 0}, {-20, 0}}),
                              Pts({{10, 0}, {20, 0}})});
    EXPECT_EQ(three, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {20, 0}, {30, 0}}),
                                                 Pts({{-10, 0}, {-20, 0}})}));
}

TEST(BoundaryChain, FourSidesChainIntoOneClosedRing) {
    // A and C are opposite sides; B bridges them, D closes the ring.
    const auto lines = Chain({Pts({{0, 0}, {10, 0}}), Pts({{10, 10}, {0, 10}}), Pts({{10, 0}, {10, 10}}),
                              Pts({{0, 10}, {0, 0}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}})}));
}

TEST(BoundaryChain, PieceThatMeetsNothingIsANewLineAndEmptyPiecesAreIgnored) {
    const auto lines = Chain({Pts({{0, 0}, {1, 0}}), TBoundaryLine{}, Pts({{5, 5}, {6, 6}})});
    EXPECT_EQ(lines, (std::vector<TBoundaryLine>{Pts({{0, 0}, {1, 0}}), Pts({{5, 5}, {6, 6}})}));
}

// The rule walked literally over a plain list, for comparison.
namespace reference {

bool SamePlan(const PNT_3D& a, const PNT_3D& b) { return a.x == b.x && a.y == b.y; }

bool Join(TBoundaryLine& e, const TBoundaryLine& n) {
    TBoundaryLine joined;
    if (SamePlan(n.front(), e.back())) {
        for (size_t k = 1; k < n.size(); ++k) e.push_back(n[k]);
    } else if (SamePlan(n.back(), e.back())) {
        for (size_t k = n.size() - 1; k-- > 0;) e.push_back(n[k]);
    } else if (SamePlan(n.back(), e.front())) {
        joined = n;
        for (size_t k = 1; k < e.size(); ++k) joined.push_back(e[k]);
        e = joined;
    } else if (SamePlan(n.front(), e.front())) {
        for (size_t k = n.size() - 1; k >= 1; --k) joined.push_back(n[k]);
        for (const PNT_3D& p : e) joined.push_back(p);
        e = joined;
    } else {
        return false;
    }
    return true;
}

void Add(const TBoundaryLine& n, std::vector<TBoundaryLine>& lines) {
    if (n.empty()) return;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (!Join(lines[i], n)) continue;
        for (size_t k = 0; k < lines.size(); ++k) {
            if (k != i && Join(lines[k], lines[i])) {
                lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        }
        return;
    }
    lines.push_back(n);
}

}  // namespace reference

TEST(BoundaryChain, SameLinesAsTheRuleWalkedOverAPlainList) {
    // Pieces between the points of a small grid meet often, in every way.
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> coord(0, 3), len(0, 3), zs(0, 9), count(1, 40);
    for (int run = 0; run < 3000; ++run) {
        std::vector<TBoundaryLine> pieces(static_cast<size_t>(count(rng)));
        for (auto& p : pieces) {
            const int n = len(rng);
            for (int k = 0; k < n; ++k) p.push_back(PNT_3D(coord(rng), coord(rng), zs(rng)));
        }
        std::vector<TBoundaryLine> expected;
        for (const auto& p : pieces) reference::Add(p, expected);
        ASSERT_EQ(Chain(pieces), expected) << "run " << run;
    }
}

}  // namespace
