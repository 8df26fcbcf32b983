#include <algorithm>
#include <cmath>

#include "display/road_axis.h"
#include "display/tin_contours.h"
#include "host/document.h"
#include "report/report.h"
#include "report/svg_text.h"
#include "report/svg_views.h"
#include "vesk/undefined.h"

namespace roadx::report {

namespace {

// At most this many contour levels per surface, and this many contour
// vertices for the whole plan after simplification.
constexpr double kMaxLevels = 40;
constexpr size_t kMaxContourVerts = 400000;

struct TBox {
    double x0 = HUGE_VAL, y0 = HUGE_VAL, x1 = -HUGE_VAL, y1 = -HUGE_VAL;
    void Take(double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y) || !vesk::IsDefined(x) || !vesk::IsDefined(y) ||
            x < -vesk::kUndefinedLimit || y < -vesk::kUndefinedLimit)
            return;
        x0 = std::min(x0, x), y0 = std::min(y0, y), x1 = std::max(x1, x), y1 = std::max(y1, y);
    }
    bool Valid() const { return x0 <= x1 && y0 <= y1; }
};

// World to drawing: x to the right, y up in the world and down in SVG.
struct TMap {
    double ox, oy;
    std::string P(double x, double y, int d = 3) const { return Fx(x - ox, d) + "," + Fx(oy - y, d); }
};

bool Ok(double x, double y) {
    return std::isfinite(x) && std::isfinite(y) && vesk::IsDefined(x) && vesk::IsDefined(y) &&
           x > -vesk::kUndefinedLimit && y > -vesk::kUndefinedLimit;
}

template <class Pts>
std::string Path(const TMap& m, const Pts& pts, int d, bool close = false) {
    std::string s;
    bool first = true;
    for (const auto& p : pts) {
        if (!Ok(p.x, p.y)) {
            first = true;
            continue;
        }
        s += first ? "M" : "L";
        s += m.P(p.x, p.y, d);
        first = false;
    }
    if (close && !s.empty()) s += "Z";
    return s;
}

TBox Extent(CVantriDoc& doc, const std::vector<TRoadView>& roads) {
    TBox b;
    for (const TRoadView& r : roads)
        for (size_t i = 0; i + 2 < r.axis.size(); i += 3) b.Take(r.axis[i], r.axis[i + 1]);
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i)
        for (const PNT_3D& v : dtm->GetPrj(i)->GetTris()->Verts()) b.Take(v.x, v.y);
    CLibPnt* pnt = doc.GetLibPnt();
    for (int g = 0; g < pnt->GetGrpArSize(); ++g)
        for (int i = 0; i < pnt->GetPtnArSize(g); ++i) b.Take(pnt->GetPtnAt(g, i)->GetCoordX(), pnt->GetPtnAt(g, i)->GetCoordY());
    CLibCmp* cmp = doc.GetLibCmp();
    for (int j = 0; j < cmp->GetJobArSize(); ++j)
        for (int s = 0; s < cmp->GetStaArSize(j); ++s) b.Take(cmp->GetStaAt(j, s)->GetCoordX(), cmp->GetStaAt(j, s)->GetCoordY());
    if (!b.Valid()) b = TBox{0, 0, 100, 100};
    if (b.x1 - b.x0 < 1) b.x0 -= 0.5, b.x1 += 0.5;
    if (b.y1 - b.y0 < 1) b.y0 -= 0.5, b.y1 += 0.5;
    return b;
}

void Surface(std::string& o, const TMap& m, const CDtmPrj& p, double size, size_t& budget) {
    const CTris& tris = *p.GetTris();
    o += "<g class=\"surface\" data-name=\"" + Esc(p.GetName()) + "\">";
    if (size_t(tris.GetNoTris()) <= kMaxDrawnFaces) {
        std::string d;
        const auto& v = tris.Verts();
        for (const CTri& t : tris.Tris()) {
            std::vector<PNT_3D> pts;
            for (int k = 0; k < 3; ++k)
                if (t.v[k] >= 0 && size_t(t.v[k]) < v.size()) pts.push_back(v[size_t(t.v[k])]);
            if (pts.size() == 3) d += Path(m, pts, 2, true);
        }
        o += "<path class=\"faces\" d=\"" + d + "\"/>";
    }
    double zmin = HUGE_VAL, zmax = -HUGE_VAL;
    for (const PNT_3D& v : tris.Verts())
        if (vesk::IsDefined(v.z) && std::isfinite(v.z)) zmin = std::min(zmin, v.z), zmax = std::max(zmax, v.z);
    if (zmin < zmax) {
        const double interval = NiceStep((zmax - zmin) / kMaxLevels);
        const double tol = size / 3000.0;
        std::string d, dMajor;
        for (const display::TContour& c : display::ComputeContours(tris, interval)) {
            if (budget == 0) break;
            std::vector<PNT_3D> pts = Simplify(c.pts, tol);
            if (c.closed && !pts.empty()) pts.push_back(pts.front());
            budget -= std::min(budget, pts.size());
            (c.level % 5 == 0 ? dMajor : d) += Path(m, pts, 2);
        }
        o += "<path class=\"contour\" d=\"" + d + "\"/><path class=\"contour major\" d=\"" + dMajor + "\"/>";
        o += "<title>" + Esc(p.GetName()) + ": contours every " + Fx(interval, 2) + " m</title>";
    }
    std::string b;
    for (int i = 0; i < p.GetCntsExt()->GetNoCnts(); ++i) b += Path(m, p.GetCntsExt()->GetCntAt(i)->Vrts(), 2, true);
    for (int i = 0; i < p.GetCntsInt()->GetNoCnts(); ++i) b += Path(m, p.GetCntsInt()->GetCntAt(i)->Vrts(), 2, true);
    o += "<path class=\"boundary\" d=\"" + b + "\"/>";
    std::string br;
    for (int i = 0; i < p.GetVncs()->GetNoVncs(); ++i) {
        const LINE_3D l = p.GetVncs()->GetVncAt(i)->GetCoords();
        br += Path(m, std::vector<PNT_3D>{l.p1, l.p2}, 2);
    }
    o += "<path class=\"breakline\" d=\"" + br + "\"/></g>\n";
}

void Road(std::string& o, const TMap& m, const TRoadView& r, double size) {
    const double fs = size / 90.0;
    o += "<g class=\"road\" data-name=\"" + Esc(r.name) + "\"><title>" + Esc(r.name) + "</title>";
    std::string axis;
    for (size_t i = 0; i + 2 < r.axis.size(); i += 3)
        if (Ok(r.axis[i], r.axis[i + 1])) axis += (axis.empty() ? "M" : "L") + m.P(r.axis[i], r.axis[i + 1]);
    o += "<path class=\"axis\" d=\"" + axis + "\"/>";
    for (const TElemView& e : r.elems)
        o += "<path class=\"elem " + e.kind + "\" d=\"" + Path(m, e.pts, 3) + "\"><title>" + e.kind + " " +
             display::FormatChainage(e.startProg) + " – " + display::FormatChainage(e.endProg) + "</title></path>";
    // Element boundaries with their stations.
    for (size_t i = 0; i < r.elems.size(); ++i) {
        const TElemView& e = r.elems[i];
        if (!Ok(e.start.x, e.start.y)) continue;
        o += "<circle class=\"boundary-mark\" cx=\"" + Fx(e.start.x - m.ox, 3) + "\" cy=\"" + Fx(m.oy - e.start.y, 3) +
             "\" r=\"" + Fx(fs * 0.3, 3) + "\"/>";
        o += "<text class=\"station-label\" x=\"" + Fx(e.start.x - m.ox + fs * 0.5, 3) + "\" y=\"" +
             Fx(m.oy - e.start.y - fs * 0.5, 3) + "\" font-size=\"" + Fx(fs, 3) + "\">" +
             display::FormatChainage(e.startProg) + "</text>";
    }
    // Station ticks, about twenty along the road.
    const double step = NiceStep((r.endProg - r.startProg) / 20.0);
    std::string ticks, labels;
    if (r.axis.size() >= 6 && step > 0) {
        size_t k = 0;
        for (double s = std::ceil(r.startProg / step) * step; s <= r.endProg && k + 5 < r.axis.size(); s += step) {
            while (k + 5 < r.axis.size() && r.axis[k + 5] < s) k += 3;
            const double p0 = r.axis[k + 2], p1 = r.axis[k + 5];
            const double t = p1 > p0 ? std::clamp((s - p0) / (p1 - p0), 0.0, 1.0) : 0.0;
            const double x = r.axis[k] + (r.axis[k + 3] - r.axis[k]) * t, y = r.axis[k + 1] + (r.axis[k + 4] - r.axis[k + 1]) * t;
            double dx = r.axis[k + 3] - r.axis[k], dy = r.axis[k + 4] - r.axis[k + 1];
            const double l = std::hypot(dx, dy);
            if (!(l > 0) || !Ok(x, y)) continue;
            dx /= l, dy /= l;
            const double h = fs * 0.6;
            ticks += "M" + m.P(x + dy * h, y - dx * h) + "L" + m.P(x - dy * h, y + dx * h);
            // An element boundary near the tick already names its station.
            const bool crowded = std::any_of(r.elems.begin(), r.elems.end(), [&](const TElemView& e) {
                return std::fabs(e.startProg - s) < step * 0.3;
            });
            if (!crowded)
                labels += "<text x=\"" + Fx(x + dy * h * 1.5 - m.ox, 3) + "\" y=\"" + Fx(m.oy - (y - dx * h * 1.5), 3) +
                      "\" font-size=\"" + Fx(fs * 0.8, 3) + "\">" + display::FormatChainage(s) + "</text>";
        }
    }
    o += "<path class=\"tick\" d=\"" + ticks + "\"/><g class=\"tick-label\">" + labels + "</g></g>\n";
}

void Points(std::string& o, const TMap& m, CVantriDoc& doc, double size) {
    const double fs = size / 120.0;
    auto sym = [&](const CEgn& e, const char* cls, const std::string& label) {
        if (!Ok(e.GetCoordX(), e.GetCoordY())) return;
        const std::string x = Fx(e.GetCoordX() - m.ox, 3), y = Fx(m.oy - e.GetCoordY(), 3);
        if (std::string(cls) == "station")
            o += "<path class=\"station\" d=\"M" + Fx(e.GetCoordX() - m.ox, 3) + "," + Fx(m.oy - e.GetCoordY() - fs * 0.6, 3) +
                 "l" + Fx(fs * 0.5, 3) + "," + Fx(fs, 3) + "h" + Fx(-fs, 3) + "Z\"/>";
        else
            o += "<circle class=\"point\" cx=\"" + x + "\" cy=\"" + y + "\" r=\"" + Fx(fs * 0.25, 3) + "\"/>";
        o += "<text class=\"point-label\" x=\"" + Fx(e.GetCoordX() - m.ox + fs * 0.4, 3) + "\" y=\"" + y +
             "\" font-size=\"" + Fx(fs, 3) + "\">" + Esc(label) + "</text>";
    };
    o += "<g class=\"points\">";
    CLibPnt* pnt = doc.GetLibPnt();
    for (int g = 0; g < pnt->GetGrpArSize(); ++g)
        for (int i = 0; i < pnt->GetPtnArSize(g); ++i) sym(*pnt->GetPtnAt(g, i), "point", pnt->GetPtnAt(g, i)->GetNome());
    CLibCmp* cmp = doc.GetLibCmp();
    for (int j = 0; j < cmp->GetJobArSize(); ++j)
        for (int s = 0; s < cmp->GetStaArSize(j); ++s) sym(*cmp->GetStaAt(j, s), "station", cmp->GetStaAt(j, s)->GetNome());
    o += "</g>\n";
}

// North arrow, scale bar and the extent's corner coordinates.
void Furniture(std::string& o, const TBox& b, double pad, double size) {
    const double w = b.x1 - b.x0 + 2 * pad, h = b.y1 - b.y0 + 2 * pad, fs = size / 60.0;
    const double nx = w - pad * 0.5, ny = pad * 0.2;
    o += "<g class=\"north\"><path d=\"M" + Fx(nx) + "," + Fx(ny) + "l" + Fx(fs * 0.6) + "," + Fx(fs * 2) + "l" +
         Fx(-fs * 0.6) + "," + Fx(-fs * 0.5) + "l" + Fx(-fs * 0.6) + "," + Fx(fs * 0.5) + "Z\"/><text x=\"" + Fx(nx) +
         "\" y=\"" + Fx(ny + fs * 3.2) + "\" font-size=\"" + Fx(fs) + "\" text-anchor=\"middle\">N</text></g>";
    const double bar = NiceStep(size / 6.0) / 2.0 >= size / 8.0 ? NiceStep(size / 6.0) / 2.0 : NiceStep(size / 6.0);
    const double sx = pad * 0.5, sy = h - pad * 0.4;
    o += "<g class=\"scalebar\"><path d=\"M" + Fx(sx) + "," + Fx(sy) + "h" + Fx(bar) + "\"/><path d=\"M" + Fx(sx) +
         "," + Fx(sy - fs * 0.4) + "v" + Fx(fs * 0.8) + "M" + Fx(sx + bar) + "," + Fx(sy - fs * 0.4) + "v" +
         Fx(fs * 0.8) + "\"/><text x=\"" + Fx(sx + bar / 2) + "\" y=\"" + Fx(sy - fs * 0.6) + "\" font-size=\"" + Fx(fs) +
         "\" text-anchor=\"middle\">" + Fx(bar, bar < 1 ? 2 : 0) + " m</text></g>";
    o += "<g class=\"extent\" font-size=\"" + Fx(fs * 0.8) + "\"><text x=\"" + Fx(pad) + "\" y=\"" + Fx(h - pad + fs) +
         "\">E " + Fx(b.x0) + " N " + Fx(b.y0) + "</text><text x=\"" + Fx(w - pad) + "\" y=\"" + Fx(pad - fs * 0.4) +
         "\" text-anchor=\"end\">E " + Fx(b.x1) + " N " + Fx(b.y1) + "</text><rect class=\"frame\" x=\"" + Fx(pad) +
         "\" y=\"" + Fx(pad) + "\" width=\"" + Fx(b.x1 - b.x0) + "\" height=\"" + Fx(b.y1 - b.y0) + "\"/></g>";
}

}  // namespace

std::string PlanSvg(CVantriDoc& doc, const std::vector<TRoadView>& roads) {
    const TBox b = Extent(doc, roads);
    const double size = std::max(b.x1 - b.x0, b.y1 - b.y0), pad = size * 0.08;
    const TMap m{b.x0 - pad, b.y1 + pad};
    const double w = b.x1 - b.x0 + 2 * pad, h = b.y1 - b.y0 + 2 * pad;
    std::string o = "<svg id=\"plan-svg\" class=\"zoomable plan\" xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
                    Fx(w) + " " + Fx(h) + "\" style=\"--u:" + Fx(size / 1000.0, 4) + "px\">\n";
    size_t budget = kMaxContourVerts;
    CLibDtm* dtm = doc.GetLibDtm();
    for (unsigned i = 0; i < dtm->GetNoPrj(); ++i) Surface(o, m, *dtm->GetPrj(i), size, budget);
    for (const TRoadView& r : roads) Road(o, m, r, size);
    Points(o, m, doc, size);
    Furniture(o, b, pad, size);
    o += "</svg>\n";
    return o;
}

}  // namespace roadx::report
