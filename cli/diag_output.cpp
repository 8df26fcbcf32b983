#include "cli/diag_output.h"

namespace roadx::cli {

std::string DiagnosticLine(const vesk::diag::TRecord& r) {
    std::string line = "roadx: ";
    line += vesk::diag::SeverityName(r.severity);
    line += ": ";
    if (!r.file.empty()) {
        line += r.file;
        if (r.line > 0) line += ":" + std::to_string(r.line);
        line += ": ";
    }
    line += std::to_string(r.count) + " " + r.message;
    if (!r.instead.empty()) line += "; " + r.instead;
    if (!r.element.empty()) line += " (first at " + r.element + ")";
    line += " [" + r.kind + "]";
    return line;
}

nlohmann::json DiagnosticJson(const vesk::diag::TRecord& r) {
    return {{"severity", vesk::diag::SeverityName(r.severity)},
            {"kind", r.kind},
            {"file", r.file},
            {"line", r.line},
            {"offset", r.offset},
            {"element", r.element},
            {"message", r.message},
            {"instead", r.instead},
            {"count", r.count}};
}

}  // namespace roadx::cli
