#include "deconvolution/line_fit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tevo::deconvolution {

namespace {
std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }
}  // namespace

void Select_Fit_Peaks(Line_Fit& fit, const Sim_Peaks& peaks, float axis0, double ppm_a, double ppm_b,
                      const std::array<float, 4>& step, const std::array<float, 4>& tol) {
  fit = Line_Fit{};
  const double lo = std::min(ppm_a, ppm_b), hi = std::max(ppm_a, ppm_b);
  for (int32_t k = 0; k < peaks.Sim_Peak_Count; ++k) {
    const double ppm = static_cast<double>(peaks.Peak_Pos[Z(k)]) + axis0;
    if (ppm < lo || ppm > hi) continue;
    if (static_cast<int32_t>(fit.Fit_Peak_Index.size()) == Fit_Peak_Max) {
      fit.Too_Many = true;
      break;
    }
    fit.Fit_Peak_Index.push_back(k);
    for (float v : {static_cast<float>(ppm), peaks.Peak_Width[Z(k)], peaks.Peak_Height[Z(k)], peaks.Peak_Gauss[Z(k)]})
      fit.Start.push_back(v);
    fit.Step.insert(fit.Step.end(), step.begin(), step.end());
    fit.Tol.insert(fit.Tol.end(), tol.begin(), tol.end());
    fit.Fix.insert(fit.Fix.end(), 4, 0);
  }
}

float Line_Criterion(std::span<const float> trial, std::span<const float> x, std::span<const float> y, double f) {
  float acc = 0;
  for (std::size_t j = 0; j < y.size(); ++j) {
    const double d = Line_Value(trial, x[j], f) - y[j];
    acc = static_cast<float>(acc + d * d);
  }
  return acc;
}

void Run_Line_Fit(Line_Fit& fit, double f, const std::function<bool(const relaxation::Simplex_State&)>& go_on) {
  fit.Outcome = relaxation::Simplex_Step::Go_On;
  fit.State.Trial = fit.Start;
  if (fit.Fit_X.size() < 2 || fit.Start.empty()) return;
  const relaxation::Criterion_Fn criterion = [&](std::span<const float> trial) {
    return Line_Criterion(trial, fit.Fit_X, fit.Fit_Y, f);
  };
  fit.Outcome = relaxation::Simplex_Begin(fit.State, fit.Start, fit.Step, fit.Tol, fit.Fix,
                                          relaxation::Root_Half::Double, criterion);
  if (fit.Outcome != relaxation::Simplex_Step::Arithmetic_Error)
    fit.Outcome = relaxation::Simplex_Run(fit.State, criterion, go_on);
}

void Run_Line_Fit_Until_Still(Line_Fit& fit, double f, int32_t runs, int32_t iterations) {
  float before = Line_Criterion(fit.Start, fit.Fit_X, fit.Fit_Y, f);
  for (int32_t run = 0; run < runs; ++run) {
    Run_Line_Fit(fit, f, [iterations](const relaxation::Simplex_State& st) { return st.Iterations < iterations; });
    if (fit.Outcome == relaxation::Simplex_Step::Arithmetic_Error) return;
    const float after = Line_Criterion(fit.State.Trial, fit.Fit_X, fit.Fit_Y, f);
    if (after > 0.99f * before || after < 1e-10f) return;
    before = after;
    fit.Start = fit.State.Trial;
  }
}

void Store_Fit(const Line_Fit& fit, Sim_Peaks& peaks, float axis0, bool descending) {
  const std::vector<float>& t = fit.State.Trial;
  for (std::size_t q = 0; q < fit.Fit_Peak_Index.size() && 4 * q + 3 < t.size(); ++q) {
    const std::size_t k = Z(fit.Fit_Peak_Index[q]);
    peaks.Peak_Pos[k] = t[4 * q] - axis0;
    peaks.Peak_Width[k] = std::fabs(t[4 * q + 1]);
    peaks.Peak_Height[k] = t[4 * q + 2];
    peaks.Peak_Gauss[k] = t[4 * q + 3];
  }
  Sort_Peaks(peaks, descending);
}

Residual Calc_Residual(std::span<const float> trial, std::span<const float> x, std::span<const float> y, double f) {
  Residual r;
  float largest = 1e-5f;
  for (std::size_t j = 0; j < y.size(); ++j) {
    r.model.push_back(static_cast<float>(Line_Value(trial, x[j], f)));
    r.residual.push_back(r.model.back() - y[j]);
    largest = std::max(largest, y[j]);
  }
  for (float& v : r.residual) {
    v = v / largest * 100.0f;
    r.limit = std::max(r.limit, std::fabs(v));
  }
  return r;
}

}  // namespace tevo::deconvolution
