// Point clouds drawn as points: each defined point as a POINT, in the drawing
// of the cloud's own name (made, with a colour of its own, when the engine
// lacks it). Drawing belongs here, not to the cloud: the host's documents know
// nothing of the display.
#pragma once

class CCld;
class CZedraEng;

namespace roadx::display {

// Nothing happens without an engine.
void DrawCloud(const CCld& cld, CZedraEng* eng);

}  // namespace roadx::display
