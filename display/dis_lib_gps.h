// CDisLibGps: every GPS group in its drawing: the base station as a
// triangle with its point, the rovers as points and the base-rover vectors
// as lines; names and elevations in the drawing of the GPS library.
#pragma once
#include "display/dis_common.h"

class CDisLibGps : public roadx::display::CDisBase {
public:
    CDisLibGps(CZedraEng* eng, IVantriDati* doc);
    // Draws everything afresh. b3D: at the elevations (else at 0);
    // visibleOnly: groups whose drawing is hidden are left out.
    void CreaTutto(bool b3D, bool visibleOnly);
};
