// SaveAllDataToDxfDwg and FExportFileDxfDwgNew: the dialogs, the document's
// display removed and drawn again, the export engine, the messages.
#include <gtest/gtest.h>

#include "display/display.h"
#include "display/doc_display.h"
#include "cad/zedra_eng.h"
#include "dxfdwg/drawing_export.h"
#include "tests/dxfdwg/dxfdwg_test_util.h"
#include "exchange/exchange.h"

namespace {

using dxtest::CScriptedUi;
using dxtest::CTempDir;

// Everything a test compares to see that the document came back unchanged.
struct TDocState {
    size_t entities = 0;
    std::vector<std::pair<std::string, size_t>> perDrawing;
    std::vector<int> refs;
    std::vector<DrawingHandle> targets;
    size_t drawings = 0;
    bool operator==(const TDocState&) const = default;
};

std::vector<DrawingHandle> Targets(CVantriDoc& d) {
    std::vector<DrawingHandle> t = {d.GetLibCmp()->GetTargetDrawing(),  d.GetLibGps()->GetTargetDrawing(),
                                    d.GetCts()->GetTargetDrawing(),     d.GetLibPnt()->GetTargetDrawing(),
                                    d.GetLibGis()->GetTargetDrawing(),  d.GetLibProfile()->GetTargetDrawing()};
    for (int i = 0; i < d.GetLibCmp()->GetJobArSize(); ++i) t.push_back(d.GetLibCmp()->GetJobAt(i)->GetTargetDrawing());
    for (int i = 0; i < d.GetLibGps()->GetGrpArSize(); ++i) t.push_back(d.GetLibGps()->GetGrpAt(i)->GetTargetDrawing());
    for (int i = 0; i < d.GetLibPnt()->GetGrpArSize(); ++i) t.push_back(d.GetLibPnt()->GetGrpAt(i)->GetTargetDrawing());
    for (int i = 0; i < d.GetLibGis()->GetNumThemes(); ++i) t.push_back(d.GetLibGis()->GetThemeTargetDrawing(i));
    for (unsigned i = 0; i < d.GetLibDtm()->GetNoPrj(); ++i) t.push_back(d.GetLibDtm()->GetPrj(i)->GetTargetDrawing());
    for (unsigned i = 0; i < d.GetLibRoad()->GetNumRoads(); ++i) t.push_back(d.GetLibRoad()->GetRoad(i)->GetTargetDrawing());
    return t;
}

TDocState State(CVantriDoc& d) {
    TDocState s;
    CZedraEng* e = d.GetZedraEng();
    s.entities = e->GetNoEntities();
    for (const auto& dr : e->GetDrawings()) {
        s.perDrawing.emplace_back(dr.name, e->GetNoEntitiesOfDrawing(dr.handle));
        s.refs.push_back(dr.refs);
    }
    s.targets = Targets(d);
    s.drawings = e->GetDrawings().size();
    return s;
}

class SaveAllTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallDocumentDisplay(doc);
        dxtest::BuildSurvey(doc);
        dxtest::BuildPlaneDtm(doc);
        dxtest::BuildRoad(doc);
        CCld* cloud = doc.GetLibCld()->AddCld("Scansione");
        cloud->Points() = {{1, 1, 1}, {2, 2, 2}, {vesk::kUndefined, 3, 3}};
        RefreshDocumentDisplay(doc);
        // Something of the user's own, on the engine's "Grafica".
        roadx::cad::TEntAttr a;
        doc.GetZedraEng()->AddLine(a, {0, 0, 0}, {-50, -50, 0});
    }
    CVantriDoc doc;
    CScriptedUi ui;
    CHostUiScope scope{&ui};
    CTempDir dir;
};

TEST_F(SaveAllTest, OptionDialogGetsTheDocumentsEngineBlocksAndFlag) {
    CZedraEng* de = doc.GetZedraEng();
    de->AddBlock("Pozzetto", false);
    de->AddBlock("Interno", true);
    doc.SetDocFlag(false);
    ui.optOk = false;
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_EQ(ui.optCalls, 1);
    EXPECT_EQ(ui.optEng, de);
    EXPECT_EQ(ui.optNoBlocks, 1);
    EXPECT_FALSE(ui.optDocFlag);
    // The options start from the command's own defaults.
    const bool defaults[6] = {true, false, false, true, true, true};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(ui.optFlagsIn[i], defaults[i]) << i;
}

TEST_F(SaveAllTest, CancelledOptionDialogLeavesTheDocumentUntouched) {
    const TDocState before = State(doc);
    const uint64_t changes = doc.GetZedraEng()->GetChangeCount();
    ui.optOk = false;
    CZedraEng eng(0, nullptr, true);
    const TExchangeStatus out =
        roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_TRUE((out.code == TExchangeStatus::CANCELLED));
    EXPECT_EQ(State(doc), before);
    EXPECT_EQ(doc.GetZedraEng()->GetChangeCount(), changes);
    EXPECT_EQ(eng.GetChangeCount(), 0u);
    EXPECT_EQ(eng.GetNoEntities(), 0u);
    EXPECT_FALSE(dxtest::Exists(dir.File("a.dxf")));
    EXPECT_TRUE(ui.messages.empty());
}

TEST_F(SaveAllTest, ExportDrawsIntoGraficaDrawingsAndGivesTheDocumentBack) {
    const TDocState before = State(doc);
    CZedraEng* de = doc.GetZedraEng();
    const DrawingHandle dtmDoc = doc.GetLibDtm()->GetPrj(0)->GetTargetDrawing();
    const DrawingHandle roadDoc = doc.GetLibRoad()->GetRoad(0)->GetTargetDrawing();
    const size_t faces = de->GetNoEntitiesOfDrawing(dtmDoc, roadx::cad::EEntKind::Face3D);
    ASSERT_EQ(faces, 8u);
    CZedraEng eng(0, nullptr, true);
    const TExchangeStatus out =
        roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_FALSE((out.code == TExchangeStatus::CANCELLED));
    EXPECT_EQ(out.detail, 0);
    EXPECT_TRUE(dxtest::Exists(dir.File("a.dxf")));
    EXPECT_TRUE(ui.messages.empty());
    // The document: same drawings, entities, references and targets.
    EXPECT_EQ(State(doc), before);
    // The export engine: the document's drawings are there (copied) but
    // empty of display entities, which went to their "Grafica_" drawings.
    const DrawingHandle dtmExp = eng.GetDrawingFromName("Grafica_" + de->GetDrawingName(dtmDoc));
    const DrawingHandle roadExp = eng.GetDrawingFromName("Grafica_" + de->GetDrawingName(roadDoc));
    ASSERT_NE(dtmExp, 0u);
    ASSERT_NE(roadExp, 0u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(dtmDoc), 0u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(roadDoc), 0u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(dtmExp, roadx::cad::EEntKind::Face3D), faces);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(roadExp), de->GetNoEntitiesOfDrawing(roadDoc));
    // References taken for the export are given back.
    EXPECT_EQ(eng.GetDrawingRefCount(dtmExp), 0);
    EXPECT_EQ(eng.GetDrawingRefCount(roadExp), 0);
    // The user's own line came over on "Grafica"; the cloud on its own drawing.
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(eng.GetDrawingFromName("Grafica"), roadx::cad::EEntKind::Line), 1u);
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(eng.GetDrawingFromName("Scansione"), roadx::cad::EEntKind::Point), 2u);
    EXPECT_EQ(de->GetDrawingFromName("Scansione"), 0u);
}

TEST_F(SaveAllTest, NotificationsAreHeldWhileEntitiesChange) {
    int docCalls = 0, expCalls = 0;
    doc.GetZedraEng()->SetListener([&] { ++docCalls; });
    CZedraEng eng(0, nullptr, true);
    eng.SetListener([&] { ++expCalls; });
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_EQ(expCalls, 1);
    EXPECT_EQ(docCalls, 2);  // the removal, then the drawing again
}

TEST_F(SaveAllTest, HiddenDrawingsAreNotDrawnUnderVisibleOnly) {
    CGrpPnt* g = doc.GetLibPnt()->GetGrpAt(0);
    doc.GetZedraEng()->SetDrawingVisible(g->GetTargetDrawing(), false);
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    const DrawingHandle exp = eng.GetDrawingFromName("Grafica_" + doc.GetZedraEng()->GetDrawingName(g->GetTargetDrawing()));
    ASSERT_NE(exp, 0u);
    EXPECT_FALSE(eng.IsDrawingVisible(exp));
    EXPECT_EQ(eng.GetNoEntitiesOfDrawing(exp), 0u);
    // Without the option they are drawn (and the hidden layer written).
    ui.flags[0] = false;
    CZedraEng eng2(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("b.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng2);
    EXPECT_EQ(eng2.GetNoEntitiesOfDrawing(eng2.GetDrawingFromName(eng.GetDrawingName(exp)), roadx::cad::EEntKind::Point), 4u);
}

TEST_F(SaveAllTest, CloudsOnlyWithTheirOption) {
    ui.flags[3] = false;
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_EQ(eng.GetDrawingFromName("Scansione"), 0u);
    EXPECT_EQ(eng.GetNoEntities(roadx::cad::EEntKind::Point), 4u + 2u + 3u);  // points, GPS, total station
}

TEST_F(SaveAllTest, FlattenAndVersionReachTheFile) {
    ui.flags[2] = true;
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R12, false, &eng);
    const std::string text = dxtest::ReadAll(dir.File("a.dxf"));
    EXPECT_NE(text.find("AC1009"), std::string::npos);
    // Every z of every entity (groups 30..33) is 0.
    std::istringstream in(text);
    std::string code, value;
    int zs = 0;
    bool entities = false;
    while (std::getline(in, code) && std::getline(in, value)) {
        if (value == "ENTITIES") entities = true;
        const int c = std::atoi(code.c_str());
        if (entities && c >= 30 && c <= 33) {
            ++zs;
            EXPECT_EQ(std::atof(value.c_str()), 0.0) << value;
        }
    }
    EXPECT_GT(zs, 100);
}

TEST_F(SaveAllTest, PointNameOptionsComeFromTheDocument) {
    COpzDisEgn& o = doc.GetOpzListDisEgn()->GetOpzPun();
    o.textHeight = 1.25;
    o.showElev = false;
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    const DrawingHandle labels = eng.GetDrawingFromName("Grafica_" + doc.GetZedraEng()->GetDrawingName(doc.GetLibPnt()->GetTargetDrawing()));
    std::vector<std::string> texts;
    for (const auto& t : eng.Texts())
        if (t.h.drawing == labels) {
            texts.emplace_back(eng.TextOf(t));
            EXPECT_EQ(t.height, 1.25);
        }
    EXPECT_EQ(texts, (std::vector<std::string>{"CS1", "CS2", "NoZ"}));
}

TEST_F(SaveAllTest, DiskFullIsReported) {
    const TDocState before = State(doc);
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, "/dev/full", ZEDRA_DXFDWG_VER_R2000, false, &eng);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].first, "Creazione file DXF/DWG");
    EXPECT_EQ(ui.messages[0].second, "Errore !/n/nDisco pieno");
    EXPECT_EQ(State(doc), before);
}

TEST_F(SaveAllTest, WriteProtectedTargetIsReported) {
    const TDocState before = State(doc);
    CZedraEng eng(0, nullptr, true);
    SaveAllDataToDxfDwg(&doc, dir.File("no/such/folder/a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].first, "Creazione file DXF/DWG");
    EXPECT_EQ(ui.messages[0].second, "Errore !/n/nAccesso in scrittura non consentito");
    EXPECT_EQ(State(doc), before);
}

TEST_F(SaveAllTest, UpperCaseDwgWritesDwgOnlyWhenAllowed) {
    CZedraEng eng(0, nullptr, true);
    TExchangeStatus out = roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&doc, dir.File("A.DWG"), ZEDRA_DXFDWG_VER_R2000, FIsDwgPath(dir.File("A.DWG"), true), &eng);
    EXPECT_EQ(out.detail, 0);
    EXPECT_EQ(dxtest::ReadAll(dir.File("A.DWG")).substr(0, 6), "AC1015");  // a DWG file's own signature
    CZedraEng eng2(0, nullptr, true);
    out = roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&doc, dir.File("B.DWG"), ZEDRA_DXFDWG_VER_R2000, false, &eng2);
    EXPECT_EQ(out.detail, 0);
    EXPECT_EQ(dxtest::ReadAll(dir.File("B.DWG")).substr(0, 9), "  0\nSECTI");
    // DWG exists as R2000 only: an R12 DWG is refused, silently.
    CZedraEng eng3(0, nullptr, true);
    out = roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&doc, dir.File("C.dwg"), ZEDRA_DXFDWG_VER_R12, FIsDwgPath(dir.File("C.dwg"), true), &eng3);
    EXPECT_EQ(out.detail, roadx::cad::kSaveDwgUnsupported);
    EXPECT_FALSE(dxtest::Exists(dir.File("C.dwg")));
    EXPECT_TRUE(ui.messages.empty());  // any other result is silent
}

TEST_F(SaveAllTest, DocumentWithoutDisplayStillExports) {
    CVantriDoc bare;
    dxtest::BuildSurvey(bare);
    dxtest::BuildRoad(bare);
    CZedraEng eng(0, nullptr, true);
    const TExchangeStatus out =
        roadx::dxfdwg::SaveAllDataToDxfDwgStatus(&bare, dir.File("a.dxf"), ZEDRA_DXFDWG_VER_R2000, false, &eng);
    EXPECT_EQ(out.detail, 0);
    EXPECT_EQ(ui.optEng, nullptr);
    // No drawing of their own: everything lands on the engine's "Grafica".
    EXPECT_EQ(eng.GetDrawings().size(), 1u);
    EXPECT_GT(eng.GetNoEntitiesOfDrawing(eng.GetDrawingFromName("Grafica")), 20u);
    EXPECT_EQ(bare.GetLibRoad()->GetRoad(0)->GetTargetDrawing(), 0u);
}

TEST_F(SaveAllTest, FileDialogThenExportAlwaysFalse) {
    ui.filePath = dir.File("b.dxf");
    ui.fileVer = ZEDRA_DXFDWG_VER_R12;
    // The dialog starts from the path it is given.
    const std::string start = dir.File("start/here.dxf");
    EXPECT_FALSE(FExportFileDxfDwgNew(&doc, start.c_str(), true));
    EXPECT_EQ(ui.fileCalls, 1);
    EXPECT_EQ(ui.filePathIn, start);
    EXPECT_TRUE(ui.fileDwgAllowedIn);
    EXPECT_TRUE(ui.fileFlagIn);
    EXPECT_EQ(ui.optCalls, 1);
    EXPECT_NE(dxtest::ReadAll(dir.File("b.dxf")).find("AC1009"), std::string::npos);
    // Cancelled file dialog: no option dialog, nothing written.
    ui.fileOk = false;
    ui.filePath = dir.File("c.dxf");
    EXPECT_FALSE(FExportFileDxfDwgNew(&doc, "x.dxf", false));
    EXPECT_EQ(ui.optCalls, 1);
    EXPECT_FALSE(dxtest::Exists(dir.File("c.dxf")));
    // Disk full: still false, with the message.
    ui.fileOk = true;
    ui.filePath = "/dev/full";
    EXPECT_FALSE(FExportFileDxfDwgNew(&doc, "x.dxf", false));
    EXPECT_EQ(ui.messages.size(), 1u);
}

TEST_F(SaveAllTest, StatusSaysHowItEnded) {
    ui.filePath = dir.File("b.dwg");
    ui.fileVer = ZEDRA_DXFDWG_VER_R12;
    TExchangeStatus st = roadx::dxfdwg::ExportFileDxfDwgStatus(&doc, "", true);
    EXPECT_EQ(st.code, TExchangeStatus::WRITE_FAILED);
    EXPECT_EQ(st.detail, roadx::cad::kSaveDwgUnsupported);
    EXPECT_FALSE(dxtest::Exists(dir.File("b.dwg")));
    ui.fileVer = ZEDRA_DXFDWG_VER_R2000;
    ui.filePath = "/dev/full";
    st = roadx::dxfdwg::ExportFileDxfDwgStatus(&doc, "", true);
    EXPECT_EQ(st.code, TExchangeStatus::WRITE_FAILED);
    EXPECT_EQ(st.message, "cannot write: No space left on device");  // the system's reason
    EXPECT_EQ(st.detail, roadx::cad::kSaveDiskFull);
    ui.optOk = false;
    EXPECT_EQ(roadx::dxfdwg::ExportFileDxfDwgStatus(&doc, "", true).code, TExchangeStatus::CANCELLED);
    ui.optOk = true;
    ui.filePath = dir.File("ok.dxf");
    EXPECT_TRUE(roadx::dxfdwg::ExportFileDxfDwgStatus(&doc, "", true).ok());
}

TEST(FIsDwgPath, EndingComparedWithoutCase) {
    EXPECT_TRUE(FIsDwgPath("a.dwg", true));
    EXPECT_TRUE(FIsDwgPath("/x/y/PLAN.DWG", true));
    EXPECT_TRUE(FIsDwgPath("b.DwG", true));
    EXPECT_FALSE(FIsDwgPath("/x/y/PLAN.DWG", false));
    EXPECT_FALSE(FIsDwgPath("a.dxf", true));
    EXPECT_FALSE(FIsDwgPath("a.dwgx", true));
    EXPECT_FALSE(FIsDwgPath("adwg", true));
    // Shorter than five characters: the whole path is compared.
    EXPECT_TRUE(FIsDwgPath(".dwg", true));
    EXPECT_TRUE(FIsDwgPath(".DWG", true));
    EXPECT_FALSE(FIsDwgPath("dwg", true));
    EXPECT_FALSE(FIsDwgPath("", true));
}

}  // namespace
