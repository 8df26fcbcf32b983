// Total-station and GPS surveys. Coordinates are converted from feet in
// imperial files; heights, distances and angles are passed as the file
// writes them, and a quantity the file does not give travels as the
// undefined value.
#include "landxml_import/import_diag.h"
#include "landxml_import/point_sources.h"
#include "landxml_import/readers.h"

namespace {

constexpr double kUndefined = 1.7e200;
constexpr double kPi = 3.141592653589793;

// A value counts as given when it is below the undefined value's threshold.
bool IsGiven(double v) { return v < 8.5e199; }

// Decimal degrees to radians, multiplied before divided.
double DegToRad(double deg) { return deg * kPi / 180.0; }

// An attribute as a double, the undefined value when absent.
double Quantity(const XmlSection& elem, const char* name) {
    double v = kUndefined;
    PX_Double(elem, name, v);
    return v;
}

CString Text(const XmlSection& elem, const char* name) {
    CString s;
    PX_String(elem, name, s);
    return s;
}

void ImportObservation(const XmlSection& obs, const TPointSources& sources, CLoadVantriDati& builder, bool isMetric,
                       PointTable& referenced) {
    const double targetHeight = Quantity(obs, "targetHeight");
    const double horizAngle = Quantity(obs, "horizAngle");
    const double slopeDistance = Quantity(obs, "slopeDistance");
    const double zenithAngle = Quantity(obs, "zenithAngle");
    for (XmlSection target : obs.Children("TargetPoint")) {
        const CString name = Text(target, "name");
        const CString desc = Text(target, "desc");
        TNorthEastElev p;
        // A target whose position cannot be found drops the observation.
        if (!ResolvePoint(target, sources, isMetric, referenced, p)) {
            DiagReport("observation-target-not-found", target,
                       "RawObservation not imported (its TargetPoint has no coordinates and names no known point)");
            continue;
        }
        builder.AddPun(name, desc, p.east, p.north, p.elev, targetHeight, slopeDistance, zenithAngle, horizAngle);
    }
}

void ImportSetup(const XmlSection& setup, const TPointSources& sources, CLoadVantriDati& builder, bool isMetric,
                 PointTable& referenced) {
    builder.AddSta(Text(setup, "stationName"), Quantity(setup, "instrumentHeight"));
    if (const XmlSection station = setup.Child("InstrumentPoint")) {
        builder.SetStaDesc(Text(station, "desc"));
        TNorthEastElev p;
        if (ResolvePoint(station, sources, isMetric, referenced, p)) builder.SetStaCoords(p.east, p.north, p.elev);
    }
    for (XmlSection obs : setup.Children("RawObservation"))
        if (obs.IsSectionExists("TargetPoint"))
            ImportObservation(obs, sources, builder, isMetric, referenced);
        else
            DiagReport("observation-without-target", obs, "RawObservation not imported (it has no TargetPoint)");
}

// The base of a GPS group: its own position and the point it stands on.
void ImportGpsBase(const XmlSection& setup, const TPointSources& sources, CLoadVantriDati& builder, bool isMetric,
                   PointTable& referenced) {
    const XmlSection pos = setup.Child("GPSPosition");
    if (!pos) return;
    double height = 0.0, lat = 0.0, lon = 0.0;
    PX_Double(pos, "wgsHeight", height, kUndefined);
    PX_Double(pos, "wgsLatitude", lat, kUndefined);
    PX_Double(pos, "wgsLongitude", lon, kUndefined);
    if (IsGiven(lat) && IsGiven(lon)) builder.SetGrpLatLonElev(DegToRad(lat), DegToRad(lon), height);
    if (const XmlSection target = pos.Child("TargetPoint")) {
        TNorthEastElev p;
        if (ResolvePoint(target, sources, isMetric, referenced, p)) builder.SetGrpCoords(p.east, p.north, p.elev);
    }
}

// A rover position of the survey. Without a latitude or longitude it adds
// no point, and its target's name and coordinates go to the point added
// before it.
void ImportGpsRover(const XmlSection& pos, const TPointSources& sources, CLoadVantriDati& builder, bool isMetric,
                    PointTable& referenced) {
    double height = 0.0, lat = 0.0, lon = 0.0;
    PX_Double(pos, "wgsHeight", height, kUndefined);
    PX_Double(pos, "wgsLatitude", lat, kUndefined);
    PX_Double(pos, "wgsLongitude", lon, kUndefined);
    if (IsGiven(lat) && IsGiven(lon)) builder.AddGpsPnt(DegToRad(lat), DegToRad(lon), height);
    else
        DiagReport("gps-position-without-latlon", pos, "GPSPosition without wgsLatitude or wgsLongitude: no point added",
                   pos.IsSectionExists("TargetPoint") ? "its TargetPoint's name and coordinates go to the point before it"
                                                      : "");
    if (const XmlSection target = pos.Child("TargetPoint")) {
        builder.SetGpsPntName(Text(target, "name"), Text(target, "desc"));
        TNorthEastElev p;
        if (ResolvePoint(target, sources, isMetric, referenced, p)) builder.SetGpsPntCoords(p.east, p.north, p.elev);
    }
}

void ImportGpsSetup(const XmlSection& survey, const XmlSection& setup, const CString& headerName,
                    const TPointSources& sources, CLoadVantriDati& builder, bool isMetric, PointTable& referenced) {
    const CString id = Text(setup, "id");
    builder.AddGrpGps(headerName);
    builder.SetGrpStaName(Text(setup, "stationName"));
    double antennaHeight = 0.0;
    PX_Double(setup, "antennaHeight", antennaHeight, kUndefined);
    builder.SetGrpAntHeight(antennaHeight);
    ImportGpsBase(setup, sources, builder, isMetric, referenced);
    for (XmlSection pos : survey.Children("GPSPosition"))
        if (pos.Attribute("setupID") == id) ImportGpsRover(pos, sources, builder, isMetric, referenced);
}

}  // namespace

void ImportInstrumentSurveys(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced) {
    CCgPointIndex rootPoints(root);
    for (XmlSection survey : root.Children("Survey")) {
        if (!survey.IsSectionExists("InstrumentSetup")) continue;
        builder.AddJob(Text(survey, "desc"));
        CCgPointIndex surveyPoints(survey);
        const TPointSources sources{&rootPoints, &surveyPoints};
        for (XmlSection setup : survey.Children("InstrumentSetup"))
            ImportSetup(setup, sources, builder, isMetric, referenced);
    }
}

void ImportGpsSurveys(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced) {
    CCgPointIndex rootPoints(root);
    for (XmlSection survey : root.Children("Survey")) {
        const CString headerName = Text(survey.Child("SurveyHeader"), "name");
        CCgPointIndex surveyPoints(survey);
        const TPointSources sources{&rootPoints, &surveyPoints};
        for (XmlSection setup : survey.Children("GPSSetup"))
            ImportGpsSetup(survey, setup, headerName, sources, builder, isMetric, referenced);
    }
}
