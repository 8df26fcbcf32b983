// The order of a ProfAlign's elements against the rule walked literally:
// PVIs kept in order, each curve put before the first element of a greater
// station, the walk stopped by a station it needs and cannot read.
#include <gtest/gtest.h>

#include <random>

#include "landxml_import/profile_order.h"

namespace {

using Stations = std::vector<std::optional<double>>;

struct TProfileOrder {
    std::vector<size_t> order;
    std::optional<size_t> missing;
};

TProfileOrder OrderByStation(const Stations& pvis, const Stations& curves) {
    CStationOrder o;
    for (const auto& s : pvis) o.AppendPvi(s);
    for (const auto& s : curves)
        if (!o.InsertByStation(s)) return {{}, o.Missing()};
    return {o.Order(), std::nullopt};
}

TProfileOrder Reference(const Stations& pvis, const Stations& curves) {
    std::vector<size_t> list;
    std::vector<std::optional<double>> station;
    for (size_t j = 0; j < pvis.size(); ++j) {
        list.push_back(j);
        station.push_back(pvis[j]);
    }
    TProfileOrder out;
    for (size_t c = 0; c < curves.size(); ++c) {
        const size_t id = pvis.size() + c;
        if (!curves[c]) {
            out.missing = id;
            return out;
        }
        size_t at = list.size();
        for (size_t i = 0; i < list.size(); ++i) {
            if (!station[i]) {
                out.missing = list[i];
                return out;
            }
            if (*station[i] > *curves[c]) {
                at = i;
                break;
            }
        }
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(at), id);
        station.insert(station.begin() + static_cast<std::ptrdiff_t>(at), curves[c]);
    }
    out.order = list;
    return out;
}

TEST(ProfileOrder, WorkedExamples) {
    // PVI 0, PVI 250, PVI 500 and a curve at 250: after the PVI of equal
    // station.
    EXPECT_EQ(OrderByStation({0.0, 250.0, 500.0}, {250.0}).order, (std::vector<size_t>{0, 1, 3, 2}));
    // Unsorted PVIs stay as they are.
    EXPECT_EQ(OrderByStation({0.0, 500.0, 200.0}, {300.0}).order, (std::vector<size_t>{0, 3, 1, 2}));
    // ParaCurves and CircCurves come as one list of curves, in turn.
    EXPECT_EQ(OrderByStation({0.0, 1000.0}, {600.0, 300.0}).order, (std::vector<size_t>{0, 3, 2, 1}));
    // A curve past every station goes last; a curve before them all first.
    EXPECT_EQ(OrderByStation({10.0}, {20.0, 5.0}).order, (std::vector<size_t>{2, 0, 1}));
}

TEST(ProfileOrder, MissingStationsStopTheWalkWhereItNeedsThem) {
    EXPECT_EQ(OrderByStation({0.0}, {std::nullopt}).missing, std::optional<size_t>(1));
    // A PVI without a station before the slot stops the walk ...
    EXPECT_EQ(OrderByStation({std::nullopt, 20.0}, {10.0}).missing, std::optional<size_t>(0));
    // ... one after it is not reached ...
    const TProfileOrder after = OrderByStation({0.0, 20.0, std::nullopt}, {10.0});
    EXPECT_FALSE(after.missing);
    EXPECT_EQ(after.order, (std::vector<size_t>{0, 3, 1, 2}));
    // ... and one that no station before it exceeds is always reached.
    EXPECT_EQ(OrderByStation({60.0, std::nullopt}, {70.0, 65.0}).missing, std::optional<size_t>(1));
    EXPECT_EQ(OrderByStation({60.0, std::nullopt, 90.0}, {50.0, 65.0}).missing, std::optional<size_t>(1));
}

TEST(ProfileOrder, SameAsTheRuleWalkedLiterally) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> len(0, 12), st(0, 6), missing(0, 15);
    for (int run = 0; run < 20000; ++run) {
        Stations pvis(static_cast<size_t>(len(rng))), curves(static_cast<size_t>(len(rng)));
        for (auto* list : {&pvis, &curves})
            for (auto& s : *list)
                if (missing(rng) != 0) s = st(rng) * 10.0;
        const TProfileOrder want = Reference(pvis, curves);
        const TProfileOrder got = OrderByStation(pvis, curves);
        ASSERT_EQ(got.missing, want.missing) << "run " << run;
        ASSERT_EQ(got.order, want.order) << "run " << run;
    }
}

}  // namespace
