// CDisRoad: every road in its drawing: the true axis (straights as lines,
// circular curves as arcs, clothoids as polylines within half a millimetre
// of the curve), a tick across the axis every 20 m of chainage, a longer
// one every 100 m and at both ends, each long tick labelled with its
// chainage ("1+250.00") on the left of the axis.
#pragma once
#include "display/dis_common.h"

class CRoad;
class CPlaniElem;

class CDisRoad : public roadx::display::CDisBase {
public:
    static constexpr double kTickStep = 20.0;
    static constexpr int kLabelEvery = 5;  // ticks: every 100 m
    static constexpr double kTickHalf = 1.0;
    static constexpr double kLongTickHalf = 2.5;
    static constexpr double kTextHeight = 2.0;

    CDisRoad(CZedraEng* eng, IVantriDati* doc);
    // Draws every road afresh (a road without elements is left out).
    void AddAllRoads();
    void DelAllRoads() { AnnullaTutto(); }

private:
    void AddRoad(CRoad& road, int index);
    void AddTick(DrawingHandle d, const std::vector<CPlaniElem*>& elems, double prog, bool labelled);
};
