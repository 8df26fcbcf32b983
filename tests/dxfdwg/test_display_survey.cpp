// Display objects of points, GPS groups and total-station jobs, and the
// drawings every library and object draws into.
#include <gtest/gtest.h>

#include <set>

#include "display/display.h"
#include "display/doc_display.h"
#include "cad/doc_symbol_manager.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

namespace {

using vesk::geom::PNT_3D;

class SurveyDisplay : public ::testing::Test {
protected:
    void SetUp() override {
        InstallDocumentDisplay(doc);
        dxtest::BuildSurvey(doc);
        eng = doc.GetZedraEng();
    }
    CVantriDoc doc;
    CZedraEng* eng = nullptr;
};

TEST_F(SurveyDisplay, InstalledDisplayHasAFreshEngineAndNineObjects) {
    ASSERT_NE(eng, nullptr);
    EXPECT_EQ(eng->GetDrawings().size(), 1u);
    EXPECT_EQ(eng->GetDrawingName(eng->GetCurrentDrawing()), "Grafica");
    EXPECT_EQ(eng->GetNoEntities(), 0u);
    EXPECT_EQ(doc.GetDocSymbolManager()->GetEngine(), eng);
    const std::set<const roadx::display::CDisBase*> all = {
        doc.GetDisPtNome(), doc.GetDisLibCmp(), doc.GetDisLibGps(), doc.GetDisCts(),       doc.GetDisLibPnt(),
        doc.GetDisLibDtm(), doc.GetDisRoad(),   doc.GetDisLibProfile(), doc.GetDisLibGis()};
    EXPECT_EQ(all.size(), 9u);
    for (const auto* d : all) {
        EXPECT_EQ(d->GetEng(), eng);
        EXPECT_EQ(d->GetDoc(), &doc);
    }
}

TEST_F(SurveyDisplay, PointsAndTheirLabels) {
    doc.GetDisLibPnt()->CreaTutto(true, false);
    doc.GetDisPtNome()->RiCreaTutto(true, false);
    const CGrpPnt* g = doc.GetLibPnt()->GetGrpAt(0);
    const DrawingHandle pd = g->GetTargetDrawing();
    const DrawingHandle ld = doc.GetLibPnt()->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(pd), "Punti_Capisaldi");
    EXPECT_EQ(eng->GetDrawingName(ld), "Punti");
    std::vector<PNT_3D> pts;
    for (const auto& p : eng->Points()) {
        EXPECT_EQ(p.h.drawing, pd);
        pts.push_back(p.p);
    }
    EXPECT_EQ(pts, (std::vector<PNT_3D>{{100, 200, 50.5}, {110, 205, 51.25}, {120, 210, 52}, {130, 215, 0}}));
    EXPECT_EQ(dxtest::TextsOf(*eng, ld), (std::vector<std::string>{"CS1", "50.500", "CS2", "51.250", "52.000", "NoZ"}));
    // Name above right of the point, elevation below right, 0.5 high.
    const auto& name = eng->Texts()[0];
    const auto& elev = eng->Texts()[1];
    EXPECT_EQ(name.p, (PNT_3D{100.125, 200.125, 50.5}));
    EXPECT_EQ(name.valign, roadx::cad::EVAlign::Bottom);
    EXPECT_EQ(elev.p, (PNT_3D{100.125, 199.875, 50.5}));
    EXPECT_EQ(elev.valign, roadx::cad::EVAlign::Top);
    EXPECT_EQ(name.height, 0.5);
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
}

TEST_F(SurveyDisplay, FlatDrawingPutsEverythingAtZeroButKeepsElevationLabels) {
    doc.GetDisLibPnt()->CreaTutto(false, false);
    doc.GetDisPtNome()->RiCreaTutto(false, false);
    for (const auto& p : eng->Points()) EXPECT_EQ(p.p.z, 0.0);
    for (const auto& t : eng->Texts()) EXPECT_EQ(t.p.z, 0.0);
    EXPECT_EQ(dxtest::TextsOf(*eng, doc.GetLibPnt()->GetTargetDrawing()).size(), 6u);
}

TEST_F(SurveyDisplay, DescriptionsWhenAsked) {
    doc.GetLibPnt()->GetPtnAt(0, 0)->SetSecScri("spigolo");
    doc.GetDisPtNome()->GetOpzListNew()->GetOpzPun().showDesc = true;
    doc.GetDisPtNome()->GetOpzListNew()->GetOpzPun().showName = false;
    doc.GetDisPtNome()->RiCreaTutto(true, false);
    EXPECT_EQ(dxtest::TextsOf(*eng, doc.GetLibPnt()->GetTargetDrawing()),
              (std::vector<std::string>{"50.500", "spigolo", "51.250", "52.000"}));
    // RiCreaTutto replaces, never adds.
    doc.GetDisPtNome()->RiCreaTutto(true, false);
    EXPECT_EQ(eng->Texts().size(), 4u);
}

TEST_F(SurveyDisplay, GpsBaseRoversAndVectors) {
    doc.GetDisLibGps()->CreaTutto(true, false);
    const DrawingHandle d = doc.GetLibGps()->GetGrpAt(0)->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "GPS_Rover");
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Point), 2u);  // base and R1 (R2 has no coordinates)
    ASSERT_EQ(eng->Lines().size(), 1u);
    EXPECT_EQ(eng->Lines()[0].a, (PNT_3D{1000, 2000, 300}));
    EXPECT_EQ(eng->Lines()[0].b, (PNT_3D{1010, 2010, 301}));
    ASSERT_EQ(eng->Polys3D().size(), 1u);  // the base's triangle, around it, closed
    const auto tri = dxtest::VerticesOf(*eng, eng->Polys3D()[0]);
    ASSERT_EQ(tri.size(), 3u);
    EXPECT_TRUE(eng->Polys3D()[0].h.flags & roadx::cad::kFlagClosed);
    for (const auto& v : tri) EXPECT_NEAR(std::hypot(v.x - 1000, v.y - 2000), 1.0 / std::sqrt(3.0), 1e-12);
    EXPECT_EQ(dxtest::TextsOf(*eng, doc.GetLibGps()->GetTargetDrawing()),
              (std::vector<std::string>{"BASE", "300.000", "R1", "301.000"}));
}

TEST_F(SurveyDisplay, TotalStationStationsObservationsAndLines) {
    doc.GetDisLibCmp()->CreaTutto(true, false);
    const DrawingHandle d = doc.GetLibCmp()->GetJobAt(0)->GetTargetDrawing();
    EXPECT_EQ(eng->GetDrawingName(d), "TS_Job1");
    ASSERT_EQ(eng->Circles().size(), 1u);
    EXPECT_EQ(eng->Circles()[0].c, (PNT_3D{500, 600, 70}));
    EXPECT_EQ(eng->Circles()[0].r, 0.5);
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(d, roadx::cad::EEntKind::Point), 3u);
    ASSERT_EQ(eng->Lines().size(), 2u);
    EXPECT_EQ(eng->Lines()[1].b, (PNT_3D{500, 620, 0}));  // P2 has no elevation
    EXPECT_EQ(dxtest::TextsOf(*eng, doc.GetLibCmp()->GetTargetDrawing()),
              (std::vector<std::string>{"S1", "70.000", "P1", "71.000", "P2"}));
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
}

TEST_F(SurveyDisplay, EveryObjectGetsItsOwnDrawingOnceWithADistinctColour) {
    doc.GetLibPnt()->AddGrp("Capisaldi");  // a second group of the same name
    CLoadVantriDati b(&doc);
    b.AddGrpPnt("");  // and one without a name
    b.AddPunPnt("Z", 1, 1, 1);
    doc.GetLibPnt()->GetGrpAt(1)->Points().push_back(std::make_unique<CPunPnt>());
    doc.GetLibPnt()->GetPtnAt(1, 0)->SetCoords(5, 5, 5);
    RefreshDocumentDisplay(doc);
    const size_t drawings = eng->GetDrawings().size();
    EXPECT_EQ(eng->GetDrawingName(doc.GetLibPnt()->GetGrpAt(1)->GetTargetDrawing()), "Punti_Capisaldi_2");
    EXPECT_EQ(eng->GetDrawingName(doc.GetLibPnt()->GetGrpAt(2)->GetTargetDrawing()), "Punti_3");
    std::set<unsigned> colours;
    for (const auto& d : eng->GetDrawings()) {
        if (d.name == "Grafica") continue;
        EXPECT_TRUE(d.colourSet) << d.name;
        EXPECT_NE(d.colour, 7u);
        colours.insert(d.colour);
        EXPECT_FALSE(d.priv);
    }
    EXPECT_EQ(colours.size(), drawings - 1);
    // Drawing again reuses the drawings.
    RefreshDocumentDisplay(doc);
    EXPECT_EQ(eng->GetDrawings().size(), drawings);
}

TEST_F(SurveyDisplay, AnnullaTuttoRemovesOnlyItsOwnEntities) {
    roadx::cad::TEntAttr mine;
    eng->AddLine(mine, {0, 0, 0}, {1, 1, 1});
    RefreshDocumentDisplay(doc);
    const size_t all = eng->GetNoEntities();
    const size_t ts = eng->GetNoEntitiesOfDrawing(doc.GetLibCmp()->GetJobAt(0)->GetTargetDrawing()) +
                      eng->GetNoEntitiesOfDrawing(doc.GetLibCmp()->GetTargetDrawing());
    doc.GetDisLibCmp()->AnnullaTutto();
    EXPECT_EQ(eng->GetNoEntities(), all - ts);
    doc.GetDisLibGps()->AnnullaTutto();
    doc.GetDisLibPnt()->AnnullaTutto();
    doc.GetDisPtNome()->AnnullaTutto();
    EXPECT_EQ(eng->GetNoEntities(), 1u);  // the user's line
}

TEST_F(SurveyDisplay, HiddenGroupsAreLeftOutUnderVisibleOnly) {
    RefreshDocumentDisplay(doc);
    eng->SetDrawingVisible(doc.GetLibPnt()->GetGrpAt(0)->GetTargetDrawing(), false);
    doc.GetDisLibPnt()->CreaTutto(true, true);
    doc.GetDisPtNome()->RiCreaTutto(true, true);
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(doc.GetLibPnt()->GetGrpAt(0)->GetTargetDrawing()), 0u);
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(doc.GetLibPnt()->GetTargetDrawing()), 0u);
    eng->SetDrawingFrozen(doc.GetLibCmp()->GetJobAt(0)->GetTargetDrawing(), true);
    doc.GetDisLibCmp()->CreaTutto(true, true);
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(doc.GetLibCmp()->GetJobAt(0)->GetTargetDrawing()), 0u);
}

TEST_F(SurveyDisplay, WildValuesAreNeverDrawn) {
    CLoadVantriDati b(&doc);
    b.AddGrpPnt("Wild");
    for (double v : {1e200, 8.5e199, -9e199, std::nan(""), HUGE_VAL})
        b.AddPunPnt("W", v, 1, 1), b.AddPunPnt("W", 1, v, 1), b.AddPunPnt("W", 1, 1, v);
    RefreshDocumentDisplay(doc);
    EXPECT_TRUE(dxtest::AllCoordinatesDefined(*eng));
    // Only the points with a wild elevation are drawn (at 0, no elevation label).
    EXPECT_EQ(eng->GetNoEntitiesOfDrawing(doc.GetLibPnt()->GetGrpAt(1)->GetTargetDrawing()), 5u);
}

}  // namespace
