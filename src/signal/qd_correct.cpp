#include "signal/qd_correct.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/ui.h"
#include "session/session.h"
#include "signal/fft.h"

namespace tevo::signal {

namespace {
constexpr double Pi = 3.14159265358979;
}  // namespace

void QD_Correct(float* re, float* im, int32_t n, int mode) {
  if (n < 2) return;
  // 1. The imaginary channel on its own, as i * im.
  std::vector<float> u_re(static_cast<std::size_t>(n), 0.0f), u_im(im, im + n);
  std::fill(im, im + n, 0.0f);
  // 2.-3. Both channels to the frequency domain.
  Fft_Butterflies(u_re.data(), u_im.data(), n);
  Fft_Bit_Reverse(u_re.data(), u_im.data(), n);
  Fft_Butterflies(re, im, n);
  Fft_Bit_Reverse(re, im, n);
  // 4. Half a dwell back, per signed frequency: -pi/2 .. pi/2.
  for (int32_t k = 0; k < n; ++k) {
    const double frac = static_cast<float>(static_cast<double>(k) / n);
    const double a = (k < n / 2 ? frac : frac - 1.0) * Pi;
    const double c = std::cos(a), s = std::sin(a);
    const double ur = u_re[static_cast<std::size_t>(k)], ui = u_im[static_cast<std::size_t>(k)];
    re[k] = static_cast<float>(re[k] - ur * c - ui * s);
    im[k] = static_cast<float>(im[k] - ui * c + ur * s);
  }
  // 5. Mode 1: end for end.
  if (mode == 1) {
    std::reverse(re, re + n);
    std::reverse(im, im + n);
  }
}

void Plain_Transform(float* re, float* im, int32_t n, int conjugate) {
  if (conjugate == 1)
    for (int32_t i = 0; i < n; ++i) im[i] = -im[i];
  Fft_Butterflies(re, im, n);
  Fft_Bit_Reverse(re, im, n);
}

void Form14_OK(Session& s, bool single_converter) { s.Acq_Mode = single_converter ? 1 : 0; }

bool Single_Converter_Correction(Session& s) {
  if (s.Acq_Mode != 1) return false;
  const int32_t n = s.Spec_Points;
  const int32_t rows = std::max(s.Array_Rows, 1);
  s.ui->Wait_Cursor(true);
  for (int32_t r = 0; r < rows; ++r) {
    float* re = s.Fid_Re.Row(static_cast<std::size_t>(r)).data();
    float* im = s.Fid_Im.Row(static_cast<std::size_t>(r)).data();
    QD_Correct(re, im, n, 0);
    Plain_Transform(re, im, n, 1);
  }
  s.Acq_Mode = 0;
  double top = 0.1;
  for (int32_t i = 0; i < n; ++i) top = std::max(top, static_cast<double>(std::fabs(s.Fid_Re(static_cast<std::size_t>(i)))));
  for (int32_t r = 0; r < rows; ++r)
    for (int32_t i = 0; i < n; ++i) {
      s.Fid_Re(static_cast<std::size_t>(i), static_cast<std::size_t>(r)) =
          static_cast<float>(s.Fid_Re(static_cast<std::size_t>(i), static_cast<std::size_t>(r)) / top);
      s.Fid_Im(static_cast<std::size_t>(i), static_cast<std::size_t>(r)) =
          static_cast<float>(s.Fid_Im(static_cast<std::size_t>(i), static_cast<std::size_t>(r)) / top);
    }
  s.Fid_Scale = static_cast<float>(s.Fid_Scale * top);
  s.ui->Wait_Cursor(false);
  return true;
}

}  // namespace tevo::signal
