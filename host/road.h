// Roads: a name, a start chainage, the plan chain of reference-counted
// elements, the vertical profile with its cross sections.
#pragma once
#include <memory>
#include <vector>

#include "host/plani_elem.h"
#include "host/profile.h"
#include "host/target_drawing.h"
#include "vesk/source_event.h"
#include "vesk/string.h"

class CLibRoad;

// One link of the plan chain; holds one reference to its element.
class CRoadPlaniElem {
public:
    explicit CRoadPlaniElem(CPlaniElem* elem) : elem_(elem) {}
    ~CRoadPlaniElem() { if (elem_) elem_->SubReference(); }
    CRoadPlaniElem(const CRoadPlaniElem&) = delete;
    CRoadPlaniElem& operator=(const CRoadPlaniElem&) = delete;

    CPlaniElem* GetElem() const { return elem_; }
    CRoadPlaniElem* GetNextElem() const { return next_; }
    void SetNextElem(CRoadPlaniElem* n) { next_ = n; }

private:
    CPlaniElem* elem_;
    CRoadPlaniElem* next_ = nullptr;
};

class COpzRoadRecalc {
public:
    void SetBlockRecalc(bool b) { block_ = b; }
    bool IsBlockRecalc() const { return block_; }

private:
    bool block_ = false;
};

class CRoadChangeContext : public vesk::CSourceEvent {};

class CRoad : public CTargetDrawingHolder {
public:
    CRoad(CLibRoad* lib, CLibProfile* libProfile, const vesk::String& name, double startProg);
    ~CRoad();
    CRoad(const CRoad&) = delete;
    CRoad& operator=(const CRoad&) = delete;

    const vesk::String& GetName() const { return name_; }
    double GetStartProg() const { return startProg_; }
    // End chainage of the last element; the start chainage when empty.
    double GetEndProg() const;
    bool IsEmpty() const { return links_.empty(); }
    int GetNumRoadPlaniElems() const { return static_cast<int>(links_.size()); }
    CRoadPlaniElem* GetFirstRoadPlaniElem() const { return links_.empty() ? nullptr : links_.front().get(); }
    // The chain in order; the pointers stay owned by the road (borrowed).
    std::vector<CPlaniElem*> RetrieveLinkedPlaniElems() const;
    CProfile* GetRoadProfile() { return &profile_; }
    int GetNumSections() const { return profile_.GetNumSections(); }
    CProfile* GetSection(int i) { return profile_.GetSection(i); }
    COpzRoadRecalc* GetOpzRoadRecalc() { return &opzRecalc_; }
    // Recalculation: counts the runs and, when the terrain line is linked to
    // a DTM project, samples the ground along the axis into the terrain
    // line's ground (CProfileAlti::GetGround); it does nothing while
    // recalculation is blocked.
    void Recalc();
    int GetRecalcCount() const { return recalcCount_; }
    bool GetImportFlag() const { return importFlag_; }
    void SetImportFlag(bool b) { importFlag_ = b; }

    // Host-side editing: appends an element (takes over one reference).
    void AppendElem(CPlaniElem* elem);
    void ClearPlani() { links_.clear(); }

private:
    void SampleTerrain();

    CLibRoad* lib_;
    vesk::String name_;
    double startProg_;
    std::vector<std::unique_ptr<CRoadPlaniElem>> links_;
    CProfile profile_;
    COpzRoadRecalc opzRecalc_;
    int recalcCount_ = 0;
    bool importFlag_ = false;
};

class CLibRoad {
public:
    unsigned GetNumRoads() const { return static_cast<unsigned>(roads_.size()); }
    CRoad* GetRoad(unsigned i) const { return i < roads_.size() ? roads_[i].get() : nullptr; }
    CRoadChangeContext* GetContext() { return &context_; }

    CRoad* AddRoad(CLibProfile* libProfile, const vesk::String& name, double startProg);
    bool RemoveRoad(CRoad* road);

private:
    std::vector<std::unique_ptr<CRoad>> roads_;
    CRoadChangeContext context_;
};
