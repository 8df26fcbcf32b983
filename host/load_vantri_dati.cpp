#include "host/load_vantri_dati.h"

#include <algorithm>
#include <cmath>

#include "host/trace.h"

namespace {

// Trace lines are built only when a recorder listens: surfaces send millions
// of calls through the builder.
inline bool Tracing() { return HostTrace() != nullptr; }

// Ids up to this many slots past the vertex count are kept in a flat table.
constexpr int64_t kDenseSlack = 1 << 16;

}  // namespace

CLoadVantriDati::CLoadVantriDati(IVantriDati* doc) : doc_(doc) {}

CLoadVantriDati::~CLoadVantriDati() {
    if (planiOpen_) EndRoadPlani();
    if (altiOpen_) EndRoadAlti();
}

bool CLoadVantriDati::Refuse(const char*) {
    ++refused_;
    return false;
}

CRoad* CLoadVantriDati::AddRoad(const vesk::String& name, double startProg, bool fromRd3) {
    if (Tracing()) CTraceLine("AddRoad").S(name).D(startProg).B(fromRd3).Emit();
    if (planiOpen_) EndRoadPlani();
    if (altiOpen_) EndRoadAlti();
    road_ = doc_->GetLibRoad()->AddRoad(doc_->GetLibProfile(), name, startProg);
    road_->SetImportFlag(fromRd3);
    planiClosed_ = false;
    prj_ = nullptr;
    section_ = nullptr;
    return road_;
}

CRoadChangeContext* CLoadVantriDati::GetRoadContext() { return doc_->GetLibRoad()->GetContext(); }

void CLoadVantriDati::RemoveRoad() {
    if (Tracing()) CTraceLine("RemoveRoad").Emit();
    if (!road_ || planiOpen_) { Refuse("RemoveRoad needs a road whose plan was closed"); return; }
    doc_->GetLibRoad()->RemoveRoad(road_);
    road_ = nullptr;
    prj_ = nullptr;
    section_ = nullptr;
}

void CLoadVantriDati::StartRoadPlani() {
    if (Tracing()) CTraceLine("StartRoadPlani").Emit();
    if (!road_ || planiOpen_) { Refuse("StartRoadPlani"); return; }
    planiOpen_ = true;
}

void CLoadVantriDati::EndRoadPlani() {
    if (Tracing()) CTraceLine("EndRoadPlani").Emit();
    if (!planiOpen_) { Refuse("EndRoadPlani"); return; }
    planiOpen_ = false;
    planiClosed_ = true;
}

void CLoadVantriDati::AppendElem(CPlaniElem* elem) {
    if (!road_ || !planiOpen_) {
        elem->SubReference();
        Refuse("plan element outside StartRoadPlani/EndRoadPlani");
        return;
    }
    road_->AppendElem(elem);
}

void CLoadVantriDati::AddRoadRect(double prog, const PNT_2D& start, const VECTOR_2D& dir, double length) {
    if (Tracing()) CTraceLine("AddRoadRect").D(prog).P(start).V(dir).D(length).Emit();
    AppendElem(new CRettifiloPlaniElem(prog, start, dir, length));
}

void CLoadVantriDati::AddRoadArc(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double radius,
                                 double angle, bool ccw) {
    if (Tracing()) CTraceLine("AddRoadArc").D(prog).P(start).V(startDir).D(radius).D(angle).B(ccw).Emit();
    AppendElem(new CArcPlaniElem(prog, start, startDir, radius, angle, ccw));
}

void CLoadVantriDati::AddRoadClot(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double k, double A,
                                  double R, bool ccw, bool entrance) {
    if (Tracing())
        CTraceLine("AddRoadClot").D(prog).P(start).V(startDir).D(k).D(A).D(R).B(ccw).B(entrance).Emit();
    AppendElem(new CClotPlaniElem(prog, start, startDir, k, A, R, ccw, entrance));
}

void CLoadVantriDati::AddRoadClotCont(double prog, const PNT_2D& start, const VECTOR_2D& startDir, double k,
                                      double A, double R1, double R2, bool ccw) {
    if (Tracing())
        CTraceLine("AddRoadClotCont").D(prog).P(start).V(startDir).D(k).D(A).D(R1).D(R2).B(ccw).Emit();
    AppendElem(new CClotContPlaniElem(prog, start, startDir, k, A, R1, R2, ccw));
}

void CLoadVantriDati::StartRoadAlti() {
    if (Tracing()) CTraceLine("StartRoadAlti").Emit();
    if (!road_ || altiOpen_) { Refuse("StartRoadAlti"); return; }
    if (planiOpen_) EndRoadPlani();
    altiOpen_ = true;
    prj_ = nullptr;
}

void CLoadVantriDati::EndRoadAlti() {
    if (Tracing()) CTraceLine("EndRoadAlti").Emit();
    if (!altiOpen_) { Refuse("EndRoadAlti"); return; }
    altiOpen_ = false;
}

CProfileAlti* CLoadVantriDati::AddRoadPrj() {
    if (Tracing()) CTraceLine("AddRoadPrj").Emit();
    if (!road_ || !altiOpen_) { Refuse("AddRoadPrj"); return nullptr; }
    prj_ = road_->GetRoadProfile()->AddPrjAlti();
    return prj_;
}

void CLoadVantriDati::AddRoadProfAltiPrincVrt(double prog, double elevation) {
    if (Tracing()) CTraceLine("AddRoadProfAltiPrincVrt").D(prog).D(elevation).Emit();
    if (!prj_ || !altiOpen_) { Refuse("AddRoadProfAltiPrincVrt"); return; }
    prj_->AddPrincVrt(prog, elevation);
}

namespace {

double Grade(double p0, double z0, double p1, double z1) {
    const double d = p1 - p0;
    if (d == 0.0 || !std::isfinite(d)) return 0.0;
    const double g = (z1 - z0) / d;
    return std::isfinite(g) ? g : 0.0;
}

}  // namespace

// Every vertical curve is kept as a symmetric parabola of length R·|g1 − g2|
// centred on its vertex, whatever the caller's last flag: the parabola is the
// curve both importers describe, and one kind keeps exports predictable.
void CLoadVantriDati::AddRoadProfAltiRaccVrt(double prog, double elevation, double progPrev, double elevPrev,
                                             double progNext, double elevNext, double radius, bool fromRd3) {
    if (Tracing())
        CTraceLine("AddRoadProfAltiRaccVrt")
            .D(prog).D(elevation).D(progPrev).D(elevPrev).D(progNext).D(elevNext).D(radius).B(fromRd3).Emit();
    if (!prj_ || !altiOpen_) { Refuse("AddRoadProfAltiRaccVrt"); return; }
    TAltiVrt& v = prj_->AddPrincVrt(prog, elevation);
    v.flags |= TAltiVrt::RACC;
    v.racc.kind = 2;
    v.racc.radius = radius;
    v.racc.gradeIn = Grade(progPrev, elevPrev, prog, elevation);
    v.racc.gradeOut = Grade(prog, elevation, progNext, elevNext);
    double len = std::fabs(radius) * std::fabs(v.racc.gradeIn - v.racc.gradeOut);
    if (!std::isfinite(len)) len = 0.0;
    v.racc.progStart = prog - len / 2.0;
    v.racc.progEnd = prog + len / 2.0;
}

void CLoadVantriDati::AddSection(const vesk::String& name, double prog, CPlaniElem* elem) {
    if (Tracing()) {
        CTraceLine l("AddSection");
        l.S(name).D(prog);
        if (elem) l.D(elem->GetProg()).P(elem->GetStartPnt()).V(elem->GetStartTg()).D(elem->GetLength());
        l.Emit();
    }
    if (!road_) { Refuse("AddSection"); return; }
    section_ = road_->GetRoadProfile()->AddSection(name, prog, elem);
}

bool CLoadVantriDati::AddSectionProfileAlti(const vesk::String& code, const std::vector<vesk::geom::PNT_2D>& points) {
    if (Tracing()) {
        CTraceLine l("AddSectionProfileAlti");
        l.S(code).I(static_cast<long long>(points.size()));
        for (const auto& p : points) l.P(p);
        l.Emit();
    }
    if (!section_) return Refuse("AddSectionProfileAlti without a section");
    // A line is stored only under a code the profile library knows.
    if (!doc_->GetLibProfile()->FindSectionAltiCode(code)) return false;
    CProfileAlti* line = section_->AddSectionLine(code, CLibProfile::IsTerrCode(code));
    for (const auto& p : points) line->AddPrincVrt(p.x, p.y);
    return true;
}

CDtmPrj* CLoadVantriDati::AddDtmPrj(const vesk::String& name) {
    if (Tracing()) CTraceLine("AddDtmPrj").S(name).Emit();
    FinishDtm();
    dtm_ = doc_->GetLibDtm()->AddPrj(name);
    return dtm_;
}

void CLoadVantriDati::FinishDtm() {
    denseIds_.clear();
    denseIds_.shrink_to_fit();
    sparseIds_.clear();
}

void CLoadVantriDati::AddTriVert(int index, double x, double y, double z) {
    if (Tracing()) CTraceLine("AddTriVert").I(index).D(x).D(y).D(z).Emit();
    if (!dtm_) { Refuse("AddTriVert"); return; }
    const int32_t at = dtm_->GetTris()->AddVert({x, y, z});
    // A repeated id points at its latest vertex.
    const int64_t limit = static_cast<int64_t>(dtm_->GetTris()->GetNoTriVrts()) * 2 + kDenseSlack;
    if (index >= 0 && index < limit) {
        // Grown by doubling: ids usually come in order, one more each time.
        if (static_cast<size_t>(index) >= denseIds_.size())
            denseIds_.resize(std::max(static_cast<size_t>(index) + 1, denseIds_.size() * 2), -1);
        int32_t& slot = denseIds_[static_cast<size_t>(index)];
        repeatedVertIds_ += slot >= 0 ? 1 : 0;
        slot = at;
    } else {
        repeatedVertIds_ += sparseIds_.insert_or_assign(index, at).second ? 0 : 1;
    }
}

int CLoadVantriDati::LookupVert(int id) const {
    if (id >= 0 && static_cast<size_t>(id) < denseIds_.size() && denseIds_[static_cast<size_t>(id)] >= 0)
        return denseIds_[static_cast<size_t>(id)];
    auto it = sparseIds_.find(id);
    return it == sparseIds_.end() ? -1 : it->second;
}

void CLoadVantriDati::AddTri(int a, int b, int c) {
    if (Tracing()) CTraceLine("AddTri").I(a).I(b).I(c).Emit();
    if (!dtm_) { Refuse("AddTri"); return; }
    const int ia = LookupVert(a), ib = LookupVert(b), ic = LookupVert(c);
    if (ia < 0 || ib < 0 || ic < 0) { ++droppedTris_; return; }
    dtm_->GetTris()->AddTri(ia, ib, ic);
}

void CLoadVantriDati::AddCnt(bool outer, std::vector<vesk::geom::PNT_3D>* points) {
    if (Tracing()) {
        CTraceLine l("AddCnt");
        l.B(outer).I(points ? static_cast<long long>(points->size()) : 0);
        if (points)
            for (const auto& p : *points) l.P3(p);
        l.Emit();
    }
    if (!dtm_ || !points) { Refuse("AddCnt"); return; }
    (outer ? dtm_->GetCntsExt() : dtm_->GetCntsInt())->Add(*points);
}

void CLoadVantriDati::AddVnc(double x1, double y1, double z1, double x2, double y2, double z2) {
    if (Tracing()) CTraceLine("AddVnc").D(x1).D(y1).D(z1).D(x2).D(y2).D(z2).Emit();
    if (!dtm_) { Refuse("AddVnc"); return; }
    dtm_->GetVncs()->Add(LINE_3D({x1, y1, z1}, {x2, y2, z2}));
}

void CLoadVantriDati::AddGrpPnt(const vesk::String& name) {
    if (Tracing()) CTraceLine("AddGrpPnt").S(name).Emit();
    grpPnt_ = doc_->GetLibPnt()->AddGrp(name);
}

void CLoadVantriDati::AddPunPnt(const vesk::String& name, double x, double y, double z) {
    if (Tracing()) CTraceLine("AddPunPnt").S(name).D(x).D(y).D(z).Emit();
    if (!grpPnt_) { Refuse("AddPunPnt"); return; }
    auto p = std::make_unique<CPunPnt>();
    p->SetNome(name);
    p->SetCoords(x, y, z);
    grpPnt_->Points().push_back(std::move(p));
}

void CLoadVantriDati::AddGrpGps(const vesk::String& name) {
    if (Tracing()) CTraceLine("AddGrpGps").S(name).Emit();
    grpGps_ = doc_->GetLibGps()->AddGrp(name);
    gpsPnt_ = nullptr;
}

void CLoadVantriDati::SetGrpStaName(const vesk::String& name) {
    if (Tracing()) CTraceLine("SetGrpStaName").S(name).Emit();
    if (!grpGps_) { Refuse("SetGrpStaName"); return; }
    grpGps_->SetNome(name);
}

void CLoadVantriDati::SetGrpAntHeight(double h) {
    if (Tracing()) CTraceLine("SetGrpAntHeight").D(h).Emit();
    if (!grpGps_) { Refuse("SetGrpAntHeight"); return; }
    grpGps_->SetAltAnt(h);
}

void CLoadVantriDati::SetGrpLatLonElev(double lat, double lon, double elev) {
    if (Tracing()) CTraceLine("SetGrpLatLonElev").D(lat).D(lon).D(elev).Emit();
    if (!grpGps_) { Refuse("SetGrpLatLonElev"); return; }
    grpGps_->SetLatLonElev(lat, lon, elev);
}

void CLoadVantriDati::SetGrpCoords(double x, double y, double z) {
    if (Tracing()) CTraceLine("SetGrpCoords").D(x).D(y).D(z).Emit();
    if (!grpGps_) { Refuse("SetGrpCoords"); return; }
    grpGps_->SetCoords(x, y, z);
}

void CLoadVantriDati::AddGpsPnt(double latitude, double longitude, double height) {
    if (Tracing()) CTraceLine("AddGpsPnt").D(latitude).D(longitude).D(height).Emit();
    if (!grpGps_) { Refuse("AddGpsPnt"); return; }
    grpGps_->Points().push_back(std::make_unique<CPunGps>(latitude, longitude, height));
    gpsPnt_ = grpGps_->Points().back().get();
}

void CLoadVantriDati::SetGpsPntName(const vesk::String& name, const vesk::String& desc) {
    if (Tracing()) CTraceLine("SetGpsPntName").S(name).S(desc).Emit();
    if (!gpsPnt_) { Refuse("SetGpsPntName"); return; }
    gpsPnt_->SetNome(name);
    gpsPnt_->SetSecScri(desc);
}

void CLoadVantriDati::SetGpsPntCoords(double x, double y, double z) {
    if (Tracing()) CTraceLine("SetGpsPntCoords").D(x).D(y).D(z).Emit();
    if (!gpsPnt_) { Refuse("SetGpsPntCoords"); return; }
    gpsPnt_->SetCoords(x, y, z);
}

void CLoadVantriDati::AddJob(const vesk::String& name) {
    if (Tracing()) CTraceLine("AddJob").S(name).Emit();
    job_ = doc_->GetLibCmp()->AddJob(name);
    sta_ = nullptr;
}

void CLoadVantriDati::AddSta(const vesk::String& name, double instrumentHeight) {
    if (Tracing()) CTraceLine("AddSta").S(name).D(instrumentHeight).Emit();
    if (!job_) { Refuse("AddSta"); return; }
    auto s = std::make_unique<CSta>(instrumentHeight);
    s->SetNome(name);
    job_->Stations().push_back(std::move(s));
    sta_ = job_->Stations().back().get();
}

void CLoadVantriDati::SetStaDesc(const vesk::String& desc) {
    if (Tracing()) CTraceLine("SetStaDesc").S(desc).Emit();
    if (!sta_) { Refuse("SetStaDesc"); return; }
    sta_->SetSecScri(desc);
}

void CLoadVantriDati::SetStaCoords(double x, double y, double z) {
    if (Tracing()) CTraceLine("SetStaCoords").D(x).D(y).D(z).Emit();
    if (!sta_) { Refuse("SetStaCoords"); return; }
    sta_->SetCoords(x, y, z);
}

void CLoadVantriDati::AddPun(const vesk::String& name, const vesk::String& desc, double x, double y, double z,
                             double targetHeight, double slopeDistance, double zenith, double horizAngle) {
    if (Tracing())
        CTraceLine("AddPun").S(name).S(desc).D(x).D(y).D(z).D(targetHeight).D(slopeDistance).D(zenith).D(horizAngle).Emit();
    if (!sta_) { Refuse("AddPun"); return; }
    auto p = std::make_unique<CPun>(targetHeight, slopeDistance, zenith, horizAngle);
    p->SetNome(name);
    p->SetSecScri(desc);
    p->SetCoords(x, y, z);
    sta_->Points().push_back(std::move(p));
}
