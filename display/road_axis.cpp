#include "display/road_axis.h"

#include <algorithm>
#include <cmath>

#include "vesk/format.h"

namespace roadx::display {

std::vector<double> SampleDistances(const CPlaniElem& e, double tol) {
    const double len = e.GetLength();
    if (!(len > 0.0) || !std::isfinite(len)) return {0.0};
    int n = 1;
    if (e.GetType() != CPlaniElem::RETTIFILO) {
        const double r = e.GetMinRad();
        if (std::isfinite(r) && r > 0.0) {
            const double step = std::sqrt(8.0 * tol * r);
            const double pieces = std::ceil(len / step);
            n = pieces >= kMaxPiecesPerElem ? kMaxPiecesPerElem : std::max(1, static_cast<int>(pieces));
        }
    }
    std::vector<double> d(static_cast<size_t>(n) + 1);
    for (int i = 0; i <= n; ++i) d[static_cast<size_t>(i)] = len * i / n;
    d.back() = len;
    return d;
}

bool AxisPoint(const std::vector<CPlaniElem*>& elems, double prog, double offset, PNT_2D& p) {
    CPlaniElem* e = nullptr;
    double local = 0.0;
    if (!GetElemAtProg(elems, prog, &e, &local) || e == nullptr) return false;
    e->GetPos(local, offset, p);
    return std::isfinite(p.x) && std::isfinite(p.y);
}

std::string FormatChainage(double prog) {
    if (!std::isfinite(prog) || std::fabs(prog) > 1e12) return vesk::Format("%.2f", prog);
    const long long cents = std::llround(std::fabs(prog) * 100.0);
    const long long km = cents / 100000;
    const long long rest = cents % 100000;
    return vesk::Format("%s%lld+%03lld.%02lld", (prog < 0 && cents > 0) ? "-" : "", km, rest / 100, rest % 100);
}

std::vector<TAxisVertex> AxisPolyline(const std::vector<CPlaniElem*>& elems, double tol) {
    std::vector<TAxisVertex> out;
    for (const CPlaniElem* e : elems) {
        if (e == nullptr || !DrawableElem(*e)) continue;
        for (double dist : SampleDistances(*e, tol)) {
            PNT_2D p;
            e->GetPos(dist, p);
            const TAxisVertex v{p.x, p.y, e->GetProg() + dist};
            // The end of one element is the start of the next.
            if (!out.empty() && std::hypot(out.back().x - v.x, out.back().y - v.y) < 1e-9) continue;
            out.push_back(v);
        }
    }
    return out;
}

bool DrawableElem(const CPlaniElem& e) {
    const double len = e.GetLength();
    return std::isfinite(e.GetStartPnt().x) && std::isfinite(e.GetStartPnt().y) && std::isfinite(len) && len > 0.0;
}

}  // namespace roadx::display
