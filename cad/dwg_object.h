// One object of the objects section of an AC1015 file, as it is built:
// a data stream (type, the bit size of the data, the handle, the object's
// own fields) and a handle stream (owner, reactors, extension dictionary,
// the object's references), joined and framed when finished: modular-short
// size, the bits padded to a byte, the CRC.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "cad/dwg_bits.h"

namespace roadx::cad::dwg {

// Object types with a fixed number.
enum EObjType : int16_t {
    kTypeText = 1,
    kTypeBlock = 4,
    kTypeEndblk = 5,
    kTypeSeqend = 6,
    kTypeInsert = 7,
    kTypeVertex3D = 0x0B,
    kTypePolyline3D = 0x10,
    kTypeArc = 0x11,
    kTypeCircle = 0x12,
    kTypeLine = 0x13,
    kTypePoint = 0x1B,
    kTypeFace3D = 0x1C,
    kTypeDictionary = 0x2A,
    kTypeBlockControl = 0x30,
    kTypeBlockHeader = 0x31,
    kTypeLayerControl = 0x32,
    kTypeLayer = 0x33,
    kTypeStyleControl = 0x34,
    kTypeStyle = 0x35,
    kTypeLtypeControl = 0x38,
    kTypeLtype = 0x39,
    kTypeViewControl = 0x3C,
    kTypeUcsControl = 0x3E,
    kTypeVportControl = 0x40,
    kTypeVport = 0x41,
    kTypeAppidControl = 0x42,
    kTypeAppid = 0x43,
    kTypeDimstyleControl = 0x44,
    kTypeDimstyle = 0x45,
    kTypeVpEntHdrControl = 0x46,
    kTypeMlineStyle = 0x49,
    kTypeLwPolyline = 0x4D,
    // Types of the classes of the file, in the order of the CLASSES section.
    kTypeDictionaryWdflt = 500,
    kTypePlaceholder = 501,
    kTypeLayout = 502,
};

// Entity mode: where the owner of an entity is found.
enum EEntMode : unsigned {
    kEntModeOwner = 0,   // the owner handle is in the handle stream
    kEntModePaper = 1,   // paper space, no owner handle
    kEntModeModel = 2,   // model space, no owner handle
};

class CObjWriter {
public:
    // Starts a non-entity object: type, bit size (filled in by Finish),
    // handle, no extended data, the reactor count.
    CObjWriter(int16_t type, uint64_t handle, std::initializer_list<uint64_t> reactors = {});

    CBitWriter& D() { return data_; }
    CBitWriter& H() { return handles_; }

    // Writes the owner (soft pointer), the reactors and the empty
    // extension dictionary: the start of every handle stream.
    void OwnerHandles(uint64_t owner);

    // The framed object: size, data and handles, CRC.
    std::vector<uint8_t> Finish();
    // The same bytes appended to out, without a buffer of their own.
    void FinishInto(std::vector<uint8_t>& out);

protected:
    struct TEntityTag {};
    CObjWriter(TEntityTag, int16_t type, uint64_t handle);
    std::vector<uint64_t> reactors_;

private:
    CBitWriter data_;
    CBitWriter handles_;
    size_t sizeBitPos_ = 0;
};

// What every entity shares, in the data stream and the handle stream.
struct TEntityCommon {
    uint64_t handle = 0;
    EEntMode mode = kEntModeModel;
    uint64_t owner = 0;   // written when mode is kEntModeOwner
    int16_t colour = 256;  // by layer
    uint64_t layer = 0;
    uint64_t prev = 0;    // neighbours in the owner's chain; 0 for none
    uint64_t next = 0;
};

class CEntWriter : public CObjWriter {
public:
    // Writes the common entity data; the entity's own fields follow in D().
    CEntWriter(int16_t type, const TEntityCommon& c);
    // The common entity handles, then the entity's own handles follow in H().
    void CommonHandles();

private:
    TEntityCommon c_;
};

}  // namespace roadx::cad::dwg
