#include "display/doc_display.h"

#include <memory>

#include "display/display.h"
#include "cad/doc_symbol_manager.h"
#include "cad/zedra_event_sentinel.h"
#include "host/document.h"

namespace {

class CDocDisplayImpl : public CDocDisplay {
public:
    explicit CDocDisplayImpl(IVantriDati* doc)
        : eng_(std::make_unique<CZedraEng>(0, nullptr, true)),
          symbols_(eng_.get()),
          ptNome_(eng_.get(), doc),
          cmp_(eng_.get(), doc),
          gps_(eng_.get(), doc),
          pnt_(eng_.get(), doc),
          cts_(eng_.get(), doc),
          dtm_(eng_.get(), doc),
          gis_(eng_.get(), doc),
          road_(eng_.get(), doc),
          profile_(eng_.get(), doc) {}

    CZedraEng* GetZedraEng() override { return eng_.get(); }
    CDocSymbolManager* GetDocSymbolManager() override { return &symbols_; }
    CDisPtNome* GetDisPtNome() override { return &ptNome_; }
    CDisLibCmp* GetDisLibCmp() override { return &cmp_; }
    CDisLibGps* GetDisLibGps() override { return &gps_; }
    CDisLibPnt* GetDisLibPnt() override { return &pnt_; }
    CDisCts* GetDisCts() override { return &cts_; }
    CDisLibDtm* GetDisLibDtm() override { return &dtm_; }
    CDisLibGis* GetDisLibGis() override { return &gis_; }
    CDisRoad* GetDisRoad() override { return &road_; }
    CDisLibProfile* GetDisLibProfile() override { return &profile_; }

private:
    // The engine is declared first, so it outlives everything drawn on it.
    std::unique_ptr<CZedraEng> eng_;
    CDocSymbolManager symbols_;
    CDisPtNome ptNome_;
    CDisLibCmp cmp_;
    CDisLibGps gps_;
    CDisLibPnt pnt_;
    CDisCts cts_;
    CDisLibDtm dtm_;
    CDisLibGis gis_;
    CDisRoad road_;
    CDisLibProfile profile_;
};

}  // namespace

void InstallDocumentDisplay(CVantriDoc& doc) {
    // The old display (if any) goes first: it draws on its own engine.
    doc.SetDisplay(nullptr);
    doc.SetDisplay(std::make_unique<CDocDisplayImpl>(&doc));
}

void RefreshDocumentDisplay(CVantriDoc& doc) {
    CDocDisplay* d = doc.GetDisplay();
    if (!d) return;
    const bool b3D = doc.GetDocFlag();
    CZedraEventSentinel sentinel(d->GetZedraEng());
    d->GetDisPtNome()->RiCreaTutto(b3D, false);
    d->GetDisLibCmp()->CreaTutto(b3D, false);
    d->GetDisLibGps()->CreaTutto(b3D, false);
    d->GetDisLibPnt()->CreaTutto(b3D, false);
    d->GetDisCts()->CreaTutto(b3D, false);
    d->GetDisLibDtm()->AddAllDtm(false);
    d->GetDisRoad()->AddAllRoads();
    d->GetDisLibProfile()->AddAllProfiles();
    d->GetDisLibGis()->CreaTutto();
}
