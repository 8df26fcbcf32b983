#include "cli/formats.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

#include "cad/display/doc_display.h"
#include "cli/app.h"
#include "cli/cli_ui.h"
#include "dxfdwg/drawing_export.h"
#include "host/document.h"
#include "host/ui.h"
#include "landxml_export/export_landxml.h"
#include "landxml_import/import_landxml.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_import.h"

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
        case Format::RD3: return Rd3ToExchangeStatus(ImportRD3File(&doc, path.c_str()));
        default: return NotYet(f);
    }
}

// RD3 carries one road: the one named by --road, or the first.
TExchangeStatus ExportRd3(CVantriDoc& doc, const ExportOptions& o) {
    CLibRoad* roads = doc.GetLibRoad();
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        CRoad* r = roads->GetRoad(i);
        if (o.road.empty() || r->GetName() == o.road) return ExportRD3WithDialog(*r);
    }
    if (o.road.empty())
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, "the inputs hold no road to write as RD3");
    return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, "no road named \"" + o.road + "\"");
}

TExchangeStatus ExportFile(CVantriDoc& doc, Format f, const ExportOptions& o) {
    switch (f) {
        case Format::RD3: return ExportRd3(doc, o);
        // The CLI's UI answers the export dialog from --export-roads etc. and
        // the save dialog with -o made absolute.
        case Format::LandXML: return ExportLandXMLFile(doc);
        case Format::DXF:
        case Format::DWG: {
            // The drawing is what the document's display shows; the command
            // line has no screen that would have kept it up to date, so it is
            // drawn now, with the contour interval asked for.
            doc.GetCts()->SetInterval(o.contourInterval);
            RefreshDocumentDisplay(doc);
            // The export tells DWG from DXF by the name, so a DWG output must
            // be named so.
            const std::string path = AbsolutePath(o.output);
            if (f == Format::DWG && !FIsDwgPath(path, true))
                throw CliError(kExitUsage, o.output + ": a DWG output must be named *.dwg; nothing was written");
            CCliUi* ui = dynamic_cast<CCliUi*>(HostUi());
            if (ui) ui->ClearMessages();
            TDrawingExportOutcome out;
            TExchangeStatus st = ExportFileDxfDwg(&doc, path.c_str(), f == Format::DWG, &out);
            if (out.dwg && out.saveResult == zedra::kSaveDwgUnsupported)
                throw CliError(kExitUsage, o.output + ": DWG files are written as R2000 only (--dxf-version R2000); "
                                                      "nothing was written");
            // The message box the user would have seen, word for word.
            if (!st.ok() && ui && !ui->Messages().empty()) st.message += " (" + ui->Messages().back() + ")";
            return st;
        }
        default: return NotYet(f);
    }
}

}  // namespace roadx::cli
