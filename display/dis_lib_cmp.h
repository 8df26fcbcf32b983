// CDisLibCmp: every total-station job in its drawing: each station as a
// circle with its point, each observed point as a point, and a line from
// the station to each point it observed; names and elevations in the
// drawing of the total-station library.
#pragma once
#include "display/dis_common.h"

class CDisLibCmp : public roadx::display::CDisBase {
public:
    CDisLibCmp(CZedraEng* eng, IVantriDati* doc);
    // Draws everything afresh. b3D: at the elevations (else at 0);
    // visibleOnly: jobs whose drawing is hidden are left out.
    void CreaTutto(bool b3D, bool visibleOnly);
};
