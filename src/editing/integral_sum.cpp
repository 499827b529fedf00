#include "editing/integral_sum.h"

#include <algorithm>

#include "session/session.h"

namespace tevo::editing {

float Calc_Integral(Session& s, int32_t index) {
  if (index < 0 || index >= static_cast<int32_t>(s.Integrals.size()) || s.Spec_Points <= 0)
    return 0;
  Integ_Rec& r = s.Integrals[static_cast<std::size_t>(index)];
  const double n = s.Spec_Points;
  const double slope = r.B1 / n;
  const double offset = r.B0 + r.B1 * r.End_Point / n;
  const auto row = static_cast<std::size_t>(s.Row());
  const int32_t hi = std::min(r.End_Point, s.Spec_Points - 1);
  const int32_t lo = std::max(r.Start_Point, 0);
  double sum = 0;
  for (int32_t k = hi; k >= lo; --k)
    sum += s.Spec_Re(static_cast<std::size_t>(k), row) / static_cast<double>(s.Max_Abs) -
           k * slope + offset;
  r.Value = static_cast<float>(sum);
  return r.Value;
}

}  // namespace tevo::editing
