// tevo1d-cli baseline PATH --auto [--average N] -o OUT: the automatic
// baseline points of the baseline mode and their subtraction on a data file
// (a FID processed with the defaults first), written in any output format
// of `process`.
#include <iostream>
#include <optional>

#include "commands.h"
#include "display/view_commands.h"
#include "editing/baseline.h"

namespace tevo::cli {

void Register_Baseline(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("baseline", "correct the baseline of a data file and write it as OUT");
  static std::string path, out;
  static bool automatic = false;
  static std::optional<int> average;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_flag("--auto", automatic, "automatic correction points")->required();
  cmd->add_option("--average", average, "half-width of the fit at each point (default: \"AVERAGE POINT\")")
      ->check(CLI::Range(0, 32767));
  cmd->add_option("-o,--output", out, "output file, as for process")->required();
  cmd->callback([&ctx] {
    if (!Known_Output(out)) {
      std::cerr << "baseline: unknown output kind: " << out << " (known: .tv1 .als .dx .jdx .txt .dat .asc)\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Data(ctx, path); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (s.Spec_Points <= 0) {
      std::cerr << "baseline: " << path << " holds no spectrum\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    Build_Disp_Arrays(s, 0);
    display::View_After_Load(s);
    editing::m23_Click(s);
    if (average) s.Base_Average = static_cast<int16_t>(*average);
    const int32_t points = editing::Base_Auto_Points(s);
    editing::BaseCorCommand2_Click(s);
    std::cerr << "baseline: " << points << " correction points\n";
    ctx.exit_code = Exit_From_Status(Write_Output(s, out));
  });
}

}  // namespace tevo::cli
