// The HTML report: one self-contained page that shows a document (plan,
// long profiles, cross sections, summary, warnings) with the data behind
// the pictures embedded as JSON (id "roadx-data", see docs/report.md).
#pragma once
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "exchange/common/status.h"

class CVantriDoc;
class CDtmPrj;
namespace vesk::diag { class CSink; }

namespace roadx::report {

struct TReportInput {
    std::vector<std::string> inputs;  // the files the document came from
    nlohmann::json summary;           // what `info --json` prints (may be null)
    std::string summaryText;          // what `info` prints
    // The ground of roads whose terrain line is linked to no DTM project
    // (null: such roads have no ground).
    const CDtmPrj* terrain = nullptr;
};

// Surfaces with at most this many triangles are drawn face by face in the
// plan; larger ones only by their contours, boundaries and breaklines.
inline constexpr size_t kMaxDrawnFaces = 5000;

// The data behind the pictures.
nlohmann::json ReportData(CVantriDoc& doc, const TReportInput& in, const vesk::diag::CSink& sink);
// The whole page.
std::string ReportHtml(CVantriDoc& doc, const TReportInput& in, const vesk::diag::CSink& sink);
// Writes the page through a temporary file beside path.
TExchangeStatus WriteReport(CVantriDoc& doc, const std::string& path, const TReportInput& in,
                            const vesk::diag::CSink& sink);

}  // namespace roadx::report
