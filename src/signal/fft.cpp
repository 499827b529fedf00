#include "signal/fft.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "session/session.h"
#include "signal/window.h"

namespace tevo::signal {

void Fft_Butterflies(float* re, float* im, int32_t n) {
  if (n < 2) return;
  const float* T = Fft_Sine().data();
  const int32_t M = Fft_Table_Size;
  const int32_t step = static_cast<int32_t>(std::nearbyint(static_cast<double>(M) / n));
  const int32_t quarter = static_cast<int32_t>(std::nearbyint(M / 4.0));
  int32_t n2 = n;
  int32_t k = 1;
  while (n2 > 1) {
    n2 /= 2;
    const int32_t inc = step * k;
    for (int32_t block = 0, b = 0; block < k; ++block, b += 2 * n2) {
      int32_t a = 0, c = quarter;
      float* ri = re + b;
      float* ii = im + b;
      float* rj = re + b + n2;
      float* ij = im + b + n2;
      for (int32_t t = 0; t < n2; ++t) {
        const float dr = ri[t] - rj[t];
        const float di = ii[t] - ij[t];
        ri[t] = rj[t] + ri[t];
        ii[t] = ij[t] + ii[t];
        const double sa = T[a], ca = T[c];
        rj[t] = static_cast<float>(static_cast<double>(di) * sa + static_cast<double>(dr) * ca);
        ij[t] = static_cast<float>(static_cast<double>(di) * ca - static_cast<double>(dr) * sa);
        a += inc;
        c += inc;
      }
    }
    k *= 2;
  }
}

void Fft_Bit_Reverse(float* re, float* im, int32_t n) {
  int32_t j = n / 2;
  for (int32_t i = 1; i < n; ++i) {
    if (j < i) {
      std::swap(re[i], re[j]);
      std::swap(im[i], im[j]);
    }
    // j becomes the bit reversal of i + 1: add one from the top bit down.
    int32_t n2 = n;
    for (;;) {
      n2 /= 2;
      if (n2 < 1) break;
      if (j < n2) {
        j += n2;
        break;
      }
      j -= n2;
    }
  }
}

void Fft_Centre(float* re, float* im, int32_t n) {
  if (n < 2) return;
  std::rotate(re, re + 1, re + n);
  std::rotate(im, im + 1, im + n);
  std::swap_ranges(re, re + n / 2, re + n / 2);
  std::swap_ranges(im, im + n / 2, im + n / 2);
}

void Shift_Window_Conjugate(const float* src_re, const float* src_im, const float* w, float* re,
                            float* im, int32_t n, int32_t shift) {
  // The direction follows the shift so that the pass also works in place.
  auto one = [&](int32_t i) {
    const int64_t from = static_cast<int64_t>(i) + shift;
    if (from < 0 || from >= n) {
      re[i] = 0.0f;
      im[i] = 0.0f;
    } else {
      const float x = src_re[from], y = src_im[from];
      re[i] = x * w[i];
      im[i] = (-y) * w[i];
    }
  };
  if (shift >= 0) {
    for (int32_t i = 0; i < n; ++i) one(i);
  } else {
    for (int32_t i = n - 1; i >= 0; --i) one(i);
  }
}

void Spectrum_Transform(const float* src_re, const float* src_im, const float* w, float* re,
                        float* im, int32_t n, int32_t shift) {
  Shift_Window_Conjugate(src_re, src_im, w, re, im, n, shift);
  Fft_Butterflies(re, im, n);
  Fft_Bit_Reverse(re, im, n);
  Fft_Centre(re, im, n);
}

namespace {

// Makes sure the window covers N points before a transform reads it.
void Ensure_Window(Session& s) {
  if (s.Window_Func.size() < static_cast<std::size_t>(s.Spec_Points)) Build_Window(s);
}

}  // namespace

float FT_Preview(Session& s, int32_t shift) {
  const int32_t n = s.Spec_Points;
  const auto row = static_cast<std::size_t>(s.Row());
  if (n < 1) return 1e-5f;
  Ensure_Window(s);
  float* re = s.Ft_Re.Row(row).data();
  float* im = s.Ft_Im.Row(row).data();
  Spectrum_Transform(s.Fid_Re.Row(row).data(), s.Fid_Im.Row(row).data(), s.Window_Func.data(), re,
                     im, n, shift);
  double top = 1e-10;
  for (int32_t i = 0; i < n; ++i) {
    const double p = static_cast<double>(re[i]) * re[i] + static_cast<double>(im[i]) * im[i];
    if (p > top) top = p;
  }
  return static_cast<float>(std::sqrt(top));
}

void FT_Row(Session& s, int32_t row, int32_t shift) {
  const int32_t n = s.Spec_Points;
  if (n < 1) return;
  Ensure_Window(s);
  float* re = s.Fid_Re.Row(static_cast<std::size_t>(row)).data();
  float* im = s.Fid_Im.Row(static_cast<std::size_t>(row)).data();
  Spectrum_Transform(re, im, s.Window_Func.data(), re, im, n, shift);
}

}  // namespace tevo::signal
