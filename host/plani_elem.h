// Horizontal alignment elements: straights, circular arcs, clothoids from or
// to a straight, and continuity clothoids between two radii. Elements are
// reference-counted: make them with new, release them with SubReference.
//
// Conventions: distances ("prog" arguments of the virtual queries) are
// measured from the element's start, 0..GetLength(). GetProg() is the
// chainage of the start along the road. Tangents are unit vectors; the normal
// given by GetPerp is the unit vector to the RIGHT of the running direction,
// so positive offsets lie right of the axis (as in LandXML cross sections).
// The queries accept distances outside 0..GetLength() and continue the
// element's geometry there (GetRad excepted, which clamps). Points and
// tangents are worked out in long double (plani_curve.h): on elements of a
// few kilometres they stay far within a nanometre and 1e-12 rad of the exact
// curve, however many times a clothoid winds.
//
// Reverse() turns the running direction round: the start moves to the old
// end, the start tangent is the old end tangent negated, the turning sense
// flips, an entrance clothoid becomes an exit one and a continuity clothoid
// swaps R1 and R2. GetProg() is left as it is: the chain owner decides the
// chainages.
//
// Bad input never fails: a start tangent that is zero or not finite is taken
// as +x (1, 0); a length, radius, sweep or parameter A that is negative, zero
// (where zero makes no curve) or NaN gives an element of length 0 at its
// start point with no direction change, whose radius reads as infinite when
// the radius or A was the bad value.
#pragma once
#include <vector>

#include "host/plani_curve.h"
#include "vesk/geom.h"
#include "vesk/refcounter.h"

using vesk::geom::PNT_2D;
using vesk::geom::VECTOR_2D;

class CPlaniElem : public vesk::IRefCounter {
public:
    enum Type { RETTIFILO = 0, ARCO = 1, CLOTOIDE = 2, CLOTOIDE_CONT = 3 };

    CPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg);

    double GetProg() const { return prog_; }
    void SetProg(double prog) { prog_ = prog; }
    const PNT_2D& GetStartPnt() const { return start_; }
    const VECTOR_2D& GetStartTg() const { return startTg_; }
    // Unit normal to the right of the running direction at distance prog.
    void GetPerp(double prog, VECTOR_2D& perp) const;
    // Same kind, chainage, start, direction and own data, numbers equal
    // within the chainage tolerance.
    bool Equals(const CPlaniElem* other) const;

    virtual void Reverse() = 0;
    virtual Type GetType() const = 0;
    virtual double GetLength() const = 0;
    virtual PNT_2D GetEndPnt() const;
    // Point at a distance along and an offset across (positive = right).
    virtual void GetPos(double prog, double offset, PNT_2D& pnt) const;
    virtual void GetPos(double prog, PNT_2D& pnt) const = 0;
    virtual void GetTg(double prog, VECTOR_2D& tg) const = 0;
    // Radius at a distance; a straight (or a clothoid's straight end) gives
    // infinity.
    virtual double GetRad(double prog) const = 0;
    virtual double GetMinRad() const = 0;
    virtual bool IsLeftTurn() const = 0;
    virtual CPlaniElem* Clone() const = 0;
    // Turns the element about its start to a new start direction; its shape
    // stays.
    virtual void SetStartTg(const VECTOR_2D& tg);
    // Total change of direction, radians, always >= 0.
    virtual double GetAngleDev() const = 0;
    // Projects a point: distance along and offset (positive = right). False
    // when the foot of the perpendicular falls outside the element; a foot
    // beyond an end by no more than the chainage tolerance counts as that
    // end. Where several feet exist (a spiral winding round the point), the
    // nearest one.
    virtual bool GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const;

protected:
    ~CPlaniElem() override = default;
    virtual bool InternalEquals(const CPlaniElem* other) const = 0;

    double prog_;
    PNT_2D start_;
    VECTOR_2D startTg_;
};

class CRettifiloPlaniElem : public CPlaniElem {
public:
    CRettifiloPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& dir, double length);

    void Reverse() override;
    Type GetType() const override { return RETTIFILO; }
    double GetLength() const override { return length_; }
    void GetPos(double prog, double offset, PNT_2D& pnt) const override;
    void GetPos(double prog, PNT_2D& pnt) const override;
    void GetTg(double prog, VECTOR_2D& tg) const override;
    double GetRad(double prog) const override;
    double GetMinRad() const override;
    bool IsLeftTurn() const override { return false; }
    CPlaniElem* Clone() const override;
    double GetAngleDev() const override { return 0.0; }
    bool GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const override;

protected:
    bool InternalEquals(const CPlaniElem* other) const override;

private:
    double length_;
};

// Sweeps above 2π are kept (more than one full turn); an infinite radius
// counts as invalid.
class CArcPlaniElem : public CPlaniElem {
public:
    CArcPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double radius, double angle,
                  bool ccw);

    double GetAngle() const { return angle_; }
    double GetRadius() const { return radius_; }
    PNT_2D GetCenter() const;

    void Reverse() override;
    Type GetType() const override { return ARCO; }
    double GetLength() const override { return angle_ > 0.0 ? radius_ * angle_ : 0.0; }
    void GetPos(double prog, double offset, PNT_2D& pnt) const override;
    void GetPos(double prog, PNT_2D& pnt) const override;
    void GetTg(double prog, VECTOR_2D& tg) const override;
    double GetRad(double prog) const override;
    double GetMinRad() const override;
    bool IsLeftTurn() const override { return ccw_; }
    CPlaniElem* Clone() const override;
    double GetAngleDev() const override { return angle_; }
    bool GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const override;

protected:
    bool InternalEquals(const CPlaniElem* other) const override;

private:
    roadx::plani::LinearCurve Curve() const;

    double radius_;
    double angle_;
    bool ccw_;
};

// Clothoid helpers. k scales the parameter: the clothoid built from A and k
// is the one of parameter A/√k, so A² = k·R·L and, between two radii,
// A² = k·L / |1/R2 − 1/R1|. roadx always passes k = 1; a k that is not
// finite and positive counts as 1.
class CClotoide {
public:
    CClotoide() = default;
    explicit CClotoide(double a) : a_(a) {}
    double GetA() const { return a_; }
    void SetA(double a) { a_ = a; }
    // A = √(k·R·L). 0 when R is not finite and positive, L not finite and
    // >= 0, or the result overflows.
    static double ComputeAFromRadLen(double k, double R, double L);

private:
    double a_ = 0.0;
};

class CClotoideContinuita {
public:
    // A = √(k·L / |1/R2 − 1/R1|). Radii must be positive (an infinite one
    // means a straight end), L finite and >= 0; 0 otherwise, and also when
    // R1 equals R2 (no finite A) or the result overflows.
    static double ComputeAFromR1R2Len(double k, double R1, double R2, double L);
};

// Clothoid between a straight and radius R. entrance: curvature grows from 0
// at the start to 1/R at the end; exit: falls from 1/R to 0. Its length is
// A²/(k·R); A and R must be finite and positive.
class CClotPlaniElem : public CPlaniElem {
public:
    CClotPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double k, double A, double R,
                   bool ccw, bool entrance);

    const CClotoide& GetClotoide() const { return clot_; }
    bool IsEntrance() const { return entrance_; }
    double GetR() const { return radius_; }

    void Reverse() override;
    Type GetType() const override { return CLOTOIDE; }
    double GetLength() const override;
    using CPlaniElem::GetPos;
    void GetPos(double prog, PNT_2D& pnt) const override;
    void GetTg(double prog, VECTOR_2D& tg) const override;
    double GetRad(double prog) const override;
    double GetMinRad() const override;
    bool IsLeftTurn() const override { return ccw_; }
    CPlaniElem* Clone() const override;
    void SetStartTg(const VECTOR_2D& tg) override;
    double GetAngleDev() const override;
    bool GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const override;

protected:
    bool InternalEquals(const CPlaniElem* other) const override;

private:
    void Setup();

    double k_;
    CClotoide clot_;
    double radius_;
    bool ccw_;
    bool entrance_;
    // Derived in Setup: length (0 when the data make no clothoid) and the
    // axis in the local frame.
    double length_ = 0.0;
    roadx::plani::LinearCurve curve_;
};

// Clothoid between two radii R1 (start) and R2 (end), same sense;
// either may be the larger. Its length is A²·|1/R2 − 1/R1|/k; A must be
// finite and positive, the radii positive (infinite meaning a straight end).
class CClotContPlaniElem : public CPlaniElem {
public:
    CClotContPlaniElem(double prog, const PNT_2D& start, const VECTOR_2D& startTg, double k, double A, double R1,
                       double R2, bool ccw);

    const CClotoide& GetClotoide() const { return clot_; }
    double GetR1() const { return r1_; }
    double GetR2() const { return r2_; }

    void Reverse() override;
    Type GetType() const override { return CLOTOIDE_CONT; }
    double GetLength() const override;
    using CPlaniElem::GetPos;
    void GetPos(double prog, PNT_2D& pnt) const override;
    void GetTg(double prog, VECTOR_2D& tg) const override;
    double GetRad(double prog) const override;
    double GetMinRad() const override;
    bool IsLeftTurn() const override { return ccw_; }
    CPlaniElem* Clone() const override;
    void SetStartTg(const VECTOR_2D& tg) override;
    double GetAngleDev() const override;
    bool GetProgAndOffset(const PNT_2D& p, double& prog, double& offset) const override;

protected:
    bool InternalEquals(const CPlaniElem* other) const override;

private:
    void Setup();

    double k_;
    CClotoide clot_;
    double r1_;
    double r2_;
    bool ccw_;
    // Derived in Setup, as for CClotPlaniElem.
    double length_ = 0.0;
    roadx::plani::LinearCurve curve_;
};

// The element of a chain that holds a chainage, and the distance into it
// (clamped to 0..GetLength()). Where one element ends and the next starts,
// the next one is given. Chainages within the chainage tolerance
// a − (1e-12 + 1e-12·|a|) of an element's ends count as inside it; before
// the first element, past the last, or in a gap, the result is false.
// Null entries are skipped; elem and local may be null.
bool GetElemAtProg(const std::vector<CPlaniElem*>& elems, double prog, CPlaniElem** elem, double* local);
