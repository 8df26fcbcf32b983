// The host's dialogs answered from the command line's options.
#pragma once
#include <string>
#include <vector>

#include "cli/options.h"
#include "host/profile.h"
#include "host/ui.h"

namespace roadx::cli {

class CCliUi : public CHostUi {
public:
    CCliUi(const ImportOptions& imp, const ExportOptions& exp) : imp_(imp), exp_(exp) {}

    bool DlgImportLandXML(bool flagA, bool flagB, const std::vector<CString>& surfaceNames,
                          const std::vector<CString>& alignmentNames, bool hasPointData,
                          const std::vector<CString>& crossSectSurfNames,
                          const std::vector<vesk::String>& sectionCodes, TImportLandXMLResult& result) override;
    bool DlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                          TExportLandXMLResult& result) override;
    bool DlgOpzTrasfToDxf(CZedraEng* eng, TOpzTrasfToDxf& opz) override;
    bool InpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag) override;
    bool SaveFileDialog(const TSaveFileDialogArgs& args, std::string& path) override;
    void Message(const std::string& title, const std::string& text) override;
    bool QuestionYesNo(const std::string& caption, const std::string& text) override;

    // Messages shown during the current call, for the caller to report.
    const std::vector<std::string>& Messages() const { return messages_; }
    void ClearMessages() { messages_.clear(); }
    // The cross-section surface -> section code pairs of the last import
    // dialog (what --section-code sets), for `info`.
    const std::vector<std::pair<CString, vesk::String>>& LastCrossSectCodes() const { return lastCodes_; }
    // The import dialog may add section codes to this library.
    void SetProfileLibrary(CLibProfile* lib) { lib_ = lib; }

    // Every name the import dialogs offered so far, each once, in the order
    // seen: what --alignments, --surfaces, --terrain and --section-code may
    // name.
    struct TOffered {
        std::vector<std::string> alignments, surfaces, crossSectSurfs;
    };
    const TOffered& Offered() const { return offered_; }

private:
    const ImportOptions& imp_;
    const ExportOptions& exp_;
    std::vector<std::string> messages_;
    std::vector<std::pair<CString, vesk::String>> lastCodes_;
    CLibProfile* lib_ = nullptr;
    TOffered offered_;
};

// The save dialog's answer: -o made absolute.
std::string AbsolutePath(const std::string& path);

}  // namespace roadx::cli
