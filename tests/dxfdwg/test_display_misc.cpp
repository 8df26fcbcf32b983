// GIS themes and point clouds.
#include <gtest/gtest.h>

#include "display/cld_draw.h"
#include "display/display.h"
#include "display/doc_display.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

using vesk::geom::PNT_3D;
using F = gis::CTheme::Feature;

TEST(GisDisplay, FeaturesAsTheirGeometryAndThemeNames) {
    CVantriDoc doc;
    InstallDocumentDisplay(doc);
    CZedraEng* eng = doc.GetZedraEng();
    gis::CTheme* t = doc.GetLibGis()->AddTheme("Pozzetti");
    t->Features().push_back({F::POINT, {{5, 5, 1}}});
    t->Features().push_back({F::POINT, {{vesk::kUndefined, 5, 1}}});
    t->Features().push_back({F::POLYLINE, {{0, 0, 0}, {1, 0, 0}, {2, vesk::kUndefined, 0}, {3, 0, 0}, {4, 0, 0}}});
    t->Features().push_back({F::POLYGON, {{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 0, 0}}});
    doc.GetLibGis()->AddTheme("Vuoto");
    doc.GetDisLibGis()->CreaTutto();
    const DrawingHandle d = doc.GetLibGis()->GetThemeTargetDrawing(0);
    EXPECT_EQ(eng->GetDrawingName(d), "GIS_Pozzetti");
    EXPECT_EQ(doc.GetLibGis()->GetThemeTargetDrawing(1), 0u);
    ASSERT_EQ(eng->Points().size(), 1u);
    EXPECT_EQ(eng->Points()[0].p, (PNT_3D{5, 5, 1}));
    ASSERT_EQ(eng->Polys3D().size(), 3u);  // the polyline in two runs, the polygon
    EXPECT_EQ(eng->Polys3D()[0].count, 2u);
    EXPECT_EQ(eng->Polys3D()[1].count, 2u);
    EXPECT_EQ(dxtest::VerticesOf(*eng, eng->Polys3D()[2]), (std::vector<PNT_3D>{{0, 0, 0}, {9, 0, 0}, {9, 9, 0}}));
    EXPECT_TRUE(eng->Polys3D()[2].h.flags & roadx::cad::kFlagClosed);
    const DrawingHandle names = doc.GetLibGis()->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(names), "GIS");
    EXPECT_EQ(dxtest::TextsOf(*eng, names), (std::vector<std::string>{"Pozzetti"}));
    EXPECT_EQ(eng->Texts()[0].p, (PNT_3D{5, 5, 1}));
    doc.GetDisLibGis()->CreaTutto();
    EXPECT_EQ(eng->GetNoEntities(), 5u);
    doc.GetDisLibGis()->AnnullaTutto();
    EXPECT_EQ(eng->GetNoEntities(), 0u);
}

TEST(CloudDraw, PointsInTheDrawingOfItsName) {
    CCld c("Scansione");
    c.Points() = {{1, 2, 3}, {4, 5, vesk::kUndefined}, {std::nan(""), 1, 1}, {7, 8, 9}};
    CZedraEng eng(0, nullptr, true);
    roadx::display::DrawCloud(c, &eng);
    const DrawingHandle d = eng.GetDrawingFromName("Scansione");
    ASSERT_NE(d, 0u);
    bool set = false;
    unsigned colour = 0;
    eng.GetDrawingColor(d, set, colour);
    EXPECT_TRUE(set);
    ASSERT_EQ(eng.Points().size(), 2u);
    EXPECT_EQ(eng.Points()[1].p, (PNT_3D{7, 8, 9}));
    EXPECT_EQ(eng.Points()[1].h.drawing, d);
    // A drawing of that name that exists is used as it is.
    CCld other("grafica");
    other.Points() = {{0, 0, 0}};
    roadx::display::DrawCloud(other, &eng);
    EXPECT_EQ(eng.Points()[2].h.drawing, eng.GetDrawingFromName("Grafica"));
    EXPECT_EQ(eng.GetDrawings().size(), 2u);
    roadx::display::DrawCloud(c, nullptr);  // no engine: nothing, no crash
}

TEST(Display, DocumentWithoutEngineOrEmptyLibrariesDrawsNothing) {
    CVantriDoc doc;
    InstallDocumentDisplay(doc);
    RefreshDocumentDisplay(doc);
    EXPECT_EQ(doc.GetZedraEng()->GetNoEntities(), 0u);
    EXPECT_EQ(doc.GetZedraEng()->GetDrawings().size(), 1u);
    CDisLibPnt orphan(nullptr, &doc);
    orphan.CreaTutto(true, true);
    orphan.AnnullaTutto();
    CDisRoad noDoc(doc.GetZedraEng(), nullptr);
    noDoc.AddAllRoads();
    CVantriDoc bare;
    RefreshDocumentDisplay(bare);  // no display installed: nothing
    EXPECT_EQ(bare.GetZedraEng(), nullptr);
}

}  // namespace
