// The picture of the main plot of a real FID, opened and transformed as the
// render command does it, painted into a PNG file and read back; and the
// render command itself, run as a program, writing a PNG and a PDF.
#include <QImage>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "datafiles/open_file.h"
#include "display/caption_line.h"
#include "display/paint.h"
#include "display/plot_geometry.h"
#include "display/view_commands.h"
#include "platform/qt/qt_output.h"
#include "platform/ui.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"
#include "support/vendor_files.h"

namespace tevo::platform {
namespace {

namespace fs = std::filesystem;

// Ink: anything clearly off the white background (lines may be smoothed).
bool Dark(QRgb p) { return qGray(p) < 200; }

TEST(Render, AspirinFidPaintsItsSpectrumAxisAndCaption) {
  Ensure_Gui_Application();
  Probe_Font_Table();
  test::Temp_Dir dir;
  // The experiment in a folder with a Japanese name, which the caption shows.
  const fs::path experiment = dir / "アスピリン" / "1";
  fs::create_directories(experiment.parent_path());
  fs::copy(test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1"), experiment,
           fs::copy_options::recursive);

  Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  s.App_Path = dir.path().string();
  s.Log_Mode = -1;
  ASSERT_EQ(datafiles::NM1D_m11_Click(s, {(experiment / "fid").string(), {}}), 0);
  ASSERT_EQ(s.Is_Fid, 1);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(s, signal::Process_Request{}, report), 0);
  ASSERT_GT(s.Spec_Points, 8192 - 1);
  Build_Disp_Arrays(s, 0);
  display::View_After_Load(s);
  EXPECT_NE(display::Caption_Line_Text(s).find("アスピリン/1/FID"), std::string::npos);

  constexpr int w = 800, h = 500;
  const fs::path png = dir / "aspirin.png";
  ASSERT_EQ(Render_To_File(png, w, h, 96.0, 0xFFFFFF,
                           [&s](Surface& surf) {
                             display::Picture1_Paint(s, surf);
                             display::Draw_Caption_Line(s, surf);
                           }),
            0);
  QImage image(QString::fromStdString(png.string()));
  ASSERT_EQ(image.width(), w);
  ASSERT_EQ(image.height(), h);

  const display::Plot_Frame f = display::Make_Plot_Frame(0, w, 0, h, 96.0 / 72.0);
  // The trace crosses nearly every column of the plot area, and the
  // column that reaches highest is the one of the largest point.
  const int caption_band = 20;
  int columns_hit = 0, top_x = -1, top_y = h;
  for (int x = 0; x < w; ++x) {
    bool hit = false;
    for (int y = caption_band; y < f.Axis_Y - 2; ++y) {
      if (!Dark(image.pixel(x, y))) continue;
      hit = true;
      if (y < top_y) top_y = y, top_x = x;
      break;
    }
    columns_hit += hit;
  }
  EXPECT_GT(columns_hit, w * 95 / 100);
  EXPECT_LT(top_y, f.Frame_Base - (f.Frame_Base - f.Frame_Top) * 3 / 4);
  int strongest = 0;
  for (int i = 1; i < s.Spec_Points; ++i)
    if (s.Spec_Re(i) > s.Spec_Re(strongest)) strongest = i;
  const double x_expected =
      display::X_To_Pixel(s.Spec_Axis[strongest], s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right);
  EXPECT_NEAR(top_x, x_expected, 3);

  // Below the axis line: its tick numbers; in the top band: the caption.
  auto dark_in = [&](int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) n += Dark(image.pixel(x, y));
    return n;
  };
  EXPECT_GT(dark_in(0, f.Axis_Y + 4, w, std::min(h, f.Axis_Y + 40)), 200);
  EXPECT_GT(dark_in(w / 2, 0, w, caption_band), 100);
}

using test::Cli_Program;
using test::Quoted;
using test::Run_Command;

TEST(Render, CommandWritesPngAndPdfWithRealJapaneseGlyphs) {
  const fs::path cli = test::Cli_Program();
  ASSERT_TRUE(fs::exists(cli)) << "build the tevo1d-cli target first: " << cli;
  test::Temp_Dir dir;
  const fs::path experiment = dir / "アスピリン" / "1";
  fs::create_directories(experiment.parent_path());
  fs::copy(test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1"), experiment,
           fs::copy_options::recursive);
  const fs::path home = dir / "home";
  auto render = [&](const fs::path& out, const std::string& extra) {
    return Run_Command("QT_QPA_PLATFORM=offscreen " + Quoted(cli) + " --home " + Quoted(home) + " render " +
               Quoted(experiment / "fid") + " -o " + Quoted(out) + extra + " 2>/dev/null");
  };

  // PNG at the asked size: a trace across the plot, numbers under the axis,
  // ink in the caption band.
  const fs::path png = dir / "aspirin.png";
  ASSERT_EQ(render(png, " --size 800x500"), 0);
  QImage image(QString::fromStdString(png.string()));
  ASSERT_EQ(image.width(), 800);
  ASSERT_EQ(image.height(), 500);
  const display::Plot_Frame f = display::Make_Plot_Frame(0, 800, 0, 500, 96.0 / 72.0);
  auto dark_in = [&](int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) n += Dark(image.pixel(x, y));
    return n;
  };
  EXPECT_GT(dark_in(0, 20, 800, f.Axis_Y - 2), 800);
  EXPECT_GT(dark_in(0, f.Axis_Y + 4, 800, std::min(500, f.Axis_Y + 40)), 200);
  EXPECT_GT(dark_in(400, 0, 800, 20), 100);

  // PDF: the fonts are embedded, and the Japanese face's subset maps glyphs
  // to the five kana of the folder name (U+30A2 U+30B9 U+30D4 U+30EA U+30F3),
  // so the caption is drawn with real glyphs, not boxes; the axis unit's
  // delta comes through the Symbol mapping as U+03B4.
  const fs::path pdf = dir / "aspirin.pdf";
  ASSERT_EQ(render(pdf, ""), 0);
  const std::string bytes = test::Read_Text(pdf);
  EXPECT_EQ(bytes.rfind("%PDF-", 0), 0u);
  EXPECT_NE(bytes.find("/FontFile2"), std::string::npos);
  EXPECT_NE(bytes.find("/BaseFont /IPA"), std::string::npos);
  for (const char* code : {"<30A2>", "<30B9>", "<30D4>", "<30EA>", "<30F3>", "<03B4>"})
    EXPECT_NE(bytes.find(code), std::string::npos) << code;

  // Both pictures are kept beside the test program, in "render", to be
  // looked at.
  const fs::path keep = fs::read_symlink("/proc/self/exe").parent_path() / "render";
  fs::create_directories(keep);
  fs::copy_file(png, keep / "aspirin.png", fs::copy_options::overwrite_existing);
  fs::copy_file(pdf, keep / "aspirin.pdf", fs::copy_options::overwrite_existing);

  // The JCAMP-DX spectrum of the same compound drawn over it in the first
  // slot's colour; a "cent" overlay from a field 2 % off is refused.
  const fs::path over = dir / "overlay.png";
  ASSERT_EQ(render(over, " --size 800x500 --overlay " +
                             Quoted(test::Test_Data_File("jcamp-data-test@0.2.1/data/aspirin-1h.dx"))),
            0);
  const QImage overlaid(QString::fromStdString(over.string()));
  int red = 0;
  for (int y = 0; y < overlaid.height(); ++y)
    for (int x = 0; x < overlaid.width(); ++x) red += (overlaid.pixel(x, y) & 0xffffff) == 0xff0000;
  EXPECT_GT(red, 300);
  fs::copy_file(over, keep / "aspirin_overlay.png", fs::copy_options::overwrite_existing);
  test::Vendor_Spec far;
  far.spectrum = true;
  far.observe_mhz = 300.13 * 1.02;
  EXPECT_EQ(render(dir / "x.png", " --align cent --overlay " + Quoted(test::Build_Varian(dir / "far", far).Open())), 1);

  // A range that is no pair of numbers, or an unknown picture kind: refused.
  EXPECT_NE(render(dir / "x.png", " --range 5"), 0);
  EXPECT_NE(render(dir / "x.gif", ""), 0);
  EXPECT_FALSE(fs::exists(dir / "x.gif"));
}

}  // namespace
}  // namespace tevo::platform
