// Diagnostics: what a reader or writer skipped, defaulted, clamped, cut or
// could not carry, as records a caller can count, print or serialise.
//
// The exchange entry points stay silent towards the host; a diagnostics sink
// is an optional extra that callers (the command line, the report) pass to
// the status functions beside them. Passing no sink changes nothing.
//
// Repeats merge: a record of the same kind for the same file adds its count
// to the first one, which keeps the first place (line, element) it was seen.
// That keeps a million bad faces one record, and reporting cheap.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vesk::diag {

enum class ESeverity { Note, Warning, Error };

const char* SeverityName(ESeverity s);  // "note", "warning", "error"

struct TRecord {
    ESeverity severity = ESeverity::Warning;
    std::string kind;      // stable identifier, e.g. "observation-angle-format"
    std::string file;      // the file as the user named it; "" when none
    int64_t line = 0;      // 1-based line in the file; 0 when unknown
    int64_t offset = -1;   // byte offset in the file; -1 when unknown
    std::string element;   // where in the data, e.g. Alignment "A" / CoordGeom / Spiral 3
    std::string message;   // what happened
    std::string instead;   // what was done instead ("" when nothing)
    int64_t count = 1;     // how many times it happened
    // Named values a note carries for programs (the units a file was read
    // in: "linearUnit" -> "foot", ...); empty for most records.
    std::vector<std::pair<std::string, std::string>> values = {};
};

class CSink {
public:
    // Adds a record, or merges it into the earlier one of its kind and file.
    void Report(TRecord record);
    // Adds `count` to the record of this kind and file when there is one
    // (true); false when there is none yet. Lets a reader work out the place
    // of a record (line, element path) only for the first of its kind.
    bool Merge(const std::string& kind, const std::string& file, int64_t count);
    const std::vector<TRecord>& Records() const { return records_; }
    bool Empty() const { return records_.empty(); }
    // Number of records (kinds) at or above the severity.
    size_t CountAtLeast(ESeverity s) const;
    void Clear();

    // What the caller asks of checks that compare (the LandXML geometry
    // check): distances beyond this many metres are reported.
    double checkTolerance = 0.001;

private:
    std::vector<TRecord> records_;
    std::unordered_map<std::string, size_t> index_;  // kind + '\n' + file -> record
};

// A station (chainage) as records name it: three decimals, as "%.3f" gives
// in the C locale, whatever the locale.
std::string StationText(double prog);

// Reports through a sink that may be null: the readers call this so that the
// path without diagnostics costs one pointer test.
inline void Report(CSink* sink, TRecord record) {
    if (sink) sink->Report(std::move(record));
}

}  // namespace vesk::diag
