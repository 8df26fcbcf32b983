// Which CAD drawing (layer) an object of the document is drawn into: a 64-bit
// handle issued by the CAD engine, 0 for none.
#pragma once
#include <cstdint>

using DrawingHandle = uint64_t;

class CTargetDrawingHolder {
public:
    DrawingHandle GetTargetDrawing() const { return target_; }
    void SetTargetDrawing(DrawingHandle h) { target_ = h; }

private:
    DrawingHandle target_ = 0;
};
