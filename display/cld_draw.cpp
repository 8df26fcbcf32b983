#include "display/cld_draw.h"

#include "display/dis_common.h"
#include "host/misc_libs.h"

namespace roadx::display {

void DrawCloud(const CCld& cld, CZedraEng* eng) {
    if (!eng) return;
    const std::string name = cld.GetName().empty() ? std::string("Nuvola") : std::string(cld.GetName());
    DrawingHandle d = eng->GetDrawingFromName(name);
    if (d == 0) d = AddNamedDrawing(*eng, name);
    if (d == 0) return;
    roadx::cad::TEntAttr a;
    a.drawing = d;
    a.tag = kTagCld;
    for (const auto& p : cld.Points())
        if (IsDefinedXY(p.x, p.y) && IsDefinedValue(p.z)) eng->AddPoint(a, p);
}

}  // namespace roadx::display
