// What a LandXML file holds, as the import dialog shows it.
#pragma once
#include <vector>

#include "landxml_import/xml_reader.h"
#include "vesk/string.h"

struct TLandXmlContents {
    std::vector<CString> surfaceNames;        // every Surfaces/Surface, duplicates kept
    std::vector<CString> alignmentNames;      // every Alignments/Alignment, duplicates kept
    bool hasPointData = false;                // CgPoints, or a Survey with a setup
    std::vector<CString> crossSectSurfNames;  // CrossSectSurf names, first appearance, no duplicates
};

TLandXmlContents ScanLandXml(const XmlSection& root);
