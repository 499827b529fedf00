#include "datafiles/list_files.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include "datafiles/vendor_text.h"
#include "editing/integral_sum.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

std::string Pad_Left(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string Pad_Right(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

std::string File_Line(const Session& s) { return "File: " + std::filesystem::path(s.Open_Name).filename().string(); }
std::string Comment_Line(const Session& s) { return "Comment:  " + s.Param.COMNT; }

std::vector<std::string> Comma_Peak_Lines(Session& s, const std::vector<editing::Peak_Row>& rows, bool khz) {
  std::vector<std::string> lines{File_Line(s), Comment_Line(s), "", "Data No.= " + std::to_string(rows.size()),
                                 khz ? "No, Position(ppm), Frequency(kHz), Amplitude, Height(%)"
                                     : "No, Position(ppm), Frequency(Hz), Amplitude, Height(%)"};
  for (const editing::Peak_Row& r : rows)
    lines.push_back(Format_Number(r.number, "####0") + ", " + Format_Number(r.ppm, "#####0.0####") + ", " +
                    Format_Number(r.freq, "######0.0###") + ", " + Format_Number(r.height, "######0.0##") + ", " +
                    Format_Number(r.strength, "####0.0##"));
  return lines;
}

std::vector<std::string> Report_Peak_Lines(Session& s, const std::vector<editing::Peak_Row>& rows) {
  double strongest = 0;
  for (const editing::Peak_Row& r : rows) strongest = std::max(strongest, r.height);
  auto keyed = [](const char* key, const std::string& value) { return Pad_Right(key, 7) + value; };
  const double sf = s.Spectrum_Frequency > 0 ? s.Spectrum_Frequency : 1.0;
  std::vector<std::string> lines{
      keyed("PEAK", Format_Number(double(rows.size()), "######0")),
      keyed("MXINT", Format_Number(strongest, "######0.0000000")),
      keyed("RESOL", Format_Number(s.Param.RESOL, "######0.0000000") + " Hz"),
      keyed("RESOL", Format_Number(s.Param.RESOL / sf, "######0.0000000") + " PPM"),
      keyed("EXREF", Format_Number(s.Param.SMEXR, "######0.0000000") + " PPM"),
      keyed("ABOBS", Format_Number(s.Observe_Frequency * 1000.0, "######0.0000000") + " KHz"),
      keyed("NGAIN", "1"),
      "COMNT  " + s.Param.COMNT,
      "",
      "NO.           PPM      INT(%)      FREQ(Hz)  POSITION  BAR GRAPH"};
  const auto count = static_cast<int32_t>(rows.size());
  for (int32_t k = 0; k < count; ++k) {
    const editing::Peak_Row& r = rows[static_cast<std::size_t>(k)];
    // The list index of the row, for its point: rows run reversed under "PEAK LIST DIRECT".
    const int32_t i = rows.front().number == 1 ? k : count - 1 - k;
    const int32_t bar = static_cast<int32_t>(std::nearbyint(std::clamp(r.strength, 0.0, 100.0) * 22 / 100));
    lines.push_back(Pad_Left(std::to_string(r.number), 3) + Pad_Left(Format_Number(r.ppm, "###0.0000"), 14) +
                    Pad_Left(Format_Number(r.strength, "##0.000"), 12) +
                    Pad_Left(Format_Number(r.freq, "#####0.000"), 14) +
                    Pad_Left(std::to_string(s.Peaks[static_cast<std::size_t>(i)].Point), 10) + "  " +
                    std::string(static_cast<std::size_t>(bar), '+'));
  }
  return lines;
}

// Position of Spec_Re index p in the unit of the x axis.
double Axis_Value(const Session& s, int32_t p) {
  const double ppm = s.Spec_Axis[static_cast<std::size_t>(std::clamp<int32_t>(p, 0, static_cast<int32_t>(s.Spec_Axis.size()) - 1))];
  return s.Axis_Unit == 1 ? ppm * s.Spectrum_Frequency : s.Axis_Unit == 2 ? ppm * s.Spectrum_Frequency * 0.001 : ppm;
}

// Scale from a raw sum to the value shown: the reference region's worth.
double Shown_Unit(const Session& s) {
  const auto n = static_cast<int32_t>(s.Integrals.size());
  if (s.Integ_Ref_Index < 0 || s.Integ_Ref_Index >= n) return 1;
  const double ref = s.Integrals[static_cast<std::size_t>(s.Integ_Ref_Index)].Value;
  return ref == 0 ? 1.0 : s.Integ_Ref / ref;
}

}  // namespace

std::string List_Default_Name(const std::string& open_name, const List_File_Kind& kind) {
  std::filesystem::path p(open_name.empty() ? std::string("Untitled") : open_name);
  std::string tail = kind.tail;
  if (!tail.empty() && tail.back() == '.') tail.pop_back();
  return (p.parent_path() / (p.stem().string() + tail + "." + kind.ext)).string();
}

int Write_Peak_List(Session& s, const std::string& path, Peak_List_Layout layout) {
  if (s.Peaks.empty() || s.Spec_Axis.empty()) return 1;
  const bool khz = s.settings.Int("PEAK-VAL UNIT") == 2;
  const std::vector<editing::Peak_Row> rows = editing::Peak_List_Rows(s, layout == Peak_List_Layout::Comma && khz);
  return Write_Export_Lines(s, path, layout == Peak_List_Layout::Comma ? Comma_Peak_Lines(s, rows, khz) : Report_Peak_Lines(s, rows));
}

int Write_Integral_List(Session& s, const std::string& path) {
  if (s.Integrals.empty() || s.Spec_Axis.empty()) return 1;
  const char* unit = s.Axis_Unit == 1 ? "Hz" : s.Axis_Unit == 2 ? "kHz" : "ppm";
  std::vector<std::string> lines{"List of Integral Intensity", File_Line(s), Comment_Line(s),
                                 std::string("No, Integral, Start(") + unit + "), End(" + unit + "), B0/Ymax, B1/Ymax"};
  const char* position = s.Param.OBNUC == "1H" ? "####0.00" : "#0.00000";
  for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i) {
    const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
    const double v = editing::Integ_Shown_Value(s, i);
    lines.push_back(std::to_string(i + 1) + ", " + (v == 0 ? std::string("0") : Format_Number(v, "##.00000")) + ", " +
                    Format_Number(Axis_Value(s, r.Start_Point), position) + ", " +
                    Format_Number(Axis_Value(s, r.End_Point), position) + ", " + Format_Number(r.B0, "###0.0#####") +
                    ", " + Format_Number(r.B1, "###0.0#####"));
  }
  return Write_Export_Lines(s, path, lines);
}

int Write_Integral_Curve(Session& s, const std::string& path) {
  if (s.Integrals.empty() || s.Spec_Axis.empty() || s.Spec_Points <= 0) return 1;
  for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i) editing::Calc_Integral(s, i);
  const double unit = Shown_Unit(s);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < s.Integrals.size(); ++i) {
    const Integ_Rec& r = s.Integrals[i];
    lines.push_back("No.= " + std::to_string(i + 1));
    editing::Walk_Integral(s, r, [&](int32_t k, double sum) {
      lines.push_back(Format_Number(s.Spec_Axis[static_cast<std::size_t>(k)], "##0.00000") + ", " +
                      Format_Number(sum * unit, "0.000000E+"));
    });
  }
  return Write_Export_Lines(s, path, lines);
}

}  // namespace tevo::datafiles
