#include "editing/integrals.h"

#include <algorithm>
#include <cmath>

#include "editing/integral_sum.h"
#include "editing/undo.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

bool Valid(const Session& s, int32_t i) { return i >= 0 && i < static_cast<int32_t>(s.Integrals.size()); }

// Mean of Spec_Re of the current row over p - 2 .. p + 2 inside the spectrum.
double End_Mean(const Session& s, int32_t p) {
  const auto row = static_cast<std::size_t>(std::clamp(s.Array_Row, 0, std::max(s.Array_Rows - 1, 0)));
  double sum = 0;
  int count = 0;
  for (int32_t k = std::max(p - 2, 0); k <= std::min(p + 2, s.Spec_Points - 1); ++k, ++count)
    sum += s.Spec_Re(static_cast<std::size_t>(k), row);
  return count ? sum / count : 0.0;
}

// Lowers Integ_Scale so that region i's curve stays below 0.8 of the plot.
void Fit_Scale(Session& s, int32_t i) {
  const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
  if (r.Value > 0) s.Integ_Scale = std::min(s.Integ_Scale, static_cast<float>((0.8 - r.Curve_Y) / r.Value));
}

void Keep_Indices_Inside(Session& s) {
  const int32_t last = std::max(static_cast<int32_t>(s.Integrals.size()) - 1, 0);
  s.Integ_Ref_Index = std::clamp(s.Integ_Ref_Index, 0, last);
  s.Integ_Cur = std::clamp(s.Integ_Cur, 0, last);
}

void Edited(Session& s, int32_t i) {
  if (Valid(s, i)) Calc_Integral(s, i);
  session::Mode_Edited(s);
}

}  // namespace

void Level_Region(const Session& s, Integ_Rec& r) {
  const double m1 = End_Mean(s, r.End_Point), m2 = End_Mean(s, r.Start_Point);
  const double b0 = -m1 / s.Max_Abs;
  r.B0 = static_cast<float>(b0);
  r.B1 = r.Start_Point != r.End_Point
             ? static_cast<float>(s.Spec_Points * (m2 / s.Max_Abs + double(r.B0)) / (r.Start_Point - r.End_Point))
             : 0.0f;
}

int32_t Integ_Add(Session& s, int32_t end_point, int32_t start_point) {
  if (end_point <= start_point || s.Integrals.size() >= static_cast<std::size_t>(Integ_Max)) return -1;
  Undo_Take_Integrals(s, Undo_Integ_Add);
  Integ_Rec r;
  r.End_Point = std::min(end_point, s.Spec_Points - 1);
  r.Start_Point = std::max(start_point, 0);
  r.Curve_Y = 0.1f;
  Level_Region(s, r);
  s.Integrals.push_back(r);
  const auto i = static_cast<int32_t>(s.Integrals.size()) - 1;
  Edited(s, i);
  Fit_Scale(s, i);
  s.Integ_Cur = i;
  return i;
}

int32_t Spec_Point_Of_Ppm(const Session& s, double ppm) {
  const int32_t n = std::min<int32_t>(s.Spec_Points, static_cast<int32_t>(s.Spec_Axis.size()));
  if (n < 2) return 0;
  const double a0 = s.Spec_Axis[0], a1 = s.Spec_Axis[static_cast<std::size_t>(n - 1)];
  const double k = a1 != a0 ? (ppm - a0) / (a1 - a0) * (n - 1) : 0.0;
  return static_cast<int32_t>(std::clamp(std::nearbyint(k), 0.0, double(n - 1)));
}

int32_t Integ_Region_At(const Session& s, int32_t point) {
  for (std::size_t i = 0; i < s.Integrals.size(); ++i)
    if (point >= s.Integrals[i].Start_Point && point <= s.Integrals[i].End_Point) return static_cast<int32_t>(i);
  return -1;
}

bool Integ_Delete(Session& s, int32_t i) {
  if (!Valid(s, i)) return false;
  Undo_Take_Integrals(s, Undo_Integ_Delete);
  s.Integrals.erase(s.Integrals.begin() + i);
  Keep_Indices_Inside(s);
  session::Mode_Edited(s);
  return true;
}

bool IntegralCommand2_Click(Session& s) {
  if (s.Integrals.empty()) return false;
  Undo_Take_Integrals(s, Undo_Integ_Delete_All);
  s.Integrals.clear();
  Keep_Indices_Inside(s);
  session::Mode_Edited(s);
  return true;
}

bool Integ_Split(Session& s, int32_t i, int32_t point) {
  if (!Valid(s, i) || s.Integrals.size() >= static_cast<std::size_t>(Integ_Max)) return false;
  Integ_Rec upper = s.Integrals[static_cast<std::size_t>(i)];
  if (point < upper.Start_Point || point >= upper.End_Point) return false;
  Undo_Take_Integrals(s, Undo_Integ_Split);
  Integ_Rec lower = upper;
  upper.Start_Point = point + 1;
  lower.End_Point = point;
  // The correction at k is B0 + B1 * (End_Point - k) / N; the same line for
  // the lower part means B0 grows by B1 * (old End_Point - point) / N.
  lower.B0 = static_cast<float>(double(upper.B0) + double(upper.B1) * (upper.End_Point - point) / s.Spec_Points);
  s.Integrals[static_cast<std::size_t>(i)] = upper;
  s.Integrals.insert(s.Integrals.begin() + i + 1, lower);
  Edited(s, i);
  Edited(s, i + 1);
  return true;
}

bool Integ_Move(Session& s, int32_t i, int32_t shift) {
  if (!Valid(s, i)) return false;
  Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
  shift = std::clamp(shift, -r.Start_Point, s.Spec_Points - 1 - r.End_Point);
  if (shift == 0) return false;
  Undo_Take_Integrals(s, Undo_Integ_Move);
  Integ_Rec& g = s.Integrals[static_cast<std::size_t>(i)];
  g.Start_Point += shift;
  g.End_Point += shift;
  Edited(s, i);
  return true;
}

bool Integ_Widen(Session& s, int32_t i, int32_t point) {
  if (!Valid(s, i)) return false;
  point = std::clamp(point, 0, s.Spec_Points - 1);
  const Integ_Rec old = s.Integrals[static_cast<std::size_t>(i)];
  const bool upper_end = std::abs(point - old.End_Point) <= std::abs(point - old.Start_Point);
  if ((upper_end && (point <= old.Start_Point || point == old.End_Point)) ||
      (!upper_end && (point >= old.End_Point || point == old.Start_Point)))
    return false;
  Undo_Take_Integrals(s, Undo_Integ_Widen);
  Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
  if (upper_end) {
    r.B0 = static_cast<float>(double(old.B0) + double(old.B1) * (point - old.End_Point) / s.Spec_Points);
    r.End_Point = point;
  } else {
    r.Start_Point = point;
  }
  Edited(s, i);
  return true;
}

bool Integ_Set_Reference(Session& s, int32_t i, float value) {
  if (!Valid(s, i)) return false;
  Undo_Take_Integrals(s, Undo_Integ_Reference);
  s.Integ_Ref = value;
  s.Integ_Ref_Index = i;
  session::Mode_Edited(s);
  return true;
}

void Integ_Rescale(Session& s) {
  Undo_Take_Integrals(s, Undo_Integ_Adjust);
  s.Integ_Scale = 100;
  for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i) {
    Calc_Integral(s, i);
    Fit_Scale(s, i);
  }
  session::Mode_Edited(s);
}

double Integ_Shown_Value(const Session& s, int32_t i) {
  if (!Valid(s, i)) return 0;
  const double v = s.Integrals[static_cast<std::size_t>(i)].Value;
  const double ref = Valid(s, s.Integ_Ref_Index) ? s.Integrals[static_cast<std::size_t>(s.Integ_Ref_Index)].Value : 0.0;
  return ref == 0 ? v : v / ref * s.Integ_Ref;
}

void Integ_Trim_Begin(Session& s) {
  Undo_Take_Integrals(s, Undo_Integ_Trim);
  session::Mode_Edited(s);
}

float Integ_Trim_Step(Session& s, Trim_Button b) {
  if (!Valid(s, s.Integ_Cur)) return 0;
  Integ_Rec& r = s.Integrals[static_cast<std::size_t>(s.Integ_Cur)];
  const int k = static_cast<int>(b);
  const bool b1 = k >= 4, coarse = (k % 4) >= 2, up = (k % 2) == 0;
  const double step = (coarse ? 2e-5 : 2e-6) / s.Integ_Scale * (up ? 1 : -1);
  float& v = b1 ? r.B1 : r.B0;
  v = static_cast<float>(v + step);
  const float now = v;
  Calc_Integral(s, s.Integ_Cur);
  return now;
}

namespace {

void Integ_Close(Session& s) {
  if (!s.Mode.Mode_Unchanged) s.Data_Saved = 0;
  Undo_Clear(s);
}

}  // namespace

bool m25_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Integral) return false;
  if (!session::Enter_Mode(s, session::Mode_Integral)) return false;
  s.Mode.handlers[session::Mode_Integral] = {nullptr, nullptr, Integ_Close};
  s.Integ_Cur = 0;
  return true;
}

void IntegralCommand1_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Integral) session::Confirm_Mode_Exit(s);
}

}  // namespace tevo::editing
