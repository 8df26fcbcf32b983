#include "cli/formats.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

#include "host/document.h"
#include "landxml_import/import_landxml.h"

namespace roadx::cli {

namespace {

std::string LowerExt(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string e = path.substr(dot + 1);
    std::transform(e.begin(), e.end(), e.begin(), [](unsigned char c) { return std::tolower(c); });
    return e;
}

// The first bytes of a file, or "" when it cannot be read.
std::string Head(const std::string& path, size_t n) {
    std::string buf(n, '\0');
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return "";
    const size_t got = std::fread(buf.data(), 1, n, f);
    std::fclose(f);
    buf.resize(got);
    return buf;
}

TExchangeStatus NotYet(Format f) {
    return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                 std::string(FormatName(f)) + " is not yet supported by this build");
}

}  // namespace

const char* FormatName(Format f) {
    switch (f) {
        case Format::LandXML: return "LandXML";
        case Format::RD3: return "RD3";
        case Format::DXF: return "DXF";
        case Format::DWG: return "DWG";
        default: return "unknown";
    }
}

Format DetectInputFormat(const std::string& path) {
    const std::string ext = LowerExt(path);
    if (ext == "rd3") return Format::RD3;
    if (ext == "xml") return Format::LandXML;
    const std::string head = Head(path, 4096);
    if (head.compare(0, 10, "Topcon RD3") == 0) return Format::RD3;
    if (head.find("<LandXML") != std::string::npos || head.find(":LandXML") != std::string::npos)
        return Format::LandXML;
    return Format::Unknown;
}

Format OutputFormat(const std::string& path, const std::string& to) {
    const std::string key = to.empty() ? LowerExt(path) : to;
    if (key == "xml" || key == "landxml") return Format::LandXML;
    if (key == "rd3") return Format::RD3;
    if (key == "dxf") return Format::DXF;
    if (key == "dwg") return Format::DWG;
    return Format::Unknown;
}

TExchangeStatus ImportFile(CVantriDoc& doc, const std::string& path, Format f) {
    switch (f) {
        case Format::LandXML: return ImportLandXMLFile(&doc, path.c_str(), false, false);
        default: return NotYet(f);
    }
}

TExchangeStatus ExportFile(CVantriDoc&, Format f, const ExportOptions&) { return NotYet(f); }

}  // namespace roadx::cli
