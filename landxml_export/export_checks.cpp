#include "landxml_export/export_checks.h"


#include "host/alti.h"
#include "host/plani_elem.h"
#include "host/profile.h"
#include "host/road.h"
#include "vesk/undefined.h"
#include "vesk/diagnostics.h"

namespace roadx::landxml {

namespace {

std::string Station(double prog) { return vesk::diag::StationText(prog); }

class CChecker {
public:
    CChecker(vesk::diag::CSink* sink, const std::string& file) : sink_(sink), file_(file) {}

    void Report(const char* kind, const std::string& element, std::string message, std::string instead) {
        ++reported_;
        if (sink_->Merge(kind, file_, 1)) return;
        vesk::diag::TRecord r;
        r.kind = kind;
        r.file = file_;
        r.element = element;
        r.message = std::move(message);
        r.instead = std::move(instead);
        sink_->Report(std::move(r));
    }

    void Road(CRoad& road) {
        const std::string path = "Road \"" + std::string(road.GetName()) + "\"";
        StartElevation(road, path);
        int number = 0;
        for (const CRoadPlaniElem* link = road.GetFirstRoadPlaniElem(); link; link = link->GetNextElem()) {
            ++number;
            const CPlaniElem* e = link->GetElem();
            if (e && e->GetType() == CPlaniElem::CLOTOIDE_CONT)
                Report("landxml-continuity-clothoid",
                       path + " / plan element " + std::to_string(number) + " (station " + Station(e->GetProg()) + ")",
                       "continuity clothoid (between two radii) not written: the export writes spirals from or "
                       "to a straight only",
                       "left out: CoordGeom has a gap where it was");
        }
        // Every vertex the import and the builder make is principal, and
        // every section line has a known code: the writer's rules for the
        // others (skipped, named "") lose nothing here.
        CProfile* profile = road.GetRoadProfile();
        if (profile && profile->IsSectionPresent())
            for (int i = 0; i < profile->GetNumSections(); ++i)
                if (CProfile* s = profile->GetSection(i)) Section(*s, path);
    }

    size_t Reported() const { return reported_; }

private:
    void StartElevation(CRoad& road, const std::string& path) {
        CProfile* profile = road.GetRoadProfile();
        const CProfileAlti* prj = profile ? profile->GetMainPrjAlti() : nullptr;
        bool ok = false;
        const double z = prj ? CalcQuoteAtAltiProg(prj, road.GetStartProg(), ok) : 0.0;
        // A road without a design line has no elevation to lose: its Start
        // gets 0 without a word.
        if (prj && !vesk::IsDefined(z))
            Report("landxml-start-elevation", path + " / Start",
                   "the design line has no elevation at the road's start (station " + Station(road.GetStartProg()) +
                       ")",
                   "Start written with the undefined value 1.7e200 as its elevation");
    }

    // Runs of defined vertices as the writer splits them: a run of one point
    // is dropped.
    template <class Next>
    void Runs(Next next, const std::string& where) {
        int run = 0;
        double prog = 0.0;
        auto end = [&]() {
            if (run == 1)
                Report("landxml-section-point-dropped", where + " at offset " + Station(prog),
                       "a section point stands alone between undefined vertices (no line to write)", "not written");
            run = 0;
        };
        while (const TAltiVrt* v = next()) {
            if (vesk::IsDefined(v->prog) && vesk::IsDefined(v->quota)) {
                if (run++ == 0) prog = v->prog;
            } else {
                end();
            }
        }
        end();
    }

    void Section(CProfile& s, const std::string& path) {
        const std::string where = path + " / section " + std::string(s.GetName()) + " (station " +
                                  Station(s.GetSectionProg()) + ")";
        int i = 0;
        const int nTerr = s.GetNumTerrVrts();
        Runs([&]() -> const TAltiVrt* { return i < nTerr ? s.GetTerrVrt(i++) : nullptr; }, where + " / terrain");
        for (int k = 0; k < s.GetNumProfileAlti(); ++k) {
            CProfileAlti* line = s.GetProfileAlti(k);
            if (!line || line->IsTerr()) continue;
            const std::string lineWhere = where + " / line \"" + std::string(line->GetCode()) + "\"";
            TAltiVrt* v = nullptr;
            bool started = false;
            Runs(
                [&]() -> const TAltiVrt* {
                    v = started ? line->FindNextPrincVrt(v) : line->FindNextPrincVrt(-1);
                    started = true;
                    return v;
                },
                lineWhere);
        }
    }

    vesk::diag::CSink* sink_;
    const std::string& file_;
    size_t reported_ = 0;
};

}  // namespace

size_t CheckLandXMLExport(const std::vector<CRoad*>& roads, vesk::diag::CSink* sink, const std::string& file) {
    if (!sink) return 0;
    CChecker c(sink, file);
    for (CRoad* road : roads)
        if (road) c.Road(*road);
    return c.Reported();
}

}  // namespace roadx::landxml
