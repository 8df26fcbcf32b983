// The RD3 entry points.
#include "exchange/exchange.h"
#include "rd3/rd3_export.h"
#include "rd3/rd3_import.h"

void FImportRD3(IVantriDati* doc, const char* path) { (void)roadx::rd3::ImportRD3Status(doc, path); }

void FExportRD3(CRoad& road) { (void)roadx::rd3::ExportRD3Status(road); }
