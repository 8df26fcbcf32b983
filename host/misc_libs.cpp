#include "host/misc_libs.h"

gis::CTheme* gis::CLibGis::AddTheme(const vesk::String& name) {
    themes_.push_back(std::make_unique<CTheme>(name));
    return themes_.back().get();
}

CCld* CLibCld::AddCld(const vesk::String& name) {
    clds_.push_back(std::make_unique<CCld>(name));
    return clds_.back().get();
}
