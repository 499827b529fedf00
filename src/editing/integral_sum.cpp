#include "editing/integral_sum.h"

namespace tevo::editing {

float Calc_Integral(Session& s, int32_t index) {
  if (index < 0 || index >= static_cast<int32_t>(s.Integrals.size()) || s.Spec_Points <= 0) return 0;
  Integ_Rec& r = s.Integrals[static_cast<std::size_t>(index)];
  r.Value = static_cast<float>(Walk_Integral(s, r, [](int32_t, double) {}));
  return r.Value;
}

}  // namespace tevo::editing
