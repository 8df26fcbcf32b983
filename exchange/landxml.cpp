// The LandXML entry points.
#include "exchange/exchange.h"
#include "landxml_export/export_landxml.h"
#include "landxml_import/import_landxml.h"

void ImportLandXML(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB) {
    (void)roadx::landxml::ImportLandXMLStatus(doc, path, dialogFlagA, dialogFlagB);
}

void ExportLandXML(IVantriDati& doc) { (void)roadx::landxml::ExportLandXMLStatus(doc); }
