// Which templates the writer puts in the file, their names, reuse and the
// assignment list; byte by byte where they reach the file.
#include <gtest/gtest.h>

#include <cmath>

#include "rd3/rd3_template_plan.h"
#include "rd3_test_doc.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

const Rd3WriterSegment kSlopeSeg{24, 0.785398, 0.588002, {}};

Rd3WriterSegment G(double gradient, double width, std::u16string name = u"") {
    return {22, std::atan(gradient), width, std::move(name)};
}

Rd3SectionData Sec(double prog, Rd3SegmentList left, Rd3SegmentList right) {
    Rd3SectionData s;
    s.prog = prog;
    s.sides.lists[kLeft] = std::move(left);
    s.sides.lists[kRight] = std::move(right);
    s.sides.absent[kLeft] = s.sides.lists[kLeft].empty();
    s.sides.absent[kRight] = s.sides.lists[kRight].empty();
    return s;
}

std::vector<RD3AssignEntry> Names(std::initializer_list<const char16_t*> names) {
    std::vector<RD3AssignEntry> out;
    for (const char16_t* n : names) out.push_back({n, 0.0, 1});
    return out;
}

}  // namespace

TEST(Rd3WriterTemplates, ListEqualityWithinTolerance) {
    EXPECT_TRUE(WriterListsEqual({G(0.02, 3.5), kSlopeSeg}, {G(0.02, 3.5003), kSlopeSeg}));
    EXPECT_FALSE(WriterListsEqual({G(0.02, 3.5)}, {G(0.02, 3.501)}));
    EXPECT_FALSE(WriterListsEqual({G(0.02, 3.5)}, {{25, std::atan(0.02), 3.5, {}}}));
    EXPECT_FALSE(WriterListsEqual({G(0.02, 3.5)}, {G(0.02, 3.5), kSlopeSeg}));
    EXPECT_TRUE(WriterListsEqual({}, {}));
}

TEST(Rd3WriterTemplates, SideNamingMode) {
    const std::vector<Rd3SectionData> apart = {Sec(0, {G(0.02, 3)}, {G(-0.02, 3)}), Sec(10, {G(0.02, 3)}, {G(-0.03, 3)})};
    EXPECT_TRUE(SidesToldApart(apart));
    // One section's left equals another's right.
    const std::vector<Rd3SectionData> mixed = {Sec(0, {G(0.02, 3)}, {G(-0.02, 3)}), Sec(10, {G(-0.02, 3)}, {G(0.05, 3)})};
    EXPECT_FALSE(SidesToldApart(mixed));
    // The same section's sides count too.
    EXPECT_FALSE(SidesToldApart({Sec(0, {G(0.02, 3)}, {G(0.02, 3)})}));
}

TEST(Rd3WriterTemplates, VaryingPositions) {
    const std::vector<Rd3SectionData> s = {
        Sec(0, {G(-0.02, 3.0), G(0.5, 2.0), kSlopeSeg}, {G(-0.02, 3.0)}),
        Sec(10, {G(-0.02, 3.0), G(0.5, 2.5), {24, 0.1, 0.1, {}}, G(0.1, 1)}, {G(-0.02, 3.0)}),
        Sec(20, {{26, 0.0, 0.3, {}}, G(0.5, 2.0)}, {G(-0.02, 3.0 + 1e-13)}),
    };
    const Rd3VaryingMarks m = ComputeVaryingMarks(s, true);
    EXPECT_FALSE(m.shared);
    // Position 0: section 3 has a code 26 there, not compared; position 1
    // varies (2.5); position 2 holds code 24 segments; position 3 has no
    // counterpart in the first section.
    EXPECT_EQ(m.For(kLeft), (std::vector<bool>{false, true, false, false}));
    EXPECT_EQ(m.For(kRight), (std::vector<bool>{false}));  // 1e-13 is within 1e-12
    const Rd3VaryingMarks shared = ComputeVaryingMarks(s, false);
    EXPECT_TRUE(shared.shared);
    EXPECT_EQ(&shared.For(kLeft), &shared.For(kRight));
    EXPECT_EQ(shared.For(kRight), (std::vector<bool>{false, true, false, false}));
}

TEST(Rd3WriterTemplates, NameFromTheWidestVaryingGrade) {
    const Rd3SegmentList list = {G(-0.02, 3.5), G(0.04, 1.0), G(0.3, 8.0), kSlopeSeg};
    EXPECT_EQ(TemplateName("Sez_Sx", list, {true, true, false, false}, {}), u"Sez_Sx_P-2.0%L3.50");
    EXPECT_EQ(TemplateName("Sez_Dx", list, {false, true, false, false}, {}), u"Sez_Dx_P4.0%L1.00");
    EXPECT_EQ(TemplateName("Sez", list, {true, true, true, true}, {}), u"Sez_P29.1%L8.00");
    EXPECT_EQ(TemplateName("Sez", list, {false, false, false, false}, {}), u"Sez_P0.0%L0.00");
    EXPECT_EQ(TemplateName("Sez", list, {}, {}), u"Sez_P0.0%L0.00");
    // A later grade must be wider by more than 1e-12 relative to win.
    const Rd3SegmentList tie = {G(0.01, 3.5), G(0.05, 3.5 + 1e-15)};
    EXPECT_EQ(TemplateName("Sez", tie, {true, true}, {}), u"Sez_P1.0%L3.50");
}

TEST(Rd3WriterTemplates, NameCollisionsGetCountedSuffixes) {
    const Rd3SegmentList list = {kSlopeSeg};
    EXPECT_EQ(TemplateName("Sez", list, {}, Names({u"Sez_P0.0%L0.00"})), u"Sez_P0.0%L0.00_2");
    EXPECT_EQ(TemplateName("Sez", list, {}, Names({u"Sez_P0.0%L0.00", u"Sez_P0.0%L0.00_2"})), u"Sez_P0.0%L0.00_3");
    // From "_9" to "_10" the new suffix's three units come off the end.
    std::vector<RD3AssignEntry> taken = Names({u"Sez_P0.0%L0.00"});
    for (int i = 2; i <= 9; ++i) taken.push_back({u"Sez_P0.0%L0.00_" + std::u16string(1, char16_t(u'0' + i)), 0, 1});
    EXPECT_EQ(TemplateName("Sez", list, {}, taken), u"Sez_P0.0%L0.0_10");
}

TEST(Rd3WriterTemplates, LongNamesAreCutTo32ThenTo30BeforeASuffix) {
    const Rd3SegmentList list = {G(std::tan(0.01), 123456789012345678.0)};
    const RD3Name full = TemplateName("Sez_Dx", list, {true}, {});
    // "Sez_Dx_P1.0%L123456789012345680.00" cut to 32 units (the dot stays).
    EXPECT_EQ(full, u"Sez_Dx_P1.0%L123456789012345680.");
    EXPECT_EQ(full.size(), 32u);
    const RD3Name second = TemplateName("Sez_Dx", list, {true}, Names({u"Sez_Dx_P1.0%L123456789012345680."}));
    EXPECT_EQ(second, u"Sez_Dx_P1.0%L12345678901234568_2");
    const RD3Name third = TemplateName(
        "Sez_Dx", list, {true}, Names({u"Sez_Dx_P1.0%L123456789012345680.", u"Sez_Dx_P1.0%L12345678901234568_2"}));
    EXPECT_EQ(third, u"Sez_Dx_P1.0%L12345678901234568_3");
}

TEST(Rd3WriterTemplates, FirstAndLastAlwaysTheRestWhenNotRebuildable) {
    // Gradient and width vary linearly with chainage.
    std::vector<Rd3SectionData> s = {Sec(0, {G(-0.02, 3.0), kSlopeSeg}, {G(0.01, 2.0)}),
                                     Sec(100, {G(-0.03, 4.0), kSlopeSeg}, {G(0.01, 2.0)}),
                                     Sec(200, {G(-0.04, 5.0), kSlopeSeg}, {G(0.01, 2.0)})};
    EXPECT_TRUE(SideNeedsTemplate(s, 0, kLeft));
    EXPECT_TRUE(SideNeedsTemplate(s, 2, kRight));
    EXPECT_FALSE(SideNeedsTemplate(s, 1, kLeft));   // the blend gives it back
    EXPECT_FALSE(SideNeedsTemplate(s, 1, kRight));  // equal to both neighbours
    s[1].prog = 50;  // now the blend at t = 0.25 gives -0.025, 3.5
    EXPECT_TRUE(SideNeedsTemplate(s, 1, kLeft));
    s[1].prog = 100;
    s[1].sides.lists[kLeft][0].v2 = 4.01;
    EXPECT_TRUE(SideNeedsTemplate(s, 1, kLeft));
    s[1].sides.lists[kLeft][0].v2 = 4.0003;  // within 1e-4 relative
    EXPECT_FALSE(SideNeedsTemplate(s, 1, kLeft));
}

TEST(Rd3WriterTemplates, AbsentSidesAndMissingNeighbours) {
    // Right side absent everywhere: the middle empty list equals both
    // (missing) neighbours and is not written.
    std::vector<Rd3SectionData> s = {Sec(0, {G(-0.02, 3.0)}, {}), Sec(100, {G(-0.02, 3.0)}, {}),
                                     Sec(200, {G(-0.02, 3.0)}, {})};
    EXPECT_FALSE(SideNeedsTemplate(s, 1, kRight));
    // Absent in the middle between present neighbours: written (empty).
    s[0].sides.lists[kRight] = {G(0.01, 2.0)};
    s[2].sides.lists[kRight] = {G(0.01, 2.0)};
    EXPECT_TRUE(SideNeedsTemplate(s, 1, kRight));
    // No non-empty neighbour before it: the reader could only blend with the
    // empty first template, so it is written.
    std::vector<Rd3SectionData> t = {Sec(0, {G(-0.02, 3.0)}, {}), Sec(100, {G(-0.02, 3.0)}, {G(0.01, 2.0)}),
                                     Sec(200, {G(-0.02, 3.0)}, {G(0.01, 2.0)})};
    EXPECT_TRUE(SideNeedsTemplate(t, 1, kRight));
}

TEST(Rd3WriterTemplates, PlanReusesEqualTemplates) {
    const std::vector<Rd3SectionData> s = {Sec(100, {G(-0.02, 3.0), kSlopeSeg}, {G(-0.02, 3.5), kSlopeSeg}),
                                           Sec(300, {G(-0.02, 3.0), kSlopeSeg}, {G(-0.03, 4.0), kSlopeSeg})};
    const Rd3Plan plan = PlanTemplates(s);
    EXPECT_TRUE(plan.sidesToldApart);
    ASSERT_EQ(plan.templates.size(), 3u);
    EXPECT_EQ(plan.templates[0].name, u"Sez_Sx_P0.0%L0.00");
    EXPECT_EQ(plan.templates[1].name, u"Sez_Dx_P-2.0%L3.50");
    EXPECT_EQ(plan.templates[2].name, u"Sez_Dx_P-3.0%L4.00");
    ASSERT_EQ(plan.assigns.size(), 4u);
    EXPECT_EQ(plan.assigns[2].name, u"Sez_Sx_P0.0%L0.00");
    EXPECT_EQ(plan.assigns[2].prog, 300.0);
    EXPECT_EQ(plan.assigns[2].side, 1u);
    EXPECT_EQ(plan.assigns[3].side, 2u);
    // Not told apart: one "Sez" set of names, and a right side may reuse a
    // left template.
    const std::vector<Rd3SectionData> m = {Sec(0, {G(-0.02, 3.0)}, {G(-0.02, 3.0)}),
                                           Sec(10, {G(-0.02, 3.0)}, {G(-0.02, 3.0)})};
    const Rd3Plan pm = PlanTemplates(m);
    EXPECT_FALSE(pm.sidesToldApart);
    ASSERT_EQ(pm.templates.size(), 1u);
    EXPECT_EQ(pm.templates[0].name, u"Sez_P0.0%L0.00");
    EXPECT_EQ(pm.assigns.size(), 4u);
}

TEST(Rd3WriterTemplates, SectionsInTheFileByteByByte) {
    RoadDoc d;
    d.Rect(1000);
    d.EndPlan();
    d.Profile({{0, 100}, {1000, 110}});
    d.Section(100, {{-3, 100.94}, {0, 101}, {3.5, 100.93}});
    d.Section(300, {{-3, 102.94}, {0, 103}, {4, 102.88}});
    const auto b = d.Export("sections.rd3");
    // road 218, straight 284, profile 318, vertices 344 and 378; templates of
    // 292 bytes at 412, 704, 996; the assignment list at 1288 (334 bytes).
    ASSERT_EQ(b.size(), 1622u);
    EXPECT_EQ(U32At(b, 112), 412u);
    EXPECT_EQ(U32At(b, 118), 1288u);
    const auto entry = [](uint16_t code, double v1, double v2) {
        ByteSink s;
        s.Zeros(66);
        s.U16(code);
        s.U16(3);
        s.F64(v1);
        s.F64(v2);
        s.Zeros(16);
        return s.Data();
    };
    const auto slopes = entry(24, 0.785398, 0.588002);
    const auto t1 = Cat({Hex("15 00 12 00 00 00 46 00 00 00 c0 02 00 00 fe ff ff ff"), AsciiName("Sez_Sx_P0.0%L0.00"),
                         Hex("02 00 66 00"), entry(22, std::atan2(100.94 - 101.0, 3.0), 3.0), slopes});
    const auto t2 = Cat({Hex("15 00 12 00 00 00 46 00 00 00 e4 03 00 00 9c 01 00 00"), AsciiName("Sez_Dx_P-2.0%L3.50"),
                         Hex("02 00 66 00"), entry(22, std::atan2(100.93 - 101.0, 3.5), 3.5), slopes});
    const auto t3 = Cat({Hex("15 00 12 00 00 00 46 00 00 00 fe ff ff ff c0 02 00 00"), AsciiName("Sez_Dx_P-3.0%L4.00"),
                         Hex("02 00 66 00"), entry(22, std::atan2(102.88 - 103.0, 4.0), 4.0), slopes});
    EXPECT_EQ(ToHex({b.begin() + 412, b.begin() + 704}), ToHex(t1));
    EXPECT_EQ(ToHex({b.begin() + 704, b.begin() + 996}), ToHex(t2));
    EXPECT_EQ(ToHex({b.begin() + 996, b.begin() + 1288}), ToHex(t3));
    const auto assign = [](const char* name, const char* prog, const char* side) {
        return Cat({AsciiName(name), Hex(prog), Hex(side)});
    };
    const char* p100 = "00 00 00 00 00 00 59 40";
    const char* p300 = "00 00 00 00 00 c0 72 40";
    const auto list = Cat({Hex("1f 00 12 00 00 00 04 00 00 00 fe ff ff ff fe ff ff ff 04 00 4e 00"),
                           assign("Sez_Sx_P0.0%L0.00", p100, "01 00 00 00"),
                           assign("Sez_Dx_P-2.0%L3.50", p100, "02 00 00 00"),
                           assign("Sez_Sx_P0.0%L0.00", p300, "01 00 00 00"),
                           assign("Sez_Dx_P-3.0%L4.00", p300, "02 00 00 00")});
    EXPECT_EQ(ToHex({b.begin() + 1288, b.end()}), ToHex(list));
}

TEST(Rd3WriterTemplates, TemplatesButNoneWrittenLeaveSlot3AtTheAssignmentList) {
    RoadDoc d;
    d.Rect(1000);
    d.EndPlan();
    d.Section(100, {{-3, 100.94}, {0, 101}, {3.5, 100.93}});  // no profile: no elevation
    const auto b = d.Export("no_templates.rd3");
    ASSERT_EQ(b.size(), 218u + 66 + 34 + 22);
    EXPECT_EQ(U32At(b, 106), kNoRecord);
    EXPECT_EQ(U32At(b, 112), 318u);
    EXPECT_EQ(U32At(b, 118), 318u);
    EXPECT_EQ(U16At(b, 318), 31);
    EXPECT_EQ(U16At(b, 336), 0);  // no entries
    ImportRun run;
    run.Run(b);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadTemplateRecord);
    EXPECT_EQ(run.Messages(), 1);
    // Sections without any "STF" line have no template: slots stay unpatched.
    RoadDoc e;
    e.Rect(1000);
    e.EndPlan();
    e.Profile({{0, 100}, {1000, 110}});
    CPlaniElem* trace = new CRettifiloPlaniElem(-10, {-10, 100}, {1, 0}, 20);
    e.b->AddSection("s", 100, trace);
    trace->SubReference();
    e.b->AddSectionProfileAlti("PRO", {{-1, 100}, {1, 100}});
    const auto c = e.Export("no_stf.rd3");
    EXPECT_EQ(U32At(c, 112), kNoRecord);
    EXPECT_EQ(U32At(c, 118), kNoRecord);
}
