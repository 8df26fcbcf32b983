// A host UI that does nothing: every dialog is cancelled, every question
// answered no, every message dropped, exactly as when no UI is installed.
// Fuzz targets, benchmarks and tests derive from it and answer only the
// dialogs they care about.
#pragma once
#include <string>
#include <vector>

#include "host/ui.h"

namespace roadx::host {

class CNullUi : public CHostUi {
public:
    bool DlgImportLandXML(bool flagA, bool flagB, const std::vector<CString>& surfaceNames,
                          const std::vector<CString>& alignmentNames, bool hasPointData,
                          const std::vector<CString>& crossSectSurfNames, const std::vector<vesk::String>& sectionCodes,
                          TImportLandXMLResult& result) override;
    bool DlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                          TExportLandXMLResult& result) override;
    bool DlgOpzTrasfToDxf(CZedraEng* eng, TOpzTrasfToDxf& opz) override;
    bool InpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag) override;
    bool SaveFileDialog(const TSaveFileDialogArgs& args, std::string& path) override;
    void Message(const std::string& title, const std::string& text) override;
    bool QuestionYesNo(const std::string& caption, const std::string& text) override;
};

}  // namespace roadx::host
