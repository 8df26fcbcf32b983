// Drawings of a document with every kind of content, read back by ezdxf and
// ogrinfo and counted layer by layer against the document.
#include <gtest/gtest.h>

#include "display/doc_display.h"
#include "dxfdwg/drawing_export.h"
#include "tests/dxfdwg/dxfdwg_expect.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"
#include "exchange/exchange.h"

namespace {

class ExternalReaders : public ::testing::TestWithParam<enumZEDRA_DXFDWG_VER> {
protected:
    void SetUp() override {
        ASSERT_TRUE(dxtest::ReadersInstalled()) << "needs python3-ezdxf and gdal-bin";
        InstallDocumentDisplay(doc);
        dxtest::BuildSurvey(doc);
        dxtest::BuildPlaneDtm(doc);
        dxtest::BuildRoad(doc);
        dxtest::BuildRoad(doc, "Città d'Àosta");  // names in code page 1252
        gis::CTheme* t = doc.GetLibGis()->AddTheme("Confini");
        using F = gis::CTheme::Feature;
        t->Features().push_back({F::POLYGON, {{0, 0, 0}, {50, 0, 0}, {50, 50, 0}, {0, 0, 0}}});
        t->Features().push_back({F::POLYLINE, {{0, 0, 0}, {9, 9, vesk::kUndefined}, {1, 1, 0}, {2, 2, 0}}});
        t->Features().push_back({F::POINT, {{3, 3, 3}}});
        doc.GetLibCld()->AddCld("Nuvola 1")->Points() = {{1, 1, 1}, {2, 2, 2}, {3, 3, vesk::kUndefined}};
        RefreshDocumentDisplay(doc);
    }
    CVantriDoc doc;
    dxtest::CScriptedUi ui;
    CHostUiScope scope{&ui};
    dxtest::CTempDir dir;
};

TEST_P(ExternalReaders, EveryLayerHoldsWhatTheDocumentHas) {
    const bool r12 = GetParam() == ZEDRA_DXFDWG_VER_R12;
    ui.filePath = dir.File("all.dxf");
    ui.fileVer = GetParam();
    EXPECT_FALSE(FExportFileDxfDwgNew(&doc, "", false));
    ASSERT_TRUE(dxtest::Exists(ui.filePath));
    nlohmann::json expect = dxtest::Expect(doc, r12 ? "AC1009" : "AC1015", 1.0, 5);
    // Spot checks that the counting rules find what this document holds.
    EXPECT_EQ(expect["layers"]["Grafica_DTM_Piano"]["3DFACE"], 8);
    EXPECT_EQ(expect["layers"]["Grafica_DTM_Piano"]["POLYLINE3D"], 3);
    EXPECT_EQ(expect["layers"]["Grafica_Punti"]["TEXT"], 6);
    EXPECT_EQ(expect["layers"]["Grafica_Strada_Asse"]["TEXT"], 5);
    EXPECT_EQ(expect["layers"]["Grafica_Profili"]["POLYLINE3D"], 10);
    EXPECT_EQ(expect["layers"]["Nuvola 1"]["POINT"], 2);
    expect["texts"]["Grafica_Strada_Città d'Àosta"] = {"0+000.00", "0+100.00", "0+200.00", "0+300.00", "0+359.50"};
    expect["texts"]["Grafica_TS"] = {"S1", "70.000", "P1", "71.000", "P2"};
    expect["texts"]["Grafica_GIS"] = {"Confini"};
    EXPECT_EQ(dxtest::CheckDrawing(ui.filePath, expect, dir.Path()), "");
}

INSTANTIATE_TEST_SUITE_P(Versions, ExternalReaders,
                         ::testing::Values(ZEDRA_DXFDWG_VER_R2000, ZEDRA_DXFDWG_VER_R12),
                         [](const auto& i) { return i.param == ZEDRA_DXFDWG_VER_R12 ? "R12" : "R2000"; });

}  // namespace
