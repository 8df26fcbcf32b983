// Target drawings during a drawing export: every holder (library, job,
// group, theme, DTM project, road) draws into a drawing of the document's
// engine; for the export each is pointed at the export engine's drawing
// that stands for it, and put back afterwards.
#pragma once
#include <cstdint>
#include <vector>

#include "host/target_drawing.h"

class IVantriDati;
class CZedraEng;

namespace roadx::dxfdwg {

// The export engine's drawing that stands for source drawing src (a drawing
// of the same engine: it is a copy of the document's). Candidate names are
// "Grafica", "Grafica_<name>", "Grafica_<name>2", "Grafica_<name>3"...; the
// first that does not exist is added with the source's visible and locked
// flags and colour, and the first that exists with the same locked, visible,
// colour-flag and colour as the source is taken. 0 for a 0 handle or one
// the engine does not know.
DrawingHandle FindOrAddExportDrawing(CZedraEng* eng, DrawingHandle src);

struct TSavedTarget {
    enum Kind { LIB_CMP, LIB_GPS, CTS, LIB_PNT, LIB_GIS, LIB_PROFILE, JOB, GRP_GPS, GRP_PNT, THEME, DTM_PRJ, ROAD };
    Kind kind;
    int index;                   // within its library (0 for the libraries)
    DrawingHandle saved = 0;     // before the export
    DrawingHandle exported = 0;  // given for the export
    bool referenced = false;     // AddDrawingRef was called on `exported`
};

// In order: the six libraries (CLibCmp, CLibGps, CCts, CLibPnt,
// gis::CLibGis, CLibProfile), then every job, GPS group, point group, GIS
// theme, DTM project and road, each in its library's order.
using CSavedTargets = std::vector<TSavedTarget>;

// Fills `saved` with every holder and its current drawing.
void SaveTargetDrawings(IVantriDati* doc, CSavedTargets& saved);
// Points every holder at FindOrAddExportDrawing of its drawing; a holder
// whose drawing has no counterpart (0 or unknown) gets the export engine's
// "Grafica" drawing, so that what it draws still lands in the file on the
// engine's own layer. Drawings given to DTM projects and roads are
// referenced.
void SetExportTargetDrawings(IVantriDati* doc, CZedraEng* eng, CSavedTargets& saved);
// Releases the references taken above and puts every saved drawing back.
void RestoreTargetDrawings(IVantriDati* doc, CZedraEng* eng, const CSavedTargets& saved);

}  // namespace roadx::dxfdwg
