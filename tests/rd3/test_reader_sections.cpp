// The reader's templates (three layouts), assignments and sections, checked
// through the builder calls.
#include <gtest/gtest.h>

#include <cmath>

#include "rd3/rd3_reader.h"
#include "rd3_test_doc.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

struct Pt {
    double x, z;
};

void ExpectPoints(const std::string& line, const std::vector<Pt>& want) {
    const auto t = Tokens(line);
    ASSERT_EQ(t.at(0), "AddSectionProfileAlti");
    ASSERT_EQ(t.at(1), "\"PRO\"");
    ASSERT_EQ(std::stoul(t.at(2)), want.size()) << line;
    for (size_t i = 0; i < want.size(); ++i) {
        EXPECT_NEAR(std::stod(t.at(3 + 2 * i)), want[i].x, 1e-9) << line;
        EXPECT_NEAR(std::stod(t.at(4 + 2 * i)), want[i].z, 1e-9) << line;
    }
}

std::vector<std::string> SectionNames(const ImportRun& run) {
    std::vector<std::string> out;
    for (const auto& l : run.Lines("AddSection")) out.push_back(Tokens(l).at(1) + "@" + Tokens(l).at(2));
    return out;
}

}  // namespace

TEST(Rd3ReaderSections, OneTemplateForBothSides) {
    SectionFile f;
    f.Template(u"T1", {Grade(-0.02, 3.5), kSlopes});
    f.Assign({{u"T1", 100.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto sec = run.Lines("AddSection");
    ASSERT_EQ(sec.size(), 1u);
    EXPECT_EQ(sec[0], "AddSection \"S1\" 100 -10 -10 100 1 0 20");
    const auto pts = run.Lines("AddSectionProfileAlti");
    ASSERT_EQ(pts.size(), 1u);
    ExpectPoints(pts[0], {{-3.5, 100.93}, {0.0, 101.0}, {3.5, 100.93}});
    // The document holds the section with its points.
    CProfile* s = run.Road()->GetSection(0);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->GetName(), "S1");
    EXPECT_EQ(s->FindProfileAlti("PRO")->GetNumVrts(), 3);
}

TEST(Rd3ReaderSections, LeftAndRightAtOneChainageMakeOneSection) {
    SectionFile f;
    f.Template(u"L", {{26, 0.0, 0.5}, Grade(0.03, 2.0), kSlopes});
    f.Template(u"R", {Grade(-0.025, 6.0), {23, 0.5, -2.0}, kSlopes});
    f.Assign({{u"R", 200.0, 2}, {u"L", 200.0, 1}});
    ImportRun run;
    run.Run(f.img.bytes);
    ASSERT_EQ(run.Lines("AddSection").size(), 1u);
    // z0 = 102; the left starts 0.5 up at the axis; the right's second step
    // is steep: width 0.5, height -2.
    ExpectPoints(run.Lines("AddSectionProfileAlti")[0],
                 {{-2.0, 102.56}, {0.0, 102.5}, {0.0, 102.0}, {6.0, 101.85}, {6.5, 99.85}});
}

TEST(Rd3ReaderSections, UnknownNameFallsBackToTheFirstTemplate) {
    SectionFile f;
    f.Template(u"First", {Grade(0.01, 1.0)});
    f.Template(u"Second", {Grade(0.02, 2.0)});
    f.Assign({{u"Nobody", 0.0, 3}, {u"Second", 100.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto pts = run.Lines("AddSectionProfileAlti");
    ASSERT_EQ(pts.size(), 2u);
    ExpectPoints(pts[0], {{-1.0, 100.01}, {0.0, 100.0}, {1.0, 100.01}});
    ExpectPoints(pts[1], {{-2.0, 101.04}, {0.0, 101.0}, {2.0, 101.04}});
}

TEST(Rd3ReaderSections, NamesCompareOverAllStoredUnits) {
    SectionFile f;
    const std::u16string long33(33, u'n');
    f.Template(u"a", {Grade(0.01, 1.0)});
    f.Template(long33, {Grade(0.05, 5.0)});
    f.Assign({{long33, 100.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ExpectPoints(run.Lines("AddSectionProfileAlti").at(0), {{-5.0, 101.25}, {0.0, 101.0}, {5.0, 101.25}});
}

TEST(Rd3ReaderSections, SortedByChainageThenBothLeftRight) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Template(u"B", {Grade(0.02, 2.0)});
    f.Template(u"C", {Grade(0.03, 3.0)});
    // At 100 the "both" entry wins over the left one listed before it.
    f.Assign({{u"C", 300.0, 2}, {u"B", 100.0, 1}, {u"A", 100.0, 3}, {u"C", 200.0, 2}, {u"B", 200.0, 1}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(SectionNames(run), (std::vector<std::string>{"\"S1\"@100", "\"S2\"@200"}));
    const auto pts = run.Lines("AddSectionProfileAlti");
    ASSERT_EQ(pts.size(), 2u);
    ExpectPoints(pts[0], {{-1.0, 101.01}, {0.0, 101.0}, {1.0, 101.01}});
    ExpectPoints(pts[1], {{-2.0, 102.04}, {0.0, 102.0}, {3.0, 102.09}});
    // At 300 only the right side is assigned, and it is the last entry: its
    // left side cannot be blended, and the sections stop there.
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kNoNeighbour);
    EXPECT_EQ(run.Messages(), 0);
}

TEST(Rd3ReaderSections, AssignmentSortDirectly) {
    std::vector<RD3SectionAssign> v = {{u"a", 2.0, 1}, {u"b", 1.0, 1}, {u"c", 1.0, 0}, {u"d", 1.0, 2},
                                       {u"e", -5.0, 1}, {u"f", 2.0, 2}};
    SortAssignments(v);
    std::u16string order;
    for (const auto& a : v) order += a.name;
    EXPECT_EQ(order, u"edcbfa");
}

TEST(Rd3ReaderSections, MissingSideIsInterpolatedBetweenItsNeighbours) {
    SectionFile f;
    f.Template(u"T1", {Grade(-0.02, 3.0), kSlopes});
    f.Template(u"T2", {Grade(-0.04, 5.0), kSlopes});
    f.Template(u"TL", {Grade(0.01, 1.0)});
    f.Assign({{u"T1", 100.0, 3}, {u"TL", 250.0, 1}, {u"T2", 300.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    const auto pts = run.Lines("AddSectionProfileAlti");
    ASSERT_EQ(pts.size(), 3u);
    // t = 0.75: gradient -0.035, width 4.5; the slope segment is paired too.
    ExpectPoints(pts[1], {{-1.0, 102.51}, {0.0, 102.5}, {4.5, 102.5 - 0.035 * 4.5}});
    EXPECT_EQ(SectionNames(run), (std::vector<std::string>{"\"S1\"@100", "\"S2\"@250", "\"S3\"@300"}));
}

TEST(Rd3ReaderSections, SameNeighbourTemplateIsUsedAsItIs) {
    SectionFile f;
    f.Template(u"T1", {Grade(-0.02, 3.0)});
    f.Template(u"TL", {Grade(0.01, 1.0)});
    f.Assign({{u"T1", 100.0, 3}, {u"TL", 250.0, 1}, {u"T1", 300.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ExpectPoints(run.Lines("AddSectionProfileAlti").at(1), {{-1.0, 102.51}, {0.0, 102.5}, {3.0, 102.44}});
}

TEST(Rd3ReaderSections, FirstEntryWithoutItsOtherSideStopsSilently) {
    SectionFile f;
    f.Template(u"T1", {Grade(-0.02, 3.0)});
    f.Assign({{u"T1", 100.0, 1}, {u"T1", 200.0, 3}, {u"T1", 300.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kNoNeighbour);
    EXPECT_EQ(run.Messages(), 0);
    EXPECT_TRUE(run.Lines("AddSection").empty());
}

TEST(Rd3ReaderSections, NumbersAreUsedUpBySectionsThatCannotBeBuilt) {
    // Profile vertices out of order leave chainages 100 to 200 without an
    // elevation (no two consecutive vertices enclose them); 1500 has an
    // elevation but lies past the plan.
    SectionFile f({{1400.0, 114.0, false, 0.0},
                   {1600.0, 116.0, false, 0.0},
                   {200.0, 102.0, false, 0.0},
                   {300.0, 103.0, false, 0.0},
                   {0.0, 100.0, false, 0.0},
                   {100.0, 101.0, false, 0.0}});
    f.Template(u"T", {Grade(0.01, 1.0)});
    f.Assign({{u"T", 50.0, 3}, {u"T", 150.0, 3}, {u"T", 250.0, 3}, {u"T", 1500.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(SectionNames(run), (std::vector<std::string>{"\"S1\"@50", "\"S3\"@250"}));
}

TEST(Rd3ReaderSections, ChainedAssignments) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Template(u"B", {Grade(0.02, 2.0)});
    const uint32_t a1 = f.img.Append(EncodeAssignChainRecord({u"B", 200.0, 3}, kNoRecord));
    const uint32_t odd = f.img.Append(EncodeProfileRecord());  // passed over
    const uint32_t a2 = f.img.Append(EncodeAssignChainRecord({u"A", 100.0, 3}, odd));
    f.img.Chain({a1, odd, a2});
    f.img.SetDir(3, a1);
    ImportRun run;
    run.Run(f.img.bytes);
    ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(SectionNames(run), (std::vector<std::string>{"\"S1\"@100", "\"S2\"@200"}));
    ExpectPoints(run.Lines("AddSectionProfileAlti").at(1), {{-2.0, 102.04}, {0.0, 102.0}, {2.0, 102.04}});
}

TEST(Rd3ReaderSections, AssignmentRecordOfAnotherType) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.img.SetDir(3, f.templates[0]);
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadAssignRecord);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_TRUE(run.Lines("AddSection").empty());
}

TEST(Rd3ReaderSections, AssignmentsWithUnknownSidesOrNoChainageAreLeftOut) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Assign({{u"A", 100.0, 0}, {u"A", NAN, 3}, {u"A", 200.0, 3}, {u"A", 300.0, 4}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(SectionNames(run), (std::vector<std::string>{"\"S1\"@200"}));
}

TEST(Rd3ReaderTemplates, MarkSegmentOfTheCompactLayoutRepeatsThePoint) {
    SectionFile f;
    const uint32_t t = f.Template(u"A", {Grade(0.01, 1.0), {23, 7.0, 7.0}, Grade(0.02, 2.0)});
    // The writer never puts code 25 in a file; set it by hand.
    f.img.bytes[t + 18 + 70 + 102 + 66] = 25;
    f.Assign({{u"A", 0.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    ExpectPoints(run.Lines("AddSectionProfileAlti").at(0),
                 {{-3.0, 100.05}, {-1.0, 100.01}, {-1.0, 100.01}, {0.0, 100.0}, {1.0, 100.01}, {1.0, 100.01},
                  {3.0, 100.05}});
}

TEST(Rd3ReaderTemplates, ExtendedLayoutsReadTheSameTemplates) {
    const std::vector<Pt> wantA = {{-2.0, 100.04}, {-1.0, 100.02}, {0.0, 100.0}, {1.0, 100.02}, {2.0, 100.04}};
    const std::vector<Pt> wantB = {{-4.0, 101.2}, {0.0, 101.0}, {4.0, 101.2}};
    for (int layout : {2, 3}) {
        SectionFile f;
        auto seg = [&](const RD3SegmentEntry& e) {
            f.Link(f.img.Append(layout == 2 ? EncodeLayout2SegmentRecord(e, kNoRecord)
                                            : EncodeLayout3SegmentRecord(e, kNoRecord)));
        };
        f.Link(f.img.Append(EncodeNameOnlyTemplateRecord(u"A", kNoRecord)));
        seg(Grade(0.02, 1.0));
        seg({25, 9.0, 9.0});  // carries nothing: no segment
        seg({23, 1.0, 0.02});
        f.Link(f.img.Append(EncodeNameOnlyTemplateRecord(u"B", kNoRecord)));
        seg(Grade(0.05, 4.0));
        seg(kSlopes);
        f.Assign({{u"A", 0.0, 3}, {u"B", 100.0, 3}});
        ImportRun run;
        run.Run(f.img.bytes);
        ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kOk) << layout;
        const auto pts = run.Lines("AddSectionProfileAlti");
        ASSERT_EQ(pts.size(), 2u);
        ExpectPoints(pts[0], wantA);
        ExpectPoints(pts[1], wantB);
    }
}

TEST(Rd3ReaderTemplates, UnknownSegmentCodeMakesTheListUnreadable) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    f.Template(u"B", {Grade(0.01, 1.0), {27, 0.0, 0.0}});
    f.Assign({{u"A", 100.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadSegmentCode);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_TRUE(run.Lines("AddSection").empty());
    // In layout 3 the record type is the code: a type 29 record after a type
    // 23 one is not a segment.
    SectionFile g;
    g.Link(g.img.Append(EncodeNameOnlyTemplateRecord(u"A", kNoRecord)));
    g.Link(g.img.Append(EncodeLayout2SegmentRecord({22, 0.1, 1.0}, kNoRecord)));
    g.Link(g.img.Append(EncodeLayout3SegmentRecord({23, 0.1, 1.0}, kNoRecord)));
    g.Assign({{u"A", 100.0, 3}});
    ImportRun run3;
    run3.Run(g.img.bytes);
    EXPECT_EQ(run3.status, roadx::rd3::ReadEnd::kBadSegmentCode);
}

TEST(Rd3ReaderTemplates, FirstTemplateRecordOfAnotherType) {
    SectionFile f;
    f.Link(f.img.Append(EncodeLayout3SegmentRecord({22, 0.1, 1.0}, kNoRecord)));
    f.Assign({{u"A", 100.0, 3}});
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kBadTemplateRecord);
    EXPECT_EQ(run.Messages(), 1);
}

TEST(Rd3ReaderTemplates, NoTemplateOrAssignmentOffsetMeansNoSections) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    ImportRun run;  // assignment slot left at 0xFFFFFFFE
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(run.Messages(), 0);
    EXPECT_TRUE(run.Lines("AddSection").empty());
}
