#include "host/dtm.h"

CDtmPrj* CLibDtm::AddPrj(const vesk::String& name) {
    prjs_.push_back(std::make_unique<CDtmPrj>(name));
    return prjs_.back().get();
}

const CDtmGrid& CDtmPrj::GetGrid() const {
    const size_t nv = tris_.Verts().size(), nt = tris_.Tris().size();
    if (!grid_ || gridVerts_ != nv || gridTris_ != nt) {
        grid_ = std::make_unique<CDtmGrid>(tris_);
        gridVerts_ = nv;
        gridTris_ = nt;
    }
    return *grid_;
}
