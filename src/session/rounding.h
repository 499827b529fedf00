// Rounding to the nearest integer, ties to even, without a library call:
// the hot loops (table phase rotation, trace decimation) round once a point.
#pragma once

#include <cstdint>

namespace tevo {

// The nearest integer of v, ties to even, as std::nearbyint gives under the
// default rounding mode, for |v| < 2^51: adding and taking away 1.5 * 2^52
// leaves only the integer part in the double's mantissa.
inline int64_t Round_Near(double v) {
  constexpr double magic = 6755399441055744.0;
  return static_cast<int64_t>((v + magic) - magic);
}

}  // namespace tevo
