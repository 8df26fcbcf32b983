// Point groups as CgPoints, GPS groups and total-station jobs as Survey
// elements, each directly under the root.
#include "host/survey.h"
#include "landxml_export/landxml_writers.h"
#include "landxml_export/xml_out.h"
#include "vesk/undefined.h"

using roadx::landxml::PutText;
using roadx::landxml::PutYXZ;

namespace {

double RadToDeg(double rad) { return rad * 180.0 / 3.141592653589793; }

bool HasCoords(const CEgn& e) {
    return vesk::IsDefined(e.GetCoordX()) && vesk::IsDefined(e.GetCoordY()) && vesk::IsDefined(e.GetCoordZ());
}

void PutCoords(vesk::COutBuffer& out, const CEgn& e) { PutYXZ(out, e.GetCoordX(), e.GetCoordY(), e.GetCoordZ()); }

// '<Tag name="..." desc="...">Y X Z</Tag>' on one line, after the indent.
void PutNamedPoint(vesk::COutBuffer& out, std::string_view indentAndTag, std::string_view close, const CEgn& e) {
    out.Str(indentAndTag);
    out.Str(" name=\"");
    PutText(out, e.GetNome());
    out.Str("\" desc=\"");
    PutText(out, e.GetSecScri());
    out.Str("\">");
    PutCoords(out, e);
    out.Str(close);
}

const char* GpsSolnType(int q) {
    switch (q) {
        case 2: case 6: return "Code";
        case 3: case 7: return "Float";
        case 4: case 8: return "Fixed";
        default: return "Unknown";
    }
}

}  // namespace

void WriteLandXMLCgPoints(vesk::COutBuffer& out, CLibPnt* lib, CGrpPnt* grp) {
    int g = -1;
    if (!lib || !grp || !lib->GetIndiciDiGrp(grp, g)) return;
    vesk::String name, l2, l3, l4;
    grp->GetLabels(name, l2, l3, l4);
    out.Str("\t<CgPoints name=\"");
    PutText(out, name);
    out.Str("\">\n");
    const int n = lib->GetPtnArSize(g);
    for (int i = 0; i < n; ++i) {
        const CPunPnt* p = lib->GetPtnAt(g, i);
        if (!p) continue;
        // Every point goes out, an undefined coordinate as the number it is.
        out.Str("\t\t<CgPoint name=\"");
        PutText(out, p->GetNome());
        out.Str("\">");
        PutCoords(out, *p);
        out.Str("</CgPoint>\n");
    }
    out.Str("\t</CgPoints>\n");
}

namespace {

void WriteGpsBase(vesk::COutBuffer& out, const CGrpGps& grp) {
    const vesk::String& base = grp.GetNome();
    const double lat = RadToDeg(grp.GetBaseLat());
    const double lon = RadToDeg(grp.GetBaseLong());
    out.Str("\t\t<SurveyHeader name=\"");
    PutText(out, grp.GetNomeGrp());
    out.Str("\" />\n\t\t<Equipment>\n\t\t\t<GPSAntennaDetails id=\"");
    PutText(out, base);
    out.Str("\" latitude=\"");
    out.F9(lat);
    out.Str("\" longitude=\"");
    out.F9(lon);
    out.Str("\" altitude=\"");
    out.F6(grp.GetBaseElev());
    out.Str("\" />\n\t\t</Equipment>\n");
    // The set-up's id and its station name are both the base's name.
    out.Str("\t\t<GPSSetup id=\"");
    PutText(out, base);
    out.Str("\" antennaHeight=\"");
    out.F6(grp.GetBaseAltAnt());
    out.Str("\" stationName=\"");
    PutText(out, base);
    out.Str("\" >\n\t\t\t<GPSPosition wgsHeight=\"");
    out.F6(grp.GetBaseElev());
    out.Str("\" wgsLatitude=\"");
    out.F9(lat);
    out.Str("\" wgsLongitude=\"");
    out.F9(lon);
    out.Str("\">\n\t\t\t\t<TargetPoint>");
    PutCoords(out, grp);
    out.Str("</TargetPoint>\n\t\t\t</GPSPosition>\n\t\t</GPSSetup>\n");
}

void WriteGpsPosition(vesk::COutBuffer& out, const vesk::String& base, const CPunGps& p) {
    out.Str("\t\t<GPSPosition setupID=\"");
    PutText(out, base);
    out.Str("\" wgsHeight=\"");
    out.F6(p.GetElev());
    out.Str("\" wgsLatitude=\"");
    out.F9(RadToDeg(p.GetLat()));
    out.Str("\" wgsLongitude=\"");
    out.F9(RadToDeg(p.GetLong()));
    out.Str("\">\n");
    PutNamedPoint(out, "\t\t\t<TargetPoint", "</TargetPoint>\n", p);
    out.Str("\t\t\t<GPSQCInfoLevel2 GPSSolnType=\"");
    out.Str(GpsSolnType(p.GetQua()));
    const float cov[6] = {p.GetPosCov_xx(), p.GetPosCov_xy(), p.GetPosCov_xz(),
                          p.GetPosCov_yy(), p.GetPosCov_yz(), p.GetPosCov_zz()};
    static const char* const kCovNames[6] = {"\" covarianceXX=\"", "\" covarianceXY=\"", "\" covarianceXZ=\"",
                                             "\" covarianceYY=\"", "\" covarianceYZ=\"", "\" covarianceZZ=\""};
    for (int k = 0; k < 6; ++k) {
        out.Str(kCovNames[k]);
        out.F6(static_cast<double>(cov[k]));
    }
    // GLONASS and GPS satellites together.
    out.Str("\" nbrSatellites=\"");
    out.I(static_cast<int>(p.GetNuGloUsed()) + static_cast<int>(p.GetNuGpsUsed()));
    out.Str("\" />\n\t\t</GPSPosition>\n");
}

}  // namespace

void WriteLandXMLGpsSurvey(vesk::COutBuffer& out, CLibGps* lib, CGrpGps* grp) {
    // A group its library does not know has no points to list: it is skipped.
    int g = -1;
    if (!lib || !grp || !lib->GetIndiciDiGrp(grp, g)) return;
    out.Str("\t<Survey>\n");
    WriteGpsBase(out, *grp);
    const vesk::String& base = grp->GetNome();
    const int n = lib->GetPunArSize(g);
    for (int i = 0; i < n; ++i)
        if (const CPunGps* p = lib->GetPunAt(g, i)) WriteGpsPosition(out, base, *p);
    out.Str("\t</Survey>\n");
}

namespace {

// The observation's setupID carries its own index within the station, not
// the station's: that is the required output.
void WriteRawObservation(vesk::COutBuffer& out, int index, const CPun& p) {
    out.Str("\t\t\t<RawObservation setupID=\"Setup");
    out.I(index);
    out.Str("\" ");
    const struct {
        const char* attr;
        double v;
    } values[4] = {{"targetHeight=\"", p.GetAltPri()},
                   {"horizAngle=\"", p.GetDato2()},
                   {"slopeDistance=\"", p.GetDato0()},
                   {"zenithAngle=\"", p.GetDato1()}};
    for (const auto& a : values) {
        if (!vesk::IsDefined(a.v)) continue;
        out.Str(a.attr);
        out.F6(a.v);
        out.Str("\" ");
    }
    out.Str(">\n");
    if (HasCoords(p)) PutNamedPoint(out, "\t\t\t\t<TargetPoint", "</TargetPoint>\n", p);
    out.Str("\t\t\t</RawObservation>\n");
}

void WriteInstrumentSetup(vesk::COutBuffer& out, const CLibCmp& lib, int index, const CSta& sta) {
    out.Str("\t\t<InstrumentSetup id=\"Setup");
    out.I(index);
    out.Str("\" stationName=\"");
    PutText(out, sta.GetNome());
    out.Str("\" instrumentHeight=\"");
    out.F6(sta.GetAltStr());
    out.Str("\">\n");
    if (HasCoords(sta)) PutNamedPoint(out, "\t\t\t<InstrumentPoint", "</InstrumentPoint>\n", sta);
    int j = -1, s = -1;
    if (lib.GetIndiciDiSta(&sta, j, s)) {
        const int n = lib.GetPunArSize(j, s);
        for (int p = 0; p < n; ++p)
            if (const CPun* pun = lib.GetPunAt(j, s, p)) WriteRawObservation(out, p, *pun);
    }
    out.Str("\t\t</InstrumentSetup>\n");
}

}  // namespace

void WriteLandXMLStationSurvey(vesk::COutBuffer& out, CLibCmp* lib, CJob* job) {
    // A job its library does not know has no stations to list: it is skipped.
    int j = -1;
    if (!lib || !job || !lib->GetIndiciDiJob(job, j)) return;
    out.Str("\t<Survey desc=\"");
    PutText(out, job->GetNome());
    out.Str("\">\n\t\t<SurveyHeader name=\"");
    PutText(out, job->GetNome());
    out.Str("\" />\n");
    const int n = lib->GetStaArSize(j);
    for (int s = 0; s < n; ++s)
        if (const CSta* sta = lib->GetStaAt(j, s)) WriteInstrumentSetup(out, *lib, s, *sta);
    out.Str("\t</Survey>\n");
}
