// Diagnostics of one LandXML import: the sink the caller passed, the file's
// name, and where in the parsed file a record points (line, byte offset,
// element path).
//
// The readers report through the free functions below. They find the import
// in progress through a scope the driver opens (one per thread, so nested or
// parallel imports do not mix); without a scope, or without a sink, every
// report is one test of a thread-local pointer. Places (line, element path)
// are worked out only for the first record of a kind, since later ones merge
// into it.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "landxml_import/xml_reader.h"
#include "vesk/diagnostics.h"

class CImportDiagScope {
public:
    // `reader` holds the parsed file; `file` is the path as the user gave it.
    CImportDiagScope(vesk::diag::CSink* sink, std::string file, const CXmlReader& reader);
    ~CImportDiagScope();
    CImportDiagScope(const CImportDiagScope&) = delete;
    CImportDiagScope& operator=(const CImportDiagScope&) = delete;

    // The scope of this thread's import with a sink, or nullptr.
    static CImportDiagScope* Current();

    // A record placed at an element (its line and path).
    void Report(const char* kind, const XmlSection& where, std::string message, std::string instead, int64_t count,
                vesk::diag::ESeverity severity = vesk::diag::ESeverity::Warning);
    // A note with named values (nothing lost: what was read, for `info`).
    void Note(const char* kind, const XmlSection& where, std::string message,
              std::vector<std::pair<std::string, std::string>> values);
    // A record placed at a text inside the parsed file (a token); the
    // element is the one whose text or attribute holds it.
    void ReportText(const char* kind, std::string_view text, std::string message, std::string instead);

    const std::string& File() const { return file_; }
    // Distance in metres beyond which the geometry check reports.
    double Tolerance() const { return sink_->checkTolerance; }

private:
    bool Merge(const char* kind, int64_t count);
    int64_t LineOf(size_t offset);
    // Fills the record's file, offset, line and element path from where.
    void Place(vesk::diag::TRecord& r, const XmlSection& where);
    std::string UnparsedChild(pugi::xml_node node, size_t offset);
    std::string SiblingSuffix(pugi::xml_node parent, size_t parentAt, size_t open, std::string_view name);

    vesk::diag::CSink* sink_;
    std::string file_;
    const CXmlReader& reader_;
    std::string original_;  // the text before in-place parsing, read on need
    bool haveOriginal_ = false;
    CImportDiagScope* previous_;
    friend class CImportDiagPause;
};

// Silences the thread's import diagnostics while a check reads the file a
// second time (its numbers were reported on the first reading).
class CImportDiagPause {
public:
    CImportDiagPause();
    ~CImportDiagPause();
    CImportDiagPause(const CImportDiagPause&) = delete;
    CImportDiagPause& operator=(const CImportDiagPause&) = delete;

private:
    CImportDiagScope* saved_;
};

// "Alignment "A" / CoordGeom / Spiral 3 (station 120.5)": the element's
// ancestors below the root, each with its name when it has one, else its
// number among its siblings of the same tag when there are several.
std::string ElementPath(const XmlSection& e);

// Reports at an element when an import with a sink is in progress.
inline void DiagReport(const char* kind, const XmlSection& where, std::string message, std::string instead = "",
                       int64_t count = 1) {
    if (CImportDiagScope* d = CImportDiagScope::Current())
        d->Report(kind, where, std::move(message), std::move(instead), count);
}
