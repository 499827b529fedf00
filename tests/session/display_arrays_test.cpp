// The display copy: density, four-point interpolation, ppm of the new points,
// the lookup by ppm, and the scale floor.
#include <gtest/gtest.h>

#include <cmath>

#include "session/session.h"

namespace {

constexpr double kPpmPerPoint = 0.01;

// A smooth line shape sampled at n points, with a linear ppm axis.
void Load_Smooth(tevo::Session& s, int32_t n, double period_points) {
  s.Array_Rows = 1;
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Spectrum_Frequency = 100.0;
  s.Param.RESOL = static_cast<float>(kPpmPerPoint * s.Spectrum_Frequency);
  for (int32_t i = 0; i < n; ++i) {
    s.Spec_Re(static_cast<std::size_t>(i)) = static_cast<float>(std::sin(2 * M_PI * i / period_points));
    s.Spec_Im(static_cast<std::size_t>(i)) = static_cast<float>(std::cos(2 * M_PI * i / period_points));
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(1.0 + i * kPpmPerPoint);
  }
}

TEST(DisplayArrays, InterpolatesMidpointsWithinTheFourPointError) {
  tevo::Session s;
  s.settings.Set("DISPLAY MIN", 65536.0);
  const int32_t n = 8192;
  const double period = 64.0;
  Load_Smooth(s, n, period);
  tevo::Build_Disp_Arrays(s, 0);
  ASSERT_EQ(s.Disp_Points, 65536);  // factor 8 reaches DISPLAY MIN
  const int factor = 8;
  // Known points are copied exactly.
  for (int32_t k = 0; k < n; k += 97)
    EXPECT_EQ(s.Disp_Y(static_cast<std::size_t>(k * factor)), s.Spec_Re(static_cast<std::size_t>(k)));
  // The cubic midpoint rule errs by about (3/128) h^4 f'''' per pass; for a
  // sine of 64-point period that is far below 1e-4 of the amplitude. Away from
  // the ends (where the zero neighbours bite) every point is that close.
  double worst = 0;
  for (int32_t j = 4 * factor; j < (n - 4) * factor; ++j) {
    const double exact = std::sin(2 * M_PI * (static_cast<double>(j) / factor) / period);
    worst = std::max(worst, std::abs(s.Disp_Y(static_cast<std::size_t>(j)) - exact));
  }
  EXPECT_LT(worst, 2e-4);
  // ppm of every display point continues the linear axis.
  for (int32_t j = 0; j < s.Disp_Points; j += 13) {
    const double expect = 1.0 + kPpmPerPoint * j / factor;
    EXPECT_NEAR(s.Disp_X[static_cast<std::size_t>(j)], expect, 1e-5) << j;
  }
  // Magnitude mode shows sqrt(re^2 + im^2) = 1 at the known points.
  s.Show_Magnitude = 1;
  tevo::Build_Disp_Arrays(s, 1);
  EXPECT_NEAR(s.Disp_Y(8 * factor), 1.0, 1e-6);
}

TEST(DisplayArrays, DensityRulesAndEmptyData) {
  tevo::Session s;
  // Default DISPLAY MIN is 131072.
  Load_Smooth(s, 8192, 50);
  tevo::Build_Disp_Arrays(s, 0);
  EXPECT_EQ(s.Disp_Points, 131072);
  // At or above DISPLAY MIN nothing is interpolated.
  Load_Smooth(s, 131072, 50);
  tevo::Build_Disp_Arrays(s, 0);
  EXPECT_EQ(s.Disp_Points, 131072);
  EXPECT_EQ(s.Disp_Y(1000), s.Spec_Re(1000));
  // DISP EXTEND MODE keeps the spectrum's own density.
  s.settings.Set("DISP EXTEND MODE", 1.0);
  Load_Smooth(s, 4096, 50);
  tevo::Build_Disp_Arrays(s, 0);
  EXPECT_EQ(s.Disp_Points, 4096);
  // No points: no display arrays.
  s.Spec_Points = 0;
  tevo::Build_Disp_Arrays(s, 0);
  EXPECT_EQ(s.Disp_Points, 0);
  EXPECT_TRUE(s.Disp_X.empty());
  EXPECT_TRUE(s.Disp_Y.Empty());
  EXPECT_EQ(tevo::Point_From_Ppm(s, 1.0f, 0).index, 0);
}

TEST(DisplayArrays, PointFromPpmAndScaleFloor) {
  tevo::Session s;
  s.settings.Set("DISP EXTEND MODE", 1.0);
  Load_Smooth(s, 1024, 40);
  tevo::Build_Disp_Arrays(s, 0);
  auto hit = tevo::Point_From_Ppm(s, static_cast<float>(1.0 + 100 * kPpmPerPoint), 0);
  EXPECT_EQ(hit.index, 100);
  EXPECT_EQ(hit.height, s.Disp_Y(100));
  EXPECT_EQ(tevo::Point_From_Ppm(s, -50.0f, 0).index, 0);
  EXPECT_EQ(tevo::Point_From_Ppm(s, 500.0f, 0).index, 1023);

  // All zeros: Max_Abs stays at its floor so divisions by it are safe.
  for (int32_t i = 0; i < 1024; ++i) s.Spec_Re(static_cast<std::size_t>(i)) = s.Spec_Im(static_cast<std::size_t>(i)) = 0;
  tevo::Update_Scale_Values(s);
  EXPECT_FLOAT_EQ(s.Max_Abs, 0.1f);
  s.Spec_Re(5) = 3.0f;
  s.Spec_Im(5) = 4.0f;
  tevo::Update_Scale_Values(s);
  EXPECT_FLOAT_EQ(s.Max_Abs, 5.0f);
  EXPECT_FLOAT_EQ(s.Max_Real, 3.0f);
}

TEST(Session, RowClampAndSpareElements) {
  tevo::Session s;
  s.Array_Rows = 3;
  tevo::Alloc_Point_Arrays(s, 16);
  EXPECT_EQ(s.Spec_Re.Stride(), 17u);  // one spare point
  EXPECT_EQ(s.Spec_Re.Rows(), 4u);  // one spare row
  s.Array_Row = 7;
  EXPECT_EQ(s.Row(), 2);
  s.Array_Row = -2;
  EXPECT_EQ(s.Row(), 0);
  s.Array_Rows = 1;
  s.Array_Row = 1;
  EXPECT_EQ(s.Row(), 0);
  // Overlay slots start stacked: 0, 0.1 .. 0.9, 0.96.
  EXPECT_FLOAT_EQ(s.Overlay[3].Slot_Y_Offset, 0.3f);
  EXPECT_FLOAT_EQ(s.Overlay[10].Slot_Y_Offset, 0.96f);
}

}  // namespace
