// The single-converter correction: a FID whose imaginary channel was sampled
// half a dwell late comes back as the FID of one sampling instant.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "session/session.h"
#include "signal/qd_correct.h"
#include "synthetic.h"

namespace tevo::signal {
namespace {

constexpr double kPi = 3.14159265358979323846;

// z(t) at t in dwells: two lines on whole frequency points, one above and
// one below the carrier, so that the half-dwell delay is exact.
std::complex<double> Signal(double t, int32_t n) {
  return 0.8 * std::polar(1.0, 2 * kPi * 100 * t / n + 0.3) +
         0.5 * std::polar(1.0, -2 * kPi * 300 * t / n - 1.1);
}

TEST(QdCorrect, LateImaginaryChannelIsMovedBackHalfADwell) {
  const int32_t n = 1024;
  std::vector<float> re(n), im(n);
  for (int32_t k = 0; k < n; ++k) {
    re[k] = static_cast<float>(Signal(k, n).real());
    im[k] = static_cast<float>(-Signal(k + 0.5, n).imag());  // sampled half a dwell later
  }
  std::vector<float> re1 = re, im1 = im;
  QD_Correct(re.data(), im.data(), n, 0);
  Plain_Transform(re.data(), im.data(), n, 1);
  // n times the signal at the same instant, stored conjugated.
  for (int32_t k = 0; k < n; k += 37) {
    EXPECT_NEAR(re[k] / n, Signal(k, n).real(), 2e-4) << k;
    EXPECT_NEAR(im[k] / n, -Signal(k, n).imag(), 2e-4) << k;
  }
  // Mode 1 gives the same spectrum end for end.
  std::vector<float> re0 = re1, im0 = im1;
  QD_Correct(re0.data(), im0.data(), n, 0);
  QD_Correct(re1.data(), im1.data(), n, 1);
  for (int32_t k = 0; k < n; ++k) {
    ASSERT_EQ(re1[k], re0[n - 1 - k]);
    ASSERT_EQ(im1[k], im0[n - 1 - k]);
  }
}

TEST(QdCorrect, EmptyImaginaryChannelAndTheSessionStep) {
  // With Fid_Im all 0 the FID comes back as n times itself.
  const int32_t n = 256;
  std::vector<float> re(n), im(n, 0.0f);
  for (int32_t k = 0; k < n; ++k) re[k] = static_cast<float>(std::exp(-k / 40.0) * std::cos(k * 0.7));
  const std::vector<float> original = re;
  QD_Correct(re.data(), im.data(), n, 0);
  Plain_Transform(re.data(), im.data(), n, 1);
  for (int32_t k = 0; k < n; ++k) {
    EXPECT_NEAR(re[k], n * original[k], 1e-3) << k;
    EXPECT_NEAR(im[k], 0, 1e-3) << k;
  }

  // The session step runs only when the flag asks for it, clears the flag,
  // and renormalises so that the largest |Fid_Re| is 1 again.
  Session s;
  test::Fill_Fid(s, n, n, 1000, 400, {});
  for (int32_t k = 0; k < n; ++k) s.Fid_Re(k) = original[k];
  s.Fid_Scale = 2;
  Form14_OK(s, false);  // "Dual AD-Converter" overrides the file's flag
  EXPECT_FALSE(Single_Converter_Correction(s));
  EXPECT_EQ(s.Fid_Re(3), original[3]);
  Form14_OK(s, true);
  ASSERT_TRUE(Single_Converter_Correction(s));
  EXPECT_EQ(s.Acq_Mode, 0);
  EXPECT_NEAR(s.Fid_Scale, 2 * n * 1.0, 1e-2);  // the largest |re| was 1 at point 0
  EXPECT_NEAR(s.Fid_Re(0), 1.0, 1e-6);
  EXPECT_NEAR(s.Fid_Re(5), original[5], 1e-5);
}

}  // namespace
}  // namespace tevo::signal
