#include "landxml_import/import_landxml.h"

#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/ui.h"
#include "landxml_import/coordinate_system.h"
#include "landxml_import/import_alignments.h"
#include "landxml_import/import_diag.h"
#include "landxml_import/import_checks.h"
#include "landxml_import/import_ended.h"
#include "landxml_import/import_scan.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/readers.h"
#include "landxml_import/xml_reader.h"

namespace {

std::vector<vesk::String> SectionCodes(IVantriDati* doc) {
    const std::vector<TProfileAltiCode*>& codes = doc->GetLibProfile()->GetSectionCodes();
    std::vector<vesk::String> list;
    list.reserve(codes.size());
    for (const TProfileAltiCode* c : codes) list.push_back(c->code);
    return list;
}

TExchangeStatus LoadFailure(const TXmlLoadStatus& s) {
    const TExchangeStatus::Code code =
        s.code == TXmlLoadStatus::OPEN_FAILED ? TExchangeStatus::OPEN_FAILED : TExchangeStatus::BAD_INPUT;
    return TExchangeStatus::Fail(code, s.Describe());
}

// Everything after the user's confirmation, in its fixed order.
TExchangeStatus ImportChosen(const CXmlReader& reader, CLoadVantriDati& builder, const TImportLandXMLResult& choices,
                             roadx::landxml::EPlanGeometry geometry) {
    const XmlSection root = reader.Root();
    const TLandXmlUnits units = ReadUnits(root);
    CheckUnits(root);
    CheckNotRead(root, choices);
    if (choices.importPoints) {
        PointTable referenced;
        ImportInstrumentSurveys(root, builder, units.isMetric, referenced);
        ImportGpsSurveys(root, builder, units.isMetric, referenced);
        ImportCgPoints(root, builder, units.isMetric, referenced);
    }
    CDtmPrj* terrain = nullptr;
    ImportSurfaces(root, builder, choices.surfaces, choices.terrain, units.isMetric, terrain, reader.SurfaceScan());
    return ImportAlignments(root, builder, choices, terrain, units, geometry);
}

}  // namespace

namespace roadx::landxml {

TExchangeStatus ImportLandXMLStatus(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB,
                                    bool scanSurfaces, vesk::diag::CSink* sink) {
    TImportOptions options;
    options.scanSurfaces = scanSurfaces;
    options.sink = sink;
    return ImportLandXMLWith(doc, path, dialogFlagA, dialogFlagB, options);
}

TExchangeStatus ImportLandXMLWith(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB,
                                  const TImportOptions& options) {
    CXmlReader reader;
    CLoadVantriDati builder(doc);
    reader.EnableSurfaceScan(options.scanSurfaces);
    reader.ReleaseScannedAfterReading(true);
    if (!reader.LoadFromFile(path)) return LoadFailure(reader.GetStatus());
    // The file's coordinate system is read beside the import (`info`, the
    // GIS outputs); the loaded file answers it without a second search.
    if (path) RememberCoordinateSystem(path, reader);
    const XmlSection root = reader.Root();
    CImportDiagScope diag(options.sink, path ? path : "", reader);

    const std::vector<vesk::String> codes = SectionCodes(doc);
    const TLandXmlContents contents = ScanLandXml(root);
    TImportLandXMLResult choices;
    if (!FDlgImportLandXML(dialogFlagA, dialogFlagB, contents.surfaceNames, contents.alignmentNames,
                           contents.hasPointData, contents.crossSectSurfNames, codes, choices))
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "import cancelled");

    try {
        return ImportChosen(reader, builder, choices, options.geometry);
    } catch (const CLandXmlImportEnded& e) {
        return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY, e.what());
    }
}

}  // namespace roadx::landxml
