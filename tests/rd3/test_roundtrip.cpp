// Document -> RD3 -> document.
#include <gtest/gtest.h>

#include <cmath>

#include "rd3/rd3_reader.h"
#include "rd3/rd3_section_points.h"
#include "rd3_test_doc.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

// Exports the road to a file named <name>.rd3 and imports it into a new
// document.
struct RoundTrip {
    CVantriDoc doc;
    CTraceMemory trace;
    std::vector<uint8_t> bytes;
    roadx::rd3::ReadEnd status = roadx::rd3::ReadEnd::kOk;

    RoundTrip(CRoad& road, const std::string& name) {
        const std::string path = TempPath(name + ".rd3");
        EXPECT_TRUE(roadx::rd3::WriteRD3File(road, path).ok());
        bytes = ReadFileBytes(path);
        CTraceScope scope(&trace);
        status = roadx::rd3::ReadEndOf(roadx::rd3::ImportRD3Status(&doc, path.c_str()));
        std::remove(path.c_str());
    }
    CRoad* Road() { return doc.GetLibRoad()->GetRoad(0); }
};

void ExpectSameElement(const CPlaniElem* a, const CPlaniElem* b, int i) {
    ASSERT_EQ(a->GetType(), b->GetType()) << i;
    EXPECT_NEAR(a->GetProg(), b->GetProg(), 1e-9) << i;
    EXPECT_NEAR(a->GetStartPnt().x, b->GetStartPnt().x, 1e-9) << i;
    EXPECT_NEAR(a->GetStartPnt().y, b->GetStartPnt().y, 1e-9) << i;
    EXPECT_NEAR(a->GetStartTg().x, b->GetStartTg().x, 1e-9) << i;
    EXPECT_NEAR(a->GetStartTg().y, b->GetStartTg().y, 1e-9) << i;
    EXPECT_NEAR(a->GetLength(), b->GetLength(), 1e-9) << i;
    EXPECT_EQ(a->IsLeftTurn(), b->IsLeftTurn()) << i;
    for (double s : {0.0, a->GetLength() / 2, a->GetLength()}) {
        const double ra = a->GetRad(s), rb = b->GetRad(s);
        if (std::isinf(ra)) EXPECT_TRUE(std::isinf(rb)) << i;
        else EXPECT_NEAR(ra, rb, 1e-9 * std::max(1.0, std::fabs(ra))) << i;
    }
    if (a->GetType() == CPlaniElem::CLOTOIDE) {
        const auto* ca = static_cast<const CClotPlaniElem*>(a);
        const auto* cb = static_cast<const CClotPlaniElem*>(b);
        EXPECT_EQ(ca->IsEntrance(), cb->IsEntrance()) << i;
        EXPECT_NEAR(ca->GetClotoide().GetA(), cb->GetClotoide().GetA(), 1e-9) << i;
    }
    EXPECT_NEAR(a->GetEndPnt().x, b->GetEndPnt().x, 1e-9) << i;
    EXPECT_NEAR(a->GetEndPnt().y, b->GetEndPnt().y, 1e-9) << i;
}

// Section points as the reader will build them: STF kept points.
void ExpectSectionPoints(CProfile* s, const std::vector<PNT_2D>& want, double tol) {
    ASSERT_NE(s, nullptr);
    CProfileAlti* pro = s->FindProfileAlti("PRO");
    ASSERT_NE(pro, nullptr);
    ASSERT_EQ(pro->GetNumVrts(), static_cast<int>(want.size())) << s->GetName();
    for (size_t i = 0; i < want.size(); ++i) {
        EXPECT_NEAR(pro->GetVrt(static_cast<int>(i))->prog, want[i].x, tol) << s->GetName() << " " << i;
        EXPECT_NEAR(pro->GetVrt(static_cast<int>(i))->quota, want[i].y, tol) << s->GetName() << " " << i;
    }
}

// A road north from the origin, 0 to 1000, profile 100 + 0.01 × p.
void MakeStraightRoad(RoadDoc& d) {
    d.Rect(1000);
    d.EndPlan();
    d.Profile({{0, 100}, {1000, 110}});
}

}  // namespace

TEST(Rd3RoundTrip, PlanOfStraightsArcsAndClothoids) {
    RoadDoc d("Asse", 25.0, {1000, 2000}, {std::cos(0.3), std::sin(0.3)});
    d.Rect(120);
    d.Clot(std::sqrt(250.0 * 80), 250, true, true);
    d.Arc(250, 0.4, true);
    d.Clot(std::sqrt(250.0 * 80), 250, true, false);
    d.Rect(60);
    d.Clot(std::sqrt(400.0 * 50), 400, false, true);
    d.Arc(400, 0.25, false);
    d.Clot(std::sqrt(400.0 * 50), 400, false, false);
    d.Rect(33.3);
    d.EndPlan();
    d.b->StartRoadAlti();
    d.b->AddRoadPrj();
    d.b->AddRoadProfAltiPrincVrt(25, 100);
    d.b->AddRoadProfAltiRaccVrt(300, 105.5, 25, 100, 600, 102.5, 3000, false);
    d.b->AddRoadProfAltiPrincVrt(600, 102.5);
    d.b->EndRoadAlti();

    RoundTrip rt(*d.road, "Asse.v2");
    ASSERT_EQ(rt.status, roadx::rd3::ReadEnd::kOk);
    CRoad* back = rt.Road();
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->GetName(), "Asse");
    EXPECT_EQ(back->GetStartProg(), 25.0);
    const auto a = d.road->RetrieveLinkedPlaniElems();
    const auto b = back->RetrieveLinkedPlaniElems();
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); ++i) ExpectSameElement(a[i], b[i], static_cast<int>(i));

    CProfileAlti* pa = d.road->GetRoadProfile()->GetMainPrjAlti();
    CProfileAlti* pb = back->GetRoadProfile()->GetMainPrjAlti();
    ASSERT_NE(pb, nullptr);
    ASSERT_EQ(pb->GetNumVrts(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(pb->GetVrt(i)->prog, pa->GetVrt(i)->prog);
        EXPECT_EQ(pb->GetVrt(i)->quota, pa->GetVrt(i)->quota);
        EXPECT_EQ(IsRaccVertAltiVrt(pb->GetVrt(i)), IsRaccVertAltiVrt(pa->GetVrt(i)));
    }
    EXPECT_NEAR(pb->GetVrt(1)->racc.progEnd - pb->GetVrt(1)->racc.progStart,
                pa->GetVrt(1)->racc.progEnd - pa->GetVrt(1)->racc.progStart, 1e-9);
    for (double p : {100.0, 250.0, 290.0, 310.0, 500.0}) {
        bool ok1 = false, ok2 = false;
        EXPECT_NEAR(CalcQuoteAtAltiProg(pa, p, ok1), CalcQuoteAtAltiProg(pb, p, ok2), 1e-9) << p;
    }
}

TEST(Rd3RoundTrip, ClothoidBetweenRadiiIsDroppedOnExport) {
    RoadDoc d("Cont");
    d.Rect(100);
    d.Arc(400, 0.1, true);
    d.ClotCont(std::sqrt(50.0 / (1.0 / 200 - 1.0 / 400)), 400, 200, true);
    d.Rect(30);
    d.EndPlan();
    RoundTrip rt(*d.road, "Cont");
    const auto b = rt.Road()->RetrieveLinkedPlaniElems();
    ASSERT_EQ(b.size(), 3u);
    EXPECT_EQ(b[0]->GetType(), CPlaniElem::RETTIFILO);
    EXPECT_EQ(b[1]->GetType(), CPlaniElem::ARCO);
    EXPECT_EQ(b[2]->GetType(), CPlaniElem::RETTIFILO);
    for (const auto& l : rt.trace.lines) EXPECT_EQ(l.find("AddRoadClotCont"), std::string::npos);
}

TEST(Rd3RoundTrip, SectionPointsComeBackAtEveryAssignedChainage) {
    RoadDoc d;
    MakeStraightRoad(d);
    // Shapes that differ non-linearly, so every section is written.
    const std::vector<std::vector<PNT_2D>> stf = {
        {{-6, 100.5}, {-3, 100.94}, {0, 101}, {3.5, 100.93}, {3.6, 98.93}},      // steep ditch on the right
        {{-4, 102.9}, {0, 102.3}, {2.5, 102.25}, {7, 103.5}},                    // axis above the profile
        {{0, 103}, {3, 102.94}, {5, 101.0}},                                     // no left side
        {{-9, 104.1}, {-3.5, 104.93}, {0, 105}, {3.5, 104.93}, {9, 104.0}},
    };
    const double progs[] = {100, 230, 300, 500};
    for (size_t i = 0; i < stf.size(); ++i) d.Section(progs[i], stf[i]);
    RoundTrip rt(*d.road, "Sezioni");
    ASSERT_EQ(rt.status, roadx::rd3::ReadEnd::kOk);
    CRoad* back = rt.Road();
    ASSERT_EQ(back->GetNumSections(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(back->GetSection(i)->GetName(), "S" + std::to_string(i + 1));
        EXPECT_EQ(back->GetSection(i)->GetSectionProg(), progs[i]);
        ExpectSectionPoints(back->GetSection(i), stf[static_cast<size_t>(i)], 1e-9);
    }
    // The trace runs across the road at the section's chainage.
    CPlaniElem* trace = back->GetSection(0)->GetTrace();
    EXPECT_EQ(trace->GetProg(), -10.0);
    EXPECT_NEAR(trace->GetStartPnt().x, -10.0, 1e-12);
    EXPECT_NEAR(trace->GetStartPnt().y, 100.0, 1e-12);
    EXPECT_EQ(trace->GetLength(), 20.0);
}

TEST(Rd3RoundTrip, SectionsTheReaderCanRebuildAreLeftOut) {
    RoadDoc d;
    MakeStraightRoad(d);
    // Both sides vary linearly from 100 to 300: the middle section is left
    // out. At 400 only the left side keeps varying linearly.
    auto shape = [](double p, double lw, double rw, double rg) {
        const double z = 100 + 0.01 * p;
        return std::vector<PNT_2D>{{-lw, z - 0.02 * lw}, {0, z}, {rw, z + rg * rw}};
    };
    d.Section(100, shape(100, 3.0, 3.5, -0.02));
    d.Section(200, shape(200, 4.0, 4.0, -0.03));
    d.Section(300, shape(300, 5.0, 4.5, -0.04));
    d.Section(400, shape(400, 6.0, 3.0, -0.02));
    d.Section(500, shape(500, 7.0, 3.0, -0.01));
    RoundTrip rt(*d.road, "Lineare");
    ASSERT_EQ(rt.status, roadx::rd3::ReadEnd::kOk);
    CRoad* back = rt.Road();
    ASSERT_EQ(back->GetNumSections(), 4);
    std::vector<double> progs;
    for (int i = 0; i < 4; ++i) progs.push_back(back->GetSection(i)->GetSectionProg());
    EXPECT_EQ(progs, (std::vector<double>{100, 300, 400, 500}));
    // At 300 and 400 the left side is rebuilt by the reader's interpolation.
    ExpectSectionPoints(back->GetSection(1), shape(300, 5.0, 4.5, -0.04), 1e-6);
    ExpectSectionPoints(back->GetSection(2), shape(400, 6.0, 3.0, -0.02), 1e-6);

    // The reader's interpolation at 200 gives the left-out section back.
    CVantriDoc scratch;
    CLoadVantriDati builder(&scratch);
    vesk::CBitStreamReader in(rt.bytes.size(), rt.bytes.data());
    ReadContext ctx(builder, in, rt.bytes.size());
    ASSERT_EQ(ReadTemplates(ctx, U32At(rt.bytes, 112)), roadx::rd3::ReadEnd::kOk);
    ASSERT_EQ(ReadAssignments(ctx, U32At(rt.bytes, 118)), roadx::rd3::ReadEnd::kOk);
    SortAssignments(ctx.assigns);
    // Left templates were written at 100 and 500 only (the left side varies
    // linearly throughout); right ones at 100, 300, 400 and 500.
    auto find = [&](double p, int32_t side) -> RD3SectionTemplate* {
        for (const auto& a : ctx.assigns)
            if (a.prog == p && a.side == side) return FindTemplate(ctx, a.name);
        return nullptr;
    };
    std::vector<std::pair<double, int32_t>> listed;
    for (const auto& a : ctx.assigns) listed.push_back({a.prog, a.side});
    EXPECT_EQ(listed, (std::vector<std::pair<double, int32_t>>{
                          {100, kSideLeft}, {100, kSideRight}, {300, kSideRight}, {400, kSideRight},
                          {500, kSideLeft}, {500, kSideRight}}));
    RD3SectionTemplate* l100 = find(100, kSideLeft);
    RD3SectionTemplate* l500 = find(500, kSideLeft);
    RD3SectionTemplate* r100 = find(100, kSideRight);
    RD3SectionTemplate* r300 = find(300, kSideRight);
    ASSERT_TRUE(l100 && l500 && r100 && r300);
    auto left = InterpolateTemplates(*l100, *l500, 0.25);
    auto right = InterpolateTemplates(*r100, *r300, 0.5);
    ASSERT_TRUE(left && right);
    const auto pts = SectionPoints(left->segments, right->segments, 102.0);
    const auto want = shape(200, 4.0, 4.0, -0.03);
    ASSERT_EQ(pts.size(), want.size());
    for (size_t i = 0; i < pts.size(); ++i) {
        EXPECT_NEAR(pts[i].x, want[i].x, 1e-6) << i;
        EXPECT_NEAR(pts[i].y, want[i].y, 1e-6) << i;
    }
}
