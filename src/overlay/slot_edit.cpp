#include "overlay/slot_edit.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "datafiles/open_file.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "overlay/overlay_set.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::overlay {

namespace {

constexpr float Default_Noise_Level = 0.005f, Default_Peak_Level = 0.01f;
constexpr float Default_Integ = 1.0f;
constexpr int Default_Digits = 4;

bool Edit_Slot(int slot) { return slot >= 1 && slot < Overlay_Rows; }

const Overlay_Slot& Slot(const Session& s, int slot) { return s.Overlay[static_cast<std::size_t>(slot)]; }

// A positive value, or `def` when it was never set.
float Or_Default(float v, float def) { return v > 0 ? v : def; }

}  // namespace

int Edit_Menu_Slot(int n) { return Overlay_Max - n; }

bool Slot_Editable(const Session& s, int slot) { return Edit_Slot(slot) && Slot(s, slot).Slot_Points >= 2; }

std::string Slot_Edit_Title(int slot, const std::string& file) {
  return "重書き(" + std::to_string(slot + 1) + ") データ編集: " + std::filesystem::path(file).filename().string();
}

Session Session_From_Slot(const Session& main, int slot) {
  Session t = datafiles::Scratch_Session(main, "TempSlot.dat");
  if (!Edit_Slot(slot)) return t;
  const Overlay_Slot& o = Slot(main, slot);
  const auto n = static_cast<std::size_t>(std::max(o.Slot_Points, 0));
  Alloc_Point_Arrays(t, static_cast<int32_t>(n));
  t.Spec_Points = static_cast<int32_t>(n);
  t.Spec_Axis.assign(n, 0.0f);
  for (std::size_t i = 0; i < n; ++i) {
    if (i < o.Slot_X.size()) t.Spec_Axis[i] = o.Slot_X[i];
    t.Spec_Re(i) = t.Ft_Re(i) = i < o.Slot_Y.size() ? o.Slot_Y[i] : 0.0f;
    t.Spec_Im(i) = t.Ft_Im(i) = i < o.Slot_Y_Im.size() ? o.Slot_Y_Im[i] : 0.0f;
  }
  t.Is_Spectrum = 1;
  t.Open_Name = o.Slot_File;
  t.Param = o.Slot_Param;
  t.Param.POINT = t.Spec_Points;
  t.Param.SMODE = 1;
  t.Observe_Frequency = o.Slot_Observe_Frequency;
  t.Spectrum_Frequency = o.Slot_Spectrum_Frequency;
  // Hz per point from the axis when the slot carries none; the sweep from it.
  if (t.Param.RESOL <= 0 && n >= 2)
    t.Param.RESOL = static_cast<float>(std::fabs(double(t.Spec_Axis[n - 1]) - t.Spec_Axis[0]) *
                                       t.Spectrum_Frequency / double(n - 1));
  if (t.Param.FREQU <= 0) t.Param.FREQU = static_cast<float>(double(t.Param.RESOL) * double(n));

  t.Peaks = o.Slot_Peaks;
  t.Integrals = o.Slot_Integrals;
  t.Peak_Level = Or_Default(o.Slot_Peak_Level, Default_Peak_Level);
  t.Noise_Level = Or_Default(o.Slot_Noise_Level, Default_Noise_Level);
  t.Base_Level = o.Slot_Base_Level;
  t.Integ_Ref = Or_Default(o.Slot_Integ_Ref, Default_Integ);
  t.Integ_Scale = Or_Default(o.Slot_Integ_Scale, Default_Integ);
  t.Integ_Ref_Index = o.Slot_Integ_Ref_Index;
  for (const char* key : {"DISP PEAK DIGIT", "DISP INTEG DIGIT"})
    if (display::Setting_Int(t, key, 0) < 1) display::Store_Setting(t, key, Default_Digits);
  // The slot's trace in its own colour, where the main spectrum is drawn.
  display::Store_Setting(t, "MAIN SPECT COL", Slot_Colour(main, slot));

  // The view of the main plot; the history of the editor starts empty.
  t.Axis_Unit = main.Axis_Unit;
  t.X_Left = main.X_Left;
  t.X_Right = main.X_Right;
  t.X_Left_Hz = static_cast<float>(double(t.X_Left) * t.Spectrum_Frequency);
  t.X_Right_Hz = static_cast<float>(double(t.X_Right) * t.Spectrum_Frequency);
  Update_Scale_Values(t);
  if (t.X_Left == t.X_Right) display::View_After_Load(t);
  Build_Disp_Arrays(t, 0);
  return t;
}

void Slot_Back_From_Session(Session& main, int slot, const Session& working, const Overlay_Slot& row) {
  if (!Edit_Slot(slot)) return;
  Overlay_Slot o = Slot_From_Session(working, row.Slot_File, row);
  o.Slot_Y_Mag = row.Slot_Y_Mag > 0 ? row.Slot_Y_Mag : o.Slot_Y_Mag;
  o.Slot_Y_Full = o.Slot_Max_Abs / o.Slot_Y_Mag;
  o.Slot_Show = row.Slot_Show;
  o.Slot_Show_Peaks = row.Slot_Show_Peaks;
  o.Slot_Show_Integrals = row.Slot_Show_Integrals;
  o.Slot_Comment = row.Slot_Comment;
  if (working.Data_Saved != 1) main.Data_Saved = 0;
  main.Overlay[static_cast<std::size_t>(slot)] = std::move(o);
}

int Replace_Edit_Slot(Session& main, int slot, Session& working, Overlay_Slot& row, const std::string& path) {
  if (!Edit_Slot(slot)) return 1;
  if (Show_Message(main, "データを置き換えますか？", Style_Yes_No + Icon_Question, "データの置き換え") != Msg_Yes)
    return 1;
  const std::string file = path.empty() ? datafiles::Ask_Open_Path(main) : path;
  if (file.empty()) return 1;
  Overlay_Slot read = row;
  const int status = Read_Slot_Record(main, read, file, Slot_Align::Chem);
  if (status != 0) return status;
  // The read is laid out as the slot and becomes the working session.
  Session scratch = datafiles::Scratch_Session(main, "TempSlot.dat");
  scratch.Overlay[static_cast<std::size_t>(slot)] = read;
  scratch.Axis_Unit = working.Axis_Unit;
  platform::Ui* ui = working.ui;
  working = Session_From_Slot(scratch, slot);
  working.ui = ui;
  row.Slot_File = read.Slot_File;
  row.Slot_Comment = read.Slot_Comment;
  return 0;
}

namespace {

// The switches of SMulti_Form33 and the settings that hold them.
struct Display_Switch {
  bool Slot_Display::*field;
  const char* key;
  int def;
};
constexpr Display_Switch Display_Switches[] = {
    {&Slot_Display::integrals, "INTEGRAL DISP", 1},   {&Slot_Display::integ_base, "INTEG BASE DISP", 1},
    {&Slot_Display::peak_values, "PEAK PICK DISP", 1}, {&Slot_Display::peak_tops, "PEAK TOP DISP", 0},
    {&Slot_Display::peak_numbers, "PEAK NUM DISP", 0}, {&Slot_Display::peaks_above, "PEAK POSITION", 1}};

}  // namespace

Slot_Display Slot_Display_Values(const Session& working) {
  Slot_Display d;
  for (const Display_Switch& k : Display_Switches) d.*k.field = display::Setting_Int(working, k.key, k.def) == 1;
  d.peak_digits = display::Setting_Int(working, "DISP PEAK DIGIT", Default_Digits);
  d.integ_digits = display::Setting_Int(working, "DISP INTEG DIGIT", Default_Digits);
  d.peak_unit = display::Setting_Int(working, "PEAK-VAL UNIT", 0);
  d.range = display::Range_Dialog_Values(working, working.Axis_Unit);
  return d;
}

void Slot_Display_OK(Session& working, const Slot_Display& d) {
  for (const Display_Switch& k : Display_Switches) display::Store_Setting(working, k.key, d.*k.field ? 1 : 0);
  display::Store_Setting(working, "DISP PEAK DIGIT", std::clamp(d.peak_digits, 0, 9));
  display::Store_Setting(working, "DISP INTEG DIGIT", std::clamp(d.integ_digits, 0, 9));
  display::Store_Setting(working, "PEAK-VAL UNIT", std::clamp(d.peak_unit, 0, 2));
  display::Range_Dialog_OK(working, d.range);
}

}  // namespace tevo::overlay
