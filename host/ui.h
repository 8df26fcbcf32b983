// The host's dialogs and message boxes. They all go through one replaceable
// interface: the command line answers them from its options, tests script
// them and record every message. Messages and questions are also written to
// the host trace.
#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cad/zedra_types.h"
#include "host/target_drawing.h"
#include "vesk/string.h"

class CLibCmp;
class CLibGps;
class CLibPnt;
class CLibDtm;
class CLibRoad;
class CJob;
class CGrpGps;
class CGrpPnt;
class CDtmPrj;
class CRoad;
class CZedraEng;


// Choices of the LandXML import dialog, in this member order.
struct TImportLandXMLResult {
    std::vector<CString> surfaces;
    std::vector<CString> alignments;
    bool importPoints = false;
    std::vector<std::pair<CString, vesk::String>> crossSectCodes;  // surface name -> section code
    CString terrain;
};

// Choices of the LandXML export dialog, in this member order.
struct TExportLandXMLResult {
    std::vector<CJob*> jobs;
    std::vector<CGrpGps*> gpsGroups;
    std::vector<CGrpPnt*> pointGroups;
    std::vector<CDtmPrj*> dtmPrjs;
    std::vector<CRoad*> roads;
};

// Options of the drawing export dialog.
struct TOpzTrasfToDxf {
    bool flags[6] = {true, true, true, true, true, true};
    int noBlocksNotPriv = 0;
    DrawingHandle drawing = 0;
    bool docFlag = false;
};

// Arguments of a save-file dialog, as the caller gave them.
struct TSaveFileDialogArgs {
    std::string defExt;
    std::string fileName;
    unsigned flags = 0;
    std::string filter;
};

class CHostUi {
public:
    virtual ~CHostUi() = default;
    virtual bool DlgImportLandXML(bool flagA, bool flagB, const std::vector<CString>& surfaceNames,
                                  const std::vector<CString>& alignmentNames, bool hasPointData,
                                  const std::vector<CString>& crossSectSurfNames,
                                  const std::vector<vesk::String>& sectionCodes, TImportLandXMLResult& result) = 0;
    virtual bool DlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                                  TExportLandXMLResult& result) = 0;
    virtual bool DlgOpzTrasfToDxf(CZedraEng* eng, TOpzTrasfToDxf& opz) = 0;
    virtual bool InpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag) = 0;
    // True (OK) with the chosen full path.
    virtual bool SaveFileDialog(const TSaveFileDialogArgs& args, std::string& path) = 0;
    virtual void Message(const std::string& title, const std::string& text) = 0;
    virtual bool QuestionYesNo(const std::string& caption, const std::string& text) = 0;
};

// The installed interface; without one, dialogs are cancelled, questions
// answered no and messages dropped (so nothing ever blocks).
CHostUi* HostUi();

class CHostUiScope {
public:
    explicit CHostUiScope(CHostUi* ui);
    ~CHostUiScope();
    CHostUiScope(const CHostUiScope&) = delete;
    CHostUiScope& operator=(const CHostUiScope&) = delete;

private:
    CHostUi* prev_;
};

// The host functions the module calls.
bool FDlgImportLandXML(bool flagA, bool flagB, const std::vector<CString>& surfaceNames,
                       const std::vector<CString>& alignmentNames, bool hasPointData,
                       const std::vector<CString>& crossSectSurfNames, const std::vector<vesk::String>& sectionCodes,
                       TImportLandXMLResult& result);
bool FDlgExportLandXML(CLibCmp& cmp, CLibGps& gps, CLibPnt& pnt, CLibDtm& dtm, CLibRoad& road,
                       TExportLandXMLResult& result);
bool FDlgOpzTrasfToDxf(CZedraEng* eng, bool& b1, bool& b2, bool& b3, bool& b4, bool& b5, bool& b6, int noBlocks,
                       DrawingHandle& drawing, bool docFlag);
bool FInpNomeFileExportDxfDwg(std::string& path, bool dwgAllowed, enumZEDRA_DXFDWG_VER& ver, bool flag);
int MessageBoxOkError(void* owner, const std::string& text, const std::string& title);
bool MessageQuestionYesNo(const std::string& text, const std::string& caption);
int AfxMessageBox(const char* text);

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;

// The save-as dialog (only save mode is used).
class CFileDialog {
public:
    CFileDialog(bool openMode, const char* defExt, const char* fileName, unsigned flags, const char* filter,
                void* parent = nullptr, unsigned structSize = 0, bool vistaStyle = true);
    int DoModal();
    CString GetPathName() const { return path_; }

private:
    TSaveFileDialogArgs args_;
    CString path_;
};
