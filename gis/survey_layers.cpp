// Points and surveys as GIS layers. A point needs plan coordinates to have
// a place on the map; one without is not written. An elevation that is not
// defined is 0 in the geometry and null in the attribute.
#include <cmath>
#include <memory>

#include "gis/layers.h"
#include "gis/vector_writer.h"
#include "host/document.h"

namespace roadx::gis {

namespace {

constexpr double kRadToDeg = 180.0 / 3.141592653589793;

bool Finite(double v) { return std::isfinite(v) && vesk::IsDefined(v); }

// The point of a survey object, or null when it has no plan position.
std::unique_ptr<OGRPoint> Place(const CEgn& e, const CVectorWriter& w) {
    if (!Finite(e.GetCoordX()) || !Finite(e.GetCoordY())) return nullptr;
    const double z = Finite(e.GetCoordZ()) ? e.GetCoordZ() : 0.0;
    return std::make_unique<OGRPoint>(w.Plan(e.GetCoordX()), w.Plan(e.GetCoordY()), z);
}

const char* SolutionType(int q) {
    switch (q) {
        case 2: case 6: return "Code";
        case 3: case 7: return "Float";
        case 4: case 8: return "Fixed";
        default: return "Unknown";
    }
}

void WritePoints(IVantriDati& doc, CVectorWriter& w) {
    CLibPnt* lib = doc.GetLibPnt();
    for (int g = 0; lib && g < lib->GetGrpArSize(); ++g)
        for (int i = 0; i < lib->GetPtnArSize(g); ++i) {
            const CPunPnt* p = lib->GetPtnAt(g, i);
            auto geom = p ? Place(*p, w) : nullptr;
            if (!geom) continue;
            OGRFeature& f = w.New();
            SetText(f, "group", lib->GetGrpAt(g)->GetName());
            SetText(f, "name", p->GetNome());
            SetText(f, "desc", p->GetSecScri());
            SetReal(f, "elev", p->GetCoordZ());
            w.Add(std::move(geom));
        }
}

void WriteStations(IVantriDati& doc, CVectorWriter& w) {
    CLibCmp* lib = doc.GetLibCmp();
    for (int j = 0; lib && j < lib->GetJobArSize(); ++j)
        for (int s = 0; s < lib->GetStaArSize(j); ++s) {
            const CSta* sta = lib->GetStaAt(j, s);
            auto geom = sta ? Place(*sta, w) : nullptr;
            if (!geom) continue;
            OGRFeature& f = w.New();
            SetText(f, "job", lib->GetJobAt(j)->GetNome());
            SetInt(f, "setup", s);
            SetText(f, "name", sta->GetNome());
            SetText(f, "desc", sta->GetSecScri());
            SetReal(f, "inst_h", sta->GetAltStr());
            w.Add(std::move(geom));
        }
}

void WriteObservations(IVantriDati& doc, CVectorWriter& w) {
    CLibCmp* lib = doc.GetLibCmp();
    for (int j = 0; lib && j < lib->GetJobArSize(); ++j)
        for (int s = 0; s < lib->GetStaArSize(j); ++s)
            for (int i = 0; i < lib->GetPunArSize(j, s); ++i) {
                const CPun* p = lib->GetPunAt(j, s, i);
                auto geom = p ? Place(*p, w) : nullptr;
                if (!geom) continue;
                OGRFeature& f = w.New();
                SetText(f, "job", lib->GetJobAt(j)->GetNome());
                SetInt(f, "setup", s);
                SetText(f, "sta_name", lib->GetStaAt(j, s)->GetNome());
                SetText(f, "name", p->GetNome());
                SetText(f, "desc", p->GetSecScri());
                SetReal(f, "target_h", p->GetAltPri());
                SetReal(f, "slope_dist", p->GetDato0());
                SetReal(f, "zenith", p->GetDato1());
                SetReal(f, "horiz_ang", p->GetDato2());
                w.Add(std::move(geom));
            }
}

void WriteGps(IVantriDati& doc, CVectorWriter& w) {
    CLibGps* lib = doc.GetLibGps();
    for (int g = 0; lib && g < lib->GetGrpArSize(); ++g)
        for (int i = 0; i < lib->GetPunArSize(g); ++i) {
            const CPunGps* p = lib->GetPunAt(g, i);
            auto geom = p ? Place(*p, w) : nullptr;
            if (!geom) continue;
            OGRFeature& f = w.New();
            SetText(f, "group", lib->GetGrpAt(g)->GetNomeGrp());
            SetText(f, "base", lib->GetGrpAt(g)->GetNome());
            SetText(f, "name", p->GetNome());
            SetText(f, "desc", p->GetSecScri());
            SetReal(f, "lat", p->GetLat() * kRadToDeg);
            SetReal(f, "lon", p->GetLong() * kRadToDeg);
            SetReal(f, "height", p->GetElev());
            SetInt(f, "quality", p->GetQua());
            SetText(f, "soln_type", SolutionType(p->GetQua()));
            SetInt(f, "sats", p->GetNuGpsUsed() + p->GetNuGloUsed());
            w.Add(std::move(geom));
        }
}

}  // namespace

void WriteSurveyLayers(IVantriDati& doc, CVectorWriter& w) {
    w.Begin(LayerDef("points"));
    WritePoints(doc, w);
    w.Begin(LayerDef("survey_stations"));
    WriteStations(doc, w);
    w.Begin(LayerDef("observations"));
    WriteObservations(doc, w);
    w.Begin(LayerDef("gps_points"));
    WriteGps(doc, w);
}

}  // namespace roadx::gis
