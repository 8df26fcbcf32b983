// The writer's header, directory, plan chain and profile, byte by byte.
#include <gtest/gtest.h>

#include <cmath>

#include "rd3_test_doc.h"
#include "exchange/exchange.h"

using namespace rd3test;
using roadx::rd3::kNoRecord;

namespace {

// Checks an 18-byte record header at pos.
void ExpectHeader(const std::vector<uint8_t>& b, size_t pos, uint16_t type, uint32_t size, uint32_t next,
                  uint32_t prev) {
    ASSERT_LE(pos + 18, b.size());
    EXPECT_EQ(U16At(b, pos), type) << pos;
    EXPECT_EQ(U32At(b, pos + 2), 18u) << pos;
    EXPECT_EQ(U32At(b, pos + 6), size) << pos;
    EXPECT_EQ(U32At(b, pos + 10), next) << pos;
    EXPECT_EQ(U32At(b, pos + 14), prev) << pos;
}

}  // namespace

TEST(Rd3WriterRoad, EmptyRoadStillPointsSlotOnePastTheHeader) {
    RoadDoc d("Vuota");
    d.EndPlan();
    const auto b = d.Export("empty.rd3");
    ASSERT_EQ(b.size(), 218u);
    EXPECT_EQ(U32At(b, 100), 218u);
    EXPECT_EQ(U32At(b, 106), kNoRecord);
    EXPECT_EQ(U32At(b, 112), kNoRecord);
    EXPECT_EQ(U32At(b, 118), kNoRecord);
    // Byte for byte: the header with slot 1 patched, and nothing after it.
    auto want = roadx::rd3::EncodeFileHeader(u"Vuota");
    roadx::rd3::PatchU32(want, 100, 218);
    EXPECT_EQ(b, want);
}

TEST(Rd3WriterRoad, EmptyRoadWithProfileLeadsTheReaderToTheProfileRecord) {
    RoadDoc d("Vuota");
    d.EndPlan();
    d.Profile({{0, 100}, {100, 101}});
    const auto b = d.Export("empty_profile.rd3");
    EXPECT_EQ(U32At(b, 100), 218u);
    EXPECT_EQ(U32At(b, 106), 218u);
    ExpectHeader(b, 218, 10, 8, 244, kNoRecord);
    ImportRun run;
    run.Run(b);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadRoadRecord);
    EXPECT_EQ(run.Messages(), 1);
}

TEST(Rd3WriterRoad, HeaderNameIsCutTo33Units) {
    RoadDoc d("Una strada con un nome davvero molto lungo");
    d.EndPlan();
    const auto b = d.Export("long_name.rd3");
    EXPECT_EQ(std::vector<uint8_t>(b.begin() + 30, b.begin() + 96), AsciiName("Una strada con un nome davvero mo"));
    EXPECT_EQ(U16At(b, 28), 33);
    EXPECT_EQ(U16At(b, 96), 20);
}

TEST(Rd3WriterRoad, PlanChainRecordsAndLinks) {
    RoadDoc d("Piano", 50.0, {1000, 2000}, {0, 1});
    d.Rect(100);
    d.Arc(200, 0.5, false);
    d.Clot(100, 200, false, false);              // exit spiral, L = 50
    d.Clot(std::sqrt(300.0 * 60), 300, true, true);  // entry spiral, L = 60
    d.Rect(10);
    d.EndPlan();
    const auto b = d.Export("plan.rd3");
    // Offsets by hand: road 218 (66 bytes), straight 284 (34), arc 318 (46),
    // clothoid 364 (58), clothoid 422 (58), straight 480 (34), end 514.
    ASSERT_EQ(b.size(), 514u);
    EXPECT_EQ(U32At(b, 100), 218u);
    ExpectHeader(b, 218, 1, 48, 284, kNoRecord);
    EXPECT_EQ(F64At(b, 236), 2000.0);
    EXPECT_EQ(F64At(b, 244), 1000.0);
    EXPECT_EQ(std::vector<uint8_t>(b.begin() + 252, b.begin() + 260), Hex("a4 d1 33 f0 ac 61 0e 00"));
    EXPECT_EQ(F64At(b, 260), 0.0);  // north
    EXPECT_EQ(F64At(b, 268), 50.0);
    EXPECT_EQ(F64At(b, 276), 15.24);

    ExpectHeader(b, 284, 2, 16, 318, 218);
    EXPECT_EQ(F64At(b, 302), 0.0);
    EXPECT_EQ(F64At(b, 310), 100.0);

    ExpectHeader(b, 318, 4, 28, 364, 284);
    EXPECT_EQ(U32At(b, 336), 1u);  // right turn
    EXPECT_NEAR(F64At(b, 340), 200.0, 1e-9);
    EXPECT_NEAR(F64At(b, 348), 100.0, 1e-9);
    EXPECT_EQ(F64At(b, 356), 0.0);

    ExpectHeader(b, 364, 3, 40, 422, 318);
    EXPECT_EQ(U32At(b, 382), 0u);  // exit spiral
    EXPECT_EQ(U32At(b, 386), 1u);  // right turn
    EXPECT_NEAR(F64At(b, 390), 200.0, 1e-9);  // radius at its start
    EXPECT_NEAR(F64At(b, 398), 50.0, 1e-9);
    EXPECT_NEAR(F64At(b, 406), 0.5, 1e-12);   // turned right by 0.5 rad
    EXPECT_EQ(std::vector<uint8_t>(b.begin() + 414, b.begin() + 422), Hex("7d c3 94 25 ad 49 c2 54"));

    ExpectHeader(b, 422, 3, 40, 480, 364);
    EXPECT_EQ(U32At(b, 440), 1u);  // entry spiral
    EXPECT_EQ(U32At(b, 444), 0u);  // left turn
    EXPECT_NEAR(F64At(b, 448), 300.0, 1e-9);  // radius at its end
    EXPECT_NEAR(F64At(b, 456), 60.0, 1e-9);
    // The exit spiral turned right by L / 2R = 0.125 more.
    EXPECT_NEAR(F64At(b, 464), 0.625, 1e-12);

    ExpectHeader(b, 480, 2, 16, kNoRecord, 422);
    EXPECT_NEAR(F64At(b, 498), 0.625 - 0.1, 1e-12);  // the entry spiral turned left by 0.1
    EXPECT_EQ(F64At(b, 506), 10.0);
}

TEST(Rd3WriterRoad, ClothoidBetweenRadiiIsLeftOutButKeepsTheLinks) {
    RoadDoc d("Cont");
    d.Rect(100);
    d.ClotCont(std::sqrt(50.0 / (1.0 / 200 - 1.0 / 400)), 400, 200, true);
    d.Rect(30);
    d.EndPlan();
    const auto b = d.Export("cont.rd3");
    ASSERT_EQ(b.size(), 218u + 66 + 34 + 34);
    ExpectHeader(b, 218, 1, 48, 284, kNoRecord);
    ExpectHeader(b, 284, 2, 16, 318, 218);
    // The straight after the dropped element names its own start as previous.
    ExpectHeader(b, 318, 2, 16, kNoRecord, 318);
    EXPECT_EQ(F64At(b, 344), 30.0);
}

TEST(Rd3WriterRoad, DroppedLastElementLinksToWhateverFollows) {
    RoadDoc d("Cont");
    d.Rect(100);
    d.ClotCont(std::sqrt(50.0 / (1.0 / 200 - 1.0 / 400)), 400, 200, true);
    d.ClotCont(std::sqrt(50.0 / (1.0 / 400 - 1.0 / 800)), 800, 400, true);
    d.EndPlan();
    {
        const auto b = d.Export("cont_end.rd3");
        EXPECT_EQ(b.size(), 318u);  // nothing written for either element
        ExpectHeader(b, 284, 2, 16, 318, 218);
    }
    d.Profile({{0, 100}, {100, 101}});
    const auto b = d.Export("cont_end_profile.rd3");
    ExpectHeader(b, 284, 2, 16, 318, 218);
    ExpectHeader(b, 318, 10, 8, 344, kNoRecord);  // the profile record
    EXPECT_EQ(U32At(b, 106), 318u);
}

TEST(Rd3WriterRoad, ProfileVerticesAndCurves) {
    RoadDoc d("Prof");
    d.Rect(300);
    d.EndPlan();
    d.b->StartRoadAlti();
    CProfileAlti* prj = d.b->AddRoadPrj();
    d.b->AddRoadProfAltiPrincVrt(0, 100);
    d.b->AddRoadProfAltiRaccVrt(100, 102, 0, 100, 200, 101, 40.0 / 0.03, false);
    d.b->EndRoadAlti();
    TAltiVrt plain;  // neither principal nor terrain-derived: not written
    plain.prog = 150;
    plain.quota = 103;
    prj->AddVrt(plain);
    TAltiVrt dtm;
    dtm.prog = 200;
    dtm.quota = 101;
    dtm.flags = TAltiVrt::DTM;
    prj->AddVrt(dtm);
    const auto b = d.Export("profile.rd3");
    // road 218 (66), straight 284 (34), profile 318 (26), vertices 344 (34),
    // 378 (42), 420 (34), end 454.
    ASSERT_EQ(b.size(), 454u);
    EXPECT_EQ(U32At(b, 106), 318u);
    ExpectHeader(b, 318, 10, 8, 344, kNoRecord);
    EXPECT_EQ(F64At(b, 336), 0.0);
    ExpectHeader(b, 344, 11, 16, 378, 318);
    EXPECT_EQ(F64At(b, 362), 0.0);
    EXPECT_EQ(F64At(b, 370), 100.0);
    ExpectHeader(b, 378, 12, 24, 420, 344);
    EXPECT_EQ(F64At(b, 396), 100.0);
    EXPECT_EQ(F64At(b, 404), 102.0);
    EXPECT_NEAR(F64At(b, 412), 40.0, 1e-9);
    ExpectHeader(b, 420, 11, 16, kNoRecord, 378);
    EXPECT_EQ(F64At(b, 438), 200.0);
    EXPECT_EQ(F64At(b, 446), 101.0);
}

TEST(Rd3WriterRoad, ProfileWithoutWritableVerticesGivesABareRecord) {
    RoadDoc d("Prof");
    d.Rect(300);
    d.EndPlan();
    d.b->StartRoadAlti();
    CProfileAlti* prj = d.b->AddRoadPrj();
    d.b->EndRoadAlti();
    TAltiVrt plain;
    plain.prog = 150;
    plain.quota = 103;
    prj->AddVrt(plain);
    const auto b = d.Export("bare_profile.rd3");
    ASSERT_EQ(b.size(), 318u + 26);
    ExpectHeader(b, 318, 10, 8, kNoRecord, kNoRecord);
    // No project line at all: slot 2 stays unpatched.
    RoadDoc e("NoProf");
    e.Rect(10);
    e.EndPlan();
    EXPECT_EQ(U32At(e.Export("no_profile.rd3"), 106), kNoRecord);
}

TEST(Rd3WriterRoad, SaveDialogArgumentsAndCancel) {
    RoadDoc d("Dialogo");
    d.Rect(10);
    d.EndPlan();
    ScriptedUi ui;
    CHostUiScope scope(&ui);
    FExportRD3(*d.road);  // cancelled: nothing written
    ASSERT_EQ(ui.dialogs.size(), 1u);
    EXPECT_EQ(ui.dialogs[0].defExt, "rd3");
    EXPECT_EQ(ui.dialogs[0].fileName, "Dialogo");
    EXPECT_EQ(ui.dialogs[0].flags, 6u);
    EXPECT_EQ(ui.dialogs[0].filter, "File strade Skeikrik(*.rd3)|*.rd3||");
    ui.answer = TempPath("dialog.rd3");
    std::remove(ui.answer.c_str());
    FExportRD3(*d.road);
    const auto b = ReadFileBytes(ui.answer);
    EXPECT_EQ(b.size(), 218u + 66 + 34);
    EXPECT_TRUE(ui.messages.empty());
    std::remove(ui.answer.c_str());
}

TEST(Rd3WriterRoad, UncreatableFileIsReportedToCallersOnly) {
    RoadDoc d("X");
    d.EndPlan();
    const TExchangeStatus st = roadx::rd3::WriteRD3File(*d.road, "/nonexistent-dir/x.rd3");
    EXPECT_EQ(st.code, TExchangeStatus::WRITE_FAILED);
    // The reason in the same words as every format; the caller names the path.
    EXPECT_EQ(st.message, "cannot create: No such file or directory");
}
