#include "landxml_import/face_preparse.h"

#include "landxml_import/text_lists.h"

namespace {

// Thrown inside the scan's walk to leave it when the import has ended.
struct TStopped {};

std::atomic<size_t> gMinFaces{CFacePreparse::kMinFaces};

}  // namespace

bool CFacePreparse::Worthwhile(const TScannedList& list) {
    const size_t min = gMinFaces.load(std::memory_order_relaxed);
    return list.count >= min && (min < kMinFaces || std::thread::hardware_concurrency() > 1);
}

void CFacePreparse::SetMinFaces(size_t n) {
    gMinFaces.store(n == 0 ? 1 : n, std::memory_order_relaxed);
    // The same switch sends the check of a Faces range to the second thread.
    CSurfaceScan::SetAheadMinBytes(n < kMinFaces ? 0 : size_t{1} << 20);
}

bool CFacePreparse::ReadPlain(std::string_view text, int corners, int* ids) {
    using text_lists_detail::IsSpace;
    size_t i = 0, end = text.size();
    while (i < end && IsSpace(text[i])) ++i;
    while (end > i && IsSpace(text[end - 1])) --end;
    int count = 0;
    while (i < end) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        // Nine digits at most: every such number fits an int, and the
        // reader clamps or reports only longer ones.
        int digits = 0, value = 0;
        for (; i < end && text[i] != ' '; ++i, ++digits) {
            const char c = text[i];
            if (c < '0' || c > '9' || digits == 9) return false;
            value = value * 10 + (c - '0');
        }
        if (count == corners) return false;
        ids[count++] = value;
    }
    return count == corners;
}

void CFacePreparse::Start(const CSurfaceScan& scan, const TScannedList& list, int corners) {
    corners_ = corners;
    ids_.reserve(list.count * static_cast<size_t>(corners));
    thread_ = std::jthread([this, s = &scan, l = &list](std::stop_token stop) { Run(stop, s, l); });
}

void CFacePreparse::Run(std::stop_token stop, const CSurfaceScan* scan, const TScannedList* list) {
    try {
        size_t seen = 0;
        int ids[4] = {};
        const bool mayRelease = false;
        scan->ForEach(
            *list,
            [&](const TScannedElem& e) {
                if (++seen % kMarkStep == 0) {
                    marks_.push_back(e.text.data() + e.text.size());
                    if (stop.stop_requested()) throw TStopped{};
                }
                if (ReadPlain(e.text, corners_, ids)) {
                    ids_.insert(ids_.end(), ids, ids + corners_);
                    return;
                }
                ids_.push_back(-1);
                ids_.resize(ids_.size() + static_cast<size_t>(corners_) - 1);
                others_.push_back(e.text);
            },
            mayRelease);
    } catch (const TStopped&) {
    } catch (...) {
        error_ = std::current_exception();
    }
}

void CFacePreparse::Wait() {
    if (thread_.joinable()) thread_.join();
    if (error_) std::rethrow_exception(error_);
}
