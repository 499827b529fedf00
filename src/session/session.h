// The one in-memory data set of a process, with its lists and view state.
//
// Readers fill it, commands change it in place, the paint routine reads it.
// There is no hidden global: every routine takes the session by reference,
// so a test builds a fresh one in one line.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "session/point_array.h"
#include "session/records.h"
#include "session/settings.h"
#include "session/settings_files.h"
#include "session/command_flow.h"

namespace tevo {

namespace platform {
class Ui;
}

struct Session {
  Session();

  // ---- the seam to the window system (never null; defaults to scripted) ----
  platform::Ui* ui = nullptr;

  // ---- paths and work files (start-up and shut-down) ----
  std::string App_Path;  // folder of the executable, or the --home folder
  std::string Log_Dir = "C:\\NMRLog";  // "LOG DIR", mapped to ~/NMRLog here
  int16_t Work_Id = -1;  // 0..9999, -1 when no marker could be made
  std::string Work_File;  // App_Path/Work_File_1D####.wkf
  std::string Fid_Work_File;  // App_Path/FID_Work_File_1D####.dat
  std::string Open_Name;  // full path of the open data set
  std::string File_Class;  // upper-case pseudo extension that picked the reader (".TV1")
  std::string Data_Folder;  // folder of the data file, no trailing separator
  std::string Sniff_Tag;  // what the first bytes of the file said ("TEV1", "BRUKER", ...)
  std::string Start_Folder;
  std::string Cmd_File;  // the file named on the command line
  bool Cmd_From_Sibling = false;  // "$" prefix: not to be handed back
  int32_t Access_Count = 0;  // "ACCESS COUNT" of 1DCommon.ini as read
  std::string Backup_File;  // App_Path/BackUp1_<count>.tv1
  int Work_Lock_Fd = -1;  // open descriptor holding the lock on Work_File

  // ---- settings ----
  session::Settings settings;
  std::string Settings_Read_Name;  // the settings file read at start
  std::string Settings_Write_Name;  // the settings file written
  std::string User_Name;  // "LATEST USER" / chosen user
  int16_t User_Mode = 0;  // "USER MODE" of 1DCommon.ini
  int16_t Log_Mode = 0;  // "LOG MODE": -1 none, 0 monthly, 1 daily
  std::vector<session::Nucleus_Row> Nuclei;  // "Nuclear.dat", at most 141
  std::vector<session::Required_Row> Required_Files;  // "RequiredFile1D.txt"
  std::string Print_Text;  // default parameter text of "1D.prt"

  // ---- rows ----
  int32_t Array_Rows = 1;  // number of rows, at least 1
  int32_t Array_Row = 0;  // the row shown and edited, 0-based
  // array values: one value per row, as used and as shown
  std::vector<float> Delay_List, Delay_Raw;
  std::string Delay_Name;  // name of the varied parameter
  int16_t Delay_Linear = 0;  // 0 a value list, 1 start and step
  float Delay_Start = 0, Delay_Step = 0;
  std::string Delay_Unit;
  std::string Delay_Label;  // the delay in lists: "t(" name ")"
  std::string Delay_Axis_Label;  // relaxation axis label with markup: \i(t)\-((name)) / s
  std::string Array_Row_Names;  // row-name text stored with the values
  std::vector<Source_Pair> Array_Sources;  // files an array was built from, current first
  // How the rows of an array FID are kept, chosen in NMR1D_Form20 at the
  // read: DEPT rows to overlays, kept as an array (else rows as overlays),
  // sorted by delay (0 read order, 1 ascending, 2 descending).
  int16_t Array_Read_Dept = 0, Array_Read_Array = 1, Array_Sort = 0;
  int16_t Array_Selection = 0;  // what the T1/T2 fit measures: 0 the region's sum, k peak k
  std::vector<Intensity_Pair> Intensity_Pairs;  // the series of that choice, sorted by delay

  // ---- point arrays, addressed (point, row), capacity + 1 points ----
  int32_t Point_Capacity = 0;
  Point_Array Fid_Re, Fid_Im;  // time domain after DC removal and scaling
  Point_Array Ft_Re, Ft_Im;  // spectrum from the transform, before corrections
  Point_Array Spec_Re, Spec_Im;  // current spectrum: drawn, integrated, saved
  std::vector<float> Spec_Axis;  // ppm of each point, ascending with index
  std::vector<float> Spec_Mag;  // magnitude of the current row (work vector)
  Point_Array Disp_Y;  // display copy (point, row)
  std::vector<float> Disp_X;  // ppm of each display point

  int32_t Spec_Points = 0;  // points of the spectrum, power of two
  int32_t Fid_Points = 0;  // complex points of the FID as read
  int32_t Disp_Points = 0;  // length of Disp_Y

  // ---- FID processing: transform size, window, zero fill, prediction ----
  int32_t Base_Point_Count = 0;  // transform size as read (next power of two >= Fid_Points)
  bool Fid_Work_Saved = false;  // Fid_Work_File holds the FID as read
  int16_t Fid_Format_Class = 0;  // shift memory class: 0 other, 1 Bruker, 2 Varian, 3 JEOL
  int32_t Fid_Shift = 0;  // left shift of the FID in points; negative shifts right
  int32_t Fid_Shift_Preset = -1;  // digital filter delay read with the FID, points; -1 none
  double Vendor_Zero_Frequency = 0;  // MHz of 0 ppm the FID's own parameters state; 0 none
  int16_t Zero_Fill_Factor = 1;  // doublings of N by zero fill (1, 2, 4, ...)
  int16_t LP_Fill_Factor = 1;  // doublings of N by forward prediction
  float Line_Broadening = 0.25f;  // exponential window, Hz
  int16_t Window_Kind = 0;  // 0 exponential, 1 sine, 2 sine squared, 3 Gaussian
  float Window_Start = 0, Window_End = 100;  // percent of the FID length
  float Trap_T1 = 0, Trap_T2 = 0, Trap_T3 = 80, Trap_T4 = 100;  // trapezoid corners, percent
  std::vector<float> Window_Func;  // weight per point, N entries
  int16_t Auto_Phase_Off = 0;  // 0: automatic phase after each preview transform
  int32_t LP_Order = 32;  // p, 20 <= p < 101
  int32_t LP_Points = 256;  // m, rows of the prediction equations, >= p
  int32_t LP_Start = 1;  // s, first point of the forward equations, from 1
  int32_t LP_Back_Points = 4;  // b, leading points rebuilt backward, 1 <= b < 31
  int16_t LP_Stability = 1;  // nonzero: backward coefficients are stabilised too
  int16_t Acq_Mode = 0;  // 0 none, 1 single-converter correction wanted, 2 odd points negated

  // ---- data history: goes with the data set (the measurement date is Param.DATIM) ----
  std::string Measured_By;  // operator the file names; shown "Unknown" when empty
  std::string Measured_Name;  // the data file's name when it was first read
  std::string Transformed_By, Transformed_Date;  // who transformed the FID, and when
  std::vector<std::string> Save_By, Save_Date;  // one entry per native save, oldest first

  // ---- data kind ----
  int16_t Show_Magnitude = 0;  // Disp_Y holds sqrt(re^2 + im^2)
  int16_t Is_Spectrum = 0;
  int16_t Is_Fid = 0;
  int16_t Data_Saved = 1;  // 1: no unsaved changes

  // ---- scale values ----
  float Max_Abs = 0.1f;  // unit of all levels and integrals, at least 0.1
  float Max_Real = 0;
  float Fid_Scale = 1;

  // ---- display state ----
  float X_Left = 0, X_Right = 0;  // ppm; left is the larger at full view
  float X_Left_Hz = 0, X_Right_Hz = 0;
  float Y_Mag = 0.95f;
  float Y_Offset = 0;  // 0 bottom .. 1 top
  float Y_Full_Scale = 0;  // Max_Abs / Y_Mag
  int16_t Axis_Unit = 0;  // x axis unit: 0 ppm, 1 Hz, 2 kHz ("AXIS MODE PPM")
  int16_t Mouse_Tool = 0;  // armed zoom tool: 0 none, 1 box, 2 horizontal, 3 vertical, 4 cursors
  int32_t Select_Start = -1, Select_End = -1;  // Spec_Re indices drawn in "SELECT SPECT COL"
  int16_t Keep_Base_Layer = 0;  // 1 during a drag: the paint redraws only the XOR layer
  int32_t Cursor_X = -1, Cursor_Y = -1;  // live crosshair, pixels (-1: none)
  int32_t Cursor_Left = 0, Cursor_Right = 0;  // distance cursors, display indices
  int32_t Cursor_Left_Frozen = -1, Cursor_Right_Frozen = -1;  // -1 when off the frame
  int16_t Show_Distance = 0;  // the distance window is open

  // ---- phase: applied on top of Ft_* while it is being set, 0 otherwise ----
  float Phase0 = 0;  // zero-order phase, degrees, -360 .. 360
  float Phase1 = 0;  // first-order phase over the whole width, degrees, -1800 .. 1800
  int32_t Pivot_Pp = 0;  // marker "pp": point the first-order term turns about
  int32_t Pivot_P2 = 0;  // marker "p2": second reference point
  std::vector<float> Phase0_Row, Phase1_Row;  // per row, main window phase mode
  int16_t Phase_Together = 0;  // main window: the current row's phase goes to all rows
  int32_t Peak_Index = 0;  // first index of the largest Spec_Mag
  float Peak_Magnitude = 0;  // that largest value
  std::vector<float> Curve_Value;  // automatic phase: turning sign by point
  std::vector<int16_t> Curve_Mask;  // automatic phase: selection by point, kept between calls

  // ---- frequencies and referencing ----
  double Observe_Frequency = 0;  // MHz (OBFRQ)
  double Spectrum_Frequency = 400.0;  // MHz that corresponds to 0 ppm
  float Reference_Value = 0;  // ppm typed in the reference mode ("Ref値")
  std::vector<Instr_Row> Instr_Tab;  // instrument table, at most Instrument_Rows_Max rows
  struct Reference_Memory {  // taken on entering the reference mode, for cancel
    float Ref_Ppm = 0, Ref_Point = 0, Ref_Origin = 0;
    double Spectrum_Frequency = 0;
    float X_Left = 0, X_Right = 0, X_Left_Hz = 0, X_Right_Hz = 0;
    std::vector<float> Spec_Axis;
  } Ref_Memory;

  // ---- parameter block ----
  Data_Param Param;

  // ---- peaks ----
  std::vector<Peak_Rec> Peaks;  // at most Peak_Max, ascending frequency
  float Peak_Level = 0.01f, Noise_Level = 0.005f, Base_Level = 0;  // × Max_Abs

  // ---- integrals ----
  std::vector<Integ_Rec> Integrals;  // at most Integ_Max
  int32_t Integ_Cur = 0;
  float Integ_Ref = 1.0f;
  int32_t Integ_Ref_Index = 0;
  float Integ_Scale = 1.0f;
  int16_t Integ_Disp_Mode = 0;  // display mode of the integral curves

  // ---- baseline points (parallel vectors, at most Base_Max) ----
  int16_t Base_Corrected = 0;  // a baseline correction has been made on the spectrum
  std::vector<int32_t> Base_Point;
  std::vector<float> Base_Re, Base_Im;
  int16_t Base_Average = 5;  // "AVERAGE POINT": half-width of the fit window, points
  int16_t Base_Preview = 0;  // 1 while the corrected spectrum is shown in the mode
  std::vector<float> Base_Entry_Re, Base_Entry_Im;  // Spec_* of the row on entering the mode

  // ---- insets and annotations ----
  std::vector<Inset_Rec> Insets;  // at most Inset_Max
  int32_t Inset_Cur = 0;
  std::vector<Text_Rec> Texts;
  std::vector<Line_Rec> Lines;
  std::vector<Image_Rec> Images;  // pictures on the page, at most 20
  Structure_Rec Structure;

  // ---- overlays: slot 0 is the main spectrum ----
  std::array<Overlay_Slot, Overlay_Max + 1> Overlay;
  // The difference spectrum: the slot taken away, its scale and its shift
  // (ppm), and whether the difference is shown.
  int16_t Diff_Slot = 0;
  float Diff_Mag = 1.0f;
  float Diff_Shift = 0;
  int16_t Diff_On = 0;
  // DEPT coefficients (the first five enter the sums) and the DEPT display.
  float DEPT_CH2_45 = 1.0f, DEPT_CH3_90 = 1.414f, DEPT_CH3_135 = 1.0f, DEPT_CH_135 = 1.0f, DEPT_CH_MUL = 0;
  float DEPT_CH3_45 = 1.0f, DEPT_CH_45 = 1.0f, DEPT_CH_90 = 1.0f, DEPT_CH2_135 = 1.0f;
  int16_t DEPT_Mode = 0;  // data shown as DEPT ("DEPT MODE"); the default Y_Mag is 0.95 / 4 then
  float Overlay_Shift = 0;  // "MULTI SPEC SHIFT", -1 .. 1
  int16_t Overlay_Compare = 0;  // 1: every slot drawn at the main spectrum's full scale
  // The one-step undo of the overlay window: a deleted slot, kept whole
  // until the next delete or exchange replaces it, or an exchanged pair.
  struct Overlay_Undo_Rec {
    int16_t Kind = 0;  // 0 nothing, 1 delete, 2 exchange
    int16_t Slot_A = 0, Slot_B = 0;
    Overlay_Slot Kept;
  } Overlay_Undo;
  int16_t Overlay_Read_Mode = 0;  // 3: the slots are kept, a read skips stored overlays

  // ---- native-file blocks carried through unchanged ----
  Native_Blocks Native;

  // ---- view history, newest first ----
  std::vector<View_Hist> View_History;

  // ---- undo: record 0 is the newest; 21 records for a depth of 20 ----
  std::array<Undo_Rec, Undo_Depth + 1> Undo_Stack;

  // ---- main window mode and tool state ----
  session::Mode_State Mode;

  // ---- message box shared values ----
  std::string Msg_Text, Msg_Title, Msg_Result;
  int32_t Msg_Style = 0;

  // Clamps Array_Row into 0 .. Array_Rows - 1 (0 with a single row) and
  // returns it; every use of the row goes through this.
  int32_t Row();

  // Settings that the data model reads directly.
  int32_t Display_Min() const;
  bool Disp_Extend_Mode() const;
};

// Sets the capacity to n points, discards all content and reallocates every
// point array for points 0..n and rows 0..Array_Rows.
void Alloc_Point_Arrays(Session& s, int32_t n);

// Rebuilds the display copy. Mode 0 reallocates Disp_Y/Disp_X and fills all
// rows; mode 1 refreshes only the current row in place; mode 2 only Disp_X.
// Disp_Points is Spec_Points times the smallest power of two that reaches
// "DISPLAY MIN" (Spec_Points itself under "DISP EXTEND MODE"); the points in
// between come from four-point midpoint interpolation, one pass per halving.
void Build_Disp_Arrays(Session& s, int mode);

struct Ppm_Lookup {
  int32_t index = 0;  // index into Disp_Y
  float height = 0;  // Disp_Y at that index
};
// Display index of a ppm value by linear interpolation across Disp_X, clamped.
Ppm_Lookup Point_From_Ppm(const Session& s, float ppm, int32_t row);

// Sets Max_Abs (largest magnitude of the current row, at least 0.1) and
// Max_Real (largest real value), then Y_Full_Scale.
void Update_Scale_Values(Session& s);

}  // namespace tevo
