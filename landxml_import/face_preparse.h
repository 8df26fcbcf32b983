// The faces of a large scanned surface, read on a second thread while the
// first reads the points.
//
// The builder must see its calls in document order (every point, then every
// face), and reading a number may report a diagnostic, which belongs to the
// import's own thread. So the second thread only takes the faces whose text
// is plain: exactly `corners` tokens of one to nine decimal digits, blanks
// between and white space around, which the text-list rules read as those
// numbers with nothing to report. Every other face keeps its text, in the
// file's buffer (so a report still points at its line and element), and is
// read later by the ordinary per-face function, in its place. The first
// thread then hands the builder every face in order: the calls are the same
// as when one thread reads everything. The buffer's memory behind the faces
// is given back as they are handed over, not before.
#pragma once
#include <cstddef>
#include <atomic>
#include <exception>
#include <string_view>
#include <thread>
#include <vector>

#include "landxml_import/surface_scan.h"

class CFacePreparse {
public:
    // Faces below this count are read on the import's thread: a thread
    // costs more than it saves there.
    static constexpr size_t kMinFaces = 50000;

    // Whether a second thread is worth starting for this list.
    static bool Worthwhile(const TScannedList& list);
    // The tests and the fuzzer send small surfaces through the second
    // thread too (1: every scanned Faces, and every Faces after a Pnts
    // checked there during the scan); kMinFaces is the default.
    static void SetMinFaces(size_t n);

    // Starts reading every F of `list` (scanned by `scan`) on a thread of
    // its own; corners is 3 for a TIN, else 4.
    void Start(const CSurfaceScan& scan, const TScannedList& list, int corners);
    bool Started() const { return thread_.joinable(); }

    // Waits for the thread, then calls plain(const int* ids) or
    // other(std::string_view text) for every face, in document order, and
    // done(const char* upTo) every kMarkStep faces with the end of the last
    // text handed over.
    template <class Plain, class Other, class Done>
    void Replay(Plain&& plain, Other&& other, Done&& done);

    static constexpr size_t kMarkStep = 65536;

    // Reads one face text the plain way; false when it is not plain.
    static bool ReadPlain(std::string_view text, int corners, int* ids);

private:
    void Run(std::stop_token stop, const CSurfaceScan* scan, const TScannedList* list);
    void Wait();

    int corners_ = 3;
    std::vector<int> ids_;                  // corners_ per face; -1 first: not plain
    std::vector<std::string_view> others_;  // the texts of the faces that are not plain
    std::vector<const char*> marks_;        // the end of face kMarkStep * (k + 1) - 1
    std::exception_ptr error_;
    std::jthread thread_;            // last: joined before the members above go
};

template <class Plain, class Other, class Done>
void CFacePreparse::Replay(Plain&& plain, Other&& other, Done&& done) {
    Wait();
    size_t nextOther = 0;
    const size_t stride = static_cast<size_t>(corners_);
    for (size_t at = 0, face = 0; at < ids_.size(); at += stride, ++face) {
        if (ids_[at] >= 0)
            plain(&ids_[at]);
        else
            other(others_[nextOther++]);
        if ((face + 1) % kMarkStep == 0) done(marks_[face / kMarkStep]);
    }
}
