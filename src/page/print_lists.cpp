#include "page/print_lists.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "deconvolution/line_results.h"
#include "display/style.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "relaxation/array_data.h"
#include "page/markup.h"
#include "page/page_model.h"
#include "page/printer_setup.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::page {

using display::Setting_Int;

namespace {

// A column: its head (markup) and the template of its numbers, split at the
// decimal point so that the point lines up. A text column (the bar of the
// JEOL form) starts its cells where the whole template ends.
struct Column {
  std::string head, whole, fraction;
  bool text = false;
};

struct Table {
  bool file_head = true;  // the "File:" and "Comment:" lines of the head block
  std::vector<std::string> titles;  // markup lines under the head block
  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;
};

// Where a table goes: a rectangle in pixels, its font and whether the head
// block is written.
struct Table_Place {
  double left = 0, top = 0, right = 0, bottom = 0;
  Font_Rec font;
  bool head = true;
};

// Paints page `page` of a table inside its place; true when more pages
// follow.
bool Print_Table(const Session& s, platform::Surface& surf, const Table_Place& place, double k,
                 int page, const Table& t) {
  const Font_Rec& font = place.font;
  const double h = Measure_Text(surf, "X", font, k).Text_H;
  const double p = k * font.Size * 1.07;
  const double left = place.left + 2 * h;
  double y = place.top;
  auto line = [&](const std::string& markup, double x) {
    Draw_Markup(surf, 1, markup, x, y, 0, 0, 0, 0, font, k);
  };
  if (place.head && t.file_head) {
    line(Plain_To_Inner("File:  " + s.Param.Data_File, font.Charset), left);
    y += p;
    line(Plain_To_Inner("Comment:  " + s.Param.COMNT, font.Charset), left);
    y += p;
    // An array names the row the list was taken from.
    if (s.Array_Rows > 1) {
      line("\\< Data No.= " + std::to_string(s.Array_Row + 1), left);
      y += p;
    }
    y += 0.5 * p;
  }
  for (const std::string& title : t.titles) {
    line(title, left);
    y += 1.5 * p;
  }
  std::vector<double> x, point;  // column start, decimal point
  double at = left;
  for (const Column& c : t.columns) {
    const double whole = Measure_Markup(surf, c.whole, font, k);
    const double width = std::max(Measure_Markup(surf, c.head, font, k),
                                  whole + Measure_Markup(surf, c.fraction, font, k));
    x.push_back(at);
    point.push_back(at + whole);
    at += width + 2 * h;
  }
  for (std::size_t c = 0; c < t.columns.size(); ++c) line(t.columns[c].head, x[c]);
  y += 1.5 * p;
  const int per_page = std::max(1, static_cast<int>((place.bottom - y) / p));
  const std::size_t first = static_cast<std::size_t>(page) * static_cast<std::size_t>(per_page);
  for (std::size_t r = first; r < t.rows.size() && r < first + static_cast<std::size_t>(per_page); ++r) {
    for (std::size_t c = 0; c < t.rows[r].size() && c < x.size(); ++c) {
      const std::string& v = t.rows[r][c];
      const std::string whole = v.substr(0, v.find('.'));
      line(v, t.columns[c].text ? point[c] : point[c] - Measure_Markup(surf, whole, font, k));
    }
    y += p;
  }
  return first + static_cast<std::size_t>(per_page) < t.rows.size();
}

// The place of a list page: the sheet inside its margin, the list font.
Table_Place Sheet_Place(const Session& s, const platform::Surface& surf, const List_Page& pg) {
  return {static_cast<double>(pg.margin), static_cast<double>(pg.margin),
          static_cast<double>(surf.Width() - pg.margin), static_cast<double>(surf.Height() - pg.margin),
          List_Font(s), Setting_Int(s, "PRNT LIST HEAD", 1) == 1};
}

bool Proton(const Session& s) { return s.Param.OBNUC == "1H"; }

}  // namespace

void List_Paper_Cm(const Session& s, int code, double& width, double& height) {
  const int list_code = code > 0 ? code : List_Paper_Value(s, "PAPER SIZE LIST", 9);
  Paper_Size(list_code, List_Paper_Value(s, "PAPER ORIENTLIST", 0), height, width, true);
}

int List_Orient(const Session& s) { return List_Paper_Value(s, "PAPER ORIENTLIST", 0); }

List_Page List_Page_At(int n, double dpi) { return {n, Sheet_Pixels(1.5, dpi), dpi / 72.0}; }

Font_Rec List_Font(const Session& s) {
  Font_Rec f;
  f.Face = Fonts().Default_Font;
  return Print_Font(s, "LISTS FONT NAME", "LISTS FONT SIZE", "LISTS FONT BOLD", "LISTS FONT ITAL", f);
}

bool Store_List_Setup(Session& s, int orient, const Font_Rec& font) {
  bool changed = false;
  if (List_Paper_Value(s, "PAPER ORIENTLIST", 0) != orient) {
    s.settings.Set("PAPER ORIENTLIST", std::to_string(orient));
    changed = true;
  }
  const Font_Rec now = List_Font(s);
  if (now.Face == font.Face && now.Size == font.Size && now.Bold == font.Bold && now.Italic == font.Italic)
    return changed;
  s.settings.Set("LISTS FONT NAME", font.Face);
  display::Store_Setting(s, "LISTS FONT SIZE", font.Size);
  display::Store_Setting(s, "LISTS FONT BOLD", font.Bold);
  display::Store_Setting(s, "LISTS FONT ITAL", font.Italic);
  return true;
}

namespace {

// The compact peak table with the columns whose switches (No., ppm, Hz,
// Height, Amp.) are on.
Table Peak_Table(Session& s, const char* const (&keys)[5]) {
  const bool khz = s.Axis_Unit == 2, h1 = Proton(s);
  const char* ppm_format = h1 ? "###0.0000" : "####0.00";
  const char* freq_format = khz ? (h1 ? "###0.00000" : "####0.0000") : (h1 ? "######0.00" : "#######0.0");
  bool on[5];
  for (int c = 0; c < 5; ++c) on[c] = Setting_Int(s, keys[c], 1) == 1;
  const Column all[] = {{"\\< No.", "1234", ""},
                        {"\\< ppm", "12345678", h1 ? ".1234" : ".123"},
                        {khz ? "\\< kHz" : "\\< Hz", "1234567890", khz ? (h1 ? ".12345" : ".1234") : (h1 ? ".12" : ".1")},
                        {"\\< Height", "1234567890", ""},
                        {"\\< Amp.", "1234", ".12"}};
  Table t;
  for (int c = 0; c < 5; ++c)
    if (on[c]) t.columns.push_back(all[c]);
  for (const editing::Peak_Row& r : editing::Peak_List_Rows(s, khz)) {
    const std::string cells[] = {std::to_string(r.number), Format_Number(r.ppm, ppm_format),
                                 Format_Number(r.freq, freq_format), Format_Number(r.height, "#########0"),
                                 Format_Number(r.strength, "##0.00")};
    std::vector<std::string> row;
    for (int c = 0; c < 5; ++c)
      if (on[c]) row.push_back(cells[c]);
    t.rows.push_back(std::move(row));
  }
  return t;
}

}  // namespace

bool Print_Peak_List(Session& s, platform::Surface& surf, const List_Page& pg) {
  static const char* const keys[5] = {"PRNT LIST NO", "PRNT LIST PPM", "PRNT LIST HZ", "PRNT LIST HEIGHT",
                                      "PRNT LIST INTENS"};
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, Peak_Table(s, keys));
}

void Draw_Page_Peak_List(Session& s, platform::Surface& surf, int left, int top, int right,
                         int bottom, double scale) {
  static const char* const keys[5] = {"PRNT PEAKLIST NO", "PRNT PAEK PPM", "PRNT PEAK HZ",
                                      "PRNT PEAK HEIGHT", "PRNT PEAK INTENS"};
  Font_Rec font;
  font.Face = Fonts().Default_Font;
  font.Size = 9;
  font = Print_Font(s, "PEAKLIST FONT", "PEAKL FONT SIZE", "PEAKL FONT BOLD", "PEAKL FONT ITAL", font);
  const Table_Place place{left + 0.0, top + 0.0, right + 0.0, bottom + 0.0, font,
                          Setting_Int(s, "PRNT PEAK HEAD", 1) == 1};
  Print_Table(s, surf, place, scale, 0, Peak_Table(s, keys));
}

bool Print_Integral_List(Session& s, platform::Surface& surf, const List_Page& pg) {
  const bool khz = s.Axis_Unit == 2, h1 = Proton(s);
  const char* ppm_format = h1 ? "###0.0000" : "####0.00";
  const char* freq_format = khz ? (h1 ? "###0.00000" : "####0.0000") : (h1 ? "######0.00" : "#######0.0");
  const std::string unit = khz ? "kHz" : "Hz";
  const std::string freq_fraction = khz ? (h1 ? ".12345" : ".1234") : (h1 ? ".12" : ".1");
  Table t;
  t.titles = {"\\< List of Integral Intensity"};
  t.columns = {{"\\< No.", "1234", ""},
               {"\\< Start(ppm)", "12345678", h1 ? ".1234" : ".123"},
               {"\\< End(ppm)", "12345678", h1 ? ".1234" : ".123"},
               {"\\< Start(" + unit + ")", "1234567890", freq_fraction},
               {"\\< End(" + unit + ")", "1234567890", freq_fraction},
               {"\\< Integral", "123456", ".123"},
               {"\\< B0", "1234", ".123456"},
               {"\\< B1", "1234", ".123456"}};
  const double to_freq = s.Spectrum_Frequency / (khz ? 1000.0 : 1.0);
  for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i) {
    const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
    const auto ppm_at = [&](int32_t point) {
      return static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(std::clamp(point, 0, s.Spec_Points - 1))]);
    };
    // The region starts at its high-shift end, the left of the plot.
    const double start = ppm_at(r.End_Point), end = ppm_at(r.Start_Point);
    t.rows.push_back({std::to_string(i + 1), Format_Number(start, ppm_format), Format_Number(end, ppm_format),
                      Format_Number(start * to_freq, freq_format), Format_Number(end * to_freq, freq_format),
                      Format_Number(editing::Integ_Shown_Value(s, i), "#####0.000"),
                      Format_Number(r.B0, "###0.0#####"), Format_Number(r.B1, "###0.0#####")});
  }
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, t);
}

bool Print_Peak_List_Jeol(Session& s, platform::Surface& surf, const List_Page& pg) {
  const bool h1 = Proton(s);
  const std::vector<editing::Peak_Row> peaks = editing::Peak_List_Rows(s, false);
  // The position column counts in the unit of the axis.
  const char* unit = s.Axis_Unit == 2 ? " KHz" : s.Axis_Unit == 1 ? " Hz" : " PPM";
  double largest = 0;
  for (const editing::Peak_Row& r : peaks) largest = std::max(largest, std::fabs(r.height));
  Table t;
  t.file_head = false;
  if (Setting_Int(s, "PRNT LIST HEAD", 1) == 1) {
    const Font_Rec font = List_Font(s);
    t.titles = {"\\< COMNT  " + Plain_To_Inner(s.Param.COMNT, font.Charset),
                "\\< EXREF  " + Format_Number(s.Param.SMEXR, "####0.000") + " PPM     ABOBS  " +
                    Format_Number(s.Spectrum_Frequency, "####0.000") + " MHz     RESOL  " +
                    Format_Number(s.Param.RESOL, "####0.000") + " HZ",
                "\\< MXINT  " + Format_Number(largest, "######0") + "     NGAIN  " +
                    std::to_string(s.Param.RGAIN) + "     PEAK  " + std::to_string(peaks.size())};
  }
  t.columns = {{"\\< NO.", "1234", ""},
               {"\\< PPM", "12345678", h1 ? ".1234" : ".123"},
               {"\\< INT(%)", "1234567", ".1"},
               {"\\< FREQ(HZ)", "123456789012", ".12"},
               {std::string("\\< POSITION") + unit, "1234567", ".1234567"},
               {"\\< BAR GRAPH           ", "100", "1234567890123456789012", true}};
  for (const editing::Peak_Row& r : peaks) {
    const double hz = r.freq;
    const double position = s.Axis_Unit == 2 ? hz / 1000 : s.Axis_Unit == 1 ? hz : r.ppm;
    const char* position_format =
        s.Axis_Unit == 2 ? "######0.0000000" : s.Axis_Unit == 1 ? "##########0.00" : "########0.0000";
    // The bar: 22 "+" for the highest peak, fewer in proportion.
    const double percent = r.strength;
    const int bar = static_cast<int>(std::lround(std::clamp(percent, 0.0, 100.0) * 22 / 100));
    t.rows.push_back({std::to_string(r.number), Format_Number(r.ppm, h1 ? "########0.0000" : "########0.000"),
                      Format_Number(percent, "###0.0"), Format_Number(hz, h1 ? "##########0.00" : "##########0.0"),
                      Format_Number(position, position_format),
                      std::string(static_cast<std::size_t>(bar), '+')});
  }
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, t);
}

namespace {

// A number of the array and XY lists: `decimals` places at most, one fewer
// from 10 up, so that larger values keep their column.
std::string Long_Number(double v, int decimals) {
  if (std::fabs(v) >= 10) --decimals;
  return Format_Number(v, "#######0.0" + std::string(static_cast<std::size_t>(decimals - 1), '#'));
}

}  // namespace

bool Print_Array_List(Session& s, platform::Surface& surf, const List_Page& pg) {
  // The region of the selection, counted from point 1; none sums nothing.
  const int32_t lo = std::min(s.Select_Start, s.Select_End), hi = std::max(s.Select_Start, s.Select_End);
  const int32_t first = lo >= 0 ? std::max(1, lo) : 0, last = lo >= 0 ? std::max(1, hi) : 0;
  const auto ppm_at = [&](int32_t point) {
    return s.Spec_Points > 0 ? static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(std::clamp(point, 0, s.Spec_Points - 1))])
                             : 0.0;
  };
  Table t;
  t.titles = {"\\< Start:  " + Format_Number(ppm_at(last), "####0.000 ppm"),
              "\\< End:    " + Format_Number(ppm_at(first), "####0.000 ppm")};
  t.columns = {{"\\< No.", "1234", ""}, {"\\< Parameter", "12345678", ".12345678"},
               {"\\< Intensity", "12345678", ".12345678"}};
  const std::vector<double> values = relaxation::Array_List_Values(s, first, last);
  for (std::size_t r = 0; r < values.size(); ++r) {
    const double delay = r < s.Delay_List.size() ? s.Delay_List[r] : 0.0;
    t.rows.push_back({std::to_string(r + 1), Long_Number(delay, 8), Long_Number(values[r], 8)});
  }
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, t);
}

bool Print_Sim_List(Session& s, const deconvolution::Sim_Peaks& peaks, platform::Surface& surf,
                    const List_Page& pg) {
  const float axis0 = s.Spec_Points > 0 ? s.Spec_Axis[0] : 0.0f;
  const std::vector<deconvolution::Line_Result_Row> rows =
      deconvolution::Line_Result_Rows(peaks, axis0, s.Spectrum_Frequency);
  double highest = 0;
  for (const auto& r : rows) highest = std::max(highest, std::fabs(static_cast<double>(r.height)));
  Table t;
  t.titles = {"\\<  注:  Gauss-Func. = 1: Gauss,  0: Lorentz"};
  t.columns = {{"\\< No.", "1234", ""},
               {"\\< Position/ppm", "12345678", ".1234"},
               {"\\< Width/Hz", "123456", ".123"},
               {"\\< Height(%)", "1234", ".12"},
               {"\\< Integral(%)", "1234", ".12"},
               {"\\< Gauss-Func.(Area(Height))", "1", ".123"}};
  for (const auto& r : rows)
    t.rows.push_back({std::to_string(r.number), Format_Number(r.ppm, "###0.0000"), Format_Number(r.width, "####0.000"),
                      Format_Number(highest > 0 ? 100 * r.height / highest : 0, "##0.00"),
                      Format_Number(r.relative, "##0.00"), Format_Number(r.gauss, "0.000")});
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, t);
}

bool Print_T1_List(Session& s, platform::Surface& surf, const List_Page& pg) {
  Table t;
  t.titles = {"\\< Operator:  " + Plain_To_Inner(s.User_Name, List_Font(s).Charset)};
  t.columns = {{"\\< No.", "1234", ""}, {"\\<   (X)  ", "12345678", ".1234567"}, {"\\<   (Y)  ", "12345678", ".1234567"}};
  // Seven places, six from 10 up, five from 100 up.
  const auto number = [](double v) { return Long_Number(v, std::fabs(v) >= 100 ? 6 : 7); };
  for (std::size_t i = 0; i < s.Intensity_Pairs.size(); ++i)
    t.rows.push_back({std::to_string(i + 1), number(s.Intensity_Pairs[i].t), number(s.Intensity_Pairs[i].y)});
  return Print_Table(s, surf, Sheet_Place(s, surf, pg), pg.scale, pg.page, t);
}

const char* List_Caption(List_Kind kind) {
  switch (kind) {
    case List_Kind::Peaks: return "プレビュー（Peak List） (";
    case List_Kind::Integrals: return "プレビュー（Integral List） (";
    case List_Kind::Array: return "プレビュー（Integral List(Array)） (";
    case List_Kind::Sim: return "プレビュー（Simulated Peak List） (";
    case List_Kind::T1: return "プレビュー（T1/T2 Intensity List） (";
  }
  return "";
}

bool Print_List(Session& s, List_Kind kind, int16_t form, platform::Surface& surf, const List_Page& pg) {
  switch (kind) {
    case List_Kind::Peaks:
      return form == 1 ? Print_Peak_List_Jeol(s, surf, pg) : Print_Peak_List(s, surf, pg);
    case List_Kind::Integrals: return Print_Integral_List(s, surf, pg);
    case List_Kind::Array: return Print_Array_List(s, surf, pg);
    case List_Kind::T1: return Print_T1_List(s, surf, pg);
    case List_Kind::Sim: break;  // the line window's own peaks: Print_Sim_List
  }
  return false;
}

}  // namespace tevo::page
