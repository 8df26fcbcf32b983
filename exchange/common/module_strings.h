// The module's string table. The "/n/n" in some texts is slash and letter n,
// kept as it stands, not a line break.
#pragma once
#include "vesk/string.h"

enum {
    IDS_DISCO_PIENO = 20000,
    IDS_CREAZIONE_DXF_DWG = 20001,
    IDS_ACCESSO_NEGATO = 20002,
    IDS_CLOTOIDE_NON_VALIDA = 20003,
    IDS_PLANIMETRIA = 20004,
};

// The text of a string resource; "" for an unknown id.
vesk::String LoadModuleString(int id);
