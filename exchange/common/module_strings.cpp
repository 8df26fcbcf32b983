#include "exchange/common/module_strings.h"

vesk::String LoadModuleString(int id) {
    switch (id) {
        case IDS_DISCO_PIENO: return "Errore !/n/nDisco pieno";
        case IDS_CREAZIONE_DXF_DWG: return "Creazione file DXF/DWG";
        case IDS_ACCESSO_NEGATO: return "Errore !/n/nAccesso in scrittura non consentito";
        case IDS_CLOTOIDE_NON_VALIDA:
            return "Non è stato possibile trovare un valore valido per una clotoide. Il risultato finale potrebbe "
                   "non coincidere con quello voluto. Procedere ugualmente?";
        case IDS_PLANIMETRIA: return "Planimetria.";
        default: return "";
    }
}
