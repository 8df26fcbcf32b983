#include "rd3/rd3_records.h"

#include "rd3/rd3_bytes.h"

namespace roadx::rd3 {
namespace {

constexpr char kSignature[] = "Topcon RD3";
constexpr size_t kSignatureField = 16;
constexpr uint32_t kVersion[3] = {2, 1, 0};
constexpr uint16_t kEntryTail = 3;  // the u16 after an entry's code
constexpr size_t kEntryPadding = 16;

void PutHeader(ByteSink& s, uint16_t type, uint32_t dataSize, uint32_t prev, uint32_t next = kNoRecord) {
    s.U16(type);
    s.U32(kRecHeaderSize);
    s.U32(dataSize);
    s.U32(next);
    s.U32(prev);
}

void PutEntry(ByteSink& s, const RD3SegmentEntry& e, uint16_t code) {
    s.Zeros(kNameBytes);
    s.U16(code);
    s.U16(kEntryTail);
    s.F64(e.v1);
    s.F64(e.v2);
    s.Zeros(kEntryPadding);
}

void PutAssign(ByteSink& s, const RD3AssignEntry& e) {
    s.Name(e.name);
    s.F64(e.prog);
    s.U32(e.side);
}

}  // namespace

std::vector<uint8_t> EncodeFileHeader(std::u16string_view roadName) {
    ByteSink s;
    s.Bytes(reinterpret_cast<const uint8_t*>(kSignature), sizeof kSignature - 1);
    s.Zeros(kSignatureField - (sizeof kSignature - 1));
    for (uint32_t v : kVersion) s.U32(v);
    s.U16(static_cast<uint16_t>(kNameUnits));
    s.Name(roadName);
    s.U16(kDirSlotCount);
    for (uint16_t tag : {kTagRoad, kTagProfile, kTagTemplates, kTagAssignments}) {
        s.U16(tag);
        s.U32(kNoRecord);
    }
    s.U16(0);  // end of directory: the tag alone
    s.Zeros(kHeaderSize - s.Size());
    return s.Data();
}

std::vector<uint8_t> EncodeRecHeader(uint16_t type, uint32_t dataSize, uint32_t prev, uint32_t next) {
    ByteSink s;
    PutHeader(s, type, dataSize, prev, next);
    return s.Data();
}

std::vector<uint8_t> EncodeRoadRecord(const RD3RoadRecord& rec) {
    ByteSink s;
    PutHeader(s, kRecRoad, kRoadDataSize, kNoRecord);
    s.F64(rec.y);
    s.F64(rec.x);
    s.F64Bits(kRoadConstantBits);
    s.F64(rec.azimuth);
    s.F64(rec.prog);
    s.F64(kRoadUnitConstant);
    return s.Data();
}

std::vector<uint8_t> EncodeStraightRecord(const RD3StraightRecord& rec, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecStraight, kStraightDataSize, prev);
    s.F64(rec.azimuth);
    s.F64(rec.length);
    return s.Data();
}

std::vector<uint8_t> EncodeArcRecord(const RD3ArcRecord& rec, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecArc, rec.hasAzimuth ? kArcDataSize : kArcShortDataSize, prev);
    s.U32(rec.sense);
    s.F64(rec.radius);
    s.F64(rec.length);
    if (rec.hasAzimuth) s.F64(rec.azimuth);
    return s.Data();
}

std::vector<uint8_t> EncodeClotRecord(const RD3ClotRecord& rec, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecClothoid, rec.isLong ? kClotDataSize : kClotShortDataSize, prev);
    s.U32(rec.entry);
    s.U32(rec.sense);
    s.F64(rec.r1);
    s.F64(rec.length);
    if (rec.isLong) {
        s.F64(rec.azimuth);
        s.F64(rec.r2);
    }
    return s.Data();
}

std::vector<uint8_t> EncodeProfileRecord() {
    ByteSink s;
    PutHeader(s, kRecProfile, kProfileDataSize, kNoRecord);
    s.F64(0.0);
    return s.Data();
}

std::vector<uint8_t> EncodeVertexRecord(const RD3VertexRecord& rec, uint32_t prev) {
    ByteSink s;
    if (rec.hasCurve) {
        PutHeader(s, kRecCurveVertex, kCurveVertexDataSize, prev);
    } else {
        PutHeader(s, kRecVertex, kVertexDataSize, prev);
    }
    s.F64(rec.prog);
    s.F64(rec.elevation);
    if (rec.hasCurve) s.F64(rec.curveLength);
    return s.Data();
}

std::vector<uint8_t> EncodeTemplateRecord(std::u16string_view name, const std::vector<RD3SegmentEntry>& entries,
                                          uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecTemplate, kTemplateDataSize, prev);
    s.Name(name);
    s.U16(static_cast<uint16_t>(entries.size()));
    s.U16(static_cast<uint16_t>(kSegmentEntrySize));
    for (const RD3SegmentEntry& e : entries) PutEntry(s, e, e.code == kCodeSteep ? kCodeStep : e.code);
    return s.Data();
}

std::vector<uint8_t> EncodeNameOnlyTemplateRecord(std::u16string_view name, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecTemplate, kNameBytes, prev);
    s.Name(name);
    return s.Data();
}

std::vector<uint8_t> EncodeLayout2SegmentRecord(const RD3SegmentEntry& entry, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecExtendedMark, kLayout2SegmentDataSize, prev);
    PutEntry(s, entry, entry.code);
    return s.Data();
}

std::vector<uint8_t> EncodeLayout3SegmentRecord(const RD3SegmentEntry& entry, uint32_t prev) {
    ByteSink s;
    PutHeader(s, entry.code, kLayout3SegmentDataSize, prev);
    s.F64(entry.v1);
    s.F64(entry.v2);
    return s.Data();
}

std::vector<uint8_t> EncodeAssignListRecord(const std::vector<RD3AssignEntry>& entries) {
    ByteSink s;
    PutHeader(s, kRecAssignList, kAssignListDataSize, kNoRecord);
    s.U16(static_cast<uint16_t>(entries.size()));
    s.U16(static_cast<uint16_t>(kAssignEntrySize));
    for (const RD3AssignEntry& e : entries) PutAssign(s, e);
    return s.Data();
}

std::vector<uint8_t> EncodeAssignChainRecord(const RD3AssignEntry& entry, uint32_t prev) {
    ByteSink s;
    PutHeader(s, kRecAssign, kAssignEntrySize, prev);
    PutAssign(s, entry);
    return s.Data();
}

bool ReadRecHeader(vesk::CBitStreamReader& r, RD3RecHeader& h) {
    h.type = r.ReadRawShort();
    h.headerSize = r.ReadRawInt();
    h.dataSize = r.ReadRawInt();
    h.next = r.ReadRawInt();
    h.prev = r.ReadRawInt();
    return r.Good();
}

bool ReadDirectory(vesk::CBitStreamReader& r, RD3DirSlot slots[4]) {
    r.Seek(kDirectoryPos);
    for (int i = 0; i < 4; ++i) {
        slots[i].tag = r.ReadRawShort();
        slots[i].offset = r.ReadRawInt();
    }
    return r.Good();
}

bool ReadRoadData(vesk::CBitStreamReader& r, RD3RoadRecord& rec) {
    rec.y = r.ReadDouble();
    rec.x = r.ReadDouble();
    r.ReadDouble();  // the constant 2e-308, meaning unknown
    rec.azimuth = r.ReadDouble();
    rec.prog = r.ReadDouble();
    return r.Good();
}

bool ReadStraightData(vesk::CBitStreamReader& r, RD3StraightRecord& rec) {
    rec.azimuth = r.ReadDouble();
    rec.length = r.ReadDouble();
    return r.Good();
}

bool ReadArcData(vesk::CBitStreamReader& r, uint32_t dataSize, RD3ArcRecord& rec) {
    rec.sense = r.ReadRawInt();
    rec.radius = r.ReadDouble();
    rec.length = r.ReadDouble();
    rec.hasAzimuth = dataSize == kArcDataSize;
    if (rec.hasAzimuth) rec.azimuth = r.ReadDouble();
    return r.Good();
}

bool ReadClotData(vesk::CBitStreamReader& r, uint32_t dataSize, RD3ClotRecord& rec) {
    rec.entry = r.ReadRawInt();
    rec.sense = r.ReadRawInt();
    rec.r1 = r.ReadDouble();
    rec.length = r.ReadDouble();
    rec.isLong = dataSize == kClotDataSize;
    if (rec.isLong) {
        rec.azimuth = r.ReadDouble();
        rec.r2 = r.ReadDouble();
    }
    return r.Good();
}

bool ReadVertexData(vesk::CBitStreamReader& r, uint16_t type, RD3VertexRecord& rec) {
    rec.prog = r.ReadDouble();
    rec.elevation = r.ReadDouble();
    rec.hasCurve = type == kRecCurveVertex;
    rec.curveLength = rec.hasCurve ? r.ReadDouble() : 0.0;
    return r.Good();
}

bool ReadNameField(vesk::CBitStreamReader& r, RD3Name& name) {
    uint8_t field[kNameBytes];
    const bool ok = r.ReadBytes(kNameBytes, field);
    name = DecodeName(field);
    return ok && r.Good();
}

bool ReadSegmentEntry(vesk::CBitStreamReader& r, RD3SegmentEntry& e) {
    uint8_t skip[kNameBytes];
    r.ReadBytes(kNameBytes, skip);
    e.code = r.ReadRawShort();
    r.ReadRawShort();
    e.v1 = r.ReadDouble();
    e.v2 = r.ReadDouble();
    r.ReadBytes(kEntryPadding, skip);
    return r.Good();
}

bool ReadAssignEntry(vesk::CBitStreamReader& r, RD3AssignEntry& e) {
    ReadNameField(r, e.name);
    e.prog = r.ReadDouble();
    e.side = r.ReadRawInt();
    return r.Good();
}

}  // namespace roadx::rd3
