#include "session/session.h"

#include <algorithm>
#include <cmath>

#include "platform/ui.h"

namespace tevo {

Session::Session() : ui(&platform::Default_Ui()) {
  // Overlay slots start stacked upward: 0, 0.1, ... 0.9, and 0.96 for the last.
  for (int k = 0; k <= Overlay_Max; ++k)
    Overlay[static_cast<std::size_t>(k)].Slot_Y_Offset =
        k < Overlay_Max ? 0.1f * static_cast<float>(k) : 0.96f;
}

int32_t Session::Row() {
  if (Array_Rows <= 1) {
    Array_Row = 0;
  } else {
    Array_Row = std::clamp(Array_Row, 0, Array_Rows - 1);
  }
  return Array_Row;
}

int32_t Session::Display_Min() const { return settings.Int("DISPLAY MIN"); }
bool Session::Disp_Extend_Mode() const { return settings.Int("DISP EXTEND MODE") != 0; }

void Alloc_Point_Arrays(Session& s, int32_t n) {
  if (n < 0) n = 0;
  const int32_t rows = std::max(s.Array_Rows, 1);
  s.Point_Capacity = n;
  for (Point_Array* a : {&s.Fid_Re, &s.Fid_Im, &s.Ft_Re, &s.Ft_Im, &s.Spec_Re, &s.Spec_Im})
    a->Allocate(n, rows);
  s.Spec_Axis.assign(static_cast<std::size_t>(n) + 1, 0.0f);
  s.Spec_Mag.assign(static_cast<std::size_t>(n) + 1, 0.0f);
}

namespace {

// Factor by which the display copy is denser than the spectrum: the smallest
// power of two that brings Spec_Points up to "DISPLAY MIN", or 1.
int32_t Display_Factor(const Session& s) {
  if (s.Spec_Points <= 0 || s.Disp_Extend_Mode()) return 1;
  int64_t f = 1;
  while (static_cast<int64_t>(s.Spec_Points) * f < s.Display_Min()) f *= 2;
  return static_cast<int32_t>(f);
}

// Fills the display row from the current spectrum row: the known points sit
// every `factor` entries, the rest are made by four-point interpolation at
// the midpoints, halving the spacing each pass:
//   y(mid) = 0.5625 (y[k] + y[k+S]) - 0.0625 (y[k-S] + y[k+2S])
// with neighbours outside the data counted as 0.
void Fill_Disp_Row(Session& s, int32_t row, int32_t factor) {
  const int32_t n = s.Spec_Points;
  const int32_t total = s.Disp_Points;
  std::span<float> y = s.Disp_Y.Row(static_cast<std::size_t>(row));
  std::span<const float> re = s.Spec_Re.Row(static_cast<std::size_t>(row));
  std::span<const float> im = s.Spec_Im.Row(static_cast<std::size_t>(row));
  for (int32_t k = 0; k < n; ++k) {
    float v = re[static_cast<std::size_t>(k)];
    if (s.Show_Magnitude) {
      const double a = re[static_cast<std::size_t>(k)], b = im[static_cast<std::size_t>(k)];
      v = static_cast<float>(std::sqrt(a * a + b * b));
    }
    y[static_cast<std::size_t>(k) * static_cast<std::size_t>(factor)] = v;
  }
  // Neighbours outside the display row count as 0.
  auto at = [&](int64_t i) -> double {
    return (i < 0 || i >= total) ? 0.0 : static_cast<double>(y[static_cast<std::size_t>(i)]);
  };
  for (int32_t S = factor; S >= 2; S /= 2) {
    const int32_t h = S / 2;
    for (int64_t k = 0; k + h < total; k += S) {
      const double v = 0.5625 * (at(k) + at(k + S)) - 0.0625 * (at(k - S) + at(k + 2 * S));
      y[static_cast<std::size_t>(k + h)] = static_cast<float>(v);
    }
  }
}

// Disp_X: known points take Spec_Axis; each midpoint takes its left
// neighbour's ppm plus half the current spacing in ppm,
// 0.5 × RESOL / Spectrum_Frequency × stride / factor.
void Fill_Disp_X(Session& s, int32_t factor) {
  const int32_t n = s.Spec_Points;
  const int32_t total = s.Disp_Points;
  for (int32_t k = 0; k < n; ++k)
    s.Disp_X[static_cast<std::size_t>(k) * static_cast<std::size_t>(factor)] =
        s.Spec_Axis[static_cast<std::size_t>(k)];
  const double ppm_per_point =
      s.Spectrum_Frequency != 0 ? static_cast<double>(s.Param.RESOL) / s.Spectrum_Frequency : 0.0;
  for (int32_t S = factor; S >= 2; S /= 2) {
    const int32_t h = S / 2;
    const double step = 0.5 * ppm_per_point * S / factor;
    for (int64_t k = 0; k + h < total; k += S)
      s.Disp_X[static_cast<std::size_t>(k + h)] =
          static_cast<float>(s.Disp_X[static_cast<std::size_t>(k)] + step);
  }
}

}  // namespace

void Build_Disp_Arrays(Session& s, int mode) {
  if (s.Spec_Points <= 0) {
    s.Disp_Points = 0;
    s.Disp_Y.Clear();
    s.Disp_X.clear();
    return;
  }
  const int32_t factor = Display_Factor(s);
  const int32_t total = s.Spec_Points * factor;
  const int32_t rows = std::max(s.Array_Rows, 1);
  const bool fits = s.Disp_Points == total && s.Disp_X.size() >= static_cast<std::size_t>(total) &&
                    s.Disp_Y.Rows() >= static_cast<std::size_t>(rows) &&
                    s.Disp_Y.Stride() >= static_cast<std::size_t>(total);
  if (mode == 0 || !fits) {
    s.Disp_Points = total;
    s.Disp_Y.Allocate(total, rows);
    s.Disp_X.assign(static_cast<std::size_t>(total) + 1, 0.0f);
    Fill_Disp_X(s, factor);
    for (int32_t r = 0; r < rows; ++r) Fill_Disp_Row(s, r, factor);
    return;
  }
  if (mode == 1) {
    Fill_Disp_Row(s, s.Row(), factor);
  } else {
    Fill_Disp_X(s, factor);
  }
}

Ppm_Lookup Point_From_Ppm(const Session& s, float ppm, int32_t row) {
  Ppm_Lookup out;
  if (s.Spec_Points < 1 || s.Disp_Points < 1 || s.Disp_X.empty()) return out;
  const int32_t last = s.Disp_Points - 1;
  const double x0 = s.Disp_X[0];
  const double x1 = s.Disp_X[static_cast<std::size_t>(last)];
  double pos = 0;
  if (x1 != x0) pos = (static_cast<double>(ppm) - x0) / (x1 - x0) * last;
  int32_t idx = static_cast<int32_t>(std::nearbyint(std::clamp(pos, 0.0, static_cast<double>(last))));
  out.index = idx;
  if (row >= 0 && static_cast<std::size_t>(row) < s.Disp_Y.Rows())
    out.height = s.Disp_Y(static_cast<std::size_t>(idx), static_cast<std::size_t>(row));
  return out;
}

void Update_Scale_Values(Session& s) {
  const int32_t row = s.Row();
  double max_abs = 0, max_real = -HUGE_VAL;
  if (s.Spec_Points > 0 && !s.Spec_Re.Empty()) {
    auto re = s.Spec_Re.Row(static_cast<std::size_t>(row));
    auto im = s.Spec_Im.Row(static_cast<std::size_t>(row));
    for (int32_t i = 0; i < s.Spec_Points; ++i) {
      const double a = re[static_cast<std::size_t>(i)], b = im[static_cast<std::size_t>(i)];
      max_abs = std::max(max_abs, std::sqrt(a * a + b * b));
      max_real = std::max(max_real, a);
    }
  }
  s.Max_Abs = static_cast<float>(std::max(max_abs, 0.1));
  s.Max_Real = max_real == -HUGE_VAL ? 0.0f : static_cast<float>(max_real);
  if (!(s.Y_Mag > 0 && s.Y_Mag <= 10000)) s.Y_Mag = 0.95f;
  s.Y_Full_Scale = s.Max_Abs / s.Y_Mag;
}

}  // namespace tevo
