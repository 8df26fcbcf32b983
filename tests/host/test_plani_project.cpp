// Projection of points onto elements (GetProgAndOffset) and the chain lookup
// by chainage (GetElemAtProg).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "host/plani_elem.h"
#include "test_plani_ref.h"

namespace {

using plani_ref::Real;

constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<vesk::RefPtr<CPlaniElem>> SampleElements() {
    const PNT_2D o(812.25, -95.5);
    const VECTOR_2D d(0.8, 0.6);
    std::vector<vesk::RefPtr<CPlaniElem>> v;
    v.emplace_back(new CRettifiloPlaniElem(0, o, d, 120.0));
    for (bool ccw : {true, false}) {
        v.emplace_back(new CArcPlaniElem(0, o, d, 90.0, 2.5, ccw));
        v.emplace_back(new CArcPlaniElem(0, o, d, 90.0, 6.2, ccw));
        v.emplace_back(new CClotPlaniElem(0, o, d, 1.0, 150.0, 100.0, ccw, true));
        v.emplace_back(new CClotPlaniElem(0, o, d, 1.0, 150.0, 100.0, ccw, false));
        v.emplace_back(new CClotPlaniElem(0, o, d, 1.0, 60.0, 20.0, ccw, true));  // 4.5 rad
        v.emplace_back(new CClotContPlaniElem(0, o, d, 1.0, 200.0, 300.0, 120.0, ccw));
        v.emplace_back(new CClotContPlaniElem(0, o, d, 1.0, 200.0, 120.0, 300.0, ccw));
    }
    return v;
}

// A point put at (s, offset) comes back as (s, offset), for offsets smaller
// than the radius on the inner side.
TEST(PlaniProject, RoundTrips) {
    for (const auto& e : SampleElements()) {
        const double L = e->GetLength();
        for (int i = 0; i <= 16; ++i) {
            const double s = L * i / 16;
            for (double off : {0.0, 4.0, -4.0, 15.5, -15.5}) {
                PNT_2D p;
                e->GetPos(s, off, p);
                double prog = -1;
                double offset = 0;
                ASSERT_TRUE(e->GetProgAndOffset(p, prog, offset)) << e->GetType() << " s=" << s << " off=" << off;
                EXPECT_NEAR(prog, s, 1e-9) << e->GetType() << " off=" << off;
                EXPECT_NEAR(offset, off, 1e-9) << e->GetType() << " s=" << s;
                EXPECT_GE(prog, 0.0);
                EXPECT_LE(prog, L);
            }
        }
    }
}

// Points before the start or past the end, off the element's normals.
// Past the end of a spiral that has turned by more than π the point has a
// true foot on the element's earlier part, which is then the answer (on a
// circle the only foot stays beyond the end).
TEST(PlaniProject, OutsideGivesFalse) {
    for (const auto& e : SampleElements()) {
        const double L = e->GetLength();
        VECTOR_2D t0;
        VECTOR_2D t1;
        e->GetTg(0.0, t0);
        e->GetTg(L, t1);
        const PNT_2D before = e->GetStartPnt() + t0 * -5.0;
        const PNT_2D after = e->GetEndPnt() + t1 * 5.0;
        double prog = 0;
        double offset = 0;
        EXPECT_FALSE(e->GetProgAndOffset(before, prog, offset)) << e->GetType();
        if (e->GetType() == CPlaniElem::ARCO || e->GetAngleDev() < std::numbers::pi) {
            EXPECT_FALSE(e->GetProgAndOffset(after, prog, offset)) << e->GetType();
            continue;
        }
        ASSERT_TRUE(e->GetProgAndOffset(after, prog, offset)) << e->GetType();
        EXPECT_GT(prog, 0.0);
        EXPECT_LT(prog, L);
        PNT_2D foot;
        VECTOR_2D t;
        e->GetPos(prog, foot);
        e->GetTg(prog, t);
        const VECTOR_2D d = after - foot;
        EXPECT_NEAR(d.x * t.x + d.y * t.y, 0.0, 1e-9);
        EXPECT_NEAR(std::hypot(d.x, d.y), std::fabs(offset), 1e-9);
    }
}

// Feet just beyond an end count when within the chainage tolerance.
TEST(PlaniProject, EndsWithinTolerance) {
    for (const auto& e : SampleElements()) {
        const double L = e->GetLength();
        double prog = -1;
        double offset = 1;
        ASSERT_TRUE(e->GetProgAndOffset(e->GetStartPnt(), prog, offset)) << e->GetType();
        EXPECT_EQ(prog, 0.0);
        EXPECT_NEAR(offset, 0.0, 1e-12);
        ASSERT_TRUE(e->GetProgAndOffset(e->GetEndPnt(), prog, offset)) << e->GetType();
        EXPECT_NEAR(prog, L, 1e-9);
        EXPECT_NEAR(offset, 0.0, 1e-9);
        // 1e-6 m beyond the ends on the axis' continuation: outside.
        PNT_2D p;
        e->GetPos(-1e-6, 2.0, p);
        EXPECT_FALSE(e->GetProgAndOffset(p, prog, offset)) << e->GetType();
        e->GetPos(L + 1e-6, 2.0, p);
        EXPECT_FALSE(e->GetProgAndOffset(p, prog, offset)) << e->GetType();
    }
    // A straight near the origin resolves the tolerance itself.
    vesk::RefPtr<CPlaniElem> s(new CRettifiloPlaniElem(0, PNT_2D(0, 0), VECTOR_2D(1, 0), 10.0));
    double prog = -1;
    double offset = 0;
    EXPECT_TRUE(s->GetProgAndOffset(PNT_2D(-5e-13, 3.0), prog, offset));
    EXPECT_EQ(prog, 0.0);
    EXPECT_EQ(offset, -3.0);
    EXPECT_FALSE(s->GetProgAndOffset(PNT_2D(-2e-12, 3.0), prog, offset));
    EXPECT_TRUE(s->GetProgAndOffset(PNT_2D(10.0 + 1e-11, -1.0), prog, offset));
    EXPECT_EQ(prog, 10.0);
    EXPECT_FALSE(s->GetProgAndOffset(PNT_2D(10.0 + 1e-10, -1.0), prog, offset));
}

// On a spiral that winds round many times a point has many feet; the
// nearest one is given. Checked against the smallest distance to a dense
// sampling of the axis (which can only overestimate the true minimum).
TEST(PlaniProject, WindingSpiralGivesTheNearestFoot) {
    const PNT_2D start(50, 60);
    vesk::RefPtr<CPlaniElem> e(new CClotPlaniElem(0, start, VECTOR_2D(0, 1), 1.0, 20.0, 1.0, true, true));
    ASSERT_GT(e->GetAngleDev(), 150.0);
    const double L = e->GetLength();
    plani_ref::Curve cv;
    cv.x0 = start.x;
    cv.y0 = start.y;
    cv.th0 = std::numbers::pi_v<Real> / 2;
    cv.dk = 1 / Real(400);
    std::vector<Real> at;
    for (int i = 0; i <= 40000; ++i) at.push_back(Real(L) * i / 40000);
    const std::vector<plani_ref::Cplx> dense = plani_ref::Points(cv, at);
    int interior = 0;
    for (double s : {15.0, 60.0, 120.0, 250.0, 380.0, 399.0}) {
        const double r = e->GetRad(s);
        for (double off : {0.02 * r, -0.3 * r, 0.3 * r, 2.5, -4.0}) {
            PNT_2D p;
            e->GetPos(s, off, p);
            Real nearest = std::numeric_limits<Real>::infinity();
            size_t at_i = 0;
            for (size_t i = 0; i < dense.size(); ++i) {
                const Real d = plani_ref::Dist(p, dense[i]);
                if (d < nearest) {
                    nearest = d;
                    at_i = i;
                }
            }
            double prog = 0;
            double offset = 0;
            const bool found = e->GetProgAndOffset(p, prog, offset);
            if (at_i == 0 || at_i + 1 == dense.size()) continue;  // the nearest point may be an end
            ++interior;
            ASSERT_TRUE(found) << s << " " << off;
            EXPECT_LE(std::fabs(offset), static_cast<double>(nearest) + 1e-9) << s << " " << off;
            EXPECT_NEAR(prog, static_cast<double>(at[at_i]), 0.02) << s << " " << off;
        }
    }
    EXPECT_GT(interior, 20);
    // Close to the axis, the point's own station is the answer.
    for (double s : {120.0, 250.0, 399.0}) {
        PNT_2D p;
        e->GetPos(s, 1e-3, p);
        double prog = 0;
        double offset = 0;
        ASSERT_TRUE(e->GetProgAndOffset(p, prog, offset));
        EXPECT_NEAR(prog, s, 1e-9);
        EXPECT_NEAR(offset, 1e-3, 1e-9);
    }
}

// Tight spirals far past the sampling limit still answer, without hanging.
TEST(PlaniProject, VeryTightSpiralAnswers) {
    vesk::RefPtr<CPlaniElem> e(new CClotPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1.0, 2.0, 0.002, false, true));
    ASSERT_GT(e->GetAngleDev(), 4e5);
    PNT_2D p;
    e->GetPos(0.5, 0.01, p);  // early part, still gentle
    double prog = 0;
    double offset = 0;
    ASSERT_TRUE(e->GetProgAndOffset(p, prog, offset));
    EXPECT_NEAR(prog, 0.5, 1e-9);
    EXPECT_NEAR(offset, 0.01, 1e-9);
}

// An element kind that only has the public queries uses the generic search
// of CPlaniElem; on an arc it must agree with the arc's closed form.
class BareArc : public CPlaniElem {
public:
    explicit BareArc(CArcPlaniElem* arc) : CPlaniElem(0, arc->GetStartPnt(), arc->GetStartTg()), arc_(arc) {}
    void Reverse() override {}
    Type GetType() const override { return ARCO; }
    double GetLength() const override { return arc_->GetLength(); }
    void GetPos(double s, PNT_2D& p) const override { arc_->GetPos(s, p); }
    void GetTg(double s, VECTOR_2D& t) const override { arc_->GetTg(s, t); }
    double GetRad(double s) const override { return arc_->GetRad(s); }
    double GetMinRad() const override { return arc_->GetMinRad(); }
    bool IsLeftTurn() const override { return arc_->IsLeftTurn(); }
    CPlaniElem* Clone() const override { return nullptr; }
    double GetAngleDev() const override { return arc_->GetAngleDev(); }

protected:
    bool InternalEquals(const CPlaniElem*) const override { return false; }

private:
    vesk::RefPtr<CArcPlaniElem> arc_;
};

TEST(PlaniProject, GenericSearchAgreesWithClosedForm) {
    for (bool ccw : {true, false}) {
        auto* arc = new CArcPlaniElem(0, PNT_2D(30, 40), VECTOR_2D(1, -1), 75.0, 2.0, ccw);
        vesk::RefPtr<CPlaniElem> bare(new BareArc(arc));
        for (double s : {0.0, 10.0, 80.0, 150.0}) {
            for (double off : {-9.0, 0.0, 22.0}) {
                PNT_2D p;
                arc->GetPos(s, off, p);
                double pa = 0;
                double oa = 0;
                double pb = 0;
                double ob = 0;
                ASSERT_TRUE(arc->GetProgAndOffset(p, pa, oa));
                ASSERT_TRUE(bare->GetProgAndOffset(p, pb, ob));
                EXPECT_NEAR(pa, s, 1e-9);
                EXPECT_NEAR(pb, pa, 1e-9);
                EXPECT_NEAR(ob, oa, 1e-9);
            }
        }
        PNT_2D behind = PNT_2D(30, 40) + VECTOR_2D(-1, 1) * 3.0;
        double prog = 0;
        double offset = 0;
        EXPECT_FALSE(bare->GetProgAndOffset(behind, prog, offset));
    }
}

// A chain with consecutive chainages: 100..150 straight, 150..(150+L) arc,
// then a clothoid.
class ChainTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto* a = new CRettifiloPlaniElem(100.0, PNT_2D(0, 0), VECTOR_2D(1, 0), 50.0);
        auto* b = new CArcPlaniElem(150.0, a->GetEndPnt(), VECTOR_2D(1, 0), 200.0, 0.25, true);
        VECTOR_2D tb;
        b->GetTg(b->GetLength(), tb);
        auto* c = new CClotPlaniElem(150.0 + b->GetLength(), b->GetEndPnt(), tb, 1.0, 150.0, 200.0, true, false);
        elems_ = {a, b, c};
        end_ = c->GetProg() + c->GetLength();
    }
    void TearDown() override {
        for (CPlaniElem* e : elems_) e->SubReference();
    }
    // Index of the element found and the distance into it, or -1.
    int Find(double prog, double* local = nullptr) const {
        CPlaniElem* e = nullptr;
        double d = -1;
        if (!GetElemAtProg(elems_, prog, &e, &d)) return -1;
        if (local) *local = d;
        for (size_t i = 0; i < elems_.size(); ++i) {
            if (elems_[i] == e) return static_cast<int>(i);
        }
        return -2;
    }

    std::vector<CPlaniElem*> elems_;
    double end_ = 0;
};

TEST_F(ChainTest, InsideAndBoundaries) {
    double d = -1;
    EXPECT_EQ(Find(100.0, &d), 0);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(Find(125.5, &d), 0);
    EXPECT_EQ(d, 25.5);
    // A shared end belongs to the next element.
    EXPECT_EQ(Find(150.0, &d), 1);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(Find(std::nextafter(150.0, 0.0), &d), 1);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(Find(149.9999, &d), 0);
    EXPECT_NEAR(d, 49.9999, 1e-12);
    EXPECT_EQ(Find(170.0, &d), 1);
    EXPECT_NEAR(d, 20.0, 1e-12);
    const double c0 = elems_[2]->GetProg();
    EXPECT_EQ(Find(c0, &d), 2);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(Find(end_, &d), 2);
    EXPECT_EQ(d, elems_[2]->GetLength());
}

TEST_F(ChainTest, TolerancesAtTheChainEnds) {
    double d = -1;
    EXPECT_EQ(Find(100.0 - 5e-11, &d), 0);  // tolerance at 100 is 1.01e-10
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(Find(100.0 - 2e-10), -1);
    EXPECT_EQ(Find(-1e9), -1);
    const double tolEnd = 1e-12 + 1e-12 * end_;
    EXPECT_EQ(Find(end_ + 0.5 * tolEnd, &d), 2);
    EXPECT_EQ(d, elems_[2]->GetLength());
    EXPECT_EQ(Find(end_ + 2 * tolEnd), -1);
    EXPECT_EQ(Find(end_ + 1.0), -1);
    EXPECT_EQ(Find(std::nan("")), -1);
    EXPECT_EQ(Find(kInf), -1);
}

TEST(PlaniChain, GapsNullsAndEmptyChains) {
    vesk::RefPtr<CPlaniElem> a(new CRettifiloPlaniElem(0.0, PNT_2D(0, 0), VECTOR_2D(1, 0), 10.0));
    vesk::RefPtr<CPlaniElem> b(new CRettifiloPlaniElem(20.0, PNT_2D(20, 0), VECTOR_2D(1, 0), 10.0));
    const std::vector<CPlaniElem*> chain{a.get(), nullptr, b.get()};
    CPlaniElem* e = nullptr;
    double d = -1;
    EXPECT_TRUE(GetElemAtProg(chain, 10.0, &e, &d));  // the end before the gap
    EXPECT_EQ(e, a.get());
    EXPECT_EQ(d, 10.0);
    EXPECT_FALSE(GetElemAtProg(chain, 15.0, &e, &d));
    EXPECT_TRUE(GetElemAtProg(chain, 25.0, &e, &d));
    EXPECT_EQ(e, b.get());
    EXPECT_EQ(d, 5.0);
    EXPECT_TRUE(GetElemAtProg(chain, 30.0, nullptr, nullptr));
    EXPECT_FALSE(GetElemAtProg({}, 0.0, &e, &d));
    // A single element of length 0 holds its own chainage.
    vesk::RefPtr<CPlaniElem> z(new CRettifiloPlaniElem(5.0, PNT_2D(0, 0), VECTOR_2D(1, 0), 0.0));
    EXPECT_TRUE(GetElemAtProg({z.get()}, 5.0, &e, &d));
    EXPECT_EQ(e, z.get());
    EXPECT_EQ(d, 0.0);
}

}  // namespace
