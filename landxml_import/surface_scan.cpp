#include "landxml_import/surface_scan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <atomic>
#include <system_error>
#include <thread>

#include <sys/mman.h>
#include <unistd.h>

namespace {

// White space between markup (a carriage return included: the parser drops
// white-space-only texts whatever they hold).
constexpr bool IsWs(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// What the parser takes as the first character of a name: no digit, '.'
// or '-'.
constexpr bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

constexpr bool IsNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ':' ||
           c == '.' || c == '-' || static_cast<unsigned char>(c) >= 0x80;
}

// Bytes a plain text may not hold: markup, an entity (the parser would
// rewrite it), a carriage return (the parser would rewrite line ends), and
// the end of the buffer.
// Looked up in a table: texts are the bulk of a surface file.
struct TTextStops {
    bool stop[256] = {};
    constexpr TTextStops() {
        for (unsigned char c : {'<', '&', '\r', '\0'}) stop[c] = true;
    }
};
constexpr TTextStops kTextStops;
inline bool IsTextStop(char c) { return kTextStops.stop[static_cast<unsigned char>(c)]; }

bool StartsWith(std::string_view s, size_t at, std::string_view prefix) {
    return s.size() - std::min(at, s.size()) >= prefix.size() && s.compare(at, prefix.size(), prefix) == 0;
}

// Position of the first '>' that closes a start tag from `at`, skipping
// quoted attribute values; npos when there is none.
size_t EndOfTag(std::string_view s, size_t at) {
    while (at < s.size()) {
        const char c = s[at];
        if (c == '>') return at;
        if (c == '"' || c == '\'') {
            const size_t q = s.find(c, at + 1);
            if (q == std::string_view::npos) return q;
            at = q + 1;
        } else {
            ++at;
        }
    }
    return std::string_view::npos;
}

// The open elements from the root to the current one, with what the surface
// walk needs to know of them.
class CPath {
public:
    void Push(std::string_view name) {
        names_.push_back(name);
        if (InDefinitionItself()) seenPnts_ = seenFaces_ = false;
    }
    bool Pop(std::string_view name) {
        if (names_.empty() || names_.back() != name) return false;
        names_.pop_back();
        return true;
    }
    // Directly inside LandXML/Surfaces/Surface/Definition.
    bool InDefinitionItself() const {
        return names_.size() == 4 && names_[0] == "LandXML" && names_[1] == "Surfaces" && names_[2] == "Surface" &&
               names_[3] == "Definition";
    }
    // True for the first Pnts (resp. Faces) child of the current Definition:
    // the only one the surface reader reads.
    bool FirstOfDefinition(std::string_view name) {
        if (!InDefinitionItself()) return false;
        bool& seen = name == "Pnts" ? seenPnts_ : seenFaces_;
        if (name != "Pnts" && name != "Faces") return false;
        const bool first = !seen;
        seen = true;
        return first;
    }

private:
    std::vector<std::string_view> names_;
    bool seenPnts_ = false;
    bool seenFaces_ = false;
};

std::atomic<size_t> gAheadMinBytes{size_t{1} << 20};

}  // namespace

// The Faces that follows a Pnts is checked on a second thread while the
// walk checks the Pnts: the two checks are most of the scan. The thread
// starts only where a Faces start tag follows the first "</Pnts" at once,
// and its result is used only if the walk, going on by its own rules,
// reaches a first Faces whose content starts at that very place; the check
// of a range reads nothing before it, and the buffer changes only inside
// ranges already passed, so the result is what the walk would compute.
class CSurfaceScan::CAheadCheck {
public:
    ~CAheadCheck() { Wait(); }

    void Start(std::string_view s, size_t pntsContent) {
        const size_t end = s.find("</Pnts", pntsContent);
        if (end == std::string_view::npos || end - pntsContent < gAheadMinBytes.load(std::memory_order_relaxed))
            return;
        size_t j = SkipSpace(s, end + 6);
        if (j >= s.size() || s[j] != '>') return;
        j = SkipSpace(s, j + 1);
        if (!StartsWith(s, j, "<Faces") || j + 6 >= s.size() || !(IsWs(s[j + 6]) || s[j + 6] == '>')) return;
        const size_t gt = EndOfTag(s, j + 6);
        if (gt == std::string_view::npos || s[gt - 1] == '/') return;
        at_ = gt + 1;
        try {
            thread_ = std::thread([this, s] { ok_ = ReadList(s, at_, 'F', list_); });
        } catch (const std::system_error&) {
            at_ = std::string_view::npos;  // no thread to be had: the walk checks it itself
        }
    }
    void Wait() {
        if (thread_.joinable()) thread_.join();
    }
    // The result for a Faces whose content starts at `at`, when it is the
    // one checked ahead.
    bool Take(size_t at, bool& ok, TScannedList& list) {
        if (at_ == std::string_view::npos || at != at_) return false;
        Wait();
        at_ = std::string_view::npos;
        ok = ok_;
        list = list_;
        return true;
    }

private:
    std::thread thread_;
    size_t at_ = std::string_view::npos;
    bool ok_ = false;
    TScannedList list_;
};

void CSurfaceScan::SetAheadMinBytes(size_t n) { gAheadMinBytes.store(n, std::memory_order_relaxed); }

size_t CSurfaceScan::SkipSpace(std::string_view bytes, size_t at) {
    while (at < bytes.size() && IsWs(bytes[at])) ++at;
    return at;
}

bool CSurfaceScan::ReadElem(std::string_view s, size_t& at, char tag, TScannedElem& out) {
    const size_t n = s.size();
    size_t i = at;
    if (i + 2 >= n || s[i] != '<' || s[i + 1] != tag) return false;
    i += 2;
    out.hasId = false;
    out.id = {};
    out.text = {};
    // Attributes: name="value" or name='value', each after white space.
    for (;;) {
        const size_t ws = i;
        i = SkipSpace(s, i);
        if (i >= n) return false;
        if (s[i] == '>') {
            ++i;
            break;
        }
        if (s[i] == '/') {
            if (i + 1 >= n || s[i + 1] != '>') return false;
            at = i + 2;
            return true;
        }
        if (i == ws) return false;
        const size_t nameBegin = i;
        if (!IsNameStart(s[i])) return false;
        while (i < n && IsNameChar(s[i])) ++i;
        const std::string_view name = s.substr(nameBegin, i - nameBegin);
        if (name.empty()) return false;
        i = SkipSpace(s, i);
        if (i >= n || s[i] != '=') return false;
        i = SkipSpace(s, i + 1);
        if (i >= n || (s[i] != '"' && s[i] != '\'')) return false;
        const char quote = s[i++];
        const size_t valueBegin = i;
        while (i < n && s[i] != quote) {
            if (s[i] == '<' || s[i] == '&' || s[i] == '\0') return false;
            ++i;
        }
        if (i >= n) return false;
        if (name == "id" && !out.hasId) {
            out.hasId = true;
            out.id = s.substr(valueBegin, i - valueBegin);
        }
        ++i;
    }
    const size_t textBegin = i;
    while (i < n && !IsTextStop(s[i])) ++i;
    if (i >= n || s[i] != '<') return false;
    out.text = s.substr(textBegin, i - textBegin);
    // The end tag: </P> with optional white space before the '>'.
    if (i + 2 >= n || s[i + 1] != '/' || s[i + 2] != tag) return false;
    i = SkipSpace(s, i + 3);
    if (i >= n || s[i] != '>') return false;
    at = i + 1;
    return true;
}

bool CSurfaceScan::ReadList(std::string_view s, size_t at, char tag, TScannedList& list) {
    const std::string_view endTag = tag == 'P' ? "</Pnts" : "</Faces";
    list.begin = at;
    list.count = 0;
    list.tag = tag;
    TScannedElem e;
    for (;;) {
        at = SkipSpace(s, at);
        if (at >= s.size()) return false;
        if (at + 1 < s.size() && s[at + 1] == '/' && StartsWith(s, at, endTag)) break;
        if (!ReadElem(s, at, tag, e)) return false;
        ++list.count;
    }
    list.end = at;
    const size_t close = SkipSpace(s, at + endTag.size());
    if (close >= s.size() || s[close] != '>') return false;
    // The range becomes one comment: it needs room for "<!--" and "-->", and
    // no "-->" of its own that would end the comment early.
    if (list.end - list.begin < 7) return false;
    const size_t dashes = s.substr(0, list.end).find("-->", list.begin + 4);
    return dashes == std::string_view::npos || dashes == list.end - 3;
}

bool CSurfaceScan::CheckList(std::string_view s, size_t at, char tag, CAheadCheck& ahead, TScannedList& list) {
    bool ok = false;
    if (tag == 'F' && ahead.Take(at, ok, list)) return ok;
    if (tag == 'P') ahead.Start(s, at);
    ok = ReadList(s, at, tag, list);
    ahead.Wait();  // before the walk changes the buffer
    return ok;
}

void CSurfaceScan::Clear() {
    base_ = nullptr;
    lists_.clear();
    saved_.clear();
    restored_ = true;
}

void CSurfaceScan::Run(std::string& buffer) {
    Clear();
    base_ = buffer.data();
    restored_ = false;
    const std::string_view s(buffer);
    CPath path;
    CAheadCheck ahead;
    size_t at = 0;
    for (;;) {
        at = s.find('<', at);
        if (at == std::string_view::npos) return;
        if (StartsWith(s, at, "<?")) {
            at = s.find("?>", at + 2);
            if (at == std::string_view::npos) return;
            at += 2;
        } else if (StartsWith(s, at, "<!--")) {
            at = s.find("-->", at + 4);
            if (at == std::string_view::npos) return;
            at += 3;
        } else if (StartsWith(s, at, "<![CDATA[")) {
            at = s.find("]]>", at + 9);
            if (at == std::string_view::npos) return;
            at += 3;
        } else if (StartsWith(s, at, "<!")) {
            // A document type declaration may define entities: the scan
            // stops and the rest is read through the DOM.
            return;
        } else if (StartsWith(s, at, "</")) {
            size_t i = at + 2;
            while (i < s.size() && !IsWs(s[i]) && s[i] != '>') ++i;
            const std::string_view name = s.substr(at + 2, i - at - 2);
            const size_t gt = s.find('>', i);
            if (gt == std::string_view::npos || !path.Pop(name)) return;
            at = gt + 1;
        } else {
            const size_t tagAt = at;
            size_t i = at + 1;
            while (i < s.size() && !IsWs(s[i]) && s[i] != '>' && s[i] != '/') ++i;
            const std::string_view name = s.substr(at + 1, i - at - 1);
            const size_t gt = EndOfTag(s, i);
            if (gt == std::string_view::npos) return;
            const bool empty = s[gt - 1] == '/';
            const bool first = path.FirstOfDefinition(name);
            at = gt + 1;
            if (empty) continue;
            TScannedList list;
            if (first && CheckList(s, at, name == "Pnts" ? 'P' : 'F', ahead, list)) {
                list.nameOffset = tagAt + 1;
                lists_.push_back(list);
                TSaved saved;
                std::memcpy(saved.head, buffer.data() + list.begin, 4);
                std::memcpy(saved.tail, buffer.data() + list.end - 3, 3);
                saved_.push_back(saved);
                std::memcpy(buffer.data() + list.begin, "<!--", 4);
                std::memcpy(buffer.data() + list.end - 3, "-->", 3);
                // The end tag closes the element: the walk goes on after it.
                at = s.find('>', list.end) + 1;
                continue;
            }
            path.Push(name);
        }
    }
}

void CSurfaceScan::Restore() {
    if (restored_) return;
    for (size_t k = 0; k < lists_.size(); ++k) {
        std::memcpy(base_ + lists_[k].begin, saved_[k].head, 4);
        std::memcpy(base_ + lists_[k].end - 3, saved_[k].tail, 3);
    }
    restored_ = true;
}

const TScannedList* CSurfaceScan::Find(const char* name) const {
    const auto from = reinterpret_cast<uintptr_t>(base_), at = reinterpret_cast<uintptr_t>(name);
    if (!base_ || !restored_ || at < from) return nullptr;
    const size_t offset = at - from;
    auto it = std::lower_bound(lists_.begin(), lists_.end(), offset,
                               [](const TScannedList& l, size_t o) { return l.nameOffset < o; });
    return it != lists_.end() && it->nameOffset == offset ? &*it : nullptr;
}

void CSurfaceScan::Release(size_t from, size_t to) const {
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t first = (reinterpret_cast<uintptr_t>(base_ + from) + page - 1) & ~(page - 1);
    const uintptr_t last = reinterpret_cast<uintptr_t>(base_ + to) & ~(page - 1);
    // Only whole pages inside the range: the bytes around it stay as they are.
    if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
}
