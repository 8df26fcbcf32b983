// The writer's section data: the "STF" walk, the segment lists of each side
// and their conversion.
#include <gtest/gtest.h>

#include <cmath>

#include "host/alti.h"
#include "host/section_template.h"
#include "rd3/rd3_section_lists.h"
#include "vesk/undefined.h"

using namespace roadx::rd3;

namespace {

struct V {
    double x, z;
    int code = 0;
    int sub = 0;
};

CProfileAlti Line(const std::vector<V>& v) {
    CProfileAlti line(nullptr, "STF", false);
    for (const V& p : v) {
        TAltiVrt t;
        t.prog = p.x;
        t.quota = p.z;
        t.code = p.code;
        t.subType = p.sub;
        t.flags = TAltiVrt::PRINC;
        line.AddVrt(t);
    }
    return line;
}

std::vector<std::pair<double, double>> Pts(const StfWalk& w) {
    std::vector<std::pair<double, double>> out;
    for (const auto& p : w.points) out.push_back({p.x, p.z});
    return out;
}

using PV = std::vector<std::pair<double, double>>;

}  // namespace

TEST(Rd3WriterWalk, AxisFoundAmongTheVertices) {
    const auto w = WalkStfLine(Line({{-3.5, 99.9}, {0.0, 100.0}, {3.5, 99.9}}));
    ASSERT_TRUE(w);
    EXPECT_EQ(w->axis, 1u);
    EXPECT_EQ(Pts(*w), (PV{{-3.5, 99.9}, {0.0, 100.0}, {3.5, 99.9}}));
    // Within 1e-12 counts as the axis.
    const auto near = WalkStfLine(Line({{-3.5, 99.9}, {1e-13, 100.0}, {3.5, 99.9}}));
    EXPECT_EQ(near->axis, 1u);
    EXPECT_EQ(near->points.size(), 3u);
}

TEST(Rd3WriterWalk, UndefinedElevationsAreLeftOut) {
    const auto w = WalkStfLine(Line({{-5, vesk::kUndefined}, {-3.5, 99.9}, {0, 100}, {2, vesk::kUndefined}, {3.5, 99.9}}));
    EXPECT_EQ(Pts(*w), (PV{{-3.5, 99.9}, {0, 100}, {3.5, 99.9}}));
}

TEST(Rd3WriterWalk, BreaksBeforeAndAfterTheAxis) {
    // Before the axis a break throws away what was gathered; the break
    // vertex starts the new run.
    const auto w = WalkStfLine(Line({{-9, 90}, {-8, 91}, {-4, 99, 12}, {0, 100}, {3, 99}, {5, 98, 15}, {7, 97}}));
    EXPECT_EQ(Pts(*w), (PV{{-4, 99}, {0, 100}, {3, 99}}));
    EXPECT_EQ(w->axis, 1u);
    for (int code : {13, 14}) {
        const auto v = WalkStfLine(Line({{-9, 90}, {-4, 99, code}, {0, 100}}));
        EXPECT_EQ(Pts(*v), (PV{{-4, 99}, {0, 100}}));
    }
    // Codes 11 and 16 are not breaks.
    const auto n = WalkStfLine(Line({{-9, 90}, {-4, 99, 11}, {0, 100}, {3, 99, 16}, {4, 98}}));
    EXPECT_EQ(n->points.size(), 5u);
}

TEST(Rd3WriterWalk, AxisInsertedWhereTheLineCrosses) {
    const auto w = WalkStfLine(Line({{-4, 100}, {-2, 100}, {2, 102}, {3, 101}}));
    EXPECT_EQ(Pts(*w), (PV{{-4, 100}, {-2, 100}, {0, 101}, {2, 102}, {3, 101}}));
    EXPECT_EQ(w->axis, 2u);
    // No vertex on the left: the axis takes the first right vertex's elevation.
    const auto r = WalkStfLine(Line({{2, 102}, {3, 101}}));
    EXPECT_EQ(Pts(*r), (PV{{0, 102}, {2, 102}, {3, 101}}));
    EXPECT_EQ(r->axis, 0u);
    // Only left vertices: the axis is appended with the last elevation.
    const auto l = WalkStfLine(Line({{-3, 99}, {-1, 98}}));
    EXPECT_EQ(Pts(*l), (PV{{-3, 99}, {-1, 98}, {0, 98}}));
    EXPECT_EQ(l->axis, 2u);
    // Nothing usable.
    EXPECT_FALSE(WalkStfLine(Line({{-3, vesk::kUndefined}})));
    EXPECT_FALSE(WalkStfLine(Line({})));
}

TEST(Rd3WriterLists, SegmentsOfBothSides) {
    StfWalk w;
    w.points = {{-5.0, 99.0, ELEM_SUBTYPE_SCARPATA}, {-3.0, 100.0, ELEM_SUBTYPE_BANCHINA}, {0.0, 100.06, 0},
                {3.5, 99.99, ELEM_SUBTYPE_CARREGGIATA}, {3.6, 97.99, ELEM_SUBTYPE_FOSSO}};
    w.axis = 2;
    const Rd3SideLists s = BuildSideLists(w, 100.0, SlopeAngles{0.5, 0.25});
    EXPECT_FALSE(s.absent[kLeft]);
    EXPECT_FALSE(s.absent[kRight]);
    const Rd3SegmentList& l = s.lists[kLeft];
    ASSERT_EQ(l.size(), 4u);
    EXPECT_EQ(l[0].code, 26);  // the axis lies 0.06 above the profile
    EXPECT_EQ(l[0].v1, 0.0);
    EXPECT_NEAR(l[0].v2, 0.06, 1e-12);
    EXPECT_EQ(l[1].code, 22);
    EXPECT_NEAR(l[1].v1, std::atan2(-0.06, 3.0), 1e-12);
    EXPECT_EQ(l[1].v2, 3.0);
    EXPECT_EQ(l[1].name, u"Banchina");
    EXPECT_EQ(l[2].code, 22);
    EXPECT_NEAR(l[2].v1, std::atan2(-1.0, 2.0), 1e-12);
    EXPECT_EQ(l[2].v2, 2.0);
    EXPECT_EQ(l[2].name, u"Scarpata");
    EXPECT_EQ(l[3].code, 24);
    EXPECT_EQ(l[3].v1, 0.5);
    EXPECT_EQ(l[3].v2, 0.25);
    const Rd3SegmentList& r = s.lists[kRight];
    ASSERT_EQ(r.size(), 4u);
    EXPECT_EQ(r[1].code, 22);
    EXPECT_NEAR(r[1].v1, std::atan2(-0.07, 3.5), 1e-12);
    EXPECT_EQ(r[1].name, u"Carreggiata");
    EXPECT_EQ(r[2].code, 25);  // 2 m down over 0.1 m: too steep for a gradient
    EXPECT_NEAR(r[2].v1, 0.1, 1e-12);
    EXPECT_NEAR(r[2].v2, -2.0, 1e-12);
    EXPECT_EQ(r[2].name, u"Fosso");
}

TEST(Rd3WriterLists, NoOffsetSegmentWithinAMicron) {
    StfWalk w;
    w.points = {{0.0, 100.0000009, 0}, {3.0, 100.0, 0}};
    const Rd3SideLists s = BuildSideLists(w, 100.0, SlopeAngles{});
    EXPECT_TRUE(s.absent[kLeft]);
    EXPECT_TRUE(s.lists[kLeft].empty());
    ASSERT_EQ(s.lists[kRight].size(), 2u);
    EXPECT_EQ(s.lists[kRight][0].code, 22);
    EXPECT_EQ(s.lists[kRight][1].code, 24);
    EXPECT_EQ(s.lists[kRight][1].v1, 0.785398);
    EXPECT_EQ(s.lists[kRight][1].v2, 0.588002);
}

TEST(Rd3WriterLists, SlopeAnglesFromTheTemplate) {
    CSectionTemplate t;
    EXPECT_EQ(SlopeAnglesOf(t).cut, 0.785398);
    t.AddElem(CSectionElem(CSectionElem::CARREGGIATA, 0, 50.0));  // not a slope
    t.AddElem(CSectionElem(CSectionElem::SCARPATA, CSectionElem::VIEW_FILL, 66.0));
    t.AddElem(CSectionElem(CSectionElem::SCARPATA, CSectionElem::VIEW_CUT, 150.0));
    const SlopeAngles a = SlopeAnglesOf(t);
    EXPECT_DOUBLE_EQ(a.fill, std::atan2(66.0, 100.0));
    EXPECT_DOUBLE_EQ(a.cut, std::atan2(150.0, 100.0));
    CSectionTemplate u;
    u.AddElem(CSectionElem(CSectionElem::SCARPATA, CSectionElem::VIEW_ALWAYS, 100.0));
    EXPECT_DOUBLE_EQ(SlopeAnglesOf(u).cut, std::atan2(100.0, 100.0));
    EXPECT_EQ(SlopeAnglesOf(u).fill, 0.588002);
}

TEST(Rd3WriterLists, ConversionRules) {
    Rd3SegmentList l = {{23, 2.0, 0.1, u"a"}, {23, 0.1, 2.0, {}}, {23, 1e-13, 0.0, {}},
                        {23, -2.0, 0.1, {}}, {22, 12.0, 3.0, u"g"}, {22, 0.5, 3.0, {}},
                        {24, 1.0, 2.0, {}}, {26, 0.0, 0.5, {}}, {23, 1.0, 10.0, {}}};
    ConvertSegments(l);
    EXPECT_EQ(l[0].code, 22);
    EXPECT_EQ(l[0].v1, std::atan2(0.1, 2.0));
    EXPECT_EQ(l[0].v2, 2.0);
    EXPECT_EQ(l[0].name, u"a");
    EXPECT_EQ(l[1].code, 25);
    EXPECT_EQ(l[1].v1, 0.1);
    EXPECT_EQ(l[1].v2, 2.0);
    EXPECT_EQ(l[2].code, 25);
    EXPECT_EQ(l[3].code, 22);
    EXPECT_EQ(l[3].v1, std::atan2(0.1, -2.0));
    EXPECT_EQ(l[4].code, 25);  // a gradient of 10 or more: width 3, height 36
    EXPECT_EQ(l[4].v1, 3.0);
    EXPECT_EQ(l[4].v2, 36.0);
    EXPECT_EQ(l[4].name, u"g");
    EXPECT_EQ(l[5].code, 22);
    EXPECT_EQ(l[5].v1, 0.5);
    EXPECT_EQ(l[6].code, 24);
    EXPECT_EQ(l[7].code, 26);
    EXPECT_EQ(l[8].code, 25);  // exactly 10
}
