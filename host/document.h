// The host document: every library the exchange module works on, the CAD
// engine and the display objects.
#pragma once
#include <memory>

#include "host/dtm.h"
#include "host/misc_libs.h"
#include "host/profile.h"
#include "host/road.h"
#include "host/survey.h"

class CZedraEng;
class CDocSymbolManager;
class CDisPtNome;
class CDisLibCmp;
class CDisLibGps;
class CDisLibPnt;
class CDisCts;
class CDisLibDtm;
class CDisLibGis;
class CDisRoad;
class CDisLibProfile;

class IVantriDati {
public:
    virtual ~IVantriDati() = default;
    virtual const char* GetDocTitle() const = 0;
    virtual bool GetDocFlag() = 0;
    virtual CZedraEng* GetZedraEng() = 0;
    virtual CDisPtNome* GetDisPtNome() = 0;
    virtual CLibCmp* GetLibCmp() = 0;
    virtual CDisLibCmp* GetDisLibCmp() = 0;
    virtual CLibGps* GetLibGps() = 0;
    virtual CDisLibGps* GetDisLibGps() = 0;
    virtual CLibPnt* GetLibPnt() = 0;
    virtual CDisLibPnt* GetDisLibPnt() = 0;
    virtual CLibCld* GetLibCld() = 0;
    virtual CCts* GetCts() = 0;
    virtual CDisCts* GetDisCts() = 0;
    virtual CLibDtm* GetLibDtm() = 0;
    virtual CDisLibDtm* GetDisLibDtm() = 0;
    virtual CLibProfile* GetLibProfile() = 0;
    virtual CLibRoad* GetLibRoad() = 0;
    virtual gis::CLibGis* GetLibGis() = 0;
    virtual CDisLibGis* GetDisLibGis() = 0;
    virtual COpzListDisEgn* GetOpzListDisEgn() = 0;
    virtual CDocSymbolManager* GetDocSymbolManager() = 0;
    virtual CDisRoad* GetDisRoad() = 0;
    virtual CDisLibProfile* GetDisLibProfile() = 0;
};

// The document's display objects and CAD engine live in the CAD layer, above
// the host; that layer installs them through this interface.
class CDocDisplay {
public:
    virtual ~CDocDisplay() = default;
    virtual CZedraEng* GetZedraEng() = 0;
    virtual CDocSymbolManager* GetDocSymbolManager() = 0;
    virtual CDisPtNome* GetDisPtNome() = 0;
    virtual CDisLibCmp* GetDisLibCmp() = 0;
    virtual CDisLibGps* GetDisLibGps() = 0;
    virtual CDisLibPnt* GetDisLibPnt() = 0;
    virtual CDisCts* GetDisCts() = 0;
    virtual CDisLibDtm* GetDisLibDtm() = 0;
    virtual CDisLibGis* GetDisLibGis() = 0;
    virtual CDisRoad* GetDisRoad() = 0;
    virtual CDisLibProfile* GetDisLibProfile() = 0;
};

// The reference in-memory document.
class CVantriDoc : public IVantriDati {
public:
    CVantriDoc();
    ~CVantriDoc() override;

    const char* GetDocTitle() const override { return "roadx"; }
    // The drawing export passes this on to its option dialog; here it says
    // whether the document's drawing is shown in 3D (elevations kept).
    bool GetDocFlag() override { return docFlag_; }
    void SetDocFlag(bool b) { docFlag_ = b; }
    CZedraEng* GetZedraEng() override;
    CDisPtNome* GetDisPtNome() override;
    CLibCmp* GetLibCmp() override { return &libCmp_; }
    CDisLibCmp* GetDisLibCmp() override;
    CLibGps* GetLibGps() override { return &libGps_; }
    CDisLibGps* GetDisLibGps() override;
    CLibPnt* GetLibPnt() override { return &libPnt_; }
    CDisLibPnt* GetDisLibPnt() override;
    CLibCld* GetLibCld() override { return &libCld_; }
    CCts* GetCts() override { return &cts_; }
    CDisCts* GetDisCts() override;
    CLibDtm* GetLibDtm() override { return &libDtm_; }
    CDisLibDtm* GetDisLibDtm() override;
    CLibProfile* GetLibProfile() override { return &libProfile_; }
    CLibRoad* GetLibRoad() override { return &libRoad_; }
    gis::CLibGis* GetLibGis() override { return &libGis_; }
    CDisLibGis* GetDisLibGis() override;
    COpzListDisEgn* GetOpzListDisEgn() override { return &opzListDisEgn_; }
    CDocSymbolManager* GetDocSymbolManager() override;
    CDisRoad* GetDisRoad() override;
    CDisLibProfile* GetDisLibProfile() override;

    void SetDisplay(std::unique_ptr<CDocDisplay> d);
    CDocDisplay* GetDisplay() { return display_.get(); }

private:
    bool docFlag_ = true;
    CLibCmp libCmp_;
    CLibGps libGps_;
    CLibPnt libPnt_;
    CLibCld libCld_;
    CCts cts_;
    CLibDtm libDtm_;
    CLibProfile libProfile_;
    CLibRoad libRoad_;
    gis::CLibGis libGis_;
    COpzListDisEgn opzListDisEgn_;
    std::unique_ptr<CDocDisplay> display_;  // declared last: destroyed first
};
