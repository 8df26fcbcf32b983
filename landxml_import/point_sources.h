// Coordinates of survey point elements: the element's own three numbers, or
// the CgPoint its "pntRef" names, looked up first among the CgPoints of the
// LandXML root and then among those of the current Survey. A point found
// through a reference is recorded in the referenced-names set.
#pragma once
#include <string_view>
#include <unordered_map>

#include "landxml_import/readers.h"

// The CgPoints/CgPoint elements of one source (the root or a Survey), found
// by name: the first element of each name, in document order. Built on the
// first lookup, so a source nobody asks about costs nothing.
class CCgPointIndex {
public:
    explicit CCgPointIndex(const XmlSection& source) : source_(source) {}
    // The first CgPoint of the source named `name`.
    bool FindCgPoint(std::string_view name, XmlSection& found);

private:
    XmlSection source_;
    bool built_ = false;
    std::unordered_map<std::string_view, XmlSection> first_;
};

// The sources searched for a reference, in order.
struct TPointSources {
    CCgPointIndex* root = nullptr;
    CCgPointIndex* survey = nullptr;
};

// A point in LandXML order, in metres.
struct TNorthEastElev {
    double north = 0.0;
    double east = 0.0;
    double elev = 0.0;
};

// The coordinates of the first source whose point of that name holds exactly
// three numbers.
bool FindCgPointCoords(const TPointSources& sources, std::string_view name, bool isMetric, TNorthEastElev& out);

// The coordinates of a survey point element (InstrumentPoint, TargetPoint):
// its own text when that holds exactly three numbers, else its "pntRef"
// resolved through the sources (recorded in `referenced`).
bool ResolvePoint(const XmlSection& elem, const TPointSources& sources, bool isMetric, PointTable& referenced,
                  TNorthEastElev& out);

// Exactly three numbers in an element's text.
bool ReadThreeNumbers(const XmlSection& elem, bool isMetric, TNorthEastElev& out);
