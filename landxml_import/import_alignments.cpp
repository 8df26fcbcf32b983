#include "landxml_import/import_alignments.h"

#include <algorithm>
#include <string>

#include "host/road.h"
#include "landxml_import/import_checks.h"
#include "landxml_import/import_ended.h"
#include "landxml_import/plan_geometry.h"
#include "landxml_import/reader_messages.h"
#include "landxml_import/readers.h"
#include "landxml_import/text_lists.h"
#include "vesk/source_event.h"

namespace {

std::string AlignmentLabel(const CString& name) { return "alignment " + QuoteForMessage(name); }

// The plan geometry; a rule that ends the import inside it is passed on with
// the alignment named in front.
bool ReadPlan(const XmlSection& alignment, const CString& name, CLoadVantriDati& builder, const TLandXmlUnits& units,
              roadx::landxml::EPlanGeometry geometry, TPlanRefusal& refusal) {
    try {
        return ReadCoordGeom(alignment, builder, units.directionUnit, units.angularUnit, units.isMetric, &refusal,
                             geometry);
    } catch (const CLandXmlImportEnded& e) {
        throw CLandXmlImportEnded(AlignmentLabel(name) + ": " + e.what());
    }
}

// The road's terrain line takes the terrain DTM project (also none), then the
// road is recalculated, as one change.
void LinkTerrainAndRecalc(CRoadChangeContext* context, CRoad* road, CDtmPrj* terrain) {
    vesk::CEventScope event(context);
    if (CProfileAlti* terr = road->GetRoadProfile()->GetTerrAlti()) terr->SetDtmPrj(terrain);
    road->Recalc();
}

// One alignment as a road; a status other than OK ends the loop.
TExchangeStatus ImportAlignment(const XmlSection& alignment, const CString& name, CLoadVantriDati& builder,
                                const TImportLandXMLResult& choices, CDtmPrj* terrain, const TLandXmlUnits& units,
                                roadx::landxml::EPlanGeometry geometry) {
    double staStart = 0.0;
    PX_Double(alignment, "staStart", staStart);
    if (!units.isMetric) FeetToMeters(staStart);
    CRoad* road = builder.AddRoad(name, staStart, false);
    CRoadChangeContext* context = builder.GetRoadContext();

    builder.StartRoadPlani();
    TPlanRefusal refusal = TPlanRefusal::NONE;
    if (!ReadPlan(alignment, name, builder, units, geometry, refusal)) {
        builder.EndRoadPlani();
        builder.RemoveRoad();
        return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY, AlignmentLabel(name) +
                                     ": plan geometry refused (" + DescribePlanRefusal(refusal) + ")");
    }
    builder.EndRoadPlani();
    if (!road) return TExchangeStatus::Ok();
    LinkTerrainAndRecalc(context, road, terrain);
    CheckRoadStations(alignment, road);
    CheckPlanAgainstFile(alignment, road, units.directionUnit, units.isMetric, geometry);

    builder.StartRoadAlti();
    const bool profileOk = ImportProfiles(alignment, builder, units.isMetric);
    builder.EndRoadAlti();
    if (!profileOk)
        return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY,
                                     AlignmentLabel(name) + ": the vertical profile ended the import");

    vesk::CEventScope event(context);
    road->GetOpzRoadRecalc()->SetBlockRecalc(true);
    if (!ImportCrossSects(alignment, builder, road, choices.crossSectCodes, units.isMetric))
        return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY,
                                     AlignmentLabel(name) + ": the cross sections ended the import");
    return TExchangeStatus::Ok();
}

}  // namespace

TExchangeStatus ImportAlignments(const XmlSection& root, CLoadVantriDati& builder, TImportLandXMLResult choices,
                                 CDtmPrj* terrain, const TLandXmlUnits& units,
                                 roadx::landxml::EPlanGeometry geometry) {
    const std::vector<CString> chosen = choices.alignments;
    for (const XmlSection alignments : root.Children("Alignments"))
        for (const XmlSection alignment : alignments.Children("Alignment")) {
            CString name;
            PX_String(alignment, "name", name);
            if (std::find(chosen.begin(), chosen.end(), name) == chosen.end()) continue;
            const TExchangeStatus status = ImportAlignment(alignment, name, builder, choices, terrain, units, geometry);
            if (!status.ok()) return status;
        }
    return TExchangeStatus::Ok();
}
