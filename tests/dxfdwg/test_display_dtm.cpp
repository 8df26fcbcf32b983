// DTM projects as faces, boundaries and breaklines; contour lines traced
// through the triangles.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "display/display.h"
#include "display/doc_display.h"
#include "display/tin_contours.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

using vesk::geom::PNT_3D;

class DtmDisplay : public ::testing::Test {
protected:
    void SetUp() override {
        InstallDocumentDisplay(doc);
        eng = doc.GetZedraEng();
    }
    CVantriDoc doc;
    CZedraEng* eng = nullptr;
};

TEST_F(DtmDisplay, FacesBoundariesAndJoinedBreaklines) {
    dxtest::BuildPlaneDtm(doc);
    doc.GetDisLibDtm()->AddAllDtm(false);
    const CDtmPrj* prj = doc.GetLibDtm()->GetPrj(0);
    const DrawingHandle d = prj->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "DTM_Piano");
    EXPECT_EQ(doc.GetDisLibDtm()->GetTargetDrawingOfPrj(prj), d);
    EXPECT_EQ(eng->GetDrawingRefCount(d), 1);
    ASSERT_EQ(eng->Faces().size(), 8u);
    // Each face is its triangle, vertex for vertex, the third repeated.
    const auto& v = prj->GetTris()->Verts();
    for (size_t i = 0; i < 8; ++i) {
        const CTri& t = prj->GetTris()->Tris()[i];
        const auto& f = eng->Faces()[i];
        for (int k = 0; k < 3; ++k) EXPECT_EQ(f.v[k], v[static_cast<size_t>(t.v[k])]);
        EXPECT_EQ(f.v[3], f.v[2]);
    }
    ASSERT_EQ(eng->Polys3D().size(), 3u);
    // The boundary: closed, its repeated last vertex dropped.
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[0]),
              (std::vector<PNT_3D>{{0, 0, 0}, {20, 0, 2}, {20, 20, 6}, {0, 20, 4}}));
    EXPECT_TRUE(eng->Polys3D()[0].h.flags & roadx::cad::kFlagClosed);
    // Two breakline segments that meet make one line; the third its own.
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[1]),
              (std::vector<PNT_3D>{{0, 0, 0}, {10, 10, 3}, {20, 20, 6}}));
    EXPECT_FALSE(eng->Polys3D()[1].h.flags & roadx::cad::kFlagClosed);
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[2]), (std::vector<PNT_3D>{{20, 0, 2}, {10, 10, 3}}));
    // Drawing again neither duplicates nor references twice.
    doc.GetDisLibDtm()->AddAllDtm(false);
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d), 11u);
    EXPECT_EQ(eng->GetDrawingRefCount(d), 1);
    doc.GetDisLibDtm()->DelAllDtm();
    EXPECT_EQ(eng->GetNoEntities(), 0u);
}

TEST_F(DtmDisplay, UndefinedVerticesAndBadIndicesAreNotDrawn) {
    CDtmPrj* prj = doc.GetLibDtm()->AddPrj("Buchi");
    CTris* t = prj->GetTris();
    t->AddVert({0, 0, 1});
    t->AddVert({10, 0, 1});
    t->AddVert({0, 10, vesk::kUndefined});
    t->AddVert({10, 10, 2});
    t->AddTri(0, 1, 3);
    t->AddTri(0, 3, 2);   // undefined elevation
    t->AddTri(0, 1, 17);  // no such vertex
    t->AddTri(-1, 1, 3);
    prj->GetCntsExt()->Add({{0, 0, 1}, {10, 0, 1}, {10, 10, vesk::kUndefined}, {10, 10, 2}, {0, 10, 1}, {5, 5, 1}});
    prj->GetVncs()->Add({{0, 0, 1}, {1, 1, 1}});
    prj->GetVncs()->Add({{1, 1, 1}, {2, 2, std::nan("")}});
    prj->GetVncs()->Add({{2, 2, 1}, {3, 3, 1}});
    doc.GetDisLibDtm()->AddAllDtm(false);
    EXPECT_EQ(eng->Faces().size(), 1u);
    // The boundary with a hole in it: two open runs; breaklines: two.
    ASSERT_EQ(eng->Polys3D().size(), 4u);
    EXPECT_EQ(eng->Polys3D()[0].count, 2u);
    EXPECT_EQ(eng->Polys3D()[1].count, 3u);
    EXPECT_FALSE(eng->Polys3D()[1].h.flags & roadx::cad::kFlagClosed);
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
}

// z = x/10 + y/5 over the 20 m square: each level k = 1..5 is one straight
// line x + 2y = 10k; level 6 only touches the corner (20, 20) and is no line.
TEST(Contours, PlaneGivesOneStraightLinePerLevel) {
    CVantriDoc doc;
    dxtest::BuildPlaneDtm(doc);
    const auto lines = roadx::display::ComputeContours(*doc.GetLibDtm()->GetPrj(0)->GetTris(), 1.0);
    ASSERT_EQ(lines.size(), 5u);
    for (size_t i = 0; i < lines.size(); ++i) {
        const auto& c = lines[i];
        EXPECT_EQ(c.level, static_cast<long long>(i + 1));
        EXPECT_FALSE(c.closed);
        ASSERT_GE(c.pts.size(), 2u);
        for (const auto& p : c.pts) {
            EXPECT_EQ(p.z, c.z);
            EXPECT_NEAR(p.x + 2 * p.y, 10.0 * c.level, 1e-9);
            EXPECT_TRUE(p.x >= -1e-9 && p.x <= 20 + 1e-9 && p.y >= -1e-9 && p.y <= 20 + 1e-9);
        }
        // Its ends are on the square's border.
        for (const auto& p : {c.pts.front(), c.pts.back()}) {
            const bool border = std::fabs(p.x) < 1e-9 || std::fabs(p.y) < 1e-9 || std::fabs(p.x - 20) < 1e-9 ||
                                std::fabs(p.y - 20) < 1e-9;
            EXPECT_TRUE(border) << p.x << " " << p.y;
        }
        for (size_t k = 1; k < c.pts.size(); ++k) EXPECT_FALSE(c.pts[k] == c.pts[k - 1]);
    }
}

// A cone: apex (0, 0, 10) over a ring of 8 vertices of radius 10 at z 0.
// Level k is a closed octagon of radius 10 - k.
TEST(Contours, ConeGivesClosedRings) {
    CTris t;
    t.AddVert({0, 0, 10});
    for (int i = 0; i < 8; ++i) {
        const double a = i * std::numbers::pi / 4;
        t.AddVert({10 * std::cos(a), 10 * std::sin(a), 0});
    }
    for (int i = 0; i < 8; ++i) t.AddTri(0, 1 + i, 1 + (i + 1) % 8);
    const auto lines = roadx::display::ComputeContours(t, 1.0);
    ASSERT_EQ(lines.size(), 9u);
    for (const auto& c : lines) {
        EXPECT_TRUE(c.closed);
        ASSERT_EQ(c.pts.size(), 8u);
        for (const auto& p : c.pts) EXPECT_NEAR(std::hypot(p.x, p.y), 10.0 - c.z, 1e-9);
    }
    // Half-metre interval: 19 rings; an interval that is no interval: none.
    EXPECT_EQ(roadx::display::ComputeContours(t, 0.5).size(), 19u);
    EXPECT_TRUE(roadx::display::ComputeContours(t, 0.0).empty());
    EXPECT_TRUE(roadx::display::ComputeContours(t, -1.0).empty());
    EXPECT_TRUE(roadx::display::ComputeContours(t, std::nan("")).empty());
    // Far too many levels for the surface: nothing rather than hours; level
    // numbers beyond what integers hold: nothing.
    EXPECT_TRUE(roadx::display::ComputeContours(t, 1e-9).empty());
    CTris high;
    high.AddVert({0, 0, 1e19});
    high.AddVert({1, 0, 1e19 + 8192});
    high.AddVert({0, 1, 1e19});
    high.AddTri(0, 1, 2);
    EXPECT_TRUE(roadx::display::ComputeContours(high, 1000.0).empty());
}

TEST(Contours, TwoConesSideBySideGiveTwoRingsPerLevel) {
    CTris t;
    for (double cx : {0.0, 30.0}) {
        const int apex = t.AddVert({cx, 0, 10});
        int first = -1;
        for (int i = 0; i < 6; ++i) {
            const double a = i * std::numbers::pi / 3;
            const int v = t.AddVert({cx + 10 * std::cos(a), 10 * std::sin(a), 0});
            if (first < 0) first = v;
        }
        for (int i = 0; i < 6; ++i) t.AddTri(apex, first + i, first + (i + 1) % 6);
    }
    const auto lines = roadx::display::ComputeContours(t, 2.5);
    ASSERT_EQ(lines.size(), 6u);  // levels 2.5, 5, 7.5, two rings each
    EXPECT_EQ(lines[0].z, 2.5);
    EXPECT_EQ(lines[5].z, 7.5);
}

TEST_F(DtmDisplay, ContoursInTheirDrawingWithIndexLabels) {
    dxtest::BuildPlaneDtm(doc);
    doc.GetCts()->SetInterval(0.5);
    doc.GetDisCts()->CreaTutto(true, false);
    const DrawingHandle d = doc.GetCts()->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "Curve di livello");
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Poly3D), 11u);  // 0.5 .. 5.5
    // Every fifth level (2.5, 5) labelled with its elevation.
    EXPECT_EQ(dxtest::TextsOf(*eng, d), (std::vector<std::string>{"2.5", "5"}));
    // Switched off: nothing; DelTutto removes them.
    doc.GetCts()->SetEnabled(false);
    doc.GetDisCts()->CreaTutto(true, false);
    EXPECT_EQ(eng->GetNoEntities(), 0u);
    doc.GetCts()->SetEnabled(true);
    doc.GetDisCts()->CreaTutto(false, false);
    for (const auto& p : eng->Polys3D())
        for (const auto& v : dxtest::VerticesOf(*eng, p)) EXPECT_EQ(v.z, 0.0);
    doc.GetDisCts()->DelTutto();
    EXPECT_EQ(eng->GetNoEntities(), 0u);
}

}  // namespace
