#include <gtest/gtest.h>

#include <cmath>

#include "host/load_vantri_dati.h"

namespace {

// A road with the profile (0,100) (100,110)+R (200,100): grades +10 % and
// -10 %, so a radius R gives a parabola of length 0.2·R centred on 100.
struct Fixture {
    CVantriDoc doc;
    CProfileAlti* prj = nullptr;
    explicit Fixture(double radius) {
        CLoadVantriDati b(&doc);
        b.AddRoad("R", 0, false);
        b.StartRoadPlani();
        b.AddRoadRect(0, {0, 0}, {1, 0}, 200);
        b.EndRoadPlani();
        b.StartRoadAlti();
        prj = b.AddRoadPrj();
        b.AddRoadProfAltiPrincVrt(0, 100);
        b.AddRoadProfAltiRaccVrt(100, 110, 0, 100, 200, 100, radius, false);
        b.AddRoadProfAltiPrincVrt(200, 100);
        b.EndRoadAlti();
    }
    double Z(double x) const {
        bool ok = false;
        const double z = CalcQuoteAtAltiProg(prj, x, ok);
        EXPECT_TRUE(ok) << x;
        return z;
    }
};

TEST(Alti, CurveIsASymmetricParabolaCentredOnItsVertex) {
    Fixture f(500);
    const TAltiVrt* v = f.prj->GetVrt(1);
    ASSERT_TRUE(IsRaccVertAltiVrt(v));
    EXPECT_EQ(v->racc.kind, 2);
    EXPECT_DOUBLE_EQ(v->racc.progStart, 50);
    EXPECT_DOUBLE_EQ(v->racc.progEnd, 150);
    EXPECT_DOUBLE_EQ(v->racc.radius, 500);
    EXPECT_TRUE(IsPrincAltiVrt(v));
}

TEST(Alti, ElevationFollowsTangentsAndParabola) {
    Fixture f(500);
    // On the tangents: straight lines.
    EXPECT_DOUBLE_EQ(f.Z(0), 100);
    EXPECT_DOUBLE_EQ(f.Z(25), 102.5);
    EXPECT_DOUBLE_EQ(f.Z(175), 102.5);
    EXPECT_DOUBLE_EQ(f.Z(200), 100);
    // Middle ordinate of a parabolic curve: (g1 − g2)·L/8 below the vertex.
    EXPECT_NEAR(f.Z(100), 110 - 0.2 * 100 / 8, 1e-12);
    // Tangent points meet the tangents, and the slope changes smoothly:
    // numerical derivatives equal the grades at the ends, and the second
    // derivative is (g2 − g1)/L throughout.
    EXPECT_NEAR(f.Z(50), 105, 1e-12);
    EXPECT_NEAR(f.Z(150), 105, 1e-12);
    const double h = 1e-3;
    EXPECT_NEAR((f.Z(50 + h) - f.Z(50)) / h, 0.1, 1e-5);
    EXPECT_NEAR((f.Z(150) - f.Z(150 - h)) / h, -0.1, 1e-5);
    for (double x = 55; x < 150; x += 10)
        EXPECT_NEAR((f.Z(x + 1) - 2 * f.Z(x) + f.Z(x - 1)) / 1.0, -0.2 / 100, 1e-9) << x;
}

TEST(Alti, OutsideTheLineIsUndefined) {
    Fixture f(500);
    bool ok = true;
    EXPECT_EQ(CalcQuoteAtAltiProg(f.prj, -0.001, ok), 1.7e200);
    EXPECT_FALSE(ok);
    EXPECT_EQ(CalcQuoteAtAltiProg(f.prj, 200.001, ok), 1.7e200);
    EXPECT_FALSE(ok);
    EXPECT_EQ(CalcQuoteAtAltiProg(nullptr, 0, ok), 1.7e200);
    EXPECT_FALSE(ok);
}

TEST(Alti, ZeroRadiusGivesASharpVertex) {
    Fixture f(0);
    EXPECT_DOUBLE_EQ(f.Z(100), 110);
    EXPECT_DOUBLE_EQ(f.Z(50), 105);
}

TEST(Alti, FindNextPrincVrtSkipsOthers) {
    CProfileAlti line(nullptr, "PRO", false);
    line.AddPrincVrt(0, 1);
    TAltiVrt plain;
    plain.prog = 1;
    plain.quota = 2;
    line.AddVrt(plain);
    line.AddPrincVrt(2, 3);
    TAltiVrt* first = line.FindNextPrincVrt(-1);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->prog, 0);
    TAltiVrt* second = line.FindNextPrincVrt(first);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->prog, 2);
    EXPECT_EQ(line.FindNextPrincVrt(second), nullptr);
}

}  // namespace
