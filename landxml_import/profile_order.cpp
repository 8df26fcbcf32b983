#include "landxml_import/profile_order.h"

#include <algorithm>

void CStationOrder::AppendPvi(std::optional<double> station) {
    if (!pvisClosed_) pvis_.push_back(station);
}

void CStationOrder::ClosePvis() {
    pvisClosed_ = true;
    while (wall_ < pvis_.size() && pvis_[wall_]) ++wall_;
    runningMax_.resize(wall_);
    for (size_t j = 0; j < wall_; ++j) runningMax_[j] = j == 0 ? *pvis_[j] : std::max(runningMax_[j - 1], *pvis_[j]);
}

bool CStationOrder::InsertByStation(std::optional<double> station) {
    if (missing_) return false;
    if (!pvisClosed_) ClosePvis();
    const size_t id = pvis_.size() + curves_++;
    if (!station) {
        missing_ = id;
        return false;
    }
    const size_t gap =
        static_cast<size_t>(std::upper_bound(runningMax_.begin(), runningMax_.end(), *station) - runningMax_.begin());
    // Nothing before the wall is greater, and no curve ever gets into the
    // gap before it: the walk reaches the wall.
    if (gap == wall_ && wall_ < pvis_.size()) {
        missing_ = wall_;
        return false;
    }
    gaps_.emplace(std::make_pair(gap, *station), id);
    return true;
}

std::vector<size_t> CStationOrder::Order() const {
    std::vector<size_t> order;
    order.reserve(pvis_.size() + gaps_.size());
    auto it = gaps_.begin();
    for (size_t j = 0; j <= pvis_.size(); ++j) {
        for (; it != gaps_.end() && it->first.first == j; ++it) order.push_back(it->second);
        if (j < pvis_.size()) order.push_back(j);
    }
    return order;
}
