// The sections of an AC1015 file and the 16-byte sentinels that open and
// close them (readers use them to find their way when recovering a file).
//
// Layout: file header with five section locators; header variables;
// classes; 0x200 bytes of padding; the objects; the object map; the object
// free space record; the template (MEASUREMENT); the second file header;
// the (empty) image data.
#pragma once
#include <array>
#include <cstdint>
#include <vector>

namespace roadx::cad::dwg {

using TSentinel = std::array<uint8_t, 16>;

inline constexpr TSentinel kFileHeaderEnd = {0x95, 0xA0, 0x4E, 0x28, 0x99, 0x82, 0x1A, 0xE5,
                                             0x5E, 0x41, 0xE0, 0x5F, 0x9D, 0x3A, 0x4D, 0x00};
inline constexpr TSentinel kHeaderBegin = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                           0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};
inline constexpr TSentinel kHeaderEnd = {0x30, 0x84, 0xE0, 0xDC, 0x02, 0x21, 0xC7, 0x56,
                                         0xA0, 0x83, 0x97, 0x47, 0xB1, 0x92, 0xCC, 0xA0};
inline constexpr TSentinel kClassesBegin = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                            0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};
inline constexpr TSentinel kClassesEnd = {0x72, 0x5E, 0x3B, 0x47, 0x3B, 0x56, 0x07, 0x3A,
                                          0x3F, 0x23, 0x0B, 0xA0, 0x18, 0x30, 0x49, 0x75};
inline constexpr TSentinel kSecondHeaderBegin = {0xD4, 0x7B, 0x21, 0xCE, 0x28, 0x93, 0x9F, 0xBF,
                                                 0x53, 0x24, 0x40, 0x09, 0x12, 0x3C, 0xAA, 0x01};
inline constexpr TSentinel kSecondHeaderEnd = {0x2B, 0x84, 0xDE, 0x31, 0xD7, 0x6C, 0x60, 0x40,
                                               0xAC, 0xDB, 0xBF, 0xF6, 0xED, 0xC3, 0x55, 0xFE};
inline constexpr TSentinel kImageBegin = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                          0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
inline constexpr TSentinel kImageEnd = {0xE0, 0xDA, 0x92, 0xF8, 0x2B, 0xC9, 0xD7, 0xD7,
                                        0x62, 0xA8, 0x35, 0xC0, 0x62, 0xBB, 0xEF, 0xD4};

// Section locator records of the file header.
enum ELocator : uint8_t {
    kLocHeader = 0,
    kLocClasses = 1,
    kLocObjectMap = 2,
    kLocFreeSpace = 3,
    kLocTemplate = 4,
    kLocatorCount = 5,
};

// The file header CRC is XORed with a value that depends on the number of
// locator records (3 to 6).
uint16_t FileHeaderCrcMask(int locators);

// Code page number of ANSI_1252 in the file header.
inline constexpr uint16_t kCodePage1252 = 30;

// Largest object map section, size field included.
inline constexpr size_t kMapSectionMax = 2032;

struct TMapEntry {
    uint64_t handle;
    uint32_t location;  // absolute file offset of the object
};

// The object map: sections of modular-char handle and location deltas,
// each with a big-endian size and CRC, ended by an empty section. Entries
// must be sorted by handle.
std::vector<uint8_t> ObjectMap(const std::vector<TMapEntry>& entries);

}  // namespace roadx::cad::dwg
