#include "relaxation/relaxation_fit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "display/view_commands.h"
#include "relaxation/array_data.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::relaxation {

namespace {
std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }
}  // namespace

Relax_Start Relax_Start_Values(std::span<const float> t, std::span<const float> y, float previous_k) {
  Relax_Start s;
  const auto n = static_cast<int32_t>(y.size());
  const float b = y[Z(n - 1)];
  s.value[Relax_B] = b;
  s.value[Relax_A0] = y[0] - b;
  // The first and the last pair are left out: the first is often distorted
  // by the pulse, the last lies in the noise about B.
  double sum = 0;
  int32_t count = 0;
  for (int32_t j = 1; j <= n - 3; ++j) {
    const double dy = y[Z(j)] - y[Z(j + 1)];
    const double m = (y[Z(j)] + y[Z(j + 1)]) * 0.5 - b;
    const double dt = t[Z(j + 1)] - t[Z(j)];
    if (dt != 0 && m != 0) {
      sum += dy / dt / m;
      ++count;
    }
  }
  s.value[Relax_K] = count > 0 ? static_cast<float>(sum / count) : previous_k;
  for (int32_t p : {Relax_B, Relax_A0, Relax_K}) {
    s.step[Z(p)] = std::fabs(s.value[Z(p)]) * 0.1f;
    s.tol[Z(p)] = std::fabs(s.value[Z(p)]) * 0.0001f;
  }
  return s;
}

double Relax_Model(std::span<const float> trial, double t) {
  return trial[Relax_A0] * std::exp(-static_cast<double>(trial[Relax_K]) * t) + trial[Relax_B];
}

float Relax_Criterion(std::span<const float> trial, std::span<const float> t, std::span<const float> y) {
  float acc = 0;
  for (std::size_t j = 0; j < y.size(); ++j) {
    const double d = Relax_Model(trial, t[j]) - y[j];
    acc = static_cast<float>(acc + d * d);
  }
  return acc;
}

void Calc_Curve(Relax_Fit& fit) {
  fit.Fit_Curve_T.assign(Z(Curve_Steps + 1), 0.0f);
  fit.Fit_Curve_Y.assign(Z(Curve_Steps + 1), 0.0f);
  if (fit.Last_Point < fit.First_Point || fit.State.Trial.size() < Relax_Param_Count) return;
  const double t0 = fit.Data_T[Z(fit.First_Point)], t1 = fit.Data_T[Z(fit.Last_Point)];
  for (int32_t i = 0; i <= Curve_Steps; ++i) {
    const double t = t0 + (t1 - t0) * i / Curve_Steps;
    fit.Fit_Curve_T[Z(i)] = static_cast<float>(t);
    fit.Fit_Curve_Y[Z(i)] = static_cast<float>(Relax_Model(fit.State.Trial, t));
  }
}

void Run_Relax_Fit(Relax_Fit& fit, const std::function<bool(const Simplex_State&)>& go_on) {
  fit.Outcome = Simplex_Step::Go_On;
  const int32_t n = fit.Last_Point - fit.First_Point + 1;
  if (n < 2) {
    fit.State.Trial.assign(fit.Start_Value.begin(), fit.Start_Value.end());
    Calc_Curve(fit);
    return;
  }
  const std::span<const float> t(fit.Data_T.data() + fit.First_Point, Z(n));
  const std::span<const float> y(fit.Data_Y.data() + fit.First_Point, Z(n));
  const Criterion_Fn criterion = [&](std::span<const float> trial) { return Relax_Criterion(trial, t, y); };
  fit.Outcome = Simplex_Begin(fit.State, fit.Start_Value, fit.Step_Value, fit.Tol_Value, fit.Fix_Flag,
                              Root_Half::Float, criterion);
  if (fit.Outcome != Simplex_Step::Arithmetic_Error) fit.Outcome = Simplex_Run(fit.State, criterion, go_on);
  Calc_Curve(fit);
  fit.Final_Criterion = fit.State.Vertex_Error[Z(fit.State.Low)];
}

Fit_Data_Status Select_Fit_Data(Session& s, int32_t selection, int32_t region_first, int32_t region_last,
                                bool first_entry, float previous_k, Relax_Fit& fit) {
  s.Array_Selection = static_cast<int16_t>(selection);
  s.Intensity_Pairs =
      Extract_Intensities(s, selection, region_first, region_last, first_entry ? 0.1f : 1e-28f, !first_entry);
  const std::vector<Intensity_Pair>& pairs = s.Intensity_Pairs;
  fit.Data_T.clear();
  fit.Data_Y.clear();
  for (const Intensity_Pair& p : pairs) {
    fit.Data_T.push_back(p.t);
    fit.Data_Y.push_back(p.y);
  }
  fit.Fit_Curve_T.clear();
  fit.Fit_Curve_Y.clear();
  fit.State = {};
  if (s.Array_Rows < 3 || pairs.size() < 3) return Fit_Data_Status::Too_Few_Rows;
  const auto [t_lo, t_hi] = std::minmax_element(fit.Data_T.begin(), fit.Data_T.end());
  const auto [y_lo, y_hi] = std::minmax_element(fit.Data_Y.begin(), fit.Data_Y.end());
  if (*t_lo == *t_hi || *y_lo == *y_hi) return Fit_Data_Status::All_Alike;
  const Relax_Start start = Relax_Start_Values(fit.Data_T, fit.Data_Y, previous_k);
  fit.Start_Value = start.value;
  fit.Step_Value = start.step;
  fit.Tol_Value = start.tol;
  fit.First_Point = 0;
  fit.Last_Point = static_cast<int32_t>(pairs.size()) - 1;
  return Fit_Data_Status::Ready;
}

Relax_Limits Series_Limits(const Relax_Fit& fit) {
  Relax_Limits l;
  l.X_Max = fit.Data_T.empty() ? 1 : fit.Data_T.back();
  l.Y_Max = 0;
  for (std::size_t j = 0; j < fit.Data_T.size() && j < fit.Data_Y.size(); ++j) {
    l.X_Min = std::min(l.X_Min, fit.Data_T[j]);
    l.X_Max = std::max(l.X_Max, fit.Data_T[j]);
    l.Y_Min = std::min(l.Y_Min, fit.Data_Y[j]);
    l.Y_Max = std::max(l.Y_Max, fit.Data_Y[j]);
  }
  if (l.X_Max <= l.X_Min) l.X_Max = l.X_Min + 1;
  if (l.Y_Max <= l.Y_Min) l.Y_Max = l.Y_Min + 1;
  return l;
}

void T1Cal_Form2_OK(Relax_Limits& limits, const std::string& x_min, const std::string& x_max,
                    const std::string& y_min, const std::string& y_max) {
  double a = 0, b = 0;
  if (display::Parse_Number(x_min, a) && display::Parse_Number(x_max, b) && a < b) {
    limits.X_Min = static_cast<float>(a);
    limits.X_Max = static_cast<float>(b);
  }
  if (display::Parse_Number(y_min, a) && display::Parse_Number(y_max, b)) {
    limits.Y_Min = static_cast<float>(a);
    limits.Y_Max = static_cast<float>(b);
  }
}

int32_t Nearest_Point(std::span<const float> t, float delay) {
  int32_t best = -1;
  for (std::size_t j = 0; j < t.size(); ++j)
    if (best < 0 || std::fabs(t[j] - delay) < std::fabs(t[Z(best)] - delay)) best = static_cast<int32_t>(j);
  return best;
}

bool Relax_Repaint_Due(int32_t iteration) { return static_cast<int16_t>(iteration) % 100 == 0; }

std::string Criterion_Text(float criterion) { return "Criterion=" + Format_Number(criterion, "#.#####E+##"); }

std::string Relax_T_Text(float k) { return k == 0 ? "***" : Format_Number(1.0 / k, "####0.0##"); }

std::string Fit_Error_Text(int32_t iteration) {
  return "繰り返し" + std::to_string(static_cast<int16_t>(iteration)) + "でエラ－";
}

}  // namespace tevo::relaxation
