#include "rd3/rd3_export.h"

#include <cstdio>

#include "host/road.h"
#include "host/ui.h"
#include "rd3/rd3_export_checks.h"
#include "rd3/rd3_records.h"
#include "rd3/rd3_write_road.h"
#include "rd3/rd3_write_sections.h"

namespace roadx::rd3 {

namespace {

constexpr const char* kFilter = "File strade Skeikrik(*.rd3)|*.rd3||";
constexpr unsigned kDialogFlags = 6;

}  // namespace

TExchangeStatus WriteRD3File(CRoad& road, const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, path + ": the file cannot be created");
    Rd3FileOut out(f);
    out.Write(EncodeFileHeader(MakeName(road.GetName())));
    // Slot 1 points past the header even when no road record follows.
    out.PatchDirectory(0);
    if (!road.IsEmpty()) WritePlanChain(out, road);
    CProfileAlti* prj = road.GetRoadProfile()->GetMainPrjAlti();
    if (prj && prj->GetNumVrts() >= 1) {
        out.PatchDirectory(1);
        WriteProfileChain(out, *prj);
    }
    bool anyTemplate = false;
    const std::vector<Rd3SectionData> sections = CollectSections(road, anyTemplate);
    if (anyTemplate) WriteTemplatesAndAssignments(out, PlanTemplates(sections));
    const bool closed = std::fclose(f) == 0;
    if (out.Failed() || !closed)
        return TExchangeStatus::Fail(TExchangeStatus::WRITE_FAILED, path + ": the file could not be written");
    return TExchangeStatus::Ok();
}

TExchangeStatus ExportRD3Status(CRoad& road, vesk::diag::CSink* sink, const std::string& file) {
    CFileDialog dlg(false, "rd3", road.GetName().c_str(), kDialogFlags, kFilter);
    if (dlg.DoModal() != IDOK) return TExchangeStatus::Fail(TExchangeStatus::CANCELLED, "no file chosen");
    CheckRD3Export(road, sink, file.empty() ? std::string(dlg.GetPathName()) : file);
    return WriteRD3File(road, dlg.GetPathName());
}

}  // namespace roadx::rd3
