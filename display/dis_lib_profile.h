// CDisLibProfile: the profiles of every road, in 3D, in the drawing of the
// profile library: the grade line (the main project line) and the terrain
// line carried along the axis at their elevations, and every line of every
// cross section laid across the axis at its chainage (offsets to the right
// are positive). Runs of undefined vertices break the lines.
#pragma once
#include "display/dis_common.h"

class CRoad;

class CDisLibProfile : public roadx::display::CDisBase {
public:
    // Sampling step of the grade line along the axis, metres.
    static constexpr double kGradeStep = 1.0;

    CDisLibProfile(CZedraEng* eng, IVantriDati* doc);
    // Draws every road's profiles afresh.
    void AddAllProfiles();
    void DelAllProfiles() { AnnullaTutto(); }

private:
    void AddRoadProfiles(CRoad& road, DrawingHandle& d);
};
