#include "exchange/formats.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "cad/drawing_diag.h"
#include "cad/zedra_types.h"
#include "display/doc_display.h"
#include "dxfdwg/drawing_export.h"
#include "exchange/gis_rows.h"
#include "host/document.h"
#include "landxml_export/export_landxml.h"
#include "landxml_import/import_landxml.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_export_checks.h"
#include "rd3/rd3_import.h"

namespace roadx::exchange {

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

bool Has(const std::vector<std::string>& v, const std::string& s) { return std::find(v.begin(), v.end(), s) != v.end(); }

// LandXML -------------------------------------------------------------------

bool SniffLandXML(const std::string& head) {
    return head.find("<LandXML") != std::string::npos || head.find(":LandXML") != std::string::npos;
}

TExchangeStatus ImportLandXMLRow(CVantriDoc& doc, const std::string& path, vesk::diag::CSink* sink,
                                 const TImportRequest& request) {
    landxml::TImportOptions options;
    options.sink = sink;
    options.geometry = request.pointsGeometry ? landxml::EPlanGeometry::Points : landxml::EPlanGeometry::Attributes;
    return landxml::ImportLandXMLWith(&doc, path.c_str(), false, false, options);
}

// The host's dialogs (answered by the caller) choose what and where.
TExchangeStatus ExportLandXMLRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return landxml::ExportLandXMLStatus(doc, sink, r.path, r.failOnWarning);
}

// RD3 -----------------------------------------------------------------------

bool SniffRD3(const std::string& head) { return head.compare(0, 10, "Topcon RD3") == 0; }

TExchangeStatus ImportRD3Row(CVantriDoc& doc, const std::string& path, vesk::diag::CSink* sink, const TImportRequest&) {
    return rd3::ImportRD3Status(&doc, path.c_str(), sink);
}

// RD3 carries one road: the one the request names, or the first.
TExchangeStatus ExportRD3Row(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    CLibRoad* roads = doc.GetLibRoad();
    for (unsigned i = 0; i < roads->GetNumRoads(); ++i) {
        CRoad* road = roads->GetRoad(i);
        if (r.road.empty() || road->GetName() == r.road) {
            if (r.road.empty() && roads->GetNumRoads() > 1)
                vesk::diag::Report(sink, {vesk::diag::ESeverity::Warning, "rd3-roads-left-out", r.path, 0, -1,
                                          "Road \"" + std::string(road->GetName()) + "\"",
                                          "an RD3 file holds one road: " + std::to_string(roads->GetNumRoads() - 1) +
                                              " other roads not written",
                                          "the first road written; --road names another", 
                                          static_cast<int64_t>(roads->GetNumRoads() - 1)});
            const size_t before = sink ? sink->Records().size() : 0;
            rd3::CheckRD3Export(*road, sink, r.path);
            if (r.failOnWarning && sink && sink->Records().size() > before)
                return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                             "the RD3 file cannot carry all of the road; nothing was written");
            return rd3::ExportRD3Status(*road);
        }
    }
    if (r.road.empty())
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, "the inputs hold no road to write as RD3");
    return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, "no road named \"" + r.road + "\"");
}

// DXF and DWG ---------------------------------------------------------------

TExchangeStatus ExportDrawing(CVantriDoc& doc, const TExportRequest& r, bool dwg, vesk::diag::CSink* sink) {
    // The export tells DWG from DXF by the name, so a DWG output must be
    // named so.
    if (dwg && !FIsDwgPath(r.path, true))
        return TExchangeStatus::Fail(TExchangeStatus::UNSUPPORTED,
                                     "a DWG output must be named *.dwg; nothing was written");
    // The drawing is what the document's display shows; a caller without a
    // screen that would have kept it up to date has it drawn now, with the
    // contour interval asked for.
    doc.GetCts()->SetInterval(r.contourInterval);
    RefreshDocumentDisplay(doc);
    // The writers report what the file cannot carry through this scope.
    cad::CDrawingDiagScope diag(sink, r.path, r.failOnWarning);
    TExchangeStatus st = dxfdwg::ExportFileDxfDwgStatus(&doc, r.path.c_str(), dwg);
    if (st.detail == cad::kSaveDwgUnsupported) st.code = TExchangeStatus::UNSUPPORTED;
    return st;
}

TExchangeStatus ExportDXFRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportDrawing(doc, r, false, sink);
}
TExchangeStatus ExportDWGRow(CVantriDoc& doc, const TExportRequest& r, vesk::diag::CSink* sink) {
    return ExportDrawing(doc, r, true, sink);
}

}  // namespace

const std::vector<TFormat>& Formats() {
    static const std::vector<TFormat> kFormats = {
        // name       --to keys            extensions  sniff         import          export            uses
        {"LandXML", {"xml", "landxml"}, {"xml"}, SniffLandXML, ImportLandXMLRow, ExportLandXMLRow,
         kUseRoads | kUseSurfaces | kUsePointGroups | kUseGpsGroups | kUseJobs, kUseGeometry},
        {"RD3", {"rd3"}, {"rd3"}, SniffRD3, ImportRD3Row, ExportRD3Row, kUseOneRoad},
        {"DXF", {"dxf"}, {"dxf"}, nullptr, nullptr, ExportDXFRow, kUseDrawingVersion | kUseContours | kUseClouds},
        {"DWG", {"dwg"}, {"dwg"}, nullptr, nullptr, ExportDWGRow, kUseDrawingVersion | kUseContours | kUseClouds},
        // The vector GIS outputs carry a contours layer.
        {"GeoPackage", {"gpkg"}, {"gpkg"}, nullptr, nullptr, ExportGeoPackageRow, kUseContours | kUseCrs},
        {"GeoJSON", {"geojson"}, {"geojson"}, nullptr, nullptr, ExportGeoJSONRow, kUseContours | kUseCrs},
        {"Shapefile", {"shp"}, {"shp"}, nullptr, nullptr, ExportShapefileRow, kUseContours | kUseCrs},
        {"FlatGeobuf", {"fgb"}, {"fgb"}, nullptr, nullptr, ExportFlatGeobufRow, kUseContours | kUseCrs},
        {"GeoTIFF", {"tif", "tiff", "geotiff"}, {"tif", "tiff"}, nullptr, nullptr, ExportGeoTIFFRow, kUseCrs | kUseCell},
    };
    return kFormats;
}

const TFormat* FindFormat(const std::string& key) {
    for (const TFormat& f : Formats())
        if (Has(f.keys, key)) return &f;
    return nullptr;
}

const TFormat* DetectInputFormat(const std::string& path) {
    const std::string ext = LowerExt(path);
    for (const TFormat& f : Formats())
        if (f.import && Has(f.extensions, ext)) return &f;
    const std::string head = Head(path, 4096);
    for (const TFormat& f : Formats())
        if (f.import && f.sniff && f.sniff(head)) return &f;
    return nullptr;
}

const TFormat* OutputFormat(const std::string& path, const std::string& to) {
    if (!to.empty()) {
        const TFormat* f = FindFormat(to);
        return f && f->exportTo ? f : nullptr;
    }
    // A name may end in a --to key too ("plan.landxml").
    const std::string ext = LowerExt(path);
    for (const TFormat& f : Formats())
        if (f.exportTo && (Has(f.extensions, ext) || Has(f.keys, ext))) return &f;
    return nullptr;
}

const TFormat* FormatOfExtension(const std::string& path) {
    const std::string ext = LowerExt(path);
    if (ext.empty()) return nullptr;
    for (const TFormat& f : Formats())
        if (Has(f.extensions, ext) || Has(f.keys, ext)) return &f;
    return nullptr;
}

std::vector<std::string> OutputKeys() {
    std::vector<std::string> keys;
    for (const TFormat& f : Formats())
        if (f.exportTo) keys.push_back(f.keys.front());
    return keys;
}

std::vector<std::string> InputExtensions() {
    std::vector<std::string> exts;
    for (const TFormat& f : Formats())
        if (f.import) exts.insert(exts.end(), f.extensions.begin(), f.extensions.end());
    return exts;
}

TExchangeStatus ImportFile(CVantriDoc& doc, const std::string& path, const TFormat& f, vesk::diag::CSink* sink,
                           const TImportRequest& request) {
    if (!f.import)
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, std::string(f.name) + " files are not read");
    return f.import(doc, path, sink, request);
}

TExchangeStatus ExportFile(CVantriDoc& doc, const TFormat& f, const TExportRequest& request,
                           vesk::diag::CSink* sink) {
    if (!f.exportTo)
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, std::string(f.name) + " files are not written");
    return f.exportTo(doc, request, sink);
}

}  // namespace roadx::exchange
