// The bulk of a surface file, its Pnts/P and Faces/F elements, read without
// DOM nodes.
//
// Before the file is parsed, one pass over the UTF-8 buffer walks its markup
// (tags, comments, CDATA, processing instructions) and finds the first Pnts
// and the first Faces of every LandXML/Surfaces/Surface/Definition. When the
// content of such an element has the plain form
//     white space, then <P attr="v" ...>text</P> (or <P .../>), white space, ...
// with no entity, comment, CDATA or carriage return inside a text, its range
// is recorded and turned into one comment for the parse (its first four bytes
// become "<!--" and its last three "-->", kept aside and put back after the
// parse), so the parser skips it without building a node and without touching
// its bytes. Any other form is left alone and read through the DOM as before:
// the scan never has to understand more than the plain form.
//
// The surface reader then walks a recorded range once more, element by
// element, handing each one's "id" attribute and text to the same per-point
// and per-face functions as the DOM path. What the plain form allows is read
// exactly as the parser would give it: texts and attribute values hold no
// entity and no carriage return, so their bytes are the parser's bytes.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// One child element of a scanned range.
struct TScannedElem {
    bool hasId = false;    // an "id" attribute is present (the first one counts)
    std::string_view id;   // its value, as written
    std::string_view text; // the element's text ("" for <P/>)
};

// The content of one scanned Pnts or Faces element.
struct TScannedList {
    size_t nameOffset = 0;  // offset of the element's name (after '<') in the buffer
    size_t begin = 0;       // its content: [begin, end) of the original bytes
    size_t end = 0;
    size_t count = 0;       // number of child elements (P or F)
    char tag = 'P';         // 'P' for Pnts, 'F' for Faces
};

class CSurfaceScan {
public:
    // Before the parse: scans a UTF-8 buffer and turns every plain range
    // into a comment. The buffer must stay where it is until Clear().
    void Run(std::string& buffer);
    // After the parse: puts the bytes that Run() replaced back, so every
    // range reads as the file wrote it.
    void Restore();
    void Clear();

    // The scanned list of the element whose name starts at `name` (a pointer
    // into the parsed buffer), or null when that element was not scanned.
    const TScannedList* Find(const char* name) const;

    // Calls fn(const TScannedElem&) for every child of a scanned list, in
    // document order. With mayRelease false the bytes stay (for a reader on
    // another thread whose texts are looked at later; it gives them back
    // with ReleaseRead).
    template <class Fn>
    void ForEach(const TScannedList& list, Fn&& fn, bool mayRelease = true) const;

    // Gives back what lies between two texts of a list once both are read
    // (when ReleaseAfterReading is on): from..to are pointers into it.
    void ReleaseRead(const char* from, const char* to) const {
        if (release_) Release(static_cast<size_t>(from - base_), static_cast<size_t>(to - base_));
    }
    // The first byte of a list's content, as a pointer into the buffer.
    const char* Begin(const TScannedList& list) const { return base_ + list.begin; }
    const char* End(const TScannedList& list) const { return base_ + list.end; }

    size_t Ranges() const { return lists_.size(); }

    // For an import that reads every range once: the memory of what ForEach
    // has read is given back to the system as it goes (the range then reads
    // as zeros), so the file's buffer and the document it fills are never
    // both whole in memory.
    void ReleaseAfterReading(bool on) { release_ = on; }

    // Reads one child element at `at` (which points at its '<'); false when
    // it does not have the plain form. `at` moves past it.
    static bool ReadElem(std::string_view bytes, size_t& at, char tag, TScannedElem& out);
    static size_t SkipSpace(std::string_view bytes, size_t at);

    // A Faces after a Pnts of at least this many bytes is checked on a
    // second thread (1 MiB by default; the tests and the fuzzer use 0).
    static void SetAheadMinBytes(size_t n);

private:
    class CAheadCheck;
    struct TSaved {
        char head[4];
        char tail[3];
    };
    // Checks a whole content range from `at`; on success fills `list`.
    static bool ReadList(std::string_view bytes, size_t at, char tag, TScannedList& list);
    // ReadList, or the result of the check made ahead for that very range.
    static bool CheckList(std::string_view bytes, size_t at, char tag, CAheadCheck& ahead, TScannedList& list);

    char* base_ = nullptr;             // the parsed buffer
    std::vector<TScannedList> lists_;  // in document order
    std::vector<TSaved> saved_;        // the replaced bytes of each range
    bool restored_ = true;
    bool release_ = false;

    // Gives back the whole pages of [from, to) of the buffer.
    void Release(size_t from, size_t to) const;
    static constexpr size_t kReleaseStep = 8u << 20;
};

template <class Fn>
void CSurfaceScan::ForEach(const TScannedList& list, Fn&& fn, bool mayRelease) const {
    const bool release = release_ && mayRelease;
    const std::string_view bytes(base_ + list.begin, list.end - list.begin);
    size_t at = SkipSpace(bytes, 0);
    size_t released = 0;
    TScannedElem e;
    while (at < bytes.size() && ReadElem(bytes, at, list.tag, e)) {
        fn(e);
        at = SkipSpace(bytes, at);
        if (release && at - released >= kReleaseStep) {
            Release(list.begin + released, list.begin + at);
            released = at;
        }
    }
    if (release) Release(list.begin + released, list.end);
}
