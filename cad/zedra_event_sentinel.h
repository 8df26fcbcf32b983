// CZedraEventSentinel: while one lives, the engine's change notifications are
// held back. Sentinels nest; when the outermost one ends, the listener is
// told once if anything changed meanwhile.
#pragma once

class CZedraEng;

class CZedraEventSentinel {
public:
    explicit CZedraEventSentinel(CZedraEng* eng);  // a null engine is allowed
    ~CZedraEventSentinel();
    CZedraEventSentinel(const CZedraEventSentinel&) = delete;
    CZedraEventSentinel& operator=(const CZedraEventSentinel&) = delete;

private:
    CZedraEng* eng_;
};
