// The report's view of one road: what the plan, the long profile and the
// section charts draw, gathered once from the document.
#pragma once
#include <string>
#include <vector>

#include "host/ground_profile.h"
#include "vesk/geom.h"

class CRoad;
class CDtmPrj;
class CLibProfile;

namespace roadx::report {

struct TElemView {
    std::string kind;  // line, arc, clothoid, continuity_clothoid
    double startProg = 0.0, endProg = 0.0;
    vesk::geom::PNT_2D start, end;
    std::vector<vesk::geom::PNT_2D> pts;  // within 1 mm of the curve
};

struct TPvi {
    double prog = 0.0, z = 0.0;
    bool curve = false;
    double curveStart = 0.0, curveEnd = 0.0;
};

struct TLineView {
    std::string code;
    bool terrain = false;
    std::vector<std::vector<vesk::geom::PNT_2D>> runs;  // (offset, z), split at undefined vertices
};

struct TSectionView {
    std::string name;
    double prog = 0.0;
    std::vector<TLineView> lines;
    std::vector<TGroundVrt> dtm;  // the surface across the trace (empty: none)
};

struct TRoadView {
    std::string name;
    double startProg = 0.0, endProg = 0.0;
    std::vector<TElemView> elems;
    std::vector<double> axis;             // x, y, chainage triples
    std::vector<TPvi> pvis;
    std::vector<vesk::geom::PNT_2D> design;  // (chainage, z)
    std::vector<TGroundVrt> ground;       // undefined z starts a gap
    std::vector<TSectionView> sections;
};

TRoadView MakeRoadView(CRoad& road, CLibProfile* lib, const CDtmPrj* fallbackTerrain);
const char* ElemKindName(int type);

}  // namespace roadx::report
