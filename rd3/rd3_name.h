// Names inside RD3 files: UTF-16LE fields of 33 code units (66 bytes), the
// characters followed by zero units, with no terminator when all 33 units
// are used. In memory a name is a std::u16string of at most 33 units with no
// zero padding; roadx texts are UTF-8 and are converted on the way in and out.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace roadx::rd3 {

inline constexpr size_t kNameUnits = 33;
inline constexpr size_t kNameBytes = 2 * kNameUnits;

using RD3Name = std::u16string;

// UTF-8 to UTF-16. Surrogate pairs for code points above U+FFFF. Every
// maximal ill-formed subsequence (stray continuation byte, truncated
// sequence, overlong form, encoded surrogate, value above U+10FFFF) becomes
// one U+FFFD, so the result is always well-formed UTF-16.
std::u16string Utf8ToUtf16(std::string_view utf8);

// UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD (EF BF BD).
std::string Utf16ToUtf8(std::u16string_view utf16);

// The first maxUnits code units of s. A cut never splits a surrogate pair:
// when the last kept unit would be the high half of a pair, that unit is
// dropped as well, so the result may be one unit shorter than maxUnits.
std::u16string CutUtf16(std::u16string_view s, size_t maxUnits);

// A roadx text as a file name field: converted and cut to 33 units.
RD3Name MakeName(std::string_view utf8);

// The 66 bytes of a name field: the units little-endian, zero-padded. Units
// past the 33rd are not written (callers cut with CutUtf16 first).
void EncodeName(std::u16string_view name, uint8_t out[kNameBytes]);

// A name field read back: the units up to the first zero unit (all 33 when
// there is none). Unpaired surrogates are kept as they are, so names compare
// unit by unit exactly as they are stored.
RD3Name DecodeName(const uint8_t in[kNameBytes]);

}  // namespace roadx::rd3
