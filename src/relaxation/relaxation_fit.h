// The T1/T2 fit: one exponential y(t) = A0 exp(-k t) + B through the
// normalised intensities of an array data set against their delays (t in s,
// k in 1/s). Inversion recovery, saturation recovery and T2 decay differ only
// in the sign of A0 and B. The fit is the simplex of simplex.h on three
// parameters; this file holds the model, its start values, the curve and the
// texts of the result.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "relaxation/simplex.h"

namespace tevo {
struct Session;
}

namespace tevo::relaxation {

enum Relax_Param { Relax_A0 = 0, Relax_K = 1, Relax_B = 2 };
inline constexpr int32_t Relax_Param_Count = 3;
inline constexpr int32_t Curve_Steps = 1000;

// Start value, step and tolerance of each parameter, in the order A0, k, B.
struct Relax_Start {
  std::array<float, Relax_Param_Count> value{}, step{}, tol{};
};

// Start values from points sorted by delay: B the last intensity, A0 the
// first less B, k the mean of dy / dt / (mean y - B) over the inner pairs
// 1..n-3 (`previous_k` when none counts); steps a tenth and tolerances
// 1e-4 of each value's magnitude. Needs n >= 2.
Relax_Start Relax_Start_Values(std::span<const float> t, std::span<const float> y, float previous_k);

// The model at delay t for the float parameters, the exponential in double.
double Relax_Model(std::span<const float> trial, double t);

// Sum of squared residuals over the points in ascending order, each term
// added to a float accumulator.
float Relax_Criterion(std::span<const float> trial, std::span<const float> t, std::span<const float> y);

// One fit of the window: its data, state and result.
struct Relax_Fit {
  std::vector<float> Data_T, Data_Y;  // sorted by delay, intensities normalised
  int32_t First_Point = 0, Last_Point = -1;  // range of the points in use, from 0
  std::array<float, Relax_Param_Count> Start_Value{}, Step_Value{}, Tol_Value{};
  std::array<int16_t, Relax_Param_Count> Fix_Flag{};
  Simplex_State State;
  std::vector<float> Fit_Curve_T, Fit_Curve_Y;
  float Final_Criterion = 0;
  Simplex_Step Outcome = Simplex_Step::Go_On;
};

// Runs the fit over First_Point..Last_Point from the start values; `go_on`
// is called after every iteration (progress, repaint, stop request). With
// fewer than two points the simplex is not run. Ends with the curve built
// from the last trial point and the best vertex's criterion.
void Run_Relax_Fit(Relax_Fit& fit, const std::function<bool(const Simplex_State&)>& go_on = {});

// What a new choice of the measured quantity leaves to fit.
enum class Fit_Data_Status {
  Ready,  // data, start values and the whole range are set
  Too_Few_Rows,  // fewer than three rows
  All_Alike,  // every delay or every intensity the same
};

// The data of a choice in Combo1: `selection` becomes Array_Selection, its
// intensities (0 the sum over region_first..region_last, counted from 1 and
// 0 when none; k the height of peak k) Intensity_Pairs and Data_T/Data_Y;
// the curve and the simplex are cleared. When the series can be fitted, the range becomes the whole series
// and Start_Value, Step_Value, Tol_Value take the start values (k from
// `previous_k` when no pair counts); Fix_Flag stays. `first_entry` extracts
// as the menu command does (largest magnitude from 0.1, equal delays kept in
// their order), otherwise as a new selection does.
Fit_Data_Status Select_Fit_Data(Session& s, int32_t selection, int32_t region_first, int32_t region_last,
                                bool first_entry, float previous_k, Relax_Fit& fit);

// The limits of the window's plot: delay in s, normalised intensity.
struct Relax_Limits {
  float X_Min = 0, X_Max = 1, Y_Min = 0, Y_Max = 1;
};

// The limits a series is shown with: delay from 0 to the last delay,
// intensity over the data, each widened to take in every point (and to a
// width of 1 when there is none).
Relax_Limits Series_Limits(const Relax_Fit& fit);

// T1Cal_Form2 on "OK": the delay pair is taken only when the lower is below
// the upper, the intensity pair as it is typed. A value that is not a number
// leaves its pair as it was.
void T1Cal_Form2_OK(Relax_Limits& limits, const std::string& x_min, const std::string& x_max,
                    const std::string& y_min, const std::string& y_max);

// The model from the trial point at Curve_Steps + 1 equally spaced delays
// from the first to the last point in use.
void Calc_Curve(Relax_Fit& fit);

// The point of the sorted delays `t` nearest `delay`, the earlier of two at
// the same distance; -1 when there are none.
int32_t Nearest_Point(std::span<const float> t, float delay);

// True on the iterations that repaint the window and write vertex 0 back to
// its fields: every 100th, counted on the low 16 bits.
bool Relax_Repaint_Due(int32_t iteration);

// "Criterion=" and the value in "#.#####E+##".
std::string Criterion_Text(float criterion);
// T = 1/k in "####0.0##", "***" when k is 0.
std::string Relax_T_Text(float k);
// The message of an arithmetic error inside the loop.
std::string Fit_Error_Text(int32_t iteration);

}  // namespace tevo::relaxation
