#include "editing/list_tables.h"

#include <algorithm>

#include "editing/integral_sum.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

std::string Pad(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

const char* Ppm_Format(const Session& s) { return s.Param.OBNUC == "1H" ? "###0.000" : "##0.0000"; }

}  // namespace

List_Table Peak_List_Table(Session& s) {
  const bool khz = s.Axis_Unit == 2;
  List_Table t{{"番号", "ppm", khz ? "kHz" : "Hz", "実強度", "強度"}, {}};
  for (const Peak_Row& r : Peak_List_Rows(s, khz))
    t.rows.push_back({Pad(std::to_string(r.number), 5), Format_Number(r.ppm, Ppm_Format(s)),
                      Pad(Format_Number(r.freq, khz ? "#0.0000" : "####0.0"), 11), Format_Number(r.height, "0"),
                      Pad(Format_Number(r.strength, "###0.00"), 8)});
  return t;
}

List_Table Integral_List_Table(Session& s) {
  const char* unit = s.Axis_Unit == 1 ? "Hz" : s.Axis_Unit == 2 ? "kHz" : "ppm";
  const char* position = s.Axis_Unit == 1 ? "#####0.0" : s.Axis_Unit == 2 ? "#0.00000" : Ppm_Format(s);
  const double scale = s.Axis_Unit == 1 ? s.Spectrum_Frequency : s.Axis_Unit == 2 ? s.Spectrum_Frequency * 0.001 : 1.0;
  List_Table t{{"番号", std::string("Start(") + unit + ")", std::string("End(") + unit + ")", "積分値", "B0", "B1"}, {}};
  const auto last = static_cast<int32_t>(s.Spec_Axis.size()) - 1;
  for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()) && last >= 0; ++i) {
    Calc_Integral(s, i);
    const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
    auto at = [&](int32_t p) { return s.Spec_Axis[static_cast<std::size_t>(std::clamp(p, 0, last))] * scale; };
    t.rows.push_back({std::to_string(i + 1), Format_Number(at(r.Start_Point), position),
                      Format_Number(at(r.End_Point), position), Format_Number(Integ_Shown_Value(s, i), "###0.000"),
                      Format_Number(r.B0, "###0.0#####"), Format_Number(r.B1, "###0.0#####")});
  }
  return t;
}

}  // namespace tevo::editing
