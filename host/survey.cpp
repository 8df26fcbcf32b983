#include "host/survey.h"

namespace {

template <class Vec, class T>
bool IndexOf(const Vec& v, const T* p, int& idx) {
    for (size_t i = 0; i < v.size(); ++i)
        if (v[i].get() == p) { idx = static_cast<int>(i); return true; }
    return false;
}

template <class Vec>
auto At(const Vec& v, int i) -> decltype(v[0].get()) {
    return i >= 0 && static_cast<size_t>(i) < v.size() ? v[static_cast<size_t>(i)].get() : nullptr;
}

}  // namespace

CPunPnt* CLibPnt::GetPtnAt(int grp, int i) const { return Valid(grp) ? At(grps_[static_cast<size_t>(grp)]->Points(), i) : nullptr; }
bool CLibPnt::GetIndiciDiGrp(const CGrpPnt* g, int& grp) const { return IndexOf(grps_, g, grp); }
CGrpPnt* CLibPnt::AddGrp(const vesk::String& name) {
    grps_.push_back(std::make_unique<CGrpPnt>(name));
    return grps_.back().get();
}

CPunGps* CLibGps::GetPunAt(int grp, int i) const { return Valid(grp) ? At(grps_[static_cast<size_t>(grp)]->Points(), i) : nullptr; }
bool CLibGps::GetIndiciDiGrp(const CGrpGps* g, int& grp) const { return IndexOf(grps_, g, grp); }
CGrpGps* CLibGps::AddGrp(const vesk::String& name) {
    grps_.push_back(std::make_unique<CGrpGps>(name));
    return grps_.back().get();
}

int CLibCmp::GetStaArSize(int job) const { return ValidJob(job) ? static_cast<int>(jobs_[static_cast<size_t>(job)]->Stations().size()) : 0; }
CSta* CLibCmp::GetStaAt(int job, int i) const { return ValidJob(job) ? At(jobs_[static_cast<size_t>(job)]->Stations(), i) : nullptr; }
int CLibCmp::GetPunArSize(int job, int sta) const {
    const CSta* s = GetStaAt(job, sta);
    return s ? static_cast<int>(s->Points().size()) : 0;
}
CPun* CLibCmp::GetPunAt(int job, int sta, int i) const {
    const CSta* s = GetStaAt(job, sta);
    return s ? At(s->Points(), i) : nullptr;
}
bool CLibCmp::GetIndiciDiJob(const CJob* j, int& job) const { return IndexOf(jobs_, j, job); }
bool CLibCmp::GetIndiciDiSta(const CSta* s, int& job, int& sta) const {
    for (size_t j = 0; j < jobs_.size(); ++j)
        if (IndexOf(jobs_[j]->Stations(), s, sta)) { job = static_cast<int>(j); return true; }
    return false;
}
CJob* CLibCmp::AddJob(const vesk::String& name) {
    jobs_.push_back(std::make_unique<CJob>(name));
    return jobs_.back().get();
}
