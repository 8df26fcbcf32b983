#include "landxml_import/xml_reader.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>

#include "landxml_import/coordinate_system.h"
#include "landxml_import/text_lists.h"
#include "landxml_import/xml_text_encoding.h"

namespace {

// The standard XML handling of texts (entities, CDATA, line ends, attribute
// white space); the first text of an element is kept in the element itself,
// which halves the nodes of a surface. Comments, processing instructions and
// the declaration are skipped.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute |
                                   pugi::parse_eol | pugi::parse_embed_pcdata;

// Reads a whole file; false when it cannot be opened or read.
bool ReadWholeFile(const char* path, std::string& out) {
    struct Closer {
        void operator()(FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<FILE, Closer> f(std::fopen(path, "rb"));
    if (!f) return false;
    out.clear();
    // Regular files are read in one go into a buffer of their size; pipes and
    // files that grow meanwhile go on in chunks.
    if (std::fseek(f.get(), 0, SEEK_END) == 0) {
        const long size = std::ftell(f.get());
        std::rewind(f.get());
        if (size > 0) {
            out.resize(static_cast<size_t>(size));
            out.resize(std::fread(out.data(), 1, out.size(), f.get()));
            if (out.size() < static_cast<size_t>(size)) return !std::ferror(f.get());
        }
    }
    char chunk[1 << 16];
    for (;;) {
        const size_t n = std::fread(chunk, 1, sizeof chunk, f.get());
        out.append(chunk, n);
        if (n < sizeof chunk) break;
    }
    return !std::ferror(f.get());
}

const char* DescribeParseStatus(pugi::xml_parse_status s) {
    switch (s) {
        case pugi::status_file_not_found:
        case pugi::status_io_error: return "cannot read the file";
        case pugi::status_out_of_memory: return "out of memory";
        case pugi::status_unrecognized_tag: return "unrecognised tag";
        case pugi::status_bad_pi: return "bad processing instruction or declaration";
        case pugi::status_bad_comment: return "bad comment";
        case pugi::status_bad_cdata: return "bad CDATA section";
        case pugi::status_bad_doctype: return "bad document type declaration";
        case pugi::status_bad_pcdata: return "bad character data";
        case pugi::status_bad_start_element: return "bad start tag";
        case pugi::status_bad_attribute: return "bad attribute";
        case pugi::status_bad_end_element: return "bad end tag";
        case pugi::status_end_element_mismatch: return "end tag does not match its start tag";
        case pugi::status_append_invalid_root: return "invalid root";
        case pugi::status_no_document_element: return "no root element";
        case pugi::status_internal_error:
        case pugi::status_ok: break;
    }
    return "not well-formed";
}

// 1-based line of a byte offset.
int LineOfOffset(std::string_view text, size_t offset) {
    offset = std::min(offset, text.size());
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

struct StringWriter : pugi::xml_writer {
    std::string& out;
    explicit StringWriter(std::string& o) : out(o) {}
    void write(const void* data, size_t size) override { out.append(static_cast<const char*>(data), size); }
};

}  // namespace

std::string TXmlLoadStatus::Describe() const {
    switch (code) {
        case OK: return "ok";
        case OPEN_FAILED: return "cannot open the file";
        case MALFORMED: return "malformed XML at line " + std::to_string(line) + ": " + reason;
        case NO_ROOT: return "no LandXML root element" + (reason.empty() ? std::string() : " (" + reason + ")");
    }
    return reason;
}

std::string XmlSection::GetXML() const {
    std::string out;
    if (IsEmpty()) return out;
    StringWriter writer(out);
    node_.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return out;
}

CXmlReader::CXmlReader() = default;
CXmlReader::~CXmlReader() = default;

void CXmlReader::Reset() {
    doc_.reset();
    scan_.Clear();
    status_ = {};
    map_.Close();
    owned_.clear();
    text_ = {};
    mutableText_ = nullptr;
    skeleton_.clear();
    skeleton_.shrink_to_fit();
    parsedSkeleton_ = false;
    crsTagKnown_ = false;
    crsTag_ = 0;
}

bool CXmlReader::LoadFromFile(const char* path) {
    Reset();
    if (!path || (!map_.Open(path) && !ReadWholeFile(path, owned_))) {
        owned_.clear();
        status_.code = TXmlLoadStatus::OPEN_FAILED;
        status_.reason = "cannot open the file";
        return false;
    }
    auto reread = [file = std::string(path)] {
        std::string again;
        ReadWholeFile(file.c_str(), again);
        return again;
    };
    const bool ok = Parse(reread);
    reread_ = reread;
    path_ = path;
    return ok;
}

bool CXmlReader::LoadFromText(std::string_view bytes) {
    reread_ = nullptr;
    path_.clear();
    Reset();
    owned_.assign(bytes);
    return Parse([bytes] { return std::string(bytes); });
}

std::string CXmlReader::OriginalPrefix(size_t n) const {
    if (path_.empty()) return std::string();
    FILE* f = std::fopen(path_.c_str(), "rb");
    if (!f) return std::string();
    std::string out(n, '\0');
    out.resize(std::fread(out.data(), 1, n, f));
    std::fclose(f);
    return out;
}

std::string CXmlReader::OriginalText() const {
    if (!reread_) return std::string();
    std::string original = reread_();
    ConvertXmlTextToUtf8(original);
    return original;
}

pugi::xml_encoding CXmlReader::PrepareText() {
    if (map_.IsOpen()) {
        const std::string_view bytes(map_.Data(), map_.Size());
        const TXmlDeclaredEncoding declared = DetectXmlEncoding(bytes);
        // A mapped file is read as it is unless it needs converting (a
        // single-byte text with bytes beyond ASCII).
        const bool asIs = declared == TXmlDeclaredEncoding::UTF8 || declared == TXmlDeclaredEncoding::WIDE ||
                          std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
        if (asIs) {
            const size_t bom = declared == TXmlDeclaredEncoding::UTF8 && bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
            mutableText_ = map_.Data() + bom;
            text_ = bytes.substr(bom);
            return declared == TXmlDeclaredEncoding::WIDE ? pugi::encoding_auto : pugi::encoding_utf8;
        }
        owned_.assign(bytes);
        map_.Close();
    }
    const pugi::xml_encoding encoding = ConvertXmlTextToUtf8(owned_);
    mutableText_ = owned_.data();
    text_ = owned_;
    return encoding;
}

char* CXmlReader::ParseTarget(size_t& size) {
    if (parsedSkeleton_) {
        size = skeleton_.size();
        return skeleton_.data();
    }
    size = text_.size();
    return mutableText_;
}

ptrdiff_t CXmlReader::OffsetOf(const char* text) const {
    const auto at = reinterpret_cast<uintptr_t>(text);
    const auto in = [at](std::string_view s) {
        const auto from = reinterpret_cast<uintptr_t>(s.data());
        return at >= from && at - from < s.size();
    };
    if (parsedSkeleton_ && in(skeleton_))
        return static_cast<ptrdiff_t>(scan_.TextOffset(at - reinterpret_cast<uintptr_t>(skeleton_.data())));
    if (in(text_)) return static_cast<ptrdiff_t>(at - reinterpret_cast<uintptr_t>(text_.data()));
    return -1;
}

ptrdiff_t CXmlReader::OffsetOf(pugi::xml_node node) const {
    const ptrdiff_t at = node.offset_debug();
    if (at < 0 || !parsedSkeleton_) return at;
    return static_cast<ptrdiff_t>(scan_.TextOffset(static_cast<size_t>(at)));
}

void CXmlReader::NoteCoordinateSystemTag() {
    // No scanned range can hold the tag (its bytes are plain P and F
    // elements), nor can one join two pieces of the skeleton into it.
    if (!map_.IsOpen()) return;
    const size_t at = roadx::landxml::FindCoordinateSystemTag(skeleton_);
    crsTagKnown_ = true;
    crsTag_ = at == std::string_view::npos
                  ? at
                  : scan_.TextOffset(at) + static_cast<size_t>(text_.data() - map_.Data());
}

bool CXmlReader::Parse(const std::function<std::string()>& rereadSource) {
    const pugi::xml_encoding encoding = PrepareText();
    scan_.Clear();
    // The scan reads UTF-8 bytes; wide texts are converted by the parser
    // into a buffer of its own and are read through the DOM alone.
    if (scanSurfaces_ && encoding == pugi::encoding_utf8) {
        CSurfaceScan::TRelease release;
        if (releaseScanned_ && map_.IsOpen()) {
            const size_t base = static_cast<size_t>(text_.data() - map_.Data());
            release = [this, base](size_t from, size_t to) { map_.Release(base + from, base + to); };
        }
        scan_.Run(text_, std::move(release));
        if (scan_.Ranges() > 0) {
            scan_.MakeSkeleton(skeleton_);
            parsedSkeleton_ = true;
            NoteCoordinateSystemTag();
        }
    }
    // The text is parsed in place: it must outlive the document, and it is
    // owned next to it.
    size_t size = 0;
    char* target = ParseTarget(size);
    const pugi::xml_parse_result r = doc_.load_buffer_inplace(target, size, kParseOptions, encoding);
    if (!r) {
        status_.code = TXmlLoadStatus::MALFORMED;
        const size_t at = r.offset < 0 ? 0 : static_cast<size_t>(r.offset);
        status_.offset = parsedSkeleton_ ? scan_.TextOffset(at) : at;
        status_.reason = DescribeParseStatus(r.status);
        // The in-place parse rewrote the text; lines are counted on the
        // text as it was before parsing (only on this failure path).
        std::string original = rereadSource();
        ConvertXmlTextToUtf8(original);
        status_.line = LineOfOffset(original, status_.offset);
        const TXmlLoadStatus failed = status_;
        Reset();
        status_ = failed;
        return false;
    }
    const pugi::xml_node root = doc_.document_element();
    if (std::string_view(root.name()) != "LandXML") {
        status_.code = TXmlLoadStatus::NO_ROOT;
        status_.reason = root ? "found '" + std::string(root.name()) + "'" : std::string("empty document");
        return false;
    }
    return true;
}

XmlSection CXmlReader::Root() const {
    const pugi::xml_node root = doc_.document_element();
    if (std::string_view(root.name()) != "LandXML") return XmlSection();
    return XmlSection(root);
}

bool PX_String(const XmlSection& section, const char* name, CString& value) {
    if (section.IsEmpty()) return false;
    if (!name || !*name) {
        const pugi::xml_text text = section.Node().text();
        if (!text) return false;
        value.assign(text.get());
        return true;
    }
    const pugi::xml_attribute a = section.Node().attribute(name);
    if (a.empty()) return false;
    value.assign(a.value());
    return true;
}

bool PX_Double(const XmlSection& section, const char* name, double& value) {
    if (section.IsEmpty()) return false;
    if (!name || !*name) {
        const pugi::xml_text text = section.Node().text();
        if (!text) return false;
        value = ReadStreamDouble(text.get());
        return true;
    }
    const pugi::xml_attribute a = section.Node().attribute(name);
    if (a.empty()) return false;
    value = ReadStreamDouble(a.value());
    return true;
}

bool PX_Double(const XmlSection& section, const char* name, double& value, double defaultValue) {
    if (PX_Double(section, name, value)) return true;
    value = defaultValue;
    return false;
}

bool PX_Int(const XmlSection& section, const char* name, int& value) {
    if (section.IsEmpty()) return false;
    if (!name || !*name) {
        const pugi::xml_text text = section.Node().text();
        if (!text) return false;
        value = ReadStreamInt(text.get());
        return true;
    }
    const pugi::xml_attribute a = section.Node().attribute(name);
    if (a.empty()) return false;
    value = ReadStreamInt(a.value());
    return true;
}
