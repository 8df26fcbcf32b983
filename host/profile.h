// Profiles: the vertical profile of a road (terrain line, project lines and
// the road's cross sections) and the cross sections themselves. One class
// serves both, as in the host: a section is a CProfile with a name, a
// chainage and a plan trace.
#pragma once
#include <memory>
#include <vector>

#include "host/alti.h"
#include "host/section_template.h"
#include "host/target_drawing.h"
#include "vesk/string.h"

class CPlaniElem;
class CRoad;
class CLibProfile;

// A section code: lines of a section are stored under a code; the name is
// what exports show.
struct TProfileAltiCode {
    vesk::String code;
    vesk::String name;
};

class CProfile {
public:
    // A road profile.
    CProfile(CRoad* road, CLibProfile* lib);
    // A cross section; the profile keeps one reference to the trace.
    CProfile(CRoad* road, CLibProfile* lib, const vesk::String& name, double prog, CPlaniElem* trace);
    ~CProfile();
    CProfile(const CProfile&) = delete;
    CProfile& operator=(const CProfile&) = delete;

    bool IsSection() const { return section_; }
    CRoad* GetRoad() const { return road_; }
    CLibProfile* GetLibProfile() const { return lib_; }

    // Road profile side.
    CProfileAlti* GetTerrAlti() { return terr_.get(); }
    CProfileAlti* GetMainPrjAlti() { return prj_.empty() ? nullptr : prj_.front().get(); }
    int GetNumPrjAlti() const { return static_cast<int>(prj_.size()); }
    CProfileAlti* GetPrjAlti(int i);
    CProfileAlti* AddPrjAlti();
    bool IsSectionPresent() const { return !sections_.empty(); }
    int GetNumSections() const { return static_cast<int>(sections_.size()); }
    CProfile* GetSection(int i);
    CProfile* AddSection(const vesk::String& name, double prog, CPlaniElem* trace);

    // Section side.
    vesk::String GetName() const { return name_; }
    double GetSectionProg() const { return prog_; }
    CPlaniElem* GetTrace() const { return trace_; }
    // The terrain of a section: the vertices of its terrain line.
    int GetNumTerrVrts() const { return terr_ ? terr_->GetNumVrts() : 0; }
    TAltiVrt* GetTerrVrt(int i) { return terr_ ? terr_->GetVrt(i) : nullptr; }
    // Every line of the section, the terrain line (if any) included.
    int GetNumProfileAlti() const { return static_cast<int>(lines_.size()); }
    CProfileAlti* GetProfileAlti(int i);
    CProfileAlti* FindProfileAlti(const vesk::String& code);
    // Adds a line under a code. Points of a terrain code go to the section's
    // single terrain line; a further terrain line is appended to it after an
    // undefined vertex, so its runs stay apart.
    CProfileAlti* AddSectionLine(const vesk::String& code, bool terr);
    // A section that holds an "STF" line has a template; others have none.
    CSectionTemplate* GetSectionTemplate();

private:
    CRoad* road_;
    CLibProfile* lib_;
    bool section_;
    vesk::String name_;
    double prog_ = 0.0;
    CPlaniElem* trace_ = nullptr;
    std::unique_ptr<CProfileAlti> terr_;
    std::vector<std::unique_ptr<CProfileAlti>> prj_;   // road profile: project lines
    std::vector<CProfileAlti*> lines_;                 // section: every line in order added
    std::vector<std::unique_ptr<CProfileAlti>> own_;   // section: owned design lines
    std::vector<std::unique_ptr<CProfile>> sections_;  // road profile: its sections
    CSectionTemplate template_;
};

// Profiles and section codes. A new document holds the codes "TER" (name
// "TERRENO", the terrain of sections), "PRO" and "STF".
class CLibProfile : public CTargetDrawingHolder {
public:
    CLibProfile();
    ~CLibProfile();

    const std::vector<TProfileAltiCode*>& GetSectionCodes() const { return codeView_; }
    TProfileAltiCode* FindSectionAltiCode(const vesk::String& code) const;
    TProfileAltiCode* AddSectionCode(const vesk::String& code, const vesk::String& name);
    // Is a line of this code terrain? ("TER")
    static bool IsTerrCode(const vesk::String& code) { return code == "TER"; }

private:
    std::vector<std::unique_ptr<TProfileAltiCode>> codes_;
    std::vector<TProfileAltiCode*> codeView_;
};
