#include "vesk/source_event.h"

namespace vesk {

void CSourceEvent::EndEvent() {
    if (depth_ == 0) return;  // an unbalanced end is ignored, never underflows
    if (--depth_ > 0) return;
    ++batches_;
    for (auto& l : listeners_) l();
}

}  // namespace vesk
