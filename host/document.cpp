#include "host/document.h"

CVantriDoc::CVantriDoc() = default;
CVantriDoc::~CVantriDoc() = default;

void CVantriDoc::SetDisplay(std::unique_ptr<CDocDisplay> d) { display_ = std::move(d); }

// Without an installed display (a document used only for exchange), the
// display accessors give null.
CZedraEng* CVantriDoc::GetZedraEng() { return display_ ? display_->GetZedraEng() : nullptr; }
CDisPtNome* CVantriDoc::GetDisPtNome() { return display_ ? display_->GetDisPtNome() : nullptr; }
CDisLibCmp* CVantriDoc::GetDisLibCmp() { return display_ ? display_->GetDisLibCmp() : nullptr; }
CDisLibGps* CVantriDoc::GetDisLibGps() { return display_ ? display_->GetDisLibGps() : nullptr; }
CDisLibPnt* CVantriDoc::GetDisLibPnt() { return display_ ? display_->GetDisLibPnt() : nullptr; }
CDisCts* CVantriDoc::GetDisCts() { return display_ ? display_->GetDisCts() : nullptr; }
CDisLibDtm* CVantriDoc::GetDisLibDtm() { return display_ ? display_->GetDisLibDtm() : nullptr; }
CDisLibGis* CVantriDoc::GetDisLibGis() { return display_ ? display_->GetDisLibGis() : nullptr; }
CDocSymbolManager* CVantriDoc::GetDocSymbolManager() { return display_ ? display_->GetDocSymbolManager() : nullptr; }
CDisRoad* CVantriDoc::GetDisRoad() { return display_ ? display_->GetDisRoad() : nullptr; }
CDisLibProfile* CVantriDoc::GetDisLibProfile() { return display_ ? display_->GetDisLibProfile() : nullptr; }
