// CDisLibPnt: the points of every point group, as POINT entities in the
// group's drawing (their labels are CDisPtNome's).
#pragma once
#include "display/dis_common.h"

class CDisLibPnt : public roadx::display::CDisBase {
public:
    CDisLibPnt(CZedraEng* eng, IVantriDati* doc);
    // Draws everything afresh (what this object drew before is removed).
    // b3D: points at their elevations (else at 0); visibleOnly: groups whose
    // drawing is hidden are left out.
    void CreaTutto(bool b3D, bool visibleOnly);
};
