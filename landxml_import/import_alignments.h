// The alignment loop of the LandXML import: every Alignment whose name the
// user chose becomes a road.
#pragma once
#include "exchange/common/status.h"
#include "host/load_vantri_dati.h"
#include "host/ui.h"
#include "landxml_import/landxml_units.h"
#include "landxml_import/plan_mode.h"
#include "landxml_import/xml_reader.h"

// Per chosen alignment, in document order: AddRoad, its plan geometry
// between StartRoadPlani and EndRoadPlani, then (in one change event of the
// road library) the terrain line linked to `terrain` and a recalculation,
// the vertical profile between StartRoadAlti and EndRoadAlti, and (in a
// second change event, with the road's recalculation blocked for good) the
// cross sections.
//
// A refused plan geometry closes the plan, removes that road again and ends
// the loop (ENDED_EARLY); roads made before stay. A rule that ends the
// import inside a reader (CLandXmlImportEnded) leaves the road as far as it
// was built and is passed on, naming the alignment.
// `geometry` chooses how the plan elements are placed (plan_mode.h).
TExchangeStatus ImportAlignments(const XmlSection& root, CLoadVantriDati& builder, TImportLandXMLResult choices,
                                 CDtmPrj* terrain, const TLandXmlUnits& units,
                                 roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);
