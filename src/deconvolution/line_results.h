// What leaves the line separation: the list of fitted lines (number, ppm,
// Hz, width, height, Gaussian share, area ratio) as the window's list shows
// it and as the result file holds it, one comma line per line.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "deconvolution/line_edit.h"
#include "deconvolution/line_model.h"

namespace tevo {
struct Session;
}

namespace tevo::deconvolution {

// One row of the list: the line's values and the texts shown for them.
struct Line_Result_Row {
  int32_t number = 0;  // from 1
  double ppm = 0, hz = 0;  // position; hz = ppm * reference frequency
  float width = 0, height = 0, gauss = 0;
  float area = 0, relative = 0;  // relative: 100 * area / the largest area
  std::array<std::string, 7> text;  // the seven columns, formatted
};

// The column heads, and the sample texts the list measures its column widths on.
inline constexpr std::array<const char*, 7> Line_Result_Heads = {"番号", "δ/ppm", "ν/Hz", "半値幅/Hz",
                                                                 "高さ", "関数", "積分比"};
inline constexpr std::array<const char*, 7> Line_Result_Samples = {
    "1234567", "123456789012", "123456789012", "12345678901", "123456789012", "123456789012", "1234567890"};

// The rows of the peak set in its order; `axis0` is the ppm of point 0,
// `freq` the reference frequency in MHz.
std::vector<Line_Result_Row> Line_Result_Rows(const Sim_Peaks& peaks, float axis0, double freq);

// The result file: the heads, then one line per row, the columns joined by
// ", "; Shift-JIS, CR LF, logged as "Write". 0 written, 1 no lines, -1
// after the file error message.
int Write_Line_Results(Session& s, const Sim_Peaks& peaks, float axis0, const std::string& path);

// The curves of the calculation range as text, a line per spectrum point:
// ppm, the spectrum as the window shows it, the sum of the lines, then
// each line's own value in line order, each value followed by ", ".
// 0 written, 1 nothing to write, -1 after the file error message.
int Write_Line_Curves(Session& s, const Sim_State& st, const std::string& path);

}  // namespace tevo::deconvolution
