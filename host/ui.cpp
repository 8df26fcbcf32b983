#include "host/ui.h"

#include <nlohmann/json.hpp>

#include "host/trace.h"

namespace {

CHostUi* g_ui = nullptr;

nlohmann::json Names(const std::vector<CString>& v) {
    nlohmann::json a = nlohmann::json::array();
    for (const auto& s : v) a.push_back(std::string(s));
    return a;
}

}  // namespace

CHostUi* HostUi() { return g_ui; }

CHostUiScope::CHostUiScope(CHostUi* ui) : prev_(g_ui) { g_ui = ui; }
CHostUiScope::~CHostUiScope() { g_ui = prev_; }

bool FDlgImportLandXML(bool flagA, bool flagB, const std::vector<CString>& surfaceNames,
                       const std::vector<CString>& alignmentNames, bool hasPointData,
                       const std::vector<CString>& crossSectSurfNames, const std::vector<vesk::String>& sectionCodes,
                       TImportLandXMLResult& result) {
    if (HostTrace()) {
        nlohmann::ordered_json j;  // keys in the dialog's argument order
        j["surfaces"] = Names(surfaceNames);
        j["alignments"] = Names(alignmentNames);
        j["hasPointData"] = hasPointData;
        j["crossSectSurfs"] = Names(crossSectSurfNames);
        j["sectionCodes"] = Names(sectionCodes);
        CTraceLine("FDlgImportLandXML").Raw(j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)).Emit();
    }
    if (!g_ui) return false;
    return g_ui->DlgImportLandXML(flagA, flagB, surfaceNames, alignmentNames, hasPointData, crossSectSurfNames,
                                  sectionCodes, result);
}

bool FDlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                       TExportLandXMLResult& result) {
    return g_ui && g_ui->DlgExportLandXML(cmp, gps, pnt, dtm, road, result);
}

bool FDlgOpzTrasfToDxf(CZedraEng* eng, bool& b1, bool& b2, bool& b3, bool& b4, bool& b5, bool& b6, int noBlocks,
                       DrawingHandle& drawing, bool docFlag) {
    if (!g_ui) return false;
    TOpzTrasfToDxf opz;
    bool* flags[6] = {&b1, &b2, &b3, &b4, &b5, &b6};
    for (int i = 0; i < 6; ++i) opz.flags[i] = *flags[i];
    opz.noBlocksNotPriv = noBlocks;
    opz.drawing = drawing;
    opz.docFlag = docFlag;
    if (!g_ui->DlgOpzTrasfToDxf(eng, opz)) return false;
    for (int i = 0; i < 6; ++i) *flags[i] = opz.flags[i];
    drawing = opz.drawing;
    return true;
}

bool FInpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag) {
    return g_ui && g_ui->InpNomeFileExportDxfDwg(path, dwgAllowed, ver, flag);
}

int MessageBoxOkError(void*, const std::string& text, const std::string& title) {
    CTraceLine("Message").S(title).S(text).Emit();
    if (g_ui) g_ui->Message(title, text);
    return IDOK;
}

bool MessageQuestionYesNo(const std::string& text, const std::string& caption) {
    const bool yes = g_ui && g_ui->QuestionYesNo(caption, text);
    CTraceLine("Question").S(caption).S(text).B(yes).Emit();
    return yes;
}

int AfxMessageBox(const char* text) {
    const std::string t = text ? text : "";
    CTraceLine("Message").S("").S(t).Emit();
    if (g_ui) g_ui->Message("", t);
    return IDOK;
}

CFileDialog::CFileDialog(bool, const char* defExt, const char* fileName, unsigned flags, const char* filter, void*,
                         unsigned, bool) {
    args_.defExt = defExt ? defExt : "";
    args_.fileName = fileName ? fileName : "";
    args_.flags = flags;
    args_.filter = filter ? filter : "";
}

int CFileDialog::DoModal() {
    std::string path;
    if (!g_ui || !g_ui->SaveFileDialog(args_, path)) return IDCANCEL;
    path_ = path;
    return IDOK;
}
