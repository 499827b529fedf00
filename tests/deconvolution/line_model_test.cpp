// The line model against its defining properties and integrals done
// numerically, the window's undo list, and the fit on overlapping lines
// built with known parameters.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

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

// Fits `start` (4 values per line, shares held) to the points, started
// again until the criterion stops falling.
std::vector<float> Fit_Held_Shares(const std::vector<float>& start, const std::vector<float>& x,
                                   const std::vector<float>& y, double f) {
  Line_Fit fit;
  fit.Fit_X = x;
  fit.Fit_Y = y;
  fit.Start = start;
  const float step[4] = {0.5f / static_cast<float>(f), 0.5f, 0.1f, 0.1f}, tol[4] = {1e-6f, 1e-4f, 1e-5f, 1e-4f};
  for (std::size_t i = 0; i < start.size(); ++i) {
    fit.Step.push_back(step[i % 4]);
    fit.Tol.push_back(tol[i % 4]);
    fit.Fix.push_back(i % 4 == 3 ? 1 : 0);
  }
  Run_Line_Fit_Until_Still(fit, f, 100, 200000);
  EXPECT_EQ(fit.Outcome, relaxation::Simplex_Step::Converged);
  return fit.State.Trial;
}

// The covariance sigma^2 (J^T J)^-1 of the least-squares positions, widths
// and heights at `p` (4 values per line, shares held), J the model's
// derivatives by central differences, inverted by Gauss-Jordan with
// pivoting; 3 rows per line.
std::vector<std::vector<double>> Covariance(const std::vector<float>& p, const std::vector<float>& x, double f,
                                            double sigma) {
  const std::size_t n = p.size() / 4 * 3;
  std::vector<std::vector<double>> jac(n, std::vector<double>(x.size()));
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t i = k / 3 * 4 + k % 3;
    const double h = i % 4 == 0 ? 1e-3 / f : 1e-3;
    std::vector<float> up = p, down = p;
    up[i] = static_cast<float>(p[i] + h);
    down[i] = static_cast<float>(p[i] - h);
    const double dh = static_cast<double>(up[i]) - down[i];
    for (std::size_t j = 0; j < x.size(); ++j) jac[k][j] = (Line_Value(up, x[j], f) - Line_Value(down, x[j], f)) / dh;
  }
  std::vector<std::vector<double>> a(n, std::vector<double>(2 * n, 0.0));
  for (std::size_t r = 0; r < n; ++r) {
    for (std::size_t c = 0; c < n; ++c)
      for (std::size_t j = 0; j < x.size(); ++j) a[r][c] += jac[r][j] * jac[c][j];
    a[r][n + r] = 1;
  }
  for (std::size_t c = 0; c < n; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c + 1; r < n; ++r)
      if (std::fabs(a[r][c]) > std::fabs(a[pivot][c])) pivot = r;
    std::swap(a[c], a[pivot]);
    const double d = a[c][c];
    for (double& v : a[c]) v /= d;
    for (std::size_t r = 0; r < n; ++r) {
      if (r == c) continue;
      const double m = a[r][c];
      for (std::size_t k = 0; k < 2 * n; ++k) a[r][k] -= m * a[c][k];
    }
  }
  std::vector<std::vector<double>> cov(n, std::vector<double>(n));
  for (std::size_t r = 0; r < n; ++r)
    for (std::size_t c = 0; c < n; ++c) cov[r][c] = sigma * sigma * a[r][n + c];
  return cov;
}

// The exact area of a line (half the integral over Hz) from its parameters.
double Area(const float* q) { return (M_PI / 2 - q[3] * (M_PI / 2 - std::sqrt(M_PI / std::log(16.0)))) * q[2] * q[1]; }

TEST(LineFit, OverlappingLinesComeBackFromDisplacedStartValues) {
  // Two, three and five lines 3 Hz apart at 400 MHz, half widths 1.0 to
  // 1.4 Hz so that each overlaps its neighbours, over points 0.2 Hz apart;
  // fitted from positions half a width off, widths 30 % and heights 20 %
  // too large, the shares held at their values (left free, the simplex
  // crawls along the valley where share and width trade off and stops
  // short of the minimum).
  const double f = 400;
  std::mt19937 random(7);
  for (int lines : {2, 3, 5}) {
    SCOPED_TRACE(lines);
    std::vector<float> truth, start;
    for (int q = 0; q < lines; ++q) {
      const float ppm = static_cast<float>(1.0 + 3.0 * q / f), w = 1.0f + 0.1f * static_cast<float>(q % 5);
      const float h = 1.0f - 0.15f * static_cast<float>(q), g = 0.2f + 0.15f * static_cast<float>(q % 4);
      truth.insert(truth.end(), {ppm, w, h, g});
      const float side = q % 2 ? -0.5f : 0.5f;
      start.insert(start.end(), {ppm + side * w / static_cast<float>(f), 1.3f * w, 1.2f * h, g});
    }
    std::vector<float> x, y, noisy;
    const double sigma = 0.01;  // of the tallest line
    std::normal_distribution<double> noise(0, sigma);
    for (double hz = -12; hz <= 3.0 * (lines - 1) + 12; hz += 0.2) {
      x.push_back(static_cast<float>(1.0 + hz / f));
      y.push_back(static_cast<float>(Line_Value(truth, x.back(), f)));
      noisy.push_back(static_cast<float>(y.back() + noise(random)));
    }
    const std::vector<float> clean = Fit_Held_Shares(start, x, y, f);
    const std::vector<float> fitted = Fit_Held_Shares(start, x, noisy, f);
    const auto cov = Covariance(truth, x, f, sigma);
    for (std::size_t q = 0; q < truth.size(); q += 4) {
      SCOPED_TRACE(q / 4);
      EXPECT_NEAR(clean[q] * f, truth[q] * f, 0.1);
      EXPECT_NEAR(Area(&clean[q]), Area(&truth[q]), 0.01 * Area(&truth[q]));
      // With noise: within four standard errors of the truth.
      const std::size_t c = q / 4 * 3;  // the line's rows in the covariance
      EXPECT_NEAR(fitted[q] * f, truth[q] * f, 4 * std::sqrt(cov[c][c]) * f);
      // The area's variance through its gradient in width and height.
      const double grad[2] = {Area(&truth[q]) / truth[q + 1], Area(&truth[q]) / truth[q + 2]};
      double var = 0;
      for (int a = 0; a < 2; ++a)
        for (int b = 0; b < 2; ++b) var += grad[a] * grad[b] * cov[c + 1 + a][c + 1 + b];
      EXPECT_NEAR(Area(&fitted[q]), Area(&truth[q]), 4 * std::sqrt(var));
    }
  }

  // Two lines and a third outside the range: held shares, Store_Fit, the
  // residual.
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
  EXPECT_NEAR(fit.State.Trial[4], truth[4], 2e-5);
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
