#include "deconvolution/line_edit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "editing/integrals.h"
#include "session/messages.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::deconvolution {

namespace {
std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }

// The ppm of Spec_Re point `point`, clamped into the axis.
double Ppm_Of(const Session& s, int32_t point) {
  if (s.Spec_Axis.empty()) return 0;
  return s.Spec_Axis[Z(std::clamp<int32_t>(point, 0, static_cast<int32_t>(s.Spec_Axis.size()) - 1))];
}

float Setting_Or(const Session& s, const char* key, float fallback) {
  const auto v = static_cast<float>(s.settings.Real(key));
  return v > 0 ? v : fallback;
}

// A step or tolerance of the fit as the settings hold it; one never set
// (0, as a settings file of an earlier version stores it) is the key's
// default, since a zero step would leave its parameter where it started.
float Fit_Setting(const Session& s, const char* key) {
  static const session::Settings defaults;
  return Setting_Or(s, key, static_cast<float>(defaults.Real(key)));
}
}  // namespace

float Sim_Axis0(const Session& s) { return s.Spec_Axis.empty() ? 0.0f : s.Spec_Axis[0]; }

float Sim_Spectrum_Value(const Session& s, int32_t point) {
  if (point < 0 || point >= s.Spec_Points || s.Spec_Re.Empty()) return 0;
  const auto row = static_cast<std::size_t>(std::clamp<int32_t>(s.Array_Row, 0, std::max(0, s.Array_Rows - 1)));
  return s.Spec_Re(Z(point), row) / (s.Max_Abs > 0 ? s.Max_Abs : 1.0f);
}

void Sim_Open(const Session& s, Sim_State& st) {
  st = Sim_State{};
  st.Range_Left_Ppm = s.X_Left;
  st.Range_Right_Ppm = s.X_Right;
  st.Descending = s.X_Left >= s.X_Right;
  const int32_t a = editing::Spec_Point_Of_Ppm(s, s.X_Left), b = editing::Spec_Point_Of_Ppm(s, s.X_Right);
  st.Range_First = std::min(a, b);
  st.Range_Last = std::max(a, b);
  st.Default_Width = Setting_Or(s, "SIM DEFAULT WID", 1.0f);
  st.Default_Gauss = static_cast<float>(s.settings.Real("SIM DEFAULT FUNC"));
}

bool Sim_Add_Peak(const Session& s, Sim_State& st, double ppm) {
  if (st.Peaks.Sim_Peak_Count >= Sim_Peak_Max) return false;
  const float height = Sim_Spectrum_Value(s, editing::Spec_Point_Of_Ppm(s, ppm));
  Sim_Push(st, 3);
  return Add_Sim_Peak(st.Peaks, static_cast<float>(ppm), Sim_Axis0(s), height, st.Default_Width, st.Default_Gauss,
                      st.Descending);
}

bool Sim_Delete_Near(const Session& s, Sim_State& st, double ppm, double reach) {
  const float axis0 = Sim_Axis0(s);
  for (int32_t k = 0; k < st.Peaks.Sim_Peak_Count; ++k)
    if (std::fabs(st.Peaks.Peak_Pos[Z(k)] + axis0 - ppm) < reach) {
      Sim_Push(st, 2);
      Delete_Sim_Peak(st.Peaks, k);
      return true;
    }
  return false;
}

bool Sim_Delete_All(Session& s, Sim_State& st) {
  if (st.Peaks.Sim_Peak_Count <= 0) return false;
  if (Show_Message(s, "全ピークを削除しますか？", Style_Yes_No | Icon_Question, "Delete All Peak") != Msg_Yes)
    return false;
  Sim_Push(st, 1);
  st.Peaks.Sim_Peak_Count = 0;
  return true;
}

void Sim_Set_Range_Edge(const Session& s, Sim_State& st, double ppm, bool right_edge, bool keep_undo) {
  // The edge drawn on the right is the lower ppm, the lower index, when the
  // view runs from high to low ppm.
  const bool first = right_edge == st.Descending;
  if (keep_undo) Sim_Push(st, right_edge ? 201 : 202);
  (first ? st.Range_First : st.Range_Last) = editing::Spec_Point_Of_Ppm(s, ppm);
  if (st.Range_First > st.Range_Last) std::swap(st.Range_First, st.Range_Last);
}

void Sim_Push(Sim_State& st, uint16_t code) {
  Sim_Undo_Push(st.Undo, code, st.Peaks);
  std::move_backward(st.Undo_Range.begin(), st.Undo_Range.end() - 1, st.Undo_Range.end());
  st.Undo_Range[0] = {st.Range_First, st.Range_Last};
}

bool Sim_Undo(Sim_State& st) {
  const std::array<int32_t, 2> range = st.Undo_Range[0];
  if (!Sim_Undo_Pop(st.Undo, st.Peaks)) return false;
  std::move(st.Undo_Range.begin() + 1, st.Undo_Range.end(), st.Undo_Range.begin());
  st.Range_First = range[0];
  st.Range_Last = range[1];
  return true;
}

bool Sim_Step_Peak(const Session& s, Sim_State& st, int32_t k, Sim_Step_Kind kind) {
  if (k < 0 || k >= st.Peaks.Sim_Peak_Count) return false;
  const std::size_t i = Z(k);
  const auto scale = [](float& v, float factor, float lo, float hi) {
    const float was = v;
    v = std::clamp(v * factor, lo, hi);
    return v != was;
  };
  switch (kind) {
    case Sim_Step_Kind::Move_Left:
    case Sim_Step_Kind::Move_Right: {
      const double f = s.Spectrum_Frequency > 0 ? s.Spectrum_Frequency : 1.0;
      const double hz_per_point = s.Spec_Axis.size() > 1 ? std::fabs(s.Spec_Axis[1] - s.Spec_Axis[0]) * f : 0.0;
      const double step = std::max(hz_per_point * 0.1 / f, 0.002 * std::fabs(st.Range_Left_Ppm - st.Range_Right_Ppm));
      // The plot's left end is its higher ppm when it runs high to low.
      const bool up = (kind == Sim_Step_Kind::Move_Left) == st.Descending;
      st.Peaks.Peak_Pos[i] = static_cast<float>(st.Peaks.Peak_Pos[i] + (up ? step : -step));
      return true;
    }
    case Sim_Step_Kind::Width_Inc: return scale(st.Peaks.Peak_Width[i], 1.05f, 1e-4f, 10000.0f);
    case Sim_Step_Kind::Width_Dec: return scale(st.Peaks.Peak_Width[i], 1 / 1.05f, 1e-4f, 10000.0f);
    case Sim_Step_Kind::Height_Inc: return scale(st.Peaks.Peak_Height[i], 1.05f, -1.0f, 1.0f);
    case Sim_Step_Kind::Height_Dec: {
      float& h = st.Peaks.Peak_Height[i];
      const float was = h;
      h = std::fabs(h / 1.05f) < 1e-4f ? h : h / 1.05f;
      return h != was;
    }
    case Sim_Step_Kind::Gauss_Inc:
    case Sim_Step_Kind::Gauss_Dec: {
      float& g = st.Peaks.Peak_Gauss[i];
      const float was = g;
      g = std::clamp(g + (kind == Sim_Step_Kind::Gauss_Inc ? 0.02f : -0.02f), 0.0f, 1.0f);
      return g != was;
    }
  }
  return false;
}

std::string Sim_Range_Text(const Session& s, const Sim_State& st, bool start) {
  const int32_t point = start == st.Descending ? st.Range_Last : st.Range_First;
  return (start ? "Start=" : "End=") + Format_Number(Ppm_Of(s, point), "####0.0###") + " ppm";
}

std::vector<float> Sim_Trial(const Session& s, const Sim_Peaks& peaks) {
  std::vector<float> trial;
  const float axis0 = Sim_Axis0(s);
  for (int32_t k = 0; k < peaks.Sim_Peak_Count; ++k)
    for (float v : {peaks.Peak_Pos[Z(k)] + axis0, peaks.Peak_Width[Z(k)], peaks.Peak_Height[Z(k)], peaks.Peak_Gauss[Z(k)]})
      trial.push_back(v);
  return trial;
}

Sim_Curve Calc_Simulation(const Session& s, const Sim_State& st, double left, double right, int32_t limit) {
  Sim_Curve c;
  const double f = s.Spectrum_Frequency;
  const std::vector<float> trial = Sim_Trial(s, st.Peaks);
  const double hz_per_point = s.Spec_Axis.size() > 1 ? std::fabs(s.Spec_Axis[1] - s.Spec_Axis[0]) * f : 0.0;
  const double in_view = hz_per_point > 0 ? std::fabs(right - left) * f / hz_per_point : 0.0;
  if (in_view <= limit && limit > 1) {
    for (int32_t j = 0; j < limit; ++j) c.x.push_back(static_cast<float>(left + (right - left) * j / (limit - 1)));
  } else {
    const int32_t a = editing::Spec_Point_Of_Ppm(s, left), b = editing::Spec_Point_Of_Ppm(s, right);
    for (int32_t p = std::min(a, b); p <= std::max(a, b); ++p) c.x.push_back(static_cast<float>(Ppm_Of(s, p)));
  }
  for (float x : c.x) c.y.push_back(static_cast<float>(Line_Value(trial, x, f)));
  std::vector<float> y;
  for (int32_t p = st.Range_First; p <= st.Range_Last && p < s.Spec_Points; ++p) {
    c.range_x.push_back(static_cast<float>(Ppm_Of(s, p)));
    y.push_back(Sim_Spectrum_Value(s, p));
  }
  Residual r = Calc_Residual(trial, c.range_x, y, f);
  c.residual = std::move(r.residual);
  c.limit = r.limit;
  return c;
}

std::array<float, 4> Sim_Fit_Steps(const Session& s) {
  return {Fit_Setting(s, "SIM HENDOU POS"), Fit_Setting(s, "SIM HENDOU WIDTH"), Fit_Setting(s, "SIM HENDOU HEIGH"),
          Fit_Setting(s, "SIM HENDOU FUNC")};
}

std::array<float, 4> Sim_Fit_Tols(const Session& s) {
  return {Fit_Setting(s, "SIM CRITIC POS"), Fit_Setting(s, "SIM CRITIC WIDTH"), Fit_Setting(s, "SIM CRITIC HEIGH"),
          Fit_Setting(s, "SIM CRITIC FUNC")};
}

void Sim_Prepare_Fit(const Session& s, const Sim_State& st, Line_Fit& fit) {
  Select_Fit_Peaks(fit, st.Peaks, Sim_Axis0(s), Ppm_Of(s, st.Range_First), Ppm_Of(s, st.Range_Last), Sim_Fit_Steps(s),
                   Sim_Fit_Tols(s));
  for (int32_t p = st.Range_First; p <= st.Range_Last && p < s.Spec_Points; ++p) {
    fit.Fit_X.push_back(static_cast<float>(Ppm_Of(s, p)));
    fit.Fit_Y.push_back(Sim_Spectrum_Value(s, p));
  }
}

}  // namespace tevo::deconvolution
