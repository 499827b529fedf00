// The records the session keeps in its lists: parameter block, peaks,
// integrals, insets, annotations, overlay slots, view history and undo steps.
// Field names are the program's own; units are given beside each field.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tevo {

// Capacities of the session's lists.
inline constexpr int32_t Fft_Table_Size_Max = 524288;  // transform size, points
inline constexpr int32_t Peak_Max = 1000;
inline constexpr int32_t Integ_Max = 200;
inline constexpr int32_t Inset_Max = 20;
inline constexpr int32_t Overlay_Max = 10;  // further spectra beside the main one
inline constexpr int32_t Instrument_Rows_Max = 1000;
inline constexpr int32_t View_Hist_Max = 50;
inline constexpr int32_t Undo_Depth = 20;
inline constexpr int32_t Base_Max = 1000;
inline constexpr int32_t Recent_Max = 20;
inline constexpr int32_t Text_Max = 200;
inline constexpr int32_t Line_Max = 200;

// One flat parameter record per data set; the field names are the five-letter
// tags under which the parameter sets, the native file and JCAMP carry them.
struct Data_Param {
  float ACQTM = 0;  // acquisition time, s
  float ADBIT = 0;  // converter bits
  std::string COMNT;  // sample comment, shown as the title
  float CSPED = 0;  // spinning speed
  float CTEMP = 0;  // temperature
  std::string DATIM;  // date and time of measurement
  float DELAY = 0;
  float DEADT = 0;
  int32_t DUMMY = 0;  // dummy scans
  std::string EXMOD;  // experiment mode (pulse sequence name)
  std::string EXPCM;  // experiment comment
  float FILTR = 0;  // filter width
  float FREQU = 0;  // sweep width, Hz
  // irradiation channel
  float IRFRQ = 0;
  float INTVL = 0;
  int16_t IRATN = 0;
  float IRFIN = 0;
  std::string IRNUC;
  float IRPHS = 0;
  int16_t IRRPW = 0;
  float IRSET = 0;
  float INIWT = 0;  // initial wait
  std::array<int32_t, 5> LOOP{};  // LOOP1 .. LOOP5
  // observe channel
  int16_t OBATN = 0;
  float OBFIN = 0;
  std::string OBNUC;  // e.g. "1H"
  float OBSET = 0;
  float OBFRQ = 0;  // MHz
  float PD = 0;  // pulse delay
  std::array<float, 5> PI{};  // PI1 .. PI5, pulse intervals
  int32_t POINT = 0;  // == Spec_Points
  std::array<float, 5> PS{};  // PS1 .. PS5, pulse settings
  std::array<float, 5> PW{};  // PW1 .. PW5, pulse widths
  float RESOL = 0;  // Hz per point
  int32_t RGAIN = 0;  // receiver gain
  int32_t SCANS = 0;
  std::string SLVNT;  // solvent
  float SMEXR = 0;  // reference shift in ppm (Ref_Ppm)
  float Ref_Origin = 0;  // ppm of point SMTMS after a reference set on a range
  int16_t SMODE = 1;  // 1 spectrum, 0 FID
  float SMTMS = 0;  // reference point (Ref_Point)
  int32_t TIMES = 0;
  int32_t TOSCN = 0;
  // third channel
  float TR = 0;
  int16_t TRATN = 0;
  float TRFIN = 0;
  float TRFRQ = 0;
  std::string TRNUC;
  int16_t TRRPW = 0;
  float TRSET = 0;

  std::string Instrument_Name;  // "##SPECTROMETER/DATA SYSTEM=" value
  std::string Data_File;  // DFILE
  std::string Instrument_Id;  // empty: Instrument_Name stands for it
  std::string Observe_Text;  // observe frequency to 0.05 MHz, "####0.00"

  // Further acquisition values the native file keeps.
  std::string Probe_Name;
  std::string Gradient_Program;
  std::string Pulse_Program;
  int16_t Window_Code = 0;  // window of the vendor's own processing, numbered as Window_Kind
  float Pulse90 = 0, Pulse90_2 = 0;  // 90-degree pulse widths, first and second channel
  double Irr_Frequency = 0;  // irradiation frequency, MHz
  std::array<float, 32> P_List{}, D_List{}, CNST_List{}, Extra_List{};  // pulse, delay, constant lists
  bool operator==(const Data_Param&) const = default;
};

// One row of the instrument table "OB_0ppm.frq": the 0 ppm frequency of an
// instrument for one solvent and nucleus.
struct Instr_Row {
  std::string Id;  // instrument ID
  std::string Solvent;
  std::string Nucleus;
  double Zero_Freq = 0;  // MHz at 0 ppm (Spectrum_Frequency)
  float Obs_Freq = 0;  // MHz, the spectrometer's nominal frequency
  std::string Used_Date;  // "yyyy/mm/dd hh:nn:ss"; empty is written as now
  std::string Updated_Date;
};

struct Peak_Rec {
  int32_t Point = 0;  // index into Spec_Re
  float Label_Dx = 0;  // horizontal shift of the printed label
  float Label_Dy = 0;  // second placement value, 0 for a new peak
  float Freq_Hz = 0;  // (ppm - Spec_Axis[0]) * Spectrum_Frequency
  int16_t Height = 0;  // label height value kept with the placement
  bool operator==(const Peak_Rec&) const = default;
};

struct Integ_Rec {
  int32_t End_Point = 0;  // higher point index of the region
  int32_t Start_Point = 0;  // lower point index
  float Curve_Y = 0.1f;  // foot of the curve, fraction of the plot height
  float B0 = 0;  // baseline offset, units of Max_Abs
  float B1 = 0;  // baseline tilt over the whole spectrum width
  float Value = 0;  // raw integral
  bool operator==(const Integ_Rec&) const = default;
};

// Font description used by every label: face, size in points, style, colour
// (0xBBGGRR) and character set.
struct Font_Rec {
  std::string Face;
  float Size = 10;
  int16_t Bold = 0;
  int16_t Italic = 0;
  int16_t Underline = 0;
  int16_t Strike = 0;
  int32_t Colour = 0;
  int16_t Charset = 128;
  bool operator==(const Font_Rec&) const = default;
};

struct Inset_Rec {
  float Frame_X1 = 0, Frame_X0 = 0;  // right and left edge, fractions of width
  float Frame_Y1 = 0, Frame_Y0 = 0;  // top and bottom edge, fractions of height
  float Inset_Y_Offset = 0;  // -1 .. 1
  float Inset_X_Scale = 0;  // magnification against the main plot
  float Inset_Y_Full = 0;  // full scale before the frame ratio
  float Inset_Right = 0, Inset_Left = 0;  // its window in ppm
  float Inset_X_Mag = 2.0f, Inset_Y_Mag = 2.0f;
  Font_Rec Axis_Font, Peak_Font, Value_Font, Integ_Font;
  int32_t Fill_Colour = 0xFFFFFF, Line_Colour = 0, Border_Colour = 0;
  int16_t Show_Axis = 1, Show_Values = 0, Show_Tops = 0, Show_Numbers = 0,
          Show_Integrals = 0, Show_Integ_Base = 0, Show_Border = 1, Opaque = 0;
  int16_t Peak_Pos = 1;  // labels above (1) or below (0)
  int16_t Unit = 0;  // axis unit
  // tick settings of the printed axis
  int16_t Tick_Mode = 0;
  float Tick_Step1 = 0, Tick_Inc1 = 0, Tick_Step2 = 0, Tick_Inc2 = 0;
  int16_t Axis_Digit = 1, Integ_Digit = 2, Peak_Digit = 2;
  // further print values of the inset ("ML INTEG EXPAND", "ML INTEG LEVEL",
  // "MUL PEAK UNIT", "MUL FONT MAG", "MUL FONTMAG MODE", "MUL PEAKLINE TOP/BOT")
  float Integ_Expand = 1, Integ_Level = 0;
  int16_t Peak_Unit = 0;
  float Font_Mag = 1;
  int16_t Font_Mag_Mode = 0;
  float Peakline_Top = 0, Peakline_Bottom = 0;
  bool operator==(const Inset_Rec&) const = default;
};

struct Text_Rec {
  float X = 0, Y = 0;  // fractions of the frame from its left and top
  std::array<float, 3> Frame{};  // further frame values stored with the note
  std::string Font_Name;
  float Font_Size = 10;  // points, at least 3
  int16_t Bold = 0, Italic = 0;
  int32_t Colour = 0;
  int16_t Print = 1;
  std::string Text;  // grouped markup or "{\rtf" text
  bool operator==(const Text_Rec&) const = default;
};

struct Line_Rec {
  float X1 = 0, X2 = 0, Y1 = 0, Y2 = 0;  // fractions of the frame
  int32_t Colour = 0;
  int16_t Width = 1;  // 0.1 mm
  int16_t Arrow_Len = 0, Arrow_Width = 0;  // 0.1 mm
  int16_t Style = 0;  // dash style index
  int16_t Kind = 0;  // line kind index
  bool operator==(const Line_Rec&) const = default;
};

// A picture placed on the page: its rectangle (fractions of the frame) and
// the complete picture file content, carried as bytes.
struct Image_Rec {
  float Left = 0, Top = 0, Width = 0, Height = 0;
  int32_t Extra = 0;  // further value stored with the picture
  std::vector<uint8_t> Body;
  bool operator==(const Image_Rec&) const = default;
};

// The structure picture shown beside the spectrum ("STRUCTURE DISP").
struct Structure_Rec {
  int16_t Show = 0;
  float Value_A = 0, Value_B = 0;  // placement values as stored
  std::vector<uint8_t> Body;  // whole picture file, empty when none
  bool operator==(const Structure_Rec&) const = default;
};

// One row of a relaxation series: its delay and the intensity taken out.
struct Intensity_Pair {
  float t = 0;  // delay, s
  float y = 0;  // intensity, normalised by the largest magnitude
};

// One source pair of an array assembled from single files.
struct Source_Pair {
  std::string Data_Name, Param_Name;
  bool operator==(const Source_Pair&) const = default;
};

// Blocks of the native file kept as bytes so that their spare fields and the
// fields no other part of the program uses survive a read and a write. Keyed
// page fields are copied to and from the settings on top of these.
struct Native_Blocks {
  std::vector<uint8_t> Param;  // parameter section, 2560 bytes
  std::vector<uint8_t> Page;  // page settings
  std::vector<uint8_t> Deconv_Page, Relax_Page, List_Page;
  std::vector<uint8_t> Markers;  // marker list, 10 records of 32 bytes
  bool operator==(const Native_Blocks&) const = default;
};

// One spectrum drawn over the main one. Slot 0 stands for the main spectrum.
struct Overlay_Slot {
  float Slot_Y_Offset = 0;  // -1 .. 1
  float Slot_Y_Full = 0;  // full scale, Slot_Max_Abs / Slot_Y_Mag
  std::vector<float> Slot_X;  // ppm of each point
  std::vector<float> Slot_Y;  // real part as drawn
  std::vector<float> Slot_Y_Im;  // second trace of the DEPT mode
  int16_t Slot_Show = 0;
  int32_t Slot_Points = 0;  // 0 = empty
  float Slot_Y_Mag = 0.95f;
  float Slot_Max_Abs = 0.1f;
  std::vector<Peak_Rec> Slot_Peaks;
  int16_t Slot_Show_Peaks = 0, Slot_Show_Integrals = 0;
  std::vector<Integ_Rec> Slot_Integrals;
  // Level lines (units of Slot_Max_Abs) and integral reference of the slot's
  // own editing; 0 where they were never set.
  float Slot_Peak_Level = 0, Slot_Noise_Level = 0, Slot_Base_Level = 0;
  float Slot_Integ_Ref = 0, Slot_Integ_Scale = 0;
  int32_t Slot_Integ_Ref_Index = 0;
  Data_Param Slot_Param;
  double Slot_Observe_Frequency = 0, Slot_Spectrum_Frequency = 400.0;
  std::string Slot_Comment;  // at most 30 bytes
  std::string Slot_File;
  int32_t Slot_Colour = 0;
  bool operator==(const Overlay_Slot&) const = default;
};

// One remembered display state; positions are point positions.
struct View_Hist {
  float X_Left = 0, X_Right = 0;
  float Y_Full_Scale = 0, Y_Mag = 0, Y_Offset = 0;
  bool operator==(const View_Hist&) const = default;
};

inline constexpr int16_t Undo_None = -1;  // stored as 65535 in 16 bits

// One undo step: a full copy of the list as it was before the edit.
struct Undo_Rec {
  int16_t Kind = Undo_None;
  std::array<float, 26> Val{};
  std::vector<float> List_A, List_B, List_C, List_D;  // up to 1001 entries
  std::vector<float> Sub_A, Sub_B, Sub_C, Sub_D;  // up to 201 entries
  int32_t Count = 0;
  int32_t Cur = 0;
  std::vector<Inset_Rec> Insets;  // the inset list as it was, whole records
};

}  // namespace tevo
