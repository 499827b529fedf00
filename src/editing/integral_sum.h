// The sum of an integral region with its own straight baseline.
#pragma once

#include <algorithm>
#include <cstdint>

#include "session/session.h"

namespace tevo::editing {

// The running sum of region `r` over Spec_Re of the current row in units of
// Max_Abs, from End_Point down to Start_Point, each point corrected by the
// region's baseline: B0 at the high-index end and B1 per whole spectrum
// width:
//   s += Spec_Re[k] / Max_Abs - k * B1 / N + (B0 + B1 * End_Point / N)
// with N = Spec_Points, in real64. `each(k, s)` sees every partial sum
// (the integral curve); the whole sum is returned.
template <class Each>
double Walk_Integral(const Session& s, const Integ_Rec& r, Each each) {
  if (s.Spec_Points <= 0) return 0;
  const double n = s.Spec_Points;
  const double slope = r.B1 / n;
  const double offset = r.B0 + r.B1 * r.End_Point / n;
  const auto row = static_cast<std::size_t>(std::clamp(s.Array_Row, 0, std::max(s.Array_Rows - 1, 0)));
  const double unit = s.Max_Abs;
  const int32_t hi = std::min(r.End_Point, s.Spec_Points - 1);
  const int32_t lo = std::max(r.Start_Point, 0);
  double sum = 0;
  for (int32_t k = hi; k >= lo; --k) {
    sum += s.Spec_Re(static_cast<std::size_t>(k), row) / unit - k * slope + offset;
    each(k, sum);
  }
  return sum;
}

// Sums region `index` by Walk_Integral, stores the sum in the record's Value
// (rounded to real32) and returns it; 0 for an index outside the list.
float Calc_Integral(Session& s, int32_t index);

}  // namespace tevo::editing
