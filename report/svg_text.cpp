#include "report/svg_text.h"

#include <charconv>
#include <cmath>

namespace roadx::report {

std::string Fx(double v, int decimals) {
    if (!std::isfinite(v)) return "0";
    char buf[64];
    auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, decimals);
    std::string s(buf, r.ptr);
    if (s.find_first_not_of("-0.") == std::string::npos) return "0";
    return s;
}

std::string Esc(const std::string& s) {
    std::string o;
    o.reserve(s.size());
    for (char c : s) {
        switch (c) {
            case '&': o += "&amp;"; break;
            case '<': o += "&lt;"; break;
            case '>': o += "&gt;"; break;
            case '"': o += "&quot;"; break;
            case '\'': o += "&#39;"; break;
            default: o += c;
        }
    }
    return o;
}

double NiceStep(double v) {
    if (!(v > 0) || !std::isfinite(v)) return 1.0;
    const double p = std::pow(10.0, std::floor(std::log10(v)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * p >= v * (1 - 1e-9)) return m * p;
    return 10 * p;
}

namespace {

void Dp(const std::vector<vesk::geom::PNT_3D>& p, size_t a, size_t b, double tol2, std::vector<char>& keep) {
    // Iterative, so a long line cannot exhaust the stack.
    std::vector<std::pair<size_t, size_t>> todo{{a, b}};
    while (!todo.empty()) {
        auto [i, j] = todo.back();
        todo.pop_back();
        if (j <= i + 1) continue;
        const double dx = p[j].x - p[i].x, dy = p[j].y - p[i].y, l2 = dx * dx + dy * dy;
        double best = -1;
        size_t at = i;
        for (size_t k = i + 1; k < j; ++k) {
            double ex = p[k].x - p[i].x, ey = p[k].y - p[i].y, d2;
            if (l2 > 0) {
                const double c = ex * dy - ey * dx;
                d2 = c * c / l2;
            } else {
                d2 = ex * ex + ey * ey;
            }
            if (d2 > best) best = d2, at = k;
        }
        if (best > tol2) {
            keep[at] = 1;
            todo.push_back({i, at});
            todo.push_back({at, j});
        }
    }
}

}  // namespace

std::vector<vesk::geom::PNT_3D> Simplify(const std::vector<vesk::geom::PNT_3D>& pts, double tol) {
    if (pts.size() < 3) return pts;
    std::vector<char> keep(pts.size(), 0);
    keep.front() = keep.back() = 1;
    Dp(pts, 0, pts.size() - 1, tol * tol, keep);
    std::vector<vesk::geom::PNT_3D> out;
    for (size_t i = 0; i < pts.size(); ++i)
        if (keep[i]) out.push_back(pts[i]);
    return out;
}

}  // namespace roadx::report
