// Point clouds draw themselves: each defined point as a POINT, in the
// drawing of the cloud's own name (made, with a colour of its own, when the
// engine lacks it).
#include "cad/display/dis_common.h"
#include "host/misc_libs.h"

using namespace roadx::display;

void CCld::Draw(CZedraEng* eng) const {
    if (!eng) return;
    const std::string name = name_.empty() ? std::string("Nuvola") : std::string(name_);
    DrawingHandle d = eng->GetDrawingFromName(name);
    if (d == 0) d = AddNamedDrawing(*eng, name);
    if (d == 0) return;
    zedra::TEntAttr a;
    a.drawing = d;
    a.tag = kTagCld;
    for (const auto& p : pts_)
        if (IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z)) eng->AddPoint(a, p);
}
