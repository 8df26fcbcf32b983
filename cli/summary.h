// What a document holds, as JSON (roadx info --json) and as text.
#pragma once
#include <nlohmann/json.hpp>
#include <string>

class CVantriDoc;

namespace roadx::cli {

nlohmann::json DocumentSummary(CVantriDoc& doc);
std::string SummaryText(const nlohmann::json& s);

}  // namespace roadx::cli
