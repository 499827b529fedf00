#include "signal/phase_auto.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "platform/ui.h"
#include "session/session.h"
#include "signal/phase.h"

namespace tevo::signal {

namespace {

constexpr double kDegPerRad = 57.2957795130823;
constexpr double kRadPerDeg = 0.0174532925199433;

int32_t Round_I(double v) { return static_cast<int32_t>(std::nearbyint(v)); }

// The apply inside the analysis: by table on the current row in the dialog,
// by sin/cos on every row in the main window.
void Apply_Analysed(Session& s, float p0, float p1, int32_t n, Phase_Place place) {
  if (place == Phase_Place::Main_Window) {
    Phase_Apply_Exact(s, p0, p1, n);
  } else {
    Phase_Apply_Table(s, p0, p1, n, s.Row());
  }
}

// Analysis window [lo, hi] of half-width n / div around `centre`. A window
// that would reach point 0 starts at 1 and one that would reach the last
// point ends at n - 2; both then take the width n / 32.
void Window_Around(int32_t centre, int32_t n, double div, int32_t& lo, int32_t& hi) {
  lo = Round_I(centre - n / div);
  hi = Round_I(centre + n / div);
  if (lo < 1) {
    lo = 1;
    hi = Round_I(n / 32.0);
  } else if (hi >= n - 1) {
    hi = n - 2;
    lo = Round_I(n * 31 / 32.0 - 1.0);
  }
}

// Work arrays of one analysis: step lengths (32-bit) and the baseline-free
// real and imaginary parts.
struct Trace {
  std::vector<float> A;
  std::vector<double> B, C;
};

// Step lengths and turning sign along the trace of points lo .. hi - 1: the
// point is selected (Curve_Mask = 1) where the trace turns one way, i.e. the
// cross product of the incoming and outgoing steps is positive.
void Trace_Analysis(Session& s, Trace& w, int32_t lo, int32_t hi) {
  const auto row = static_cast<std::size_t>(s.Row());
  auto re = s.Spec_Re.Row(row);
  auto im = s.Spec_Im.Row(row);
  double dx2 = 0, dy2 = 0;
  for (int32_t i = lo; i < hi; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const double dx1 = static_cast<double>(re[k]) - re[k - 1];
    const double dy1 = static_cast<double>(im[k]) - im[k - 1];
    dx2 = static_cast<double>(re[k + 1]) - re[k];
    dy2 = static_cast<double>(im[k + 1]) - im[k];
    w.A[k] = static_cast<float>(std::sqrt(dx1 * dx1 + dy1 * dy1));
    s.Curve_Value[k] = static_cast<float>(dx2 * dy1 - dx1 * dy2);
    s.Curve_Mask[k] = s.Curve_Value[k] > 0 ? 1 : 0;
  }
  if (hi >= 0) w.A[static_cast<std::size_t>(hi)] = static_cast<float>(std::sqrt(dx2 * dx2 + dy2 * dy2));
}

// Drops selected points next to a long step (at or beyond mean + 2 standard
// deviations of the selected step lengths) until the selection stops shrinking.
void Reject_Long_Steps(Session& s, const Trace& w, int32_t lo, int32_t hi) {
  int64_t prev = static_cast<int64_t>(hi) - 2;
  for (;;) {
    double sum = 0, sum2 = 0;
    int64_t c = 0;
    for (int32_t i = lo; i < hi; ++i) {
      if (s.Curve_Mask[static_cast<std::size_t>(i)] != 1) continue;
      const double a = w.A[static_cast<std::size_t>(i)];
      sum += a;
      sum2 += a * a;
      ++c;
    }
    if (c == 0) return;
    const double m = sum / c;
    const double sd = std::sqrt(std::max(0.0, sum2 / c - m * m));
    const double t = m + 2.0 * sd;
    int64_t count = 0;
    for (int32_t i = lo; i < hi; ++i) {
      const auto k = static_cast<std::size_t>(i);
      if (t <= w.A[k] || t <= w.A[k + 1] || s.Curve_Mask[k] != 1) {
        s.Curve_Mask[k] = 0;
      } else {
        ++count;
      }
    }
    if (count == prev) return;
    prev = count;
  }
}

// Centres C over the selected points, then fits y = c x + e with weight x^2
// through (x, y) = (C, B) and returns the slope as an angle in degrees;
// `degenerate` when the normal equations are singular.
double Tilt_Angle(Session& s, Trace& w, int32_t lo, int32_t hi, double degenerate) {
  double sum = 0;
  int64_t c = 0;
  for (int32_t i = lo; i < hi; ++i)
    if (s.Curve_Mask[static_cast<std::size_t>(i)] == 1) {
      sum += w.C[static_cast<std::size_t>(i)];
      ++c;
    }
  if (c > 0) {
    const double mean = sum / c;
    for (int32_t i = lo; i < hi; ++i)
      if (s.Curve_Mask[static_cast<std::size_t>(i)] == 1) w.C[static_cast<std::size_t>(i)] -= mean;
  }
  double sxx = 0, sx3 = 0, sx4 = 0, syx2 = 0, syx3 = 0;
  for (int32_t i = lo; i < hi; ++i) {
    const auto k = static_cast<std::size_t>(i);
    if (s.Curve_Mask[k] != 1) continue;
    const double x = w.C[k], y = w.B[k];
    const double x2 = x * x;
    sxx += x2;
    sx3 += x2 * x;
    sx4 += x2 * x2;
    syx2 += y * x2;
    syx3 += y * x2 * x;
  }
  const double d = sx3 * sx3 - sx4 * sxx;
  if (d == 0) return degenerate;
  return std::atan((sx3 * syx2 - syx3 * sxx) / d) / kRadPerDeg;
}

// Summit of the first peak met when scanning from one edge towards pp that
// rises above h and then falls again by h; -1 when there is none. Only
// points above h move the running previous value.
int32_t First_Peak_From_Edge(const std::vector<float>& mag, int32_t edge, int32_t from, int32_t to,
                             int32_t dir, double h, double& top) {
  int32_t found_at = -1;
  bool found = false;
  double prev = mag[static_cast<std::size_t>(edge)];
  for (int32_t i = from; dir > 0 ? i <= to : i >= to; i += dir) {
    const double v = mag[static_cast<std::size_t>(i)];
    if (v > h) {
      if (prev < v) {
        found = true;
        top = v;
        found_at = i;
      }
      prev = v;
    }
    if (found && top - h > v) break;
  }
  return found_at;
}

}  // namespace

double Phase_Angle(double x, double y) {
  if (std::fabs(x) < std::fabs(y)) {
    const double t = std::atan(x / y) * kDegPerRad;
    return y <= 0 ? -90.0 - t : 90.0 - t;
  }
  if (x == 0) return 0.0;
  const double t = std::atan(y / x) * kDegPerRad;
  if (x < 0) return y <= 0 ? t - 180.0 : t + 180.0;
  return t;
}

void Find_Magnitude(Session& s, int32_t n) {
  const auto row = static_cast<std::size_t>(s.Row());
  if (s.Spec_Mag.size() < static_cast<std::size_t>(n)) s.Spec_Mag.resize(static_cast<std::size_t>(n) + 1);
  auto re = s.Ft_Re.Row(row);
  auto im = s.Ft_Im.Row(row);
  float best = 0;
  int32_t at = 0;
  for (int32_t i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const double a = re[k], b = im[k];
    const float m = static_cast<float>(std::sqrt(a * a + b * b));
    s.Spec_Mag[k] = m;
    if (m > best) {
      best = m;
      at = i;
    }
  }
  s.Peak_Index = at;
  s.Peak_Magnitude = best;
}

void Phase_Analyse(Session& s, float& p0, float& p1, int32_t n, int mode, Phase_Place place) {
  if (n < 4) return;
  const auto size = static_cast<std::size_t>(n) + 1;
  if (s.Curve_Value.size() < size) s.Curve_Value.resize(size, 0.0f);
  if (s.Curve_Mask.size() < size) s.Curve_Mask.resize(size, 0);
  Trace w{std::vector<float>(size, 0.0f), std::vector<double>(size, 0.0), std::vector<double>(size, 0.0)};
  const auto row = static_cast<std::size_t>(s.Row());

  // ---- first stage: zero order at pp ----
  Find_Magnitude(s, n);
  const int32_t pp = std::clamp(s.Pivot_Pp, 0, n - 1);
  int32_t lo = 0, hi = 0;
  Window_Around(pp, n, 64.0, lo, hi);
  Trace_Analysis(s, w, lo, hi);

  // Baseline point and noise from the unselected points of the last tenth.
  {
    auto re = s.Spec_Re.Row(row);
    auto im = s.Spec_Im.Row(row);
    double sr = 0, si = 0, sr2 = 0;
    int64_t c = 0;
    for (int32_t i = Round_I(n * 0.9); i < n; ++i) {
      const auto k = static_cast<std::size_t>(i);
      if (s.Curve_Mask[k] != 0) continue;
      sr += re[k];
      si += im[k];
      sr2 += static_cast<double>(re[k]) * re[k];
      ++c;
    }
    const double mre = c > 0 ? sr / c : 0.0, mim = c > 0 ? si / c : 0.0;
    for (int32_t i = 1; i <= n - 2; ++i) {
      const auto k = static_cast<std::size_t>(i);
      w.B[k] = re[k] - mre;
      w.C[k] = im[k] - mim;
    }
    const double sd = c > 0 ? std::sqrt(std::max(0.0, sr2 / c - mre * mre)) : 0.0;

    Reject_Long_Steps(s, w, lo, hi);
    p0 = static_cast<float>(p0 + Tilt_Angle(s, w, lo, hi, 90.0));
    p1 = 0;
    Apply_Analysed(s, p0, p1, n, place);

    // ---- choice of the second peak ----
    if (mode == 0) {
      const bool proton = s.Param.OBNUC == "1H";
      double h = 0;
      if (sd == 0) {
        h = std::fabs(static_cast<double>(s.Peak_Magnitude)) * (proton ? 0.01 : 0.05);
      } else {
        h = sd * (proton ? 100.0 : 10.0);
      }
      double top = 0;
      const int32_t left = First_Peak_From_Edge(s.Spec_Mag, 0, 1, pp - 1, +1, h, top);
      const int32_t right = First_Peak_From_Edge(s.Spec_Mag, n - 1, n - 1, pp + 1, -1, h, top);
      s.Pivot_P2 = (right - pp > pp - left || left == -1) ? right : left;
    }
  }

  // ---- second stage: first order at p2 ----
  const int32_t p2 = s.Pivot_P2;
  if (std::abs(pp - p2) < 100 || p2 < 0 || p2 >= n) return;
  {
    auto re = s.Spec_Re.Row(row);
    auto im = s.Spec_Im.Row(row);
    const double a = -Phase_Angle(re[static_cast<std::size_t>(p2)], im[static_cast<std::size_t>(p2)]);
    p1 = static_cast<float>(p1 + a * n / (p2 - pp));
  }
  Apply_Analysed(s, p0, p1, n, place);
  Window_Around(p2, n, 32.0, lo, hi);
  Trace_Analysis(s, w, lo, hi);
  {
    auto re = s.Spec_Re.Row(row);
    auto im = s.Spec_Im.Row(row);
    double sr = 0, si = 0;
    int64_t c = 0;
    for (int32_t i = lo; i < hi; ++i) {
      const auto k = static_cast<std::size_t>(i);
      if (s.Curve_Mask[k] != 0) continue;
      sr += re[k];
      si += im[k];
      ++c;
    }
    const double mre = c > 0 ? sr / c : 0.0, mim = c > 0 ? si / c : 0.0;
    for (int32_t i = lo; i < hi; ++i) {
      const auto k = static_cast<std::size_t>(i);
      w.B[k] = re[k] - mre;
      w.C[k] = im[k] - mim;
    }
  }
  Reject_Long_Steps(s, w, lo, hi);
  p1 = static_cast<float>(p1 + Tilt_Angle(s, w, lo, hi, -90.0) * n / (p2 - pp));
  Apply_Analysed(s, p0, p1, n, place);
}

void Phase_Auto(Session& s, int mode, int32_t n, Phase_Place place) {
  s.ui->Wait_Cursor(true);
  Find_Magnitude(s, n);
  if (mode == 0) s.Pivot_Pp = s.Peak_Index;
  const int32_t row = s.Row();
  const auto pp = static_cast<std::size_t>(std::clamp(s.Pivot_Pp, 0, std::max(n - 1, 0)));
  float p0 = static_cast<float>(-Phase_Angle(s.Ft_Re(pp, static_cast<std::size_t>(row)),
                                             s.Ft_Im(pp, static_cast<std::size_t>(row))));
  float p1 = 0;
  if (place == Phase_Place::Main_Window) {
    Phase_Apply_Main(s, p0, p1, n);
  } else {
    Phase_Apply_Table(s, p0, p1, n, row);
  }
  Phase_Analyse(s, p0, p1, n, mode, place);
  s.ui->Wait_Cursor(false);
  p0 = std::clamp(p0, -Phase0_Limit, Phase0_Limit);
  p1 = std::clamp(p1, -Phase1_Limit, Phase1_Limit);
  if (place == Phase_Place::Main_Window) {
    const auto r = static_cast<std::size_t>(row);
    const auto rows = static_cast<std::size_t>(std::max(s.Array_Rows, 1));
    if (s.Phase0_Row.size() < rows) s.Phase0_Row.resize(rows, 0.0f);
    if (s.Phase1_Row.size() < rows) s.Phase1_Row.resize(rows, 0.0f);
    s.Phase0_Row[r] = p0;
    s.Phase1_Row[r] = p1;
  } else {
    s.Phase0 = p0;
    s.Phase1 = p1;
  }
}

}  // namespace tevo::signal
