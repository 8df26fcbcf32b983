#include "host/alti.h"

#include <cmath>

bool IsPrincAltiVrt(const TAltiVrt* v) { return v && (v->flags & TAltiVrt::PRINC); }
bool IsDtmAltiVrt(const TAltiVrt* v) { return v && (v->flags & TAltiVrt::DTM); }
bool IsRaccVertAltiVrt(const TAltiVrt* v) { return v && (v->flags & TAltiVrt::RACC); }

CProfileAlti::CProfileAlti(CProfile* owner, const vesk::String& code, bool terr)
    : owner_(owner), code_(code), terr_(terr) {}

TAltiVrt* CProfileAlti::GetVrt(int i) {
    return i >= 0 && static_cast<size_t>(i) < vrts_.size() ? &vrts_[static_cast<size_t>(i)] : nullptr;
}

const TAltiVrt* CProfileAlti::GetVrt(int i) const {
    return i >= 0 && static_cast<size_t>(i) < vrts_.size() ? &vrts_[static_cast<size_t>(i)] : nullptr;
}

TAltiVrt* CProfileAlti::FindNextPrincVrt(int i) {
    for (size_t k = i < 0 ? 0 : static_cast<size_t>(i) + 1; k < vrts_.size(); ++k)
        if (IsPrincAltiVrt(&vrts_[k])) return &vrts_[k];
    return nullptr;
}

TAltiVrt* CProfileAlti::FindNextPrincVrt(TAltiVrt* v) {
    if (v == nullptr || vrts_.empty() || v < vrts_.data() || v >= vrts_.data() + vrts_.size()) return nullptr;
    return FindNextPrincVrt(static_cast<int>(v - vrts_.data()));
}

TAltiVrt& CProfileAlti::AddVrt(const TAltiVrt& v) {
    vrts_.push_back(v);
    return vrts_.back();
}

TAltiVrt& CProfileAlti::AddPrincVrt(double prog, double quota) {
    TAltiVrt v;
    v.prog = prog;
    v.quota = quota;
    v.flags = TAltiVrt::PRINC;
    return AddVrt(v);
}

namespace {

// Elevation on a vertex's parabola, for x within [progStart, progEnd]. The
// parabola starts on the incoming tangent and its slope changes linearly
// from gradeIn to gradeOut.
double ParabolaAt(const TAltiVrt& v, double x) {
    const TRaccVrt& r = v.racc;
    const double len = r.progEnd - r.progStart;
    const double zs = v.quota - r.gradeIn * (v.prog - r.progStart);
    const double t = x - r.progStart;
    if (len <= 0.0) return zs + r.gradeIn * t;
    return zs + r.gradeIn * t + (r.gradeOut - r.gradeIn) * t * t / (2.0 * len);
}

}  // namespace

double CalcQuoteAtAltiProg(const CProfileAlti* line, double prog, bool& ok) {
    ok = false;
    if (line == nullptr || !std::isfinite(prog)) return vesk::kUndefined;
    const auto& v = line->Vrts();
    // Curves first: a chainage inside a vertical curve takes its parabola.
    for (const TAltiVrt& a : v) {
        if (IsPrincAltiVrt(&a) && IsRaccVertAltiVrt(&a) && prog >= a.racc.progStart && prog <= a.racc.progEnd &&
            a.racc.progEnd > a.racc.progStart) {
            ok = true;
            return ParabolaAt(a, prog);
        }
    }
    const TAltiVrt* prev = nullptr;
    for (const TAltiVrt& a : v) {
        if (!IsPrincAltiVrt(&a) || !vesk::IsDefined(a.prog) || !vesk::IsDefined(a.quota)) continue;
        if (a.prog == prog) { ok = true; return a.quota; }
        if (prev && prev->prog < prog && prog < a.prog) {
            ok = true;
            const double t = (prog - prev->prog) / (a.prog - prev->prog);
            return prev->quota + t * (a.quota - prev->quota);
        }
        prev = &a;
    }
    return vesk::kUndefined;
}
