// The line model against its defining properties and integrals done
// numerically, the window's undo list, and the fit on overlapping lines
// built with known parameters.
#include <gtest/gtest.h>

#include <cmath>

#include "deconvolution/line_fit.h"
#include "deconvolution/line_model.h"

namespace tevo::deconvolution {
namespace {

TEST(LineModel, HalfHeightAtTheWidthAreasAndZeroHeight) {
  const double f = 400, w = 2.5, h = 3;
  // d = W Hz from the centre: half height for every share.
  for (double g : {0.0, 0.5, 1.0}) EXPECT_NEAR(Line_Shape(1.0, w, h, g, 1.0 + w / f, f), h / 2, 1e-12) << g;
  EXPECT_EQ(Line_Shape(1.0, w, 0, 1, 1.0, f), 0.0);
  EXPECT_EQ(Line_Shape(1.0, 0, h, 0, 1.0, f), 0.0);
  // The area is half the integral over Hz, for both pure shapes and a mix.
  for (double g : {0.0, 0.4, 1.0}) {
    double integral = 0;
    const double step = 0.01;
    for (double d = -2e5; d <= 2e5; d += d > -100 && d < 100 ? step : 1.0)
      integral += Line_Shape(0, w, h, g, d / f, f) * (d > -100 && d < 100 ? step : 1.0);
    EXPECT_NEAR(2 * Peak_Area(static_cast<float>(h), static_cast<float>(w), static_cast<float>(g)), integral,
                2e-4 * integral)
        << g;
  }
  Sim_Peaks p;
  ASSERT_TRUE(Add_Sim_Peak(p, 2.0f, -1.0f, 1.0f, 2.0f, 0.0f, false));
  ASSERT_TRUE(Add_Sim_Peak(p, 1.0f, -1.0f, 1.0f, 4.0f, 0.0f, false));
  EXPECT_FLOAT_EQ(p.Peak_Pos[0], 2.0f);  // sorted ascending: 1 ppm first, as offset from -1
  EXPECT_EQ(Relative_Areas(p), (std::vector<float>{100.0f, 50.0f}));
}

TEST(LineModel, HundredLinesAndTwentyOneUndoRecords) {
  Sim_Peaks p;
  Sim_Undo_List undo;
  EXPECT_EQ(Sim_Undo_Caption(undo), "UnDo");
  for (int k = 0; k < Sim_Peak_Max; ++k) {
    Sim_Undo_Push(undo, 3, p);
    ASSERT_TRUE(Add_Sim_Peak(p, 0.01f * k, 0, 1, 1, 0, true));
  }
  EXPECT_FALSE(Add_Sim_Peak(p, 5, 0, 1, 1, 0, true));
  EXPECT_EQ(p.Sim_Peak_Count, 100);
  EXPECT_FLOAT_EQ(p.Peak_Pos[0], 0.99f);  // descending
  EXPECT_EQ(Sim_Undo_Caption(undo), "UnDo(ピークの追加)");
  // 21 steps back reach the state of 79 lines; the 22nd finds the list empty.
  Sim_Peaks back = p;
  for (int k = 0; k < Sim_Undo_Depth; ++k) ASSERT_TRUE(Sim_Undo_Pop(undo, back));
  EXPECT_EQ(back.Sim_Peak_Count, 79);
  EXPECT_FALSE(Sim_Undo_Pop(undo, back));
  Delete_Sim_Peak(p, 0);
  EXPECT_EQ(p.Sim_Peak_Count, 99);
  EXPECT_FLOAT_EQ(p.Peak_Pos[0], 0.98f);
}

TEST(LineFit, OverlappingLinesComeBackFromDisplacedStartValues) {
  // Two lines 4.8 Hz apart at 400 MHz, a third outside the range.
  const double f = 400;
  const std::vector<float> truth{1.000f, 2.0f, 1.0f, 0.3f, 1.012f, 3.0f, 0.6f, 0.0f};
  Sim_Peaks p;
  const float axis0 = -2;
  const float start[3][4] = {{1.002f, 2.6f, 0.8f, 0.3f}, {1.010f, 3.9f, 0.5f, 0.0f}, {3.0f, 1, 1, 0}};
  for (const auto& s : start) Add_Sim_Peak(p, s[0], axis0, s[2], s[1], s[3], false);
  Line_Fit fit;
  Select_Fit_Peaks(fit, p, axis0, 1.06, 0.95, {0.001f, 0.5f, 0.1f, 0.1f}, {1e-6f, 1e-4f, 1e-5f, 1e-4f});
  ASSERT_EQ(fit.Fit_Peak_Index, (std::vector<int32_t>{0, 1}));
  for (double x = 0.95; x <= 1.06; x += 0.25 / f) {
    fit.Fit_X.push_back(static_cast<float>(x));
    fit.Fit_Y.push_back(static_cast<float>(Line_Value(truth, x, f)));
  }
  fit.Fix[3] = fit.Fix[7] = 1;  // the shares held at their true values
  Run_Line_Fit(fit, f, [](const relaxation::Simplex_State& st) { return st.Iterations < 200000; });
  ASSERT_EQ(fit.Outcome, relaxation::Simplex_Step::Converged);
  for (std::size_t q = 0; q < 8; q += 4) {
    EXPECT_NEAR(fit.State.Trial[q], truth[q], 2e-5);
    EXPECT_NEAR(fit.State.Trial[q + 1], truth[q + 1], 0.01 * truth[q + 1]);
    EXPECT_NEAR(fit.State.Trial[q + 2], truth[q + 2], 0.01 * truth[q + 2]);
  }
  Store_Fit(fit, p, axis0, false);
  EXPECT_NEAR(p.Peak_Pos[1] + axis0, 1.012f, 2e-5);
  EXPECT_EQ(p.Peak_Pos[2] + axis0, 3.0f);  // outside the range: untouched
  const Residual r = Calc_Residual(fit.State.Trial, fit.Fit_X, fit.Fit_Y, f);
  EXPECT_LT(r.limit, 1.0f);  // percent of the largest line

  // All held: the first stop test passes; 21 lines in range take 20.
  std::fill(fit.Fix.begin(), fit.Fix.end(), int16_t{1});
  fit.Start = fit.State.Trial;
  Run_Line_Fit(fit, f);
  EXPECT_EQ(fit.State.Iterations, 1);
  Sim_Peaks many;
  for (int k = 0; k < 21; ++k) Add_Sim_Peak(many, 1.0f + 0.001f * k, 0, 1, 1, 0, false);
  Select_Fit_Peaks(fit, many, 0, 0.9, 1.1, {1, 1, 1, 1}, {1, 1, 1, 1});
  EXPECT_EQ(fit.Fit_Peak_Index.size(), 20u);
  EXPECT_TRUE(fit.Too_Many);
}

}  // namespace
}  // namespace tevo::deconvolution
