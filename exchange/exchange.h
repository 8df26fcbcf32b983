// The exchange module: the six functions the host application calls. Each is
// one modal command on the host's open document (or one road of it); each
// runs to its end within the call and reports nothing back to the host:
// failures the user must see are shown in the host's message boxes.
//
// Every entry point is a silent adapter over a function of its format that
// says how the call ended (a TExchangeStatus), named after the entry point
// with a "Status" suffix:
//   ImportLandXML          roadx::landxml::ImportLandXMLStatus   landxml_import/
//   ExportLandXML          roadx::landxml::ExportLandXMLStatus   landxml_export/
//   FImportRD3             roadx::rd3::ImportRD3Status           rd3/
//   FExportRD3             roadx::rd3::ExportRD3Status           rd3/
//   SaveAllDataToDxfDwg    roadx::dxfdwg::SaveAllDataToDxfDwgStatus  dxfdwg/
//   FExportFileDxfDwgNew   roadx::dxfdwg::ExportFileDxfDwgStatus     dxfdwg/
// The command line and other callers that need to know how a call ended
// use those, or the format table (exchange/formats.h).
#pragma once
#include <string>

#include "cad/zedra_types.h"

class IVantriDati;
class CRoad;
class CZedraEng;

// LandXML 1.0: loads the file, shows the host's import dialog (the two flags
// are handed to it unchanged) and adds what the user chose.
void ImportLandXML(IVantriDati* doc, const char* path, bool dialogFlagA, bool dialogFlagB);
// LandXML 1.0: the host's export dialog, a save dialog, then the file.
void ExportLandXML(IVantriDati& doc);

// RD3 road file: reads one road into the document.
void FImportRD3(IVantriDati* doc, const char* path);
// RD3 road file: a save dialog, then the road written.
void FExportRD3(CRoad& road);

// DXF/DWG: the document's drawing content through the export engine `eng`
// (owned by the caller); DWG only when dwgAllowed and the path ends in
// ".dwg".
void SaveAllDataToDxfDwg(IVantriDati* doc, std::string path, enumZEDRA_DXFDWG_VER ver, bool dwgAllowed,
                         CZedraEng* eng);
// DXF/DWG: asks for the file name and version, makes the export engine and
// calls SaveAllDataToDxfDwg. Always false: callers must not read success
// from it.
bool FExportFileDxfDwgNew(IVantriDati* doc, const char* path, bool dwgAllowed);
