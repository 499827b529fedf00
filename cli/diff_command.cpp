// tevo1d-cli diff PATH --minus FILE [--shift PPM] [--scale K] -o OUT: the
// difference spectrum of the overlay window. FILE is read into slot 1 by the
// slot read (its own axis, "CHEM"), taken away from the spectrum of PATH
// (a FID processed with the defaults first) moved up the axis by the shift and
// times the scale, and the result is written in any output format of
// `process`.
#include <iostream>

#include "commands.h"
#include "overlay/difference.h"
#include "overlay/slot_read.h"

namespace tevo::cli {

void Register_Diff(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("diff", "write the difference spectrum PATH minus FILE as OUT");
  static std::string path, minus, out;
  static double shift = 0, scale = 1;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("--minus", minus, "data file taken away")->required();
  cmd->add_option("--shift", shift, "ppm by which FILE is moved up the axis before it is taken away (default 0)");
  cmd->add_option("--scale", scale, "factor of FILE (default 1)");
  cmd->add_option("-o,--output", out, "output file, as for process")->required();
  cmd->callback([&ctx] {
    if (!Output_Usable(out, "diff")) {
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "diff"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (const int status = overlay::Read_Overlay_Slot(s, 1, minus, overlay::Slot_Align::Chem); status != 0) {
      std::cerr << "diff: " << minus << " could not be read into a slot\n";
      ctx.exit_code = Exit_From_Status(status);
      return;
    }
    s.Diff_Slot = 1;
    s.Diff_Shift = static_cast<float>(shift);
    s.Diff_Mag = static_cast<float>(scale);
    s.Diff_On = 1;
    overlay::Calc_Difference_Spec(s, 1);
    ctx.exit_code = Exit_From_Status(Write_Output(s, out));
  });
}

}  // namespace tevo::cli
