// Terrain models as GIS layers: one polygon per triangle, the outer and
// island boundaries, the breaklines and the contour lines.
#include <cmath>
#include <memory>
#include <vector>

#include "display/tin_contours.h"
#include "gis/layers.h"
#include "gis/vector_writer.h"
#include "host/document.h"

namespace roadx::gis {

namespace {

bool Finite(double v) { return std::isfinite(v) && vesk::IsDefined(v); }
bool Finite(const PNT_3D& p) { return Finite(p.x) && Finite(p.y) && Finite(p.z); }

// A closed ring of 3D points (the first repeated at the end).
std::unique_ptr<OGRPolygon> Polygon(const std::vector<PNT_3D>& pts, const CVectorWriter& w) {
    auto ring = std::make_unique<OGRLinearRing>();
    ring->setNumPoints(static_cast<int>(pts.size()) + 1);
    for (size_t i = 0; i <= pts.size(); ++i) {
        const PNT_3D& p = pts[i % pts.size()];
        ring->setPoint(static_cast<int>(i), w.Plan(p.x), w.Plan(p.y), p.z);
    }
    auto poly = std::make_unique<OGRPolygon>();
    poly->addRingDirectly(ring.release());
    return poly;
}

void WriteTriangles(const CDtmPrj& prj, CVectorWriter& w) {
    const CTris& t = *prj.GetTris();
    const int nv = t.GetNoTriVrts();
    std::vector<PNT_3D> corners(3);
    for (const CTri& tri : t.Tris()) {
        bool ok = true;
        for (int k = 0; k < 3 && ok; ++k) {
            ok = tri.v[k] >= 0 && tri.v[k] < nv;
            if (ok) corners[k] = t.GetTriVrtAt(tri.v[k]);
            ok = ok && Finite(corners[k]);
        }
        if (!ok) continue;
        OGRFeature& f = w.New();
        SetText(f, "surface", prj.GetName());
        w.Add(Polygon(corners, w));
        if (!w.Ok()) return;
    }
}

// Boundaries are kept as the file gave them; a ring needs three points.
void WriteBoundaries(const CDtmPrj& prj, const CCnts& cnts, const char* kind, CVectorWriter& w) {
    for (int i = 0; i < cnts.GetNoCnts(); ++i) {
        std::vector<PNT_3D> pts;
        for (const PNT_3D& p : cnts.GetCntAt(i)->Vrts())
            if (Finite(p)) pts.push_back(p);
        if (pts.size() > 1 && pts.front() == pts.back()) pts.pop_back();
        if (pts.size() < 3) continue;
        OGRFeature& f = w.New();
        SetText(f, "surface", prj.GetName());
        SetText(f, "kind", kind);
        SetInt(f, "index", i);
        w.Add(Polygon(pts, w));
    }
}

void WriteBreaklines(const CDtmPrj& prj, CVectorWriter& w) {
    const CVncs& v = *prj.GetVncs();
    for (int i = 0; i < v.GetNoVncs(); ++i) {
        const LINE_3D l = v.GetVncAt(i)->GetCoords();
        if (!Finite(l.p1) || !Finite(l.p2)) continue;
        auto g = std::make_unique<OGRLineString>();
        g->addPoint(w.Plan(l.p1.x), w.Plan(l.p1.y), l.p1.z);
        g->addPoint(w.Plan(l.p2.x), w.Plan(l.p2.y), l.p2.z);
        OGRFeature& f = w.New();
        SetText(f, "surface", prj.GetName());
        SetInt(f, "index", i);
        w.Add(std::move(g));
    }
}

void WriteContours(const CDtmPrj& prj, double interval, CVectorWriter& w) {
    for (const display::TContour& c : display::ComputeContours(*prj.GetTris(), interval)) {
        if (c.pts.size() < 2) continue;
        auto g = std::make_unique<OGRLineString>();
        for (const PNT_3D& p : c.pts) g->addPoint(w.Plan(p.x), w.Plan(p.y), c.z);
        if (c.closed) g->addPoint(w.Plan(c.pts.front().x), w.Plan(c.pts.front().y), c.z);
        OGRFeature& f = w.New();
        SetText(f, "surface", prj.GetName());
        SetReal(f, "elev", c.z);
        w.Add(std::move(g));
    }
}

template <class Fn>
void ForEachSurface(IVantriDati& doc, Fn&& fn) {
    CLibDtm* lib = doc.GetLibDtm();
    for (unsigned i = 0; lib && i < lib->GetNoPrj(); ++i)
        if (const CDtmPrj* p = lib->GetPrj(i)) fn(*p);
}

}  // namespace

void WriteSurfaceLayers(IVantriDati& doc, CVectorWriter& w, double contourInterval) {
    w.Begin(LayerDef("tin"));
    ForEachSurface(doc, [&](const CDtmPrj& p) { WriteTriangles(p, w); });
    w.Begin(LayerDef("surface_boundaries"));
    ForEachSurface(doc, [&](const CDtmPrj& p) {
        WriteBoundaries(p, *p.GetCntsExt(), "outer", w);
        WriteBoundaries(p, *p.GetCntsInt(), "island", w);
    });
    w.Begin(LayerDef("breaklines"));
    ForEachSurface(doc, [&](const CDtmPrj& p) { WriteBreaklines(p, w); });
    w.Begin(LayerDef("contours"));
    ForEachSurface(doc, [&](const CDtmPrj& p) { WriteContours(p, contourInterval, w); });
}

}  // namespace roadx::gis
