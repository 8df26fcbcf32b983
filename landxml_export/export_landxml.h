// LandXML export: writes the user's selection from the open document as one
// LandXML 1.0 file. The selection comes from the host's export dialog, the
// file name from a save dialog.
//
// Sections stand in a fixed order: Project, Units, Application, Alignments,
// the Survey of every total-station job, the Survey of every GPS group, every
// CgPoints, Surfaces. Numbers are written as "%f" ("%.9f" for latitudes and
// longitudes, "%d" for counters), coordinates northing first.
#pragma once
#include <string>
#include <vector>

#include "exchange/common/status.h"
#include "vesk/diagnostics.h"
#include "vesk/out_buffer.h"

class IVantriDati;
class CRoad;
class CLibCmp;
class CJob;
class CLibGps;
class CGrpGps;
class CLibPnt;
class CGrpPnt;
class CDtmPrj;

namespace roadx::landxml {

// ExportLandXML (dialogs, then the file) saying how it ended: CANCELLED when
// a dialog was not confirmed, WRITE_FAILED (with the system's reason) when
// the file could not be created or written in full.
// With a sink, what the file cannot carry of the chosen roads is reported to
// it (as `file`) once the dialogs are answered; with `refuse` too, nothing is
// written when anything was reported (BAD_INPUT).
TExchangeStatus ExportLandXMLStatus(IVantriDati& doc, vesk::diag::CSink* sink = nullptr, const std::string& file = "",
                                    bool refuse = false);

// WriteLandXMLFile (below) saying how it ended: OK, or WRITE_FAILED with the
// system's reason.
TExchangeStatus WriteLandXMLFileStatus(std::vector<CRoad*> roads, CLibCmp& cmp, std::vector<CJob*> jobs,
                                       CLibGps& gps, std::vector<CGrpGps*> gpsGroups, CLibPnt& pnt,
                                       std::vector<CGrpPnt*> pointGroups, std::vector<CDtmPrj*> dtmPrjs,
                                       const char* path);

}  // namespace roadx::landxml

// Writes the selected objects, each list in its order, to `path`.
void WriteLandXMLFile(std::vector<CRoad*> roads, CLibCmp& cmp, std::vector<CJob*> jobs, CLibGps& gps,
                      std::vector<CGrpGps*> gpsGroups, CLibPnt& pnt, std::vector<CGrpPnt*> pointGroups,
                      std::vector<CDtmPrj*> dtmPrjs, const char* path);

// The fixed lines before the sections: declaration, root start tag, Project
// (named by the full path), Units, Application.
void WriteLandXMLHeader(vesk::COutBuffer& out, const char* path);
