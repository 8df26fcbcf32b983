// The file around the objects: file header with its section locators,
// header variables, classes, padding, object map, free space record,
// template, second header and image data, at the offsets the locators
// give.
#include "cad/dwg_file.h"

#include <algorithm>

#include "cad/dwg_bits.h"
#include "cad/dwg_sections.h"
#include "cad/zedra_eng.h"

namespace roadx::cad::dwg {

namespace {

using TBytes = std::vector<uint8_t>;

void Put(TBytes& out, const TSentinel& s) { out.insert(out.end(), s.begin(), s.end()); }

void PutRS(TBytes& out, uint16_t v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

void PutRL(TBytes& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(v >> (8 * i)));
}

void PokeRL(TBytes& out, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) out[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

// Sentinel, size, data, CRC of size and data, closing sentinel.
void Section(TBytes& out, const TSentinel& begin, const TBytes& data, const TSentinel& end) {
    Put(out, begin);
    const size_t start = out.size();
    PutRL(out, static_cast<uint32_t>(data.size()));
    out.insert(out.end(), data.begin(), data.end());
    PutRS(out, Crc8(kCrcSeed, out.data() + start, out.size() - start));
    Put(out, end);
}

// The classes of the objects that have no fixed type, in type order.
TBytes ClassesData() {
    static const char* const kClasses[][2] = {
        {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault"},
        {"ACDBPLACEHOLDER", "AcDbPlaceHolder"},
        {"LAYOUT", "AcDbLayout"},
    };
    CBitWriter d;
    int16_t number = 500;
    for (const auto& cl : kClasses) {
        d.BS(number++);
        d.BS(0);  // proxy flags
        d.T("ObjectDBX Classes");
        d.T(cl[1]);
        d.T(cl[0]);
        d.B(false);   // not a zombie
        d.BS(0x1F3);  // makes objects, not entities
    }
    d.PadToByte();
    return d.Bytes();
}

constexpr uint32_t kJulianDay = 2451545;

// Free space record: object count, update date, where the objects start,
// and four pairs of values readers expect.
TBytes FreeSpace(uint32_t objectCount, uint32_t objectsStart) {
    TBytes out;
    PutRL(out, 0);
    PutRL(out, objectCount);
    PutRL(out, kJulianDay);
    PutRL(out, 0);
    PutRL(out, objectsStart);
    out.push_back(4);
    for (uint32_t v : {0x32u, 0u, 0x64u, 0u, 0x200u, 0u, 0xFFFFFFFFu, 0u}) PutRL(out, v);
    return out;
}

struct TLocator {
    uint32_t seeker = 0;
    uint32_t size = 0;
};

// The second header repeats the locators and the handles of the control
// objects and main dictionaries.
TBytes SecondHeader(const CDwgCtx& c, uint32_t at, const TLocator (&loc)[kLocatorCount]) {
    const dxf::TFixedHandles& f = c.g.fixed;
    CBitWriter d;
    d.BL(static_cast<int32_t>(at));
    for (char ch : std::string_view("AC1015")) d.RC(static_cast<uint8_t>(ch));
    for (int i = 0; i < 6; ++i) d.RC(0);
    d.Bits(0, 4);
    for (uint8_t b : {0x18, 0x78, 0x01, 0x05}) d.RC(b);
    for (uint8_t i = 0; i < kLocatorCount; ++i) {
        d.RC(i);
        d.BL(static_cast<int32_t>(loc[i].seeker));
        d.BL(static_cast<int32_t>(loc[i].size));
    }
    const uint64_t handles[] = {c.handSeed, f.blockRecordTable, f.layerTable, f.styleTable, f.ltypeTable,
                                f.viewTable, f.ucsTable, f.vportTable, f.appidTable, f.dimstyleTable,
                                c.vpEntHdrControl, f.dictRoot, f.dictMlineStyle, f.dictGroup};
    d.BS(static_cast<int16_t>(std::size(handles)));
    uint8_t index = 0;
    for (uint64_t h : handles) {
        uint8_t n = 0;
        while (n < 8 && (h >> (8 * n)) != 0) ++n;
        d.RC(n);
        d.RC(index++);
        for (int i = n - 1; i >= 0; --i) d.RC(static_cast<uint8_t>(h >> (8 * i)));
    }
    d.PadToByte();
    TBytes body = d.Bytes();
    TBytes out;
    Put(out, kSecondHeaderBegin);
    const size_t start = out.size();
    PutRL(out, static_cast<uint32_t>(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    PutRS(out, Crc8(kCrcSeed, out.data() + start, out.size() - start));
    Put(out, kSecondHeaderEnd);
    return out;
}

}  // namespace

uint16_t FileHeaderCrcMask(int locators) {
    switch (locators) {
        case 3: return 0xA598;
        case 4: return 0x8101;
        case 5: return 0x3CC4;
        case 6: return 0x8461;
        default: return 0;
    }
}

std::vector<uint8_t> ObjectMap(const std::vector<TMapEntry>& entries) {
    TBytes out;
    size_t i = 0;
    while (true) {
        // Every section starts again from handle 0 at offset 0.
        uint64_t lastHandle = 0;
        int64_t lastLoc = 0;
        TBytes sec = {0, 0};
        while (i < entries.size()) {
            TBytes item;
            AppendMC(item, static_cast<int64_t>(entries[i].handle - lastHandle));
            AppendMC(item, static_cast<int64_t>(entries[i].location) - lastLoc);
            if (sec.size() + item.size() > kMapSectionMax) break;
            sec.insert(sec.end(), item.begin(), item.end());
            lastHandle = entries[i].handle;
            lastLoc = entries[i].location;
            ++i;
        }
        sec[0] = static_cast<uint8_t>(sec.size() >> 8);
        sec[1] = static_cast<uint8_t>(sec.size());
        const uint16_t crc = Crc8(kCrcSeed, sec.data(), sec.size());
        sec.push_back(static_cast<uint8_t>(crc >> 8));
        sec.push_back(static_cast<uint8_t>(crc));
        out.insert(out.end(), sec.begin(), sec.end());
        if (sec.size() == 4) return out;  // the closing empty section
    }
}

std::vector<uint8_t> AssembleFile(CDwgCtx& c) {
    TBytes out = {'A', 'C', '1', '0', '1', '5', 0, 0, 0, 0, 0, 0, 1};
    // The objects and their map (a few bytes an object) are nearly all of
    // the file.
    out.reserve(c.objects.size() + 8 * c.map.size() + 65536);
    const size_t imageSeekerAt = out.size();
    PutRL(out, 0);
    out.push_back(0);
    out.push_back(0);
    PutRS(out, kCodePage1252);
    PutRL(out, kLocatorCount);
    const size_t locatorsAt = out.size();
    out.resize(out.size() + 9 * kLocatorCount);
    const size_t crcAt = out.size();
    out.resize(out.size() + 2);
    Put(out, kFileHeaderEnd);

    TLocator loc[kLocatorCount];
    auto mark = [&](ELocator which, size_t begin) {
        loc[which].seeker = static_cast<uint32_t>(begin);
        loc[which].size = static_cast<uint32_t>(out.size() - begin);
    };

    size_t begin = out.size();
    Section(out, kHeaderBegin, HeaderVariables(c), kHeaderEnd);
    mark(kLocHeader, begin);
    begin = out.size();
    Section(out, kClassesBegin, ClassesData(), kClassesEnd);
    mark(kLocClasses, begin);
    out.resize(out.size() + 0x200);  // padding

    const auto objectsStart = static_cast<uint32_t>(out.size());
    out.insert(out.end(), c.objects.begin(), c.objects.end());
    std::vector<TMapEntry> entries;
    entries.reserve(c.map.size());
    for (const auto& m : c.map) entries.push_back({m.handle, objectsStart + m.offset});
    std::sort(entries.begin(), entries.end(), [](const TMapEntry& a, const TMapEntry& b) { return a.handle < b.handle; });

    begin = out.size();
    const TBytes map = ObjectMap(entries);
    out.insert(out.end(), map.begin(), map.end());
    mark(kLocObjectMap, begin);
    begin = out.size();
    const TBytes freeSpace = FreeSpace(static_cast<uint32_t>(entries.size()), objectsStart);
    out.insert(out.end(), freeSpace.begin(), freeSpace.end());
    mark(kLocFreeSpace, begin);
    begin = out.size();
    PutRS(out, 0);  // no template description
    PutRS(out, static_cast<uint16_t>(c.saveVars ? c.eng.Vars().measurement : TZedraVars{}.measurement));
    mark(kLocTemplate, begin);

    const TBytes second = SecondHeader(c, static_cast<uint32_t>(out.size()), loc);
    out.insert(out.end(), second.begin(), second.end());

    PokeRL(out, imageSeekerAt, static_cast<uint32_t>(out.size()));
    Put(out, kImageBegin);
    PutRL(out, 1);
    out.push_back(0);  // no images
    Put(out, kImageEnd);

    for (uint8_t i = 0; i < kLocatorCount; ++i) {
        const size_t at = locatorsAt + 9u * i;
        out[at] = i;
        PokeRL(out, at + 1, loc[i].seeker);
        PokeRL(out, at + 5, loc[i].size);
    }
    const uint16_t crc = Crc8(0, out.data(), crcAt) ^ FileHeaderCrcMask(kLocatorCount);
    out[crcAt] = static_cast<uint8_t>(crc);
    out[crcAt + 1] = static_cast<uint8_t>(crc >> 8);
    return out;
}

}  // namespace roadx::cad::dwg
