// tevo1d-cli relax PATH [--peak PPM | --region LEFT,RIGHT] [--fix A0=..,k=..,B=..]
// [--json]: an array data set (a relaxation series) processed row by row
// with the defaults, the phase found on the row the series is phased on;
// one intensity per row (the height of the peak nearest PPM, or the sum over
// the region), and the exponential fitted by the simplex of the T1/T2
// window. Prints each delay and intensity, A0, k, B, T = 1/k and the final
// criterion. When the window's start values end in an arithmetic error, k
// starts once more from 1 / the middle delay.
#include <nlohmann/json.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <optional>
#include <sstream>

#include "commands.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "relaxation/array_data.h"
#include "relaxation/relaxation_fit.h"

namespace tevo::cli {

namespace {

// "A0=1,k=0.5": the parameters named get their value and are held fixed.
bool Parse_Fix(const std::string& text, relaxation::Relax_Fit& fit) {
  std::stringstream in(text);
  std::string item;
  while (std::getline(in, item, ',')) {
    const auto eq = item.find('=');
    if (eq == std::string::npos) return false;
    const std::string name = item.substr(0, eq);
    const int p = name == "A0" ? relaxation::Relax_A0 : name == "k" ? relaxation::Relax_K : name == "B" ? relaxation::Relax_B : -1;
    char* end = nullptr;
    const std::string value = item.substr(eq + 1);
    const float v = std::strtof(value.c_str(), &end);
    if (p < 0 || value.empty() || *end != '\0') return false;
    fit.Start_Value[static_cast<std::size_t>(p)] = v;
    fit.Fix_Flag[static_cast<std::size_t>(p)] = 1;
  }
  return true;
}

}  // namespace

void Register_Relax(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("relax", "fit T1/T2 to an array data set");
  static std::string path, region, fix;
  static std::optional<float> peak;
  static bool json = false;
  cmd->add_option("PATH", path, "array data file (a relaxation series)")->required();
  cmd->add_option("--peak", peak, "ppm of the line whose height is measured");
  cmd->add_option("--region", region, "LEFT,RIGHT in ppm: the sum over the region is measured");
  cmd->add_option("--fix", fix, "A0=..,k=..,B=..: parameters held at these values");
  cmd->add_flag("--json", json, "print the series and the fit as JSON");
  cmd->callback([&ctx] {
    float left = 0, right = 0;
    if (peak.has_value() == !region.empty() || (!region.empty() && !Parse_Ppm_Range(region, left, right))) {
      std::cerr << "relax: give either --peak PPM or --region LEFT,RIGHT in ppm\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    relaxation::Relax_Fit fit;
    if (!fix.empty() && !Parse_Fix(fix, fit)) {
      std::cerr << "relax: --fix wants A0=VALUE,k=VALUE,B=VALUE (any of them)\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    const auto phase_row = [](const Session& s, signal::Process_Request& req) { req.row = relaxation::Phase_Row(s); };
    if (int rc = Open_Data(ctx, path, {}, nullptr, nullptr, phase_row); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (s.Array_Rows < 3 || s.Spec_Points <= 0) {
      std::cerr << "relax: " << path << " is not a series of three rows or more\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    int32_t selection = 0, first = 0, last = 0;
    if (peak) {
      // The peak of the phased row nearest the given shift.
      s.Array_Row = relaxation::Phase_Row(s);
      Build_Disp_Arrays(s, 0);
      editing::Peak_Search_All(s);
      if (s.Peaks.empty()) {
        std::cerr << "relax: no peak found\n";
        ctx.exit_code = Exit_Refused;
        return;
      }
      const int32_t want = editing::Spec_Point_Of_Ppm(s, *peak);
      const auto nearest = std::min_element(s.Peaks.begin(), s.Peaks.end(), [&](const Peak_Rec& a, const Peak_Rec& b) {
        return std::abs(a.Point - want) < std::abs(b.Point - want);
      });
      s.Peaks = {*nearest};
      selection = 1;
    } else {
      first = std::max(1, editing::Spec_Point_Of_Ppm(s, std::min(left, right)));
      last = std::max(1, editing::Spec_Point_Of_Ppm(s, std::max(left, right)));
    }
    const relaxation::Relax_Fit held = fit;
    if (relaxation::Select_Fit_Data(s, selection, first, last, true, 1.0f, fit) != relaxation::Fit_Data_Status::Ready) {
      std::cerr << "relax: the delays or the intensities of the series are all alike\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    for (std::size_t p = 0; p < relaxation::Relax_Param_Count; ++p)
      if (held.Fix_Flag[p]) fit.Start_Value[p] = held.Start_Value[p];
    // The window runs until it converges or the operator stops it; here a
    // generous count stands in for the operator.
    const auto run = [&] {
      relaxation::Run_Relax_Fit(fit, [](const relaxation::Simplex_State& st) { return st.Iterations < 1000000; });
    };
    run();
    // The window's start k comes from the slopes of neighbouring points and
    // can blow up where two of them lie at the plateau; the operator would
    // type another start value. Here k starts once more from the middle delay.
    bool restarted = false;
    if (fit.Outcome == relaxation::Simplex_Step::Arithmetic_Error && !fit.Fix_Flag[relaxation::Relax_K]) {
      const float k0 = 1.0f / std::max(fit.Data_T[fit.Data_T.size() / 2], 1e-6f);
      fit.Start_Value[relaxation::Relax_K] = k0;
      fit.Step_Value[relaxation::Relax_K] = k0 * 0.1f;
      fit.Tol_Value[relaxation::Relax_K] = k0 * 0.0001f;
      restarted = true;
      run();
    }
    if (fit.Outcome == relaxation::Simplex_Step::Arithmetic_Error) {
      std::cerr << "計算エラー: " << relaxation::Fit_Error_Text(fit.State.Iterations) << "\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    const std::vector<float>& v = fit.State.Trial;
    const float k = v[relaxation::Relax_K];
    if (json) {
      nlohmann::ordered_json j;
      j["file"] = path;
      j["delay_name"] = s.Delay_Name;
      j["series"] = nlohmann::json::array();
      for (std::size_t i = 0; i < fit.Data_T.size(); ++i) j["series"].push_back({{"t", fit.Data_T[i]}, {"y", fit.Data_Y[i]}});
      j["A0"] = v[relaxation::Relax_A0];
      j["k"] = k;
      j["B"] = v[relaxation::Relax_B];
      j["T"] = k != 0 ? nlohmann::json(1.0 / k) : nlohmann::json(nullptr);
      j["criterion"] = fit.Final_Criterion;
      j["iterations"] = fit.State.Iterations;
      j["converged"] = fit.Outcome == relaxation::Simplex_Step::Converged;
      j["k_started_from_delays"] = restarted;
      std::cout << j.dump(2) << "\n";
    } else {
      std::printf("%14s %12s\n", s.Delay_Label.empty() ? "t / s" : s.Delay_Label.c_str(), "intensity");
      for (std::size_t i = 0; i < fit.Data_T.size(); ++i) std::printf("%14.6g %12.6f\n", fit.Data_T[i], fit.Data_Y[i]);
      std::printf("A0 = %.6g\nk  = %.6g s-1\nB  = %.6g\nT  = %s s\n%s\n", v[relaxation::Relax_A0], k,
                  v[relaxation::Relax_B], relaxation::Relax_T_Text(k).c_str(),
                  relaxation::Criterion_Text(fit.Final_Criterion).c_str());
    }
    ctx.exit_code = Exit_Good;
  });
}

}  // namespace tevo::cli
