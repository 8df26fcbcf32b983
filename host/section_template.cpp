#include "host/section_template.h"

vesk::String GetNameFromSubType(enumElemSubType t) {
    switch (t) {
        case ELEM_SUBTYPE_CARREGGIATA: return "Carreggiata";
        case ELEM_SUBTYPE_BANCHINA: return "Banchina";
        case ELEM_SUBTYPE_MARCIAPIEDE: return "Marciapiede";
        case ELEM_SUBTYPE_SCARPATA: return "Scarpata";
        case ELEM_SUBTYPE_FOSSO: return "Fosso";
        case ELEM_SUBTYPE_ARGINELLO: return "Arginello";
        default: return "";
    }
}
