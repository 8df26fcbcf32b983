// The document's "no value": stored and written as 1.7e200, and a value
// counts as defined only below 8.5e199.
#pragma once

namespace vesk {
inline constexpr double kUndefined = 1.7e200;
inline constexpr double kUndefinedLimit = 8.5e199;
inline bool IsDefined(double v) { return v < kUndefinedLimit; }
}  // namespace vesk
