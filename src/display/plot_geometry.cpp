#include "display/plot_geometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "session/number_text.h"

namespace tevo::display {

namespace {

double Sign(double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); }

// floor(left / step - 0.0001) + 1 steps: the first multiple strictly past
// left, where a value within 1e-4 of a step below a multiple counts as on it.
double First_Multiple(double left, double step) {
  return (std::floor(left / step - 0.0001) + 1.0) * step;
}

// Shortest text of a real32 that reads back to the same value, with an
// upper-case exponent ("1E+07").
std::string General_Text(double v) {
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, static_cast<float>(v));
  std::string s(buf, res.ptr);
  for (char& c : s)
    if (c == 'e') c = 'E';
  return s;
}

}  // namespace

Plot_Frame Make_Plot_Frame(int32_t sl, int32_t sw, int32_t st, int32_t sh, double pixel_per_point) {
  Plot_Frame f;
  f.Frame_Left = f.Frame_Left_Last = sl;
  f.Frame_Right = f.Frame_Right_Last = sl + sw;
  f.Frame_Top = st;
  f.Frame_Bottom = sh;
  // Integer arithmetic as the frame is integer pixels throughout.
  f.Frame_Base = sh * 950 / 1200 + st;
  f.Axis_Y = f.Frame_Base + sh * 50 / 1200;
  f.Marker_Top = f.Axis_Y - sh * 200 / 1200;
  f.Axis_Bottom = f.Axis_Y;
  f.Pixel_Per_Point = pixel_per_point;
  return f;
}

Plot_Frame Make_Array_Frame(int32_t sl, int32_t sw, int32_t st, int32_t sh, double pixel_per_point,
                            double r) {
  Plot_Frame f = Make_Plot_Frame(sl, sw, st, sh, pixel_per_point);
  if (r <= 0) {
    f.Frame_Left = Round_Pixel(sl - sw * r);
    f.Frame_Left_Last = sl;
    f.Frame_Right = sl + sw;
    f.Frame_Right_Last = Round_Pixel(sl + sw + sw * r);
  } else {
    f.Frame_Left = sl;
    f.Frame_Left_Last = Round_Pixel(sl + sw * r);
    f.Frame_Right = Round_Pixel(sl + (1 - r) * sw);
    f.Frame_Right_Last = sl + sw;
  }
  return f;
}

double X_To_Pixel(double v, double left, double right, double x0, double x1) {
  return (v - left) * (x1 - x0) / (right - left) + x0;
}

double Y_To_Pixel(double s, double base, double top, double full_scale, double offset) {
  return s * (top - base) / full_scale + base + (top - base) * offset;
}

int32_t Round_Pixel(double v) {
  if (!std::isfinite(v)) return v > 0 ? INT32_MAX / 2 : INT32_MIN / 2;
  v = std::clamp(v, static_cast<double>(INT32_MIN / 2), static_cast<double>(INT32_MAX / 2));
  return static_cast<int32_t>(std::nearbyint(v));
}

Tick_Step Nice_Tick_Step(double left, double right) {
  Tick_Step t;
  if (right == left) return t;
  t.range = right - left;
  const double e = std::log10(std::fabs(t.range));
  const double I = std::floor(e);
  const double f = std::pow(10.0, e - I);
  t.mantissa = f <= 1.5 ? 1 : f <= 2.5 ? 2 : f <= 5 ? 5 : 10;
  t.step = std::pow(10.0, I - 1) * t.mantissa * Sign(t.range);
  t.first = First_Multiple(left, t.step);
  t.valid = true;
  return t;
}

double Align_First_Tick(double left, double right, double step) {
  if (step == 0 || right == left) return 0;
  return First_Multiple(left, step);
}

int Decimal_Exponent(double x) {
  if (x == 0) return 0;
  return static_cast<int>(std::floor(std::log(std::fabs(x)) * 0.434294481903252 + 0.00001));
}

std::string Number_Format(int decimals) {
  decimals = std::clamp(decimals, 0, 15);
  std::string f = "#####0";
  if (decimals > 0) f += "." + std::string(static_cast<std::size_t>(decimals), '0');
  return f;
}

std::string Format_Tick_Label(double value, int charset, int d, int mode, int flag) {
  const std::string times = charset != 0 ? "x" : "\xC3\x97";  // U+00D7
  const std::string minus = charset != 0 ? "-" : "\xE2\x88\x92";  // U+2212
  if (value == 0) return "0";
  const bool negative = value < 0;
  const double a = std::fabs(value);
  std::string text;
  if (mode == 2) {
    const int n = std::clamp(Decimal_Exponent(a) - d, 0, 16);
    const std::string pattern = "0." + std::string(static_cast<std::size_t>(n), '0') + "E+";
    const std::string s = Format_Number(a, pattern);
    const std::size_t e = s.find('E');
    std::string mant = s.substr(0, e);
    if (!mant.empty() && mant.back() == '.') mant.pop_back();
    std::string ex = s.substr(e + 1);
    if (!ex.empty() && ex[0] == '+') ex.erase(0, 1);
    if (!ex.empty() && ex[0] == '-') ex = minus + ex.substr(1);
    if (ex == "0" && flag < 0)
      text = mant;
    else
      text = mant + times + "10\\+1 " + ex + "\\+0 ";
  } else {
    if (d >= 1) {
      text = General_Text(a);
    } else if (d < 0) {
      text = Format_Number(a, "0." + std::string(static_cast<std::size_t>(-d), '0'));
    } else {
      text = Format_Number(a, "0.0");
      if (!text.empty() && text.back() == '0') text.erase(text.find('.'));
    }
    if (!text.empty() && text.back() == '.') text = Format_Number(a, "#######0");
  }
  return negative ? minus + text : text;
}

int Tick_Label_Mode(double left, double right, double step) {
  const int d = Decimal_Exponent(step);
  const double M = std::nearbyint(std::max(std::fabs(left), std::fabs(right)));
  return ((M >= 10000 && d >= 4) || M < 0.001) ? 2 : 1;
}

std::string Tick_Label_Text(double v, double left, double right, double step, int charset) {
  return "\\< " + Format_Tick_Label(v, charset, Decimal_Exponent(step),
                                    Tick_Label_Mode(left, right, step), 0);
}

Tick_Plan Auto_Tick_Plan(double left, double right, double x0, double x1, int charset,
                         const std::function<double(const std::string&)>& label_width) {
  Tick_Plan plan;
  const Tick_Step t = Nice_Tick_Step(left, right);
  if (!t.valid) return plan;
  double step = t.step, m = t.mantissa;
  // The first pass measures the step of Nice_Tick_Step; up to seven more
  // passes widen it.
  for (int pass = 0; pass <= 7; ++pass) {
    plan.tried.push_back(step);
    double widest = 0;
    for (int i = 0; i <= 10; ++i)
      widest = std::max(widest, label_width(Tick_Label_Text(t.first + i * step, left, right, step,
                                                            charset)));
    if (std::fabs(step / (right - left)) * (x1 - x0) * 0.8 >= widest) break;
    if (pass == 7) break;
    if (m == 2) {
      step *= 2.5;
      m *= 2.5;
    } else {
      step *= 2;
      m *= 2;
    }
    if (m > 10) m /= 10;
  }
  plan.step = step;
  plan.mantissa = m;
  plan.first = Align_First_Tick(left, right, step);
  plan.minor = m == 2 ? step / 4 : step / 5;
  return plan;
}

Tick_Plan Fixed_Tick_Plan(double left, double right, double step, double minor) {
  Tick_Plan plan;
  const double s = Sign(right - left);
  plan.step = s * std::fabs(step);
  plan.minor = s * std::fabs(minor);
  plan.first = Align_First_Tick(left, right, plan.step);
  plan.tried.push_back(plan.step);
  return plan;
}

std::vector<double> Grid_Values(double first, double step, double right, bool stop_on_equal) {
  std::vector<double> out;
  if (step == 0) return out;
  const double s = Sign(step);
  for (int n = 0; n < 100000; ++n) {
    const double v = n * step + first;
    const double past = s * (v - right - 0.0001 * step);
    if (past > 0 || (stop_on_equal && past == 0)) break;
    out.push_back(v);
  }
  return out;
}

}  // namespace tevo::display
