// DTM projects: a triangulation (flat arrays of vertices and triangles),
// outer and inner contours kept exactly as given, and breaklines.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "host/dtm_grid.h"
#include "host/target_drawing.h"
#include "vesk/source_event.h"
#include "vesk/geom.h"
#include "vesk/string.h"

using vesk::geom::LINE_3D;
using vesk::geom::PNT_3D;

class CCnt {
public:
    CCnt() = default;
    explicit CCnt(std::vector<PNT_3D> pts) : pts_(std::move(pts)) {}
    int GetNoVrts() const { return static_cast<int>(pts_.size()); }
    PNT_3D GetVrt(int i) const { return pts_[static_cast<size_t>(i)]; }
    const std::vector<PNT_3D>& Vrts() const { return pts_; }

private:
    std::vector<PNT_3D> pts_;
};

class CCnts {
public:
    int GetNoCnts() const { return static_cast<int>(cnts_.size()); }
    CCnt* GetCntAt(int i) { return &cnts_[static_cast<size_t>(i)]; }
    const CCnt* GetCntAt(int i) const { return &cnts_[static_cast<size_t>(i)]; }
    void Add(std::vector<PNT_3D> pts) { cnts_.emplace_back(std::move(pts)); }

private:
    std::vector<CCnt> cnts_;
};

class CVnc {
public:
    explicit CVnc(const LINE_3D& l) : line_(l) {}
    LINE_3D GetCoords() const { return line_; }

private:
    LINE_3D line_;
};

class CVncs {
public:
    int GetNoVncs() const { return static_cast<int>(vncs_.size()); }
    CVnc* GetVncAt(int i) { return &vncs_[static_cast<size_t>(i)]; }
    const CVnc* GetVncAt(int i) const { return &vncs_[static_cast<size_t>(i)]; }
    void Add(const LINE_3D& l) { vncs_.emplace_back(l); }

private:
    std::vector<CVnc> vncs_;
};

// A triangle: three indices into the triangulation's vertex array, in the
// order the builder received them.
struct CTri {
    int32_t v[3];
    int GetVerIndex(int corner) const { return v[corner]; }
};

class CTris {
public:
    virtual ~CTris() = default;
    int GetNoTriVrts() const { return static_cast<int>(verts_.size()); }
    PNT_3D GetTriVrtAt(int i) const { return verts_[static_cast<size_t>(i)]; }
    virtual int GetNoTris() const { return static_cast<int>(tris_.size()); }
    CTri* GetTriAt(int i) { return &tris_[static_cast<size_t>(i)]; }
    const CTri* GetTriAt(int i) const { return &tris_[static_cast<size_t>(i)]; }

    int AddVert(const PNT_3D& p) { verts_.push_back(p); return static_cast<int>(verts_.size()) - 1; }
    void AddTri(int a, int b, int c) { tris_.push_back(CTri{{a, b, c}}); }
    void Reserve(size_t verts, size_t tris) { verts_.reserve(verts); tris_.reserve(tris); }
    void ShrinkToFit() { verts_.shrink_to_fit(); tris_.shrink_to_fit(); }
    const std::vector<PNT_3D>& Verts() const { return verts_; }
    const std::vector<CTri>& Tris() const { return tris_; }

private:
    std::vector<PNT_3D> verts_;
    std::vector<CTri> tris_;
};

// A DTM project is its own change context: edits of one project are
// bracketed by its BeginEvent/EndEvent.
class CDtmPrj : public CTargetDrawingHolder, public vesk::CSourceEvent {
public:
    explicit CDtmPrj(const vesk::String& name) : name_(name) {}
    const vesk::String& GetName() const { return name_; }

    // The four parts, in this declared order: breaklines, inner contours
    // (islands), outer contours, triangulation.
    CVncs* GetVncs() { return &vncs_; }
    CCnts* GetCntsInt() { return &cntsInt_; }
    CCnts* GetCntsExt() { return &cntsExt_; }
    CTris* GetTris() { return &tris_; }
    const CVncs* GetVncs() const { return &vncs_; }
    const CCnts* GetCntsInt() const { return &cntsInt_; }
    const CCnts* GetCntsExt() const { return &cntsExt_; }
    const CTris* GetTris() const { return &tris_; }

    // The spatial index of the triangulation, made on first use and made
    // again when the triangulation has grown or shrunk since.
    const CDtmGrid& GetGrid() const;

private:
    vesk::String name_;
    CVncs vncs_;
    CCnts cntsInt_;
    CCnts cntsExt_;
    CTris tris_;
    mutable std::unique_ptr<CDtmGrid> grid_;
    mutable size_t gridVerts_ = 0, gridTris_ = 0;
};

class CLibDtm {
public:
    unsigned GetNoPrj() const { return static_cast<unsigned>(prjs_.size()); }
    CDtmPrj* GetPrj(unsigned i) const { return i < prjs_.size() ? prjs_[i].get() : nullptr; }
    CDtmPrj* AddPrj(const vesk::String& name);

private:
    std::vector<std::unique_ptr<CDtmPrj>> prjs_;
};
