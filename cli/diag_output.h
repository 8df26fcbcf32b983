// The diagnostics of a run as the user sees them: one line per kind on
// standard error, and as JSON records for `info --json`.
#pragma once
#include <nlohmann/json.hpp>
#include <string>

#include "vesk/diagnostics.h"

namespace roadx::cli {

// "roadx: warning: survey.xml:1234: 2945 RawObservation not imported (...)
// [instead] at ELEMENT [kind]", without a line break.
std::string DiagnosticLine(const vesk::diag::TRecord& r);
// {"severity","kind","file","line","offset","element","message","instead","count"}.
nlohmann::json DiagnosticJson(const vesk::diag::TRecord& r);

}  // namespace roadx::cli
