// The section writers of the LandXML export. Each takes the open output
// first, writes its elements at their fixed indentation and returns nothing;
// the host document is only read.
#pragma once
#include "vesk/geom.h"
#include "vesk/out_buffer.h"
#include "vesk/string.h"

class CRoad;
class CPlaniElem;
class CProfile;
class CProfileAlti;
class CDtmPrj;
class CLibPnt;
class CGrpPnt;
class CLibGps;
class CGrpGps;
class CLibCmp;
class CJob;

// Direction of a vector in decimal degrees counter-clockwise from +X, in
// [0, 360).
double CalcDirDeg(const vesk::geom::VECTOR_2D& v);

// Alignments.
void WriteLandXMLAlignment(vesk::COutBuffer& out, CRoad* road);
void WriteLandXMLAlignmentHead(vesk::COutBuffer& out, CRoad* road, const vesk::String& name);
void WriteLandXMLCoordGeom(vesk::COutBuffer& out, CRoad* road, const vesk::String& name);
void WriteLandXMLLine(vesk::COutBuffer& out, const CPlaniElem* elem);
void WriteLandXMLCurve(vesk::COutBuffer& out, const CPlaniElem* elem);
void WriteLandXMLSpiral(vesk::COutBuffer& out, const CPlaniElem* elem);
void WriteLandXMLProfile(vesk::COutBuffer& out, CProfileAlti* prj, const vesk::String& name);
void WriteLandXMLCrossSects(vesk::COutBuffer& out, CProfile* roadProfile);
void WriteLandXMLCrossSect(vesk::COutBuffer& out, CProfile* section);
void WriteLandXMLCrossSectLine(vesk::COutBuffer& out, CProfileAlti* line);

// Surfaces.
void WriteLandXMLSurface(vesk::COutBuffer& out, const CDtmPrj* prj);

// Points and surveys.
void WriteLandXMLCgPoints(vesk::COutBuffer& out, CLibPnt* lib, CGrpPnt* grp);
void WriteLandXMLGpsSurvey(vesk::COutBuffer& out, CLibGps* lib, CGrpGps* grp);
void WriteLandXMLStationSurvey(vesk::COutBuffer& out, CLibCmp* lib, CJob* job);
