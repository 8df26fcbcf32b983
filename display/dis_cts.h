// CDisCts: the contour lines of every DTM project at the document's contour
// interval (CCts), as 3D polylines in the contour drawing. Every fifth level
// is an index contour, labelled with its elevation at its middle.
#pragma once
#include "display/dis_common.h"

class CDisCts : public roadx::display::CDisBase {
public:
    CDisCts(CZedraEng* eng, IVantriDati* doc);
    // Draws everything afresh; nothing when contours are switched off.
    // b3D: lines at their elevations (else at 0); visibleOnly: nothing when
    // the contour drawing is hidden, and projects whose drawing is hidden
    // get no contours.
    void CreaTutto(bool b3D, bool visibleOnly);
    // Removes the contours drawn before.
    void DelTutto() { AnnullaTutto(); }
};
