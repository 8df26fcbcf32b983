#include "display/dis_common.h"

#include <cmath>
#include <unordered_set>

#include "host/document.h"
#include "vesk/format.h"
#include "vesk/undefined.h"

namespace roadx::display {

namespace {

// Colours that read on a white and on a black background, in the order new
// drawings take them (7, white/black, is the engine's "no colour").
constexpr unsigned kPalette[] = {1,  3,  5,  6,  30, 140, 4,   40,  200, 84,  230, 150,
                                 10, 50, 90, 110, 170, 190, 210, 240, 130, 20,  60,  180};
constexpr size_t kPaletteSize = sizeof(kPalette) / sizeof(kPalette[0]);

// Hard upper bound of "_n" suffixes tried; the engine holds fewer drawings
// than this long before.
constexpr int kMaxSuffix = 1000000;

}  // namespace

bool IsDefinedValue(double v) { return std::isfinite(v) && vesk::IsDefined(v) && v > -vesk::kUndefinedLimit; }
bool IsDefinedXY(double x, double y) { return IsDefinedValue(x) && IsDefinedValue(y); }

std::string FreeDrawingName(const CZedraEng& eng, const std::string& base) {
    const std::string b = base.empty() ? std::string("Grafica") : base;
    if (eng.GetDrawingFromName(b) == 0) return b;
    for (int n = 2; n < kMaxSuffix; ++n) {
        std::string c = b + "_" + std::to_string(n);
        if (eng.GetDrawingFromName(c) == 0) return c;
    }
    return {};
}

unsigned NextDrawingColour(const CZedraEng& eng) {
    std::unordered_set<unsigned> used;
    for (const auto& d : eng.GetDrawings())
        if (d.colourSet) used.insert(d.colour);
    for (unsigned c : kPalette)
        if (!used.count(c)) return c;
    return kPalette[eng.GetDrawings().size() % kPaletteSize];
}

DrawingHandle AddNamedDrawing(CZedraEng& eng, const std::string& base) {
    const std::string name = FreeDrawingName(eng, base);
    if (name.empty()) return 0;
    const unsigned colour = NextDrawingColour(eng);
    const DrawingHandle h = eng.AddDrawing(0, name, true, false, false);
    if (h != 0) eng.SetDrawingColor(h, true, colour);
    return h;
}

std::string ObjectDrawingName(const char* prefix, const std::string& name, int index) {
    return std::string(prefix) + (name.empty() ? std::to_string(index + 1) : name);
}

std::string FormatElevation(double z) { return vesk::Format("%.3f", z); }

void CDisBase::AnnullaTutto() {
    if (eng_) eng_->DeleteEntitiesWithTag(tag_);
}

DrawingHandle CDisBase::EnsureTarget(CTargetDrawingHolder& holder, const std::string& name, bool addRef) {
    const DrawingHandle cur = holder.GetTargetDrawing();
    if (cur != 0 && eng_->FindDrawing(cur) != nullptr) return cur;
    const DrawingHandle h = AddNamedDrawing(*eng_, name);
    if (h == 0) return eng_->GetCurrentDrawing();
    holder.SetTargetDrawing(h);
    if (addRef) CZedraEng::AddDrawingRef(eng_, h);
    return h;
}

bool CDisBase::Shown(DrawingHandle d, bool visibleOnly) const {
    return !visibleOnly || (eng_->IsDrawingVisible(d) && !eng_->IsDrawingFrozen(d));
}

roadx::cad::TEntAttr CDisBase::Attr(DrawingHandle d, int colour) const {
    roadx::cad::TEntAttr a;
    a.drawing = d;
    a.colour = colour;
    a.tag = tag_;
    return a;
}

void CDisBase::Point(DrawingHandle d, const vesk::geom::PNT_3D& p) { eng_->AddPoint(Attr(d), p); }

void CDisBase::Line(DrawingHandle d, const vesk::geom::PNT_3D& a, const vesk::geom::PNT_3D& b) {
    eng_->AddLine(Attr(d), a, b);
}

void CDisBase::Label(DrawingHandle d, const vesk::geom::PNT_3D& p, double height, double rotRad, std::string_view text,
                     roadx::cad::EHAlign h, roadx::cad::EVAlign v) {
    if (text.empty()) return;
    eng_->AddText(Attr(d), p, height, rotRad, text, h, v);
}

int CDisBase::NameElevLabels(DrawingHandle d, const vesk::geom::PNT_3D& at, std::string_view name, double z,
                             double height) {
    const double gap = 0.25 * height;
    int n = 0;
    if (!name.empty()) {
        Label(d, {at.x + gap, at.y + gap, at.z}, height, 0.0, name, roadx::cad::EHAlign::Left, roadx::cad::EVAlign::Bottom);
        ++n;
    }
    if (IsDefinedValue(z)) {
        Label(d, {at.x + gap, at.y - gap, at.z}, height, 0.0, FormatElevation(z), roadx::cad::EHAlign::Left,
              roadx::cad::EVAlign::Top);
        ++n;
    }
    return n;
}

double CDisBase::PointTextHeight() const {
    const COpzListDisEgn* o = doc_ ? doc_->GetOpzListDisEgn() : nullptr;
    const double h = o ? o->GetOpzPun().textHeight : 0.5;
    return (IsDefinedValue(h) && h > 0.0) ? h : 0.5;
}

int CDisBase::PolylineRuns(DrawingHandle d, const std::vector<vesk::geom::PNT_3D>& pts, bool closed) {
    auto ok = [](const vesk::geom::PNT_3D& p) { return IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z); };
    bool allDefined = true;
    for (const auto& p : pts) allDefined = allDefined && ok(p);
    if (closed && allDefined) {
        std::vector<vesk::geom::PNT_3D> ring = pts;
        if (ring.size() > 2 && ring.front() == ring.back()) ring.pop_back();
        if (ring.size() < 2) return 0;
        return eng_->AddPolyline3D(Attr(d), ring, ring.size() > 2) != 0 ? 1 : 0;
    }
    int made = 0;
    std::vector<vesk::geom::PNT_3D> run;
    auto flush = [&] {
        if (run.size() >= 2 && eng_->AddPolyline3D(Attr(d), run, false) != 0) ++made;
        run.clear();
    };
    for (const auto& p : pts) {
        if (ok(p)) run.push_back(p);
        else flush();
    }
    flush();
    return made;
}

}  // namespace roadx::display
