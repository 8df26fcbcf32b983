// Layout of RD3 road files: a fixed 218-byte header with a directory of four
// slots, then records that point at one another by absolute file offsets.
// Every record starts with an 18-byte header (type, header size, data size,
// next-link, previous-link). All numbers are little-endian.
#pragma once
#include <cstdint>
#include <vector>

#include "rd3/rd3_name.h"

namespace roadx::rd3 {

// 0xFFFFFFFE in an offset field: no record. Readers treat 0 the same way,
// except in the profile chain, where 0 is followed as an offset.
inline constexpr uint32_t kNoRecord = 0xFFFFFFFEu;

inline constexpr uint32_t kHeaderSize = 218;
inline constexpr uint32_t kDirectoryPos = 98;      // first directory slot
inline constexpr uint32_t kHeaderNamePos = 30;     // the road name field (66 bytes)
inline constexpr uint32_t kFirstDirOffsetPos = 100;  // offset field of slot 1
inline constexpr uint32_t kDirSlotSize = 6;
inline constexpr uint16_t kDirSlotCount = 20;
inline constexpr uint32_t kRecHeaderSize = 18;
inline constexpr uint32_t kNextLinkPos = 10;  // within a record header

// Directory tags, in the only order readers accept.
inline constexpr uint16_t kTagRoad = 1;
inline constexpr uint16_t kTagProfile = 2;
inline constexpr uint16_t kTagTemplates = 5;
inline constexpr uint16_t kTagAssignments = 3;

enum RD3RecordType : uint16_t {
    kRecRoad = 1,
    kRecStraight = 2,
    kRecClothoid = 3,
    kRecArc = 4,
    kRecProfile = 10,
    kRecVertex = 11,
    kRecCurveVertex = 12,
    kRecAssign = 20,
    kRecTemplate = 21,
    kRecExtendedMark = 29,
    kRecAssignList = 31,
};

// Segment codes of template entries.
inline constexpr uint16_t kCodeGrade = 22;   // angle (radians) and width
inline constexpr uint16_t kCodeStep = 23;    // width and height
inline constexpr uint16_t kCodeSlopes = 24;  // cut and fill slope angles
inline constexpr uint16_t kCodeSteep = 25;   // width and height; goes out as 23
inline constexpr uint16_t kCodeOffset = 26;  // 0 and height at the axis

// Data sizes as the writer puts them in record headers.
inline constexpr uint32_t kRoadDataSize = 48;
inline constexpr uint32_t kStraightDataSize = 16;
inline constexpr uint32_t kArcDataSize = 28;
inline constexpr uint32_t kArcShortDataSize = 20;
inline constexpr uint32_t kClotDataSize = 40;
inline constexpr uint32_t kClotShortDataSize = 24;
inline constexpr uint32_t kProfileDataSize = 8;
inline constexpr uint32_t kVertexDataSize = 16;
inline constexpr uint32_t kCurveVertexDataSize = 24;
// Template and assignment list headers count only their fixed part, not the
// entries that follow them inline.
inline constexpr uint32_t kTemplateDataSize = 70;
inline constexpr uint32_t kAssignListDataSize = 4;
inline constexpr uint32_t kSegmentEntrySize = 102;
inline constexpr uint32_t kAssignEntrySize = 78;
// Segment records of the extended layouts: the compact entry (layout 2) or
// the two values alone (layout 3).
inline constexpr uint32_t kLayout2SegmentDataSize = kSegmentEntrySize;
inline constexpr uint32_t kLayout3SegmentDataSize = 16;

// Constants of the road record, written as these exact bit patterns.
inline constexpr uint64_t kRoadConstantBits = 0x000E61ACF033D1A4ull;  // 2e-308
inline constexpr double kRoadUnitConstant = 15.24;
inline constexpr uint64_t kNoSecondRadiusBits = 0x54C249AD2594C37Dull;  // 2e100
// A clothoid's second radius at or above this means "ordinary clothoid".
inline constexpr double kSecondRadiusLimit = 1e100;

// Sides of an assignment as stored in the file.
inline constexpr uint32_t kFileSideLeft = 1;
inline constexpr uint32_t kFileSideRight = 2;
inline constexpr uint32_t kFileSideBoth = 3;

struct RD3RecHeader {
    uint16_t type = 0;
    uint32_t headerSize = kRecHeaderSize;
    uint32_t dataSize = 0;
    uint32_t next = kNoRecord;
    uint32_t prev = kNoRecord;
};

struct RD3DirSlot {
    uint16_t tag = 0;
    uint32_t offset = kNoRecord;
};

struct RD3RoadRecord {
    double y = 0.0;  // north of the start point
    double x = 0.0;  // east of the start point
    double azimuth = 0.0;
    double prog = 0.0;
};

struct RD3StraightRecord {
    double azimuth = 0.0;
    double length = 0.0;
};

// sense: 0 left turn, 1 right turn. The azimuth is present in the long form.
struct RD3ArcRecord {
    uint32_t sense = 0;
    double radius = 0.0;
    double length = 0.0;
    bool hasAzimuth = true;
    double azimuth = 0.0;
};

// entry: 1 for an entry spiral. r1: the radius at the curved end of an entry
// spiral, the start radius otherwise. The long form adds azimuth and r2.
struct RD3ClotRecord {
    uint32_t entry = 0;
    uint32_t sense = 0;
    double r1 = 0.0;
    double length = 0.0;
    bool isLong = true;
    double azimuth = 0.0;
    double r2 = 2e100;
};

// A profile vertex; a curve length of 0 with hasCurve false is type 11.
struct RD3VertexRecord {
    double prog = 0.0;
    double elevation = 0.0;
    bool hasCurve = false;
    double curveLength = 0.0;
};

struct RD3SegmentEntry {
    uint16_t code = 0;
    double v1 = 0.0;
    double v2 = 0.0;
};

struct RD3AssignEntry {
    RD3Name name;
    double prog = 0.0;
    uint32_t side = kFileSideLeft;
};

}  // namespace roadx::rd3
