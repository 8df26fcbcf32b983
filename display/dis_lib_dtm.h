// CDisLibDtm: every DTM project in its drawing: each triangle as a 3D face,
// the outer and inner boundaries as closed 3D polylines and the breaklines
// as 3D polylines (consecutive segments that meet end to start are joined).
// A triangle with an undefined or missing vertex is not drawn.
#pragma once
#include "display/dis_common.h"

class CDtmPrj;

class CDisLibDtm : public roadx::display::CDisBase {
public:
    CDisLibDtm(CZedraEng* eng, IVantriDati* doc);
    // Draws every project afresh; visibleOnly: projects whose drawing is
    // hidden are left out.
    void AddAllDtm(bool visibleOnly);
    // Removes what AddAllDtm drew.
    void DelAllDtm() { AnnullaTutto(); }
    // The drawing a project is drawn into (0: none yet).
    DrawingHandle GetTargetDrawingOfPrj(const CDtmPrj* prj) const;
    void SetTargetDrawingOfPrj(CDtmPrj* prj, DrawingHandle h);

private:
    void AddDtm(CDtmPrj& prj, int index, bool visibleOnly);
};

namespace roadx::display {
// Breakline segments joined into polylines: a segment whose start equals
// the previous one's end (exactly) continues it.
std::vector<std::vector<vesk::geom::PNT_3D>> ChainSegments(const std::vector<vesk::geom::LINE_3D>& segs);
}  // namespace roadx::display
