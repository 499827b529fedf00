// tevo1d-cli list PATH --peaks|--integrals -o OUT.pdf [--paper NAME]
// A printed list of the data set as a PDF of as many pages as it takes, on
// the list paper of the settings ("PAPER SIZE LIST", "PAPER ORIENTLIST") or
// --paper, laid out by the list routines the printer uses. A data set
// without peaks gets the peak mode's search over the whole spectrum first;
// the integral list needs the regions a native file brings.
#include <cstdlib>
#include <iostream>

#include "commands.h"
#include "display/style.h"
#include "editing/peaks.h"
#include "page/page_model.h"
#include "page/print_lists.h"
#ifdef TEVO_HAVE_QT
#include "platform/qt/qt_output.h"
#endif

namespace tevo::cli {

void Register_List(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("list", "print the peak or integral list of a data file to PDF");
  static std::string path, out, paper;
  static bool peaks = false, integrals = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("-o,--output", out, "PDF file to write")->required();
  auto* p = cmd->add_flag("--peaks", peaks, "the peak list");
  auto* i = cmd->add_flag("--integrals", integrals, "the integral list");
  p->excludes(i);
  cmd->add_option("--paper", paper, "A3, A4, A5, B4, B5");
  cmd->callback([&ctx] {
    const int code = paper.empty() ? 0 : page::Paper_Code(paper);
    if ((!peaks && !integrals) || code < 0) {
      std::cerr << "list: give --peaks or --integrals, and a known --paper\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "list"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (peaks && s.Peaks.empty()) editing::Peak_Search_All(s);
    if (integrals && s.Integrals.empty()) {
      std::cerr << "list: " << path << " holds no integral regions\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
#ifdef TEVO_HAVE_QT
    platform::Ensure_Gui_Application();
    platform::Probe_Font_Table();
    double height = 0, width = 0;
    const int list_code = code > 0 ? code : std::atoi(display::Setting_Text(s, "PAPER SIZE LIST", "9").c_str());
    page::Paper_Size(list_code, std::atoi(display::Setting_Text(s, "PAPER ORIENTLIST", "0").c_str()), height, width, true);
    constexpr double dpi = 300;
    const int margin = page::Sheet_Pixels(1.5, dpi);
    const int st = platform::Render_Pages_To_Pdf(
        out, page::Sheet_Pixels(width, dpi), page::Sheet_Pixels(height, dpi), dpi,
        [&s, margin](platform::Surface& surf, int n) {
          const page::List_Page pg{n, margin, dpi / 72.0};
          return peaks ? page::Print_Peak_List(s, surf, pg) : page::Print_Integral_List(s, surf, pg);
        });
    if (st != 0) std::cerr << "list: could not write " << out << "\n";
    ctx.exit_code = Exit_From_Status(st);
#else
    std::cerr << "list: this build has no drawing back end\n";
    ctx.exit_code = Exit_Failure;
#endif
  });
}

}  // namespace tevo::cli
