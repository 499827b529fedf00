// The line separation's fit, the loop the window runs until it converges:
// overlapping lines over a range of spectrum points, each criterion
// evaluating every line at every point. One simplex iteration with 20 lines
// (the most the fit takes) over 2000 points, and whole fits of 4 and 20
// lines over 2000 points from start values displaced by a fifth of a width;
// the counter gives the iterations to convergence.
#include <benchmark/benchmark.h>

#include <vector>

#include "deconvolution/line_fit.h"

namespace {

using namespace tevo::deconvolution;

constexpr double f = 400;  // MHz
constexpr int points = 2000;

// Lines 3 Hz apart, 1.2 Hz wide, heights alternating, over 2000 points
// spanning them and 20 Hz on either side.
Line_Fit Fit_Of(int lines) {
  std::vector<float> truth;
  for (int q = 0; q < lines; ++q)
    for (float v : {static_cast<float>(1.0 + 3.0 * q / f), 1.2f, q % 2 ? 0.6f : 1.0f, 0.2f}) truth.push_back(v);
  Line_Fit base;
  for (int j = 0; j < points; ++j) {
    const double x = 1.0 - 20 / f + (3.0 * lines + 40) / f * j / points;
    base.Fit_X.push_back(static_cast<float>(x));
    base.Fit_Y.push_back(static_cast<float>(Line_Value(truth, x, f)));
  }
  const float step[4] = {0.001f, 0.2f, 0.05f, 0.1f}, tol[4] = {1e-6f, 1e-4f, 1e-5f, 1e-4f};
  for (std::size_t i = 0; i < truth.size(); ++i) {
    base.Start.push_back(truth[i] + (i % 4 == 0 ? 0.25f / f : i % 4 == 1 ? 0.25f : 0.0f));
    base.Step.push_back(step[i % 4]);
    base.Tol.push_back(tol[i % 4]);
  }
  base.Fix.assign(truth.size(), 0);
  return base;
}

void BM_Line_Fit(benchmark::State& state) {
  const Line_Fit base = Fit_Of(static_cast<int>(state.range(0)));
  int32_t iterations = 0;
  for (auto _ : state) {
    Line_Fit fit = base;
    Run_Line_Fit(fit, f, [](const tevo::relaxation::Simplex_State& st) { return st.Iterations < 200000; });
    iterations = fit.State.Iterations;
    benchmark::DoNotOptimize(fit.State.Trial.data());
  }
  state.counters["iterations"] = iterations;
}
BENCHMARK(BM_Line_Fit)->Arg(4)->Arg(20)->Unit(benchmark::kMillisecond)->Iterations(1);

// One iteration of the 20-line fit: the loop between two chances for the
// window to answer its stop button.
void BM_Line_Fit_Iteration(benchmark::State& state) {
  Line_Fit fit = Fit_Of(20);
  Run_Line_Fit(fit, f, [](const tevo::relaxation::Simplex_State&) { return false; });
  const tevo::relaxation::Criterion_Fn criterion = [&](std::span<const float> trial) {
    return Line_Criterion(trial, fit.Fit_X, fit.Fit_Y, f);
  };
  for (auto _ : state) {
    tevo::relaxation::Simplex_Iterate(fit.State, criterion);
    benchmark::DoNotOptimize(fit.State.Trial.data());
  }
}
BENCHMARK(BM_Line_Fit_Iteration)->Unit(benchmark::kMicrosecond);

}  // namespace
