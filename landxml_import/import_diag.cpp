#include "landxml_import/import_diag.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

thread_local CImportDiagScope* tCurrent = nullptr;

// The sibling number of an element among those of its tag (1-based), and
// whether it has such siblings at all.
int SiblingNumber(pugi::xml_node n, bool& several) {
    int number = 1;
    for (pugi::xml_node s = n.previous_sibling(n.name()); s; s = s.previous_sibling(n.name())) ++number;
    several = number > 1 || n.next_sibling(n.name());
    return number;
}

std::string Step(pugi::xml_node n) {
    std::string step = n.name();
    const pugi::xml_attribute name = n.attribute("name");
    const pugi::xml_attribute id = n.attribute("id");
    if (name && *name.value()) {
        step += " \"" + std::string(name.value()) + "\"";
    } else if (id && *id.value()) {
        step += " " + std::string(id.value());
    } else {
        bool several = false;
        const int number = SiblingNumber(n, several);
        if (several) step += " " + std::to_string(number);
    }
    const pugi::xml_attribute sta = n.attribute("staStart");
    if (sta && *sta.value()) step += " (station " + std::string(sta.value()) + ")";
    return step;
}

// The deepest element that starts at or before `offset` and encloses it.
pugi::xml_node ElementAt(const CXmlReader& reader, ptrdiff_t offset) {
    pugi::xml_node at = reader.Root().Node();
    for (;;) {
        pugi::xml_node next;
        for (pugi::xml_node c = at.first_child(); c; c = c.next_sibling()) {
            if (c.type() != pugi::node_element) continue;
            if (reader.OffsetOf(c) > offset) break;
            next = c;
        }
        if (!next) return at;
        at = next;
    }
}

}  // namespace

std::string ElementPath(const XmlSection& e) {
    std::string path;
    for (pugi::xml_node n = e.Node(); n && n.parent() && n.parent().type() == pugi::node_element; n = n.parent())
        path = path.empty() ? Step(n) : Step(n) + " / " + path;
    return path;
}

CImportDiagScope::CImportDiagScope(vesk::diag::CSink* sink, std::string file, const CXmlReader& reader)
    : sink_(sink), file_(std::move(file)), reader_(reader), previous_(tCurrent) {
    if (sink_) tCurrent = this;
}

CImportDiagScope::~CImportDiagScope() {
    if (tCurrent == this) tCurrent = previous_;
}

CImportDiagScope* CImportDiagScope::Current() { return tCurrent; }

bool CImportDiagScope::Merge(const char* kind, int64_t count) { return sink_->Merge(kind, file_, count); }

int64_t CImportDiagScope::LineOf(size_t offset) {
    // The file's text before the in-place parse, read only as far as asked
    // (a record near the top of a large file reads a few bytes). Without a
    // file (a text loaded from memory) the parsed buffer answers; its line
    // breaks are those of the text up to small shifts.
    if (original_.size() < offset + 1 && !haveOriginal_) {
        std::string prefix = reader_.OriginalPrefix(std::max<size_t>(offset + 1, original_.size() * 2));
        haveOriginal_ = prefix.size() <= offset;  // the whole file is in
        original_ = std::move(prefix);
    }
    const std::string_view text = original_.empty() ? reader_.Buffer() : std::string_view(original_);
    offset = std::min(offset, text.size());
    return 1 + std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(offset), '\n');
}

void CImportDiagScope::Place(vesk::diag::TRecord& r, const XmlSection& where) {
    r.file = file_;
    if (!where.IsEmpty()) {
        const ptrdiff_t offset = reader_.OffsetOf(where.Node());
        if (offset >= 0) {
            r.offset = offset;
            r.line = LineOf(static_cast<size_t>(offset));
        }
        r.element = ElementPath(where);
    }
}

void CImportDiagScope::Report(const char* kind, const XmlSection& where, std::string message, std::string instead,
                              int64_t count, vesk::diag::ESeverity severity) {
    if (count <= 0 || Merge(kind, count)) return;
    vesk::diag::TRecord r;
    r.severity = severity;
    r.kind = kind;
    Place(r, where);
    r.message = std::move(message);
    r.instead = std::move(instead);
    r.count = count;
    sink_->Report(std::move(r));
}

// The value of attribute `key` in the attributes of a start tag as written
// (name="v" or name = 'v', blanks between), the first one; "" when absent.
std::string_view AttributeOf(std::string_view attrs, std::string_view key) {
    size_t i = 0;
    auto skip = [&] {
        while (i < attrs.size() && std::strchr(" \t\r\n", attrs[i]) && attrs[i] != '\0') ++i;
    };
    for (;;) {
        skip();
        const size_t nameAt = i;
        while (i < attrs.size() && !std::strchr(" \t\r\n=", attrs[i])) ++i;
        const std::string_view name = attrs.substr(nameAt, i - nameAt);
        skip();
        if (name.empty() || i >= attrs.size() || attrs[i] != '=') return {};
        ++i;
        skip();
        if (i >= attrs.size() || (attrs[i] != '"' && attrs[i] != '\'')) return {};
        const size_t valueAt = i + 1;
        const size_t q = attrs.find(attrs[i], valueAt);
        if (q == std::string_view::npos) return {};
        if (name == key) return attrs.substr(valueAt, q - valueAt);
        i = q + 1;
    }
}

// Whether an element named `name` starts at text[at] ('<', the name, then a
// blank, '/' or '>').
bool StartsElement(std::string_view text, size_t at, std::string_view name) {
    const size_t next = at + 1 + name.size();
    return next < text.size() && text.compare(at + 1, name.size(), name) == 0 &&
           std::strchr(" \t\r\n/>", text[next]) != nullptr && text[next] != '\0';
}

std::string CImportDiagScope::UnparsedChild(pugi::xml_node node, size_t offset) {
    // Surface points and faces may be read from the scanned buffer without
    // nodes: the token's own element is the tag opened last before it.
    LineOf(offset + 256);  // the file read past the token's tag
    std::string_view text = original_.empty() ? reader_.Buffer() : std::string_view(original_);
    if (offset > text.size()) return "";
    const size_t open = text.rfind('<', offset);
    const ptrdiff_t nodeAt = reader_.OffsetOf(node);
    if (open == std::string_view::npos || nodeAt < 0 || static_cast<ptrdiff_t>(open) < nodeAt) return "";
    size_t end = open + 1;
    while (end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '_')) ++end;
    std::string step(text.substr(open + 1, end - open - 1));
    if (step.empty()) return "";
    const size_t close = text.find('>', end);
    const std::string_view attrs = text.substr(end, close == std::string_view::npos ? 0 : close - end);
    // As Step() names a node: its name, else its id, else its number.
    if (const std::string_view v = AttributeOf(attrs, "name"); !v.empty()) return " / " + step + " \"" + std::string(v) + "\"";
    if (const std::string_view v = AttributeOf(attrs, "id"); !v.empty()) return " / " + step + " " + std::string(v);
    return " / " + step + SiblingSuffix(node, static_cast<size_t>(nodeAt), open, step);
}

// The number an element without id has among the scanned siblings of its
// name, as Step() gives it for a node: " 3", or "" when it is the only one.
// Scanned content has the plain form, so every "<F " in it starts an F.
std::string CImportDiagScope::SiblingSuffix(pugi::xml_node parent, size_t parentAt, size_t open, std::string_view name) {
    std::string_view text = original_.empty() ? reader_.Buffer() : std::string_view(original_);
    const std::string pattern = "<" + std::string(name);
    int number = 1;
    for (size_t at = text.find(pattern, parentAt); at < open; at = text.find(pattern, at + 1))
        if (StartsElement(text, at, name)) ++number;
    bool several = number > 1;
    if (!several) {
        // A later sibling, before the parent's end tag: read on until either.
        const std::string endTag = "</" + std::string(parent.name());
        for (size_t want = open + 4096;; want *= 2) {
            LineOf(want);
            text = original_.empty() ? reader_.Buffer() : std::string_view(original_);
            const size_t stop = text.find(endTag, open);
            size_t at = text.find(pattern, open + 1);
            while (at != std::string_view::npos && at < stop && !StartsElement(text, at, name)) at = text.find(pattern, at + 1);
            several = at != std::string_view::npos && at < stop;
            if (several || stop != std::string_view::npos || want >= text.size()) break;
        }
    }
    return several ? " " + std::to_string(number) : "";
}

void CImportDiagScope::ReportText(const char* kind, std::string_view text, std::string message, std::string instead) {
    if (Merge(kind, 1)) return;
    vesk::diag::TRecord r;
    r.kind = kind;
    r.file = file_;
    // Texts of the parsed file are at the same offsets as in the file (the
    // in-place parse only shortens texts within their own span).
    if (const ptrdiff_t offset = reader_.OffsetOf(text.data()); offset >= 0) {
        r.offset = offset;
        r.line = LineOf(static_cast<size_t>(offset));
        const pugi::xml_node node = ElementAt(reader_, offset);
        r.element = ElementPath(XmlSection(node)) + UnparsedChild(node, static_cast<size_t>(offset));
    }
    r.message = std::move(message);
    r.instead = std::move(instead);
    sink_->Report(std::move(r));
}

void CImportDiagScope::Note(const char* kind, const XmlSection& where, std::string message,
                            std::vector<std::pair<std::string, std::string>> values) {
    vesk::diag::TRecord r;
    r.severity = vesk::diag::ESeverity::Note;
    r.kind = kind;
    Place(r, where);
    r.message = std::move(message);
    r.values = std::move(values);
    sink_->Report(std::move(r));
}

CImportDiagPause::CImportDiagPause() : saved_(tCurrent) { tCurrent = nullptr; }
CImportDiagPause::~CImportDiagPause() { tCurrent = saved_; }
