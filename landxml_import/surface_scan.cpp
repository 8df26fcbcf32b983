#include "landxml_import/surface_scan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <atomic>
#include <new>
#include <system_error>
#include <thread>

#include "landxml_import/byte_search.h"
#include "landxml_import/plain_numbers.h"

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

// The corners of the faces of a Definition from its start tag's attributes
// (as written, between the name and the '>'): 3 when its surfType is
// exactly "TIN", 4 for any other type or none, 0 when the scan cannot be
// sure what the parser will make of the value (an entity, a line break or a
// tab in it, or attributes it cannot follow).
int FaceCorners(std::string_view attrs) {
    size_t i = 0;
    const size_t n = attrs.size();
    for (;;) {
        while (i < n && IsWs(attrs[i])) ++i;
        if (i >= n || attrs[i] == '/') return 4;
        const size_t nameAt = i;
        if (!IsNameStart(attrs[i])) return 0;
        while (i < n && IsNameChar(attrs[i])) ++i;
        const std::string_view name = attrs.substr(nameAt, i - nameAt);
        while (i < n && IsWs(attrs[i])) ++i;
        if (i >= n || attrs[i] != '=') return 0;
        ++i;
        while (i < n && IsWs(attrs[i])) ++i;
        if (i >= n || (attrs[i] != '"' && attrs[i] != '\'')) return 0;
        const size_t q = attrs.find(attrs[i], i + 1);
        if (q == std::string_view::npos) return 0;
        const std::string_view value = attrs.substr(i + 1, q - i - 1);
        i = q + 1;
        if (name != "surfType") continue;
        if (value.find_first_of("&\t\n\r<") != std::string_view::npos) return 0;
        return value == "TIN" ? 3 : 4;
    }
}

// The open elements from the root to the current one, with what the surface
// walk needs to know of them.
class CPath {
public:
    void Push(std::string_view name, std::string_view attrs) {
        names_.push_back(name);
        if (InDefinitionItself()) {
            seenPnts_ = seenFaces_ = false;
            corners_ = FaceCorners(attrs);
        }
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
    // The corners of the current Definition's faces (FaceCorners).
    int Corners() const { return corners_; }

private:
    std::vector<std::string_view> names_;
    bool seenPnts_ = false;
    bool seenFaces_ = false;
    int corners_ = 0;
};

std::atomic<size_t> gAheadMinBytes{CSurfaceScan::kAheadMinBytes};

// Reads the numbers of one element into the list's numbers, or keeps it.
void ReadNumbers(const TScannedElem& e, char tag, TScannedNumbers& nums) {
    if (tag == 'P') {
        int id = 0;
        double xyz[3];
        if (e.hasId && plain_numbers::ReadId(e.id, id) && plain_numbers::ReadDoubles(e.text, 3, xyz)) {
            nums.ints.PushBack(id);
            std::memcpy(nums.reals.Append(3), xyz, sizeof xyz);
            return;
        }
        nums.ints.PushBack(-1);
    } else {
        const auto stride = static_cast<size_t>(nums.stride);
        int* ids = nums.ints.Append(stride);
        if (plain_numbers::ReadIds(e.text, nums.stride, ids)) return;
        ids[0] = -1;
    }
    nums.others.push_back(e);
}

// The shapes almost every surface element has, read in one pass over their
// bytes: <P id="digits">n n n</P> and <F>i i i</F> (or four ids), numbers
// and ids plain, blanks around and between, the end tag right after. On any
// other byte they answer false and the element is read by ReadElem and
// ReadNumbers, which give the same for these shapes (the fast readers take
// a subset of what those take, and read it the same way).
bool FastFace(std::string_view s, size_t& at, int stride, TScannedNumbers& nums) {
    if (s.size() - at < 4 || s[at] != '<' || s[at + 1] != 'F' || s[at + 2] != '>') return false;
    const char* p = s.data() + at + 3;
    const char* const end = s.data() + s.size();
    int ids[4];
    int k = 0;
    while (p < end && *p == ' ') ++p;
    while (p < end && *p != '<') {
        if (k == stride) return false;
        int v = 0, digits = 0;
        for (; p < end && static_cast<unsigned>(*p - '0') < 10; ++p, ++digits) {
            if (digits == 9) return false;
            v = v * 10 + (*p - '0');
        }
        if (digits == 0) return false;
        ids[k++] = v;
        while (p < end && *p == ' ') ++p;
    }
    if (k != stride || end - p < 4 || p[1] != '/' || p[2] != 'F' || p[3] != '>') return false;
    std::memcpy(nums.ints.Append(static_cast<size_t>(stride)), ids, static_cast<size_t>(stride) * sizeof(int));
    at = static_cast<size_t>(p + 4 - s.data());
    return true;
}

bool FastPoint(std::string_view s, size_t& at, TScannedNumbers& nums) {
    static constexpr std::string_view kHead = "<P id=\"";
    if (s.compare(at, kHead.size(), kHead) != 0) return false;
    const char* p = s.data() + at + kHead.size();
    const char* const end = s.data() + s.size();
    int id = 0, digits = 0;
    for (; p < end && static_cast<unsigned>(*p - '0') < 10; ++p, ++digits) {
        if (digits == 9) return false;
        id = id * 10 + (*p - '0');
    }
    if (digits == 0 || end - p < 2 || p[0] != '"' || p[1] != '>') return false;
    p += 2;
    double v[3];
    int k = 0;
    while (p < end && *p == ' ') ++p;
    while (p < end && *p != '<') {
        if (k == 3) return false;
        p = plain_numbers::ParseDouble(p, end, v[k++]);
        if (!p || p == end || (*p != ' ' && *p != '<')) return false;
        while (*p == ' ' && ++p < end) {
        }
    }
    if (k != 3 || end - p < 4 || p[1] != '/' || p[2] != 'P' || p[3] != '>') return false;
    nums.ints.PushBack(id);
    std::memcpy(nums.reals.Append(3), v, sizeof v);
    at = static_cast<size_t>(p + 4 - s.data());
    return true;
}

}  // namespace

// The Faces that follows a Pnts is checked and read on a second thread
// while the walk reads the Pnts: the two are most of the scan. The thread
// starts only where a Faces start tag follows the first "</Pnts" at once,
// and its result is used only if the walk, going on by its own rules,
// reaches a first Faces whose content starts at that very place; reading a
// range looks at nothing before it, so the result is what the walk would
// compute.
class CSurfaceScan::CAheadCheck {
public:
    ~CAheadCheck() { Wait(); }

    void Start(std::string_view s, size_t pntsContent, int stride, const TRelease& release) {
        Wait();  // a Faces read ahead that the walk never reached
        at_ = std::string_view::npos;
        const size_t end = FindByRareByte(s, pntsContent, "</Pnts", 3);
        if (end == std::string_view::npos || end - pntsContent < gAheadMinBytes.load(std::memory_order_relaxed))
            return;
        size_t j = SkipSpace(s, end + 6);
        if (j >= s.size() || s[j] != '>') return;
        j = SkipSpace(s, j + 1);
        if (!StartsWith(s, j, "<Faces") || j + 6 >= s.size() || !(IsWs(s[j + 6]) || s[j + 6] == '>')) return;
        const size_t gt = EndOfTag(s, j + 6);
        if (gt == std::string_view::npos || s[gt - 1] == '/') return;
        at_ = gt + 1;
        stride_ = stride;
        try {
            thread_ = std::thread([this, s, &release] {
                // Out of memory on this thread: the walk reads the range itself.
                try {
                    ok_ = ReadList(s, at_, 'F', stride_, release, list_);
                } catch (const std::bad_alloc&) {
                    ok_ = false;
                    list_ = TScannedList{};
                }
            });
        } catch (const std::system_error&) {
            at_ = std::string_view::npos;  // no thread to be had: the walk reads it itself
        }
    }
    void Wait() {
        if (thread_.joinable()) thread_.join();
    }
    // The result for a Faces whose content starts at `at`, when it is the
    // one read ahead with the same stride.
    bool Take(size_t at, int stride, bool& ok, TScannedList& list) {
        if (at_ == std::string_view::npos || at != at_) return false;
        Wait();
        at_ = std::string_view::npos;
        if (stride != stride_) return false;
        ok = ok_;
        list = std::move(list_);
        return true;
    }

private:
    std::thread thread_;
    size_t at_ = std::string_view::npos;
    int stride_ = 0;
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

bool CSurfaceScan::ReadList(std::string_view s, size_t at, char tag, int stride, const TRelease& release,
                            TScannedList& list) {
    constexpr size_t kReleaseStep = size_t{8} << 20;
    const std::string_view endTag = tag == 'P' ? "</Pnts" : "</Faces";
    // A list may be filled again (the one read ahead): nothing of an
    // earlier reading stays.
    list = TScannedList{};
    list.begin = at;
    list.tag = tag;
    list.numbers.stride = stride;
    size_t released = at;
    // Elements kept for later (not plain) are read again: their pages stay.
    size_t keepFrom = std::string_view::npos;
    TScannedElem e;
    for (;;) {
        at = SkipSpace(s, at);
        if (at >= s.size()) return false;
        if (at + 1 < s.size() && s[at + 1] == '/' && StartsWith(s, at, endTag)) break;
        ++list.count;
        const size_t elemAt = at;
        if (stride > 0 && (tag == 'P' ? FastPoint(s, at, list.numbers) : FastFace(s, at, stride, list.numbers))) {
        } else {
            if (!ReadElem(s, at, tag, e)) return false;
            if (stride > 0) ReadNumbers(e, tag, list.numbers);
            if (keepFrom == std::string_view::npos && !list.numbers.others.empty()) keepFrom = elemAt;
        }
        if (release && at - released >= kReleaseStep) {
            const size_t upTo = std::min(at, keepFrom);
            if (upTo > released) release(released, upTo);
            released = std::max(released, upTo);
        }
    }
    list.end = at;
    const size_t close = SkipSpace(s, at + endTag.size());
    return close < s.size() && s[close] == '>';
}

bool CSurfaceScan::CheckList(size_t at, char tag, int stride, CAheadCheck& ahead, TScannedList& list) {
    bool ok = false;
    if (tag == 'F' && ahead.Take(at, stride, ok, list)) return ok;
    if (tag == 'P') ahead.Start(text_, at, stride, release_);
    return ReadList(text_, at, tag, tag == 'P' ? 1 : stride, release_, list);
}

void CSurfaceScan::Clear() {
    text_ = {};
    release_ = nullptr;
    lists_.clear();
    cuts_.clear();
    skeleton_ = nullptr;
    skeletonSize_ = 0;
}

void CSurfaceScan::Run(std::string_view text, TRelease release) {
    Clear();
    text_ = text;
    release_ = std::move(release);
    const std::string_view s = text_;
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
            if (first && CheckList(at, name == "Pnts" ? 'P' : 'F', path.Corners(), ahead, list)) {
                list.nameOffset = tagAt + 1;
                // The end tag closes the element: the walk goes on after it.
                at = s.find('>', list.end) + 1;
                lists_.push_back(std::move(list));
                continue;
            }
            path.Push(name, s.substr(i, gt - i));
        }
    }
}

void CSurfaceScan::MakeSkeleton(std::string& out) {
    out.clear();
    size_t reserve = text_.size();
    for (const TScannedList& l : lists_) reserve -= l.end - l.begin;
    out.reserve(reserve);
    cuts_.clear();
    size_t from = 0, removed = 0;
    for (const TScannedList& l : lists_) {
        out.append(text_.substr(from, l.begin - from));
        removed += l.end - l.begin;
        cuts_.push_back({out.size(), removed});
        from = l.end;
    }
    out.append(text_.substr(from));
    skeleton_ = out.data();
    skeletonSize_ = out.size();
}

size_t CSurfaceScan::TextOffset(size_t skeletonOffset) const {
    auto it = std::upper_bound(cuts_.begin(), cuts_.end(), skeletonOffset,
                               [](size_t o, const TCut& c) { return o < c.skeletonAt; });
    return it == cuts_.begin() ? skeletonOffset : skeletonOffset + std::prev(it)->removed;
}

const TScannedList* CSurfaceScan::Find(const char* name) const {
    const auto from = reinterpret_cast<uintptr_t>(skeleton_), at = reinterpret_cast<uintptr_t>(name);
    if (!skeleton_ || at < from || at - from >= skeletonSize_) return nullptr;
    const size_t offset = TextOffset(at - from);
    auto it = std::lower_bound(lists_.begin(), lists_.end(), offset,
                               [](const TScannedList& l, size_t o) { return l.nameOffset < o; });
    return it != lists_.end() && it->nameOffset == offset ? &*it : nullptr;
}
