// Straights and arcs, and what all element kinds share: types, the right-hand
// normal, reversal, copies and equality, and survival of bad input.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "host/plani_elem.h"
#include "test_plani_ref.h"

namespace {

using plani_ref::Real;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Real kPi = 3.141592653589793238462643383279502884L;

TEST(PlaniStraight, ExactGeometry) {
    vesk::RefPtr<CPlaniElem> e(new CRettifiloPlaniElem(100.0, PNT_2D(10, 20), VECTOR_2D(3, 4), 50.0));
    EXPECT_EQ(e->GetType(), CPlaniElem::RETTIFILO);
    EXPECT_EQ(e->GetProg(), 100.0);
    EXPECT_EQ(e->GetLength(), 50.0);
    EXPECT_DOUBLE_EQ(e->GetStartTg().x, 0.6);
    EXPECT_DOUBLE_EQ(e->GetStartTg().y, 0.8);
    PNT_2D p;
    e->GetPos(5.0, p);
    EXPECT_DOUBLE_EQ(p.x, 13.0);
    EXPECT_DOUBLE_EQ(p.y, 24.0);
    // Right of a heading (0.6, 0.8) is (0.8, −0.6).
    e->GetPos(5.0, 2.0, p);
    EXPECT_DOUBLE_EQ(p.x, 14.6);
    EXPECT_DOUBLE_EQ(p.y, 22.8);
    VECTOR_2D n;
    e->GetPerp(17.0, n);
    EXPECT_DOUBLE_EQ(n.x, 0.8);
    EXPECT_DOUBLE_EQ(n.y, -0.6);
    EXPECT_DOUBLE_EQ(e->GetEndPnt().x, 40.0);
    EXPECT_DOUBLE_EQ(e->GetEndPnt().y, 60.0);
    EXPECT_EQ(e->GetRad(3.0), kInf);
    EXPECT_EQ(e->GetMinRad(), kInf);
    EXPECT_FALSE(e->IsLeftTurn());
    EXPECT_EQ(e->GetAngleDev(), 0.0);
    // Beyond the ends the line continues.
    e->GetPos(-10.0, p);
    EXPECT_DOUBLE_EQ(p.x, 4.0);
    EXPECT_DOUBLE_EQ(p.y, 12.0);
}

TEST(PlaniStraight, ReverseAndEquality) {
    vesk::RefPtr<CPlaniElem> e(new CRettifiloPlaniElem(7.0, PNT_2D(10, 20), VECTOR_2D(0, -2), 30.0));
    vesk::RefPtr<CPlaniElem> r(e->Clone());
    EXPECT_TRUE(r->Equals(e.get()));
    r->Reverse();
    EXPECT_FALSE(r->Equals(e.get()));
    EXPECT_EQ(r->GetProg(), 7.0);
    EXPECT_EQ(r->GetStartPnt(), PNT_2D(10, -10));
    EXPECT_EQ(r->GetStartTg(), VECTOR_2D(0, 1));
    EXPECT_EQ(r->GetEndPnt(), PNT_2D(10, 20));
    r->Reverse();
    EXPECT_TRUE(r->Equals(e.get()));
    vesk::RefPtr<CPlaniElem> longer(new CRettifiloPlaniElem(7.0, PNT_2D(10, 20), VECTOR_2D(0, -2), 30.5));
    EXPECT_FALSE(longer->Equals(e.get()));
    vesk::RefPtr<CPlaniElem> moved(new CRettifiloPlaniElem(7.5, PNT_2D(10, 20), VECTOR_2D(0, -2), 30.0));
    EXPECT_FALSE(moved->Equals(e.get()));
    // Within the chainage tolerance counts as equal.
    vesk::RefPtr<CPlaniElem> near(new CRettifiloPlaniElem(7.0, PNT_2D(10, 20), VECTOR_2D(0, -2), 30.0 + 1e-14));
    EXPECT_TRUE(near->Equals(e.get()));
    EXPECT_FALSE(e->Equals(nullptr));
    EXPECT_TRUE(e->Equals(e.get()));
}

// The arc from its definition: centre R to the inner side, points turned
// about it by s/R.
struct ArcRef {
    Real cx, cy, r, a0, sign;
    ArcRef(const PNT_2D& start, const VECTOR_2D& tg, Real radius, bool ccw) : r(radius), sign(ccw ? 1 : -1) {
        const Real len = std::hypot(Real(tg.x), Real(tg.y));
        const Real lx = -tg.y / len * sign;
        const Real ly = tg.x / len * sign;
        cx = start.x + lx * radius;
        cy = start.y + ly * radius;
        a0 = std::atan2(start.y - cy, start.x - cx);
    }
    plani_ref::Cplx At(Real s, Real off = 0) const {
        const Real a = a0 + sign * s / r;
        const Real rr = r + sign * off;  // right is outside for a left turn
        return {cx + rr * std::cos(a), cy + rr * std::sin(a)};
    }
    Real Dir(Real s) const { return a0 + sign * s / r + sign * kPi / 2; }
};

TEST(PlaniArc, MatchesClosedForm) {
    for (bool ccw : {true, false}) {
        for (double radius : {0.35, 125.0, 2.5e5}) {
            const PNT_2D start(-3456.75, 876.5);
            const VECTOR_2D tg(-0.28, 0.96);
            const double angle = 2000.0 / radius > 6.0 ? 6.0 : 2000.0 / radius;
            vesk::RefPtr<CArcPlaniElem> e(new CArcPlaniElem(0.0, start, tg, radius, angle, ccw));
            const ArcRef ref(start, tg, radius, ccw);
            EXPECT_EQ(e->GetType(), CPlaniElem::ARCO);
            EXPECT_EQ(e->IsLeftTurn(), ccw);
            EXPECT_EQ(e->GetAngle(), angle);
            EXPECT_EQ(e->GetRadius(), radius);
            EXPECT_EQ(e->GetLength(), radius * angle);
            EXPECT_EQ(e->GetRad(1.0), radius);
            EXPECT_EQ(e->GetMinRad(), radius);
            EXPECT_EQ(e->GetAngleDev(), angle);
            EXPECT_NEAR(e->GetCenter().x, static_cast<double>(ref.cx), 1e-9);
            EXPECT_NEAR(e->GetCenter().y, static_cast<double>(ref.cy), 1e-9);
            const double L = e->GetLength();
            for (int i = 0; i <= 20; ++i) {
                const double s = L * i / 20;
                PNT_2D p;
                e->GetPos(s, p);
                EXPECT_LT(plani_ref::Dist(p, ref.At(s)), 1e-9) << radius << " " << s;
                e->GetPos(s, -4.5, p);
                EXPECT_LT(plani_ref::Dist(p, ref.At(s, -4.5)), 1e-9) << radius << " " << s;
                VECTOR_2D t;
                e->GetTg(s, t);
                EXPECT_LT(plani_ref::AngleBetween(t, ref.Dir(s)), 1e-12);
            }
            EXPECT_LT(plani_ref::Dist(e->GetEndPnt(), ref.At(L)), 1e-9);
        }
    }
}

TEST(PlaniArc, FullCircleReturnsToStart) {
    const double twoPi = static_cast<double>(2 * kPi);
    vesk::RefPtr<CPlaniElem> e(new CArcPlaniElem(0.0, PNT_2D(100, 200), VECTOR_2D(1, 0), 40.0, twoPi, true));
    EXPECT_LT(vesk::geom::dist(e->GetEndPnt(), PNT_2D(100, 200)), 1e-12);
    PNT_2D half;
    e->GetPos(e->GetLength() / 2, half);
    EXPECT_NEAR(half.x, 100.0, 1e-12);
    EXPECT_NEAR(half.y, 280.0, 1e-12);
}

TEST(PlaniArc, ReverseAndClone) {
    for (bool ccw : {true, false}) {
        vesk::RefPtr<CPlaniElem> e(new CArcPlaniElem(3.0, PNT_2D(5, 6), VECTOR_2D(1, 2), 80.0, 1.3, ccw));
        vesk::RefPtr<CPlaniElem> r(e->Clone());
        EXPECT_EQ(r->GetRefCount(), 1);
        EXPECT_TRUE(r->Equals(e.get()));
        r->Reverse();
        EXPECT_EQ(r->IsLeftTurn(), !ccw);
        EXPECT_EQ(r->GetProg(), 3.0);
        EXPECT_EQ(r->GetStartPnt(), e->GetEndPnt());
        VECTOR_2D te;
        e->GetTg(e->GetLength(), te);
        EXPECT_EQ(r->GetStartTg(), -te);
        EXPECT_LT(vesk::geom::dist(r->GetEndPnt(), e->GetStartPnt()), 1e-12);
        const double L = e->GetLength();
        for (double s : {0.0, 20.0, L}) {
            PNT_2D a;
            PNT_2D b;
            e->GetPos(s, 1.5, a);
            r->GetPos(L - s, -1.5, b);
            EXPECT_LT(vesk::geom::dist(a, b), 1e-12);
        }
        r->Reverse();
        EXPECT_TRUE(r->Equals(e.get()));
        vesk::RefPtr<CPlaniElem> other(new CArcPlaniElem(3.0, PNT_2D(5, 6), VECTOR_2D(1, 2), 80.0, 1.3, !ccw));
        EXPECT_FALSE(other->Equals(e.get()));
        vesk::RefPtr<CPlaniElem> wider(new CArcPlaniElem(3.0, PNT_2D(5, 6), VECTOR_2D(1, 2), 80.5, 1.3, ccw));
        EXPECT_FALSE(wider->Equals(e.get()));
        // Empty arcs: one without a radius differs from one without a sweep.
        vesk::RefPtr<CPlaniElem> noRadius(new CArcPlaniElem(3.0, PNT_2D(5, 6), VECTOR_2D(1, 2), -1.0, 1.3, ccw));
        vesk::RefPtr<CPlaniElem> noSweep(new CArcPlaniElem(3.0, PNT_2D(5, 6), VECTOR_2D(1, 2), 80.0, 0.0, ccw));
        EXPECT_FALSE(noRadius->Equals(noSweep.get()));
        EXPECT_FALSE(noSweep->Equals(noRadius.get()));
        vesk::RefPtr<CPlaniElem> noRadius2(noRadius->Clone());
        EXPECT_TRUE(noRadius2->Equals(noRadius.get()));
    }
}

TEST(PlaniArc, SetStartTgTurnsAboutTheStart) {
    vesk::RefPtr<CPlaniElem> e(new CArcPlaniElem(0.0, PNT_2D(5, 6), VECTOR_2D(1, 0), 30.0, 2.0, false));
    PNT_2D before;
    e->GetPos(25.0, before);
    e->SetStartTg(VECTOR_2D(0, -3));  // turned by −90°
    EXPECT_EQ(e->GetStartTg(), VECTOR_2D(0, -1));
    PNT_2D after;
    e->GetPos(25.0, after);
    EXPECT_NEAR(after.x - 5, before.y - 6, 1e-12);
    EXPECT_NEAR(after.y - 6, -(before.x - 5), 1e-12);
}

TEST(PlaniElem, TypesDiffer) {
    vesk::RefPtr<CPlaniElem> s(new CRettifiloPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 10));
    vesk::RefPtr<CPlaniElem> a(new CArcPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 10, 1, true));
    vesk::RefPtr<CPlaniElem> c(new CClotPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1, 10, 10, true, true));
    vesk::RefPtr<CPlaniElem> k(new CClotContPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1, 10, 20, 10, true));
    EXPECT_EQ(static_cast<int>(s->GetType()), 0);
    EXPECT_EQ(static_cast<int>(a->GetType()), 1);
    EXPECT_EQ(static_cast<int>(c->GetType()), 2);
    EXPECT_EQ(static_cast<int>(k->GetType()), 3);
    const std::vector<CPlaniElem*> all{s.get(), a.get(), c.get(), k.get()};
    for (size_t i = 0; i < all.size(); ++i) {
        for (size_t j = 0; j < all.size(); ++j) EXPECT_EQ(all[i]->Equals(all[j]), i == j) << i << " " << j;
    }
}

TEST(PlaniElem, PerpIsTheRightHandNormal) {
    vesk::RefPtr<CPlaniElem> c(new CClotPlaniElem(0, PNT_2D(1, 1), VECTOR_2D(0, 1), 1, 30, 20, false, false));
    for (double s : {0.0, 11.0, c->GetLength()}) {
        VECTOR_2D t;
        VECTOR_2D n;
        c->GetTg(s, t);
        c->GetPerp(s, n);
        EXPECT_DOUBLE_EQ(n.x, t.y);
        EXPECT_DOUBLE_EQ(n.y, -t.x);
        PNT_2D a;
        PNT_2D b;
        c->GetPos(s, a);
        c->GetPos(s, 3.0, b);
        EXPECT_NEAR(b.x, a.x + 3 * n.x, 1e-12);
        EXPECT_NEAR(b.y, a.y + 3 * n.y, 1e-12);
    }
}

// Bad input: never a crash or hang; each kind ends as documented.
TEST(PlaniElem, BadInputGivesEmptyElements) {
    const PNT_2D o(1, 2);
    std::vector<CPlaniElem*> made;
    for (double bad : {0.0, -3.0, kNaN, kInf, -kInf}) {
        made.push_back(new CRettifiloPlaniElem(0, o, VECTOR_2D(1, 0), bad < 0 || !std::isfinite(bad) ? bad : -1.0));
        made.push_back(new CArcPlaniElem(0, o, VECTOR_2D(1, 0), bad, 1.0, true));
        made.push_back(new CClotPlaniElem(0, o, VECTOR_2D(1, 0), 1, bad, 50.0, true, true));
        made.push_back(new CClotPlaniElem(0, o, VECTOR_2D(1, 0), 1, 50.0, bad, false, false));
        made.push_back(new CClotContPlaniElem(0, o, VECTOR_2D(1, 0), 1, bad, 50.0, 80.0, true));
        made.push_back(new CClotContPlaniElem(0, o, VECTOR_2D(1, 0), 1, 50.0, bad == kInf ? kNaN : bad, 80.0, true));
    }
    // A bad sweep keeps its usable radius.
    for (double bad : {0.0, -3.0, kNaN, kInf, -kInf}) {
        vesk::RefPtr<CPlaniElem> a(new CArcPlaniElem(0, o, VECTOR_2D(1, 0), 50.0, bad, false));
        EXPECT_EQ(a->GetLength(), 0.0);
        EXPECT_EQ(a->GetAngleDev(), 0.0);
        EXPECT_EQ(a->GetRad(0.0), 50.0);
        EXPECT_EQ(a->GetEndPnt(), o);
        double prog = -1;
        double off = 0;
        EXPECT_TRUE(a->GetProgAndOffset(PNT_2D(1, -3), prog, off));
        EXPECT_EQ(prog, 0.0);
        EXPECT_DOUBLE_EQ(off, 5.0);
    }
    for (CPlaniElem* e : made) {
        EXPECT_EQ(e->GetLength(), 0.0) << e->GetType();
        EXPECT_EQ(e->GetEndPnt(), o) << e->GetType();
        EXPECT_EQ(e->GetAngleDev(), 0.0);
        EXPECT_EQ(e->GetMinRad(), kInf) << e->GetType();
        EXPECT_EQ(e->GetRad(0.0), kInf) << e->GetType();
        VECTOR_2D t;
        e->GetTg(0.0, t);
        EXPECT_EQ(t, VECTOR_2D(1, 0));
        double prog = -1;
        double off = 0;
        EXPECT_TRUE(e->GetProgAndOffset(PNT_2D(1, -3), prog, off));
        EXPECT_EQ(prog, 0.0);
        EXPECT_DOUBLE_EQ(off, 5.0);
        e->Reverse();
        EXPECT_EQ(e->GetStartPnt(), o);
        e->SubReference();
    }
}

TEST(PlaniElem, BadDirectionsAndArguments) {
    for (VECTOR_2D d : {VECTOR_2D(0, 0), VECTOR_2D(kNaN, 1), VECTOR_2D(kInf, 0)}) {
        vesk::RefPtr<CPlaniElem> e(new CRettifiloPlaniElem(0, PNT_2D(), d, 5));
        EXPECT_EQ(e->GetStartTg(), VECTOR_2D(1, 0));
        e->SetStartTg(d);
        EXPECT_EQ(e->GetStartTg(), VECTOR_2D(1, 0));
    }
    // The undefined value of the importers (1.7e200) does not overflow.
    vesk::RefPtr<CPlaniElem> u(new CRettifiloPlaniElem(0, PNT_2D(), VECTOR_2D(1.7e200, 1.7e200), 5));
    EXPECT_DOUBLE_EQ(u->GetStartTg().x, std::sqrt(0.5));
    vesk::RefPtr<CPlaniElem> tiny(new CRettifiloPlaniElem(0, PNT_2D(), VECTOR_2D(1e-320, -1e-320), 5));
    EXPECT_DOUBLE_EQ(tiny->GetStartTg().y, -std::sqrt(0.5));
    // Continuity clothoid between equal radii: no length, that radius.
    vesk::RefPtr<CPlaniElem> eq(new CClotContPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1, 50, 80, 80, true));
    EXPECT_EQ(eq->GetLength(), 0.0);
    EXPECT_EQ(eq->GetRad(0), 80.0);
    // Non-finite distances give non-finite answers, not a hang.
    vesk::RefPtr<CPlaniElem> c(new CClotPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1, 10, 1, true, true));
    for (double s : {kNaN, kInf, -kInf, 1e300}) {
        PNT_2D p;
        c->GetPos(s, p);
        VECTOR_2D t;
        c->GetTg(s, t);
        c->GetPos(s, 1.0, p);
        EXPECT_FALSE(std::isnan(c->GetRad(s)));
    }
    double prog = 0;
    double off = 0;
    EXPECT_FALSE(c->GetProgAndOffset(PNT_2D(kNaN, 0), prog, off));
    EXPECT_FALSE(c->GetProgAndOffset(PNT_2D(kInf, kInf), prog, off));
    // Extreme but finite data stays finite where the geometry is.
    vesk::RefPtr<CPlaniElem> huge(new CClotPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1, 1e150, 1e-150, false, false));
    EXPECT_EQ(huge->GetLength(), 0.0);  // A²/R overflows
    vesk::RefPtr<CPlaniElem> longest(new CRettifiloPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), 1.7e200));
    EXPECT_EQ(longest->GetEndPnt().x, 1.7e200);
}

}  // namespace
