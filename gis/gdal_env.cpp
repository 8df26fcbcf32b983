#include "gis/gdal_env.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>

#include <mutex>

namespace roadx::gis {

namespace {

// Settings for the thread while a scope lives, with their old values.
constexpr const char* kSettings[][2] = {
    {"GDAL_PAM_ENABLED", "NO"},         // no .aux.xml beside a raster
    {"OGR_SQLITE_JOURNAL", "OFF"},      // no -journal beside a GeoPackage
    {"OGR_SQLITE_SYNCHRONOUS", "OFF"},  // the file is synced once, at the end
};

void CPL_STDCALL Collect(CPLErr level, CPLErrorNum, const char* msg) {
    if (level < CE_Failure) return;
    auto* errors = static_cast<std::vector<std::string>*>(CPLGetErrorHandlerUserData());
    if (errors && msg) errors->push_back(msg);
}

}  // namespace

void EnsureGdal() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

CGdalScope::CGdalScope() {
    EnsureGdal();
    CPLErrorReset();
    CPLPushErrorHandlerEx(Collect, &errors_);
    for (const auto& s : kSettings)
        CPLSetThreadLocalConfigOption(s[0], s[1]);
}

CGdalScope::~CGdalScope() {
    for (const auto& s : kSettings)
        CPLSetThreadLocalConfigOption(s[0], nullptr);
    CPLPopErrorHandler();
}

std::string CGdalScope::LastError() const { return errors_.empty() ? std::string() : errors_.back(); }

}  // namespace roadx::gis
