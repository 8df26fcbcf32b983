// How the LandXML import places a road's plan elements.
#pragma once

namespace roadx::landxml {

// Attributes: by the exchange rules, from each element's station, length,
// radius and directions (the default; what the host gets).
// Points: each element's start tangent and sweep from the coordinates the
// file states for it (Start, End, Center, PI), for files whose directions
// mean something other than what the rules read (plan_points.h).
enum class EPlanGeometry { Attributes, Points };

}  // namespace roadx::landxml
