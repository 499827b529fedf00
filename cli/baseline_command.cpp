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
    if (!Output_Usable(out, "baseline")) {
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "baseline"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    editing::m23_Click(s);
    if (average) s.Base_Average = static_cast<int16_t>(*average);
    const int32_t points = editing::Base_Auto_Points(s);
    editing::BaseCorCommand2_Click(s);
    std::cerr << "baseline: " << points << " correction points\n";
    ctx.exit_code = Exit_From_Status(Write_Output(s, out));
  });
}

}  // namespace tevo::cli
