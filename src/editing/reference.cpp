#include "editing/reference.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "editing/instrument_table.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

// Display factor: display points per spectrum point.
int32_t Disp_Factor(const Session& s) {
  return s.Spec_Points > 0 && s.Disp_Points > 0 ? std::max(s.Disp_Points / s.Spec_Points, 1) : 1;
}

// Positions of the view limits as fractional point indices on the axis as it
// stands, so that the same points can be kept in view after the axis moves.
struct View_Points {
  double left = 0, right = 0;
  bool ok = false;
};

View_Points Take_View_Points(const Session& s) {
  View_Points v;
  const int32_t n = s.Spec_Points;
  if (n < 2 || s.Spec_Axis.size() < static_cast<std::size_t>(n)) return v;
  const double a0 = s.Spec_Axis[0];
  const double step = (static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(n - 1)]) - a0) / (n - 1);
  if (step == 0) return v;
  v.left = (s.X_Left - a0) / step;
  v.right = (s.X_Right - a0) / step;
  v.ok = true;
  return v;
}

void Restore_View_Points(Session& s, const View_Points& v) {
  if (!v.ok) return;
  const int32_t n = s.Spec_Points;
  const double a0 = s.Spec_Axis[0];
  const double step = (static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(n - 1)]) - a0) / (n - 1);
  s.X_Left = static_cast<float>(a0 + v.left * step);
  s.X_Right = static_cast<float>(a0 + v.right * step);
  s.X_Left_Hz = static_cast<float>(s.X_Left * s.Spectrum_Frequency);
  s.X_Right_Hz = static_cast<float>(s.X_Right * s.Spectrum_Frequency);
}

// Rebuilds axis and display copy with the view kept on the same points.
void Rebuild_Keeping_View(Session& s, const View_Points& v, double origin) {
  const int32_t n = s.Spec_Points;
  if (s.Spec_Axis.size() < static_cast<std::size_t>(n)) s.Spec_Axis.resize(static_cast<std::size_t>(n));
  for (int32_t i = 0; i < n; ++i)
    s.Spec_Axis[static_cast<std::size_t>(i)] =
        static_cast<float>(s.Param.RESOL * (i - static_cast<double>(s.Param.SMTMS)) / s.Spectrum_Frequency + origin);
  Build_Disp_Arrays(s, 0);
  Restore_View_Points(s, v);
}

// Number text of the repeated centre rows of the settings.
std::string Centre_Text(double v, int decimals) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  return buf;
}

// The centre of the spectrum goes into the row of Observe_Text of the
// 100-row table, and into the nucleus pair and the general pair.
void Remember_Centre(Session& s) {
  const int32_t n = s.Spec_Points;
  if (n < 1 || s.Spec_Axis.size() < static_cast<std::size_t>(n)) return;
  const double freq = s.Observe_Frequency;
  const double ppm = s.Spec_Axis[static_cast<std::size_t>(std::min(n / 2, n - 1))];
  auto& set = s.settings;
  const std::string& key = s.Param.Observe_Text;
  if (!key.empty()) {
    int row = -1;
    for (int k = 0; k < 100 && row < 0; ++k)
      if (set.Instrument[static_cast<std::size_t>(k)] == key) row = k;
    for (int k = 0; k < 100 && row < 0; ++k)
      if (set.Instrument[static_cast<std::size_t>(k)].empty()) row = k;
    if (row >= 0) {
      const auto r = static_cast<std::size_t>(row);
      set.Instrument[r] = key;
      set.Ref_Center_Frq[r] = Centre_Text(freq, 9);
      set.Ref_Center_Ex[r] = Centre_Text(ppm, 6);
    }
  }
  const std::string& nuc = s.Param.OBNUC;
  const std::string pair = nuc == "1H" ? "HCENTRE" : nuc == "13C" ? "CCENTRE" : "XCENTRE";
  for (const std::string& p : {pair, std::string("CENTRE")}) {
    if (session::Setting_Index(p + " REF FREQ") < 0) continue;
    set.Set(p + " REF FREQ", freq);
    set.Set(p + " REF", ppm);
  }
}

// What cancel restores.
void Ref_Restore(Session& s) {
  const auto& m = s.Ref_Memory;
  if (m.Spectrum_Frequency <= 0) return;
  s.Param.SMEXR = m.Ref_Ppm;
  s.Param.SMTMS = m.Ref_Point;
  s.Param.Ref_Origin = m.Ref_Origin;
  s.Spectrum_Frequency = m.Spectrum_Frequency;
  if (!m.Spec_Axis.empty()) s.Spec_Axis = m.Spec_Axis;
  Build_Disp_Arrays(s, 0);
  s.X_Left = m.X_Left;
  s.X_Right = m.X_Right;
  s.X_Left_Hz = m.X_Left_Hz;
  s.X_Right_Hz = m.X_Right_Hz;
}

void Ref_Confirm(Session& s) {
  if (session::Setting_Index("REF INITITAL") >= 0) s.settings.Set("REF INITITAL", s.Param.SMEXR);
  if (!s.Mode.Mode_Unchanged) s.Data_Saved = 0;
  Remember_Centre(s);
  Update_Instr_Row(s);
}

}  // namespace

void Axis_From_Reference(Session& s) {
  s.Param.Ref_Origin = s.Param.SMEXR;
  const View_Points v = Take_View_Points(s);
  Rebuild_Keeping_View(s, v, s.Param.SMEXR);
}

void Set_Reference_At(Session& s, int32_t p, float ppm) {
  if (s.Spec_Points < 1 || s.Disp_Points < 1 || p < 0 || p >= s.Disp_Points) return;
  const int32_t f = Disp_Factor(s);
  const View_Points v = Take_View_Points(s);
  const int32_t point = std::clamp(static_cast<int32_t>(std::nearbyint(static_cast<double>(p) / f)), 0, s.Spec_Points - 1);
  s.Param.SMTMS = static_cast<float>(point);
  s.Param.SMEXR = ppm;
  s.Param.Ref_Origin = static_cast<float>(static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(point)]) -
                                          s.Disp_X[static_cast<std::size_t>(p)] + ppm);
  s.Spectrum_Frequency = ((static_cast<double>(p) / s.Disp_Points - 0.5) * s.Param.FREQU * 1e-6 + s.Observe_Frequency) /
                         (static_cast<double>(ppm) * 1e-6 + 1.0);
  Rebuild_Keeping_View(s, v, s.Param.Ref_Origin);
  session::Mode_Edited(s);
}

void Set_Reference_On_Range(Session& s, int32_t a, int32_t b) {
  if (s.Disp_Points < 1) return;
  const int32_t f = Disp_Factor(s);
  int64_t lo = static_cast<int64_t>(a) * f, hi = static_cast<int64_t>(b) * f;
  if (lo > hi) std::swap(lo, hi);
  if (lo == hi) return;
  lo = std::max<int64_t>(lo, 0);
  hi = std::min<int64_t>(hi, s.Disp_Points - 1);
  if (lo > hi) return;
  const auto row = static_cast<std::size_t>(s.Row());
  int64_t peak = lo;
  for (int64_t i = lo + 1; i <= hi; ++i)
    if (s.Disp_Y(static_cast<std::size_t>(i), row) > s.Disp_Y(static_cast<std::size_t>(peak), row)) peak = i;
  Set_Reference_At(s, static_cast<int32_t>(peak), s.Reference_Value);
}

void Set_Reference_On_Click(Session& s, int32_t index) {
  if (index < 0 || index >= s.Disp_Points) return;
  Set_Reference_At(s, index, s.Reference_Value);
}

double Entry_Reference_Ppm(const Session& s) {
  // Both axes are linear in the point index: the spot is found as a
  // fractional index on the remembered axis and read on the current one.
  const std::vector<float>& old_axis = s.Ref_Memory.Spec_Axis;
  const int32_t n = s.Spec_Points;
  if (n < 2 || old_axis.size() < static_cast<std::size_t>(n) || s.Spec_Axis.size() < static_cast<std::size_t>(n))
    return std::nan("");
  const auto last = static_cast<std::size_t>(n - 1);
  const double old_step = (static_cast<double>(old_axis[last]) - old_axis[0]) / (n - 1);
  if (old_step == 0) return std::nan("");
  const double index = (s.Ref_Memory.Ref_Ppm - static_cast<double>(old_axis[0])) / old_step;
  const double step = (static_cast<double>(s.Spec_Axis[last]) - s.Spec_Axis[0]) / (n - 1);
  return s.Spec_Axis[0] + index * step;
}

void Reference_From_Frequency(Session& s, double zero_freq_mhz) {
  if (!(zero_freq_mhz > 0) || s.Spec_Points < 1) return;
  s.Spectrum_Frequency = zero_freq_mhz;
  // SMEXR from the relation, the reference point kept.
  const double x = (s.Param.SMTMS / s.Spec_Points - 0.5) * s.Param.FREQU * 1e-6 + s.Observe_Frequency;
  s.Param.SMEXR = static_cast<float>((x / zero_freq_mhz - 1.0) * 1e6);
  Axis_From_Reference(s);
  session::Mode_Edited(s);
}

std::string Ref_Text(float ppm) { return Format_Number(ppm, " ####0.0###"); }

bool m21_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Reference) return false;
  if (!session::Enter_Mode(s, session::Mode_Reference)) return false;
  s.Mode.handlers[session::Mode_Reference] = {Ref_Confirm, Ref_Restore, nullptr};
  auto& m = s.Ref_Memory;
  m.Ref_Ppm = s.Param.SMEXR;
  m.Ref_Point = s.Param.SMTMS;
  m.Ref_Origin = s.Param.Ref_Origin;
  m.Spectrum_Frequency = s.Spectrum_Frequency;
  m.X_Left = s.X_Left;
  m.X_Right = s.X_Right;
  m.X_Left_Hz = s.X_Left_Hz;
  m.X_Right_Hz = s.X_Right_Hz;
  m.Spec_Axis = s.Spec_Axis;
  s.Reference_Value = s.Param.SMEXR;
  return true;
}

bool RefText1_Typed(Session& s, const std::string& text) {
  const char* b = text.c_str();
  char* e = nullptr;
  const double v = std::strtod(b, &e);
  if (e == b || !std::isfinite(v)) return false;
  while (*e == ' ') ++e;
  if (*e != '\0') return false;
  s.Reference_Value = static_cast<float>(v);
  return true;
}

void RefCommand1_Click(Session& s) { session::Finish_Mode(s, true); }

void RefCommand2_Click(Session& s) { session::Finish_Mode(s, false); }

int RefCommand3_Click(Session& s) {
  std::vector<std::string> rows;
  for (const Instr_Row& r : s.Instr_Tab) rows.push_back(Instr_List_Text(r));
  const std::string prompt = s.Param.Instrument_Id + "  " + Format_Number(s.Observe_Frequency, "###0.00") + " MHz  " +
                             s.Param.OBNUC + "  " + s.Param.SLVNT;
  const int pick = s.ui->Choose("装置データを使ってReferenceを変更", prompt, rows, Form109_Preselect(s));
  if (pick < 0) return 1;
  return Form109_OK(s, pick);
}

bool Reference_Fine_Set(Session& s) {
  const int32_t n = s.Spec_Points;
  if (n < 3 || s.Disp_Points < 1 || s.Spec_Axis.size() < static_cast<std::size_t>(n)) return false;
  const auto row = static_cast<std::size_t>(s.Row());
  float top = 0;
  for (int32_t i = 0; i < n; ++i) top = std::max(top, s.Spec_Re(static_cast<std::size_t>(i), row));
  if (!(top > 0)) return false;
  int32_t best = -1;
  for (int32_t i = 1; i < n - 1; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const float y = s.Spec_Re(k, row);
    if (y < 0.05f * top || y <= s.Spec_Re(k - 1, row) || y < s.Spec_Re(k + 1, row)) continue;
    if (best < 0 || std::fabs(s.Spec_Axis[k]) < std::fabs(s.Spec_Axis[static_cast<std::size_t>(best)])) best = i;
  }
  if (best < 0 || std::fabs(s.Spec_Axis[static_cast<std::size_t>(best)]) > 1.0f) return false;
  Set_Reference_At(s, best * Disp_Factor(s), 0.0f);
  return true;
}

void Reference_After_Transform(Session& s) {
  if (session::Setting_Index("REF FINE SET") >= 0 && s.settings.Int("REF FINE SET") != 0) Reference_Fine_Set(s);
}

}  // namespace tevo::editing
