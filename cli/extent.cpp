#include "cli/extent.h"

#include <algorithm>

#include "vesk/undefined.h"

namespace roadx::cli {

void CExtent::AddXY(double x, double y) {
    if (!vesk::IsDefined(x) || !vesk::IsDefined(y)) return;
    if (!xy_) {
        min_[0] = max_[0] = x;
        min_[1] = max_[1] = y;
        xy_ = true;
        return;
    }
    min_[0] = std::min(min_[0], x), max_[0] = std::max(max_[0], x);
    min_[1] = std::min(min_[1], y), max_[1] = std::max(max_[1], y);
}

void CExtent::AddZ(double z) {
    if (!vesk::IsDefined(z)) return;
    if (!z_) {
        min_[2] = max_[2] = z;
        z_ = true;
        return;
    }
    min_[2] = std::min(min_[2], z), max_[2] = std::max(max_[2], z);
}

void CExtent::Add(double x, double y, double z) {
    if (!vesk::IsDefined(x) || !vesk::IsDefined(y)) return;
    AddXY(x, y);
    AddZ(z);
}

void CExtent::Add(const CExtent& o) {
    if (o.xy_) {
        AddXY(o.min_[0], o.min_[1]);
        AddXY(o.max_[0], o.max_[1]);
    }
    if (o.z_) {
        AddZ(o.min_[2]);
        AddZ(o.max_[2]);
    }
}

nlohmann::json CExtent::Json() const {
    if (!xy_) return nullptr;
    nlohmann::json zmin = z_ ? nlohmann::json(min_[2]) : nlohmann::json(nullptr);
    nlohmann::json zmax = z_ ? nlohmann::json(max_[2]) : nlohmann::json(nullptr);
    return nlohmann::json::array({min_[0], min_[1], zmin, max_[0], max_[1], zmax});
}

CExtent RoadExtent(CRoad& road) {
    CExtent e;
    for (CPlaniElem* elem : road.RetrieveLinkedPlaniElems()) {
        const double length = elem->GetLength();
        const int steps = elem->GetType() == CPlaniElem::RETTIFILO ? 1 : 32;
        for (int i = 0; i <= steps; ++i) {
            PNT_2D p;
            elem->GetPos(length * i / steps, p);
            e.AddXY(p.x, p.y);
        }
    }
    if (CProfileAlti* prj = road.GetRoadProfile()->GetMainPrjAlti())
        for (const TAltiVrt& v : prj->Vrts()) e.AddZ(v.quota);
    return e;
}

CExtent SurfaceExtent(const CDtmPrj& prj) {
    CExtent e;
    for (const PNT_3D& p : prj.GetTris()->Verts()) e.Add(p.x, p.y, p.z);
    return e;
}

CExtent PointGroupExtent(CLibPnt& lib, int group) {
    CExtent e;
    for (int i = 0; i < lib.GetPtnArSize(group); ++i)
        if (const CPunPnt* p = lib.GetPtnAt(group, i)) e.Add(p->GetCoordX(), p->GetCoordY(), p->GetCoordZ());
    return e;
}

}  // namespace roadx::cli
