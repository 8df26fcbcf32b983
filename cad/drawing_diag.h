// Diagnostics of one drawing save: what a DXF or DWG file cannot carry of
// the engine's drawing as it stands (names changed to be valid, made unique
// or escaped; texts changed or escaped).
//
// The save functions stay as the host calls them. A caller that wants the
// records opens a scope around the save (one per thread); the writers
// report through it once the file's object graph is made, before the file
// is created, so that a caller that refuses warnings gets nothing written.
#pragma once
#include <string>

#include "vesk/diagnostics.h"

class CZedraEng;

namespace roadx::cad {

namespace dxf {
struct TGraph;
}

class CDrawingDiagScope {
public:
    // `file` names the output in the records; with `refuse`, a save that
    // reports a warning stops before writing (kSaveRefused).
    CDrawingDiagScope(vesk::diag::CSink* sink, std::string file, bool refuse);
    ~CDrawingDiagScope();
    CDrawingDiagScope(const CDrawingDiagScope&) = delete;
    CDrawingDiagScope& operator=(const CDrawingDiagScope&) = delete;

    static CDrawingDiagScope* Current();

    vesk::diag::CSink* sink;
    std::string file;
    bool refuse;

private:
    CDrawingDiagScope* previous_;
};

// Reports what the file of graph `g` changes of the engine's names and
// texts. `dwg`: texts are written as names are (code page 1252, escapes
// beyond it); otherwise in ASCII with escapes. True when the save must
// stop: the scope refuses warnings and one was reported.
bool DiagnoseDrawing(const CZedraEng& eng, const dxf::TGraph& g, bool dwg);

}  // namespace roadx::cad
