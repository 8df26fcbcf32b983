// The LandXML file: header, the sections in their fixed order, the closing
// tag. Write failures are noticed by the buffered writer and reported with
// the system's reason; the document is only read.
#include <cerrno>
#include <cstdio>
#include <string>

#include "landxml_export/export_landxml.h"
#include "landxml_export/landxml_writers.h"
#include "landxml_export/xml_out.h"
#include "vesk/atomic_file.h"

namespace {

void WriteBody(vesk::COutBuffer& out, const std::vector<CRoad*>& roads, CLibCmp& cmp, const std::vector<CJob*>& jobs,
               CLibGps& gps, const std::vector<CGrpGps*>& gpsGroups, CLibPnt& pnt,
               const std::vector<CGrpPnt*>& pointGroups, const std::vector<CDtmPrj*>& dtmPrjs, const char* path) {
    WriteLandXMLHeader(out, path);
    if (!roads.empty()) out.Str("\t<Alignments>\n");
    for (CRoad* r : roads) WriteLandXMLAlignment(out, r);
    if (!roads.empty()) out.Str("\t</Alignments>\n");
    for (CJob* j : jobs) WriteLandXMLStationSurvey(out, &cmp, j);
    for (CGrpGps* g : gpsGroups) WriteLandXMLGpsSurvey(out, &gps, g);
    for (CGrpPnt* g : pointGroups) WriteLandXMLCgPoints(out, &pnt, g);
    if (!dtmPrjs.empty()) out.Str("\t<Surfaces>\n");
    for (CDtmPrj* p : dtmPrjs) WriteLandXMLSurface(out, p);
    if (!dtmPrjs.empty()) out.Str("\t</Surfaces>\n");
    out.Str("</LandXML>\n");
}

}  // namespace

void WriteLandXMLHeader(vesk::COutBuffer& out, const char* path) {
    // The date and time are fixed: the same selection always gives the same
    // bytes.
    out.Str("<?xml version=\"1.0\" ?>\n"
            "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.0\""
            " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xsi:schemaLocation=\"http://www.landxml.org/schema/LandXML-1.0"
            " http://www.landxml.org/schema/LandXML-1.0/LandXML-1.0.xsd\""
            " version=\"1.0\" date=\"2009-10-27\" time=\"09:30:22\" readOnly=\"false\" language=\"English\">\n"
            "\t<Project name=\"");
    roadx::landxml::PutText(out, path ? path : "");
    out.Str("\"/>\n"
            "\t<Units>\n"
            "\t\t<Metric linearUnit=\"meter\" areaUnit=\"squareMeter\" volumeUnit=\"cubicMeter\""
            " temperatureUnit=\"celsius\" pressureUnit=\"mmHG\" angularUnit=\"radians\""
            " directionUnit=\"decimal degrees\"/>\n"
            "\t</Units>\n"
            "\t<Application name=\"");
    roadx::landxml::PutText(out, vesk::GetPrgName());
    out.Str("\" manufacturer=\"Korvel\" version=\"2012\" manufacturerURL=\"www.korvel.it\"/>\n");
}

void WriteLandXMLFile(std::vector<CRoad*> roads, CLibCmp& cmp, std::vector<CJob*> jobs, CLibGps& gps,
                      std::vector<CGrpGps*> gpsGroups, CLibPnt& pnt, std::vector<CGrpPnt*> pointGroups,
                      std::vector<CDtmPrj*> dtmPrjs, const char* path) {
    (void)roadx::landxml::WriteLandXMLFileStatus(std::move(roads), cmp, std::move(jobs), gps, std::move(gpsGroups),
                                                 pnt, std::move(pointGroups), std::move(dtmPrjs), path);
}

TExchangeStatus roadx::landxml::WriteLandXMLFileStatus(std::vector<CRoad*> roads, CLibCmp& cmp,
                                                      std::vector<CJob*> jobs, CLibGps& gps,
                                                      std::vector<CGrpGps*> gpsGroups, CLibPnt& pnt,
                                                      std::vector<CGrpPnt*> pointGroups,
                                                      std::vector<CDtmPrj*> dtmPrjs, const char* path) {
    if (!path || !*path)
        return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, "cannot create: no file name");
    // The bytes go to a temporary beside the target, renamed over it only
    // when all of them were written: a failed export leaves an older file
    // of that name as it was.
    vesk::CAtomicFile file;
    if (!file.Open(path)) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, file.Error());
    {
        vesk::COutBuffer out(file.Stream());
        WriteBody(out, roads, cmp, jobs, gps, gpsGroups, pnt, pointGroups, dtmPrjs, path);
        // A failed write leaves errno as the system set it: nothing after it
        // touches the file.
        if (!out.Flush()) file.SetWriteError(errno ? errno : EIO);
    }
    if (!file.Commit()) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, file.Error());
    return TExchangeStatus::Ok();
}
