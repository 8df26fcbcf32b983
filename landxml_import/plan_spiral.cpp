#include <cmath>
#include <cstdio>
#include <string>

#include "exchange/common/module_strings.h"
#include "host/plani_elem.h"
#include "host/ui.h"
#include "landxml_import/plan_common.h"
#include "landxml_import/import_diag.h"
#include "landxml_import/plan_geometry.h"
#include "landxml_import/plan_points.h"
#include "landxml_import/text_lists.h"
#include "vesk/undefined.h"

namespace {

// One end radius of a spiral as written: infinite when the text is empty,
// "INF" or "-INF", or its number lies beyond ±1e8.
struct TSpiralRadius {
    bool infinite = false;
    double value = 0.0;
};

TSpiralRadius ReadSpiralRadius(const XmlSection& spiral, const char* name) {
    CString text;
    PX_String(spiral, name, text);
    TSpiralRadius r;
    // "INF" reads as 0 anyway; reading it would report a text that is no number.
    const bool infText = text.empty() || text == "INF" || text == "-INF";
    r.value = infText ? 0.0 : ReadStreamDouble(text);
    const bool beyond = (r.value > 1e8 && !TolerantEqual(r.value, 1e8)) ||
                        (r.value < -1e8 && !TolerantEqual(r.value, -1e8));
    r.infinite = infText || beyond;
    return r;
}

// Does the computed A match the file's constant, given either as A or as A²?
// If not, the user decides whether to go on.
bool AcceptSpiralConstant(const XmlSection& spiral, double A, double constant) {
    if (TolerantEqual(A, constant) || TolerantEqual(A, std::sqrt(std::fabs(constant)))) return true;
    if (CImportDiagScope::Current()) {
        char text[200];
        std::snprintf(text, sizeof text,
                      "spiral parameter A = %.6f (from its length and radii) matches neither the file's constant "
                      "%.6f nor its square root %.6f",
                      A, constant, std::sqrt(std::fabs(constant)));
        DiagReport("spiral-constant-mismatch", spiral, text, "the user was asked whether to go on; A kept");
    }
    return MessageQuestionYesNo(LoadModuleString(IDS_CLOTOIDE_NON_VALIDA), LoadModuleString(IDS_PLANIMETRIA));
}

// The spiral as a host element, for its length and end tangent.
CPlaniElem* MakeSpiralElem(double prog, const vesk::geom::PNT_2D& start, const vesk::geom::VECTOR_2D& dir, double A,
                           const TSpiralRadius& rs, const TSpiralRadius& re, bool ccw) {
    if (rs.infinite) return new CClotPlaniElem(prog, start, dir, 1.0, A, re.value, ccw, true);
    if (re.infinite) return new CClotPlaniElem(prog, start, dir, 1.0, A, rs.value, ccw, false);
    return new CClotContPlaniElem(prog, start, dir, 1.0, A, rs.value, re.value, ccw);
}

}  // namespace

const char* DescribePlanRefusal(TPlanRefusal r) {
    switch (r) {
        case TPlanRefusal::NONE: return "";
        case TPlanRefusal::SPIRAL_CONSTANT: return "spiral constant question answered no";
        case TPlanRefusal::SPIRAL_WITHOUT_LENGTH: return "spiral without length or constant";
    }
    return "";
}

bool ReadSpiral(const XmlSection& spiral, CLoadVantriDati& builder, uint32_t directionUnit, bool isMetric,
                double& prog, vesk::geom::VECTOR_2D& dir, TPlanRefusal* refusal,
                roadx::landxml::EPlanGeometry geometry) {
    double length = vesk::kUndefined;
    ReadLength(spiral, "length", length, isMetric);
    TSpiralRadius rs = ReadSpiralRadius(spiral, "radiusStart");
    TSpiralRadius re = ReadSpiralRadius(spiral, "radiusEnd");
    if (!isMetric) {
        FeetToMeters(rs.value);
        FeetToMeters(re.value);
    }
    const bool ccw = ReadCounterClockwise(spiral);
    const double startProg = ReadStartProg(spiral, isMetric, prog);

    // A from the radius (or radii) and the length; a spiral without length
    // takes the file's constant as A.
    double constant = 0.0;
    const bool hasConstant = PX_Double(spiral, "constant", constant);
    double A = 0.0;
    if (vesk::IsDefined(length)) {
        A = (rs.infinite || re.infinite)
                ? CClotoide::ComputeAFromRadLen(1.0, rs.infinite ? re.value : rs.value, length)
                : CClotoideContinuita::ComputeAFromR1R2Len(1.0, rs.value, re.value, length);
        if (hasConstant && !AcceptSpiralConstant(spiral, A, constant)) {
            if (refusal) *refusal = TPlanRefusal::SPIRAL_CONSTANT;
            return false;
        }
    } else if (hasConstant) {
        A = std::fabs(constant);
    } else {
        if (refusal) *refusal = TPlanRefusal::SPIRAL_WITHOUT_LENGTH;
        return false;
    }

    // Points mode: toward the PI, else on from the element before; the
    // stated dirStart only for a first spiral without a PI.
    const bool points = geometry == roadx::landxml::EPlanGeometry::Points;
    if (!points || (!SpiralDirFromPoints(spiral, isMetric, dir) && !IsDefinedDir(dir)))
        ReadDirection(spiral, "dirStart", directionUnit, dir);
    const vesk::geom::VECTOR_2D startDir = dir;
    const vesk::geom::PNT_2D start = ReadPlanPoint(spiral, "Start", isMetric);
    if (rs.infinite || re.infinite)
        builder.AddRoadClot(startProg, start, startDir, 1.0, A, rs.infinite ? re.value : rs.value, ccw, rs.infinite);
    else
        builder.AddRoadClotCont(startProg, start, startDir, 1.0, A, rs.value, re.value, ccw);

    // Points mode ends in the spiral's own end tangent, not the stated dirEnd.
    const bool endDirGiven = !points && ReadDirection(spiral, "dirEnd", directionUnit, dir);
    if (!endDirGiven || !vesk::IsDefined(length)) {
        const vesk::RefPtr<CPlaniElem> elem(MakeSpiralElem(startProg, start, startDir, A, rs, re, ccw));
        if (!vesk::IsDefined(length)) length = elem->GetLength();
        if (!endDirGiven) elem->GetTg(points ? elem->GetLength() : length, dir);
    }
    prog += length;
    return true;
}
