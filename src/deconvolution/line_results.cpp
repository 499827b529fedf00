#include "deconvolution/line_results.h"

#include <cstddef>
#include <cstdio>

#include "datafiles/vendor_text.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::deconvolution {

std::vector<Line_Result_Row> Line_Result_Rows(const Sim_Peaks& peaks, float axis0, double freq) {
  const std::vector<float> relative = Relative_Areas(peaks);
  std::vector<Line_Result_Row> rows;
  for (int32_t k = 0; k < peaks.Sim_Peak_Count; ++k) {
    const auto i = static_cast<std::size_t>(k);
    Line_Result_Row r;
    r.number = k + 1;
    r.ppm = static_cast<double>(peaks.Peak_Pos[i]) + axis0;
    r.hz = r.ppm * freq;
    r.width = peaks.Peak_Width[i];
    r.height = peaks.Peak_Height[i];
    r.gauss = peaks.Peak_Gauss[i];
    r.area = Peak_Area(r.height, r.width, r.gauss);
    r.relative = relative[i];
    r.text = {std::to_string(r.number),          Format_Number(r.ppm, "##0.0000"),
              Format_Number(r.hz, "####0.00"),   Format_Number(r.width, "#0.0000"),
              Format_Number(r.height, "###0.0000"), Format_Number(r.gauss, "0.000"),
              Format_Number(r.relative, "##0.0000")};
    rows.push_back(std::move(r));
  }
  return rows;
}

namespace {
template <class Texts>
std::string Comma_Line(const Texts& texts) {
  std::string line;
  bool first = true;
  for (const auto& t : texts) line += (first ? "" : ", ") + std::string(t), first = false;
  return line;
}
}  // namespace

int Write_Line_Results(Session& s, const Sim_Peaks& peaks, float axis0, const std::string& path) {
  if (peaks.Sim_Peak_Count <= 0) return 1;
  std::vector<std::string> lines{Comma_Line(Line_Result_Heads)};
  for (const Line_Result_Row& r : Line_Result_Rows(peaks, axis0, s.Spectrum_Frequency)) lines.push_back(Comma_Line(r.text));
  return datafiles::Write_Export_Lines(s, path, lines);
}

int Write_Line_Curves(Session& s, const Sim_State& st, const std::string& path) {
  if (s.Spec_Points <= 0 || s.Spec_Axis.empty()) return 1;
  const double f = s.Spectrum_Frequency;
  const float axis0 = Sim_Axis0(s);
  const std::vector<float> trial = Sim_Trial(s, st.Peaks);
  const auto general = [](double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g, ", v);
    return std::string(text);
  };
  std::vector<std::string> lines;
  for (int32_t p = st.Range_First; p <= st.Range_Last && p < s.Spec_Points; ++p) {
    const double x = s.Spec_Axis[static_cast<std::size_t>(p)];
    std::string line = general(x) + general(Sim_Spectrum_Value(s, p)) + general(Line_Value(trial, x, f));
    for (int32_t k = 0; k < st.Peaks.Sim_Peak_Count; ++k) {
      const auto i = static_cast<std::size_t>(k);
      line += general(Line_Shape(st.Peaks.Peak_Pos[i] + axis0, st.Peaks.Peak_Width[i], st.Peaks.Peak_Height[i],
                                 st.Peaks.Peak_Gauss[i], x, f));
    }
    lines.push_back(std::move(line));
  }
  return datafiles::Write_Export_Lines(s, path, lines);
}

}  // namespace tevo::deconvolution
