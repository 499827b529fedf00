#include "deconvolution/line_results.h"

#include <cstddef>

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

}  // namespace tevo::deconvolution
