// Internals of the RD3 reader, shared by its parts (plan, profile, templates,
// assignments, sections). The reader trusts nothing in the file: every offset
// is checked before it is used, every walk along next-links remembers the
// records it visited and stops when one comes back, and every read is
// checked; the first problem ends the import with a status.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "rd3/rd3_format.h"
#include "rd3/rd3_import.h"
#include "rd3/rd3_template.h"
#include "vesk/bit_stream_reader.h"
#include "vesk/diagnostics.h"

class CLoadVantriDati;
class CRoad;

namespace roadx::rd3 {

// Work the section building may do, so that a small file cannot make the
// import run for hours: points added to sections and segments made by
// interpolation, in total, and cells of the pairing tables, in total.
inline constexpr uint64_t kMaxSectionWork = 20'000'000;
inline constexpr uint64_t kMaxPairWork = 400'000'000;

// One assignment as the reader keeps it (file sides 1, 2, 3 become 0, 1, 2).
struct RD3SectionAssign {
    RD3Name name;
    double prog = 0.0;
    int32_t side = 0;
};
inline constexpr int32_t kSideLeft = 0;
inline constexpr int32_t kSideRight = 1;
inline constexpr int32_t kSideBoth = 2;

// A profile vertex read from the file; length 0 for a type 11 vertex.
struct RD3Vertex {
    double prog = 0.0;
    double elevation = 0.0;
    double curveLength = 0.0;
};

// Records already visited by one walk, one bit per file byte.
class VisitedOffsets {
public:
    explicit VisitedOffsets(size_t fileSize) : seen_(fileSize) {}
    // False when offset was visited before (or lies outside the file).
    bool Visit(uint32_t offset);

private:
    std::vector<bool> seen_;
};

struct ReadContext {
    ReadContext(CLoadVantriDati& b, vesk::CBitStreamReader& r, size_t size) : builder(b), in(r), fileSize(size) {}

    CLoadVantriDati& builder;
    vesk::CBitStreamReader& in;
    size_t fileSize;
    CRoad* road = nullptr;
    std::vector<std::unique_ptr<RD3SectionTemplate>> templates;
    std::vector<RD3SectionAssign> assigns;
    uint64_t sectionWork = 0;
    uint64_t pairWork = 0;
    // Diagnostics (may be null): the file as the user named it, and the
    // road as records name it ("Road \"name\"").
    vesk::diag::CSink* sink = nullptr;
    std::string file;
    std::string roadPath;
    size_t assignsLeftOut = 0;  // numbers the assignments in records
};

// Reports what the import left out or changed; one pointer test without a
// sink. `element` follows the road's path; `offset` is the record's (-1 when
// none).
void Diag(ReadContext& ctx, const char* kind, int64_t offset, const std::string& element, std::string message,
          std::string instead, vesk::diag::ESeverity severity = vesk::diag::ESeverity::Warning);

// Seeks to a record and reads its header: kTruncated when it is not all
// inside the file.
ReadEnd SeekRecord(ReadContext& ctx, uint32_t offset, RD3RecHeader& h);

// An offset field that names no record: 0 or 0xFFFFFFFE.
inline bool IsNoRecord(uint32_t offset) { return offset == 0 || offset == kNoRecord; }

// The parts of the import, in file order. Each returns kOk or the reason it
// stopped; the message box is the caller's business.
ReadEnd ReadRoadAndPlan(ReadContext& ctx, uint32_t offset, const vesk::String& roadName);
ReadEnd ReadProfile(ReadContext& ctx, uint32_t offset);
ReadEnd ReadTemplates(ReadContext& ctx, uint32_t offset);
ReadEnd ReadAssignments(ReadContext& ctx, uint32_t offset);
void SortAssignments(std::vector<RD3SectionAssign>& assigns);
ReadEnd BuildSections(ReadContext& ctx);

// The profile's vertices as builder calls (between StartRoadAlti and
// EndRoadAlti), exposed for tests of the curve radius.
void AddProfileVertices(CLoadVantriDati& builder, const std::vector<RD3Vertex>& vertices);

// The template an assignment names: the first whose name equals it over 33
// units; the first template of all when none does (an unknown name must not
// stop the import). Null only when there are no templates.
RD3SectionTemplate* FindTemplate(ReadContext& ctx, const RD3Name& name);

}  // namespace roadx::rd3
