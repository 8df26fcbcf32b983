// The reader's driver, plan chain and profile, checked through the builder
// calls it makes (host trace).
#include <gtest/gtest.h>

#include <cmath>

#include "rd3/rd3_reader.h"
#include "rd3_test_doc.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

const char* kMessage =
    "Alcune sezioni del file importato non possono essere lette.\n Per ulteriori informazioni contattare "
    "l'assistenza (comando '?|Gestisci segnalazioni').";

// A file with a road record and the given element records chained after it.
Image PlanImage(const std::vector<std::vector<uint8_t>>& elems, double x = 1000, double y = 2000, double prog = 50) {
    Image img;
    std::vector<uint32_t> chain = {AddRoadRecord(img, x, y, prog)};
    for (const auto& e : elems) chain.push_back(img.Append(e));
    img.Chain(chain);
    img.SetDir(0, chain[0]);
    return img;
}

// Point at distance s along a clothoid by Simpson integration of its
// direction, independent of the host's Fresnel evaluation.
vesk::geom::PNT_2D IntegrateClothoid(vesk::geom::PNT_2D p, double theta0, double k0, double dk, double s) {
    const int n = 20000;
    const double h = s / n;
    double sx = 0, sy = 0;
    for (int i = 0; i <= n; ++i) {
        const double t = i * h;
        const double th = theta0 + k0 * t + dk * t * t / 2;
        const double w = (i == 0 || i == n) ? 1 : (i % 2 ? 4 : 2);
        sx += w * std::cos(th);
        sy += w * std::sin(th);
    }
    return {p.x + sx * h / 3, p.y + sy * h / 3};
}

}  // namespace

TEST(Rd3ReaderDriver, RoadNameFromTheFileName) {
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath("Road.old.rd3"), "Road");
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath("C:\\a\\Strada.1.rd3"), "Strada");
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath("/tmp/dir.x/Via Roma.rd3"), "Via Roma");
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath("/tmp/a\\b/c"), "c");
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath("noext"), "noext");
    EXPECT_EQ(roadx::rd3::Rd3RoadNameFromPath(".rd3"), "");
}

TEST(Rd3ReaderDriver, ImportFromAFileTakesTheNameFromThePath) {
    Image img = PlanImage({EncodeStraightRecord({0.0, 10.0}, 218)});
    const std::string path = TempPath("Road.old.rd3");
    WriteFileBytes(path, img.bytes);
    CVantriDoc doc;
    CTraceMemory trace;
    {
        CTraceScope scope(&trace);
        EXPECT_EQ(roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3Status(&doc, path.c_str())), roadx::rd3::ReadEnd::kOk);
    }
    ASSERT_EQ(doc.GetLibRoad()->GetNumRoads(), 1u);
    EXPECT_EQ(doc.GetLibRoad()->GetRoad(0)->GetName(), "Road");
    EXPECT_EQ(trace.lines.at(0), "AddRoad \"Road\" 50 true");
    std::remove(path.c_str());
}

TEST(Rd3ReaderDriver, SilentEndsForMissingEmptyOrRoadlessFiles) {
    CVantriDoc doc;
    ScriptedUi ui;
    CHostUiScope scope(&ui);
    EXPECT_EQ(roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3Status(&doc, TempPath("does_not_exist.rd3").c_str())), roadx::rd3::ReadEnd::kOpenFailed);
    const std::string empty = TempPath("empty.rd3");
    WriteFileBytes(empty, {});
    EXPECT_EQ(roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3Status(&doc, empty.c_str())), roadx::rd3::ReadEnd::kEmpty);
    std::remove(empty.c_str());
    Image img;  // all directory offsets 0xFFFFFFFE
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kNoRoad);
    img.SetDir(0, 0);
    ImportRun run0;
    run0.Run(img.bytes);
    EXPECT_EQ(run0.status, roadx::rd3::ReadEnd::kNoRoad);
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(run.trace.lines.empty());
    EXPECT_EQ(doc.GetLibRoad()->GetNumRoads(), 0u);
}

TEST(Rd3ReaderDriver, DirectoryTagsOutOfOrderShowTheOneMessage) {
    ScriptedUi ui;
    CHostUiScope scope(&ui);
    {
        Image img = PlanImage({});
        img.SetTag(0, 2);
        ImportRun run;
        run.Run(img.bytes);
        EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadDirectory);
        EXPECT_TRUE(run.Calls().empty());
    }
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0], kMessage);
    EXPECT_NE(ui.messages[0].find("lette.\n Per"), std::string::npos);
    {
        // Second tag wrong: the road already read stays.
        Image img = PlanImage({EncodeStraightRecord({0.0, 10.0}, 218)});
        img.SetTag(1, 5);
        ImportRun run;
        run.Run(img.bytes);
        EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadDirectory);
        EXPECT_EQ(run.Ops(), (std::vector<std::string>{"AddRoad", "StartRoadPlani", "AddRoadRect", "EndRoadPlani"}));
        EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 1u);
    }
    for (int slot : {2, 3}) {
        Image img = PlanImage({});
        img.SetTag(slot, 7);
        ImportRun run;
        run.Run(img.bytes);
        EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadDirectory);
        // The road's recalculation is blocked before the check.
        EXPECT_TRUE(run.Road()->GetOpzRoadRecalc()->IsBlockRecalc());
    }
    EXPECT_EQ(ui.messages.size(), 4u);
}

TEST(Rd3ReaderDriver, ChangeEventBracketsTheSectionPart) {
    Image img = PlanImage({});
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(run.doc.GetLibRoad()->GetContext()->GetDepth(), 0);
    EXPECT_EQ(run.doc.GetLibRoad()->GetContext()->GetBatchCount(), 1);
    EXPECT_TRUE(run.Road()->GetOpzRoadRecalc()->IsBlockRecalc());
}

TEST(Rd3ReaderDriver, RoadOffsetNotAtARoadRecord) {
    // An empty road as the writer makes it: slot 1 points at the profile.
    Image img;
    const uint32_t prof = img.Append(EncodeProfileRecord());
    img.SetDir(0, prof);
    img.SetDir(1, prof);
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadRoadRecord);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_TRUE(run.Calls().empty());
    // Slot 1 pointing at the end of the file: nothing there at all.
    Image bare;
    bare.SetDir(0, 218);
    ImportRun run2;
    run2.Run(bare.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_EQ(run2.Messages(), 1);
}

TEST(Rd3ReaderPlan, RunningPointTangentAndChainage) {
    RD3ArcRecord arc{1, 200.0, 100.0, false, 0.0};          // short form: keeps the tangent
    RD3ClotRecord clot{0, 1, 200.0, 50.0, false, 0.0, 0.0};  // exit spiral, short form
    Image img = PlanImage({EncodeStraightRecord({0.0, 100.0}, 0), EncodeArcRecord(arc, 0), EncodeClotRecord(clot, 0),
                           EncodeStraightRecord({1.0, 10.0}, 0)});
    ImportRun run;
    run.Run(img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto calls = run.Calls();
    ASSERT_EQ(calls.size(), 7u);
    EXPECT_EQ(calls[0], "AddRoad \"Road\" 50 true");
    EXPECT_EQ(calls[1], "StartRoadPlani");
    EXPECT_EQ(calls[2], "AddRoadRect 50 1000 2000 0 1 100");
    EXPECT_EQ(calls[3], "AddRoadArc 150 1000 2100 0 1 200 0.5 false");
    // Arc end: centre to the right of north, turned by 0.5 rad.
    const double ex = 1200 - 200 * std::cos(0.5), ey = 2100 + 200 * std::sin(0.5);
    const auto& c = calls[4];
    EXPECT_EQ(Op(c), "AddRoadClot");
    EXPECT_EQ(Num(c, 1), 250.0);
    EXPECT_NEAR(Num(c, 2), ex, 1e-9);
    EXPECT_NEAR(Num(c, 3), ey, 1e-9);
    EXPECT_NEAR(Num(c, 4), std::sin(0.5), 1e-12);
    EXPECT_NEAR(Num(c, 5), std::cos(0.5), 1e-12);
    EXPECT_EQ(Num(c, 6), 1.0);
    EXPECT_DOUBLE_EQ(Num(c, 7), 100.0);  // A = sqrt(R L)
    EXPECT_EQ(Num(c, 8), 200.0);
    EXPECT_EQ(Tokens(c)[9], "false");   // right turn
    EXPECT_EQ(Tokens(c)[10], "false");  // exit spiral
    // Clothoid end by integration: direction north-based angle, turning
    // right with curvature falling from 1/200 to 0 over 50 m.
    const double theta0 = std::atan2(std::cos(0.5), std::sin(0.5));
    const auto end = IntegrateClothoid({ex, ey}, theta0, -1.0 / 200, 1.0 / (200 * 50), 50.0);
    const auto& s = calls[5];
    EXPECT_EQ(Op(s), "AddRoadRect");
    EXPECT_EQ(Num(s, 1), 300.0);
    EXPECT_NEAR(Num(s, 2), end.x, 1e-9);
    EXPECT_NEAR(Num(s, 3), end.y, 1e-9);
    EXPECT_EQ(Num(s, 4), std::sin(1.0));
    EXPECT_EQ(Num(s, 5), std::cos(1.0));
    EXPECT_EQ(calls[6], "EndRoadPlani");
}

TEST(Rd3ReaderPlan, LongFormsTakeTheirAzimuth) {
    RD3ArcRecord arc{0, 100.0, 50.0, true, 1.5};
    RD3ClotRecord clot{1, 0, 300.0, 60.0, true, 2.0, 2e100};
    Image img = PlanImage({EncodeArcRecord(arc, 0), EncodeClotRecord(clot, 0)}, 0, 0, 0);
    ImportRun run;
    run.Run(img.bytes);
    const auto calls = run.Calls();
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_EQ(Op(calls[2]), "AddRoadArc");
    EXPECT_EQ(Num(calls[2], 4), std::sin(1.5));
    EXPECT_EQ(Num(calls[2], 5), std::cos(1.5));
    EXPECT_EQ(Tokens(calls[2])[8], "true");  // sense 0: left
    EXPECT_EQ(Op(calls[3]), "AddRoadClot");
    EXPECT_EQ(Num(calls[3], 1), 50.0);
    EXPECT_EQ(Num(calls[3], 4), std::sin(2.0));
    EXPECT_EQ(Num(calls[3], 5), std::cos(2.0));
    EXPECT_DOUBLE_EQ(Num(calls[3], 7), std::sqrt(300.0 * 60.0));
    EXPECT_EQ(Tokens(calls[3])[9], "true");
    EXPECT_EQ(Tokens(calls[3])[10], "true");  // entry spiral
}

TEST(Rd3ReaderPlan, SecondRadiusDecidesTheClothoidKind) {
    RD3ClotRecord exact{0, 0, 200.0, 50.0, true, 0.0, 1e100};
    RD3ClotRecord cont{0, 1, 200.0, 50.0, true, 0.0, 500.0};
    Image img = PlanImage({EncodeClotRecord(exact, 0), EncodeClotRecord(cont, 0)}, 0, 0, 0);
    ImportRun run;
    run.Run(img.bytes);
    const auto calls = run.Calls();
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_EQ(Op(calls[2]), "AddRoadClot");  // exactly 1e100: ordinary
    EXPECT_EQ(Op(calls[3]), "AddRoadClotCont");
    EXPECT_DOUBLE_EQ(Num(calls[3], 7), std::sqrt(50.0 / std::fabs(1.0 / 500 - 1.0 / 200)));
    EXPECT_EQ(Num(calls[3], 8), 200.0);
    EXPECT_EQ(Num(calls[3], 9), 500.0);
    EXPECT_EQ(Tokens(calls[3])[10], "false");
    EXPECT_EQ(Num(calls[3], 1), 50.0);
}

TEST(Rd3ReaderPlan, UnknownRecordTypesAreSkippedSilently) {
    Image img = PlanImage({EncodeStraightRecord({0.0, 10.0}, 0), EncodeRecHeader(7, 0, 0),
                           EncodeProfileRecord(), EncodeStraightRecord({0.0, 5.0}, 0)},
                          0, 0, 0);
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(run.Messages(), 0);
    const auto rects = run.Lines("AddRoadRect");
    ASSERT_EQ(rects.size(), 2u);
    EXPECT_EQ(rects[1], "AddRoadRect 10 0 10 0 1 5");
}

TEST(Rd3ReaderProfile, CurveRadiusFromLengthAndGrades) {
    Image img = PlanImage({}, 0, 0, 0);
    const uint32_t p = img.Append(EncodeProfileRecord());
    const uint32_t v1 = img.Append(EncodeVertexRecord({0.0, 100.0, true, 30.0}, p));  // first: no curve
    const uint32_t v2 = img.Append(EncodeVertexRecord({100.0, 102.0, true, 40.0}, v1));
    const uint32_t v3 = img.Append(EncodeVertexRecord({200.0, 101.0, false, 0.0}, v2));
    const uint32_t v4 = img.Append(EncodeVertexRecord({300.0, 103.0, true, 20.0}, v3));  // last: no curve
    img.Chain({p, v1, v2, v3, v4});
    img.SetDir(1, p);
    ImportRun run;
    run.Run(img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto calls = run.Calls();
    ASSERT_EQ(calls.size(), 10u);
    EXPECT_EQ(calls[3], "StartRoadAlti");
    EXPECT_EQ(calls[4], "AddRoadPrj");
    EXPECT_EQ(calls[5], "AddRoadProfAltiPrincVrt 0 100");
    EXPECT_EQ(Op(calls[6]), "AddRoadProfAltiRaccVrt");
    const std::vector<double> want = {100, 102, 0, 100, 200, 101, 40.0 / 0.03};
    for (size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(Num(calls[6], i + 1), want[i], 1e-9) << i;
    EXPECT_EQ(Tokens(calls[6])[8], "true");
    EXPECT_EQ(calls[7], "AddRoadProfAltiPrincVrt 200 101");
    EXPECT_EQ(calls[8], "AddRoadProfAltiPrincVrt 300 103");
    EXPECT_EQ(calls[9], "EndRoadAlti");
}

TEST(Rd3ReaderProfile, OneVertexOpensAndClosesOnly) {
    Image img = PlanImage({}, 0, 0, 0);
    const uint32_t p = img.Append(EncodeProfileRecord());
    img.Chain({p, img.Append(EncodeVertexRecord({0.0, 100.0, false, 0.0}, p))});
    img.SetDir(1, p);
    ImportRun run;
    run.Run(img.bytes);
    const auto ops = run.Ops();
    ASSERT_EQ(ops.size(), 5u);
    EXPECT_EQ(ops[3], "StartRoadAlti");
    EXPECT_EQ(ops[4], "EndRoadAlti");
}

TEST(Rd3ReaderProfile, EmptyChainAddsNothingAndOtherTypesRepeatTheVertex) {
    Image img = PlanImage({}, 0, 0, 0);
    const uint32_t p = img.Append(EncodeProfileRecord());
    img.SetDir(1, p);
    ImportRun empty;
    empty.Run(img.bytes);
    EXPECT_EQ(empty.Ops().size(), 3u);  // no profile calls at all

    const uint32_t v1 = img.Append(EncodeVertexRecord({0.0, 100.0, false, 0.0}, p));
    const uint32_t odd = img.Append(EncodeStraightRecord({0.0, 1.0}, v1));
    const uint32_t v2 = img.Append(EncodeVertexRecord({100.0, 101.0, false, 0.0}, odd));
    img.Chain({p, v1, odd, v2});
    ImportRun run;
    run.Run(img.bytes);
    const auto v = run.Lines("AddRoadProfAltiPrincVrt");
    ASSERT_EQ(v.size(), 3u);
    EXPECT_EQ(v[0], "AddRoadProfAltiPrincVrt 0 100");
    EXPECT_EQ(v[1], "AddRoadProfAltiPrincVrt 0 100");
    EXPECT_EQ(v[2], "AddRoadProfAltiPrincVrt 100 101");
}

TEST(Rd3ReaderProfile, ANextLinkOfZeroIsFollowed) {
    Image img = PlanImage({}, 0, 0, 0);
    const uint32_t p = img.Append(EncodeProfileRecord());
    const uint32_t v1 = img.Append(EncodeVertexRecord({0.0, 100.0, false, 0.0}, p));
    const uint32_t v2 = img.Append(EncodeVertexRecord({100.0, 101.0, false, 0.0}, v1));
    img.Chain({p, v1, v2});
    img.SetNext(v2, 0);
    img.SetDir(1, p);
    // The "record" at offset 0 is the signature: not a vertex, so it repeats
    // the last vertex. Its next-link lies in the signature's padding, which
    // readers ignore; end the chain there.
    PatchU32(img.bytes, 10, kNoRecord);
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto v = run.Lines("AddRoadProfAltiPrincVrt");
    ASSERT_EQ(v.size(), 3u);
    EXPECT_EQ(v[2], "AddRoadProfAltiPrincVrt 100 101");
    // With the padding left as zeros, offset 0 links to itself: a loop.
    PatchU32(img.bytes, 10, 0);
    ImportRun loop;
    loop.Run(img.bytes);
    EXPECT_EQ(loop.status, roadx::rd3::ReadEnd::kLoop);
    EXPECT_EQ(loop.Messages(), 1);
    EXPECT_EQ(loop.Lines("AddRoadProfAltiPrincVrt").size(), 3u);  // what was read is kept
}

TEST(Rd3ReaderProfile, WrongProfileRecordType) {
    Image img = PlanImage({}, 0, 0, 0);
    const uint32_t p = img.Append(EncodeVertexRecord({0.0, 100.0, false, 0.0}, kNoRecord));
    img.SetDir(1, p);
    ImportRun run;
    run.Run(img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadProfileRecord);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_EQ(run.doc.GetLibRoad()->GetNumRoads(), 1u);
}
