#include "exchange/gis_module.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

// Where the build wrote the module (a generated source, so that no compile
// line holds the build's path).
extern const char* const kRoadxGisModuleBuilt;

namespace roadx::exchange {

namespace {

struct TLoaded {
    const gis::TGisCalls* calls = nullptr;
    std::string error;
};

std::string ProgramFolder() {
    char buf[4096];
    const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0) return "";
    const std::string path(buf, static_cast<size_t>(n));
    return path.substr(0, path.rfind('/'));
}

TLoaded LoadFrom(const std::string& path) {
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) return {nullptr, "cannot load the GIS module: " + std::string(::dlerror())};
    using TEntry = const gis::TGisCalls* (*)();
    const auto entry = reinterpret_cast<TEntry>(::dlsym(module, "roadx_gis_calls"));
    if (!entry) return {nullptr, "the GIS module " + path + " has no entry point"};
    const gis::TGisCalls* calls = entry();
    if (!calls || calls->abi != gis::kGisAbi)
        return {nullptr, "the GIS module " + path + " belongs to another build of roadx"};
    return {calls, ""};
}

TLoaded Load() {
    // A module put elsewhere is named by the environment; then only there.
    if (const char* named = std::getenv("ROADX_GIS_MODULE"); named && *named) {
        if (::access(named, R_OK) == 0) return LoadFrom(named);
        return {nullptr, "the GIS module " + std::string(named) + " (ROADX_GIS_MODULE) cannot be read"};
    }
    const std::string folder = ProgramFolder();
    const std::vector<std::string> places = {folder + "/roadx_gis.so", kRoadxGisModuleBuilt};
    for (const std::string& p : places)
        if (!p.empty() && p[0] == '/' && ::access(p.c_str(), R_OK) == 0) return LoadFrom(p);
    return {nullptr, "the GIS module roadx_gis.so is not beside the roadx program (in " + folder + ")"};
}

}  // namespace

const gis::TGisCalls* GisCalls(std::string& error) {
    static const TLoaded loaded = Load();
    error = loaded.error;
    return loaded.calls;
}

}  // namespace roadx::exchange
