// Plan geometry of one LandXML Alignment: its CoordGeom elements (Line,
// Curve, Spiral) become the road's horizontal elements, in document order,
// through the builder's AddRoadRect / AddRoadArc / AddRoadClot /
// AddRoadClotCont, between the caller's StartRoadPlani and EndRoadPlani.
//
// Every CoordGeom starts a running chainage at 0 and a running direction that
// is undefined (1.7e200, 1.7e200). An element without staStart starts at the
// running chainage; after every element its length is added to it (an
// element's own staStart does not reset it). An element without a start
// direction of its own starts in the running direction; afterwards the
// running direction is its end tangent.
//
// Lengths are converted from US survey feet when the file is not metric;
// directions and angles by their unit codes (landxml_units.h). A point
// element's text is northing then easting; a missing point element is (0, 0),
// one with fewer than two numbers ends the import (CLandXmlImportEnded).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "host/load_vantri_dati.h"
#include "landxml_import/plan_mode.h"
#include "landxml_import/xml_reader.h"
#include "vesk/geom.h"

// Running state of one CoordGeom.
struct TPlanRun {
    double prog = 0.0;
    vesk::geom::VECTOR_2D dir;  // undefined until an element sets it
    TPlanRun();
};

// Why a CoordGeom was refused (for the caller's report).
enum class TPlanRefusal { NONE, SPIRAL_CONSTANT, SPIRAL_WITHOUT_LENGTH };
const char* DescribePlanRefusal(TPlanRefusal r);

// All CoordGeom children of the alignment; false when a spiral was refused
// (why in `refusal`, when given). `geometry` chooses how each element is
// placed (plan_mode.h); the chainages are the same either way.
bool ReadCoordGeom(const XmlSection& alignment, CLoadVantriDati& builder, uint32_t directionUnit,
                   uint32_t angularUnit, bool isMetric, TPlanRefusal* refusal = nullptr,
                   roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);

void ReadLine(const XmlSection& line, CLoadVantriDati& builder, uint32_t directionUnit, bool isMetric, double& prog,
              vesk::geom::VECTOR_2D& dir,
              roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);
void ReadCurve(const XmlSection& curve, CLoadVantriDati& builder, uint32_t directionUnit, uint32_t angularUnit,
               bool isMetric, double& prog, vesk::geom::VECTOR_2D& dir,
               roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);
// False when the user declines to go on with a spiral whose stated constant
// cannot be matched, or the spiral has neither length nor constant.
bool ReadSpiral(const XmlSection& spiral, CLoadVantriDati& builder, uint32_t directionUnit, bool isMetric,
                double& prog, vesk::geom::VECTOR_2D& dir, TPlanRefusal* refusal = nullptr,
                roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);

// The kinds of the CoordGeom children in the order their tags appear in the
// element's XML text ("<Line", "<Curve", "<Spiral").
enum TPlanKind : int { PLAN_LINE = 11, PLAN_CURVE = 12, PLAN_SPIRAL = 13 };
std::vector<int> PlanKindsInTextOrder(const std::string& xml);

// The Line, Curve and Spiral children of a CoordGeom in document order.
std::vector<XmlSection> ElementsInDocumentOrder(const XmlSection& coordGeom);

// The geometry check: each plan element of `road` (as imported from
// `alignment`) against the file's own End and the next element's Start;
// reports through the import's diagnostics.
class CRoad;
void CheckPlanAgainstFile(const XmlSection& alignment, CRoad* road, uint32_t directionUnit, bool isMetric,
                          roadx::landxml::EPlanGeometry geometry = roadx::landxml::EPlanGeometry::Attributes);
