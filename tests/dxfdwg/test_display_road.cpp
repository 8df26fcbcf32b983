// Roads as their true axis with chainage ticks and labels; profiles and
// cross sections in 3D.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "display/display.h"
#include "display/doc_display.h"
#include "display/road_axis.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

using vesk::geom::PNT_3D;

// Distance from a point to a polyline.
double DistToPolyline(const std::vector<roadx::cad::TVertex2D>& v, double x, double y) {
    double best = INFINITY;
    for (size_t i = 0; i + 1 < v.size(); ++i) {
        const double ax = v[i].x, ay = v[i].y, dx = v[i + 1].x - ax, dy = v[i + 1].y - ay;
        const double l2 = dx * dx + dy * dy;
        double t = l2 > 0 ? ((x - ax) * dx + (y - ay) * dy) / l2 : 0;
        t = std::fmax(0, std::fmin(1, t));
        best = std::fmin(best, std::hypot(x - (ax + t * dx), y - (ay + t * dy)));
    }
    return best;
}

class RoadDisplay : public ::testing::Test {
protected:
    void SetUp() override {
        InstallDocumentDisplay(doc);
        road = dxtest::BuildRoad(doc);
        eng = doc.GetZedraEng();
        elems = road->RetrieveLinkedPlaniElems();
    }
    CVantriDoc doc;
    CRoad* road = nullptr;
    CZedraEng* eng = nullptr;
    std::vector<CPlaniElem*> elems;
};

TEST_F(RoadDisplay, AxisIsTrueLinesArcsAndFineClothoids) {
    doc.GetDisRoad()->AddAllRoads();
    const DrawingHandle d = road->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "Strada_Asse");
    EXPECT_EQ(eng->GetDrawingRefCount(d), 1);
    ASSERT_EQ(elems.size(), 5u);
    // Straights: their two ends.
    EXPECT_EQ(eng->Lines()[0].a, (PNT_3D{0, 0, 0}));
    EXPECT_EQ(eng->Lines()[0].b, (PNT_3D{130, 0, 0}));
    const PNT_2D s4 = elems[4]->GetStartPnt(), e4 = elems[4]->GetEndPnt();
    EXPECT_EQ(eng->Lines()[1].a, (PNT_3D{s4.x, s4.y, 0}));
    EXPECT_EQ(eng->Lines()[1].b, (PNT_3D{e4.x, e4.y, 0}));
    // The arc: centre and radius of the element, counter-clockwise from its
    // start to its end (a left turn).
    ASSERT_EQ(eng->Arcs().size(), 1u);
    const auto* arc = static_cast<const CArcPlaniElem*>(elems[2]);
    const auto& a = eng->Arcs()[0];
    EXPECT_EQ(a.c.x, arc->GetCenter().x);
    EXPECT_EQ(a.c.y, arc->GetCenter().y);
    EXPECT_EQ(a.r, 100.0);
    const PNT_2D s2 = arc->GetStartPnt(), e2 = arc->GetEndPnt();
    EXPECT_NEAR(a.a0, std::atan2(s2.y - a.c.y, s2.x - a.c.x), 1e-12);
    EXPECT_NEAR(a.a1, std::atan2(e2.y - a.c.y, e2.x - a.c.x), 1e-12);
    EXPECT_NEAR(std::remainder(a.a1 - a.a0, 2 * std::numbers::pi), 0.8, 1e-9);
    // The clothoids: polylines from end to end within a millimetre of the
    // curve everywhere, checked on 2000 points of the element.
    ASSERT_EQ(eng->Polys2D().size(), 2u);
    for (int k = 0; k < 2; ++k) {
        const CPlaniElem* e = elems[k == 0 ? 1 : 3];
        const auto& p = eng->Polys2D()[static_cast<size_t>(k)];
        const std::vector<roadx::cad::TVertex2D> v(eng->Vertices2D(p), eng->Vertices2D(p) + p.count);
        EXPECT_EQ(v.front().x, e->GetStartPnt().x);
        EXPECT_EQ(v.back().x, e->GetEndPnt().x);
        EXPECT_EQ(v.back().y, e->GetEndPnt().y);
        double worst = 0;
        for (int i = 0; i <= 2000; ++i) {
            PNT_2D q;
            e->GetPos(e->GetLength() * i / 2000, q);
            worst = std::fmax(worst, DistToPolyline(v, q.x, q.y));
        }
        EXPECT_LT(worst, 1e-3);
        EXPECT_GT(worst, 1e-5);  // and not absurdly fine: a real polyline
        EXPECT_LT(v.size(), 100u);
    }
}

TEST_F(RoadDisplay, TicksEveryTwentyMetresLabelsEveryHundred) {
    doc.GetDisRoad()->AddAllRoads();
    const DrawingHandle d = road->GetTargetDrawing();
    // 359.5 m: ticks at 0, 20 .. 340 and 359.5; two axis lines besides.
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Line), 2u + 19u);
    EXPECT_EQ(dxtest::TextsOf(*eng, d),
              (std::vector<std::string>{"0+000.00", "0+100.00", "0+200.00", "0+300.00", "0+359.50"}));
    // The 100 m label: on the straight, 3 m left of the axis, reading
    // outward (the axis runs along +x, so left is +y).
    const auto& t = eng->Texts()[1];
    EXPECT_NEAR(t.p.x, 100, 1e-9);
    EXPECT_NEAR(t.p.y, 3, 1e-9);
    EXPECT_NEAR(t.rotation, std::numbers::pi / 2, 1e-12);
    EXPECT_EQ(t.height, 2.0);
    // A short tick at 20 m, 2 m long, across the axis.
    bool found = false;
    for (const auto& l : eng->Lines())
        if (l.a.x == 20 && l.b.x == 20) {
            found = true;
            EXPECT_NEAR(std::fabs(l.a.y - l.b.y), 2.0, 1e-12);
        }
    EXPECT_TRUE(found);
}

TEST(RoadAxis, ChainageTexts) {
    using roadx::display::FormatChainage;
    EXPECT_EQ(FormatChainage(0), "0+000.00");
    EXPECT_EQ(FormatChainage(1250.004), "1+250.00");
    EXPECT_EQ(FormatChainage(999.996), "1+000.00");
    EXPECT_EQ(FormatChainage(-20), "-0+020.00");
    EXPECT_EQ(FormatChainage(12345.675), "12+345.68");
}

TEST(RoadAxis, SamplingFollowsTheRadius) {
    auto* tight = new CClotPlaniElem(0, {0, 0}, {1, 0}, 1, 20, 10, true, true);  // L = 40, R = 10
    const auto d = roadx::display::SampleDistances(*tight, roadx::display::kAxisChordTol);
    // Step at most sqrt(8 * 0.0005 * 10) = 0.2 m.
    EXPECT_EQ(d.size(), 201u);
    EXPECT_EQ(d.front(), 0.0);
    EXPECT_EQ(d.back(), 40.0);
    auto* straight = new CRettifiloPlaniElem(0, {0, 0}, {1, 0}, 500);
    EXPECT_EQ(roadx::display::SampleDistances(*straight, 0.0005).size(), 2u);
    tight->SubReference();
    straight->SubReference();
}

TEST_F(RoadDisplay, RoadWithoutElementsIsNotDrawnAndFullTurnIsACircle) {
    doc.GetLibRoad()->AddRoad(doc.GetLibProfile(), "Vuota", 0);
    CRoad* ring = doc.GetLibRoad()->AddRoad(doc.GetLibProfile(), "Anello", 0);
    ring->AppendElem(new CArcPlaniElem(0, {0, 0}, {1, 0}, 50, 2 * std::numbers::pi, false));
    doc.GetDisRoad()->AddAllRoads();
    EXPECT_EQ(doc.GetLibRoad()->GetRoad(1)->GetTargetDrawing(), 0u);
    const DrawingHandle d = ring->GetTargetDrawing();
    ASSERT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Circle), 1u);
    EXPECT_EQ(eng->Circles()[0].c, (PNT_3D{0, -50, 0}));  // a right turn: centre on the right
    EXPECT_EQ(eng->Circles()[0].r, 50.0);
}

TEST_F(RoadDisplay, WildChainagesGetOnlyTheirEndTicks) {
    CRoad* far = doc.GetLibRoad()->AddRoad(doc.GetLibProfile(), "Lontana", 1e20);
    far->AppendElem(new CRettifiloPlaniElem(1e20, {0, 0}, {0, 1}, 1e9));
    far->GetRoadProfile()->AddPrjAlti()->AddPrincVrt(1e20, 5);
    far->GetRoadProfile()->GetMainPrjAlti()->AddPrincVrt(1e20 + 1e9, 6);
    doc.GetDisRoad()->AddAllRoads();
    doc.GetDisLibProfile()->AddAllProfiles();
    const DrawingHandle d = far->GetTargetDrawing();
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Line), 3u);  // the axis and two ticks
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Text), 2u);
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
}

TEST_F(RoadDisplay, ProfilesAndSectionsInThreeDimensions) {
    doc.GetDisLibProfile()->AddAllProfiles();
    const DrawingHandle d = doc.GetLibProfile()->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "Profili");
    // Grade line, two terrain runs, the two lines of the first section (the
    // second is past the road's end).
    ASSERT_EQ(eng->Polys3D().size(), 5u);
    const auto grade = dxtest::VerticesOf(*eng, eng->Polys3D()[0]);
    CProfileAlti* g = road->GetRoadProfile()->GetMainPrjAlti();
    ASSERT_GT(grade.size(), 340u);  // every metre from 10 to the end at 359.5
    for (const auto& v : grade) {
        // On the axis, at the grade line's elevation there.
        double prog = 0, off = 0;
        bool onAxis = false;
        for (CPlaniElem* e : elems) {
            double p, o;
            if (e->GetProgAndOffset({v.x, v.y}, p, o) && std::fabs(o) < 1e-6) {
                prog = e->GetProg() + p;
                off = o;
                onAxis = true;
                break;
            }
        }
        ASSERT_TRUE(onAxis) << v.x << " " << v.y;
        bool ok = false;
        EXPECT_NEAR(v.z, CalcQuoteAtAltiProg(g, prog, ok), 1e-6);
        EXPECT_TRUE(ok);
        EXPECT_LT(std::fabs(off), 1e-6);
    }
    EXPECT_EQ(grade.front(), (PNT_3D{10, 0, 100}));
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[1]), (std::vector<PNT_3D>{{0, 0, 98}, {100, 0, 99}}));
    EXPECT_EQ(eng->Polys3D()[2].count, 2u);  // 150 and 250; 5000 is past the end
    // Section S1 at chainage 50: offsets to the right are -y here.
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[3]),
              (std::vector<PNT_3D>{{50, 10, 99}, {50, 5, 99.5}, {50, 0, 100}, {50, -6, 100.4}}));
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[4]), (std::vector<PNT_3D>{{50, 4, 100.2}, {50, -4, 100.2}}));
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
}

}  // namespace
