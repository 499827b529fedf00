// Baseline correction: the automatic points under a known smooth baseline,
// one point as a constant, the preview toggle and the mode's O K and cancel.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "editing/baseline.h"
#include "editing/undo.h"
#include "spectrum_rows.h"

namespace tevo {
namespace {

using test::Lorentz;
using test::Spectrum_Session;

constexpr int32_t kN = 16384;
const double kLines[][2] = {{2000, 1.0}, {5000, 0.6}, {9000, 0.8}, {12000, 0.3}, {14500, 0.5}};

// Level at both ends, as a spectrum's baseline is far from its lines: the
// constant continuation beyond the outer points then holds.
double Smooth_Base(int32_t k) { return 0.03 + 0.05 * std::cos(2 * M_PI * k / kN); }

std::complex<double> Lines(int32_t k) {
  std::complex<double> z;
  for (const auto& l : kLines) z += Lorentz(l[1], l[0], 1, k);
  return z;
}

TEST(Baseline, AutomaticPointsRemoveASmoothBaselineUnderSharpLines) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0, 1e-4);
  std::vector<std::complex<double>> points(kN);
  for (int32_t k = 0; k < kN; ++k)
    points[k] = Lines(k) + std::complex<double>(Smooth_Base(k) + noise(random), noise(random));
  Spectrum_Session d(kN, [&](int32_t k) { return points[k]; }, 1.1f);
  Session& s = d.s;
  ASSERT_TRUE(editing::m23_Click(s));
  const int32_t count = editing::Base_Auto_Points(s);
  EXPECT_GE(count, 20);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(補正点の自動追加)");
  double worst = 0;
  for (int32_t k = 0; k < kN; ++k) {
    bool near_line = false;
    for (const auto& l : kLines) near_line |= std::fabs(k - l[0]) < 100;
    if (!near_line) worst = std::max(worst, std::fabs(s.Spec_Re(k) - Lines(k).real()));
  }

  std::printf("baseline: %d points, largest residual %.5f of the strongest line\n", count, worst);
  EXPECT_LT(worst, 0.01);
  // Ft_* stay raw; O K marks the spectrum corrected and empties the list.
  EXPECT_FLOAT_EQ(s.Ft_Re(0), static_cast<float>(points[0].real()));
  editing::BaseCorCommand2_Click(s);
  EXPECT_EQ(s.Base_Corrected, 1);
  EXPECT_TRUE(s.Base_Point.empty());
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Basic);
  EXPECT_FALSE(editing::Undo_Caption(s).enabled);
}

TEST(Baseline, OnePointIsAConstantAndDeletingItRestoresTheRawSpectrum) {
  Spectrum_Session d(1024, [](int32_t k) { return Lorentz(1, 500, 3, k) + std::complex<double>(0.1 + 1e-4 * k, 0.05); });
  Session& s = d.s;
  ASSERT_TRUE(editing::m23_Click(s));
  EXPECT_STREQ(editing::Base_Preview_Caption(s), "Preview");
  EXPECT_STREQ(editing::Base_Toggle_Preview(s), "Preview解除");
  ASSERT_TRUE(editing::Base_Add_Point(s, 100));
  EXPECT_FALSE(editing::Base_Add_Point(s, 100));  // already in the list
  // The fit over 100 +- 5 of a straight line gives its value at 100.
  EXPECT_NEAR(s.Base_Re[0], 0.1 + 1e-4 * 100 + Lorentz(1, 500, 3, 100).real(), 1e-5);
  EXPECT_NEAR(s.Base_Im[0], 0.05 + Lorentz(1, 500, 3, 100).imag(), 1e-4);
  for (int32_t k : {0, 100, 700, 1023}) {
    EXPECT_FLOAT_EQ(s.Spec_Re(k), static_cast<float>(double(s.Ft_Re(k)) - s.Base_Re[0])) << k;
    EXPECT_FLOAT_EQ(s.Spec_Im(k), static_cast<float>(double(s.Ft_Im(k)) - s.Base_Im[0])) << k;
  }
  // Two points: linear between, constant outside.
  ASSERT_TRUE(editing::Base_Add_Point(s, 900));
  const double mid = (s.Base_Re[0] * 400 + s.Base_Re[1] * 400) / 800;
  EXPECT_NEAR(s.Spec_Re(500), double(s.Ft_Re(500)) - mid, 1e-6);
  EXPECT_FLOAT_EQ(s.Spec_Re(1000), static_cast<float>(double(s.Ft_Re(1000)) - s.Base_Re[1]));
  auto pixel = [&](double ppm) { return (ppm - s.Spec_Axis[0]) / (s.Spec_Axis[1] - s.Spec_Axis[0]); };
  EXPECT_EQ(editing::Base_Point_At(s, 901.5, pixel), 1);
  EXPECT_EQ(editing::Base_Point_At(s, 950, pixel), -1);
  ASSERT_TRUE(editing::Base_Delete_Point(s, 1));
  ASSERT_TRUE(editing::Base_Delete_Point(s, 0));
  for (int32_t k = 0; k < 1024; ++k) ASSERT_EQ(s.Spec_Re(k), s.Ft_Re(k)) << k;
  // Cancel restores the spectrum as it was on entering the mode.
  ASSERT_TRUE(editing::Base_Add_Point(s, 300));
  EXPECT_NE(s.Spec_Re(10), s.Ft_Re(10));
  editing::BaseCorCommand3_Click(s);
  EXPECT_EQ(s.Spec_Re(10), s.Ft_Re(10));
  EXPECT_EQ(s.Base_Corrected, 0);
  EXPECT_TRUE(s.Base_Point.empty());
}

}  // namespace
}  // namespace tevo
