// The least-squares fit of the line separation: the lines inside the
// calculation range (at most 20, four parameters each: position ppm, width
// Hz, height, Gaussian share) fitted to the spectrum points of the range by
// the relaxation fit's simplex, with the factor 1/sqrt(2) in double.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "deconvolution/line_model.h"
#include "relaxation/simplex.h"

namespace tevo::deconvolution {

inline constexpr int32_t Fit_Peak_Max = 20;

struct Line_Fit {
  std::vector<int32_t> Fit_Peak_Index;  // index in the peak arrays of each fitted line
  std::vector<float> Start, Step, Tol;  // 4 per line
  std::vector<int16_t> Fix;  // 4 per line, nonzero: held
  std::vector<float> Fit_X, Fit_Y;  // ppm and spectrum of the range
  relaxation::Simplex_State State;
  relaxation::Simplex_Step Outcome = relaxation::Simplex_Step::Go_On;
  bool Too_Many = false;  // lines beyond the 20th were left out (the window beeps)
};

// Takes the lines whose ppm lies within [ppm_a, ppm_b] (either order, ends
// included), in index order, at most 20, with their values as start values
// and `step`/`tol` (position, width, height, share) for each.
void Select_Fit_Peaks(Line_Fit& fit, const Sim_Peaks& peaks, float axis0, double ppm_a, double ppm_b,
                      const std::array<float, 4>& step, const std::array<float, 4>& tol);

// Sum of squared differences of the model and Fit_Y over the range in
// ascending order, each step rounded to float.
float Line_Criterion(std::span<const float> trial, std::span<const float> x, std::span<const float> y, double f);

// Runs the fit at reference frequency f (MHz); `go_on` is called after each
// iteration (progress, every 100th the repaint, the stop request). With
// fewer than two points nothing runs.
void Run_Line_Fit(Line_Fit& fit, double f, const std::function<bool(const relaxation::Simplex_State&)>& go_on = {});

// Runs the fit again and again from where the last run stopped, as the
// operator presses 計算開始 once more, until a run lowers the criterion by
// less than 1 % (at most `runs` runs of at most `iterations` each): the
// simplex can collapse in a flat valley short of the minimum, and a fresh
// one around that point goes on from there. The result is the last trial.
void Run_Line_Fit_Until_Still(Line_Fit& fit, double f, int32_t runs, int32_t iterations);

// The last trial point back into the peak arrays (position as offset, width
// as its magnitude), then sorted.
void Store_Fit(const Line_Fit& fit, Sim_Peaks& peaks, float axis0, bool descending);

// The model over the range and the residual (model - spectrum) * 100 / the
// largest spectrum value (counted from 1e-5, then 0.0001 as the floor of
// the residual's scale): `limit` is the residual plot's symmetric limit.
struct Residual {
  std::vector<float> model, residual;
  float limit = 0.0001f;
};
Residual Calc_Residual(std::span<const float> trial, std::span<const float> x, std::span<const float> y, double f);

}  // namespace tevo::deconvolution
