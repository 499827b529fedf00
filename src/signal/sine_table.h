// The sine table shared by the transform and the phase rotation.
//
// Entry k is sin(2 pi k / M) with period M = Fft_Table_Size (524288), stored
// as a 32-bit float. The table runs to 5M/4 (655361 entries) so that the
// cosine of entry k is read at k + M/4 without wrapping. Loops over 524288
// points index it instead of calling sin/cos per point.
#pragma once

#include <cstdint>
#include <vector>

namespace tevo::signal {

inline constexpr int32_t Fft_Table_Size = 524288;  // period M of the table
inline constexpr int32_t Fft_Sine_Entries = 655361;  // Round(5M/4) + 1

// The table, built on first use and shared for the life of the process.
const std::vector<float>& Fft_Sine();

}  // namespace tevo::signal
