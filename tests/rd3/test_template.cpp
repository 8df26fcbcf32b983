#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>

#include "rd3/rd3_template.h"

using namespace roadx::rd3;

namespace {

RD3TemplateSegment Seg(int kind, double v1, double v2, std::u16string name = u"") {
    RD3TemplateSegment s;
    s.kind = kind;
    s.val1 = v1;
    s.val2 = v2;
    s.name = std::move(name);
    return s;
}

using Steps = std::vector<RD3PairStep>;
constexpr RD3PairStep P = RD3PairStep::kPair;
constexpr RD3PairStep A = RD3PairStep::kOnlyA;
constexpr RD3PairStep B = RD3PairStep::kOnlyB;

// The pairing rules written out again as a plain top-down recursion, to
// check the table-driven one on many lists.
struct RecursivePairing {
    const std::vector<RD3TemplateSegment>& a;
    const std::vector<RD3TemplateSegment>& b;
    std::map<std::pair<size_t, size_t>, std::pair<uint64_t, RD3PairStep>> memo;

    std::pair<uint64_t, RD3PairStep> Rem(size_t i, size_t j) {
        if (i == a.size() && j == b.size()) return {0, P};
        if (auto it = memo.find({i, j}); it != memo.end()) return it->second;
        std::pair<uint64_t, RD3PairStep> r;
        if (i == a.size()) {
            r = {100 + Rem(i, j + 1).first, B};
        } else if (j == b.size()) {
            r = {100 + Rem(i + 1, j).first, A};
        } else {
            const uint64_t cb = Rem(i, j + 1).first;
            const uint64_t ca = Rem(i + 1, j).first;
            const bool may = a[i].kind == b[j].kind && (a[i].name.empty() || b[j].name.empty());
            const uint64_t cp = may ? Rem(i + 1, j + 1).first : UINT64_MAX;
            if (cb < ca && cb < cp) r = {100 + cb, B};
            else if (ca <= cp) r = {100 + ca, A};
            else r = {1 + cp, P};
        }
        memo[{i, j}] = r;
        return r;
    }

    Steps Run() {
        size_t k = 0;
        while (k < a.size() && k < b.size() && a[k].kind == b[k].kind && a[k].name == b[k].name) ++k;
        Steps s(k, P);
        size_t i = k, j = k;
        // The recursion indexes whole lists; restart it past the leading run.
        std::vector<RD3TemplateSegment> ta(a.begin() + static_cast<long>(k), a.end());
        std::vector<RD3TemplateSegment> tb(b.begin() + static_cast<long>(k), b.end());
        RecursivePairing rest{ta, tb, {}};
        i = j = 0;
        while (i < ta.size() || j < tb.size()) {
            const RD3PairStep st = rest.Rem(i, j).second;
            s.push_back(st);
            if (st != B) ++i;
            if (st != A) ++j;
        }
        return s;
    }
};

}  // namespace

TEST(Rd3Template, SegmentCodesToKinds) {
    RD3TemplateSegment s;
    ASSERT_TRUE(SegmentFromCode(22, 0.25, 3.0, s));
    EXPECT_EQ(s.kind, kKindGrade);
    EXPECT_EQ(s.val1, std::tan(0.25));
    EXPECT_EQ(s.val2, 3.0);
    ASSERT_TRUE(SegmentFromCode(23, 1.0, 2.0, s));
    EXPECT_EQ(s.kind, kKindStep);
    EXPECT_EQ(s.val1, 1.0);
    ASSERT_TRUE(SegmentFromCode(24, 0.7, 0.5, s));
    EXPECT_EQ(s.kind, kKindSlopes);
    ASSERT_TRUE(SegmentFromCode(25, 1.0, 2.0, s));
    EXPECT_EQ(s.kind, kKindMark);
    ASSERT_TRUE(SegmentFromCode(26, 0.0, 0.3, s));
    EXPECT_EQ(s.kind, kKindOffset);
    EXPECT_EQ(s.val2, 0.3);
    EXPECT_FALSE(SegmentFromCode(21, 0, 0, s));
    EXPECT_FALSE(SegmentFromCode(27, 0, 0, s));
    EXPECT_FALSE(SegmentFromCode(29, 0, 0, s));
}

TEST(Rd3Template, Normalisation) {
    std::vector<RD3TemplateSegment> v = {Seg(1, 2.0, 0.1),   Seg(1, -2.0, 0.1), Seg(1, 0.1, 2.0),
                                         Seg(1, 1e-13, 0.0), Seg(1, 0.0, 1.0),  Seg(2, 12.0, 3.0),
                                         Seg(2, 9.99, 3.0),  Seg(0, 1.0, 2.0),  Seg(3, 0.7, 0.5),
                                         Seg(4, 5.0, 6.0),   Seg(1, 1.0, 10.0)};
    NormaliseSegments(v);
    EXPECT_EQ(v[0].kind, kKindGrade);
    EXPECT_DOUBLE_EQ(v[0].val1, 0.05);
    EXPECT_EQ(v[0].val2, 2.0);
    EXPECT_EQ(v[1].kind, kKindGrade);
    EXPECT_DOUBLE_EQ(v[1].val1, -0.05);
    EXPECT_EQ(v[1].val2, -2.0);
    EXPECT_EQ(v[2].kind, kKindWidthHeight);  // |2 / 0.1| = 20
    EXPECT_EQ(v[2].val1, 0.1);
    EXPECT_EQ(v[2].val2, 2.0);
    EXPECT_EQ(v[3].kind, kKindWidthHeight);  // width not above 1e-12
    EXPECT_EQ(v[4].kind, kKindWidthHeight);
    EXPECT_EQ(v[5].kind, kKindWidthHeight);  // gradient 12 → width 3, height 36
    EXPECT_EQ(v[5].val1, 3.0);
    EXPECT_EQ(v[5].val2, 36.0);
    EXPECT_EQ(v[6].kind, kKindGrade);
    EXPECT_EQ(v[7].kind, kKindOffset);
    EXPECT_EQ(v[8].kind, kKindSlopes);
    EXPECT_EQ(v[9].kind, kKindMark);
    EXPECT_EQ(v[10].kind, kKindWidthHeight);  // exactly 10 is not below 10

    RD3SectionTemplate t;
    t.segments = {Seg(1, 4.0, 0.2)};
    NormaliseTemplate(t);
    EXPECT_TRUE(t.normalised);
    EXPECT_EQ(t.segments[0].kind, kKindGrade);
    t.segments[0] = Seg(1, 4.0, 0.2);  // a flagged template is left alone
    NormaliseTemplate(t);
    EXPECT_EQ(t.segments[0].kind, kKindStep);
}

TEST(Rd3Template, PairingByHand) {
    auto pair = [](std::vector<RD3TemplateSegment> a, std::vector<RD3TemplateSegment> b) {
        return *PairSegments(a, b);
    };
    EXPECT_EQ(pair({Seg(2, 0, 0), Seg(3, 0, 0)}, {Seg(2, 1, 1), Seg(3, 1, 1)}), (Steps{P, P}));
    EXPECT_EQ(pair({Seg(1, 0, 0), Seg(2, 0, 0)}, {Seg(2, 0, 0)}), (Steps{A, P}));
    EXPECT_EQ(pair({Seg(2, 0, 0)}, {Seg(1, 0, 0), Seg(2, 0, 0)}), (Steps{B, P}));
    // Named segments of different names never pair after the leading run.
    EXPECT_EQ(pair({Seg(2, 0, 0, u"x")}, {Seg(2, 0, 0, u"y")}), (Steps{A, B}));
    EXPECT_EQ(pair({Seg(2, 0, 0, u"x")}, {Seg(2, 0, 0)}), (Steps{P}));
    // Same names: the leading run.
    EXPECT_EQ(pair({Seg(2, 0, 0, u"x"), Seg(5, 0, 0)}, {Seg(2, 0, 0, u"x")}), (Steps{P, A}));
    EXPECT_EQ(pair({}, {Seg(2, 0, 0), Seg(3, 0, 0)}), (Steps{B, B}));
    EXPECT_EQ(pair({Seg(2, 0, 0)}, {}), (Steps{A}));
    EXPECT_EQ(pair({}, {}), Steps{});
}

TEST(Rd3Template, PairingMatchesTheRulesOnManyLists) {
    // Every list of up to 4 segments over kinds {0, 2, 5} and names {"", "n"}
    // against a fixed set of partners.
    std::vector<std::vector<RD3TemplateSegment>> lists = {{}};
    for (int len = 1; len <= 4; ++len) {
        std::vector<std::vector<RD3TemplateSegment>> grow;
        for (const auto& l : lists) {
            if (static_cast<int>(l.size()) != len - 1) continue;
            for (int k : {0, 2, 5})
                for (const char16_t* n : {u"", u"n"}) {
                    auto m = l;
                    m.push_back(Seg(k, 0, 0, n));
                    grow.push_back(m);
                }
        }
        lists.insert(lists.end(), grow.begin(), grow.end());
    }
    int checked = 0;
    for (size_t i = 0; i < lists.size(); i += 7)
        for (size_t j = 0; j < lists.size(); j += 5) {
            RecursivePairing ref{lists[i], lists[j], {}};
            ASSERT_EQ(*PairSegments(lists[i], lists[j]), ref.Run()) << i << " " << j;
            ++checked;
        }
    EXPECT_GT(checked, 1000);
}

TEST(Rd3Template, PairingRefusesHugeLists) {
    std::vector<RD3TemplateSegment> a(3000, Seg(2, 0, 0, u"a"));
    std::vector<RD3TemplateSegment> b(3000, Seg(2, 0, 0, u"b"));
    EXPECT_FALSE(PairSegments(a, b).has_value());
    // The leading run costs nothing: equal long lists still pair.
    EXPECT_TRUE(PairSegments(a, a).has_value());
}

TEST(Rd3Template, BlendAndInterpolate) {
    const std::vector<RD3TemplateSegment> a = {Seg(2, 0.02, 2.0), Seg(5, 1.0, 3.0)};
    const std::vector<RD3TemplateSegment> b = {Seg(2, 0.04, 4.0), Seg(3, 0.7, 0.5)};
    const auto steps = *PairSegments(a, b);
    ASSERT_EQ(steps, (Steps{P, A, B}));
    const auto out = BlendSegments(a, b, steps, 0.25);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0].kind, kKindGrade);
    EXPECT_DOUBLE_EQ(out[0].val1, 0.025);
    EXPECT_DOUBLE_EQ(out[0].val2, 2.5);
    EXPECT_EQ(out[1].kind, kKindWidthHeight);
    EXPECT_DOUBLE_EQ(out[1].val1, 0.75);
    EXPECT_DOUBLE_EQ(out[1].val2, 2.25);
    EXPECT_EQ(out[2].kind, kKindSlopes);
    EXPECT_DOUBLE_EQ(out[2].val1, 0.175);
    EXPECT_DOUBLE_EQ(out[2].val2, 0.125);

    RD3SectionTemplate ta{u"A", {Seg(1, 2.0, 0.04)}, false};
    RD3SectionTemplate tb{u"B", {Seg(2, 0.04, 4.0)}, false};
    auto mid = InterpolateTemplates(ta, tb, 0.25);
    ASSERT_TRUE(mid.has_value());
    EXPECT_TRUE(ta.normalised);
    EXPECT_TRUE(mid->normalised);
    EXPECT_TRUE(mid->name.empty());
    ASSERT_EQ(mid->segments.size(), 1u);
    EXPECT_EQ(mid->segments[0].kind, kKindGrade);
    EXPECT_DOUBLE_EQ(mid->segments[0].val1, 0.025);
    EXPECT_DOUBLE_EQ(mid->segments[0].val2, 2.5);
}

TEST(Rd3Template, ValueAndListEquality) {
    EXPECT_TRUE(TemplateValuesEqual(1.0, 1.0001));
    EXPECT_FALSE(TemplateValuesEqual(1.0, 1.00021));
    EXPECT_TRUE(TemplateValuesEqual(0.0, 1e-4));
    EXPECT_FALSE(TemplateValuesEqual(0.0, 1.01e-4));
    EXPECT_TRUE(TemplateValuesEqual(1000.0, 1000.1));
    EXPECT_TRUE(TemplateValuesEqual(INFINITY, INFINITY));
    EXPECT_FALSE(TemplateValuesEqual(1e308, INFINITY));
    EXPECT_FALSE(TemplateValuesEqual(NAN, NAN));
    EXPECT_TRUE(SegmentListsEqual({Seg(2, 0.02, 3.5)}, {Seg(2, 0.02001, 3.5)}));
    EXPECT_FALSE(SegmentListsEqual({Seg(2, 0.02, 3.5)}, {Seg(5, 0.02, 3.5)}));
    EXPECT_FALSE(SegmentListsEqual({Seg(2, 0.02, 3.5)}, {Seg(2, 0.02, 3.5), Seg(3, 0, 0)}));
    EXPECT_TRUE(SegmentListsEqual({}, {}));
}
