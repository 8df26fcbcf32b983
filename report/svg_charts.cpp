// The long profile and the cross-section charts: charts of abscissa against
// elevation, drawn in a fixed frame of 1000 units wide.
#include <algorithm>
#include <cmath>

#include "display/road_axis.h"
#include "report/svg_text.h"
#include "report/svg_views.h"
#include "vesk/undefined.h"

namespace roadx::report {

namespace {

bool Def(double v) { return std::isfinite(v) && vesk::IsDefined(v) && v > -vesk::kUndefinedLimit; }

// Abscissa and elevation ranges mapped into a frame; exag = vertical
// exaggeration (elevation units per abscissa unit on paper).
struct TChart {
    double x0 = HUGE_VAL, x1 = -HUGE_VAL, z0 = HUGE_VAL, z1 = -HUGE_VAL;
    double w = 1000, h = 300, pad = 40, exag = 1, scale = 1;
    void Take(double x, double z) {
        if (!Def(x) || !Def(z)) return;
        x0 = std::min(x0, x), x1 = std::max(x1, x), z0 = std::min(z0, z), z1 = std::max(z1, z);
    }
    // Fixes the scale; the exaggeration is a nice number that lets the
    // elevations fill about the frame's height (at least 1).
    void Fit(double width, double maxHeight) {
        if (!(x0 <= x1)) x0 = 0, x1 = 1, z0 = 0, z1 = 1;
        if (x1 - x0 < 1e-6) x0 -= 0.5, x1 += 0.5;
        if (z1 - z0 < 1e-6) z0 -= 0.5, z1 += 0.5;
        w = width;
        scale = (w - 2 * pad) / (x1 - x0);
        const double want = (maxHeight - 2 * pad) / ((z1 - z0) * scale);
        exag = 1.0;
        if (want >= 1 && std::isfinite(want)) {
            const double p = std::pow(10.0, std::floor(std::log10(want)));
            for (double m : {5.0, 2.0, 1.0})
                if (m * p <= want) {
                    exag = std::min(m * p, 1000.0);
                    break;
                }
        }
        h = std::min(maxHeight, (z1 - z0) * scale * exag + 2 * pad);
    }
    double X(double x) const { return pad + (x - x0) * scale; }
    double Y(double z) const { return h - pad - (z - z0) * scale * exag; }
    std::string P(double x, double z) const { return Fx(X(x), 2) + "," + Fx(Y(z), 2); }
};

std::string Grid(const TChart& c, bool chainage) {
    std::string d, t;
    const double sx = NiceStep((c.x1 - c.x0) / 8), sz = NiceStep((c.z1 - c.z0) / 5);
    for (double x = std::ceil(c.x0 / sx) * sx; x <= c.x1 + 1e-9; x += sx) {
        d += "M" + c.P(x, c.z0) + "V" + Fx(c.pad, 2);
        t += "<text x=\"" + Fx(c.X(x), 2) + "\" y=\"" + Fx(c.h - c.pad + 14, 2) + "\" text-anchor=\"middle\">" +
             (chainage ? display::FormatChainage(x) : Fx(x, sx < 1 ? 1 : 0)) + "</text>";
    }
    for (double z = std::ceil(c.z0 / sz) * sz; z <= c.z1 + 1e-9; z += sz) {
        d += "M" + c.P(c.x0, z) + "H" + Fx(c.X(c.x1), 2);
        t += "<text x=\"" + Fx(c.pad - 4, 2) + "\" y=\"" + Fx(c.Y(z) + 4, 2) + "\" text-anchor=\"end\">" +
             Fx(z, sz < 1 ? 1 : 0) + "</text>";
    }
    return "<path class=\"grid\" d=\"" + d + "\"/><g class=\"axis-labels\">" + t + "</g>";
}

std::string GroundPath(const TChart& c, const std::vector<TGroundVrt>& g) {
    std::string d;
    bool pen = false;
    for (const TGroundVrt& v : g) {
        if (!Def(v.z) || !Def(v.prog)) {
            pen = false;
            continue;
        }
        d += (pen ? "L" : "M") + c.P(v.prog, v.z);
        pen = true;
    }
    return d;
}

}  // namespace

std::string ProfileSvg(const TRoadView& r) {
    TChart c;
    for (const auto& p : r.design) c.Take(p.x, p.y);
    for (const TGroundVrt& g : r.ground) c.Take(g.prog, g.z);
    if (c.x0 > c.x1) c.Take(r.startProg, 0), c.Take(r.endProg, 0);
    c.Fit(1000, 360);
    std::string o = "<svg class=\"zoomable profile\" xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + Fx(c.w) +
                    " " + Fx(c.h) + "\" data-road=\"" + Esc(r.name) + "\">";
    o += Grid(c, true);
    o += "<path class=\"ground\" d=\"" + GroundPath(c, r.ground) + "\"/>";
    std::string d;
    for (const auto& p : r.design) d += (d.empty() ? "M" : "L") + c.P(p.x, p.y);
    o += "<path class=\"design\" d=\"" + d + "\"/>";
    // PVIs, curve extents, grades between PVIs and curve lengths.
    for (size_t i = 0; i < r.pvis.size(); ++i) {
        const TPvi& p = r.pvis[i];
        o += "<circle class=\"pvi\" cx=\"" + Fx(c.X(p.prog)) + "\" cy=\"" + Fx(c.Y(p.z)) + "\" r=\"3\"><title>PVI " +
             display::FormatChainage(p.prog) + " z " + Fx(p.z, 3) + "</title></circle>";
        if (p.curve) {
            o += "<path class=\"curve-extent\" d=\"M" + Fx(c.X(p.curveStart)) + "," + Fx(c.pad) + "V" +
                 Fx(c.h - c.pad) + "M" + Fx(c.X(p.curveEnd)) + "," + Fx(c.pad) + "V" + Fx(c.h - c.pad) + "\"/>";
            o += "<text class=\"curve-label\" x=\"" + Fx(c.X(p.prog)) + "\" y=\"" + Fx(c.Y(p.z) - 10) +
                 "\" text-anchor=\"middle\">L=" + Fx(p.curveEnd - p.curveStart, 2) + "</text>";
        }
        if (i + 1 < r.pvis.size() && r.pvis[i + 1].prog > p.prog) {
            const TPvi& q = r.pvis[i + 1];
            const double g = (q.z - p.z) / (q.prog - p.prog) * 100.0;
            o += "<text class=\"grade\" x=\"" + Fx(c.X((p.prog + q.prog) / 2)) + "\" y=\"" +
                 Fx(c.Y((p.z + q.z) / 2) + 16) + "\" text-anchor=\"middle\">" + Fx(g, 2) + "%</text>";
        }
    }
    o += "<text class=\"exaggeration\" x=\"" + Fx(c.w - c.pad) + "\" y=\"16\" text-anchor=\"end\">vertical exaggeration " +
         Fx(c.exag, c.exag < 10 ? 1 : 0) + "×</text></svg>\n";
    return o;
}

std::string SectionSvg(const TSectionView& s) {
    TChart c;
    c.pad = 40;
    for (const TLineView& l : s.lines)
        for (const auto& run : l.runs)
            for (const auto& p : run) c.Take(p.x, p.y);
    for (const TGroundVrt& g : s.dtm) c.Take(g.prog, g.z);
    c.Fit(420, 220);
    std::string o = "<svg class=\"section-chart\" xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + Fx(c.w) + " " +
                    Fx(c.h) + "\"><title>" + Esc(s.name) + " " + display::FormatChainage(s.prog) + "</title>";
    o += Grid(c, false);
    if (!s.dtm.empty()) o += "<path class=\"dtm\" d=\"" + GroundPath(c, s.dtm) + "\"><title>surface</title></path>";
    static const char* const kColours[] = {"#c22", "#15c", "#a3c", "#e80", "#088", "#555"};
    int k = 0;
    std::string legend;
    double lx = c.pad;
    for (const TLineView& l : s.lines) {
        std::string d;
        for (const auto& run : l.runs) {
            bool first = true;
            for (const auto& p : run) {
                d += (first ? "M" : "L") + c.P(p.x, p.y);
                first = false;
            }
        }
        const std::string colour = l.terrain ? "#6b4" : kColours[k % 6];
        o += "<path class=\"" + std::string(l.terrain ? "terrain" : "line c" + std::to_string(k++ % 6)) +
             "\" d=\"" + d + "\"><title>" + Esc(l.code) + "</title></path>";
        legend += "<text x=\"" + Fx(lx) + "\" y=\"14\" fill=\"" + colour + "\">" + Esc(l.code) + "</text>";
        lx += 10 + 7.0 * double(l.code.size());
    }
    if (!s.dtm.empty()) legend += "<text x=\"" + Fx(lx) + "\" y=\"14\" fill=\"#8a6\">surface</text>";
    o += "<g class=\"legend\" font-size=\"12\">" + legend + "</g>";
    o += "<text x=\"" + Fx(c.w - c.pad) + "\" y=\"14\" text-anchor=\"end\">×" + Fx(c.exag, 1) + "</text></svg>";
    return o;
}

}  // namespace roadx::report
