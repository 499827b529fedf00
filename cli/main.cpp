// tevo1d-cli: the headless front end. It runs the same core as the window.
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "version.h"

int main(int argc, char** argv) {
  tevo::cli::Context ctx;
  CLI::App app{"tevo1d-cli: 1D NMR processing without a window"};
  app.require_subcommand(0, 1);
  app.add_option("--home", ctx.home, "folder of the settings and work files (App_Path)");
  bool version = false;
  app.add_flag("--version", version, "print the version and stop");

  tevo::cli::Register_Settings(app, ctx);
  tevo::cli::Register_Info(app, ctx);
  tevo::cli::Register_Process(app, ctx);
  tevo::cli::Register_Render(app, ctx);
  tevo::cli::Register_List(app, ctx);
  tevo::cli::Register_Sample(app, ctx);
  tevo::cli::Register_Peaks(app, ctx);
  tevo::cli::Register_Integrate(app, ctx);
  tevo::cli::Register_Baseline(app, ctx);
  tevo::cli::Register_Diff(app, ctx);
  tevo::cli::Register_Relax(app, ctx);
  tevo::cli::Register_Deconvolve(app, ctx);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int rc = app.exit(e);
    return rc == 0 ? 0 : tevo::cli::Exit_Usage;
  }
  if (version) {
    std::printf("tevo1d-cli %d.%d.%d\n", tevo::Version_Major, tevo::Version_Minor,
                tevo::Version_Patch);
    return 0;
  }
  if (app.get_subcommands().empty()) {
    std::cerr << app.help();
    return tevo::cli::Exit_Usage;
  }
  tevo::cli::End_Session(ctx);
  return ctx.exit_code;
}
