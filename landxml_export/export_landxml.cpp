// The export with its dialogs: the selection dialog, the save dialog, then
// the writer.
#include "landxml_export/export_landxml.h"

#include "host/document.h"
#include "host/ui.h"
#include "landxml_export/export_checks.h"

namespace roadx::landxml {

TExchangeStatus ExportLandXMLStatus(IVantriDati& doc, vesk::diag::CSink* sink, const std::string& file, bool refuse) {
    // The libraries in the order the dialog takes them.
    CLibCmp* cmp = doc.GetLibCmp();
    CLibGps* gps = doc.GetLibGps();
    CLibPnt* pnt = doc.GetLibPnt();
    CLibDtm* dtm = doc.GetLibDtm();
    CLibRoad* road = doc.GetLibRoad();
    if (!cmp || !gps || !pnt || !dtm || !road)
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "the document has nothing to export");

    TExportLandXMLResult sel;
    if (!FDlgExportLandXML(*cmp, *gps, *pnt, *dtm, *road, sel))
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "export cancelled");

    // Save mode, hide the read-only box and ask before overwriting (flags 6).
    CFileDialog dlg(false, "LandXML", "Proj", 6, "File strade LandXML(*.xml)|*.xml||", nullptr, 0, false);
    if (dlg.DoModal() != IDOK)
        return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "no file chosen");
    const CString path = dlg.GetPathName();
    if (CheckLandXMLExport(sel.roads, sink, file) > 0 && refuse)
        return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT,
                                     "the LandXML file cannot carry all of the roads; nothing was written");

    return WriteLandXMLFileStatus(sel.roads, *cmp, sel.jobs, *gps, sel.gpsGroups, *pnt, sel.pointGroups,
                                  sel.dtmPrjs, path.c_str());
}

}  // namespace roadx::landxml
