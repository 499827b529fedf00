#include "signal/fid_processing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string_view>

#include "editing/data_history.h"
#include "editing/reference.h"
#include "platform/ui.h"
#include "relaxation/array_data.h"
#include "session/messages.h"
#include "session/session.h"
#include "signal/fft.h"
#include "signal/phase.h"
#include "signal/phase_auto.h"
#include "signal/qd_correct.h"
#include "signal/window.h"

namespace tevo::signal {

namespace {

int32_t Round_Int(double v) { return static_cast<int32_t>(std::nearbyint(v)); }

bool Has_Setting(std::string_view key) { return session::Setting_Index(key) >= 0; }

// Number text of the repeated settings rows; parsed back with strtod.
std::string Number_Text(double v, int decimals) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  return buf;
}

double Parse_Number(const std::string& text, bool& ok) {
  const char* b = text.c_str();
  char* e = nullptr;
  const double v = std::strtod(b, &e);
  ok = e != b;
  return v;
}

// Settings key of the small shift table for the data's format class and
// nucleus: "FID SHIFT H1" for the general class, "FID SHFT H1 BRU" etc.
std::string Class_Shift_Key(const Session& s) {
  const std::string& nuc = s.Param.OBNUC;
  const char* n = nuc == "13C" || nuc == "C13" ? "C13" : nuc == "1H" || nuc == "H1" ? "H1" : "X";
  static const char* const suffix[] = {"", " BRU", " VAR", " JOL"};
  const int cls = std::clamp<int>(s.Fid_Format_Class, 0, 3);
  if (cls == 0) return std::string("FID SHIFT ") + n;
  return std::string("FID SHFT ") + n + suffix[cls];
}

// Row of the 100-row table holding the key, or -1.
int Memory_Row(const Session& s, const std::string& key) {
  if (key.empty()) return -1;
  for (int k = 0; k < 100; ++k)
    if (s.settings.Instrument[static_cast<std::size_t>(k)] == key) return k;
  return -1;
}

void Resize_Point_Arrays(Session& s, int32_t n) {
  Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
}

// After a change of N: the window, the plot's zoom history, the preview.
void After_Size_Change(Session& s, Ft_Form_State& st) {
  st.Zoom_History_Cleared = true;
  st.Shift_Field_Shown = true;
  Parameters_Changed(s, st);
}

}  // namespace

// ---- work file ----

int Save_Fid_Work_File(Session& s) {
  s.Fid_Work_Saved = false;
  if (s.Fid_Work_File.empty() || s.Base_Point_Count < 1) return -1;
  std::ofstream out(s.Fid_Work_File, std::ios::binary | std::ios::trunc);
  if (!out) return -1;
  const auto n = static_cast<std::streamsize>(s.Base_Point_Count) * sizeof(float);
  const int32_t rows = std::max(s.Array_Rows, 1);
  for (const Point_Array* a : {&s.Fid_Re, &s.Fid_Im})
    for (int32_t r = 0; r < rows; ++r)
      out.write(reinterpret_cast<const char*>(a->Row(static_cast<std::size_t>(r)).data()), n);
  if (!out) return -1;
  s.Fid_Work_Saved = true;
  return 0;
}

int Reload_Fid_Work_File(Session& s, int32_t n) {
  Resize_Point_Arrays(s, n);
  std::ifstream in(s.Fid_Work_File, std::ios::binary);
  if (!in) return -1;
  const int32_t count = std::min(s.Base_Point_Count, n);
  const auto skip = static_cast<std::streamoff>(s.Base_Point_Count - count) * sizeof(float);
  const int32_t rows = std::max(s.Array_Rows, 1);
  for (Point_Array* a : {&s.Fid_Re, &s.Fid_Im})
    for (int32_t r = 0; r < rows; ++r) {
      in.read(reinterpret_cast<char*>(a->Row(static_cast<std::size_t>(r)).data()),
              static_cast<std::streamsize>(count) * sizeof(float));
      in.seekg(skip, std::ios::cur);
    }
  return in ? 0 : -1;
}

// ---- opening ----

int32_t Filter_Shift_Preset(const Session& s) {
  return s.settings.Int("AUTO FILTER SHIFT") != 0 ? s.Fid_Shift_Preset : -1;
}

void Open_Ft_Form(Session& s, Ft_Form_State& st) {
  // The FID as the window starts from: corrected once when it was taken
  // with a single converter, and kept in the work file that zero fill and
  // prediction start from.
  Single_Converter_Correction(s);
  if (!s.Fid_Work_Saved) Save_Fid_Work_File(s);
  st = Ft_Form_State{};
  s.Line_Broadening = 0.25f;
  s.Trap_T1 = 0;
  s.Trap_T2 = 0;
  s.Trap_T3 = 80;
  s.Trap_T4 = 100;
  s.Window_Start = 0;
  s.Window_End = 100;
  s.Fid_Shift = 0;
  s.Phase0 = 0;
  s.Phase1 = 0;
  s.Zero_Fill_Factor = 1;
  s.LP_Fill_Factor = 1;
  // A digital filter delay read with the FID comes before any remembered
  // shift: the first spectrum shown is then right for this very data set.
  if (Filter_Shift_Preset(s) >= 0) s.Fid_Shift = Filter_Shift_Preset(s);
  else Recall_Fid_Shift(s);
  s.Fid_Shift = std::clamp(s.Fid_Shift, 1 - s.Base_Point_Count, s.Base_Point_Count - 1);
  Build_Window(s);
}

void Recall_Fid_Shift(Session& s) {
  const int row = Memory_Row(s, Shift_Memory_Key(s));
  bool ok = false;
  if (row >= 0) {
    const double v = Parse_Number(s.settings.Fid_Shift_Val[static_cast<std::size_t>(row)], ok);
    if (ok) {
      s.Fid_Shift = Round_Int(v);
      return;
    }
  }
  // The filter delay the reader found in the file's parameters, else the
  // value kept for the format class and nucleus.
  if (Filter_Shift_Preset(s) >= 0) {
    s.Fid_Shift = Filter_Shift_Preset(s);
    return;
  }
  const std::string key = Class_Shift_Key(s);
  if (Has_Setting(key)) s.Fid_Shift = s.settings.Int(key);
}

// ---- fields ----

bool Set_Line_Broadening(Session& s, Ft_Form_State& st, float hz) {
  if (!(hz > 0) || hz == s.Line_Broadening) return false;
  s.Line_Broadening = hz;
  Parameters_Changed(s, st);
  return true;
}

bool Set_Window_Kind(Session& s, Ft_Form_State& st, int16_t kind) {
  if (kind < 0 || kind > 3) return false;
  s.Window_Kind = kind;
  Parameters_Changed(s, st);
  return true;
}

bool Set_Trap_Corner(Session& s, Ft_Form_State& st, int corner, float percent) {
  float t[4] = {s.Trap_T1, s.Trap_T2, s.Trap_T3, s.Trap_T4};
  if (corner < 1 || corner > 4 || !std::isfinite(percent)) return false;
  t[corner - 1] = percent;
  if (!(t[0] <= t[1] && t[1] <= t[2] && t[2] <= t[3])) return false;
  s.Trap_T1 = t[0];
  s.Trap_T2 = t[1];
  s.Trap_T3 = t[2];
  s.Trap_T4 = t[3];
  Parameters_Changed(s, st);
  return true;
}

bool Set_Window_Bounds(Session& s, Ft_Form_State& st, float start, float end) {
  if (!std::isfinite(start) || !std::isfinite(end)) return false;
  s.Window_Start = start;
  s.Window_End = end;
  Parameters_Changed(s, st);
  return true;
}

bool Set_Fid_Shift(Session& s, Ft_Form_State& st, int32_t shift) {
  s.Fid_Shift = std::clamp(shift, 1 - s.Base_Point_Count, s.Base_Point_Count - 1);
  Parameters_Changed(s, st);
  return true;
}

bool Step_Fid_Shift(Session& s, int dir, int32_t began_at) {
  const int32_t next = s.Fid_Shift + (dir < 0 ? -1 : 1);
  if (dir < 0) {
    const int32_t limit = began_at > 0 ? 0 : 1 - s.Base_Point_Count;
    if (next < limit) return false;
  } else {
    const int32_t limit = began_at < 0 ? 0 : s.Base_Point_Count - 1;
    if (next > limit) return false;
  }
  s.Fid_Shift = next;
  return true;
}

// ---- commands ----

void Run_Preview(Session& s, Ft_Form_State& st) {
  const int32_t n = s.Spec_Points;
  s.ui->Wait_Cursor(true);
  const float top = FT_Preview(s, s.Fid_Shift);
  if (s.Auto_Phase_Off)
    Phase_Preview(s, s.Phase0, s.Phase1, n);
  else
    Phase_Auto(s, 0, n);
  s.ui->Wait_Cursor(false);
  st.Phase0_Scroll = static_cast<int16_t>(Round_Int(s.Phase0 * 10.0));
  st.Phase1_Scroll = static_cast<int16_t>(Round_Int(s.Phase1 * 10.0));
  st.Plot_Max = top;
  st.Plot_Min = 0;
  st.Plot_Left = n - 1;
  st.Plot_Right = 0;
  st.Plot_Height = st.Vertical_Zoom != 0 ? top / st.Vertical_Zoom : top;
  st.Commit_Enabled = true;
}

void Parameters_Changed(Session& s, Ft_Form_State& st) {
  if (Build_Window(s) != 0) return;
  Run_Preview(s, st);
}

bool Zero_Fill(Session& s, Ft_Form_State& st) {
  const int64_t n = 2LL * s.Zero_Fill_Factor * s.Base_Point_Count;
  if (n > Fft_Table_Size || !s.Fid_Work_Saved) return false;
  s.Zero_Fill_Factor = static_cast<int16_t>(s.Zero_Fill_Factor * 2);
  if (Reload_Fid_Work_File(s, static_cast<int32_t>(n)) != 0) return false;
  st.LP_Fill_Enabled = false;
  After_Size_Change(s, st);
  return true;
}

bool Undo_Zero_Fill(Session& s, Ft_Form_State& st) {
  if (!s.Fid_Work_Saved) return false;
  s.Zero_Fill_Factor = 1;
  s.LP_Fill_Factor = 1;
  if (Reload_Fid_Work_File(s, s.Base_Point_Count) != 0) return false;
  st.LP_Fill_Enabled = true;
  st.Zero_Fill_Enabled = true;
  After_Size_Change(s, st);
  return true;
}

int Commit_Transform(Session& s, Ft_Form_State& st) {
  const int32_t n = s.Spec_Points;
  const int32_t rows = std::max(s.Array_Rows, 1);
  s.ui->Wait_Cursor(true);

  // 1. Digital resolution of the filled data.
  s.Param.RESOL = static_cast<float>(static_cast<double>(s.Param.RESOL) / s.Zero_Fill_Factor);
  s.Param.RESOL = static_cast<float>(static_cast<double>(s.Param.RESOL) / s.LP_Fill_Factor);

  // 2.-3. Every row with the previewed row's phase; running extremes. A
  // point that raises the maximum does not also update the minimum.
  double top = 0.1, bottom = 0;
  const double scale = s.Fid_Scale;
  for (int32_t r = 0; r < rows; ++r) {
    const auto row = static_cast<std::size_t>(r);
    FT_Row(s, r, s.Fid_Shift);
    Phase_Row(s, s.Phase0, s.Phase1, n, r);
    for (int32_t i = 0; i < n; ++i) {
      const auto k = static_cast<std::size_t>(i);
      const float re = s.Fid_Re(k, row), im = s.Fid_Im(k, row);
      const float sr = static_cast<float>(scale * re), si = static_cast<float>(scale * im);
      s.Spec_Re(k, row) = sr;
      s.Spec_Im(k, row) = si;
      s.Ft_Re(k, row) = sr;
      s.Ft_Im(k, row) = si;
      const double mag = std::sqrt(static_cast<double>(re) * re + static_cast<double>(im) * im) * scale;
      if (mag > top)
        top = mag;
      else if (sr < bottom)
        bottom = sr;
    }
    s.ui->Do_Events();
  }

  // 4. Plot extremes.
  if (std::fabs(bottom) > std::fabs(top)) top = std::fabs(bottom);
  s.Max_Abs = static_cast<float>(top);
  s.Max_Real = static_cast<float>(top);

  // 5. Axis.
  Build_Transform_Axis(s);

  // 6. Rows to overlays, or the array sorted by delay, as chosen at reading.
  const float y_mag = relaxation::Commit_Array_Rows(s);

  // 7. A spectrum now; the phase is inside the data.
  s.Param.POINT = n;
  s.Param.SMODE = 1;
  s.Is_Spectrum = 1;
  s.Is_Fid = 0;
  s.Data_Saved = 0;
  s.Array_Row = 0;
  Build_Disp_Arrays(s, 0);
  s.Y_Mag = y_mag;
  s.Y_Offset = 0;
  s.Y_Full_Scale = s.Max_Abs / s.Y_Mag;
  s.X_Right = s.Spec_Axis[0];
  s.X_Left = s.Spec_Axis[static_cast<std::size_t>(std::max(n - 1, 0))];
  s.X_Right_Hz = static_cast<float>(s.X_Right * s.Spectrum_Frequency);
  s.X_Left_Hz = static_cast<float>(s.X_Left * s.Spectrum_Frequency);
  s.Phase0 = 0;
  s.Phase1 = 0;
  // "REF FINE SET" puts the line nearest 0 ppm at 0, for files that state
  // no 0 ppm frequency of their own.
  if (!Uses_Vendor_Reference(s)) editing::Reference_After_Transform(s);

  // 8. Remember the shift for the next data set of this spectrometer.
  Remember_Fid_Shift(s);

  // 9. Who transformed the FID and when go into the data history; the fill
  // factors are spent.
  editing::Record_Transform(s);
  s.Zero_Fill_Factor = 1;
  s.LP_Fill_Factor = 1;
  s.ui->Wait_Cursor(false);
  st.Result = "OK";
  return 0;
}

bool Discard_Ft_Form(Session& s, Ft_Form_State& st) {
  if (Show_Message(s, "このデータを破棄しますか", Style_Yes_No + Icon_Question,
                   "ＦＴデータ変換終了") != Msg_Yes)
    return false;
  st.Result = "CANCEL";
  return true;
}

// ---- pieces of the commit ----

std::string Shift_Memory_Key(const Session& s) {
  if (!s.Param.Observe_Text.empty()) return s.Param.Observe_Text;
  if (s.Observe_Frequency <= 0) return {};
  return Number_Text(std::nearbyint(s.Observe_Frequency * 20.0) / 20.0, 2);
}

bool Uses_Vendor_Reference(const Session& s) {
  return s.Vendor_Zero_Frequency > 0 && s.settings.Int("VENDOR REFERENCE") != 0;
}

void Build_Transform_Axis(Session& s) {
  const int32_t n = s.Spec_Points;
  if (n < 1) return;
  // The centre of the spectrum is the carrier, Observe_Frequency. Centre
  // data remembered for this spectrometer fix the 0 ppm frequency: the same
  // magnet gives the same 0 ppm frequency whatever the carrier.
  const bool vendor = Uses_Vendor_Reference(s);
  if (vendor) s.Spectrum_Frequency = s.Vendor_Zero_Frequency;
  const int row = vendor ? -1 : Memory_Row(s, Shift_Memory_Key(s));
  if (row >= 0) {
    bool ok_f = false, ok_p = false;
    const double f = Parse_Number(s.settings.Ref_Center_Frq[static_cast<std::size_t>(row)], ok_f);
    const double p = Parse_Number(s.settings.Ref_Center_Ex[static_cast<std::size_t>(row)], ok_p);
    if (ok_f && ok_p && f > 0) s.Spectrum_Frequency = f / (p * 1e-6 + 1);
  }
  if (!(s.Spectrum_Frequency > 0))
    s.Spectrum_Frequency = s.Observe_Frequency > 0 ? s.Observe_Frequency : 400.0;
  const double centre_ppm =
      s.Observe_Frequency > 0 ? (s.Observe_Frequency / s.Spectrum_Frequency - 1.0) * 1e6 : 0.0;
  const int32_t mid = Round_Int(n / 2.0);
  // The spectrometers' own processing labels a spectrum from the left, the
  // carrier at point N/2 of that order, which is one point below the middle
  // counted from the low end: with the file's own 0 ppm frequency the axis
  // follows that labelling, so that lines read the ppm the spectrometer
  // prints (measured on Bruker and JEOL data alike).
  const int32_t carrier = vendor ? mid - 1 : mid;
  s.Param.SMTMS = static_cast<float>(carrier);
  s.Param.SMEXR = static_cast<float>(centre_ppm);
  // The same arithmetic as a native file's reader, so that a saved spectrum
  // reads back to the very same axis.
  if (s.Spec_Axis.size() < static_cast<std::size_t>(n)) s.Spec_Axis.resize(static_cast<std::size_t>(n));
  for (int32_t i = 0; i < n; ++i)
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(
        (i - static_cast<double>(s.Param.SMTMS)) * s.Param.FREQU / s.Spectrum_Frequency / n + s.Param.SMEXR);
}

void Remember_Fid_Shift(Session& s) {
  const std::string key = Shift_Memory_Key(s);
  if (!key.empty()) {
    int row = Memory_Row(s, key);
    if (row < 0)
      for (int k = 0; k < 100 && row < 0; ++k)
        if (s.settings.Instrument[static_cast<std::size_t>(k)].empty()) row = k;
    if (row >= 0) {
      const auto r = static_cast<std::size_t>(row);
      const int32_t mid = Round_Int(s.Spec_Points / 2.0);
      s.settings.Instrument[r] = key;
      s.settings.Fid_Shift_Val[r] = std::to_string(s.Fid_Shift);
      s.settings.Ref_Center_Frq[r] = Number_Text(s.Observe_Frequency, 9);
      s.settings.Ref_Center_Ex[r] = Number_Text(s.Spec_Axis[static_cast<std::size_t>(mid)], 6);
    }
  }
  const std::string class_key = Class_Shift_Key(s);
  if (Has_Setting(class_key)) s.settings.Set(class_key, static_cast<double>(s.Fid_Shift));
}

int Process_Fid(Session& s, const Process_Request& req, Process_Report& report) {
  Ft_Form_State st;
  Open_Ft_Form(s, st);
  if (req.window_kind) s.Window_Kind = *req.window_kind;
  if (req.line_broadening) {
    if (!(*req.line_broadening > 0)) return 2;
    s.Line_Broadening = *req.line_broadening;
  }
  if (req.window_start) s.Window_Start = *req.window_start;
  if (req.window_end) s.Window_End = *req.window_end;
  if (req.trapezoid) {
    const auto& t = *req.trapezoid;
    if (!(t[0] <= t[1] && t[1] <= t[2] && t[2] <= t[3])) return 2;
    s.Trap_T1 = t[0], s.Trap_T2 = t[1], s.Trap_T3 = t[2], s.Trap_T4 = t[3];
  }
  if (req.fid_shift)
    s.Fid_Shift = std::clamp(*req.fid_shift, 1 - s.Base_Point_Count, s.Base_Point_Count - 1);
  if (req.row) s.Array_Row = *req.row;
  s.Row();
  s.Auto_Phase_Off = req.phase_mode == 0 ? 0 : 1;
  if (req.phase_mode == 2) {
    s.Phase0 = std::clamp(req.phase0, -Phase0_Limit, Phase0_Limit);
    s.Phase1 = std::clamp(req.phase1, -Phase1_Limit, Phase1_Limit);
  }
  if (Build_Window(s) != 0) return -1;
  while (s.Zero_Fill_Factor < req.zero_fill && Zero_Fill(s, st)) {
  }
  Run_Preview(s, st);
  if (req.phase_mode == 1) Phase_Auto(s, 1, s.Spec_Points);
  report.points = s.Spec_Points;
  report.fid_shift = s.Fid_Shift;
  report.phase0 = s.Phase0;
  report.phase1 = s.Phase1;
  report.pivot = s.Pivot_Pp;
  report.zero_fill_factor = s.Zero_Fill_Factor;
  report.lp_fill_factor = s.LP_Fill_Factor;
  return Commit_Transform(s, st);
}

}  // namespace tevo::signal
