#include "rd3/rd3_import.h"

#include <cstdio>
#include <cstring>
#include <optional>
#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/ui.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_records.h"
#include "vesk/source_event.h"

namespace {

using namespace rd3;

constexpr const char* kFormatMessage =
    "Alcune sezioni del file importato non possono essere lette.\n Per ulteriori informazioni contattare "
    "l'assistenza (comando '?|Gestisci segnalazioni').";

// The ends the user is told about with the message box; the others are
// silent (nothing to read, or a rule of the section building).
bool ShowsMessage(Rd3ImportStatus s) {
    switch (s) {
        case Rd3ImportStatus::kOk:
        case Rd3ImportStatus::kOpenFailed:
        case Rd3ImportStatus::kEmpty:
        case Rd3ImportStatus::kNoRoad:
        case Rd3ImportStatus::kNoNeighbour: return false;
        default: return true;
    }
}

Rd3ImportStatus Report(Rd3ImportStatus s) {
    if (ShowsMessage(s)) AfxMessageBox(kFormatMessage);
    return s;
}

bool ReadWholeFile(const char* path, std::vector<uint8_t>& data, Rd3ImportStatus& status) {
    FILE* f = path ? std::fopen(path, "rb") : nullptr;
    if (!f) {
        status = Rd3ImportStatus::kOpenFailed;
        return false;
    }
    long size = -1;
    if (std::fseek(f, 0, SEEK_END) == 0) size = std::ftell(f);
    std::fseek(f, 0, SEEK_SET);
    if (size < 1) {
        std::fclose(f);
        status = Rd3ImportStatus::kEmpty;
        return false;
    }
    data.resize(static_cast<size_t>(size));
    const size_t got = std::fread(data.data(), 1, data.size(), f);
    std::fclose(f);
    if (got != data.size()) {
        status = Rd3ImportStatus::kEmpty;
        return false;
    }
    return true;
}

// Steps 8 to 14 of the import: everything after the plan and the profile.
Rd3ImportStatus ReadSections(ReadContext& ctx, const RD3DirSlot dir[4]) {
    if (dir[2].tag != kTagTemplates || dir[3].tag != kTagAssignments) return Rd3ImportStatus::kBadDirectory;
    if (IsNoRecord(dir[2].offset) || IsNoRecord(dir[3].offset)) return Rd3ImportStatus::kOk;
    Rd3ImportStatus s = ReadTemplates(ctx, dir[2].offset);
    if (s != Rd3ImportStatus::kOk) return s;
    s = ReadAssignments(ctx, dir[3].offset);
    if (s != Rd3ImportStatus::kOk) return s;
    SortAssignments(ctx.assigns);
    return BuildSections(ctx);
}

Rd3ImportStatus ImportImage(IVantriDati* doc, const vesk::String& roadName, const uint8_t* data, size_t size) {
    if (!doc) return Rd3ImportStatus::kOpenFailed;
    if (!data || size < 1) return Rd3ImportStatus::kEmpty;
    CLoadVantriDati builder(doc);
    vesk::CBitStreamReader in(size, data);
    ReadContext ctx(builder, in, size);

    RD3DirSlot dir[4];
    if (!ReadDirectory(in, dir)) return Report(Rd3ImportStatus::kTruncated);
    if (dir[0].tag != kTagRoad) return Report(Rd3ImportStatus::kBadDirectory);
    if (IsNoRecord(dir[0].offset)) return Rd3ImportStatus::kNoRoad;
    Rd3ImportStatus s = ReadRoadAndPlan(ctx, dir[0].offset, roadName);
    if (s != Rd3ImportStatus::kOk) return Report(s);
    if (dir[1].tag != kTagProfile) return Report(Rd3ImportStatus::kBadDirectory);
    if (!IsNoRecord(dir[1].offset)) {
        s = ReadProfile(ctx, dir[1].offset);
        if (s != Rd3ImportStatus::kOk) return Report(s);
    }
    // The change event is open from here to the end of the import.
    vesk::CEventScope event(doc->GetLibRoad()->GetContext());
    if (ctx.road) ctx.road->GetOpzRoadRecalc()->SetBlockRecalc(true);
    return Report(ReadSections(ctx, dir));
}

}  // namespace

const char* Rd3ImportStatusText(Rd3ImportStatus s) {
    switch (s) {
        case Rd3ImportStatus::kOk: return "imported";
        case Rd3ImportStatus::kOpenFailed: return "the file cannot be opened";
        case Rd3ImportStatus::kEmpty: return "the file is empty or could not be read whole";
        case Rd3ImportStatus::kNoRoad: return "the file holds no road";
        case Rd3ImportStatus::kBadDirectory: return "the directory of the file is not in the RD3 order";
        case Rd3ImportStatus::kBadRoadRecord: return "the road record is missing or of the wrong type";
        case Rd3ImportStatus::kBadProfileRecord: return "the profile record is of the wrong type";
        case Rd3ImportStatus::kBadTemplateRecord: return "the first section template record is of the wrong type";
        case Rd3ImportStatus::kBadSegmentCode: return "a section template holds a segment of an unknown code";
        case Rd3ImportStatus::kBadAssignRecord: return "the section assignment record is of the wrong type";
        case Rd3ImportStatus::kTruncated: return "a record lies past the end of the file (file cut short or damaged)";
        case Rd3ImportStatus::kLoop: return "a chain of records loops back on itself (damaged file)";
        case Rd3ImportStatus::kNoNeighbour:
            return "a section side has no template before or after it; the remaining sections were not built";
        case Rd3ImportStatus::kTooLarge: return "the sections would take too much work to build; import stopped";
    }
    return "unknown problem";
}

const char* Rd3RoadNameStart(const char* path) {
    const char* start = path;
    for (const char* p = path; *p; ++p)
        if (*p == '/' || *p == '\\') start = p + 1;
    return start;
}

vesk::String Rd3RoadNameFromPath(const char* path) {
    if (!path) return {};
    const char* start = Rd3RoadNameStart(path);
    const char* dot = std::strchr(start, '.');
    return dot ? vesk::String(start, static_cast<size_t>(dot - start)) : vesk::String(start);
}

Rd3ImportStatus ImportRD3Buffer(IVantriDati* doc, const char* roadName, const uint8_t* data, size_t size) {
    return ImportImage(doc, roadName ? roadName : "", data, size);
}

Rd3ImportStatus ImportRD3File(IVantriDati* doc, const char* path) {
    std::vector<uint8_t> data;
    Rd3ImportStatus s = Rd3ImportStatus::kOk;
    if (!ReadWholeFile(path, data, s)) return s;
    return ImportImage(doc, Rd3RoadNameFromPath(path), data.data(), data.size());
}

TExchangeStatus Rd3ToExchangeStatus(Rd3ImportStatus s) {
    const std::string msg = Rd3ImportStatusText(s);
    switch (s) {
        case Rd3ImportStatus::kOk: return TExchangeStatus::Ok();
        case Rd3ImportStatus::kOpenFailed:
        case Rd3ImportStatus::kEmpty: return TExchangeStatus::Fail(TExchangeStatus::OPEN_FAILED, msg);
        case Rd3ImportStatus::kNoNeighbour:
        case Rd3ImportStatus::kTooLarge: return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY, msg);
        default: return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, msg);
    }
}

void FImportRD3(IVantriDati* doc, const char* path) { ImportRD3File(doc, path); }
