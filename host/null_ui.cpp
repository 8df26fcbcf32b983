#include "host/null_ui.h"

namespace roadx::host {

bool CNullUi::DlgImportLandXML(bool, bool, const std::vector<CString>&, const std::vector<CString>&, bool,
                               const std::vector<CString>&, const std::vector<vesk::String>&, TImportLandXMLResult&) {
    return false;
}

bool CNullUi::DlgExportLandXML(CLibCmp&, CLibGps&, CLibPnt&, CLibDtm&, CLibRoad&, TExportLandXMLResult&) {
    return false;
}

bool CNullUi::DlgOpzTrasfToDxf(CZedraEng*, TOpzTrasfToDxf&) { return false; }

bool CNullUi::InpNomeFileExportDxfDwg(std::string&, bool, enumZEDRA_DXFDWG_VER&, bool) { return false; }

bool CNullUi::SaveFileDialog(const TSaveFileDialogArgs&, std::string&) { return false; }

void CNullUi::Message(const std::string&, const std::string&) {}

bool CNullUi::QuestionYesNo(const std::string&, const std::string&) { return false; }

}  // namespace roadx::host
