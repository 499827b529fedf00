// The simplex against steps worked by hand, and the T1/T2 fit against
// series built from known relaxation times.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "relaxation/relaxation_fit.h"
#include "relaxation/simplex.h"

namespace tevo::relaxation {
namespace {

TEST(Simplex, FirstStepsWorkedByHand) {
  // f = (x-1)^2 + (y-2)^2 + (z-3)^2 from (0,0,0), steps 1: the offset d is
  // (sqrt(4)-1)/sqrt(2)/3 = 0.235702, the diagonal 0.707107 + d = 0.942809.
  const Criterion_Fn f = [](std::span<const float> x) {
    return static_cast<float>((x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + (x[2] - 3) * (x[2] - 3));
  };
  Simplex_State st;
  const std::vector<float> start{0, 0, 0}, step{1, 1, 1}, tol{1e-4f, 1e-4f, 1e-4f};
  const std::vector<int16_t> fix{0, 0, 0};
  ASSERT_EQ(Simplex_Begin(st, start, step, tol, fix, Root_Half::Float, f), Simplex_Step::Go_On);
  EXPECT_NEAR(st.Simplex[0][1], 0.942809f, 1e-6);
  EXPECT_NEAR(st.Simplex[1][1], 0.235702f, 1e-6);
  const std::vector<float> errors{14.0f, 10.757361f, 9.343147f, 7.928933f};
  for (int v = 0; v < 4; ++v) EXPECT_NEAR(st.Vertex_Error[v], errors[v], 2e-5) << v;
  EXPECT_EQ(st.High, 0);
  EXPECT_EQ(st.Low, 3);

  // Iteration 1: the reflection (0.942809 each, error 5.352959) beats the
  // best, so it takes vertex 0 and the expansion to 1.414214 each (error
  // 3.029438) replaces it.
  ASSERT_EQ(Simplex_Iterate(st, f), Simplex_Step::Go_On);
  for (int p = 0; p < 3; ++p) EXPECT_NEAR(st.Simplex[p][0], 1.414214f, 2e-6);
  EXPECT_NEAR(st.Vertex_Error[0], 3.029438f, 2e-5);
  EXPECT_EQ(st.High, 1);
  EXPECT_EQ(st.Low, 0);
  // Iteration 2: vertex 1 reflects to (0.314270, 1.492781, 1.492781),
  // error 2.999206, better than the best again; the expansion lands on
  // (0, 2.121320, 2.121320) with error 1 + 0.014719 + 0.772078 = 1.786797.
  ASSERT_EQ(Simplex_Iterate(st, f), Simplex_Step::Go_On);
  EXPECT_NEAR(st.Simplex[0][1], 0.0f, 2e-6);
  EXPECT_NEAR(st.Simplex[1][1], 2.121320f, 2e-6);
  EXPECT_NEAR(st.Vertex_Error[1], 1.786797f, 2e-5);
  EXPECT_EQ(st.Low, 1);
  EXPECT_EQ(st.Iterations, 2);

  // Ties keep the lower index for both ends.
  st.Vertex_Error = {2, 1, 2, 1};
  Find_Hl(st);
  EXPECT_EQ(st.High, 0);
  EXPECT_EQ(st.Low, 1);
}

struct Series {
  std::vector<float> t, y;
};

// Intensities a0 exp(-t/T) + b at delays doubling from 10 ms, plus noise
// of standard deviation sigma, normalised by the largest magnitude.
Series Build(double a0, double b, double T, double sigma, unsigned seed) {
  Series s;
  std::mt19937 gen(seed);
  std::normal_distribution<double> noise(0.0, sigma);
  double big = 0;
  for (double t = 0.01; t < 20; t *= 1.6) {
    s.t.push_back(static_cast<float>(t));
    const double y = a0 * std::exp(-t / T) + b + (sigma > 0 ? noise(gen) : 0.0);
    s.y.push_back(static_cast<float>(y));
    big = std::max(big, std::fabs(y));
  }
  for (float& y : s.y) y = static_cast<float>(y / big);
  return s;
}

// The series over its whole range with the window's start values.
Relax_Fit Prepared(const Series& s) {
  Relax_Fit fit;
  fit.Data_T = s.t;
  fit.Data_Y = s.y;
  fit.Last_Point = static_cast<int32_t>(s.t.size()) - 1;
  const Relax_Start start = Relax_Start_Values(s.t, s.y, 1.0f);
  fit.Start_Value = start.value;
  fit.Step_Value = start.step;
  fit.Tol_Value = start.tol;
  return fit;
}

Relax_Fit Fit(const Series& s) {
  Relax_Fit fit = Prepared(s);
  Run_Relax_Fit(fit, [](const Simplex_State& st) { return st.Iterations < 100000; });
  return fit;
}

// Standard error of k for noise sigma on the normalised intensities, from
// the Jacobian of the model at the true parameters: sqrt of the k entry of
// sigma^2 (J'J)^-1.
double K_Spread(const Series& s, double a0, double k, double sigma) {
  double m[3][3] = {};
  for (float t : s.t) {
    const double e = std::exp(-k * t), g[3] = {e, -a0 * t * e, 1.0};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) m[i][j] += g[i] * g[j];
  }
  const double det = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                     m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                     m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  return sigma * std::sqrt((m[0][0] * m[2][2] - m[0][2] * m[2][0]) / det);
}

TEST(RelaxationFit, KnownRelaxationTimesComeBack) {
  struct Case {
    const char* kind;
    double a0, b, T;
  };
  for (const Case& c : {Case{"inversion recovery", -2, 1, 1.3}, Case{"saturation recovery", -1, 1, 0.45},
                        Case{"T2 decay", 1, 0, 2.2}}) {
    SCOPED_TRACE(c.kind);
    const Relax_Fit clean = Fit(Build(c.a0, c.b, c.T, 0, 1));
    ASSERT_EQ(clean.Outcome, Simplex_Step::Converged);
    EXPECT_NEAR(1.0 / clean.State.Trial[Relax_K], c.T, 0.01 * c.T);
    EXPECT_LT(clean.Final_Criterion, 1e-6f);
    // With 1 % noise on the raw intensities k stays within four standard
    // errors of the true value.
    const double sigma = 0.01;
    const Series noisy = Build(c.a0, c.b, c.T, sigma, 7);
    const Relax_Fit fit = Fit(noisy);
    // (Every series here has its largest magnitude near 1, so the
    // normalisation leaves sigma as it is.)
    const double spread = K_Spread(noisy, c.a0, 1 / c.T, sigma);
    EXPECT_NEAR(fit.State.Trial[Relax_K], 1 / c.T, 4 * spread);
  }
}

TEST(RelaxationFit, FixedParametersStopRequestAndArithmeticError) {
  const Series s = Build(-2, 1, 1.3, 0, 1);
  Relax_Fit fit = Prepared(s);
  const auto start_values = fit.Start_Value;

  // k held at a wrong value stays there to the bit; the others move.
  fit.Start_Value[Relax_K] = 0.5f;
  fit.Fix_Flag = {0, 1, 0};
  Run_Relax_Fit(fit, [](const Simplex_State& st) { return st.Iterations < 100000; });
  for (float k : fit.State.Simplex[Relax_K]) EXPECT_EQ(k, 0.5f);
  EXPECT_NE(fit.State.Simplex[Relax_B][0], fit.Start_Value[Relax_B]);

  // All three held: the simplex is one point and the first test passes.
  fit.Fix_Flag = {1, 1, 1};
  Run_Relax_Fit(fit);
  EXPECT_EQ(fit.Outcome, Simplex_Step::Converged);
  EXPECT_EQ(fit.State.Iterations, 1);

  // A stop request ends the loop after the iteration that polled it.
  fit.Fix_Flag = {0, 0, 0};
  fit.Start_Value = start_values;
  Run_Relax_Fit(fit, [](const Simplex_State& st) { return st.Iterations < 5; });
  EXPECT_EQ(fit.State.Iterations, 5);
  EXPECT_EQ(fit.Fit_Curve_T.size(), static_cast<size_t>(Curve_Steps + 1));
  EXPECT_FLOAT_EQ(fit.Fit_Curve_T.back(), s.t.back());

  // A k that makes the exponential overflow ends the fit as an error.
  fit.Start_Value[Relax_K] = -1000;
  Run_Relax_Fit(fit);
  EXPECT_EQ(fit.Outcome, Simplex_Step::Arithmetic_Error);
  EXPECT_EQ(Fit_Error_Text(70000), "繰り返し4464でエラ－");
  EXPECT_EQ(Relax_T_Text(0), "***");
  EXPECT_EQ(Relax_T_Text(0.8f), "1.25");

  // The point nearest a clicked delay; halfway takes the earlier one.
  const std::vector<float> t = {0.1f, 0.5f, 1.5f, 4.0f};
  EXPECT_EQ(Nearest_Point(t, -3.0f), 0);
  EXPECT_EQ(Nearest_Point(t, 1.0f), 1);
  EXPECT_EQ(Nearest_Point(t, 2.9f), 3);
  EXPECT_EQ(Nearest_Point({}, 1.0f), -1);
}

}  // namespace
}  // namespace tevo::relaxation
