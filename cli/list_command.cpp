// tevo1d-cli list PATH --peaks [--jeol]|--integrals|--array|--t1 -o OUT.pdf
//   [--region LEFT,RIGHT] [--paper NAME]
// A printed list of the data set as a PDF of as many pages as it takes, on
// the list paper of the settings ("PAPER SIZE LIST", "PAPER ORIENTLIST") or
// --paper, laid out by the list routines the printer uses. A data set
// without peaks gets the peak mode's search over the whole spectrum first;
// the integral list needs the regions a native file brings. The array list
// and the T1/T2 list of an array sum each row over the region (in ppm).
#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "commands.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "page/page_model.h"
#include "page/print_lists.h"
#include "relaxation/array_data.h"
#ifdef TEVO_HAVE_QT
#include "platform/qt/qt_output.h"
#endif

namespace tevo::cli {

void Register_List(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("list", "print the peak, integral, array or T1/T2 list of a data file to PDF");
  static std::string path, out, paper, region;
  static bool peaks = false, jeol = false, integrals = false, array = false, t1 = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("-o,--output", out, "PDF file to write")->required();
  auto* p = cmd->add_flag("--peaks", peaks, "the peak list");
  cmd->add_flag("--jeol", jeol, "the peak list in the spectrometer's layout");
  auto* i = cmd->add_flag("--integrals", integrals, "the integral list");
  auto* a = cmd->add_flag("--array", array, "the array list: each row's sum over --region");
  auto* t = cmd->add_flag("--t1", t1, "the T1/T2 intensity list: each row's sum over --region by delay");
  p->excludes(i, a, t);
  i->excludes(a, t);
  a->excludes(t);
  cmd->add_option("--region", region, "LEFT,RIGHT in ppm, for --array and --t1");
  cmd->add_option("--paper", paper, "A3, A4, A5, B4, B5");
  cmd->callback([&ctx] {
    const int code = paper.empty() ? 0 : page::Paper_Code(paper);
    float left = 0, right = 0;
    const bool rows = array || t1;
    if ((!peaks && !integrals && !rows) || code < 0 || (rows && !Parse_Ppm_Range(region, left, right))) {
      std::cerr << "list: give --peaks, --integrals, or --array or --t1 with --region LEFT,RIGHT, and a known --paper\n";
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
    if (rows) {
      if (s.Array_Rows < 2) {
        std::cerr << "list: " << path << " is not an array\n";
        ctx.exit_code = Exit_Refused;
        return;
      }
      s.Select_Start = editing::Spec_Point_Of_Ppm(s, std::min(left, right));
      s.Select_End = editing::Spec_Point_Of_Ppm(s, std::max(left, right));
      s.Intensity_Pairs = relaxation::Extract_Intensities(s, 0, std::max(1, s.Select_Start),
                                                          std::max(1, s.Select_End), 0.1f, false);
    }
    const page::List_Kind kind = peaks       ? page::List_Kind::Peaks
                                 : integrals ? page::List_Kind::Integrals
                                 : array     ? page::List_Kind::Array
                                             : page::List_Kind::T1;
#ifdef TEVO_HAVE_QT
    platform::Ensure_Gui_Application();
    platform::Probe_Font_Table();
    double width = 0, height = 0;
    page::List_Paper_Cm(s, code, width, height);
    constexpr double dpi = 300;
    const int st = platform::Render_Pages_To_Pdf(
        out, page::Sheet_Pixels(width, dpi), page::Sheet_Pixels(height, dpi), dpi,
        [&s, kind](platform::Surface& surf, int n) {
          return page::Print_List(s, kind, jeol ? 1 : 0, surf, page::List_Page_At(n, dpi));
        });
    if (st != 0) std::cerr << "list: could not write " << out << "\n";
    ctx.exit_code = Exit_From_Status(st);
#else
    (void)kind;
    std::cerr << "list: this build has no drawing back end\n";
    ctx.exit_code = Exit_Failure;
#endif
  });
}

}  // namespace tevo::cli
