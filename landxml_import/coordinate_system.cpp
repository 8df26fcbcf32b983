// The element sits near the top of a file, but a file may be large: the
// bytes are searched for the tag, and only that element is parsed, with the
// file's own XML declaration so that its encoding is honoured. Files in
// UTF-16 (where a byte search cannot find the tag) are parsed whole.
#include "landxml_import/coordinate_system.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>

#include "landxml_import/byte_search.h"
#include "landxml_import/xml_reader.h"
#include "vesk/mapped_file.h"

namespace roadx::landxml {

namespace {

std::string Trim(std::string_view s) {
    const size_t b = s.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos) return "";
    const size_t e = s.find_last_not_of(" \t\r\n");
    return std::string(s.substr(b, e - b + 1));
}

TCoordinateSystem FromRoot(const XmlSection& root) {
    TCoordinateSystem cs;
    const XmlSection e = root.Child("CoordinateSystem");
    if (e.IsEmpty()) return cs;
    cs.found = true;
    cs.name = Trim(e.Attribute("name"));
    cs.epsgCode = Trim(e.Attribute("epsgCode"));
    cs.ogcWktCode = Trim(e.Attribute("ogcWktCode"));
    return cs;
}

TCoordinateSystem ParseWhole(std::string_view bytes) {
    CXmlReader reader;
    if (!reader.LoadFromText(bytes)) return {};
    return FromRoot(reader.Root());
}

bool IsUtf16(std::string_view b) {
    return b.size() >= 2 && ((b[0] == '\xFF' && b[1] == '\xFE') || (b[0] == '\xFE' && b[1] == '\xFF'));
}

}  // namespace

// By the tag's 'y', which the points and faces of a surface never hold
// (byte_search.h).
size_t FindCoordinateSystemTag(std::string_view b) {
    static constexpr std::string_view kTag = "<CoordinateSystem";
    for (size_t at = FindByRareByte(b, 0, kTag, 12); at != std::string_view::npos;
         at = FindByRareByte(b, at + 1, kTag, 12)) {
        const size_t next = at + kTag.size();
        if (next < b.size() && std::strchr(" \t\r\n/>", b[next]) && b[next] != '\0') return at;
    }
    return std::string_view::npos;
}

namespace {

// FindCoordinateSystemTag over a mapped file, a window at a time, giving back each window's
// memory once searched: the search never holds the file in memory beside an
// import's document.
size_t FindTagMapped(const vesk::CMappedFile& map) {
    constexpr size_t kWindow = size_t{8} << 20;
    constexpr size_t kOverlap = 64;  // longer than the tag and its next byte
    const std::string_view b(map.Data(), map.Size());
    for (size_t from = 0; from < b.size(); from += kWindow) {
        const std::string_view window = b.substr(from, kWindow + kOverlap);
        if (const size_t at = FindCoordinateSystemTag(window); at != std::string_view::npos) return from + at;
        map.Release(from, std::min(b.size(), from + kWindow));
    }
    return std::string_view::npos;
}

}  // namespace

std::string TCoordinateSystem::Definition() const {
    if (!epsgCode.empty()) return "EPSG:" + epsgCode;
    return ogcWktCode;
}

TCoordinateSystem CoordinateSystemOfText(std::string_view b) {
    if (IsUtf16(b)) return ParseWhole(b);
    const size_t at = FindCoordinateSystemTag(b);
    if (at == std::string_view::npos) return {};
    // The element ends at "/>" of its start tag or at its end tag.
    const size_t endTag = b.find("</CoordinateSystem>", at);
    const size_t gt = b.find('>', at);
    if (gt == std::string_view::npos) return {};
    size_t end = gt + 1;
    if (b[gt - 1] != '/') {
        if (endTag == std::string_view::npos) return {};
        end = endTag + std::strlen("</CoordinateSystem>");
    }
    std::string text;
    if (b.substr(0, 5) == "<?xml" || b.substr(3, 5) == "<?xml") {
        const size_t declEnd = b.find("?>");
        if (declEnd != std::string_view::npos && declEnd < at) text = std::string(b.substr(0, declEnd + 2));
    }
    text += "<LandXML>";
    text += b.substr(at, end - at);
    text += "</LandXML>";
    return ParseWhole(text);
}

namespace {

// The element whose tag starts at `at` of a file's bytes, parsed with the
// file's XML declaration in front.
TCoordinateSystem ElementAt(std::string_view b, size_t at) {
    std::string declaration;
    if (b.substr(0, 5) == "<?xml" || b.substr(3, 5) == "<?xml") {
        const size_t declEnd = b.substr(0, at).find("?>");
        if (declEnd != std::string_view::npos) declaration = std::string(b.substr(0, declEnd + 2));
    }
    // The element ends at "/>" of its start tag or at its end tag; a WKT is
    // a few kilobytes, so the end tag is looked for within 16 MB.
    constexpr size_t kElementMax = size_t{16} << 20;
    const std::string_view rest = b.substr(at, kElementMax);
    const size_t gt = rest.find('>');
    if (gt == std::string_view::npos) return {};
    size_t end = gt + 1;
    if (rest[gt - 1] != '/') {
        static constexpr std::string_view kEnd = "</CoordinateSystem>";
        end = rest.find(kEnd, gt);
        if (end == std::string_view::npos) return {};
        end += kEnd.size();
    }
    return CoordinateSystemOfText(declaration + std::string(rest.substr(0, end)));
}

// A regular file is mapped and searched a window at a time; the element,
// with the XML declaration in front, is then parsed. Anything else (a pipe)
// is read a megabyte at a time, keeping only the element.
TCoordinateSystem ReadMappedCoordinateSystem(const vesk::CMappedFile& map) {
    const std::string_view b(map.Data(), map.Size());
    if (IsUtf16(b)) return ParseWhole(b);
    const size_t at = FindTagMapped(map);
    if (at == std::string_view::npos) return {};
    return ElementAt(b, at);
}

struct TFileIdentity {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = 0;
    int64_t mtimeNs = 0;
    bool operator==(const TFileIdentity&) const = default;
};

bool IdentityOf(const std::string& path, TFileIdentity& id) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return false;
    id = {st.st_dev, st.st_ino, st.st_size, int64_t{st.st_mtim.tv_sec} * 1000000000 + st.st_mtim.tv_nsec};
    return true;
}

struct TRemembered {
    TFileIdentity id;
    TCoordinateSystem cs;
};
std::mutex gRememberedMutex;
std::map<std::string, TRemembered> gRemembered;

bool Recall(const std::string& path, TCoordinateSystem& cs) {
    TFileIdentity id;
    if (!IdentityOf(path, id)) return false;
    std::lock_guard<std::mutex> lock(gRememberedMutex);
    const auto it = gRemembered.find(path);
    if (it == gRemembered.end() || !(it->second.id == id)) return false;
    cs = it->second.cs;
    return true;
}

}  // namespace

void RememberCoordinateSystem(const std::string& path, const CXmlReader& reader) {
    size_t at = 0;
    if (!reader.RawCoordinateSystemTag(at)) return;
    const std::string_view raw = reader.MappedBytes();
    TRemembered r;
    if (!IdentityOf(path, r.id) || static_cast<size_t>(r.id.size) != raw.size()) return;
    if (at != std::string_view::npos) r.cs = ElementAt(raw, at);
    std::lock_guard<std::mutex> lock(gRememberedMutex);
    gRemembered[path] = std::move(r);
}

TCoordinateSystem ReadCoordinateSystem(const std::string& path) {
    if (TCoordinateSystem cs; Recall(path, cs)) return cs;
    if (vesk::CMappedFile map; map.Open(path.c_str())) return ReadMappedCoordinateSystem(map);
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    constexpr size_t kChunk = size_t{1} << 20;
    constexpr size_t kOverlap = 64;                 // longer than the tag and its next byte
    constexpr size_t kElementMax = size_t{16} << 20;  // a WKT is a few kilobytes
    std::string window, chunk(kChunk, '\0'), declaration;
    bool first = true;
    size_t at = std::string_view::npos;
    while (in) {
        in.read(chunk.data(), static_cast<std::streamsize>(kChunk));
        window.append(chunk.data(), static_cast<size_t>(in.gcount()));
        if (first) {
            first = false;
            if (IsUtf16(window)) {
                std::ostringstream rest;
                rest << in.rdbuf();
                return ParseWhole(window + rest.str());
            }
            if (window.compare(0, 5, "<?xml") == 0 || window.compare(3, 5, "<?xml") == 0) {
                const size_t declEnd = window.find("?>");
                if (declEnd != std::string::npos) declaration = window.substr(0, declEnd + 2);
            }
        }
        if (at == std::string_view::npos) {
            at = FindCoordinateSystemTag(window);
            if (at == std::string_view::npos) {
                if (window.size() > kOverlap) window.erase(0, window.size() - kOverlap);
                continue;
            }
            window.erase(0, at);
            at = 0;
        }
        const size_t gt = window.find('>');
        if (gt != std::string::npos && (window[gt - 1] == '/' || window.find("</CoordinateSystem>") != std::string::npos))
            break;
        if (window.size() > kElementMax) return {};
    }
    if (at == std::string_view::npos) return {};
    return CoordinateSystemOfText(declaration + window);
}

}  // namespace roadx::landxml
