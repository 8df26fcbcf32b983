// The XML section reader of the LandXML import: one parsed file (CXmlReader)
// and light handles on its elements (XmlSection) with the property exchange
// functions PX_String, PX_Double and PX_Int.
//
// Loading: a regular file is mapped into memory (vesk/mapped_file.h), any
// other is read into one buffer; the text is parsed in place (element texts
// stay in it, nothing is copied per element). With the surface scan on, the
// parser reads the text without the scanned surface ranges instead (a
// skeleton, surface_scan.h), and every offset handed out is the text's. A UTF-8 byte
// order mark, a default namespace or none read the same. Files declared
// ISO-8859-1 (or latin1) or windows-1252 are converted to UTF-8 before
// parsing; UTF-16 files with a byte order mark are converted by the parser.
// Every text handed out is UTF-8.
//
// Names: tags and attribute names compare exactly (case-sensitive, a prefix
// is part of the name).
//
// Sections are plain values (a node pointer) that stay valid while their
// CXmlReader lives. Enumerating children does no heap allocation.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "landxml_import/surface_scan.h"
#include "vesk/mapped_file.h"
#include "vesk/string.h"

class XmlSection;

// How a load went, with where and why it failed.
struct TXmlLoadStatus {
    enum Code {
        OK = 0,
        OPEN_FAILED,  // the file could not be opened or read
        MALFORMED,    // not well-formed XML (line and reason set)
        NO_ROOT,      // well-formed, but the root element is not `LandXML`
    };
    Code code = OK;
    size_t offset = 0;   // byte offset of the error in the UTF-8 text
    int line = 0;        // 1-based line of the error (MALFORMED)
    std::string reason;  // what is wrong, in a few words

    bool ok() const { return code == OK; }
    // One line for the user: "malformed XML at line L: reason",
    // "cannot open the file", "no LandXML root element (found 'X')".
    std::string Describe() const;
};

// Iterates, in document order, the children of an element that have one tag.
class XmlChildren {
public:
    class iterator {
    public:
        iterator() = default;
        iterator(pugi::xml_node node, const char* tag) : node_(node), tag_(tag) {}
        XmlSection operator*() const;
        iterator& operator++() {
            node_ = node_.next_sibling(tag_);
            return *this;
        }
        bool operator==(const iterator& o) const { return node_ == o.node_; }
        bool operator!=(const iterator& o) const { return node_ != o.node_; }

    private:
        pugi::xml_node node_;
        const char* tag_ = "";
    };

    XmlChildren(pugi::xml_node parent, const char* tag) : parent_(parent), tag_(tag) {}
    iterator begin() const { return iterator(parent_.child(tag_), tag_); }
    iterator end() const { return iterator(); }

private:
    pugi::xml_node parent_;
    const char* tag_;
};

// One element of a loaded file; an empty section (no element) answers every
// question with "absent".
class XmlSection {
public:
    XmlSection() = default;
    explicit XmlSection(pugi::xml_node node) : node_(node) {}

    bool IsEmpty() const { return node_.type() != pugi::node_element; }
    explicit operator bool() const { return !IsEmpty(); }
    bool operator==(const XmlSection& o) const { return node_ == o.node_; }

    // The element's tag.
    std::string_view GetSectionName() const { return node_.name(); }

    // Children with a tag, in document order: `for (XmlSection s : x.Children("P"))`.
    XmlChildren Children(const char* tag) const { return XmlChildren(node_, tag); }
    // The first child with a tag (empty section when none).
    XmlSection Child(const char* tag) const { return XmlSection(node_.child(tag)); }
    // Does a child element with this tag exist.
    bool IsSectionExists(const char* tag) const { return !node_.child(tag).empty(); }
    // Does an attribute with this name exist.
    bool IsPropertyExists(const char* name) const { return !node_.attribute(name).empty(); }

    // An attribute's text without copying; empty when absent (use
    // IsPropertyExists to tell absent from empty).
    std::string_view Attribute(const char* name) const { return node_.attribute(name).value(); }
    // The element's own text content without copying (the first text or
    // CDATA child; "" when none). Valid while the reader lives.
    const char* TextPtr() const { return node_.text().get(); }
    std::string_view Text() const { return TextPtr(); }

    // The element serialised as XML text (no declaration, no indentation).
    std::string GetXML() const;

    pugi::xml_node Node() const { return node_; }

private:
    pugi::xml_node node_;
};

inline XmlSection XmlChildren::iterator::operator*() const { return XmlSection(node_); }

// One loaded LandXML file.
class CXmlReader {
public:
    CXmlReader();
    ~CXmlReader();
    CXmlReader(const CXmlReader&) = delete;
    CXmlReader& operator=(const CXmlReader&) = delete;

    // Reads and parses a whole file; false on failure (see GetStatus()).
    bool LoadFromFile(const char* path);
    // Parses a text held in memory (bytes as a file would hold them).
    bool LoadFromText(std::string_view bytes);

    const TXmlLoadStatus& GetStatus() const { return status_; }

    // Before a load: read the surfaces' Pnts and Faces without DOM nodes
    // (surface_scan.h). Off by default: the DOM then holds every element.
    void EnableSurfaceScan(bool on) { scanSurfaces_ = on; }
    // For a reader whose scanned ranges are read once: the memory of a
    // mapped file's ranges is given back as the scan reads them (the bytes
    // read the same afterwards; only the memory they hold is given back).
    void ReleaseScannedAfterReading(bool on) { releaseScanned_ = on; }
    // What the last load scanned; null when the scan was off or the load
    // failed. Valid while the reader lives.
    const CSurfaceScan* SurfaceScan() const { return scanSurfaces_ && Root() ? &scan_ : nullptr; }

    // The root `LandXML` element (empty when not loaded or not LandXML).
    XmlSection Root() const;

    // The file's UTF-8 text (scanned texts point into it; without a scan,
    // parsed in place), and the file's text as it was before an in-place
    // parse rewrote it (read again on each call; for counting lines of
    // diagnostics).
    std::string_view Buffer() const { return text_; }
    // The offset in Buffer() of a text handed out (a DOM text or attribute,
    // or a scanned one), or -1 when it is not in the file's text.
    ptrdiff_t OffsetOf(const char* text) const;
    // The offset in Buffer() of an element's name, or -1.
    ptrdiff_t OffsetOf(pugi::xml_node node) const;

    // The file's bytes as mapped ("" when it was read or converted instead).
    std::string_view MappedBytes() const {
        return map_.IsOpen() ? std::string_view(map_.Data(), map_.Size()) : std::string_view();
    }
    // Where the first "<CoordinateSystem" tag starts in MappedBytes() (npos
    // when there is none), when the load could tell without a search of the
    // whole file: it looks in the parser's skeleton before the parse.
    bool RawCoordinateSystemTag(size_t& at) const {
        at = crsTag_;
        return crsTagKnown_;
    }
    std::string OriginalText() const;
    // The first `n` bytes of the file as read (UTF-8 as parsed for UTF-8
    // files); "" when the text was not loaded from a file.
    std::string OriginalPrefix(size_t n) const;

private:
    // Parses text_; rereadSource gives the original bytes again to count
    // the line of an error.
    bool Parse(const std::function<std::string()>& rereadSource);
    // Brings the loaded bytes to UTF-8 in text_; the encoding to parse with.
    pugi::xml_encoding PrepareText();
    // The bytes to parse in place: the skeleton, or the text itself.
    char* ParseTarget(size_t& size);
    void Reset();
    void NoteCoordinateSystemTag();

    vesk::CMappedFile map_;  // a regular file's bytes
    std::string owned_;      // any other file's bytes, a converted text, or a text from memory
    std::string_view text_;  // the UTF-8 text: in map_ or owned_
    char* mutableText_ = nullptr;
    std::string skeleton_;   // what the parser reads when the scan took ranges out
    bool parsedSkeleton_ = false;
    bool releaseScanned_ = false;
    bool crsTagKnown_ = false;
    size_t crsTag_ = 0;
    pugi::xml_document doc_;
    TXmlLoadStatus status_;
    bool scanSurfaces_ = false;
    CSurfaceScan scan_;
    std::function<std::string()> reread_;
    std::string path_;
};

// Property exchange in loading mode. `name` is an attribute name; an empty
// name means the element's own text. A missing attribute (or an absent text)
// leaves the target as it was and returns false.
//
// Numbers are read as stream extraction of the text reads them: the leading
// number is taken and the rest ignored, a text that is not a number gives 0,
// a double beyond the range +-DBL_MAX, an integer beyond the range
// INT_MIN/INT_MAX.
bool PX_String(const XmlSection& section, const char* name, CString& value);
bool PX_Double(const XmlSection& section, const char* name, double& value);
bool PX_Int(const XmlSection& section, const char* name, int& value);
// Four-argument form: a missing attribute sets the default.
bool PX_Double(const XmlSection& section, const char* name, double& value, double defaultValue);
