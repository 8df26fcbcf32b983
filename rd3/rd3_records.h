// Encoding and decoding of every RD3 record. Encoders give the whole record
// (18-byte header with next-link 0xFFFFFFFE, then the data); decoders read
// from a stream positioned after the record header and report whether every
// byte they needed was there.
#pragma once
#include <cstdint>
#include <vector>

#include "rd3/rd3_format.h"
#include "vesk/bit_stream_reader.h"

namespace roadx::rd3 {

// The 218-byte file header with the road name (cut to 33 units by the
// caller) and all four directory offsets set to kNoRecord.
std::vector<uint8_t> EncodeFileHeader(std::u16string_view roadName);

std::vector<uint8_t> EncodeRecHeader(uint16_t type, uint32_t dataSize, uint32_t prev,
                                     uint32_t next = kNoRecord);
std::vector<uint8_t> EncodeRoadRecord(const RD3RoadRecord& rec);
std::vector<uint8_t> EncodeStraightRecord(const RD3StraightRecord& rec, uint32_t prev);
std::vector<uint8_t> EncodeArcRecord(const RD3ArcRecord& rec, uint32_t prev);
std::vector<uint8_t> EncodeClotRecord(const RD3ClotRecord& rec, uint32_t prev);
std::vector<uint8_t> EncodeProfileRecord();
std::vector<uint8_t> EncodeVertexRecord(const RD3VertexRecord& rec, uint32_t prev);
// Compact template (layout 1): name, count, 102, and the inline entries. A
// code 25 entry goes out as code 23 with its values unchanged.
std::vector<uint8_t> EncodeTemplateRecord(std::u16string_view name, const std::vector<RD3SegmentEntry>& entries,
                                          uint32_t prev);
// Extended layouts, which roadx only reads: the template record holding its
// name alone, a type 29 segment record (layout 2, the code in its data) and
// a segment record whose type is its code (layout 3, the values alone).
std::vector<uint8_t> EncodeNameOnlyTemplateRecord(std::u16string_view name, uint32_t prev);
std::vector<uint8_t> EncodeLayout2SegmentRecord(const RD3SegmentEntry& entry, uint32_t prev);
std::vector<uint8_t> EncodeLayout3SegmentRecord(const RD3SegmentEntry& entry, uint32_t prev);
// Assignments: the list (type 31, written) and one chained entry (type 20).
std::vector<uint8_t> EncodeAssignListRecord(const std::vector<RD3AssignEntry>& entries);
std::vector<uint8_t> EncodeAssignChainRecord(const RD3AssignEntry& entry, uint32_t prev);

// Decoders. Each returns false when the stream ran out (or had already
// failed); the values read so far are then meaningless.
bool ReadRecHeader(vesk::CBitStreamReader& r, RD3RecHeader& h);
// Seeks to 98 and reads the four directory slots in file order.
bool ReadDirectory(vesk::CBitStreamReader& r, RD3DirSlot slots[4]);
// Reads Y, X, the constant (skipped), the azimuth and the start chainage.
bool ReadRoadData(vesk::CBitStreamReader& r, RD3RoadRecord& rec);
bool ReadStraightData(vesk::CBitStreamReader& r, RD3StraightRecord& rec);
// The long form is taken exactly when the data size is 28 (arc) or 40
// (clothoid); any other size is read as the short form.
bool ReadArcData(vesk::CBitStreamReader& r, uint32_t dataSize, RD3ArcRecord& rec);
bool ReadClotData(vesk::CBitStreamReader& r, uint32_t dataSize, RD3ClotRecord& rec);
// Type 11 reads chainage and elevation, type 12 also the curve length.
bool ReadVertexData(vesk::CBitStreamReader& r, uint16_t type, RD3VertexRecord& rec);
// One 102-byte compact entry (name and the u16 after the code ignored).
bool ReadSegmentEntry(vesk::CBitStreamReader& r, RD3SegmentEntry& e);
// One 78-byte assignment entry.
bool ReadAssignEntry(vesk::CBitStreamReader& r, RD3AssignEntry& e);
bool ReadNameField(vesk::CBitStreamReader& r, RD3Name& name);

}  // namespace roadx::rd3
