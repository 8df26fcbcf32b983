// CDisPtNome: the labels of named points (the points of the point groups):
// name, elevation and description, as the point-name options ask, in the
// drawing of the point library.
#pragma once
#include "display/dis_common.h"
#include "host/misc_libs.h"

class COpzListDisPtNome {
public:
    COpzDisEgn& GetOpzPun() { return pun_; }
    const COpzDisEgn& GetOpzPun() const { return pun_; }

private:
    COpzDisEgn pun_;
};

class CDisPtNome : public roadx::display::CDisBase {
public:
    // Starts from the document's point display options.
    CDisPtNome(CZedraEng* eng, IVantriDati* doc);

    COpzListDisPtNome* GetOpzListNew() { return &opz_; }
    // b3D: labels at the points' elevations (else at 0). visibleOnly: points
    // whose group drawing is hidden get no labels.
    void CreaTutto(bool b3D, bool visibleOnly);
    // Removes the labels drawn before, then draws them again.
    void RiCreaTutto(bool b3D, bool visibleOnly);

private:
    COpzListDisPtNome opz_;
};
