// The bulk of a surface file, its Pnts/P and Faces/F elements, read without
// DOM nodes.
//
// Before the file is parsed, one pass over the UTF-8 text walks its markup
// (tags, comments, CDATA, processing instructions) and finds the first Pnts
// and the first Faces of every LandXML/Surfaces/Surface/Definition. When the
// content of such an element has the plain form
//     white space, then <P attr="v" ...>text</P> (or <P .../>), white space, ...
// with no entity, comment, CDATA or carriage return inside a text, its range
// is recorded, and the numbers of its elements are read on the way
// (plain_numbers.h): the ids and coordinates of every P, the vertex ids of
// every F, into flat lists. An element whose numbers are not plain keeps its
// id and text, and is read later by the ordinary per-element function, in
// its place. Any other form of content is left alone and read through the
// DOM as before: the scan never has to understand more than the plain form.
//
// The parser then reads a skeleton: the text without the content of the
// recorded ranges, which is most of a surface file. Offsets in the skeleton
// map back to offsets in the text, so every place reported is the file's.
//
// When a Pnts of at least 1 MiB is followed at once by its Faces, the Faces
// is checked and read on a second thread while the walk reads the Pnts.
#pragma once
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "landxml_import/block_list.h"

// One child element of a scanned range.
struct TScannedElem {
    bool hasId = false;    // an "id" attribute is present (the first one counts)
    std::string_view id;   // its value, as written
    std::string_view text; // the element's text ("" for <P/>)
};

// What the scan read of a range's elements.
struct TScannedNumbers {
    // Ints per element: 1 for a P (its id), the corners of a face for an F
    // (3 for a TIN, else 4); 0 when nothing was read (a Faces whose surface
    // type the scan could not tell).
    int stride = 0;
    CBlockList<int> ints;               // stride per element; a first value < 0: see others
    CBlockList<double> reals;           // 3 per plain P, as written (northing, easting, elevation)
    std::vector<TScannedElem> others;   // the elements that are not plain, in order
};

// The content of one scanned Pnts or Faces element.
struct TScannedList {
    size_t nameOffset = 0;  // offset of the element's name (after '<') in the text
    size_t begin = 0;       // its content: [begin, end) of the text
    size_t end = 0;
    size_t count = 0;       // number of child elements (P or F)
    char tag = 'P';         // 'P' for Pnts, 'F' for Faces
    TScannedNumbers numbers;
};

class CSurfaceScan {
public:
    // Gives back the memory of [from, to) of the text once read; the bytes
    // read the same afterwards (a file mapping reads them again).
    using TRelease = std::function<void(size_t from, size_t to)>;

    // Scans a UTF-8 text, which must stay where it is until Clear(). With a
    // release function, what the scan has read is given back as it goes.
    void Run(std::string_view text, TRelease release = nullptr);
    void Clear();

    size_t Ranges() const { return lists_.size(); }

    // The text for the parser: the scanned text without the content of the
    // ranges. Remembers where `out` holds it (it must not move afterwards).
    void MakeSkeleton(std::string& out);
    // The offset in the text of an offset in the skeleton.
    size_t TextOffset(size_t skeletonOffset) const;

    // The scanned list of the element whose name starts at `name` (a pointer
    // into the parsed skeleton), or null when that element was not scanned.
    const TScannedList* Find(const char* name) const;

    // Calls fn(const TScannedElem&) for every child of a scanned list, in
    // document order.
    template <class Fn>
    void ForEach(const TScannedList& list, Fn&& fn) const;

    // Reads one child element at `at` (which points at its '<'); false when
    // it does not have the plain form. `at` moves past it.
    static bool ReadElem(std::string_view bytes, size_t& at, char tag, TScannedElem& out);
    static size_t SkipSpace(std::string_view bytes, size_t at);

    // A Faces after a Pnts of at least this many bytes is read on a second
    // thread (1 MiB by default; the tests and the fuzzer use 0).
    static void SetAheadMinBytes(size_t n);
    static constexpr size_t kAheadMinBytes = size_t{1} << 20;

private:
    class CAheadCheck;
    struct TCut {
        size_t skeletonAt;  // where a range's content was taken out
        size_t removed;     // bytes taken out up to and including this cut
    };
    // Checks a whole content range from `at` and reads its numbers (stride
    // ints per element); on success fills `list`.
    static bool ReadList(std::string_view bytes, size_t at, char tag, int stride, const TRelease& release,
                         TScannedList& list);
    // ReadList, or the result of the read made ahead for that very range.
    bool CheckList(size_t at, char tag, int stride, CAheadCheck& ahead, TScannedList& list);

    std::string_view text_;
    TRelease release_;
    std::vector<TScannedList> lists_;  // in document order
    std::vector<TCut> cuts_;
    const char* skeleton_ = nullptr;
    size_t skeletonSize_ = 0;
};

template <class Fn>
void CSurfaceScan::ForEach(const TScannedList& list, Fn&& fn) const {
    const std::string_view bytes = text_.substr(list.begin, list.end - list.begin);
    size_t at = SkipSpace(bytes, 0);
    TScannedElem e;
    while (at < bytes.size() && ReadElem(bytes, at, list.tag, e)) {
        fn(e);
        at = SkipSpace(bytes, at);
    }
}
