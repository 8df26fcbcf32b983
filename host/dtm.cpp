#include "host/dtm.h"

CDtmPrj* CLibDtm::AddPrj(const vesk::String& name) {
    prjs_.push_back(std::make_unique<CDtmPrj>(name));
    return prjs_.back().get();
}
