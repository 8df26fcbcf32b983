// Section templates as the reference host models them: a list of elements
// (carriageway, shoulder, slope, ...). A section that holds an "STF" line has
// a template; the RD3 writer reads its slope elements and sub-type names.
#pragma once
#include <vector>

#include "vesk/string.h"

enum enumElemSubType {
    ELEM_SUBTYPE_NONE = 0,
    ELEM_SUBTYPE_CARREGGIATA = 1,
    ELEM_SUBTYPE_BANCHINA = 2,
    ELEM_SUBTYPE_MARCIAPIEDE = 3,
    ELEM_SUBTYPE_SCARPATA = 4,
    ELEM_SUBTYPE_FOSSO = 5,
    ELEM_SUBTYPE_ARGINELLO = 6,
};

// Display name of a sub-type ("" for none or an unknown value).
vesk::String GetNameFromSubType(enumElemSubType t);

class CSectionElem {
public:
    enum Type { GENERIC = 0, CARREGGIATA = 1, BANCHINA = 2, MARCIAPIEDE = 3, SCARPATA = 4 };
    enum ViewMode { VIEW_ALWAYS = 0, VIEW_CUT = 1, VIEW_FILL = 2 };

    CSectionElem(int type, int viewMode, double gradient) : type_(type), viewMode_(viewMode), gradient_(gradient) {}
    // Element type; 4 is a slope, whose gradient is in per cent.
    int GetType() const { return type_; }
    int GetViewMode() const { return viewMode_; }
    double GetGradient() const { return gradient_; }

private:
    int type_;
    int viewMode_;
    double gradient_;
};

class CSectionTemplate {
public:
    int GetNumElems() const { return static_cast<int>(elems_.size()); }
    CSectionElem* GetElem(int i) { return i >= 0 && i < GetNumElems() ? &elems_[static_cast<size_t>(i)] : nullptr; }
    void AddElem(const CSectionElem& e) { elems_.push_back(e); }

private:
    std::vector<CSectionElem> elems_;
};
