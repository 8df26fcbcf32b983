// CDisLibGis: every GIS theme in its drawing: point features as points,
// polylines as 3D polylines and polygons as closed 3D polylines; the name of
// each theme at its first drawn vertex, in the drawing of the GIS library.
#pragma once
#include "display/dis_common.h"

class CDisLibGis : public roadx::display::CDisBase {
public:
    static constexpr double kTextHeight = 1.0;

    CDisLibGis(CZedraEng* eng, IVantriDati* doc);
    // Draws every theme afresh.
    void CreaTutto();
};
