// The vertical side of an Alignment: the design line as ProfAlign and the
// cross sections as CrossSects.
#include <vector>

#include "host/alti.h"
#include "host/profile.h"
#include "landxml_export/landxml_writers.h"
#include "landxml_export/xml_out.h"
#include "vesk/undefined.h"

using roadx::landxml::PutText;

void WriteLandXMLProfile(vesk::COutBuffer& out, CProfileAlti* prj, const vesk::String& name) {
    out.Str("\t\t\t<Profile>\n\t\t\t\t<ProfAlign name=\"Profile_");
    PutText(out, name);
    out.Str("\" state=\"existing\">\n");
    const int n = prj->GetNumVrts();
    for (int i = 0; i < n; ++i) {
        const TAltiVrt* v = prj->GetVrt(i);
        if (!IsPrincAltiVrt(v)) continue;
        if (IsRaccVertAltiVrt(v) && v->racc.kind == 2) {
            out.Str("\t\t\t\t\t<ParaCurve length=\"");
            out.F6(v->racc.progEnd - v->racc.progStart);
            out.Str("\">");
        } else if (IsRaccVertAltiVrt(v)) {
            out.Str("\t\t\t\t\t<CircCurve length=\"");
            out.F6(v->racc.progEnd - v->racc.progStart);
            out.Str("\" radius=\"");
            out.F6(v->racc.radius);
            out.Str("\">");
        } else {
            out.Str("\t\t\t\t\t<PVI>");
        }
        // Chainage first: profile vertices are not plan coordinates.
        out.F6(v->prog);
        out.Ch(' ');
        out.F6(v->quota);
        if (!IsRaccVertAltiVrt(v)) out.Str("</PVI>\n");
        else if (v->racc.kind == 2) out.Str("</ParaCurve>\n");
        else out.Str("</CircCurve>\n");
    }
    out.Str("\t\t\t\t</ProfAlign>\n\t\t\t</Profile>\n");
}

void WriteLandXMLCrossSects(vesk::COutBuffer& out, CProfile* roadProfile) {
    out.Str("\t\t\t<CrossSects state=\"existing\">\n");
    const int n = roadProfile->GetNumSections();
    for (int i = 0; i < n; ++i)
        if (CProfile* s = roadProfile->GetSection(i)) WriteLandXMLCrossSect(out, s);
    out.Str("\t\t\t</CrossSects>\n");
}

namespace {

using TRun = std::vector<vesk::geom::PNT_2D>;

// Splits a vertex sequence at undefined vertices into runs of (offset,
// elevation); a run of a single point is no line and is dropped. `next`
// yields the vertices in order and null at the end.
template <class Next>
std::vector<TRun> SplitRuns(int count, Next next) {
    std::vector<TRun> runs;
    runs.reserve(static_cast<size_t>(count < 0 ? 0 : count + 1) / 3);
    TRun cur;
    while (const TAltiVrt* v = next()) {
        if (vesk::IsDefined(v->prog) && vesk::IsDefined(v->quota)) {
            cur.emplace_back(v->prog, v->quota);
            continue;
        }
        if (cur.size() > 1) runs.push_back(std::move(cur));
        cur.clear();
    }
    if (cur.size() >= 2) runs.push_back(std::move(cur));
    return runs;
}

void WriteRuns(vesk::COutBuffer& out, const std::vector<TRun>& runs, std::string_view name) {
    for (const TRun& run : runs) {
        out.Str("\t\t\t\t\t<CrossSectSurf name=\"");
        PutText(out, name);
        out.Str("\">\n\t\t\t\t\t\t<PntList2D>");
        for (const auto& p : run) {
            out.F6(p.x);
            out.Ch(' ');
            out.F6(p.y);
            out.Ch(' ');
        }
        out.Str("</PntList2D>\n\t\t\t\t\t</CrossSectSurf>\n");
    }
}

// The name a design line goes out under: its code's name in the section's
// code library, or "" for a code the library does not know.
vesk::String LineName(const CProfileAlti* line) {
    const CProfile* section = line->GetProfile();
    const CLibProfile* lib = section ? section->GetLibProfile() : nullptr;
    const TProfileAltiCode* code = lib ? lib->FindSectionAltiCode(line->GetCode()) : nullptr;
    return code ? code->name : vesk::String();
}

}  // namespace

void WriteLandXMLCrossSect(vesk::COutBuffer& out, CProfile* section) {
    out.Str("\t\t\t\t<CrossSect sta=\"");
    out.F6(section->GetSectionProg());
    out.Str("\" name=\"");
    PutText(out, section->GetName());
    out.Str("\">\n");

    const int nTerr = section->GetNumTerrVrts();
    int i = 0;
    WriteRuns(out, SplitRuns(nTerr, [&]() { return i < nTerr ? section->GetTerrVrt(i++) : nullptr; }), "TERRENO");

    const int nLines = section->GetNumProfileAlti();
    for (int k = 0; k < nLines; ++k) {
        CProfileAlti* line = section->GetProfileAlti(k);
        if (line && !line->IsTerr()) WriteLandXMLCrossSectLine(out, line);
    }
    out.Str("\t\t\t\t</CrossSect>\n");
}

void WriteLandXMLCrossSectLine(vesk::COutBuffer& out, CProfileAlti* line) {
    // Only the principal vertices carry the line's shape.
    TAltiVrt* v = nullptr;
    bool started = false;
    auto next = [&]() -> TAltiVrt* {
        v = started ? line->FindNextPrincVrt(v) : line->FindNextPrincVrt(-1);
        started = true;
        return v;
    };
    WriteRuns(out, SplitRuns(line->GetNumVrts(), next), LineName(line));
}
