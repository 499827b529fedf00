// The mirror of the spectrum: the points turned over about the middle, the
// marks that hang on points turned with them, and the question first.
#include <gtest/gtest.h>

#include <cmath>

#include "editing/integral_sum.h"
#include "editing/mirror.h"
#include "editing/reference.h"
#include "platform/ui.h"
#include "session/session.h"

namespace {

constexpr int kN = 64;

// Two rows of kN points, row r holding (i + 1) * (r + 1) in the real part
// and 100 + i in the imaginary one; 1H at 400 MHz over 4000 Hz, 0 ppm in the
// middle.
void Make_Data(tevo::Session& s, tevo::platform::Scripted_Ui& ui) {
  ui.quiet = true;
  s.ui = &ui;
  s.Array_Rows = 2;
  tevo::Alloc_Point_Arrays(s, kN);
  s.Spec_Points = kN;
  s.Is_Spectrum = 1;
  s.Observe_Frequency = 400;
  s.Spectrum_Frequency = 400;
  s.Param.FREQU = 4000;
  s.Param.RESOL = 4000.0f / kN;
  s.Param.SMTMS = kN / 2;
  tevo::editing::Axis_From_Reference(s);
  for (int r = 0; r < 2; ++r)
    for (int i = 0; i < kN; ++i) {
      s.Spec_Re(i, r) = s.Ft_Re(i, r) = static_cast<float>((i + 1) * (r + 1));
      s.Spec_Im(i, r) = s.Ft_Im(i, r) = static_cast<float>(100 + i);
    }
  s.Max_Abs = 128;
  s.Phase0 = 12;
  s.Phase1_Row = {5, -5};
  s.X_Left = s.Spec_Axis[50];
  s.X_Right = s.Spec_Axis[20];
  s.Data_Saved = 1;
}

TEST(Mirror, PointsAndTheirMarksTurnOverAndTwiceIsTheSame) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Data(s, ui);
  const std::vector<float> axis = s.Spec_Axis;
  const double sum = double(axis[0]) + axis[kN - 1];
  // Peaks at points 10 and 40 with their frequencies from the axis.
  for (int p : {10, 40})
    s.Peaks.push_back({p, 0, 0, static_cast<float>((axis[p] - axis[0]) * s.Spectrum_Frequency), 0});
  // A region 5..20 with a tilted baseline: its sum must not change.
  s.Integrals.push_back({20, 5, 0.1f, 0.02f, 0.3f, 0});
  const float value = tevo::editing::Calc_Integral(s, 0);
  s.Insets.push_back({});
  s.Insets[0].Inset_Left = axis[30];
  s.Insets[0].Inset_Right = axis[25];
  s.Base_Point = {3, 60};
  s.Base_Re = {1, 2};
  s.Base_Im = {3, 4};

  tevo::editing::Mirror_Spectrum(s);
  for (int r = 0; r < 2; ++r) {
    for (int i = 0; i < kN; ++i) {
      ASSERT_EQ(s.Spec_Re(i, r), float((kN - i) * (r + 1))) << i;
      ASSERT_EQ(s.Spec_Im(i, r), -float(100 + kN - 1 - i)) << i;
      ASSERT_EQ(s.Ft_Re(i, r), s.Spec_Re(i, r));
      ASSERT_EQ(s.Ft_Im(i, r), s.Spec_Im(i, r));
    }
  }
  EXPECT_EQ(s.Spec_Axis, axis);  // the axis stays
  EXPECT_EQ(s.Phase0, 0.0f);
  EXPECT_EQ(s.Phase1_Row, (std::vector<float>{0, 0}));
  EXPECT_EQ(s.Data_Saved, 0);

  // Peaks: points 23 and 53, still in ascending frequency, their
  // frequencies those of the new points.
  ASSERT_EQ(s.Peaks.size(), 2u);
  EXPECT_EQ(s.Peaks[0].Point, kN - 1 - 40);
  EXPECT_EQ(s.Peaks[1].Point, kN - 1 - 10);
  for (const auto& p : s.Peaks)
    EXPECT_NEAR(p.Freq_Hz, (axis[p.Point] - axis[0]) * s.Spectrum_Frequency, 1e-3);

  // The region 43..58, the same sum; its baseline reads the same at the
  // mirrored points.
  const auto& g = s.Integrals[0];
  EXPECT_EQ(g.Start_Point, kN - 1 - 20);
  EXPECT_EQ(g.End_Point, kN - 1 - 5);
  for (int k = 5; k <= 20; ++k) {
    const double before = 0.02 + 0.3 * (20 - k) / kN;
    const double after = g.B0 + g.B1 * (g.End_Point - (kN - 1 - k)) / kN;
    EXPECT_NEAR(after, before, 1e-6) << k;
  }
  EXPECT_NEAR(tevo::editing::Calc_Integral(s, 0), value, 1e-4 * std::fabs(value));

  // The view and the inset window show the same signal: ppm p is now sum - p.
  EXPECT_NEAR(s.X_Left, sum - axis[20], 1e-5);
  EXPECT_NEAR(s.X_Right, sum - axis[50], 1e-5);
  EXPECT_NEAR(s.X_Left, axis[kN - 1 - 20], 1e-5);
  EXPECT_NEAR(s.Insets[0].Inset_Left, axis[kN - 1 - 25], 1e-5);
  EXPECT_EQ(s.Base_Point, (std::vector<int32_t>{3, 60}));  // 60 -> 3, 3 -> 60
  EXPECT_EQ(s.Base_Re, (std::vector<float>{2, 1}));
  EXPECT_EQ(s.Base_Im, (std::vector<float>{-4, -3}));

  // Twice is the same data set again.
  tevo::editing::Mirror_Spectrum(s);
  for (int i = 0; i < kN; ++i) {
    ASSERT_EQ(s.Spec_Re(i, 1), float(2 * (i + 1)));
    ASSERT_EQ(s.Spec_Im(i, 0), float(100 + i));
  }
  EXPECT_EQ(s.Peaks[0].Point, 10);
  EXPECT_EQ(s.Integrals[0].Start_Point, 5);
  EXPECT_NEAR(s.Integrals[0].B0, 0.02, 1e-6);
  EXPECT_NEAR(s.Integrals[0].B1, 0.3, 1e-7);
  EXPECT_NEAR(s.X_Left, axis[50], 1e-5);
}

TEST(Mirror, MenuCommandAsksFirstAndNeedsASpectrum) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Data(s, ui);
  ui.button_answers = {2};  // いいえ
  EXPECT_FALSE(tevo::editing::m291_Click(s));
  ASSERT_EQ(ui.shown.size(), 1u);
  EXPECT_EQ(ui.shown[0].text, "スペクトルの左右を反転しますか");
  EXPECT_EQ(s.Spec_Re(0), 1.0f);
  EXPECT_EQ(s.Data_Saved, 1);
  ui.button_answers = {1};
  EXPECT_TRUE(tevo::editing::m291_Click(s));
  EXPECT_EQ(s.Spec_Re(0), float(kN));

  tevo::Session empty;
  empty.ui = &ui;
  EXPECT_FALSE(tevo::editing::m291_Click(empty));
  EXPECT_EQ(ui.shown.size(), 2u);  // not asked
}

}  // namespace
