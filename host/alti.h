// Vertical lines: a road profile's terrain and project lines, and the lines of
// a cross section, as lists of vertices (abscissa, elevation).
#pragma once
#include <vector>

#include "host/ground_profile.h"
#include "vesk/string.h"
#include "vesk/undefined.h"

class CProfile;
class CDtmPrj;

// A vertical curve carried by a vertex. The reference host stores every curve
// the builder receives as a symmetric parabola (kind 2) of length R·|g1 − g2|
// centred on its vertex.
struct TRaccVrt {
    int kind = 2;            // 2 = parabola; anything else = circular
    double progStart = 0.0;  // tangent point before the vertex
    double progEnd = 0.0;    // tangent point after the vertex
    double radius = 0.0;
    double gradeIn = 0.0;    // grade of the tangent before the vertex
    double gradeOut = 0.0;   // grade of the tangent after the vertex
};

struct TAltiVrt {
    enum Flags : unsigned { PRINC = 1u, DTM = 2u, RACC = 4u };

    double prog = vesk::kUndefined;   // chainage on a profile, offset in a section
    double quota = vesk::kUndefined;  // elevation
    unsigned flags = 0;
    int code = 0;     // vertex code; 12..15 mark breaks in a section line
    int subType = 0;  // enumElemSubType of the template element it belongs to
    TRaccVrt racc;
};

bool IsPrincAltiVrt(const TAltiVrt* v);
bool IsDtmAltiVrt(const TAltiVrt* v);
bool IsRaccVertAltiVrt(const TAltiVrt* v);

class CProfileAlti {
public:
    CProfileAlti(CProfile* owner, const vesk::String& code, bool terr);

    int GetNumVrts() const { return static_cast<int>(vrts_.size()); }
    TAltiVrt* GetVrt(int i);
    const TAltiVrt* GetVrt(int i) const;
    bool IsEmpty() const { return vrts_.empty(); }
    bool IsTerr() const { return terr_; }
    const vesk::String& GetCode() const { return code_; }
    CProfile* GetProfile() const { return owner_; }
    // First principal vertex after index i (-1 gives the first), or null.
    TAltiVrt* FindNextPrincVrt(int i);
    // The principal vertex after v, or null at the end.
    TAltiVrt* FindNextPrincVrt(TAltiVrt* v);

    void SetDtmPrj(CDtmPrj* prj) { dtm_ = prj; }
    CDtmPrj* GetDtmPrj() const { return dtm_; }
    // The ground sampled from the linked DTM project by the road's Recalc,
    // kept beside the line's own vertices: exports and drawings, which read
    // the vertices, stay as they were.
    const std::vector<TGroundVrt>& GetGround() const { return ground_; }
    void SetGround(std::vector<TGroundVrt> g) { ground_ = std::move(g); }

    // Host-side editing (the builder and tests use these).
    TAltiVrt& AddVrt(const TAltiVrt& v);
    TAltiVrt& AddPrincVrt(double prog, double quota);
    std::vector<TAltiVrt>& Vrts() { return vrts_; }
    const std::vector<TAltiVrt>& Vrts() const { return vrts_; }

private:
    CProfile* owner_;
    vesk::String code_;
    bool terr_;
    CDtmPrj* dtm_ = nullptr;
    std::vector<TAltiVrt> vrts_;
    std::vector<TGroundVrt> ground_;
};

// Elevation of a line at a chainage: linear between principal vertices,
// parabolic inside vertical curves. Outside the line (before its first or
// after its last principal vertex, or on an empty line) the elevation is
// undefined: 1.7e200 with ok = false.
double CalcQuoteAtAltiProg(const CProfileAlti* line, double prog, bool& ok);
