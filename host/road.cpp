#include "host/road.h"

#include <algorithm>

#include "host/dtm.h"
#include "host/ground_profile.h"

CRoad::CRoad(CLibRoad* lib, CLibProfile* libProfile, const vesk::String& name, double startProg)
    : lib_(lib), name_(name), startProg_(startProg), profile_(this, libProfile) {}

CRoad::~CRoad() = default;

double CRoad::GetEndProg() const {
    if (links_.empty()) return startProg_;
    const CPlaniElem* last = links_.back()->GetElem();
    return last->GetProg() + last->GetLength();
}

std::vector<CPlaniElem*> CRoad::RetrieveLinkedPlaniElems() const {
    std::vector<CPlaniElem*> out;
    out.reserve(links_.size());
    for (const auto& l : links_) out.push_back(l->GetElem());
    return out;
}

void CRoad::Recalc() {
    if (opzRecalc_.IsBlockRecalc()) return;
    ++recalcCount_;
    SampleTerrain();
}

void CRoad::SampleTerrain() {
    CProfileAlti* terr = profile_.GetTerrAlti();
    if (!terr) return;
    const CDtmPrj* prj = terr->GetDtmPrj();
    if (!prj) {
        terr->SetGround({});
        return;
    }
    std::vector<const CPlaniElem*> elems;
    for (const auto& l : links_) elems.push_back(l->GetElem());
    terr->SetGround(SampleGround(elems, prj->GetGrid()));
}

void CRoad::AppendElem(CPlaniElem* elem) {
    links_.push_back(std::make_unique<CRoadPlaniElem>(elem));
    if (links_.size() > 1) links_[links_.size() - 2]->SetNextElem(links_.back().get());
}

CRoad* CLibRoad::AddRoad(CLibProfile* libProfile, const vesk::String& name, double startProg) {
    roads_.push_back(std::make_unique<CRoad>(this, libProfile, name, startProg));
    return roads_.back().get();
}

bool CLibRoad::RemoveRoad(CRoad* road) {
    auto it = std::find_if(roads_.begin(), roads_.end(), [&](const auto& r) { return r.get() == road; });
    if (it == roads_.end()) return false;
    roads_.erase(it);
    return true;
}
