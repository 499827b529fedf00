#include "editing/baseline.h"

#include <algorithm>
#include <cmath>

#include "editing/undo.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

Line_Fit Fit_Line(const Session& s, const Point_Array& y, int32_t p) {
  const int32_t n = s.Base_Average;
  const auto row = static_cast<std::size_t>(std::clamp(s.Array_Row, 0, std::max(s.Array_Rows - 1, 0)));
  double sx = 0, sxx = 0, sy = 0, sxy = 0, c = 0;
  for (int32_t x = -n; x <= n; ++x) {
    const int32_t k = p + x;
    if (k < 0 || k >= s.Spec_Points) continue;
    const double v = y(static_cast<std::size_t>(k), row);
    sx += x, sxx += double(x) * x, sy += v, sxy += x * v, c += 1;
  }
  const double d = sx * sx - c * sxx;
  if (d == 0) return {c > 0 ? sy / c : 0.0, 0.0};  // a single point: its own value
  return {(sx * sxy - sy * sxx) / d, (sx * sy - sxy * c) / d};
}

// Subtracts the polyline through (points, values) from `from` into `to`.
void Subtract_Polyline(std::span<const float> from, std::span<float> to, const std::vector<int32_t>& points,
                       const std::vector<float>& values, int32_t n) {
  const std::size_t m = points.size();
  int32_t i = 0;
  for (; i < std::min(points[0], n); ++i) to[static_cast<std::size_t>(i)] = static_cast<float>(from[static_cast<std::size_t>(i)] - double(values[0]));
  for (std::size_t k = 0; k + 1 < m; ++k) {
    const double p0 = points[k], p1 = points[k + 1];
    const double v0 = values[k], v1 = values[k + 1];
    for (i = std::max(points[k], 0); i < std::min(points[k + 1], n); ++i)
      to[static_cast<std::size_t>(i)] =
          static_cast<float>(from[static_cast<std::size_t>(i)] - (v0 * (p1 - i) + v1 * (i - p0)) / (p1 - p0));
  }
  for (i = std::max(points[m - 1], 0); i < n; ++i)
    to[static_cast<std::size_t>(i)] = static_cast<float>(from[static_cast<std::size_t>(i)] - double(values[m - 1]));
}

// One pass of the automatic search from p = n, taking a point where the
// ratio of squared first differences to squared residuals reaches `limit`.
void Auto_Pass(Session& s, const std::vector<int16_t>* flag, double limit, int32_t step) {
  const int32_t n = s.Base_Average, N = s.Spec_Points;
  const auto row = static_cast<std::size_t>(s.Row());
  auto y = [&](int32_t k) { return static_cast<double>(s.Ft_Re(static_cast<std::size_t>(k), row)); };
  const int32_t end = flag ? N - 1 - n : N - n;
  for (int32_t p = n; p < end && s.Base_Point.size() < static_cast<std::size_t>(Base_Max);) {
    if (flag) {
      if ((*flag)[static_cast<std::size_t>(p)] < 1) {
        ++p;
        continue;
      }
      int32_t c = 0;
      for (int32_t k = p - n; k <= p + n; ++k) c += (*flag)[static_cast<std::size_t>(k)] >= 1;
      if (n / 5.0 >= c) {
        ++p;
        continue;
      }
    }
    const Line_Fit f = Base_Fit_Re(s, p);
    double a = 0, r = 0;
    for (int32_t x = -n; x < n; ++x) {
      const double d = y(p + x) - y(p + x + 1), e = y(p + x) - (f.value + f.slope * x);
      a += d * d, r += e * e;
    }
    const double e = y(p + n) - (f.value + f.slope * n);
    r += e * e;
    const double ratio = r == 0 ? 4.0 : a / r;
    if (ratio >= limit) {
      s.Base_Point.push_back(p);
      s.Base_Re.push_back(static_cast<float>(f.value));
    }
    p += step;
  }
}

void Apply_If_Preview(Session& s) {
  if (s.Base_Preview) Apply_Baseline(s);
}

void Clear_Points(Session& s) {
  s.Base_Point.clear();
  s.Base_Re.clear();
  s.Base_Im.clear();
}

}  // namespace

Line_Fit Base_Fit_Re(const Session& s, int32_t p) { return Fit_Line(s, s.Ft_Re, p); }
Line_Fit Base_Fit_Im(const Session& s, int32_t p) { return Fit_Line(s, s.Ft_Im, p); }

void Apply_Baseline(Session& s) {
  const int32_t n = s.Spec_Points;
  if (n <= 0) return;
  const auto row = static_cast<std::size_t>(s.Row());
  const auto size = static_cast<std::size_t>(n);
  std::span<const float> ft_re = s.Ft_Re.Row(row).first(size), ft_im = s.Ft_Im.Row(row).first(size);
  std::span<float> re = s.Spec_Re.Row(row).first(size), im = s.Spec_Im.Row(row).first(size);
  if (s.Base_Point.empty()) {
    std::copy(ft_re.begin(), ft_re.end(), re.begin());
    std::copy(ft_im.begin(), ft_im.end(), im.begin());
  } else {
    s.Base_Im.resize(s.Base_Point.size(), 0.0f);
    Subtract_Polyline(ft_re, re, s.Base_Point, s.Base_Re, n);
    Subtract_Polyline(ft_im, im, s.Base_Point, s.Base_Im, n);
  }
  Build_Disp_Arrays(s, 1);
}

void Base_Turn_Flags(const Session& s, std::vector<float>& turn, std::vector<int16_t>& flag) {
  const int32_t n = s.Spec_Points;
  const auto row = static_cast<std::size_t>(std::clamp(s.Array_Row, 0, std::max(s.Array_Rows - 1, 0)));
  turn.assign(static_cast<std::size_t>(std::max(n, 0)), 0.0f);
  flag.assign(turn.size(), 0);
  for (int32_t i = 1; i + 1 < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const double dr = double(s.Ft_Re(k + 1, row)) - s.Ft_Re(k, row), di = double(s.Ft_Im(k + 1, row)) - s.Ft_Im(k, row);
    const double dr0 = double(s.Ft_Re(k, row)) - s.Ft_Re(k - 1, row), di0 = double(s.Ft_Im(k, row)) - s.Ft_Im(k - 1, row);
    turn[k] = static_cast<float>(dr0 * di - di0 * dr);
    flag[k] = turn[k] >= 0 ? 1 : 0;
  }
}

int32_t Base_Auto_Points(Session& s) {
  Undo_Take_Baseline(s, Undo_Base_Auto);
  std::vector<float> turn;
  std::vector<int16_t> flag;
  Base_Turn_Flags(s, turn, flag);
  const int32_t step = std::max<int32_t>(10, static_cast<int32_t>(std::nearbyint(s.Spec_Points / 50.0)));
  const std::vector<float> old_im = s.Base_Im;
  Clear_Points(s);
  if (s.Spec_Points >= 2 * s.Base_Average + 2) {
    Auto_Pass(s, &flag, 1.4, step);
    if (s.Base_Point.empty()) Auto_Pass(s, nullptr, 1.2, step);
  }
  s.Base_Im = old_im;
  s.Base_Im.resize(s.Base_Point.size(), 0.0f);
  session::Mode_Edited(s);
  Apply_Baseline(s);
  return static_cast<int32_t>(s.Base_Point.size());
}

bool Base_Add_Point(Session& s, int32_t point) {
  if (point < 0 || point >= s.Spec_Points || s.Base_Point.size() >= static_cast<std::size_t>(Base_Max)) return false;
  const auto at = std::lower_bound(s.Base_Point.begin(), s.Base_Point.end(), point);
  if (at != s.Base_Point.end() && *at == point) return false;
  const auto k = at - s.Base_Point.begin();
  Undo_Take_Baseline(s, Undo_Base_Add);
  s.Base_Im.resize(s.Base_Point.size(), 0.0f);
  s.Base_Point.insert(s.Base_Point.begin() + k, point);
  s.Base_Re.insert(s.Base_Re.begin() + k, static_cast<float>(Base_Fit_Re(s, point).value));
  s.Base_Im.insert(s.Base_Im.begin() + k, static_cast<float>(Base_Fit_Im(s, point).value));
  session::Mode_Edited(s);
  Apply_If_Preview(s);
  return true;
}

bool Base_Delete_Point(Session& s, int32_t k) {
  if (k < 0 || k >= static_cast<int32_t>(s.Base_Point.size())) return false;
  Undo_Take_Baseline(s, Undo_Base_Delete);
  s.Base_Im.resize(s.Base_Point.size(), 0.0f);
  s.Base_Point.erase(s.Base_Point.begin() + k);
  s.Base_Re.erase(s.Base_Re.begin() + k);
  s.Base_Im.erase(s.Base_Im.begin() + k);
  session::Mode_Edited(s);
  Apply_If_Preview(s);
  return true;
}

int32_t Base_Point_At(const Session& s, double click_x, const std::function<double(double)>& pixel_of_ppm,
                      double tolerance) {
  int32_t best = -1;
  double best_d = tolerance;
  for (std::size_t k = 0; k < s.Base_Point.size(); ++k) {
    const int32_t p = s.Base_Point[k];
    if (p < 0 || p >= static_cast<int32_t>(s.Spec_Axis.size())) continue;
    const double d = std::fabs(pixel_of_ppm(s.Spec_Axis[static_cast<std::size_t>(p)]) - click_x);
    if (d <= best_d) best = static_cast<int32_t>(k), best_d = d;
  }
  return best;
}

const char* Base_Preview_Caption(const Session& s) { return s.Base_Preview ? "Preview解除" : "Preview"; }

const char* Base_Toggle_Preview(Session& s) {
  s.Base_Preview = s.Base_Preview ? 0 : 1;
  const auto row = static_cast<std::size_t>(s.Row());
  if (s.Base_Preview) {
    Apply_Baseline(s);
  } else if (s.Base_Entry_Re.size() == static_cast<std::size_t>(s.Spec_Points)) {
    std::copy(s.Base_Entry_Re.begin(), s.Base_Entry_Re.end(), s.Spec_Re.Row(row).begin());
    std::copy(s.Base_Entry_Im.begin(), s.Base_Entry_Im.end(), s.Spec_Im.Row(row).begin());
    Build_Disp_Arrays(s, 1);
  }
  return Base_Preview_Caption(s);
}

namespace {

void Base_Confirm(Session& s) {
  Apply_Baseline(s);
  s.Base_Corrected = 1;
  if (!s.Mode.Mode_Unchanged) s.Data_Saved = 0;
  Clear_Points(s);
  s.Base_Preview = 0;
  Undo_Clear(s);
}

void Base_Restore(Session& s) {
  const auto row = static_cast<std::size_t>(s.Row());
  if (s.Base_Entry_Re.size() == static_cast<std::size_t>(s.Spec_Points) && s.Spec_Points > 0) {
    std::copy(s.Base_Entry_Re.begin(), s.Base_Entry_Re.end(), s.Spec_Re.Row(row).begin());
    std::copy(s.Base_Entry_Im.begin(), s.Base_Entry_Im.end(), s.Spec_Im.Row(row).begin());
  }
  Build_Disp_Arrays(s, 1);
  Clear_Points(s);
  s.Base_Preview = 0;
  Undo_Clear(s);
}

}  // namespace

bool m23_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Baseline) return false;
  if (!session::Enter_Mode(s, session::Mode_Baseline)) return false;
  s.Mode.handlers[session::Mode_Baseline] = {Base_Confirm, Base_Restore, nullptr};
  s.Base_Preview = 0;
  s.Base_Average = static_cast<int16_t>(std::clamp(s.settings.Int("AVERAGE POINT"), 0, 32767));
  const auto row = static_cast<std::size_t>(s.Row());
  const auto n = static_cast<std::size_t>(std::max(s.Spec_Points, 0));
  s.Base_Entry_Re.assign(s.Spec_Re.Row(row).begin(), s.Spec_Re.Row(row).begin() + static_cast<std::ptrdiff_t>(n));
  s.Base_Entry_Im.assign(s.Spec_Im.Row(row).begin(), s.Spec_Im.Row(row).begin() + static_cast<std::ptrdiff_t>(n));
  return true;
}

void BaseCorCommand2_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Baseline) session::Finish_Mode(s, true);
}

void BaseCorCommand3_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Baseline) session::Finish_Mode(s, false);
}

}  // namespace tevo::editing
