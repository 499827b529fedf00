#include "overlay/difference.h"


#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "overlay/overlay_set.h"
#include "session/session.h"
#include "session/settings.h"

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
  if (!DEPT_Slots_Filled(s)) return;
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

bool Slot_Filled(const Session& s, int k) {
  return k >= 1 && k <= Overlay_Max && s.Overlay[static_cast<std::size_t>(k)].Slot_Points > 0;
}

bool DEPT_Slots_Filled(const Session& s) { return Slot_Filled(s, 1) && Slot_Filled(s, 2) && Slot_Filled(s, 3); }

void Show_Difference(Session& s) { Calc_Difference_Spec(s, s.Diff_On ? s.Diff_Slot : 0); }

void Step_Difference(Session& s, double shift, double factor) {
  s.Diff_Shift = static_cast<float>(s.Diff_Shift + shift);
  s.Diff_Mag = static_cast<float>(s.Diff_Mag * factor);
  Show_Difference(s);
}

float Step_DEPT_Coefficient(float value, int steps) {
  const double v = std::clamp(value + 0.01 * steps, -9.9, 9.9);
  return static_cast<float>(std::round(v * 1000) / 1000);
}

bool Set_DEPT_Mode(Session& s, bool on) {
  if (on && !DEPT_Slots_Filled(s)) return false;
  s.DEPT_Mode = on ? 1 : 0;
  if (on) Calc_DEPT_Spec(s);
  Store_DEPT_Settings(s);
  return true;
}

namespace {

// The coefficients under their settings keys.
struct DEPT_Key {
  const char* key;
  float Session::*field;
};
constexpr DEPT_Key DEPT_Keys[] = {
    {"DEPT CH2 45", &Session::DEPT_CH2_45}, {"DEPT CH2 135", &Session::DEPT_CH2_135},
    {"DEPT CH3 45", &Session::DEPT_CH3_45}, {"DEPT CH3 90", &Session::DEPT_CH3_90},
    {"DEPT CH3 135", &Session::DEPT_CH3_135}, {"DEPT CH MUL", &Session::DEPT_CH_MUL},
    {"DEPT CH 135", &Session::DEPT_CH_135},   {"DEPT CH 45", &Session::DEPT_CH_45},
    {"DEPT CH 90", &Session::DEPT_CH_90},
};

}  // namespace

void Store_DEPT_Settings(Session& s) {
  for (const DEPT_Key& k : DEPT_Keys) s.settings.Set(k.key, static_cast<double>(s.*k.field));
  s.settings.Set("DEPT MODE", static_cast<double>(s.DEPT_Mode));
}

void Take_DEPT_Settings(Session& s) {
  for (const DEPT_Key& k : DEPT_Keys) s.*k.field = static_cast<float>(s.settings.Real(k.key));
  s.DEPT_Mode = static_cast<int16_t>(s.settings.Int("DEPT MODE"));
  if (s.DEPT_Mode) Calc_DEPT_Spec(s);
}

Slot_Trace Drawn_Slot(const Session& s, int k) {
  const Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
  const auto n = static_cast<std::size_t>(std::max(s.Spec_Points, 0));
  if (s.DEPT_Mode && k >= 1 && k <= 3 && n > 0 && o.Slot_Y_Im.size() >= n && s.Spec_Axis.size() >= n)
    return {s.Spec_Axis, o.Slot_Y_Im, s.Spec_Points, s.Y_Full_Scale};
  if (o.Slot_Points < 1) return {};
  return {o.Slot_X, o.Slot_Y, o.Slot_Points, Slot_Draw_Full(s, k)};
}

}  // namespace tevo::overlay
