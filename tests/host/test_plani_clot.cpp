// Clothoid elements against an independent numerical integration of their
// axis: positions within 1e-9 m and tangents within 1e-12 rad, for both
// turning senses, entrance and exit, continuity clothoids in both radius
// orders, elements up to 2 km, and parameters from very tight (tens of
// thousands of radians of turning) to very flat.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "host/plani_elem.h"
#include "test_plani_ref.h"

namespace {

using plani_ref::Cplx;
using plani_ref::Real;

constexpr double kPosTol = 1e-9;
constexpr double kTgTol = 1e-12;
constexpr double kInf = std::numeric_limits<double>::infinity();

struct ClotCase {
    std::string name;
    bool continuity;
    double A;
    double R1;  // R for CClotPlaniElem
    double R2;  // unused for CClotPlaniElem
    bool ccw;
    bool entrance;
};

std::ostream& operator<<(std::ostream& os, const ClotCase& c) { return os << c.name; }

const PNT_2D kStart(2345.5, -1234.25);
const VECTOR_2D kDir(0.6, -0.8);

CPlaniElem* Make(const ClotCase& c, const PNT_2D& start = kStart, const VECTOR_2D& dir = kDir) {
    if (c.continuity) return new CClotContPlaniElem(12.5, start, dir, 1.0, c.A, c.R1, c.R2, c.ccw);
    return new CClotPlaniElem(12.5, start, dir, 1.0, c.A, c.R1, c.ccw, c.entrance);
}

// The expected curve, worked out from the definitions: curvature linear in s,
// from 0 to 1/R over L = A²/R (entrance), from 1/R to 0 (exit), from 1/R1 to
// 1/R2 over L = A²·|1/R2 − 1/R1| (continuity); positive to the left.
plani_ref::Curve Expected(const ClotCase& c, Real& length, const PNT_2D& start = kStart,
                          const VECTOR_2D& dir = kDir) {
    const Real sign = c.ccw ? 1 : -1;
    const Real a2 = Real(c.A) * c.A;
    plani_ref::Curve cv;
    cv.x0 = start.x;
    cv.y0 = start.y;
    cv.th0 = std::atan2(Real(dir.y), Real(dir.x));
    if (c.continuity) {
        const Real k1 = 1 / Real(c.R1);
        const Real k2 = 1 / Real(c.R2);
        length = a2 * std::fabs(k2 - k1);
        cv.k0 = sign * k1;
        cv.dk = sign * (k2 - k1) / length;
    } else {
        length = a2 / c.R1;
        cv.k0 = c.entrance ? 0 : sign / c.R1;
        cv.dk = (c.entrance ? sign : -sign) / a2;
    }
    return cv;
}

std::vector<Real> Stations(Real length, int n) {
    std::vector<Real> at;
    for (int i = 0; i <= n; ++i) at.push_back(static_cast<double>(length * i / n));
    return at;
}

class ClotAccuracy : public ::testing::TestWithParam<ClotCase> {};

TEST_P(ClotAccuracy, PointsTangentsAndOffsetsMatchIntegration) {
    const ClotCase& c = GetParam();
    Real len = 0;
    const plani_ref::Curve cv = Expected(c, len);
    vesk::RefPtr<CPlaniElem> e(Make(c));
    ASSERT_NEAR(e->GetLength(), static_cast<double>(len), 1e-12 * static_cast<double>(len));
    const std::vector<Real> at = Stations(e->GetLength(), 40);
    const std::vector<Cplx> ref = plani_ref::Points(cv, at);
    for (size_t i = 0; i < at.size(); ++i) {
        const double s = static_cast<double>(at[i]);
        PNT_2D p;
        e->GetPos(s, p);
        EXPECT_LT(plani_ref::Dist(p, ref[i]), kPosTol) << "s=" << s;
        VECTOR_2D tg;
        e->GetTg(s, tg);
        EXPECT_LT(plani_ref::AngleBetween(tg, cv.Theta(at[i])), kTgTol) << "s=" << s;
        EXPECT_NEAR(std::hypot(tg.x, tg.y), 1.0, 1e-15);
        // Offsets go to the right of the running direction.
        const Cplx dir = cv.Dir(at[i]);
        for (double off : {-7.25, 3.5}) {
            e->GetPos(s, off, p);
            const Cplx want = ref[i] + Cplx(dir.imag(), -dir.real()) * Real(off);
            EXPECT_LT(plani_ref::Dist(p, want), kPosTol) << "s=" << s << " off=" << off;
        }
    }
    EXPECT_LT(plani_ref::Dist(e->GetEndPnt(), ref.back()), kPosTol);
}

TEST_P(ClotAccuracy, TurningAndRadii) {
    const ClotCase& c = GetParam();
    Real len = 0;
    const plani_ref::Curve cv = Expected(c, len);
    vesk::RefPtr<CPlaniElem> e(Make(c));
    const double L = e->GetLength();
    EXPECT_EQ(e->IsLeftTurn(), c.ccw);
    const Real turn = std::fabs(cv.Theta(L) - cv.th0);
    EXPECT_NEAR(e->GetAngleDev(), static_cast<double>(turn), 1e-13 * static_cast<double>(turn));
    // Radii: exact at the ends, curvature linear in between.
    const double r0 = c.continuity ? c.R1 : (c.entrance ? kInf : c.R1);
    const double r1 = c.continuity ? c.R2 : (c.entrance ? c.R1 : kInf);
    EXPECT_EQ(e->GetRad(0.0), r0);
    EXPECT_EQ(e->GetRad(L), r1);
    for (double t : {0.125, 0.5, 0.875}) {
        const Real k = std::fabs(cv.k0 + cv.dk * (t * L));
        EXPECT_NEAR(1 / e->GetRad(t * L), static_cast<double>(k), 1e-12 * static_cast<double>(k)) << t;
    }
    EXPECT_EQ(e->GetMinRad(), std::fmin(r0, r1));
}

// A distance is a double: on the tightest spirals (55 rad/m) its last bit
// alone turns the tangent by 1e-11 rad, and the reversed element measures
// from the other end. Tangents are compared within that.
TEST_P(ClotAccuracy, ReverseRunsTheSameAxisBackwards) {
    const ClotCase& c = GetParam();
    vesk::RefPtr<CPlaniElem> e(Make(c));
    vesk::RefPtr<CPlaniElem> r(e->Clone());
    r->Reverse();
    const double L = e->GetLength();
    const double tgTol = kTgTol + 4 * std::numeric_limits<double>::epsilon() * L / e->GetMinRad();
    EXPECT_EQ(r->GetProg(), e->GetProg());
    EXPECT_EQ(r->GetLength(), L);
    EXPECT_EQ(r->IsLeftTurn(), !c.ccw);
    EXPECT_LT(vesk::geom::dist(r->GetStartPnt(), e->GetEndPnt()), 1e-12);
    EXPECT_LT(vesk::geom::dist(r->GetEndPnt(), e->GetStartPnt()), kPosTol);
    VECTOR_2D te;
    e->GetTg(L, te);
    EXPECT_EQ(r->GetStartTg(), -te);
    if (c.continuity) {
        auto* rc = dynamic_cast<CClotContPlaniElem*>(r.get());
        ASSERT_NE(rc, nullptr);
        EXPECT_EQ(rc->GetR1(), c.R2);
        EXPECT_EQ(rc->GetR2(), c.R1);
    } else {
        auto* rc = dynamic_cast<CClotPlaniElem*>(r.get());
        ASSERT_NE(rc, nullptr);
        EXPECT_EQ(rc->IsEntrance(), !c.entrance);
        EXPECT_EQ(rc->GetR(), c.R1);
    }
    for (double t : {0.0, 0.3, 0.7, 1.0}) {
        PNT_2D a;
        PNT_2D b;
        e->GetPos(t * L, a);
        r->GetPos(L - t * L, b);
        EXPECT_LT(vesk::geom::dist(a, b), kPosTol) << t;
        VECTOR_2D ta;
        VECTOR_2D tb;
        e->GetTg(t * L, ta);
        r->GetTg(L - t * L, tb);
        EXPECT_LT(std::fabs(std::atan2(ta.x * -tb.y + ta.y * tb.x, -(ta.x * tb.x + ta.y * tb.y))), tgTol);
        // Right of the reversed element is left of the original.
        e->GetPos(t * L, 2.0, a);
        r->GetPos(L - t * L, -2.0, b);
        EXPECT_LT(vesk::geom::dist(a, b), kPosTol) << t;
    }
    r->Reverse();
    if (tgTol < 1e-12 + kTgTol) {
        EXPECT_TRUE(r->Equals(e.get()));
    }
    EXPECT_LT(vesk::geom::dist(r->GetStartPnt(), e->GetStartPnt()), kPosTol);
    EXPECT_LT(plani_ref::AngleBetween(r->GetStartTg(), std::atan2(Real(kDir.y), Real(kDir.x))), tgTol);
    for (double t : {0.0, 0.5, 1.0}) {
        PNT_2D a;
        PNT_2D b;
        e->GetPos(t * L, a);
        r->GetPos(t * L, b);
        EXPECT_LT(vesk::geom::dist(a, b), kPosTol) << t;
    }
}

TEST_P(ClotAccuracy, ReversedElementMatchesIntegration) {
    // The reversed element, integrated afresh from its own data.
    ClotCase rc = GetParam();
    vesk::RefPtr<CPlaniElem> e(Make(rc));
    e->Reverse();
    rc.ccw = !rc.ccw;
    if (rc.continuity) std::swap(rc.R1, rc.R2);
    else rc.entrance = !rc.entrance;
    Real len = 0;
    const plani_ref::Curve cv = Expected(rc, len, e->GetStartPnt(), e->GetStartTg());
    const std::vector<Real> at = Stations(e->GetLength(), 10);
    const std::vector<Cplx> ref = plani_ref::Points(cv, at);
    for (size_t i = 0; i < at.size(); ++i) {
        PNT_2D p;
        e->GetPos(static_cast<double>(at[i]), p);
        EXPECT_LT(plani_ref::Dist(p, ref[i]), kPosTol) << static_cast<double>(at[i]);
    }
}

TEST_P(ClotAccuracy, CloneEqualsAndSetStartTgTurnsTheShape) {
    const ClotCase& c = GetParam();
    vesk::RefPtr<CPlaniElem> e(Make(c));
    vesk::RefPtr<CPlaniElem> k(e->Clone());
    EXPECT_EQ(k->GetRefCount(), 1);
    EXPECT_TRUE(k->Equals(e.get()));
    EXPECT_TRUE(e->Equals(k.get()));
    EXPECT_EQ(k->GetType(), c.continuity ? CPlaniElem::CLOTOIDE_CONT : CPlaniElem::CLOTOIDE);
    // Turn by +90°: every point turns about the start.
    k->SetStartTg(VECTOR_2D(-kDir.y, kDir.x));
    EXPECT_FALSE(k->Equals(e.get()));
    const double L = e->GetLength();
    for (double t : {0.25, 1.0}) {
        PNT_2D a;
        PNT_2D b;
        e->GetPos(t * L, a);
        k->GetPos(t * L, b);
        const VECTOR_2D da = a - kStart;
        const VECTOR_2D db = b - kStart;
        EXPECT_NEAR(db.x, -da.y, kPosTol);
        EXPECT_NEAR(db.y, da.x, kPosTol);
    }
}

// A is chosen for the length: tight cases turn tens of thousands of radians.
const ClotCase kCases[] = {
    {"EntranceLeft", false, 200.0, 400.0, 0, true, true},
    {"EntranceRight", false, 200.0, 400.0, 0, false, true},
    {"ExitLeft", false, 350.0, 300.0, 0, true, false},
    {"ExitRight", false, 350.0, 300.0, 0, false, false},
    {"Entrance2kmTight", false, 6.0, 0.018, 0, true, true},
    {"Exit2kmTightRight", false, 6.0, 0.018, 0, false, false},
    {"Entrance2kmMediumRight", false, 40.0, 0.8, 0, false, true},
    {"Exit2kmMedium", false, 120.0, 7.2, 0, true, false},
    {"EntranceHugeA2km", false, 1.0e5, 5.0e6, 0, true, true},
    {"ExitHugeA2kmRight", false, 1.0e5, 5.0e6, 0, false, false},
    {"EntranceTinyA", false, 0.05, 0.01, 0, true, true},
    {"ExitTinyARight", false, 0.05, 0.01, 0, false, false},
    {"EntranceFourAndAHalfRadians", false, 150.0, 50.0, 0, true, true},
    {"ContR1GreaterLeft", true, 300.0, 600.0, 200.0, true, false},
    {"ContR1GreaterRight", true, 300.0, 600.0, 200.0, false, false},
    {"ContR1SmallerLeft", true, 300.0, 150.0, 900.0, true, false},
    {"ContR1SmallerRight", true, 300.0, 150.0, 900.0, false, false},
    {"ContTightLeft", true, 5.0, 0.05, 0.02, true, false},
    {"ContTightRight", true, 5.0, 0.02, 0.05, false, false},
    {"ContNearlyEqualRadii2km", true, 25278.0, 400.0, 399.5, true, false},  // origin 1600 km away
    {"ContNearlyEqualRadii2kmRight", true, 25278.0, 399.5, 400.0, false, false},
    {"ContFlat2km", true, 2000.0, 1.0e6, 2000.0, true, false},
    {"ContFromStraightEnd", true, 100.0, kInf, 50.0, false, false},
    {"ContToStraightEnd", true, 100.0, 50.0, kInf, true, false},
};

INSTANTIATE_TEST_SUITE_P(Plani, ClotAccuracy, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<ClotCase>& i) { return i.param.name; });

// Beyond its ends a clothoid continues through its inflection point, about
// which the whole clothoid is point-symmetric.
TEST(ClotExtension, PointSymmetricAboutTheInflection) {
    for (bool ccw : {true, false}) {
        for (double A : {30.0, 300.0}) {
            vesk::RefPtr<CPlaniElem> in(new CClotPlaniElem(0, kStart, kDir, 1.0, A, 90.0, ccw, true));
            vesk::RefPtr<CPlaniElem> out(new CClotPlaniElem(0, kStart, kDir, 1.0, A, 90.0, ccw, false));
            const PNT_2D inflection = out->GetEndPnt();
            const double L = in->GetLength();
            for (double s : {0.1 * L, 0.9 * L, 2.0 * L, 3.0 * L}) {
                PNT_2D a;
                PNT_2D b;
                in->GetPos(-s, a);
                in->GetPos(s, b);
                EXPECT_NEAR(a.x - kStart.x, kStart.x - b.x, kPosTol) << A << " " << s;
                EXPECT_NEAR(a.y - kStart.y, kStart.y - b.y, kPosTol) << A << " " << s;
                out->GetPos(L + s, a);
                out->GetPos(L - s, b);
                EXPECT_NEAR(a.x - inflection.x, inflection.x - b.x, kPosTol) << A << " " << s;
                EXPECT_NEAR(a.y - inflection.y, inflection.y - b.y, kPosTol) << A << " " << s;
            }
        }
    }
}

// Far from the origin the double coordinates themselves round by up to
// 4.7e-10 m; the element must add nothing noticeable to that.
TEST(ClotAccuracyPlan, RealCoordinates) {
    const PNT_2D start(512345.678, 4987654.321);
    const VECTOR_2D dir(-0.28, 0.96);
    const ClotCase c{"Real", false, 180.0, 250.0, 0, false, true};
    Real len = 0;
    const plani_ref::Curve cv = Expected(c, len, start, dir);
    vesk::RefPtr<CPlaniElem> e(Make(c, start, dir));
    const std::vector<Real> at = Stations(e->GetLength(), 16);
    const std::vector<Cplx> ref = plani_ref::Points(cv, at);
    for (size_t i = 0; i < at.size(); ++i) {
        PNT_2D p;
        e->GetPos(static_cast<double>(at[i]), p);
        EXPECT_NEAR(p.x, static_cast<double>(ref[i].real()), kPosTol);
        EXPECT_NEAR(p.y, static_cast<double>(ref[i].imag()), kPosTol);
    }
}

// Data read from the parameters: the entrance clothoid's length is A²/R.
TEST(ClotData, AccessorsAndLength) {
    CClotPlaniElem* e = new CClotPlaniElem(5.0, PNT_2D(1, 2), VECTOR_2D(0, 2), 1.0, 100.0, 250.0, true, true);
    EXPECT_EQ(e->GetClotoide().GetA(), 100.0);
    EXPECT_EQ(e->GetR(), 250.0);
    EXPECT_TRUE(e->IsEntrance());
    EXPECT_EQ(e->GetLength(), 40.0);
    EXPECT_EQ(e->GetStartTg(), VECTOR_2D(0, 1));
    EXPECT_EQ(e->GetProg(), 5.0);
    e->SubReference();
    CClotContPlaniElem* c = new CClotContPlaniElem(0.0, PNT_2D(), VECTOR_2D(1, 0), 1.0, 100.0, 200.0, 100.0, false);
    EXPECT_EQ(c->GetClotoide().GetA(), 100.0);
    EXPECT_EQ(c->GetR1(), 200.0);
    EXPECT_EQ(c->GetR2(), 100.0);
    EXPECT_DOUBLE_EQ(c->GetLength(), 50.0);  // 100² · (1/100 − 1/200)
    EXPECT_DOUBLE_EQ(c->GetAngleDev(), 50.0 * (1.0 / 200 + 1.0 / 100) / 2);
    c->SubReference();
}

// k scales A: the clothoid of (k, A) is the one of (1, A/√k).
TEST(ClotData, ScaleFactorK) {
    vesk::RefPtr<CPlaniElem> a(new CClotPlaniElem(0, PNT_2D(3, 4), VECTOR_2D(1, 1), 4.0, 200.0, 125.0, true, false));
    vesk::RefPtr<CPlaniElem> b(new CClotPlaniElem(0, PNT_2D(3, 4), VECTOR_2D(1, 1), 1.0, 100.0, 125.0, true, false));
    EXPECT_DOUBLE_EQ(a->GetLength(), 80.0);
    EXPECT_DOUBLE_EQ(a->GetLength(), b->GetLength());
    PNT_2D pa;
    PNT_2D pb;
    a->GetPos(33.0, pa);
    b->GetPos(33.0, pb);
    EXPECT_LT(vesk::geom::dist(pa, pb), 1e-12);
    vesk::RefPtr<CPlaniElem> c(
        new CClotContPlaniElem(0, PNT_2D(3, 4), VECTOR_2D(1, 1), 9.0, 300.0, 200.0, 100.0, false));
    EXPECT_DOUBLE_EQ(c->GetLength(), 50.0);
    // A k that is not finite and positive counts as 1.
    for (double k : {0.0, -2.0, std::nan(""), kInf}) {
        vesk::RefPtr<CPlaniElem> d(new CClotPlaniElem(0, PNT_2D(3, 4), VECTOR_2D(1, 1), k, 100.0, 125.0, true, false));
        EXPECT_EQ(d->GetLength(), b->GetLength()) << k;
    }
}

TEST(ClotData, ComputeAFromRadLen) {
    EXPECT_EQ(CClotoide::ComputeAFromRadLen(1.0, 250.0, 100.0), std::sqrt(25000.0));
    EXPECT_EQ(CClotoide::ComputeAFromRadLen(2.0, 250.0, 100.0), std::sqrt(50000.0));
    EXPECT_EQ(CClotoide::ComputeAFromRadLen(1.0, 250.0, 0.0), 0.0);
    for (double bad : {0.0, -5.0, std::nan(""), kInf}) {
        EXPECT_EQ(CClotoide::ComputeAFromRadLen(1.0, bad, 100.0), 0.0) << bad;
        EXPECT_EQ(CClotoide::ComputeAFromRadLen(1.0, 250.0, bad == 0.0 ? -1.0 : bad), 0.0) << bad;
    }
    EXPECT_EQ(CClotoide::ComputeAFromRadLen(-3.0, 250.0, 100.0), std::sqrt(25000.0));
    // Round trip through an element, with and without k.
    for (double k : {1.0, 2.5}) {
        const double A = CClotoide::ComputeAFromRadLen(k, 333.0, 77.7);
        vesk::RefPtr<CPlaniElem> e(new CClotPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), k, A, 333.0, true, true));
        EXPECT_NEAR(e->GetLength(), 77.7, 1e-12);
        EXPECT_EQ(e->GetRad(e->GetLength()), 333.0);
    }
    EXPECT_EQ(CClotoide().GetA(), 0.0);
    CClotoide cl(5.0);
    cl.SetA(7.0);
    EXPECT_EQ(cl.GetA(), 7.0);
}

TEST(ClotData, ComputeAFromR1R2Len) {
    // |1/150 − 1/300| = 1/300, so A² = 100·300.
    EXPECT_DOUBLE_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 300.0, 150.0, 100.0), std::sqrt(30000.0));
    EXPECT_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 300.0, 150.0, 100.0),
              CClotoideContinuita::ComputeAFromR1R2Len(1.0, 150.0, 300.0, 100.0));
    EXPECT_DOUBLE_EQ(CClotoideContinuita::ComputeAFromR1R2Len(3.0, 300.0, 150.0, 100.0), std::sqrt(90000.0));
    // An infinite radius is a straight end: the ordinary formula.
    EXPECT_DOUBLE_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, kInf, 250.0, 100.0), std::sqrt(25000.0));
    EXPECT_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 200.0, 200.0, 100.0), 0.0);
    EXPECT_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, -200.0, 100.0, 100.0), 0.0);
    EXPECT_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 200.0, std::nan(""), 100.0), 0.0);
    EXPECT_EQ(CClotoideContinuita::ComputeAFromR1R2Len(1.0, 200.0, 100.0, -1.0), 0.0);
    for (double k : {1.0, 0.5}) {
        for (auto [r1, r2] : {std::pair{420.0, 180.0}, std::pair{180.0, 420.0}}) {
            const double A = CClotoideContinuita::ComputeAFromR1R2Len(k, r1, r2, 61.0);
            vesk::RefPtr<CPlaniElem> e(new CClotContPlaniElem(0, PNT_2D(), VECTOR_2D(1, 0), k, A, r1, r2, true));
            EXPECT_NEAR(e->GetLength(), 61.0, 1e-12);
            EXPECT_EQ(e->GetRad(0), r1);
            EXPECT_EQ(e->GetRad(e->GetLength()), r2);
        }
    }
}

}  // namespace
