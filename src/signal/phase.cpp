#include "signal/phase.h"

#include <algorithm>
#include <cmath>

#include "session/rounding.h"
#include "session/session.h"
#include "signal/sine_table.h"

namespace tevo::signal {

void Rotate_By_Table(std::span<const float> re_in, std::span<const float> im_in,
                     std::span<float> re_out, std::span<float> im_out, int32_t n,
                     float p0, float p1, int32_t pivot) {
  if (n <= 0) return;
  const std::vector<float>& t = Fft_Sine();
  constexpr int64_t m = Fft_Table_Size;
  // Both factors are formed once as 32-bit floats: table steps per degree,
  // and degrees of the first-order term per point.
  const float q = static_cast<float>(m / 360.0);
  const float r = static_cast<float>(static_cast<double>(p1) / n);
  for (int32_t i = 0; i < n; ++i) {
    const double d = static_cast<double>(i) - pivot;
    const double angle = (static_cast<double>(p0) + d * r) * q;
    int64_t a = Round_Near(angle) % m;  // sine index
    int64_t b = (a + m / 4) % m;  // cosine index, from a before it is made positive
    if (a < 0) a += m;
    if (b < 0) b += m;
    const double sn = t[static_cast<std::size_t>(a)];
    const double cs = t[static_cast<std::size_t>(b)];
    const double x = re_in[static_cast<std::size_t>(i)];
    const double y = im_in[static_cast<std::size_t>(i)];
    re_out[static_cast<std::size_t>(i)] = static_cast<float>(x * cs - y * sn);
    im_out[static_cast<std::size_t>(i)] = static_cast<float>(x * sn + y * cs);
  }
}

void Rotate_By_Sin_Cos(std::span<const float> re_in, std::span<const float> im_in,
                       std::span<float> re_out, std::span<float> im_out, int32_t n,
                       float p0, float p1, int32_t pivot) {
  if (n <= 0) return;
  constexpr double deg = 0.0174532925199433;  // radians per degree
  for (int32_t i = 0; i < n; ++i) {
    const double d = static_cast<double>(i) - pivot;
    const double angle = (static_cast<double>(p0) + d * p1 / n) * deg;
    const double sn = std::sin(angle), cs = std::cos(angle);
    const double x = re_in[static_cast<std::size_t>(i)];
    const double y = im_in[static_cast<std::size_t>(i)];
    re_out[static_cast<std::size_t>(i)] = static_cast<float>(x * cs - y * sn);
    im_out[static_cast<std::size_t>(i)] = static_cast<float>(x * sn + y * cs);
  }
}

namespace {

// True when `row` and n points fit the allocated point arrays.
bool Row_Fits(const Point_Array& a, int32_t n, int32_t row) {
  return n > 0 && row >= 0 && static_cast<std::size_t>(row) < a.Rows() &&
         static_cast<std::size_t>(n) <= a.Stride();
}

}  // namespace

void Phase_Apply_Table(Session& s, float p0, float p1, int32_t n, int32_t row) {
  if (!Row_Fits(s.Ft_Re, n, row) || !Row_Fits(s.Spec_Re, n, row)) return;
  const auto r = static_cast<std::size_t>(row);
  Rotate_By_Table(s.Ft_Re.Row(r), s.Ft_Im.Row(r), s.Spec_Re.Row(r), s.Spec_Im.Row(r), n, p0, p1,
                  s.Pivot_Pp);
}

void Phase_Preview(Session& s, float p0, float p1, int32_t n) {
  Phase_Apply_Table(s, p0, p1, n, s.Row());
}

void Phase_Row(Session& s, float p0, float p1, int32_t n, int32_t row) {
  if (!Row_Fits(s.Fid_Re, n, row)) return;
  const auto r = static_cast<std::size_t>(row);
  Rotate_By_Table(s.Fid_Re.Row(r), s.Fid_Im.Row(r), s.Fid_Re.Row(r), s.Fid_Im.Row(r), n, p0, p1,
                  s.Pivot_Pp);
}

void Phase_Apply_Exact(Session& s, float p0, float p1, int32_t n) {
  for (int32_t row = 0; row < std::max(s.Array_Rows, 1); ++row) {
    if (!Row_Fits(s.Ft_Re, n, row) || !Row_Fits(s.Spec_Re, n, row)) continue;
    const auto r = static_cast<std::size_t>(row);
    Rotate_By_Sin_Cos(s.Ft_Re.Row(r), s.Ft_Im.Row(r), s.Spec_Re.Row(r), s.Spec_Im.Row(r), n, p0,
                      p1, s.Pivot_Pp);
  }
  Build_Disp_Arrays(s, 0);
}

void Phase_Apply_Main(Session& s, float p0, float p1, int32_t n) {
  if (s.Phase_Together) {
    for (int32_t row = 0; row < std::max(s.Array_Rows, 1); ++row) Phase_Apply_Table(s, p0, p1, n, row);
    Build_Disp_Arrays(s, 0);
  } else {
    Phase_Apply_Table(s, p0, p1, n, s.Row());
    Build_Disp_Arrays(s, 1);
  }
}

}  // namespace tevo::signal
