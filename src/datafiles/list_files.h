// The peak list, the integral list and the integral curve as text files:
// Shift-JIS, CR LF, each write logged as "Write".
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// Layouts of the peak list file: comma-separated values, or the report of
// the spectrometer's own listing with keyed head lines and a bar graph.
enum class Peak_List_Layout { Comma, Report };

// The save dialogs: title behind the data name, default extension and the
// tail the default name carries before it.
struct List_File_Kind {
  const char* title;
  const char* ext;  // without the dot
  const char* tail;
};
inline constexpr List_File_Kind Peak_List_File{" の保存(ピークリスト)", "red", "_red."};
inline constexpr List_File_Kind Integral_List_File{" の保存(積分リスト)", "Ilist", "_Ilist."};
inline constexpr List_File_Kind Integral_Curve_File{" 積分曲線の保存(ASCII)", "int", "_INT."};

// The default name of a list file for the data set at `open_name`: its
// folder and stem, the kind's tail and extension ("x/abc" -> "x/abc_red.red").
std::string List_Default_Name(const std::string& open_name, const List_File_Kind& kind);

// Each writer returns 0 written, 1 nothing to write (an empty list), -1
// after the file error message.
//
// Peak list, comma layout: "File: ", "Comment:  ", an empty line,
// "Data No.= " count, the head (frequency in kHz when "PEAK-VAL UNIT" is 2),
// then per peak number, ppm, frequency, amplitude and height in percent of
// the highest peak. Report layout: keyed lines PEAK, MXINT, RESOL (Hz and
// PPM), EXREF, ABOBS, NGAIN, COMNT, an empty line, the column head, then per
// peak number, ppm, intensity (%), frequency (Hz), point and a bar of "+".
int Write_Peak_List(Session& s, const std::string& path, Peak_List_Layout layout);

// "List of Integral Intensity", "File: ", "Comment:  ", the head, then per
// region its number, the value shown (relative to the reference, "##.00000",
// a value of 0 as "0"), start and end in the axis unit and B0, B1.
int Write_Integral_List(Session& s, const std::string& path);

// For each region a line "No.= k" and then one line per point from the
// high-index end down: the position in ppm, ", ", and the running sum of
// the region in the units of the values shown, so its last line is the
// region's value.
int Write_Integral_Curve(Session& s, const std::string& path);

}  // namespace tevo::datafiles
