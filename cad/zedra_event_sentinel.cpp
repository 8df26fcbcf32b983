#include "cad/zedra_event_sentinel.h"

#include "cad/zedra_eng.h"

CZedraEventSentinel::CZedraEventSentinel(CZedraEng* eng) : eng_(eng) {
    if (eng_) eng_->BeginHold();
}

CZedraEventSentinel::~CZedraEventSentinel() {
    if (eng_) eng_->EndHold();
}
