#include "rd3/rd3_export_checks.h"


#include "host/road.h"
#include "rd3/rd3_name.h"
#include "vesk/undefined.h"
#include "vesk/diagnostics.h"

namespace roadx::rd3 {

namespace {

std::string Station(double prog) { return vesk::diag::StationText(prog); }

vesk::diag::TRecord Record(const char* kind, const std::string& file, std::string element, std::string message,
                           std::string instead, int64_t count) {
    vesk::diag::TRecord r;
    r.kind = kind;
    r.file = file;
    r.element = std::move(element);
    r.message = std::move(message);
    r.instead = std::move(instead);
    r.count = count;
    return r;
}

// A section is carried only as the template its "STF" line makes, at a
// station where the main project line has an elevation; the rest of a
// section (terrain, other lines) has no place in an RD3 file.
void CheckSections(CRoad& road, vesk::diag::CSink* sink, const std::string& file, const std::string& roadPath) {
    CProfileAlti* prj = road.GetRoadProfile() ? road.GetRoadProfile()->GetMainPrjAlti() : nullptr;
    for (int i = 0; i < road.GetNumSections(); ++i) {
        CProfile* section = road.GetSection(i);
        if (!section) continue;
        const std::string where = roadPath + " / section " + std::string(section->GetName()) + " (station " +
                                  Station(section->GetSectionProg()) + ")";
        const CProfileAlti* stf = section->FindProfileAlti("STF");
        if (!stf) {
            sink->Report(Record("rd3-section-without-stf", file, where,
                                "section has no \"STF\" line, the only line an RD3 template is made of",
                                "section not written (--section-code SURFACE=STF makes a surface its template)", 1));
            continue;
        }
        // The imports store no "STF" line without points, so its walk always
        // finds an axis.
        bool ok = false;
        if (!vesk::IsDefined(prj ? CalcQuoteAtAltiProg(prj, section->GetSectionProg(), ok) : vesk::kUndefined))
            sink->Report(Record("rd3-section-no-elevation", file, where,
                                "the road's main project line has no elevation at the section's station (an RD3 "
                                "template is relative to it)",
                                "section not written", 1));
    }
}

}  // namespace

void CheckRD3Export(CRoad& road, vesk::diag::CSink* sink, const std::string& file) {
    if (!sink) return;
    const std::string roadPath = "Road \"" + std::string(road.GetName()) + "\"";
    if (Utf8ToUtf16(road.GetName()).size() > kNameUnits)
        sink->Report(Record("rd3-name-cut", file, roadPath,
                            "the road name is longer than the 33 UTF-16 units of an RD3 name field",
                            "written cut to \"" + Utf16ToUtf8(MakeName(road.GetName())) + "\"", 1));
    int number = 0;
    for (const CRoadPlaniElem* link = road.GetFirstRoadPlaniElem(); link; link = link->GetNextElem()) {
        ++number;
        const CPlaniElem* e = link->GetElem();
        if (e->GetType() != CPlaniElem::CLOTOIDE_CONT) continue;
        sink->Report(Record("rd3-continuity-clothoid", file,
                            roadPath + " / plan element " + std::to_string(number) + " (station " +
                                Station(e->GetProg()) + ")",
                            "continuity clothoid not written (RD3 has no record for it)",
                            "left out: every later element starts where the file's previous one ends", 1));
    }
    CheckSections(road, sink, file, roadPath);
}

}  // namespace roadx::rd3
