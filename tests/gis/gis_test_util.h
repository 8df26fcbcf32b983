// Helpers of the GIS tests: a temporary folder, the command line's own
// import and export in-process, the document's objects counted the way the
// layers are documented (docs/gis.md), and GDAL's Python bindings reading
// files back (gis_dump.py).
#pragma once
#include <stdlib.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/convert.h"
#include "cli/session.h"
#include "host/document.h"
#include "tests/cli/run_command.h"
#include "tests/common/test_data.h"
#include "vesk/diagnostics.h"

namespace gistest {

class CTempDir {
public:
    CTempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "roadx_gis_XXXXXX").string();
        if (mkdtemp(tmpl.data()) != nullptr) path_ = tmpl;
    }
    ~CTempDir() {
        std::error_code ec;
        if (!path_.empty()) std::filesystem::remove_all(path_, ec);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    const std::string& Path() const { return path_; }
    // The names in the folder, sorted (hidden ones included).
    std::vector<std::string> Names() const {
        std::vector<std::string> out;
        for (const auto& e : std::filesystem::directory_iterator(path_)) out.push_back(e.path().filename().string());
        std::sort(out.begin(), out.end());
        return out;
    }

private:
    std::string path_;
};

// One import and export through the command line's code, the document kept
// for the expectations.
struct TConverted {
    roadx::cli::ImportOptions imp;
    roadx::cli::ExportOptions exp;
    std::unique_ptr<roadx::cli::Session> session;
    TExchangeStatus status;
    CVantriDoc& Doc() { return session->Doc(); }
};

inline std::unique_ptr<TConverted> Convert(const std::vector<std::string>& inputs, const std::string& output,
                                          const std::string& key, const std::string& crs = "",
                                          const std::string& stated = "", double cell = 0.0) {
    auto c = std::make_unique<TConverted>();
    c->imp.quiet = true;
    c->imp.yes = true;
    c->exp.output = output;
    c->exp.crs = crs;
    c->exp.statedCrs = stated;
    c->exp.statedBy = inputs.empty() ? "" : inputs.front();
    c->exp.cell = cell;
    c->session = std::make_unique<roadx::cli::Session>(c->imp, c->exp);
    c->session->ImportAll(inputs);
    c->status = roadx::cli::ExportFile(*c->session, *roadx::exchange::FindFormat(key), c->exp);
    return c;
}

inline std::string Python() { return "/usr/bin/python3"; }
inline std::string Script(const std::string& name) { return roadx::test::SourcePath("tests/gis/" + name); }

// The dataset as gis_dump.py reads it; null JSON when the script fails.
inline nlohmann::json Dump(const std::string& path, int maxFeatures = 1000000) {
    const clitest::TCommandResult r = clitest::RunCommand(Python() + " " + clitest::ShellQuote(Script("gis_dump.py")) +
                                                          " " + clitest::ShellQuote(path) + " " +
                                                          std::to_string(maxFeatures));
    if (r.exitCode != 0) return nullptr;
    return nlohmann::json::parse(r.output, nullptr, false);
}

inline bool Def(double v) { return std::isfinite(v) && v < 8.5e199; }
inline bool Def(const PNT_3D& p) { return Def(p.x) && Def(p.y) && Def(p.z); }

}  // namespace gistest
