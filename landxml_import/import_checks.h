// Checks of a LandXML file for what the import leaves out or reads
// differently from what the file means, reported through the import's
// diagnostics (import_diag.h). They read the file only; the builder calls
// stay the same.
#pragma once
#include "host/ui.h"
#include "landxml_import/xml_reader.h"

class CRoad;

// Units the import does not read as written: an international "foot" read
// as the US survey foot, unit names that are not recognised.
void CheckUnits(const XmlSection& root);
// Elements that hold data the import does not read at all: observations
// inside ObservationGroup, CgPoints nested in CgPoints, DesignCrossSectSurf,
// alignments given only by AlignPIs, surfaces or alignments not chosen.
void CheckNotRead(const XmlSection& root, const TImportLandXMLResult& choices);
// Plan elements read with a default for a point or value they lack, and
// CoordGeom children that are not read.
void CheckPlanElement(const XmlSection& element);
void CheckCoordGeomChildren(const XmlSection& coordGeom);
// The road as imported: a station start that the elements do not follow.
void CheckRoadStations(const XmlSection& alignment, const CRoad* road);
