// tevo1d-cli integrate PATH --region LEFT,RIGHT [--region ...]
// [--reference K=VALUE] [--baseline auto] [--json] [-o LIST]: integral
// regions in ppm, each levelled from its ends as a new region of the
// integral mode is, on a data file (a FID processed with the defaults
// first), optionally after the automatic baseline. Prints each region's
// value relative to the reference region K (1-based, worth VALUE).
#include <nlohmann/json.hpp>
#include <cstdio>
#include <iostream>
#include <vector>

#include "commands.h"
#include "datafiles/list_files.h"
#include "display/view_commands.h"
#include "editing/baseline.h"
#include "editing/integrals.h"

namespace tevo::cli {

namespace {

bool Parse_Reference(const std::string& text, int& k, float& value) {
  char extra = 0;
  return std::sscanf(text.c_str(), "%d=%f%c", &k, &value, &extra) == 2 && k >= 1;
}

// The automatic points and their subtraction, as the baseline mode's
// button 2 and "O K" do them.
void Auto_Baseline(Session& s) {
  editing::m23_Click(s);
  editing::Base_Auto_Points(s);
  editing::BaseCorCommand2_Click(s);
}

}  // namespace

void Register_Integrate(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("integrate", "integrate regions of a data file");
  static std::vector<std::string> regions;
  static std::string path, reference, baseline, out;
  static bool json = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("--region", regions, "LEFT,RIGHT in ppm; repeat for more regions")->required();
  cmd->add_option("--reference", reference, "K=VALUE: region K (from 1) is worth VALUE (default 1=1)");
  cmd->add_option("--baseline", baseline, "auto: automatic baseline correction first")
      ->check(CLI::IsMember({"auto"}));
  cmd->add_option("-o,--output", out, "integral list file to write");
  cmd->add_flag("--json", json, "print the regions as JSON");
  cmd->callback([&ctx] {
    std::vector<std::pair<float, float>> ppm;
    for (const std::string& r : regions) {
      float a = 0, b = 0;
      if (!Parse_Ppm_Range(r, a, b)) {
        std::cerr << "integrate: --region wants LEFT,RIGHT in ppm\n";
        ctx.exit_code = Exit_Usage;
        return;
      }
      ppm.emplace_back(a, b);
    }
    int ref_k = 1;
    float ref_value = 1;
    if (!reference.empty() && (!Parse_Reference(reference, ref_k, ref_value) || ref_k > static_cast<int>(ppm.size()))) {
      std::cerr << "integrate: --reference wants K=VALUE with K a region number\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "integrate"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (baseline == "auto") Auto_Baseline(s);
    s.Integrals.clear();
    for (const auto& [a, b] : ppm) {
      const int32_t p = editing::Spec_Point_Of_Ppm(s, a), q = editing::Spec_Point_Of_Ppm(s, b);
      if (editing::Integ_Add(s, std::max(p, q), std::min(p, q)) < 0) {
        std::cerr << "integrate: region " << a << "," << b << " is empty\n";
        ctx.exit_code = Exit_Refused;
        return;
      }
    }
    editing::Integ_Set_Reference(s, ref_k - 1, ref_value);
    if (json) {
      nlohmann::ordered_json j;
      j["file"] = path;
      j["baseline_points"] = baseline == "auto";
      j["reference"] = {{"region", ref_k}, {"value", ref_value}};
      j["regions"] = nlohmann::json::array();
      for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i) {
        const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
        j["regions"].push_back({{"number", i + 1},
                                {"left", ppm[static_cast<std::size_t>(i)].first},
                                {"right", ppm[static_cast<std::size_t>(i)].second},
                                {"value", editing::Integ_Shown_Value(s, i)},
                                {"raw", r.Value},
                                {"B0", r.B0},
                                {"B1", r.B1}});
      }
      std::cout << j.dump(2) << "\n";
    } else {
      std::printf("%4s %10s %10s %14s %14s\n", "No", "left", "right", "value", "raw");
      for (int32_t i = 0; i < static_cast<int32_t>(s.Integrals.size()); ++i)
        std::printf("%4d %10.4f %10.4f %14.6f %14.6g\n", i + 1, ppm[static_cast<std::size_t>(i)].first,
                    ppm[static_cast<std::size_t>(i)].second, editing::Integ_Shown_Value(s, i),
                    s.Integrals[static_cast<std::size_t>(i)].Value);
    }
    int st = 0;
    if (!out.empty()) st = datafiles::Write_Integral_List(s, out);
    ctx.exit_code = Exit_From_Status(st < 0 ? st : 0);
  });
}

}  // namespace tevo::cli
