// The sum of an integral region with its own straight baseline.
#pragma once

#include <cstdint>

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Sums region `index` over Spec_Re of the current row in units of Max_Abs,
// from End_Point down to Start_Point, each point corrected by the region's
// baseline: B0 at the high-index end and B1 per whole spectrum width:
//   s += Spec_Re[k] / Max_Abs - k * B1 / N + (B0 + B1 * End_Point / N)
// with N = Spec_Points. Stores the sum in the record's Value and returns it;
// 0 for an index outside the list.
float Calc_Integral(Session& s, int32_t index);

}  // namespace tevo::editing
