// tevo1d-cli render PATH -o OUT.png|.bmp|.pdf|.svg [--size WxH] [--range LEFT,RIGHT]
//                  [--overlay FILE ...] [--align chem|cent] [--stack [--ratio X,Y]]
//                  [--page [--paper NAME] [--dpi N]]
// The main window's plot of any data file the open command reads (a FID is
// transformed first), painted by the window's own paint routine into an
// image or a vector file, with the window's caption line at the top. Each
// --overlay file is read into the next overlay slot, as the overlay
// window's "読込" does, and drawn in that slot's colour and place. With
// --stack an array data set is drawn as the window's array view, all rows
// stacked by "X AXIS RATIO" and "Y AXIS RATIO" of the settings or by --ratio.
// With --page the printed sheet is painted instead, by the page routine, at
// --dpi pixels per inch on the paper of the settings or --paper: a native
// file brings its texts, lines and page settings; when the frame or the
// parameter block would leave the sheet, they take their standard places;
// a black-and-white printer setting ("PRINTER TYPE" 1) inks it all black.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "commands.h"
#include "datafiles/open_file.h"
#include "display/caption_line.h"
#include "display/paint.h"
#include "display/view_commands.h"
#include "display/style.h"
#include "overlay/slot_read.h"
#include "page/draw_page.h"
#include "signal/fid_processing.h"
#ifdef TEVO_HAVE_QT
#include "platform/qt/qt_output.h"
#endif

namespace tevo::cli {

namespace {

std::string Lower_Extension(const std::string& path) {
  std::string e = std::filesystem::path(path).extension().string();
  for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return e;
}

// Reads the data set through the open command; a FID is transformed as the
// processing window's defaults and automatic phase would do it. Returns a
// core status word.
int Read_Data(Session& s, const std::string& path) {
  const int st = datafiles::NM1D_m11_Click(s, {path, {}});
  if (st != 0 || (s.Param.SMODE != 0 && s.Is_Fid == 0)) return st;
  signal::Process_Report report;
  return signal::Process_Fid(s, signal::Process_Request{}, report);
}

bool Parse_Size(const std::string& text, int& w, int& h) {
  return std::sscanf(text.c_str(), "%dx%d", &w, &h) == 2 && w > 0 && h > 0 && w <= 20000 &&
         h <= 20000;
}

bool Parse_Range(const std::string& text, double& left, double& right) {
  return std::sscanf(text.c_str(), "%lf,%lf", &left, &right) == 2;
}

// Reads the files into slots 1, 2, ... in order; the first failure's status.
int Read_Overlays(Session& s, const std::vector<std::string>& files, overlay::Slot_Align align) {
  for (std::size_t k = 0; k < files.size(); ++k) {
    const int st = overlay::Read_Overlay_Slot(s, static_cast<int>(k) + 1, files[k], align);
    if (st != 0) {
      std::cerr << "render: overlay " << files[k] << " not read (status " << st << ")\n";
      return st == overlay::Slot_Off_Frequency ? 1 : st;
    }
  }
  return 0;
}

}  // namespace

void Register_Render(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("render", "paint the main plot of a data file, or its printed page, into a picture");
  static std::string path, out, size = "1600x1000", range, align = "chem", ratio;
  static std::vector<std::string> overlays;
  static bool stack = false, page_mode = false;
  static std::string paper;
  static double dpi = 300;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("-o,--output", out, "picture: .png, .bmp, .pdf or .svg")->required();
  cmd->add_option("--size", size, "width x height in pixels (default 1600x1000)");
  cmd->add_option("--range", range, "LEFT,RIGHT limits in ppm");
  cmd->add_option("--overlay", overlays, "spectra drawn over the main one, slots 2 .. 10")->expected(1, 9);
  cmd->add_option("--align", align, "overlay axes by chemical shift or by carrier")
      ->check(CLI::IsMember({"chem", "cent"}));
  cmd->add_flag("--stack", stack, "draw all rows of an array data set as a stack");
  cmd->add_option("--ratio", ratio, "X,Y shift of the last row of the stack, parts of the frame");
  cmd->add_flag("--page", page_mode, "paint the printed sheet instead of the plot");
  cmd->add_option("--paper", paper, "paper of the sheet: A3, A4, A5, B4, B5, \"A4 Half\", \"A4 Full\"");
  cmd->add_option("--dpi", dpi, "pixels per inch of the sheet (default 300)")->check(CLI::Range(20.0, 1200.0));
  cmd->callback([&ctx, cmd] {
    int w = 0, h = 0;
    double left = 0, right = 0;
    double x_ratio = 0, y_ratio = 0;
    if (!Parse_Size(size, w, h) || (!range.empty() && !Parse_Range(range, left, right)) ||
        (!ratio.empty() && (!Parse_Range(ratio, x_ratio, y_ratio) || std::fabs(x_ratio) >= 1))) {
      std::cerr << "render: bad --size, --range or --ratio\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (page_mode ? cmd->count("--size") > 0 : cmd->count("--paper") + cmd->count("--dpi") > 0) {
      std::cerr << "render: --paper and --dpi go with --page, --size without it\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    const int paper_code = paper.empty() ? 0 : page::Paper_Code(paper);
    if (paper_code < 0) {
      std::cerr << "render: unknown paper " << paper << "\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    const std::string ext = Lower_Extension(out);
    if (ext != ".png" && ext != ".bmp" && ext != ".pdf" && ext != ".svg") {
      std::cerr << "render: the output must end in .png, .bmp, .pdf or .svg\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    int st = Start_Session(ctx);
    // The caption names the file by its full path, as the window's does.
    if (st == 0) st = Read_Data(ctx.session, std::filesystem::absolute(path).lexically_normal().string());
    if (st != 0) {
      ctx.exit_code = Exit_From_Status(st);
      return;
    }
    Session& s = ctx.session;
    if (s.Spec_Points <= 0) {
      std::cerr << "render: " << path << " holds no spectrum\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    st = Read_Overlays(s, overlays, align == "cent" ? overlay::Slot_Align::Cent : overlay::Slot_Align::Chem);
    if (st != 0) {
      ctx.exit_code = Exit_From_Status(st);
      return;
    }
    if (stack && s.Array_Rows < 2) {
      std::cerr << "render: " << path << " holds a single row; --stack needs array data\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    if (stack) display::Store_Setting(s, "DISP ARRAY MODE", 1);
    if (!ratio.empty()) {
      display::Store_Setting(s, "X AXIS RATIO", x_ratio);
      display::Store_Setting(s, "Y AXIS RATIO", y_ratio);
    }
    Build_Disp_Arrays(s, 0);
    display::View_After_Load(s);
    if (!range.empty()) {
      s.X_Left = static_cast<float>(left);
      s.X_Right = static_cast<float>(right);
    }
#ifdef TEVO_HAVE_QT
    platform::Ensure_Gui_Application();
    platform::Probe_Font_Table();
    if (page_mode) {
      if (paper_code > 0) display::Store_Setting(s, "PAPER SIZE", paper_code);
      page::Keep_Page_On_Sheet(s);
      const page::Page_Setup sheet = page::Read_Page_Setup(s);
      st = platform::Render_To_File(out, page::Sheet_Pixels(sheet.Paper_Width, dpi),
                                    page::Sheet_Pixels(sheet.Paper_Height, dpi), dpi,
                                    sheet.Paper_Colour,
                                    [&s](platform::Surface& surf) { page::Draw_Page(s, surf); });
    } else {
      st = platform::Render_To_File(out, w, h, 96.0,
                                    display::Setting_Colour(s, "COL BACKGROUND", 0xFFFFFF),
                                    [&s](platform::Surface& surf) {
                                      display::Picture1_Paint(s, surf);
                                      display::Draw_Caption_Line(s, surf);
                                    });
    }
    if (st != 0) std::cerr << "render: could not write " << out << "\n";
    ctx.exit_code = Exit_From_Status(st);
#else
    std::cerr << "render: this build has no drawing back end\n";
    ctx.exit_code = Exit_Failure;
#endif
  });
}

}  // namespace tevo::cli
