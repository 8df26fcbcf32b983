// One road as a LandXML Alignment: head and start point, the plan chain as
// CoordGeom, then the design profile and the cross sections.
#include <cmath>
#include <vector>

#include "host/road.h"
#include "landxml_export/landxml_writers.h"
#include "landxml_export/xml_out.h"

using roadx::landxml::PutText;
using roadx::landxml::PutYX;

double CalcDirDeg(const vesk::geom::VECTOR_2D& v) {
    double deg = std::atan2(v.y, v.x) * 57.29577951308233;
    while (deg < 0.0) deg += 360.0;
    // A tiny negative angle becomes exactly 360 above; the range stays [0, 360).
    while (deg >= 360.0) deg -= 360.0;
    // A tangent of (1, -0) points along +X: 0, not "-0.000000".
    if (deg == 0.0) deg = 0.0;
    return deg;
}

void WriteLandXMLAlignment(vesk::COutBuffer& out, CRoad* road) {
    if (!road) return;
    const vesk::String name = road->GetName();
    WriteLandXMLAlignmentHead(out, road, name);
    if (!road->IsEmpty()) WriteLandXMLCoordGeom(out, road, name);
    CProfile* profile = road->GetRoadProfile();
    CProfileAlti* prj = profile ? profile->GetMainPrjAlti() : nullptr;
    if (prj && !prj->IsEmpty()) WriteLandXMLProfile(out, prj, name);
    if (profile && profile->IsSectionPresent()) WriteLandXMLCrossSects(out, profile);
    out.Str("\t\t</Alignment>\n");
}

void WriteLandXMLAlignmentHead(vesk::COutBuffer& out, CRoad* road, const vesk::String& name) {
    const double start = road->GetStartProg();
    const double end = road->GetEndProg();
    out.Str("\t\t<Alignment name=\"");
    PutText(out, name);
    out.Str("\" length=\"");
    out.F6(end - start);
    out.Str("\" staStart=\"");
    out.F6(start);
    out.Str("\" state=\"existing\">\n");

    // A road without elements has no start point of its own: it starts at 0 0.
    const CRoadPlaniElem* first = road->GetFirstRoadPlaniElem();
    const vesk::geom::PNT_2D p = first && first->GetElem() ? first->GetElem()->GetStartPnt() : vesk::geom::PNT_2D();
    // The design line's elevation at the start, whether or not the line
    // reaches that far (an undefined elevation is written as it is).
    double z = 0.0;
    CProfile* profile = road->GetRoadProfile();
    if (const CProfileAlti* prj = profile ? profile->GetMainPrjAlti() : nullptr) {
        bool ok = false;
        z = CalcQuoteAtAltiProg(prj, start, ok);
    }
    out.Str("\t\t\t<Start name=\"Start_");
    PutText(out, name);
    out.Str("\" state=\"existing\">");
    roadx::landxml::PutYXZ(out, p.x, p.y, z);
    out.Str("</Start>\n");
}

void WriteLandXMLCoordGeom(vesk::COutBuffer& out, CRoad* road, const vesk::String& name) {
    out.Str("\t\t\t<CoordGeom name=\"CoordGeom_");
    PutText(out, name);
    out.Str("\" state=\"existing\">\n");
    for (const CPlaniElem* e : road->RetrieveLinkedPlaniElems()) {
        if (!e) continue;
        // Continuity clothoids (and any other kind) have no LandXML form here.
        switch (e->GetType()) {
            case CPlaniElem::RETTIFILO: WriteLandXMLLine(out, e); break;
            case CPlaniElem::ARCO: WriteLandXMLCurve(out, e); break;
            case CPlaniElem::CLOTOIDE: WriteLandXMLSpiral(out, e); break;
            default: break;
        }
    }
    out.Str("\t\t\t</CoordGeom>\n");
}

void WriteLandXMLLine(vesk::COutBuffer& out, const CPlaniElem* e) {
    out.Str("\t\t\t\t<Line length=\"");
    out.F6(e->GetLength());
    out.Str("\" dir=\"");
    out.F6(CalcDirDeg(e->GetStartTg()));
    out.Str("\" staStart=\"");
    out.F6(e->GetProg());
    out.Str("\">\n\t\t\t\t\t<Start>");
    PutYX(out, e->GetStartPnt());
    out.Str("</Start>\n\t\t\t\t\t<End>");
    PutYX(out, e->GetEndPnt());
    out.Str("</End>\n\t\t\t\t</Line>\n");
}

namespace {

// Where the start and end tangent lines meet, in slope form. Vertical or
// parallel tangents are not guarded: the division gives infinities or NaN,
// written as they come.
vesk::geom::PNT_2D TangentsMeet(const vesk::geom::PNT_2D& s, const vesk::geom::VECTOR_2D& ts,
                                const vesk::geom::PNT_2D& e, const vesk::geom::VECTOR_2D& te) {
    const double m1 = ts.y / ts.x;
    const double b1 = s.y - m1 * s.x;
    const double m2 = te.y / te.x;
    const double b2 = e.y - m2 * e.x;
    const double x = (b2 - b1) / (m1 - m2);
    return {x, m1 * x + b1};
}

const char* Rot(const CPlaniElem* e) { return e->IsLeftTurn() ? "ccw" : "cw"; }

}  // namespace

void WriteLandXMLCurve(vesk::COutBuffer& out, const CPlaniElem* e) {
    const auto* arc = dynamic_cast<const CArcPlaniElem*>(e);
    if (!arc) return;
    const double s = e->IsLeftTurn() ? 1.0 : -1.0;
    const double len = e->GetLength();
    const double r = e->GetRad(0.0);
    const vesk::geom::VECTOR_2D t = e->GetStartTg();
    vesk::geom::VECTOR_2D te;
    e->GetTg(len, te);
    const vesk::geom::PNT_2D p0 = e->GetStartPnt();
    const vesk::geom::PNT_2D pe = e->GetEndPnt();

    out.Str("\t\t\t\t<Curve rot=\"");
    out.Str(Rot(e));
    out.Str("\" delta=\"");
    out.F6(arc->GetAngle());
    out.Str("\" dirEnd=\"");
    out.F6(CalcDirDeg(te));
    out.Str("\" dirStart=\"");
    out.F6(CalcDirDeg(t));
    out.Str("\" length=\"");
    out.F6(len);
    out.Str("\" radius=\"");
    out.F6(r);
    out.Str("\" staStart=\"");
    out.F6(e->GetProg());
    out.Str("\">\n\t\t\t\t\t<Start>");
    PutYX(out, p0);
    // The centre lies on the left normal for a left turn, on the right one
    // otherwise.
    out.Str("</Start>\n\t\t\t\t\t<Center>");
    PutYX(out, {p0.x - s * r * t.y, p0.y + s * r * t.x});
    out.Str("</Center>\n\t\t\t\t\t<End>");
    PutYX(out, pe);
    out.Str("</End>\n\t\t\t\t\t<PI>");
    PutYX(out, TangentsMeet(p0, t, pe, te));
    out.Str("</PI>\n\t\t\t\t</Curve>\n");
}

void WriteLandXMLSpiral(vesk::COutBuffer& out, const CPlaniElem* e) {
    const auto* clot = dynamic_cast<const CClotPlaniElem*>(e);
    if (!clot) return;
    const double len = e->GetLength();
    const double a = clot->GetClotoide().GetA();
    const vesk::geom::VECTOR_2D t = e->GetStartTg();
    vesk::geom::VECTOR_2D te;
    e->GetTg(len, te);
    const vesk::geom::PNT_2D p0 = e->GetStartPnt();
    const vesk::geom::PNT_2D pe = e->GetEndPnt();

    out.Str("\t\t\t\t<Spiral length=\"");
    out.F6(len);
    // The straight end of the clothoid has an infinite radius.
    if (clot->IsEntrance()) {
        out.Str("\" radiusEnd=\"");
        out.F6(e->GetRad(len));
        out.Str("\" radiusStart=\"INF");
    } else {
        out.Str("\" radiusEnd=\"INF\" radiusStart=\"");
        out.F6(e->GetRad(0.0));
    }
    out.Str("\" rot=\"");
    out.Str(Rot(e));
    // The clothoid constant goes out as minus A squared.
    out.Str("\" spiType=\"clothoid\" constant=\"");
    out.F6(-(a * a));
    out.Str("\" dirEnd=\"");
    out.F6(CalcDirDeg(te));
    out.Str("\" dirStart=\"");
    out.F6(CalcDirDeg(t));
    out.Str("\" staStart=\"");
    out.F6(e->GetProg());
    out.Str("\">\n\t\t\t\t\t<Start>");
    PutYX(out, p0);
    out.Str("</Start>\n\t\t\t\t\t<PI>");
    PutYX(out, TangentsMeet(p0, t, pe, te));
    out.Str("</PI>\n\t\t\t\t\t<End>");
    PutYX(out, pe);
    out.Str("</End>\n\t\t\t\t</Spiral>\n");
}
