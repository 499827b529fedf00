// The line separation's fit, the loop the window runs until it converges:
// overlapping lines over a range of spectrum points, each criterion
// evaluating every line at every point. 4 and 20 lines (the most the fit
// takes) over 1024 points, from start values displaced by a fifth of a
// width; the counter gives the iterations to convergence.
#include <benchmark/benchmark.h>

#include <vector>

#include "deconvolution/line_fit.h"

namespace {

using namespace tevo::deconvolution;

void BM_Line_Fit(benchmark::State& state) {
  const auto lines = static_cast<int>(state.range(0));
  constexpr double f = 400;  // MHz
  constexpr int points = 1024;
  // Lines 3 Hz apart, 1.2 Hz wide, heights alternating, over 0.25 Hz points.
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

}  // namespace
