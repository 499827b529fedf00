// The processing window "FT-Phase" (NMR1D_Form11) without its widgets: the
// values it carries, the rules by which it accepts them, and the work each
// command triggers on the session. The dialog shows fields and calls these.
//
// A FID is transformed row by row; nothing reaches Spec_* until the commit.
// Zero fill and forward prediction always start again from the FID as read,
// kept in the FID work file (all rows of Fid_Re, then all rows of Fid_Im,
// Base_Point_Count float32 points each).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Dialog state that is not part of the data set.
struct Ft_Form_State {
  // Spectrum plot: vertical range and the point window shown (left is the
  // higher index).
  float Plot_Max = 1, Plot_Min = 0;
  int32_t Plot_Left = 0, Plot_Right = 0;
  float Vertical_Zoom = 1;  // "縦軸拡大"
  float Vertical_Offset = 0;  // "縦Offset"
  float Plot_Height = 1;  // Plot_Max / Vertical_Zoom
  int16_t Phase0_Scroll = 0, Phase1_Scroll = 0;  // tenths of a degree
  bool Commit_Enabled = false;  // "完 了" after a preview
  bool Zero_Fill_Enabled = true;  // "ZeroFill"
  bool LP_Fill_Enabled = true;  // "LP Fill"
  bool Shift_Field_Shown = true;  // "FID Shift"
  bool Zoom_History_Cleared = false;  // set when a size change drops the zoom history
  bool Show_Imaginary = false;  // "虚数データの表示"
  std::string Result;  // "OK" after the commit, "CANCEL" after discarding
};

// ---- the FID work file ----

// Writes rows 0 .. Array_Rows - 1 of Fid_Re, then of Fid_Im, Base_Point_Count
// points each, to Fid_Work_File; sets Fid_Work_Saved. Returns 0 or -1.
int Save_Fid_Work_File(Session& s);

// Reallocates the point arrays for n points (contents cleared), reads the
// rows back from the work file into Fid_Re/Fid_Im (the tails stay 0) and
// sets Spec_Points = n. Returns 0, or -1 when the file cannot be read.
int Reload_Fid_Work_File(Session& s, int32_t n);

// ---- opening ----

// The single-converter correction when Acq_Mode asks for it and the work
// file, once for the data set; then the dialog's defaults: LB 0.25 Hz, window 0 .. 100 %, trapezoid 0, 0, 80,
// 100, shift 0, zoom 1, offset 0, phases 0. Then the shift: the digital
// filter delay the reader found (Fid_Shift_Preset), else the one remembered
// for this data set (see Recall_Fid_Shift); and the window is built.
void Open_Ft_Form(Session& s, Ft_Form_State& st);

// The FID shift remembered for the data set: the entry of the 100-row table
// keyed by Observe_Text, else the value kept per format class and nucleus.
// Leaves Fid_Shift alone when neither holds one.
void Recall_Fid_Shift(Session& s);

// The digital-filter delay (points) the reader found in the file, or -1
// when it found none or "AUTO FILTER SHIFT" is 0.
int32_t Filter_Shift_Preset(const Session& s);

// ---- fields (each returns whether the value was taken; a value taken
//      rebuilds the window and runs the preview) ----

// "BF, Hz": taken when above 0 and different from the current value.
bool Set_Line_Broadening(Session& s, Ft_Form_State& st, float hz);
// "窓関数": 0 exponential, 1 sine, 2 sine squared, 3 Gaussian.
bool Set_Window_Kind(Session& s, Ft_Form_State& st, int16_t kind);
// "T1" .. "T4" (corner 1 .. 4): taken only if T1 <= T2 <= T3 <= T4 holds
// afterwards, equality allowed.
bool Set_Trap_Corner(Session& s, Ft_Form_State& st, int corner, float percent);
// "Start", "End": stored as typed; Build_Window puts unusable values back.
bool Set_Window_Bounds(Session& s, Ft_Form_State& st, float start, float end);
// "FID Shift": clamped to 1 - Base_Point_Count .. Base_Point_Count - 1.
bool Set_Fid_Shift(Session& s, Ft_Form_State& st, int32_t shift);

// One step of a held arrow button: dir +1 or -1, began_at the shift when the
// button went down. A run that began on the far side of 0 stops at 0, any
// other run at the clamp. Returns false (and changes nothing) at the limit.
// Moves the value only: the caller runs the preview (Parameters_Changed), so
// that the steps of a held button can wait for the preview of the last one.
bool Step_Fid_Shift(Session& s, int dir, int32_t began_at);

// ---- commands ----

// "FFT": transform of the current row, then the automatic phase (unless
// Auto_Phase_Off) or the current phase, scroll values and plot scale; enables
// the commit.
void Run_Preview(Session& s, Ft_Form_State& st);

// Rebuilds the window and runs the preview: what every parameter change does.
void Parameters_Changed(Session& s, Ft_Form_State& st);

// "ZeroFill": doubles N from the work file. Silently does nothing beyond
// 524288 points or without a work file. Returns whether it filled.
bool Zero_Fill(Session& s, Ft_Form_State& st);

// "ZeroFill解除": back to Base_Point_Count with both fill factors 1.
bool Undo_Zero_Fill(Session& s, Ft_Form_State& st);

// "完 了": transforms and phases every row with the previewed phase, scales
// by Fid_Scale into Spec_* and Ft_*, builds the axis and the display copy,
// remembers the FID shift. Leaves a spectrum with result "OK". Returns 0.
int Commit_Transform(Session& s, Ft_Form_State& st);

// "現データの破棄" or closing the window: asks, and on yes leaves with
// "CANCEL". Returns whether the dialog ends.
bool Discard_Ft_Form(Session& s, Ft_Form_State& st);

// ---- pieces of the commit, usable on their own ----

// Axis of a freshly transformed spectrum: Spec_Axis[i] = (i - Round(N / 2))
// * FREQU / N / Spectrum_Frequency + centre ppm. The centre ppm follows from
// the 0 ppm frequency the file states (Vendor_Zero_Frequency, when "VENDOR
// REFERENCE" is 1), else the remembered centre data of this spectrometer (or
// nucleus), else Spectrum_Frequency and Observe_Frequency: centre ppm =
// (Observe_Frequency / Spectrum_Frequency - 1) x 1e6. SMTMS/SMEXR match.
void Build_Transform_Axis(Session& s);

// True when the file's own 0 ppm frequency sets the axis of the transform.
bool Uses_Vendor_Reference(const Session& s);

// Remembers Fid_Shift and the centre reference under Observe_Text in the
// 100-row table (same key overwritten, else first empty row, else nothing)
// and under the format class and nucleus.
void Remember_Fid_Shift(Session& s);

// Key of the data set in the shift and centre table: Observe_Text, or the
// observe frequency rounded to 0.05 MHz when the reader left it empty.
std::string Shift_Memory_Key(const Session& s);

// ---- the whole chain without a window (command line, batch) ----

// What to change from the dialog's defaults; unset values keep them.
struct Process_Request {
  std::optional<int16_t> window_kind;  // 0 exp, 1 sine, 2 sine squared, 3 Gaussian
  std::optional<float> line_broadening;  // Hz, > 0
  std::optional<float> window_start, window_end;  // percent
  std::optional<std::array<float, 4>> trapezoid;  // T1 <= T2 <= T3 <= T4, percent
  std::optional<int32_t> fid_shift;  // points
  std::optional<int32_t> row;  // row previewed (its phase goes to all rows)
  int16_t zero_fill = 1;  // wanted Zero_Fill_Factor: 1, 2, 4, ...
  int phase_mode = 0;  // 0 full automatic, 1 semi-automatic at the markers, 2 given
  float phase0 = 0, phase1 = 0;  // degrees, for phase_mode 2
};

// What the chain did, taken just before the commit put the phase into the data.
struct Process_Report {
  int32_t points = 0;  // N
  int32_t fid_shift = 0;
  float phase0 = 0, phase1 = 0;  // degrees
  int32_t pivot = 0;  // Pivot_Pp
  int16_t zero_fill_factor = 1, lp_fill_factor = 1;
};

// A loaded FID through the processing window as the operator would: the
// single-converter correction when flagged, the work file, the defaults and
// remembered shift, the requested changes, zero fill, preview with phase,
// commit. Returns 0, -1 on a failure reported through the message window,
// or 2 for request values the dialog would refuse.
int Process_Fid(Session& s, const Process_Request& req, Process_Report& report);

}  // namespace tevo::signal
