// The layer groups: each reads one part of the document through its
// accessors and writes its layers' features (docs/gis.md).
#pragma once

class IVantriDati;

namespace roadx::gis {

class CVectorWriter;

// alignments, alignment_elements, cross_sections, cross_section_lines
void WriteRoadLayers(IVantriDati& doc, CVectorWriter& w);
// tin, surface_boundaries, breaklines, contours (one every interval metres)
void WriteSurfaceLayers(IVantriDati& doc, CVectorWriter& w, double contourInterval);
// points, survey_stations, observations, gps_points
void WriteSurveyLayers(IVantriDati& doc, CVectorWriter& w);

}  // namespace roadx::gis
