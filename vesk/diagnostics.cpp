#include "vesk/diagnostics.h"

#include "vesk/fixed_format.h"

#include <utility>

namespace vesk::diag {

const char* SeverityName(ESeverity s) {
    switch (s) {
        case ESeverity::Note: return "note";
        case ESeverity::Warning: return "warning";
        case ESeverity::Error: return "error";
    }
    return "warning";
}

void CSink::Report(TRecord record) {
    std::string key = record.kind;
    key.append(1, '\n').append(record.file);
    auto [it, added] = index_.try_emplace(std::move(key), records_.size());
    if (added) {
        records_.push_back(std::move(record));
        return;
    }
    TRecord& first = records_[it->second];
    first.count += record.count;
    if (record.severity > first.severity) first.severity = record.severity;
}

bool CSink::Merge(const std::string& kind, const std::string& file, int64_t count) {
    std::string key = kind;
    key.append(1, '\n').append(file);
    const auto it = index_.find(key);
    if (it == index_.end()) return false;
    records_[it->second].count += count;
    return true;
}

size_t CSink::CountAtLeast(ESeverity s) const {
    size_t n = 0;
    for (const TRecord& r : records_) n += r.severity >= s ? 1 : 0;
    return n;
}

void CSink::Clear() {
    records_.clear();
    index_.clear();
}

std::string StationText(double prog) {
    char buf[vesk::kMaxFixedChars];
    return std::string(buf, vesk::FormatFixed(buf, prog, 3));
}

}  // namespace vesk::diag
