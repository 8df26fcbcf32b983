#include "host/profile.h"

#include "host/plani_elem.h"

CProfile::CProfile(CRoad* road, CLibProfile* lib)
    : road_(road), lib_(lib), section_(false), terr_(std::make_unique<CProfileAlti>(this, "TER", true)) {}

CProfile::CProfile(CRoad* road, CLibProfile* lib, const vesk::String& name, double prog, CPlaniElem* trace)
    : road_(road), lib_(lib), section_(true), name_(name), prog_(prog), trace_(trace) {
    if (trace_) trace_->AddReference();
}

CProfile::~CProfile() {
    if (trace_) trace_->SubReference();
}

CProfileAlti* CProfile::GetPrjAlti(int i) {
    return i >= 0 && static_cast<size_t>(i) < prj_.size() ? prj_[static_cast<size_t>(i)].get() : nullptr;
}

CProfileAlti* CProfile::AddPrjAlti() {
    prj_.push_back(std::make_unique<CProfileAlti>(this, "PRJ", false));
    return prj_.back().get();
}

CProfile* CProfile::GetSection(int i) {
    return i >= 0 && static_cast<size_t>(i) < sections_.size() ? sections_[static_cast<size_t>(i)].get() : nullptr;
}

CProfile* CProfile::AddSection(const vesk::String& name, double prog, CPlaniElem* trace) {
    sections_.push_back(std::make_unique<CProfile>(road_, lib_, name, prog, trace));
    return sections_.back().get();
}

CProfileAlti* CProfile::GetProfileAlti(int i) {
    return i >= 0 && static_cast<size_t>(i) < lines_.size() ? lines_[static_cast<size_t>(i)] : nullptr;
}

CProfileAlti* CProfile::FindProfileAlti(const vesk::String& code) {
    for (CProfileAlti* l : lines_)
        if (l->GetCode() == code) return l;
    return nullptr;
}

CProfileAlti* CProfile::AddSectionLine(const vesk::String& code, bool terr) {
    if (terr) {
        if (terr_) {
            // A further terrain piece: keep the runs apart with an undefined vertex.
            if (!terr_->IsEmpty()) terr_->AddVrt(TAltiVrt{});
            return terr_.get();
        }
        terr_ = std::make_unique<CProfileAlti>(this, code, true);
        lines_.push_back(terr_.get());
        return terr_.get();
    }
    own_.push_back(std::make_unique<CProfileAlti>(this, code, false));
    lines_.push_back(own_.back().get());
    return own_.back().get();
}

CSectionTemplate* CProfile::GetSectionTemplate() {
    return section_ && FindProfileAlti("STF") ? &template_ : nullptr;
}

CLibProfile::CLibProfile() {
    AddSectionCode("TER", "TERRENO");
    AddSectionCode("PRO", "PRO");
    AddSectionCode("STF", "STF");
}

CLibProfile::~CLibProfile() = default;

TProfileAltiCode* CLibProfile::FindSectionAltiCode(const vesk::String& code) const {
    for (TProfileAltiCode* c : codeView_)
        if (c->code == code) return c;
    return nullptr;
}

TProfileAltiCode* CLibProfile::AddSectionCode(const vesk::String& code, const vesk::String& name) {
    if (TProfileAltiCode* c = FindSectionAltiCode(code)) return c;
    codes_.push_back(std::make_unique<TProfileAltiCode>(TProfileAltiCode{code, name}));
    codeView_.push_back(codes_.back().get());
    return codes_.back().get();
}
