#include "signal/window.h"

#include <algorithm>
#include <cmath>

#include "session/messages.h"
#include "session/session.h"

namespace tevo::signal {

namespace {
constexpr double Pi = 3.14159265358979;

int32_t Round_Int(double v) { return static_cast<int32_t>(std::nearbyint(v)); }
}  // namespace

int Build_Window(Session& s) {
  const int32_t n = std::max(s.Spec_Points, 0);
  const int32_t len = std::min(s.LP_Fill_Factor == 1 ? s.Fid_Points : n, n);

  // 1. Bounds: a start must lie in -100 .. <100 and below the end, an end in
  //    >0 .. 200 and above the start. An end beyond 100 lets a sine bell
  //    finish past the last measured point.
  if (!(s.Window_Start >= -100 && s.Window_Start < 100 && s.Window_Start < s.Window_End))
    s.Window_Start = 0;
  if (!(s.Window_End > 0 && s.Window_End <= 200 && s.Window_End > s.Window_Start))
    s.Window_End = 100;

  // 2. All weights 0.
  s.Window_Func.assign(static_cast<std::size_t>(n), 0.0f);
  float* w = s.Window_Func.data();

  // 3. Bounds in points.
  const int32_t a = Round_Int(len * static_cast<double>(s.Window_Start) / 100.0);
  const int32_t b = Round_Int(len * static_cast<double>(s.Window_End) / 100.0);
  const bool collapsed = s.Window_Kind == 0 ? s.Param.FREQU == 0 : b == a;
  if (collapsed && len > 0) {
    Disk_Error_Text(s, 11, "FT/WIN");
    return -1;
  }

  // 4. Weights over the FID length.
  const double width = static_cast<double>(b) - a;
  for (int32_t i = 0; i < len; ++i) {
    switch (s.Window_Kind) {
      case 0:  // exponential decay, Line_Broadening Hz over Spectral_Width Hz
        w[i] = static_cast<float>(
            std::exp(-static_cast<double>(s.Line_Broadening) * i * Pi / s.Param.FREQU));
        break;
      case 1:
        w[i] = static_cast<float>(std::sin((i - a) / width * Pi));
        break;
      case 2: {
        const float v = static_cast<float>(std::sin((i - a) / width * Pi));
        w[i] = static_cast<float>(static_cast<double>(v) * v);
        break;
      }
      default: {
        const float x = static_cast<float>((i - (a + b) * 0.5) / width);
        w[i] = static_cast<float>(std::exp(-static_cast<double>(x) * x * 20.0));
        break;
      }
    }
  }

  // 5. Trapezoid corners: percent of the length left after a left shift.
  const int32_t base = s.Fid_Shift < 1 ? len : len - s.Fid_Shift;
  auto corner = [&](float t) { return Round_Int(static_cast<double>(t) * base / 100.0); };
  const int32_t p1 = corner(s.Trap_T1), p2 = corner(s.Trap_T2);
  const int32_t p3 = corner(s.Trap_T3), p4 = corner(s.Trap_T4);
  auto inside = [n](int32_t i) { return i >= 0 && i < n; };

  // 6. Clear up to the first corner, inclusive.
  for (int32_t i = 0; i <= p1; ++i)
    if (inside(i)) w[i] = 0.0f;
  // 7. Rising edge.
  if (p2 > p1)
    for (int32_t i = p1; i <= p2; ++i)
      if (inside(i)) w[i] = static_cast<float>(static_cast<double>(w[i]) * (i - p1) / (p2 - p1));
  // 8. Falling edge.
  if (p4 > p3)
    for (int32_t i = p3; i <= p4; ++i)
      if (inside(i)) w[i] = static_cast<float>(static_cast<double>(w[i]) * (i - p4) / (p3 - p4));
  // 9. Nothing past the last corner.
  for (int32_t i = std::max(p4, 0); i < n; ++i) w[i] = 0.0f;
  return 0;
}

}  // namespace tevo::signal
