// The order of a ProfAlign's elements: its PVI elements in document order
// (never sorted among themselves), then each curve, in turn, put before the
// first element of the list whose station is greater than its own, or at the
// end; so a curve goes after every element of equal station.
//
// Kept without walking the list for every curve (a file may hold millions of
// curves): every element before a curve's slot has a station no greater than
// the curve's, so the slot lies in the gap before the first PVI whose running
// maximum of stations exceeds it, and the curves within one gap stay sorted.
#pragma once
#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

class CStationOrder {
public:
    // Elements are numbered in the order they are given: PVIs first.
    // A PVI; all PVIs come before the first curve.
    void AppendPvi(std::optional<double> station);
    // A curve, put before the first element of greater station or at the
    // end. False when the walk to its slot needs a station that is missing
    // (the curve's own, or a PVI's that the walk reaches); Missing() then
    // names that element and the order takes nothing more.
    bool InsertByStation(std::optional<double> station);
    std::optional<size_t> Missing() const { return missing_; }
    // Element numbers in list order.
    std::vector<size_t> Order() const;

private:
    void ClosePvis();

    std::vector<std::optional<double>> pvis_;
    size_t curves_ = 0;
    bool pvisClosed_ = false;
    // A PVI without a station: a walk that reaches it fails.
    size_t wall_ = 0;
    std::vector<double> runningMax_;
    // Curves by (gap, station); gap j lies before PVI j, gap P after the last
    // PVI. A multimap keeps equal keys in insertion order.
    std::multimap<std::pair<size_t, double>, size_t> gaps_;
    std::optional<size_t> missing_;
};
