#include "overlay/difference.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "session/session.h"

namespace tevo::overlay {

namespace {

// The slot's axis as the interpolation reads it: first value a, points per
// ppm `scale` (0 for an axis of one value), so that point k sits at
// q = (x - a) * scale.
struct Slot_Axis {
  double a = 0, scale = 0;
  int32_t points = 0;
};

Slot_Axis Axis_Of(const Overlay_Slot& o) {
  Slot_Axis ax;
  ax.points = std::min<int32_t>(o.Slot_Points, static_cast<int32_t>(std::min(o.Slot_X.size(), o.Slot_Y.size())));
  if (ax.points < 2) return ax;
  ax.a = o.Slot_X.front();
  const double b = o.Slot_X[static_cast<std::size_t>(ax.points - 1)];
  ax.scale = ax.a == b ? 0 : (ax.points - 1) / (b - ax.a);
  return ax;
}

// The interpolated value at x, in the form the difference spectrum uses:
// ((x_b - x) y[k] + (x - x_a) y[k+1]) * scale, between the points k and k+1
// around x.
bool Value_At(const Overlay_Slot& o, const Slot_Axis& ax, double x, double& value) {
  if (ax.points < 2) return false;
  const double q = (x - ax.a) * ax.scale;
  if (!(q >= 0)) return false;  // below the first point, or NaN
  const auto k = static_cast<int64_t>(std::floor(q));
  if (k >= ax.points - 1) return false;
  const auto i = static_cast<std::size_t>(k);
  const double xa = o.Slot_X[i], xb = o.Slot_X[i + 1];
  value = ((xb - x) * o.Slot_Y[i] + (x - xa) * o.Slot_Y[i + 1]) * ax.scale;
  return true;
}

// Slot `k` as values on the main axis: its own points when it shares the
// axis (the fast path), otherwise read there by interpolation, 0 beyond it.
std::vector<double> On_Main_Axis(const Session& s, const Overlay_Slot& o) {
  const auto n = static_cast<std::size_t>(s.Spec_Points);
  std::vector<double> out(n, 0.0);
  const bool same = o.Slot_Points == s.Spec_Points && o.Slot_X.size() >= n && o.Slot_Y.size() >= n &&
                    std::equal(o.Slot_X.begin(), o.Slot_X.begin() + static_cast<std::ptrdiff_t>(n), s.Spec_Axis.begin());
  if (same) {
    std::copy_n(o.Slot_Y.begin(), n, out.begin());
    return out;
  }
  const Slot_Axis ax = Axis_Of(o);
  for (std::size_t i = 0; i < n; ++i) {
    double v = 0;
    if (Value_At(o, ax, s.Spec_Axis[i], v)) out[i] = v;
  }
  return out;
}

}  // namespace

bool Slot_Value_At(const Overlay_Slot& o, double ppm, double& value) { return Value_At(o, Axis_Of(o), ppm, value); }

void Calc_Difference_Spec(Session& s, int slot) {
  const auto n = static_cast<std::size_t>(std::max(s.Spec_Points, 0));
  const auto row = static_cast<std::size_t>(s.Row());
  if (n == 0 || s.Spec_Re.Stride() < n || s.Ft_Re.Stride() < n || s.Spec_Axis.size() < n) return;
  const std::span<const float> ft = s.Ft_Re.Row(row);
  const std::span<float> out = s.Spec_Re.Row(row);
  const bool use = slot >= 1 && slot <= Overlay_Max;
  const Slot_Axis ax = use ? Axis_Of(s.Overlay[static_cast<std::size_t>(slot)]) : Slot_Axis{};
  for (std::size_t i = 0; i < n; ++i) {
    double v = 0;
    if (ax.points >= 2 && Value_At(s.Overlay[static_cast<std::size_t>(slot)], ax, s.Spec_Axis[i] - s.Diff_Shift, v))
      out[i] = static_cast<float>(ft[i] - v * s.Diff_Mag);
    else
      out[i] = ft[i];
  }
  Build_Disp_Arrays(s, 1);
}

void Calc_DEPT_Spec(Session& s) {
  for (int k = 1; k <= 3; ++k)
    if (s.Overlay[static_cast<std::size_t>(k)].Slot_Points < 1) return;
  const auto n = static_cast<std::size_t>(std::max(s.Spec_Points, 0));
  if (n == 0 || s.Spec_Re.Stride() < n || s.Spec_Axis.size() < n) return;
  const std::span<const float> m = s.Spec_Re.Row(static_cast<std::size_t>(s.Row()));
  const std::vector<double> s1 = On_Main_Axis(s, s.Overlay[1]);
  const std::vector<double> s2 = On_Main_Axis(s, s.Overlay[2]);
  const std::vector<double> s3 = On_Main_Axis(s, s.Overlay[3]);
  std::vector<float> ch(n), ch3(n), ch2(n);
  for (std::size_t i = 0; i < n; ++i) {
    ch2[i] = static_cast<float>((s.DEPT_CH2_45 * m[i] - s3[i]) * 0.5);
    const double a = s.DEPT_CH3_135 * s3[i] + m[i];
    const double b = s.DEPT_CH_135 * s3[i] + m[i];
    ch3[i] = static_cast<float>((a - s.DEPT_CH3_90 * s2[i]) * 0.5);
    ch[i] = static_cast<float>(s.DEPT_CH_MUL * b + s1[i]);
  }
  s.Overlay[1].Slot_Y_Im = std::move(ch);
  s.Overlay[2].Slot_Y_Im = std::move(ch3);
  s.Overlay[3].Slot_Y_Im = std::move(ch2);
}

}  // namespace tevo::overlay
