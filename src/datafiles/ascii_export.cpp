// The ASCII spectrum export. The trace is gathered first (X in ppm, the
// real part, the imaginary part where the spectrum has one, and its screen
// scale), then written by the mode's rule.
#include "datafiles/ascii_export.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

struct Trace {
  std::vector<float> x, re, im;  // im empty: the spectrum has no imaginary part
  double full_scale = 1, offset = 0;  // Y at the frame's top, and the base's height
};

Trace Main_Trace(Session& s) {
  Trace t;
  const auto row = static_cast<std::size_t>(s.Row());
  const int32_t n = std::min<int32_t>(s.Spec_Points, static_cast<int32_t>(s.Spec_Axis.size()));
  for (int32_t i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    t.x.push_back(s.Spec_Axis[k]);
    t.re.push_back(s.Spec_Re(k, row));
    t.im.push_back(s.Spec_Im.Empty() ? 0.0f : s.Spec_Im(k, row));
  }
  t.full_scale = s.Y_Full_Scale > 0 ? s.Y_Full_Scale : s.Max_Abs / (s.Y_Mag > 0 ? s.Y_Mag : 0.95f);
  t.offset = s.Y_Offset;
  return t;
}

Trace Slot_Trace(const Overlay_Slot& o) {
  Trace t;
  const std::size_t n = std::min({static_cast<std::size_t>(std::max(o.Slot_Points, 0)), o.Slot_X.size(), o.Slot_Y.size()});
  t.x.assign(o.Slot_X.begin(), o.Slot_X.begin() + static_cast<std::ptrdiff_t>(n));
  t.re.assign(o.Slot_Y.begin(), o.Slot_Y.begin() + static_cast<std::ptrdiff_t>(n));
  t.full_scale = o.Slot_Y_Full > 0 ? o.Slot_Y_Full : o.Slot_Max_Abs / (o.Slot_Y_Mag > 0 ? o.Slot_Y_Mag : 0.95f);
  t.offset = o.Slot_Y_Offset;
  return t;
}

// The unit of a relative intensity: the largest value, or the largest
// magnitude when no value is above 0.
double Largest_Peak(const std::vector<float>& y) {
  double top = 0, mag = 0;
  for (float v : y) {
    top = std::max(top, static_cast<double>(v));
    mag = std::max(mag, std::fabs(static_cast<double>(v)));
  }
  return top > 0 ? top : mag > 0 ? mag : 1.0;
}

// The shortest text that reads back to the same real32.
std::string Number_Text(float v) {
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

}  // namespace

const std::vector<std::string>& Ascii_Mode_Captions() {
  static const std::vector<std::string> captions = {
      "データそのまま", "画面表示どおり(画面高さを 1.0 とする)", "このスペクトルの最大ピークに対する相対強度",
      "スペクトル1の最大ピークに対する相対強度"};
  return captions;
}

int Write_Ascii(Session& s, const std::string& path, int spectrum, const std::string& mode) {
  if (spectrum < 0 || spectrum > Overlay_Max) return 1;
  Trace t = spectrum == 0 ? Main_Trace(s) : Slot_Trace(s.Overlay[static_cast<std::size_t>(spectrum)]);
  if (t.x.empty()) return 1;

  const bool with_imaginary = mode != "D" && mode != "R" && mode != "R1" && mode != "R2" && !t.im.empty();
  double unit = 1, shift = 0;
  if (mode == "R" || mode == "R1") unit = Largest_Peak(t.re);
  if (mode == "R2") unit = Largest_Peak(Main_Trace(s).re);
  if (mode == "D") unit = t.full_scale, shift = t.offset;
  // The view of the screen, for "D"; the whole spectrum otherwise.
  double low = -HUGE_VAL, high = HUGE_VAL;
  if (mode == "D" && s.X_Left != s.X_Right) {
    low = std::min(s.X_Left, s.X_Right);
    high = std::max(s.X_Left, s.X_Right);
  }

  std::vector<std::string> lines;
  const std::size_t n = t.x.size();
  const bool ascending = t.x.front() <= t.x.back();
  for (std::size_t j = 0; j < n; ++j) {
    const std::size_t i = ascending ? n - 1 - j : j;  // from the highest ppm down
    if (t.x[i] < low || t.x[i] > high) continue;
    const auto y = static_cast<float>(t.re[i] / unit + shift);
    lines.push_back(Number_Text(t.x[i]) + ", " + Number_Text(y) + "," +
                    (with_imaginary ? Number_Text(t.im[i]) : std::string("0")));
  }
  return Write_Export_Lines(s, path, lines);
}

}  // namespace tevo::datafiles
