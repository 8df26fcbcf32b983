// The element readers that the LandXML import driver calls, in this order:
// instrument surveys, GPS surveys and coordinate points (when the user chose
// points), surfaces, then per imported alignment its plan geometry
// (plan_geometry.h), its vertical profile and its cross sections.
//
// All read from the same loaded file and feed the same builder. A reader that
// meets a rule which ends the whole import throws CLandXmlImportEnded
// (import_ended.h); the driver keeps what was added before and reports it.
#pragma once
#include <set>
#include <utility>
#include <vector>

#include "host/load_vantri_dati.h"
#include "landxml_import/import_ended.h"
#include "landxml_import/xml_reader.h"
#include "vesk/string.h"

class CRoad;
class CDtmPrj;

// Names of the coordinate points that surveys referenced through "pntRef";
// those points are imported with their survey and left out of the point
// groups. Made empty by the driver before the survey readers run.
using PointTable = std::set<vesk::String>;

// Surface name of a CrossSectSurf -> the host section code it is stored
// under (an empty code: not imported).
using CrossSectCodes = std::vector<std::pair<CString, vesk::String>>;

// Survey/InstrumentSetup of every Survey of the root: jobs, stations,
// observations.
void ImportInstrumentSurveys(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced);
// Survey/GPSSetup and the Survey's GPSPosition rovers: GPS groups and points.
void ImportGpsSurveys(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced);
// CgPoints of the root and of every Survey: point groups, skipping the points
// in `referenced`.
void ImportCgPoints(const XmlSection& root, CLoadVantriDati& builder, bool isMetric, PointTable& referenced);

// Surfaces/Surface whose name is in `surfaces`: one DTM project each.
// `terrain` is set to the project of the surface named `terrainName` (left
// as it is when none matches). With `scan` (the loader's surface scan) the
// scanned Pnts and Faces are read from the buffer; the calls are the same.
void ImportSurfaces(const XmlSection& root, CLoadVantriDati& builder, std::vector<CString> surfaces,
                    CString terrainName, bool isMetric, CDtmPrj*& terrain, const CSurfaceScan* scan = nullptr);

// Profile/ProfAlign of one Alignment, between the driver's StartRoadAlti and
// EndRoadAlti. False (or CLandXmlImportEnded) ends the import.
bool ImportProfiles(const XmlSection& alignment, CLoadVantriDati& builder, bool isMetric);

// CrossSects/CrossSect of one Alignment onto `road`, with its recalculation
// blocked by the driver. False (or CLandXmlImportEnded) ends the import.
bool ImportCrossSects(const XmlSection& alignment, CLoadVantriDati& builder, CRoad* road, const CrossSectCodes& codes,
                      bool isMetric);
