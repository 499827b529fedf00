// tevo1d-cli deconvolve PATH --range LEFT,RIGHT [--peak PPM[:WIDTH_HZ[:GAUSS]] ...]
// [--from-peaks] [--json] [-o FILE]: the line separation without its
// window. A FID is processed with the defaults; the start lines come from
// the options and/or the peak search inside the range, each with the
// spectrum's height at its position; the lines inside the range are fitted
// by the window's simplex until it converges, again from its result
// while that lowers the criterion. Prints each line's position, width,
// height, Gaussian share, area and relative area, the criterion and (in
// JSON) the largest residual; -o writes the result file. Heights are in
// units of the largest magnitude.
#include <nlohmann/json.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "commands.h"
#include "deconvolution/line_edit.h"
#include "deconvolution/line_results.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/messages.h"
#include "session/number_text.h"

namespace tevo::cli {

namespace {

struct Start_Line {
  double ppm = 0;
  float width = -1, gauss = -1;  // < 0: the shared start value
};

// "PPM[:WIDTH_HZ[:GAUSS]]" with a width above 0 and a share within 0 .. 1.
bool Parse_Start_Line(const std::string& text, Start_Line& line) {
  std::stringstream in(text);
  std::string field;
  double v[3] = {0, -1, -1};
  int n = 0;
  while (std::getline(in, field, ':')) {
    char* end = nullptr;
    if (n == 3 || field.empty()) return false;
    v[n++] = std::strtod(field.c_str(), &end);
    if (*end != '\0' || !std::isfinite(v[n - 1])) return false;
  }
  if (n == 0 || (n > 1 && v[1] <= 0) || (n > 2 && (v[2] < 0 || v[2] > 1))) return false;
  line = {v[0], static_cast<float>(v[1]), static_cast<float>(v[2])};
  return true;
}

}  // namespace

void Register_Deconvolve(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("deconvolve", "separate overlapping lines by fitting");
  static std::string path, range, out;
  static std::vector<std::string> peak_texts;
  static bool from_peaks = false, json = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("--range", range, "LEFT,RIGHT in ppm: the calculation range")->required();
  cmd->add_option("--peak", peak_texts, "PPM[:WIDTH_HZ[:GAUSS]]: a start line (repeatable)");
  cmd->add_flag("--from-peaks", from_peaks, "start lines from the peak search inside the range");
  cmd->add_option("-o,--output", out, "result file to write");
  cmd->add_flag("--json", json, "print the lines as JSON");
  cmd->callback([&ctx] {
    float left = 0, right = 0;
    if (!Parse_Ppm_Range(range, left, right) || left == right) {
      std::cerr << "deconvolve: --range wants LEFT,RIGHT in ppm, two different values\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    std::vector<Start_Line> starts;
    for (const std::string& t : peak_texts) {
      if (!Parse_Start_Line(t, starts.emplace_back())) {
        std::cerr << "deconvolve: --peak wants PPM[:WIDTH_HZ[:GAUSS]] with a width above 0 and GAUSS in 0..1, not "
                  << t << "\n";
        ctx.exit_code = Exit_Usage;
        return;
      }
    }
    if (starts.empty() && !from_peaks) {
      std::cerr << "deconvolve: give start lines with --peak or --from-peaks\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "deconvolve"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    const float hi = std::max(left, right), lo = std::min(left, right);
    const float axis_lo = std::min(s.Spec_Axis.front(), s.Spec_Axis.back());
    const float axis_hi = std::max(s.Spec_Axis.front(), s.Spec_Axis.back());
    if (hi <= axis_lo || lo >= axis_hi) {
      std::cerr << "deconvolve: the range " << range << " lies outside the spectrum (" << axis_lo << " to " << axis_hi
                << " ppm)\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    deconvolution::Sim_State st;
    s.X_Left = hi;
    s.X_Right = lo;
    deconvolution::Sim_Open(s, st);
    const float shared_width = st.Default_Width, shared_gauss = st.Default_Gauss;
    for (const Start_Line& l : starts) {
      st.Default_Width = l.width > 0 ? l.width : shared_width;
      st.Default_Gauss = l.gauss >= 0 ? l.gauss : shared_gauss;
      deconvolution::Sim_Add_Peak(s, st, l.ppm);
    }
    st.Default_Width = shared_width;
    st.Default_Gauss = shared_gauss;
    if (from_peaks) {
      editing::Peak_Search_Shown(s);
      for (const Peak_Rec& p : s.Peaks) deconvolution::Sim_Add_Peak(s, st, s.Spec_Axis[static_cast<std::size_t>(p.Point)]);
    }
    deconvolution::Line_Fit fit;
    deconvolution::Sim_Prepare_Fit(s, st, fit);
    if (fit.Fit_Peak_Index.empty()) {
      Show_Message(s, "初期ピークを設定してください", Style_OK, "ピークの設定");
      ctx.exit_code = Exit_Refused;
      return;
    }
    if (fit.Too_Many) std::cerr << "deconvolve: only the first 20 lines inside the range are fitted\n";
    const double f = s.Spectrum_Frequency;
    // The window fits until it converges or the operator stops it, and the
    // operator starts it again while that still improves the fit; here a
    // generous count stands in for the operator.
    deconvolution::Run_Line_Fit_Until_Still(fit, f, 100, 2000000);
    if (fit.Outcome == relaxation::Simplex_Step::Arithmetic_Error) {
      std::cerr << "計算エラー: the fit met a value out of range after " << fit.State.Iterations << " iterations\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    const float axis0 = deconvolution::Sim_Axis0(s);
    deconvolution::Store_Fit(fit, st.Peaks, axis0, st.Descending);
    const float criterion = deconvolution::Line_Criterion(fit.State.Trial, fit.Fit_X, fit.Fit_Y, f);
    const auto rows = deconvolution::Line_Result_Rows(st.Peaks, axis0, f);
    if (json) {
      nlohmann::ordered_json j;
      j["file"] = path;
      j["range"] = {lo, hi};
      j["Max_Abs"] = s.Max_Abs;
      j["lines"] = nlohmann::json::array();
      for (const auto& r : rows)
        j["lines"].push_back({{"number", r.number}, {"ppm", r.ppm}, {"hz", r.hz}, {"width_hz", r.width},
                              {"height", r.height}, {"gauss", r.gauss}, {"area", r.area}, {"relative_area", r.relative}});
      j["criterion"] = criterion;
      // The largest |model - spectrum| over the range, in percent of the
      // range's tallest spectrum point.
      j["residual_max_percent"] = deconvolution::Calc_Residual(fit.State.Trial, fit.Fit_X, fit.Fit_Y, f).limit;
      j["iterations"] = fit.State.Iterations;
      j["converged"] = fit.Outcome == relaxation::Simplex_Step::Converged;
      std::cout << j.dump(2) << "\n";
    } else {
      std::printf("%5s %11s %12s %10s %10s %7s %12s %9s\n", "No", "ppm", "Hz", "width/Hz", "height", "gauss", "area",
                  "area(%)");
      for (const auto& r : rows)
        std::printf("%5d %11.5f %12.3f %10.4f %10.5f %7.3f %12.6g %9.4f\n", r.number, r.ppm, r.hz, r.width, r.height,
                    r.gauss, r.area, r.relative);
      std::printf("Criterion=%s\n", Format_Number(criterion, "#.#####E+##").c_str());
    }
    int st_write = 0;
    if (!out.empty()) st_write = deconvolution::Write_Line_Results(s, st.Peaks, axis0, out);
    ctx.exit_code = Exit_From_Status(st_write < 0 ? st_write : 0);
  });
}

}  // namespace tevo::cli
