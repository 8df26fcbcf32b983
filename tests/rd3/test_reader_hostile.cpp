// Damaged and hostile files: offsets past the end, records cut short, counts
// larger than the file, chains that loop. The import ends with a status,
// keeps what it added, and never reads outside the file.
#include <gtest/gtest.h>

#include "rd3/rd3_reader.h"
#include "rd3_test_doc.h"

using namespace roadx::rd3;
using namespace rd3test;

namespace {

// A complete file: plan, profile, two templates, three assignments.
SectionFile FullFile() {
    SectionFile f;
    f.Template(u"A", {Grade(-0.02, 3.5), kSlopes});
    f.Template(u"B", {Grade(-0.03, 4.0), kSlopes});
    f.Assign({{u"A", 100.0, 3}, {u"B", 200.0, 1}, {u"A", 300.0, 3}});
    return f;
}

// The plan part of a file: road record and two straights.
struct PlanFile {
    Image img;
    uint32_t road, s1, s2;
    PlanFile() {
        road = AddRoadRecord(img, 0, 0, 0);
        s1 = img.Append(EncodeStraightRecord({0.0, 10.0}, road));
        s2 = img.Append(EncodeStraightRecord({0.0, 20.0}, s1));
        img.Chain({road, s1, s2});
        img.SetDir(0, road);
    }
};

}  // namespace

TEST(Rd3ReaderHostile, FullFileReadsCleanly) {
    ImportRun run;
    run.Run(FullFile().img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kOk);
    EXPECT_EQ(run.Lines("AddSection").size(), 3u);
}

TEST(Rd3ReaderHostile, EveryShorterPrefixEndsWithAStatusAndNoCrash) {
    const auto full = FullFile().img.bytes;
    for (size_t n = 1; n < full.size(); ++n) {
        std::vector<uint8_t> cut(full.begin(), full.begin() + static_cast<long>(n));
        ImportRun run;
        run.Run(cut);
        ASSERT_NE(run.status, roadx::rd3::ReadEnd::kOk) << n;
        // A file cut inside its directory is damaged too.
        if (n < 122) {
            ASSERT_EQ(run.status, roadx::rd3::ReadEnd::kTruncated) << n;
        }
    }
}

TEST(Rd3ReaderHostile, EverySingleByteCorruptionIsSurvived) {
    const auto full = FullFile().img.bytes;
    int ended = 0;
    for (size_t i = 0; i < full.size(); ++i) {
        for (uint8_t v : {uint8_t{0x00}, uint8_t{0xFF}, uint8_t{0x7F}, uint8_t{0x01}}) {
            auto bad = full;
            bad[i] = v;
            ImportRun run;
            run.Run(bad);
            if (run.status != roadx::rd3::ReadEnd::kOk) ++ended;
        }
    }
    EXPECT_GT(ended, 100);
}

TEST(Rd3ReaderHostile, OffsetsPastTheEnd) {
    for (uint32_t off : {uint32_t{5000}, uint32_t{0xFFFFFFFD}, uint32_t{0xFFFFFFFF}}) {
        PlanFile p;
        p.img.SetDir(0, off);
        ImportRun run;
        run.Run(p.img.bytes);
        EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kTruncated) << off;
        EXPECT_EQ(run.Messages(), 1);
        EXPECT_TRUE(run.Calls().empty());
    }
    // A next-link past the end: the first straight stays, the plan is closed.
    PlanFile p;
    p.img.SetNext(p.s1, 99999);
    ImportRun run;
    run.Run(p.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_EQ(run.Ops(), (std::vector<std::string>{"AddRoad", "StartRoadPlani", "AddRoadRect", "EndRoadPlani"}));
    EXPECT_EQ(run.doc.GetLibRoad()->GetRoad(0)->GetNumRoadPlaniElems(), 1);
    // A record header that begins 10 bytes before the end.
    PlanFile q;
    q.img.SetNext(q.s2, static_cast<uint32_t>(q.img.bytes.size() - 10));
    ImportRun run2;
    run2.Run(q.img.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_EQ(run2.Lines("AddRoadRect").size(), 2u);
}

TEST(Rd3ReaderHostile, RecordsCutShort) {
    PlanFile p;
    p.img.bytes.resize(p.img.bytes.size() - 3);  // the last straight lacks 3 bytes
    ImportRun run;
    run.Run(p.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_EQ(run.Lines("AddRoadRect").size(), 1u);
    // An arc claiming the long form at the end of the file.
    Image img;
    const uint32_t road = AddRoadRecord(img, 0, 0, 0);
    auto arc = EncodeArcRecord({0, 100.0, 10.0, true, 0.0}, road);
    arc.resize(arc.size() - 8);
    img.Chain({road, img.Append(arc)});
    img.SetDir(0, road);
    ImportRun run2;
    run2.Run(img.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_TRUE(run2.Lines("AddRoadArc").empty());
}

TEST(Rd3ReaderHostile, PlanChainsThatLoop) {
    PlanFile self;
    self.img.SetNext(self.s2, self.s2);
    ImportRun run;
    run.Run(self.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kLoop);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_EQ(run.Lines("AddRoadRect").size(), 2u);
    EXPECT_EQ(run.Lines("EndRoadPlani").size(), 1u);
    PlanFile back;
    back.img.SetNext(back.s2, back.road);  // back to the road record
    ImportRun run2;
    run2.Run(back.img.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kLoop);
}

TEST(Rd3ReaderHostile, TemplateChainsThatNeverEnd) {
    SectionFile f = FullFile();
    f.img.SetNext(f.templates[1], f.templates[0]);
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kLoop);
    EXPECT_EQ(run.Messages(), 1);
    EXPECT_TRUE(run.Lines("AddSection").empty());
    // An extended layout whose segments loop among themselves.
    SectionFile g;
    g.Link(g.img.Append(EncodeNameOnlyTemplateRecord(u"A", kNoRecord)));
    const uint32_t s1 = g.Link(g.img.Append(EncodeLayout3SegmentRecord({22, 0.1, 1.0}, kNoRecord)));
    const uint32_t s2 = g.Link(g.img.Append(EncodeLayout3SegmentRecord({24, 0.1, 1.0}, kNoRecord)));
    g.img.SetNext(s2, s1);
    g.Assign({{u"A", 100.0, 3}});
    ImportRun run2;
    run2.Run(g.img.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kLoop);
}

TEST(Rd3ReaderHostile, CountsLargerThanTheFile) {
    SectionFile f = FullFile();
    // Segment count of the first template.
    PatchU32(f.img.bytes, f.templates[0] + 18 + 66, 0x0066FFFF);  // count 65535, entry size 102
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_TRUE(run.Lines("AddSection").empty());

    SectionFile g = FullFile();
    const uint32_t list = static_cast<uint32_t>(g.img.bytes.size() - (18 + 4 + 3 * 78));
    g.img.bytes[list + 18] = 4;  // four entries, three present
    ImportRun run2;
    run2.Run(g.img.bytes);
    EXPECT_EQ(run2.status, roadx::rd3::ReadEnd::kTruncated);
    EXPECT_TRUE(run2.Lines("AddSection").empty());
}

TEST(Rd3ReaderHostile, AssignmentChainThatLoops) {
    SectionFile f;
    f.Template(u"A", {Grade(0.01, 1.0)});
    const uint32_t a1 = f.img.Append(EncodeAssignChainRecord({u"A", 200.0, 3}, kNoRecord));
    const uint32_t a2 = f.img.Append(EncodeAssignChainRecord({u"A", 100.0, 3}, a1));
    f.img.Chain({a1, a2});
    f.img.SetNext(a2, a1);
    f.img.SetDir(3, a1);
    ImportRun run;
    run.Run(f.img.bytes);
    EXPECT_EQ(run.status, roadx::rd3::ReadEnd::kLoop);
    EXPECT_TRUE(run.Lines("AddSection").empty());
}

TEST(Rd3ReaderHostile, StatusTextsAndExchangeStatus) {
    for (int s = 0; s <= static_cast<int>(roadx::rd3::ReadEnd::kTooLarge); ++s) {
        const auto st = static_cast<roadx::rd3::ReadEnd>(s);
        EXPECT_STRNE(roadx::rd3::ReadEndText(st), "unknown problem") << s;
        const TExchangeStatus x = roadx::rd3::StatusOf(st);
        EXPECT_EQ(x.ok(), st == roadx::rd3::ReadEnd::kOk);
        if (!x.ok()) {
            EXPECT_EQ(x.message, roadx::rd3::ReadEndText(st));
        }
    }
    EXPECT_EQ(roadx::rd3::StatusOf(roadx::rd3::ReadEnd::kLoop).code, TExchangeStatus::BAD_INPUT);
    EXPECT_EQ(roadx::rd3::StatusOf(roadx::rd3::ReadEnd::kOpenFailed).code, TExchangeStatus::OPEN_FAILED);
    EXPECT_EQ(roadx::rd3::StatusOf(roadx::rd3::ReadEnd::kNoNeighbour).code, TExchangeStatus::ENDED_EARLY);
}
