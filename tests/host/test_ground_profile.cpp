// The grid over a DTM project's triangles and the ground profile along a
// plan line: vertices where the line crosses triangle edges, exact
// elevations of the planes, gaps off the surface; Recalc keeps the ground
// beside the terrain line only when the line is linked to a project.
#include <gtest/gtest.h>

#include <cmath>

#include "host/dtm.h"
#include "host/ground_profile.h"
#include "host/load_vantri_dati.h"
#include "vesk/refcounter.h"
#include "vesk/undefined.h"

namespace {

// The square 0..10 x 0..10 cut by its diagonal (0,0)-(10,10); z = x + 2y.
void Square(CTris& t, double x0 = 0) {
    const int a = t.AddVert({x0, 0, x0}), b = t.AddVert({x0 + 10, 0, x0 + 10}), c = t.AddVert({x0 + 10, 10, x0 + 30}),
              d = t.AddVert({x0, 10, x0 + 20});
    t.AddTri(a, b, c);
    t.AddTri(a, c, d);
}

TEST(GroundProfile, StraightAcrossTwoTrianglesAndOffTheSurface) {
    CTris t;
    Square(t);
    const CDtmGrid grid(t);
    vesk::RefPtr<CPlaniElem> e(new CRettifiloPlaniElem(100.0, PNT_2D(-5, 5), VECTOR_2D(1, 0), 20.0));
    const std::vector<TGroundVrt> g = SampleGround({e.get()}, grid);
    // No ground for 5 m, then the square (the diagonal crossed at x = 5),
    // then no ground again to the end.
    ASSERT_EQ(g.size(), 5u);
    EXPECT_EQ(g[0].prog, 100.0);
    EXPECT_FALSE(vesk::IsDefined(g[0].z));
    EXPECT_NEAR(g[1].prog, 105.0, 1e-12);
    EXPECT_NEAR(g[1].z, 10.0, 1e-12);
    EXPECT_NEAR(g[2].prog, 110.0, 1e-12);
    EXPECT_NEAR(g[2].z, 15.0, 1e-12);
    EXPECT_NEAR(g[3].prog, 115.0, 1e-12);
    EXPECT_NEAR(g[3].z, 20.0, 1e-12);
    EXPECT_NEAR(g[4].prog, 115.0, 1e-12);
    EXPECT_FALSE(vesk::IsDefined(g[4].z));
}

TEST(GroundProfile, GapBetweenTwoSurfacesAndElementBoundaries) {
    CTris t;
    Square(t, 0);
    Square(t, 20);  // a second square 20..30, so 10..20 has no ground
    const CDtmGrid grid(t);
    vesk::RefPtr<CPlaniElem> a(new CRettifiloPlaniElem(0.0, PNT_2D(1, 2), VECTOR_2D(1, 0), 14.0));
    vesk::RefPtr<CPlaniElem> b(new CRettifiloPlaniElem(14.0, PNT_2D(15, 2), VECTOR_2D(1, 0), 14.0));
    const std::vector<TGroundVrt> g = SampleGround({a.get(), b.get()}, grid);
    std::vector<double> progs, zs;
    for (const TGroundVrt& v : g) {
        progs.push_back(v.prog);
        zs.push_back(vesk::IsDefined(v.z) ? v.z : -1);
    }
    // Start x=1 (z 1+4), diagonal at x=2, edge at x=10, gap to x=20 (an
    // element boundary at 14 in the gap adds nothing), diagonal at x=22,
    // end at x=29.
    const std::vector<double> wantProg = {0, 1, 9, 9, 19, 21, 28};
    const std::vector<double> wantZ = {5, 6, 14, -1, 24, 26, 33};
    ASSERT_EQ(progs.size(), wantProg.size()) << ::testing::PrintToString(progs) << ::testing::PrintToString(zs);
    for (size_t i = 0; i < progs.size(); ++i) {
        EXPECT_NEAR(progs[i], wantProg[i], 1e-9) << i;
        EXPECT_NEAR(zs[i], wantZ[i], 1e-9) << i;
    }
}

TEST(GroundProfile, ArcIsChordedWithinTheTolerance) {
    CTris t;
    // One big plane z = x: any chord point lies on it exactly.
    const int a = t.AddVert({-500, -500, -500}), b = t.AddVert({500, -500, 500}), c = t.AddVert({0, 500, 0});
    t.AddTri(a, b, c);
    const CDtmGrid grid(t);
    vesk::RefPtr<CPlaniElem> arc(new CArcPlaniElem(0.0, PNT_2D(0, 0), VECTOR_2D(1, 0), 100.0, 1.0, true));
    const std::vector<TGroundVrt> g = SampleGround({arc.get()}, grid, 0.001);
    // Chords of at most sqrt(8 R tol) = 0.894 m over 100 m: at least 112.
    EXPECT_GE(g.size(), 113u);
    for (const TGroundVrt& v : g) {
        PNT_2D p;
        arc->GetPos(v.prog, p);
        EXPECT_NEAR(v.z, p.x, 1e-9);
    }
}

TEST(GroundProfile, GridSkipsBrokenTrianglesAndFindsPoints) {
    CTris t;
    Square(t);
    const int u = t.AddVert({50, 50, vesk::kUndefined});
    t.AddTri(u, 0, 1);   // an undefined vertex
    t.AddTri(0, 1, 99);  // a missing vertex
    t.AddTri(0, 0, 1);   // no area
    const CDtmGrid grid(t);
    EXPECT_EQ(grid.NumIndexed(), 2u);
    double z = 0;
    ASSERT_TRUE(grid.ElevationAt(7, 2, z));
    EXPECT_NEAR(z, 11.0, 1e-12);
    EXPECT_FALSE(grid.ElevationAt(11, 2, z));
    EXPECT_FALSE(CDtmGrid(CTris()).ElevationAt(0, 0, z));
}

TEST(GroundProfile, RecalcSamplesOnlyALinkedTerrain) {
    CVantriDoc doc;
    CDtmPrj* prj = doc.GetLibDtm()->AddPrj("EG");
    Square(*prj->GetTris());
    CRoad* road = doc.GetLibRoad()->AddRoad(doc.GetLibProfile(), "R", 0.0);
    road->AppendElem(new CRettifiloPlaniElem(0.0, PNT_2D(0, 5), VECTOR_2D(1, 0), 10.0));
    CProfileAlti* terr = road->GetRoadProfile()->GetTerrAlti();
    road->Recalc();
    EXPECT_TRUE(terr->GetGround().empty());
    terr->SetDtmPrj(prj);
    road->Recalc();
    ASSERT_EQ(terr->GetGround().size(), 3u);
    EXPECT_NEAR(terr->GetGround()[2].z, 20.0, 1e-12);
    // The terrain line's own vertices stay as they were.
    EXPECT_TRUE(terr->IsEmpty());
    terr->SetDtmPrj(nullptr);
    road->GetOpzRoadRecalc()->SetBlockRecalc(true);
    road->Recalc();
    EXPECT_EQ(terr->GetGround().size(), 3u);
    road->GetOpzRoadRecalc()->SetBlockRecalc(false);
    road->Recalc();
    EXPECT_TRUE(terr->GetGround().empty());
}

}  // namespace
