// The smaller libraries of the document: GIS themes, point clouds, contour
// settings and display options.
#pragma once
#include <memory>
#include <vector>

#include "host/target_drawing.h"
#include "vesk/geom.h"
#include "vesk/string.h"

class CZedraEng;

namespace gis {

// A GIS theme: named features, each a point (one vertex), a polyline or a
// closed polygon.
class CTheme : public CTargetDrawingHolder {
public:
    struct Feature {
        enum Kind { POINT, POLYLINE, POLYGON } kind = POINT;
        std::vector<vesk::geom::PNT_3D> pts;
    };
    explicit CTheme(const vesk::String& name) : name_(name) {}
    const vesk::String& GetName() const { return name_; }
    std::vector<Feature>& Features() { return features_; }
    const std::vector<Feature>& Features() const { return features_; }

private:
    vesk::String name_;
    std::vector<Feature> features_;
};

class CLibGis : public CTargetDrawingHolder {
public:
    int GetNumThemes() const { return static_cast<int>(themes_.size()); }
    CTheme* GetTheme(int i) const { return Valid(i) ? themes_[static_cast<size_t>(i)].get() : nullptr; }
    DrawingHandle GetThemeTargetDrawing(int i) const { return Valid(i) ? themes_[static_cast<size_t>(i)]->GetTargetDrawing() : 0; }
    void SetThemeTargetDrawing(int i, DrawingHandle h) { if (Valid(i)) themes_[static_cast<size_t>(i)]->SetTargetDrawing(h); }
    CTheme* AddTheme(const vesk::String& name);

private:
    bool Valid(int i) const { return i >= 0 && static_cast<size_t>(i) < themes_.size(); }
    std::vector<std::unique_ptr<CTheme>> themes_;
};

}  // namespace gis

// A point cloud: named points (the display draws them, see display/cld_draw.h).
class CCld {
public:
    explicit CCld(const vesk::String& name) : name_(name) {}
    const vesk::String& GetName() const { return name_; }
    std::vector<vesk::geom::PNT_3D>& Points() { return pts_; }
    const std::vector<vesk::geom::PNT_3D>& Points() const { return pts_; }

private:
    vesk::String name_;
    std::vector<vesk::geom::PNT_3D> pts_;
};

class CLibCld {
public:
    unsigned GetNoCld() const { return static_cast<unsigned>(clds_.size()); }
    CCld* GetCld(unsigned i) const { return i < clds_.size() ? clds_[i].get() : nullptr; }
    CCld* AddCld(const vesk::String& name);

private:
    std::vector<std::unique_ptr<CCld>> clds_;
};

// Contour drawings: computed from every DTM project at an interval.
class CCts : public CTargetDrawingHolder {
public:
    double GetInterval() const { return interval_; }
    void SetInterval(double m) { interval_ = m; }
    bool IsEnabled() const { return enabled_; }
    void SetEnabled(bool b) { enabled_ = b; }

private:
    double interval_ = 1.0;
    bool enabled_ = true;
};

// Display options of named points (what their labels show).
class COpzDisEgn {
public:
    bool showName = true;
    bool showElev = true;
    bool showDesc = false;
    double textHeight = 0.5;
    bool operator==(const COpzDisEgn&) const = default;
};

class COpzListDisEgn {
public:
    COpzDisEgn& GetOpzPun() { return pun_; }
    const COpzDisEgn& GetOpzPun() const { return pun_; }

private:
    COpzDisEgn pun_;
};
