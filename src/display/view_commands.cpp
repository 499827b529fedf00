#include "display/view_commands.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "display/style.h"
#include "session/command_flow.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::display {

namespace {

constexpr const char* Mag_Format = "####0.0###";

double Ppm_Per_Point(const Session& s) {
  return s.Spectrum_Frequency != 0 ? s.Param.RESOL / s.Spectrum_Frequency : 0.0;
}

// Point position of a ppm value, rounded; and back.
float Ppm_To_Position(const Session& s, double ppm) {
  const double pp = Ppm_Per_Point(s);
  if (pp == 0) return 0;
  return static_cast<float>(std::nearbyint(s.Param.SMTMS + (ppm - s.Param.SMEXR) / pp));
}
double Position_To_Ppm(const Session& s, double pos) {
  return (pos - s.Param.SMTMS) * Ppm_Per_Point(s) + s.Param.SMEXR;
}

bool Has_Spectrum(const Session& s) {
  return s.Spec_Points > 0 && s.Spec_Axis.size() >= static_cast<std::size_t>(s.Spec_Points);
}
double Axis_First(const Session& s) { return s.Spec_Axis[0]; }
double Axis_Last(const Session& s) {
  return s.Spec_Axis[static_cast<std::size_t>(s.Spec_Points - 1)];
}

double Default_Y_Mag(const Session& s) { return s.DEPT_Mode ? 0.95 / 4 : 0.95; }

bool Whole_Width(const Session& s) {
  return s.X_Left == static_cast<float>(Axis_Last(s)) &&
         s.X_Right == static_cast<float>(Axis_First(s));
}

void Set_Y_Mag(Session& s, double mag) {
  s.Y_Mag = static_cast<float>(mag);
  Renew_Full_Scale(s);
}

}  // namespace

bool Parse_Number(const std::string& text, double& out) {
  const char* b = text.c_str();
  char* e = nullptr;
  const double v = std::strtod(b, &e);
  if (e == b) return false;
  while (*e == ' ') ++e;
  if (*e != '\0' || !std::isfinite(v)) return false;
  out = v;
  return true;
}


// ---- view history ----

void Save_Mag(Session& s) {
  View_Hist h;
  h.X_Left = Ppm_To_Position(s, s.X_Left);
  h.X_Right = Ppm_To_Position(s, s.X_Right);
  h.Y_Full_Scale = s.Y_Full_Scale;
  h.Y_Mag = s.Y_Mag;
  h.Y_Offset = s.Y_Offset;
  if (!s.View_History.empty() && s.View_History.front() == h) return;
  s.View_History.insert(s.View_History.begin(), h);
  if (s.View_History.size() > static_cast<std::size_t>(View_Hist_Max))
    s.View_History.resize(static_cast<std::size_t>(View_Hist_Max));
}

bool View_Back(Session& s) {
  if (s.View_History.empty()) return false;
  const View_Hist h = s.View_History.front();
  s.X_Left = static_cast<float>(Position_To_Ppm(s, h.X_Left));
  s.X_Right = static_cast<float>(Position_To_Ppm(s, h.X_Right));
  s.Y_Full_Scale = h.Y_Full_Scale;
  s.Y_Mag = h.Y_Mag;
  s.Y_Offset = h.Y_Offset;
  s.View_History.erase(s.View_History.begin());
  return true;
}

bool Back_Enabled(const Session& s) { return !s.View_History.empty(); }

void View_After_Load(Session& s) {
  if (Has_Spectrum(s)) {
    s.X_Left = static_cast<float>(Axis_Last(s));
    s.X_Right = static_cast<float>(Axis_First(s));
  }
  s.Y_Offset = 0;
  if (!(s.Y_Mag > 0 && s.Y_Mag <= 10000)) s.Y_Mag = 0.95f;
  Renew_Full_Scale(s);
}

void Wheel_View(Session& s, double at_ppm, double notches, bool zoom) {
  if (!Has_Spectrum(s) || notches == 0) return;
  const double low = std::min(Axis_First(s), Axis_Last(s)), high = std::max(Axis_First(s), Axis_Last(s));
  double left = s.X_Left, right = s.X_Right;  // left the higher ppm
  if (zoom) {
    const double f = std::pow(1.25, -notches);
    left = at_ppm + (left - at_ppm) * f;
    right = at_ppm + (right - at_ppm) * f;
  } else {
    const double shift = 0.1 * (left - right) * notches;
    left += shift;
    right += shift;
  }
  if (left - right > high - low) left = high, right = low;
  if (left > high) right -= left - high, left = high;
  if (right < low) left += low - right, right = low;
  if (!(left > right)) return;
  s.X_Left = static_cast<float>(left);
  s.X_Right = static_cast<float>(right);
  s.X_Left_Hz = static_cast<float>(left * s.Spectrum_Frequency);
  s.X_Right_Hz = static_cast<float>(right * s.Spectrum_Frequency);
}

// ---- magnification ----

double X_Mag(const Session& s) {
  const double w = static_cast<double>(s.X_Right) - s.X_Left;
  if (w == 0 || !(s.Spectrum_Frequency > 0)) return 0;
  return std::fabs(s.Param.FREQU / w / s.Spectrum_Frequency);
}

std::string X_Mag_Text(const Session& s) {
  if (s.X_Right == s.X_Left || !(s.Spectrum_Frequency > 0)) return {};
  return Format_Number(X_Mag(s), Mag_Format);
}

void Set_X_Mag(Session& s, double z) {
  if (!(z > 0) || !(s.Spectrum_Frequency > 0)) return;
  const double c = (static_cast<double>(s.X_Left) + s.X_Right) * 0.5;
  const double half = s.Param.FREQU / s.Spectrum_Frequency / z * 0.5;
  s.X_Right = static_cast<float>(c - half);
  s.X_Left = static_cast<float>(c + half);
}

void Renew_Full_Scale(Session& s) {
  if (s.Y_Mag != 0) s.Y_Full_Scale = s.Max_Abs / s.Y_Mag;
}

// ---- hold-to-repeat ----

namespace {

// The magnification as the field shows it: the steps start from the
// printed value, not from the exact one.
double Shown_X_Mag(const Session& s) {
  double z = 0;
  const std::string t = X_Mag_Text(s);
  if (t.empty() || !Parse_Number(t, z)) return 0;
  return z;
}

bool Apply_Step(Session& s, const Hold_Repeat& r) {
  switch (r.button) {
    case View_Button::X_Left:
      s.X_Left = static_cast<float>(s.X_Left + r.shift);
      s.X_Right = static_cast<float>(s.X_Right + r.shift);
      return true;
    case View_Button::X_Right:
      s.X_Left = static_cast<float>(s.X_Left - r.shift);
      s.X_Right = static_cast<float>(s.X_Right - r.shift);
      return true;
    case View_Button::X_Mag_Up: {
      const double z = Shown_X_Mag(s) * 1.1;
      if (z < 1 || z > 1000) return false;
      Set_X_Mag(s, z);
      return true;
    }
    case View_Button::X_Mag_Down: {
      const double z = Shown_X_Mag(s) / 1.1;
      if (z < 1) return false;
      Set_X_Mag(s, z);
      return true;
    }
    case View_Button::Y_Level_Up: {
      const double v = s.Y_Offset + 0.01;
      if (v > 1) return false;
      s.Y_Offset = static_cast<float>(v);
      Renew_Full_Scale(s);
      return true;
    }
    case View_Button::Y_Level_Down: {
      const double v = s.Y_Offset - 0.01;
      if (v < -1) return false;
      s.Y_Offset = static_cast<float>(v);
      Renew_Full_Scale(s);
      return true;
    }
    case View_Button::Y_Mag_Up: {
      const double v = s.Y_Mag * 1.1;
      if (v > 10000) return false;
      Set_Y_Mag(s, v);
      return true;
    }
    case View_Button::Y_Mag_Down: {
      const double v = s.Y_Mag / 1.1;
      if (v < 1.0 / 10000) return false;
      Set_Y_Mag(s, v);
      return true;
    }
  }
  return false;
}

}  // namespace

Hold_Repeat View_Press(Session& s, View_Button b) {
  Hold_Repeat r;
  r.button = b;
  r.shift = (static_cast<double>(s.X_Right) - s.X_Left) * 0.01;
  View_Repeat(s, r);
  return r;
}

bool View_Repeat(Session& s, Hold_Repeat& r) {
  if (!Apply_Step(s, r)) return false;
  ++r.steps;
  return true;
}

int Repeat_Interval_Ms(int n) { return n <= 1 ? 500 : 50; }

// ---- typed values ----

namespace {

// A field that takes any positive number: `apply` sets it, `shown` reprints.
template <class Apply, class Shown>
Typed_Result Take_Positive(const std::string& text, Apply apply, Shown shown) {
  Typed_Result r;
  double v = 0;
  if (Parse_Number(text, v) && v > 0) {
    apply(v);
    r.taken = true;
  }
  r.text = shown();
  return r;
}

}  // namespace

Typed_Result Type_Y_Mag(Session& s, const std::string& text) {
  return Take_Positive(
      text, [&](double v) { Set_Y_Mag(s, v); },
      [&] { return Format_Number(s.Y_Mag, Mag_Format); });
}

Typed_Result Type_Y_Level(Session& s, const std::string& text) {
  Typed_Result r;
  double v = 0;
  if (Parse_Number(text, v) && static_cast<float>(v) != s.Y_Offset && v > -1 && v < 1) {
    s.Y_Offset = static_cast<float>(v);
    Renew_Full_Scale(s);
    r.taken = true;
  }
  r.text = Format_Number(s.Y_Offset, Mag_Format);
  return r;
}

Typed_Result Type_X_Mag(Session& s, const std::string& text) {
  return Take_Positive(
      text, [&](double v) { Set_X_Mag(s, v); }, [&] { return X_Mag_Text(s); });
}

// ---- array rows ----

bool Set_Array_Row(Session& s, int32_t row) {
  if (s.Array_Rows <= 1) return false;
  row = std::clamp(row, 0, s.Array_Rows - 1);
  if (row == s.Array_Row) return false;
  if (s.Mode.Edit_Mode == session::Mode_Baseline && !s.Base_Point.empty() && !session::Confirm_Mode_Exit(s))
    return false;
  s.Array_Row = row;
  Build_Disp_Arrays(s, 1);
  return true;
}

Typed_Result Type_Array_Row(Session& s, const std::string& text) {
  char* end = nullptr;
  const long v = std::strtol(text.c_str(), &end, 10);
  const char* rest = end;
  const bool number = rest != text.c_str() && std::all_of(rest, text.c_str() + text.size(), [](char c) {
    return c == ' ';
  });
  Typed_Result r;
  if (number) r.taken = Set_Array_Row(s, static_cast<int32_t>(std::clamp<long>(v, 1, 1 << 20) - 1));
  r.text = std::to_string(s.Array_Row + 1);
  return r;
}

// ---- scroll bar ----

Scroll_State Scroll_From_View(const Session& s) {
  Scroll_State b;
  if (!Has_Spectrum(s)) return b;
  const double S = Axis_Last(s) - Axis_First(s);
  const double w = static_cast<double>(s.X_Left) - s.X_Right;
  if (S == 0) return b;
  const double r = std::nearbyint(w / S * 10000);
  if (std::fabs(r) >= 10000) return b;
  b.enabled = true;
  b.large_change = static_cast<int>(std::max(std::fabs(r), 1.0));
  b.small_change = static_cast<int>(std::max(std::nearbyint(std::fabs(r) * 0.01), 1.0));
  double value = 0;
  if (w > 0) {
    const double den = S - w;
    value = den < 0 ? 0 : (den == 0 ? 0 : (Axis_Last(s) - s.X_Left) / den * 10000);
  } else {
    const double den = S + w;
    value = den < 0 ? 0 : (den == 0 ? 0 : (s.X_Left - Axis_First(s)) / den * 10000);
  }
  b.value = static_cast<int>(std::nearbyint(std::clamp(value, 0.0, 10000.0)));
  return b;
}

void Scroll_To_View(Session& s, int value) {
  if (!Has_Spectrum(s)) return;
  Save_Mag(s);
  const double S = Axis_Last(s) - Axis_First(s);
  const double w = static_cast<double>(s.X_Left) - s.X_Right;
  double left;
  if (w > 0)
    left = Axis_Last(s) - value / 10000.0 * (S - w);
  else
    left = Axis_First(s) + value / 10000.0 * (S + w);
  s.X_Left = static_cast<float>(left);
  s.X_Right = static_cast<float>(left - w);
}

// ---- tool-bar ----

bool Auto_Y_Scale(Session& s) {
  if (!Has_Spectrum(s)) return false;
  const int32_t row = s.Row();
  const double lo = std::min(s.X_Left, s.X_Right), hi = std::max(s.X_Left, s.X_Right);
  double M = -HUGE_VAL;
  for (int32_t i = 0; i < s.Spec_Points; ++i) {
    const double x = s.Spec_Axis[static_cast<std::size_t>(i)];
    if (x < lo || x > hi) continue;
    M = std::max(M, static_cast<double>(s.Spec_Re(static_cast<std::size_t>(i),
                                                   static_cast<std::size_t>(row))));
  }
  double a = M > 0 ? std::min(s.Max_Abs / M * 0.95, 500.0) : 0.95;
  a = std::max(a * (1 - s.Y_Offset), 0.1);
  if (static_cast<float>(a) == s.Y_Mag) return false;
  Save_Mag(s);
  Set_Y_Mag(s, a);
  return true;
}

bool Basic_Toolbar(Session& s, int index) {
  switch (index) {
    case 1:
      s.Mouse_Tool = Tool_Box_Zoom;
      return false;
    case 2:
      s.Mouse_Tool = Tool_H_Zoom;
      return false;
    case 3:
      s.Mouse_Tool = Tool_V_Zoom;
      return false;
    case 10:
      s.Mouse_Tool = Tool_Cursor_Pair;
      return false;
    case 4:
      return View_Back(s);
    case 6: {
      if (!Has_Spectrum(s)) return false;
      const bool reset = Whole_Width(s) && s.Y_Offset == 0 &&
                         s.Y_Mag == static_cast<float>(Default_Y_Mag(s));
      if (!reset) Save_Mag(s);
      s.X_Left = static_cast<float>(Axis_Last(s));
      s.X_Right = static_cast<float>(Axis_First(s));
      s.Y_Offset = 0;
      Set_Y_Mag(s, Default_Y_Mag(s));
      return !reset;
    }
    case 7:
      if (!Has_Spectrum(s) || Whole_Width(s)) return false;
      s.X_Left = static_cast<float>(Axis_Last(s));
      s.X_Right = static_cast<float>(Axis_First(s));
      return true;
    case 8:
      return Auto_Y_Scale(s);
    default:
      return false;
  }
}

// ---- mouse zoom ----

Data_Point Pixel_To_Data(const Session& s, const Plot_Frame& f, int32_t px, int32_t py) {
  Data_Point p;
  if (f.Frame_Right != f.Frame_Left) {
    const double ppm = X_To_Pixel(px, f.Frame_Left, f.Frame_Right, s.X_Left, s.X_Right);
    p.index = Point_From_Ppm(s, static_cast<float>(ppm), 0).index;
  }
  // Inverse of Y_To_Pixel.
  const double span = static_cast<double>(f.Frame_Top) - f.Frame_Base;
  if (span != 0)
    p.value = (py - f.Frame_Base - span * s.Y_Offset) / span * s.Y_Full_Scale;
  return p;
}

namespace {

bool Zoom_X(Session& s, Data_Point a, Data_Point b) {
  if (a.index == b.index || s.Disp_X.empty()) return false;
  const int32_t last = s.Disp_Points - 1;
  const int32_t lo = std::clamp(std::min(a.index, b.index), 0, last);
  const int32_t hi = std::clamp(std::max(a.index, b.index), 0, last);
  s.X_Right = s.Disp_X[static_cast<std::size_t>(lo)];
  s.X_Left = s.Disp_X[static_cast<std::size_t>(hi)];
  return true;
}

// A box's values set the full scale to its top; a box reaching below zero
// lifts the baseline so that its bottom stands at the usual base.
void Zoom_Y(Session& s, double lo, double hi) {
  if (lo > hi) std::swap(lo, hi);
  if (!(hi > 0)) return;
  s.Y_Full_Scale = static_cast<float>(hi);
  const double off = -lo / hi;
  s.Y_Offset = off < 0 ? static_cast<float>(off) : 0.0f;
  s.Y_Mag = s.Max_Abs / s.Y_Full_Scale;
}

}  // namespace

bool Mouse_Zoom(Session& s, int16_t tool, Data_Point a, Data_Point b) {
  bool changed = false;
  switch (tool) {
    case Tool_H_Zoom:
      if (a.index == b.index) return false;
      Save_Mag(s);
      changed = Zoom_X(s, a, b);
      break;
    case Tool_Box_Zoom:
      if (a.index == b.index || a.value == b.value) return false;
      Save_Mag(s);
      Zoom_X(s, a, b);
      Zoom_Y(s, a.value, b.value);
      changed = true;
      break;
    case Tool_V_Zoom:
      if (a.value == b.value) return false;
      Save_Mag(s);
      Zoom_Y(s, a.value, b.value);
      changed = true;
      break;
    case Tool_Cursor_Pair:
      // The two ends of the drag become the distance cursors; the tool stays
      // armed so that the next drag measures again.
      s.Cursor_Left = a.index;
      s.Cursor_Right = b.index;
      s.Show_Distance = 1;
      return true;
    default:
      return false;
  }
  if (changed) s.Mouse_Tool = Tool_None;
  return changed;
}

std::vector<std::string> Distance_Text(const Session& s, double ppm1, double ppm2) {
  const bool hz = s.Axis_Unit != 0;
  auto position = [&](double p) {
    return hz ? Format_Number(p * s.Spectrum_Frequency, "#####0.0# Hz") : Format_Number(p, "###0.0### ppm");
  };
  const double d = std::fabs(ppm1 - ppm2);
  return {"\xCE\xB4" "1= " + position(ppm1), "\xCE\xB4" "2= " + position(ppm2),
          "\xCE\x94" "= " + Format_Number(d * s.Spectrum_Frequency, "###0.0# Hz") + "      (" +
              Format_Number(d, "###0.0### ppm)")};
}

std::vector<std::string> Distance_Text(const Session& s) {
  if (s.Show_Distance != 1 || s.Disp_Points <= 0 || s.Disp_X.size() < static_cast<std::size_t>(s.Disp_Points))
    return {};
  auto ppm = [&](int32_t index) {
    return static_cast<double>(s.Disp_X[static_cast<std::size_t>(std::clamp(index, 0, s.Disp_Points - 1))]);
  };
  return Distance_Text(s, ppm(s.Cursor_Left), ppm(s.Cursor_Right));
}

// ---- range dialog ----

double Ppm_To_Unit(const Session& s, double ppm, int16_t unit) {
  if (unit == 0) return ppm;
  const double hz = ppm * s.Spectrum_Frequency;
  return unit == 2 ? hz * 0.001 : hz;
}

Range_Values Range_Dialog_Values(const Session& s, int16_t unit) {
  return {unit, Ppm_To_Unit(s, s.X_Left, unit), Ppm_To_Unit(s, s.X_Right, unit)};
}

void Range_Dialog_OK(Session& s, const Range_Values& v) {
  Save_Mag(s);
  s.Axis_Unit = v.unit;
  double upper = v.upper, lower = v.lower;
  if (v.unit == 2) {
    upper *= 1000;
    lower *= 1000;
  }
  if (upper == lower) lower = upper + (v.unit == 0 ? 1 : 10);
  if (upper < lower) std::swap(upper, lower);
  if (v.unit != 0) {
    if (!(s.Spectrum_Frequency > 0)) return;
    upper /= s.Spectrum_Frequency;
    lower /= s.Spectrum_Frequency;
  }
  s.X_Left = static_cast<float>(upper);
  s.X_Right = static_cast<float>(lower);
}

namespace {

// Settings keys of preset pair k (1..4) for the nucleus group of the data:
// right key, left key.
std::pair<std::string, std::string> Preset_Keys(const Session& s, int k, bool hz) {
  const std::string& nuc = s.Param.OBNUC;
  const int group = (nuc == "1H" || nuc == "H1") ? 0 : (nuc == "13C" || nuc == "C13") ? 1 : 2;
  const std::string tag = group == 0 ? "" : group == 1 ? "C" : "X";
  const std::string n = std::to_string(k);
  if (hz) return {"X-R PRESET " + tag + n + " HZ", "X-L PRESET " + tag + n + " HZ"};
  if (k == 1) {
    const std::string suffix = group == 0 ? "" : group == 1 ? " 2" : " 3";
    return {"X-RIGHT PRESET" + suffix, "X-LEFT PRESET" + suffix};
  }
  return {"X-R PRESET " + (group == 0 ? "" : tag) + n, "X-L PRESET " + (group == 0 ? "" : tag) + n};
}

}  // namespace

Range_Values Range_Preset(const Session& s, int pair, int16_t unit) {
  Range_Values v;
  v.unit = unit;
  auto [rk, lk] = Preset_Keys(s, pair, unit != 0);
  const double f = unit == 2 ? 0.001 : 1.0;
  v.lower = Setting_Num(s, rk, 0) * f;
  v.upper = Setting_Num(s, lk, 0) * f;
  return v;
}

void Store_Range_Preset(Session& s, int pair, const Range_Values& v) {
  auto [rk, lk] = Preset_Keys(s, pair, v.unit != 0);
  const double f = v.unit == 2 ? 1000.0 : 1.0;
  Store_Setting(s, rk, v.lower * f);
  Store_Setting(s, lk, v.upper * f);
}

}  // namespace tevo::display
