// The export engine's drawings that stand for the document's, and how the
// holders' target drawings are saved, pointed at them and put back.
#include <gtest/gtest.h>

#include "display/doc_display.h"
#include "cad/zedra_eng.h"
#include "dxfdwg/export_targets.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"

using namespace roadx::dxfdwg;

namespace {

struct TLook {
    std::string name;
    bool visible, locked, colourSet;
    unsigned colour;
};

TLook Look(const CZedraEng& e, DrawingHandle h) {
    TLook l{e.GetDrawingName(h), e.IsDrawingVisible(h), e.IsDrawingLocked(h), false, 0};
    e.GetDrawingColor(h, l.colourSet, l.colour);
    return l;
}

DrawingHandle Coloured(CZedraEng& e, const std::string& name, unsigned colour, bool visible = true, bool locked = false) {
    const DrawingHandle h = e.AddDrawing(0, name, visible, locked, false);
    e.SetDrawingColor(h, true, colour);
    return h;
}

TEST(FindOrAddExportDrawing, ZeroAndUnknownHandlesGiveZero) {
    CZedraEng e(0, nullptr, true);
    const size_t before = e.GetDrawings().size();
    EXPECT_EQ(FindOrAddExportDrawing(&e, 0), 0u);
    EXPECT_EQ(FindOrAddExportDrawing(&e, 987654), 0u);
    EXPECT_EQ(FindOrAddExportDrawing(nullptr, 1), 0u);
    EXPECT_EQ(e.GetDrawings().size(), before);
}

TEST(FindOrAddExportDrawing, ALayerThatLooksLikeGraficaSharesIt) {
    CZedraEng e(0, nullptr, true);
    const DrawingHandle grafica = e.GetDrawingFromName("Grafica");
    // Visible, unlocked, no colour: as the engine's own "Grafica".
    const DrawingHandle plain = e.AddDrawing(0, "Appunti", true, false, false);
    EXPECT_EQ(FindOrAddExportDrawing(&e, plain), grafica);
    EXPECT_EQ(FindOrAddExportDrawing(&e, grafica), grafica);
    EXPECT_EQ(e.GetDrawings().size(), 2u);
}

TEST(FindOrAddExportDrawing, AColouredLayerGetsItsOwnNameWithItsLook) {
    CZedraEng e(0, nullptr, true);
    const DrawingHandle src = Coloured(e, "Strade", 3, false, true);
    const DrawingHandle got = FindOrAddExportDrawing(&e, src);
    ASSERT_NE(got, 0u);
    ASSERT_NE(got, src);
    const TLook l = Look(e, got);
    EXPECT_EQ(l.name, "Grafica_Strade");
    EXPECT_FALSE(l.visible);
    EXPECT_TRUE(l.locked);
    EXPECT_TRUE(l.colourSet);
    EXPECT_EQ(l.colour, 3u);
    // The same source again, or another that looks the same, shares it.
    EXPECT_EQ(FindOrAddExportDrawing(&e, src), got);
    EXPECT_EQ(e.GetDrawings().size(), 3u);
}

TEST(FindOrAddExportDrawing, SameNameDifferentColoursGetNumberedNames) {
    CZedraEng e(0, nullptr, true);
    const DrawingHandle red = Coloured(e, "Strade", 1);
    const DrawingHandle a = FindOrAddExportDrawing(&e, red);
    // A second source drawing of the same name but green (the first one is
    // renamed so the engine can hold both names in turn).
    ASSERT_TRUE(e.SetDrawingName(red, "Vecchie"));
    const DrawingHandle green = Coloured(e, "Strade", 3);
    const DrawingHandle b = FindOrAddExportDrawing(&e, green);
    EXPECT_EQ(e.GetDrawingName(a), "Grafica_Strade");
    EXPECT_EQ(e.GetDrawingName(b), "Grafica_Strade2");
    EXPECT_EQ(Look(e, b).colour, 3u);
    // A third colour goes on to 3; the first colour still finds its own.
    ASSERT_TRUE(e.SetDrawingName(green, "Verdi"));
    const DrawingHandle blue = Coloured(e, "Strade", 5);
    EXPECT_EQ(e.GetDrawingName(FindOrAddExportDrawing(&e, blue)), "Grafica_Strade3");
    ASSERT_TRUE(e.SetDrawingName(blue, "Blu"));
    ASSERT_TRUE(e.SetDrawingName(red, "Strade"));
    EXPECT_EQ(FindOrAddExportDrawing(&e, red), a);
}

TEST(FindOrAddExportDrawing, LockedOrHiddenDifferencesAlsoNumber) {
    CZedraEng e(0, nullptr, true);
    const DrawingHandle s = Coloured(e, "Lotti", 4);
    const DrawingHandle a = FindOrAddExportDrawing(&e, s);
    e.SetDrawingLocked(s, true);
    const DrawingHandle b = FindOrAddExportDrawing(&e, s);
    e.SetDrawingLocked(s, false);
    e.SetDrawingVisible(s, false);
    const DrawingHandle c = FindOrAddExportDrawing(&e, s);
    EXPECT_EQ(e.GetDrawingName(a), "Grafica_Lotti");
    EXPECT_EQ(e.GetDrawingName(b), "Grafica_Lotti2");
    EXPECT_EQ(e.GetDrawingName(c), "Grafica_Lotti3");
    EXPECT_TRUE(e.IsDrawingLocked(b));
    EXPECT_FALSE(e.IsDrawingVisible(c));
}

// A document whose every holder has a drawing of its own in its engine.
class TargetsTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallDocumentDisplay(doc);
        dxtest::BuildSurvey(doc);
        dxtest::BuildPlaneDtm(doc);
        dxtest::BuildRoad(doc);
        doc.GetLibGis()->AddTheme("Confini")->Features().push_back({gis::CTheme::Feature::POLYGON, {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}}});
        RefreshDocumentDisplay(doc);
        doc.GetLibPnt()->AddGrp("Vuoto");  // never drawn: no drawing (0)
    }
    CVantriDoc doc;
};

TEST_F(TargetsTest, SavedInTheDocumentedOrder) {
    CSavedTargets s;
    SaveTargetDrawings(&doc, s);
    using K = TSavedTarget;
    const std::vector<K::Kind> kinds = {K::LIB_CMP, K::LIB_GPS, K::CTS,     K::LIB_PNT, K::LIB_GIS, K::LIB_PROFILE,
                                        K::JOB,     K::GRP_GPS, K::GRP_PNT, K::GRP_PNT, K::THEME,   K::DTM_PRJ,
                                        K::ROAD};
    ASSERT_EQ(s.size(), kinds.size());
    for (size_t i = 0; i < kinds.size(); ++i) EXPECT_EQ(s[i].kind, kinds[i]) << i;
    EXPECT_EQ(s[0].saved, doc.GetLibCmp()->GetTargetDrawing());
    EXPECT_EQ(s[2].saved, doc.GetCts()->GetTargetDrawing());
    EXPECT_EQ(s[8].index, 0);
    EXPECT_EQ(s[9].index, 1);
    EXPECT_EQ(s[8].saved, doc.GetLibPnt()->GetGrpAt(0)->GetTargetDrawing());
    EXPECT_EQ(s[9].saved, 0u);
    EXPECT_EQ(s[10].saved, doc.GetLibGis()->GetThemeTargetDrawing(0));
    EXPECT_EQ(s[11].saved, doc.GetLibDtm()->GetPrj(0)->GetTargetDrawing());
    EXPECT_EQ(s[12].saved, doc.GetLibRoad()->GetRoad(0)->GetTargetDrawing());
    for (size_t i = 0; i < s.size(); ++i) {
        if (i == 9) continue;
        EXPECT_NE(s[i].saved, 0u) << i;
    }
}

TEST_F(TargetsTest, PointedAtGraficaDrawingsAndPutBackWithReferences) {
    CZedraEng* docEng = doc.GetZedraEng();
    CZedraEng exp(0, nullptr, true);
    exp.CopiaDa(docEng, true);
    CSavedTargets s;
    SaveTargetDrawings(&doc, s);
    SetExportTargetDrawings(&doc, &exp, s);
    const DrawingHandle grafica = exp.GetDrawingFromName("Grafica");
    for (const auto& t : s) {
        if (t.saved == 0) {
            EXPECT_EQ(t.exported, grafica);  // no drawing of its own: the engine's own layer
            EXPECT_FALSE(t.referenced);
            continue;
        }
        EXPECT_EQ(exp.GetDrawingName(t.exported), "Grafica_" + docEng->GetDrawingName(t.saved));
        bool f1, f2;
        unsigned c1, c2;
        docEng->GetDrawingColor(t.saved, f1, c1);
        exp.GetDrawingColor(t.exported, f2, c2);
        EXPECT_EQ(c1, c2);
        EXPECT_EQ(t.referenced, t.kind == TSavedTarget::DTM_PRJ || t.kind == TSavedTarget::ROAD);
    }
    // Every holder now names the export drawing.
    EXPECT_EQ(doc.GetLibPnt()->GetGrpAt(0)->GetTargetDrawing(), s[8].exported);
    EXPECT_EQ(doc.GetLibPnt()->GetGrpAt(1)->GetTargetDrawing(), grafica);
    EXPECT_EQ(doc.GetLibGis()->GetThemeTargetDrawing(0), s[10].exported);
    const DrawingHandle dtmExp = s[11].exported, roadExp = s[12].exported;
    EXPECT_EQ(doc.GetLibDtm()->GetPrj(0)->GetTargetDrawing(), dtmExp);
    EXPECT_EQ(exp.GetDrawingRefCount(dtmExp), 1);
    EXPECT_EQ(exp.GetDrawingRefCount(roadExp), 1);
    // The document's engine is not touched: its references stay.
    EXPECT_EQ(docEng->GetDrawingRefCount(s[11].saved), 1);
    EXPECT_EQ(docEng->GetDrawingRefCount(s[12].saved), 1);

    RestoreTargetDrawings(&doc, &exp, s);
    EXPECT_EQ(exp.GetDrawingRefCount(dtmExp), 0);
    EXPECT_EQ(exp.GetDrawingRefCount(roadExp), 0);
    CSavedTargets after;
    SaveTargetDrawings(&doc, after);
    ASSERT_EQ(after.size(), s.size());
    for (size_t i = 0; i < s.size(); ++i) EXPECT_EQ(after[i].saved, s[i].saved) << i;
}

TEST_F(TargetsTest, TwoRoadsOnOneDrawingAreReferencedTwice) {
    dxtest::BuildRoad(doc, "Bis");
    CRoad* r0 = doc.GetLibRoad()->GetRoad(0);
    CRoad* r1 = doc.GetLibRoad()->GetRoad(1);
    r1->SetTargetDrawing(r0->GetTargetDrawing());
    CZedraEng exp(0, nullptr, true);
    exp.CopiaDa(doc.GetZedraEng(), true);
    CSavedTargets s;
    SaveTargetDrawings(&doc, s);
    SetExportTargetDrawings(&doc, &exp, s);
    EXPECT_EQ(r0->GetTargetDrawing(), r1->GetTargetDrawing());
    EXPECT_EQ(exp.GetDrawingRefCount(r0->GetTargetDrawing()), 2);
    const DrawingHandle shared = r0->GetTargetDrawing();
    RestoreTargetDrawings(&doc, &exp, s);
    EXPECT_EQ(exp.GetDrawingRefCount(shared), 0);
}

}  // namespace
