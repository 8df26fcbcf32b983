#include "cad/dwg_object.h"

namespace roadx::cad::dwg {

namespace {

// Room for a 3D face or a line with its handles, so that most objects
// allocate their buffer once instead of growing it step by step.
constexpr size_t kTypicalObjectBytes = 128;

// Start of every object: type, a placeholder for the bit size of the data,
// the object's handle and an empty extended data. Returns where the size
// goes.
size_t StartObject(CBitWriter& d, int16_t type, uint64_t handle) {
    d.Reserve(kTypicalObjectBytes);
    d.BS(type);
    const size_t sizePos = d.BitPos();
    d.RL(0);
    d.H(kHandleOwn, handle);
    d.BS(0);  // no extended data
    return sizePos;
}

constexpr uint8_t kLineweightByLayer = 29;

}  // namespace

CObjWriter::CObjWriter(int16_t type, uint64_t handle, std::initializer_list<uint64_t> reactors)
    : reactors_(reactors) {
    sizeBitPos_ = StartObject(data_, type, handle);
    data_.BL(static_cast<int32_t>(reactors_.size()));
}

CObjWriter::CObjWriter(TEntityTag, int16_t type, uint64_t handle) { sizeBitPos_ = StartObject(data_, type, handle); }

void CObjWriter::OwnerHandles(uint64_t owner) {
    handles_.H(kSoftPointer, owner);
    for (uint64_t r : reactors_) handles_.H(kSoftPointer, r);
    handles_.H(kHardOwner, 0);  // no extension dictionary
}

std::vector<uint8_t> CObjWriter::Finish() {
    std::vector<uint8_t> out;
    FinishInto(out);
    return out;
}

void CObjWriter::FinishInto(std::vector<uint8_t>& out) {
    // The size counts the bits before the handle stream, from the type on.
    data_.PatchRL(sizeBitPos_, static_cast<uint32_t>(data_.BitPos()));
    data_.Append(handles_);
    data_.PadToByte();
    const std::vector<uint8_t>& body = data_.Bytes();
    const size_t start = out.size();
    AppendMS(out, static_cast<uint32_t>(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    const uint16_t crc = Crc8(kCrcSeed, out.data() + start, out.size() - start);
    out.push_back(static_cast<uint8_t>(crc));
    out.push_back(static_cast<uint8_t>(crc >> 8));
}

CEntWriter::CEntWriter(int16_t type, const TEntityCommon& c) : CObjWriter(TEntityTag{}, type, c.handle), c_(c) {
    CBitWriter& d = D();
    d.B(false);  // no graphic image
    d.BB(c.mode);
    d.BL(0);     // no reactors
    d.B(false);  // the previous and next entities are given
    d.CMC(c.colour);
    d.BD(1.0);   // linetype scale
    d.BB(0);     // linetype by layer
    d.BB(0);     // plot style by layer
    d.BS(0);     // visible
    d.RC(kLineweightByLayer);
}

void CEntWriter::CommonHandles() {
    CBitWriter& h = H();
    if (c_.mode == kEntModeOwner) h.H(kSoftPointer, c_.owner);
    h.H(kHardOwner, 0);  // no extension dictionary
    h.H(kSoftPointer, c_.prev);
    h.H(kSoftPointer, c_.next);
    h.H(kHardPointer, c_.layer);
}

}  // namespace roadx::cad::dwg
