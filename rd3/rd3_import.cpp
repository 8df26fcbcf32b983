#include "rd3/rd3_import.h"

#include <cstdio>
#include <cstring>
#include <optional>
#include <vector>

#include "host/document.h"
#include "host/load_vantri_dati.h"
#include "host/ui.h"
#include "rd3/rd3_reader.h"
#include "rd3/rd3_name.h"
#include "rd3/rd3_records.h"
#include "vesk/source_event.h"

namespace roadx::rd3 {

namespace {

constexpr const char* kFormatMessage =
    "Alcune sezioni del file importato non possono essere lette.\n Per ulteriori informazioni contattare "
    "l'assistenza (comando '?|Gestisci segnalazioni').";

// The ends the user is told about with the message box; the others are
// silent (nothing to read, or a rule of the section building).
bool ShowsMessage(ReadEnd s) {
    switch (s) {
        case ReadEnd::kOk:
        case ReadEnd::kOpenFailed:
        case ReadEnd::kEmpty:
        case ReadEnd::kNoRoad:
        case ReadEnd::kNoNeighbour: return false;
        default: return true;
    }
}

ReadEnd Report(ReadEnd s) {
    if (ShowsMessage(s)) AfxMessageBox(kFormatMessage);
    return s;
}

bool ReadWholeFile(const char* path, std::vector<uint8_t>& data, ReadEnd& status) {
    FILE* f = path ? std::fopen(path, "rb") : nullptr;
    if (!f) {
        status = ReadEnd::kOpenFailed;
        return false;
    }
    long size = -1;
    if (std::fseek(f, 0, SEEK_END) == 0) size = std::ftell(f);
    std::fseek(f, 0, SEEK_SET);
    if (size < 1) {
        std::fclose(f);
        status = ReadEnd::kEmpty;
        return false;
    }
    data.resize(static_cast<size_t>(size));
    const size_t got = std::fread(data.data(), 1, data.size(), f);
    std::fclose(f);
    if (got != data.size()) {
        status = ReadEnd::kEmpty;
        return false;
    }
    return true;
}

// Steps 8 to 14 of the import: everything after the plan and the profile.
ReadEnd ReadSections(ReadContext& ctx, const RD3DirSlot dir[4]) {
    if (dir[2].tag != kTagTemplates || dir[3].tag != kTagAssignments) return ReadEnd::kBadDirectory;
    if (IsNoRecord(dir[2].offset) || IsNoRecord(dir[3].offset)) return ReadEnd::kOk;
    ReadEnd s = ReadTemplates(ctx, dir[2].offset);
    if (s != ReadEnd::kOk) return s;
    s = ReadAssignments(ctx, dir[3].offset);
    if (s != ReadEnd::kOk) return s;
    SortAssignments(ctx.assigns);
    return BuildSections(ctx);
}

// The road takes its name from the file's name; the name field of the
// header is not used. Said when the two differ.
void CheckRoadName(ReadContext& ctx, const vesk::String& roadName) {
    if (!ctx.sink) return;
    RD3Name inFile;
    if (!ctx.in.Seek(kHeaderNamePos) || !ReadNameField(ctx.in, inFile)) return;
    const std::string stated = Utf16ToUtf8(inFile);
    if (stated == std::string(roadName)) return;
    // A note, not a warning: naming the road after its file is how RD3
    // files are read, and the file's name is the user's to choose.
    Diag(ctx, "rd3-road-name-from-file", kHeaderNamePos, "file header",
         "the file names its road \"" + stated + "\"; the road takes the file's name instead",
         "road named \"" + std::string(roadName) + "\"", vesk::diag::ESeverity::Note);
}

ReadEnd ImportImage(IVantriDati* doc, const vesk::String& roadName, const uint8_t* data, size_t size,
                    vesk::diag::CSink* sink, const std::string& file) {
    if (!doc) return ReadEnd::kOpenFailed;
    if (!data || size < 1) return ReadEnd::kEmpty;
    CLoadVantriDati builder(doc);
    vesk::CBitStreamReader in(size, data);
    ReadContext ctx(builder, in, size);
    ctx.sink = sink;
    ctx.file = file;
    ctx.roadPath = "Road \"" + std::string(roadName) + "\"";

    RD3DirSlot dir[4];
    if (!ReadDirectory(in, dir)) return Report(ReadEnd::kTruncated);
    if (dir[0].tag != kTagRoad) return Report(ReadEnd::kBadDirectory);
    if (IsNoRecord(dir[0].offset)) return ReadEnd::kNoRoad;
    CheckRoadName(ctx, roadName);
    ReadEnd s = ReadRoadAndPlan(ctx, dir[0].offset, roadName);
    if (s != ReadEnd::kOk) return Report(s);
    if (dir[1].tag != kTagProfile) return Report(ReadEnd::kBadDirectory);
    if (!IsNoRecord(dir[1].offset)) {
        s = ReadProfile(ctx, dir[1].offset);
        if (s != ReadEnd::kOk) return Report(s);
    }
    // The change event is open from here to the end of the import.
    vesk::CEventScope event(doc->GetLibRoad()->GetContext());
    if (ctx.road) ctx.road->GetOpzRoadRecalc()->SetBlockRecalc(true);
    return Report(ReadSections(ctx, dir));
}

}  // namespace

void Diag(ReadContext& ctx, const char* kind, int64_t offset, const std::string& element, std::string message,
          std::string instead, vesk::diag::ESeverity severity) {
    if (!ctx.sink) return;
    if (ctx.sink->Merge(kind, ctx.file, 1)) return;
    vesk::diag::TRecord r;
    r.severity = severity;
    r.kind = kind;
    r.file = ctx.file;
    r.offset = offset;
    r.element = ctx.roadPath + " / " + element;
    r.message = std::move(message);
    r.instead = std::move(instead);
    ctx.sink->Report(std::move(r));
}

const char* ReadEndText(ReadEnd s) {
    switch (s) {
        case ReadEnd::kOk: return "imported";
        case ReadEnd::kOpenFailed: return "the file cannot be opened";
        case ReadEnd::kEmpty: return "the file is empty or could not be read whole";
        case ReadEnd::kNoRoad: return "the file holds no road";
        case ReadEnd::kBadDirectory: return "the directory of the file is not in the RD3 order";
        case ReadEnd::kBadRoadRecord: return "the road record is missing or of the wrong type";
        case ReadEnd::kBadProfileRecord: return "the profile record is of the wrong type";
        case ReadEnd::kBadTemplateRecord: return "the first section template record is of the wrong type";
        case ReadEnd::kBadSegmentCode: return "a section template holds a segment of an unknown code";
        case ReadEnd::kBadAssignRecord: return "the section assignment record is of the wrong type";
        case ReadEnd::kTruncated: return "a record lies past the end of the file (file cut short or damaged)";
        case ReadEnd::kLoop: return "a chain of records loops back on itself (damaged file)";
        case ReadEnd::kNoNeighbour:
            return "a section side has no template before or after it; the remaining sections were not built";
        case ReadEnd::kTooLarge: return "the sections would take too much work to build; import stopped";
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

TExchangeStatus ImportRD3BufferStatus(IVantriDati* doc, const char* roadName, const uint8_t* data, size_t size,
                                      vesk::diag::CSink* sink, const std::string& file) {
    return StatusOf(ImportImage(doc, roadName ? roadName : "", data, size, sink, file));
}

TExchangeStatus ImportRD3Status(IVantriDati* doc, const char* path, vesk::diag::CSink* sink) {
    std::vector<uint8_t> data;
    ReadEnd s = ReadEnd::kOk;
    if (!ReadWholeFile(path, data, s)) return StatusOf(s);
    return StatusOf(ImportImage(doc, Rd3RoadNameFromPath(path), data.data(), data.size(), sink, path ? path : ""));
}

TExchangeStatus StatusOf(ReadEnd s) {
    const std::string msg = ReadEndText(s);
    const int detail = static_cast<int>(s);
    switch (s) {
        case ReadEnd::kOk: return TExchangeStatus::Ok();
        case ReadEnd::kOpenFailed:
        case ReadEnd::kEmpty: return TExchangeStatus::Fail(TExchangeStatus::OPEN_FAILED, msg, detail);
        case ReadEnd::kNoNeighbour:
        case ReadEnd::kTooLarge: return TExchangeStatus::Fail(TExchangeStatus::ENDED_EARLY, msg, detail);
        default: return TExchangeStatus::Fail(TExchangeStatus::BAD_INPUT, msg, detail);
    }
}

ReadEnd ReadEndOf(const TExchangeStatus& s) { return s.ok() ? ReadEnd::kOk : static_cast<ReadEnd>(s.detail); }

}  // namespace roadx::rd3
