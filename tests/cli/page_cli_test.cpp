// tevo1d-cli render --page on the Bruker aspirin FID: the sheet as PDF with
// the parameter block's Japanese captions in real glyphs, as PNG with ink in
// the frame and the block and blank margins, and a native file's own text on
// its page; the peak and integral lists as PDF pages.
#include <QImage>
#include <gtest/gtest.h>

#include <filesystem>

#include "datafiles/native.h"
#include "datafiles/quiet_session.h"
#include "display/view_commands.h"
#include "editing/peaks.h"
#include "page/page_model.h"
#include "support/test_support.h"

namespace tevo {
namespace {

namespace fs = std::filesystem;

TEST(PageCli, AspirinPageAsPdfAndPngAndANativeFilesText) {
  ASSERT_TRUE(fs::exists(test::Cli_Program())) << "build the tevo1d-cli target first";
  test::Temp_Dir dir;
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  const std::string home = (dir / "home").string();
  auto render = [&](const std::string& path, const fs::path& out, std::vector<std::string> extra) {
    std::vector<std::string> args = {"--home", home, "render", path, "--page", "-o", out.string()};
    args.insert(args.end(), extra.begin(), extra.end());
    return test::Run_Cli(args).exit_code;
  };

  // PDF: the embedded Japanese face maps glyphs to the captions "観測核" and
  // "積算回数" of the parameter block.
  const fs::path pdf = dir / "page.pdf";
  ASSERT_EQ(render(fid, pdf, {}), 0);
  const std::string bytes = test::Read_Text(pdf);
  EXPECT_EQ(bytes.rfind("%PDF-", 0), 0u);
  for (const char* code : {"<89B3>", "<6E2C>", "<6838>", "<7A4D>", "<7B97>"})
    EXPECT_NE(bytes.find(code), std::string::npos) << code;

  // PNG at 100 dpi: A4 portrait, 827 x 1169 px. The frame takes its standard
  // place (1.5 .. 19.5 cm across, 14.6 .. 27.2 cm down) with the block above
  // it (1.5 .. 14.1 cm down).
  const fs::path png = dir / "page.png";
  ASSERT_EQ(render(fid, png, {"--dpi", "100"}), 0);
  const QImage image(QString::fromStdString(png.string()));
  ASSERT_EQ(image.width(), 827);
  ASSERT_EQ(image.height(), 1169);
  const double k = 100 / 2.54;
  auto ink = [&](double x0, double y0, double x1, double y1) {
    int n = 0;
    for (int y = static_cast<int>(y0 * k); y < static_cast<int>(y1 * k); ++y)
      for (int x = static_cast<int>(x0 * k); x < static_cast<int>(x1 * k); ++x) n += qGray(image.pixel(x, y)) < 200;
    return n;
  };
  EXPECT_GT(ink(1.6, 14.7, 19.4, 27.1), 1500);  // trace and axis
  EXPECT_GT(ink(1.6, 1.6, 19.4, 14.0), 500);    // parameter lines
  EXPECT_EQ(ink(0, 0, 21, 1.4), 0);             // margins
  EXPECT_EQ(ink(0, 0, 1.4, 29.7), 0);
  EXPECT_EQ(ink(19.6, 0, 21, 29.7), 0);
  EXPECT_EQ(ink(0, 28.4, 21, 29.7), 0);
  EXPECT_EQ(ink(1.6, 14.2, 19.4, 14.5), 0);     // between block and frame
  const fs::path keep = fs::read_symlink("/proc/self/exe").parent_path() / "render";
  fs::create_directories(keep);
  fs::copy_file(png, keep / "aspirin_page.png", fs::copy_options::overwrite_existing);

  // A native file brings its texts: one in katakana, on A3 landscape.
  const fs::path native = dir / "aspirin.tv1";
  ASSERT_EQ(test::Run_Cli({"--home", home, "process", fid, "-o", native.string()}).exit_code, 0);
  {
    test::Quiet_Session q;
    ASSERT_EQ(datafiles::Read_Native(q.s, native.string()), 0);
    Text_Rec t;
    t.X = 0.6f;
    t.Y = 0.1f;
    t.Font_Size = 14;
    t.Text = "アスピリン";
    q.s.Texts.push_back(t);
    Integ_Rec region;
    region.Start_Point = 100;
    region.End_Point = 200;
    q.s.Integrals = {region, region};
    Line_Rec arrow;
    arrow.X1 = 0.45f, arrow.Y1 = 0.15f, arrow.X2 = 0.6f, arrow.Y2 = 0.3f;
    arrow.Kind = 5;
    arrow.Width = 3;
    q.s.Lines.push_back(arrow);
    Build_Disp_Arrays(q.s, 0);
    display::View_After_Load(q.s);
    editing::Peak_Search_All(q.s);
    ASSERT_GT(q.s.Peaks.size(), 5u);
    ASSERT_EQ(datafiles::Write_Native(q.s, native.string()), 0);
  }
  const fs::path a3 = dir / "a3.pdf";
  ASSERT_EQ(render(native.string(), a3, {"--paper", "A3"}), 0);
  const std::string a3_bytes = test::Read_Text(a3);
  for (const char* code : {"<30A2>", "<30B9>", "<30D4>", "<30EA>", "<30F3>"})
    EXPECT_NE(a3_bytes.find(code), std::string::npos) << code;
  // A3 portrait, 297 x 420 mm, is 842 x 1191 points.
  EXPECT_NE(a3_bytes.find("/MediaBox [0 0 842"), std::string::npos);
  ASSERT_EQ(render(native.string(), dir / "a3.png", {"--paper", "A3", "--dpi", "60"}), 0);
  fs::copy_file(dir / "a3.png", keep / "aspirin_page_a3.png", fs::copy_options::overwrite_existing);

  // The peak list (searched, the FID has none) on A4 takes one page, on the
  // small "A4 Half" several; the native file's two regions make an
  // integral list; the FID has none to list.
  auto list = [&](const std::string& path, const char* kind, const fs::path& out, const char* paper) {
    return test::Run_Cli({"--home", home, "list", path, kind, "-o", out.string(), "--paper", paper}).exit_code;
  };
  auto pages = [](const fs::path& file) {
    const std::string b = test::Read_Text(file);
    int n = 0;
    for (std::size_t at = b.find("/Type /Page"); at != std::string::npos; at = b.find("/Type /Page", at + 1))
      n += b.compare(at, 12, "/Type /Pages") != 0;
    return n;
  };
  ASSERT_EQ(list(fid, "--peaks", dir / "peaks.pdf", "A4"), 0);
  EXPECT_EQ(pages(dir / "peaks.pdf"), 1);
  ASSERT_EQ(list(fid, "--peaks", dir / "half.pdf", "A4 Half"), 0);
  EXPECT_GE(pages(dir / "half.pdf"), 2);
  ASSERT_EQ(list(native.string(), "--integrals", dir / "integrals.pdf", "A4"), 0);
  EXPECT_EQ(pages(dir / "integrals.pdf"), 1);
  EXPECT_EQ(list(fid, "--integrals", dir / "none.pdf", "A4"), 1);
  // The ten rows of a relaxation series, by row and as T1/T2 pairs, on one
  // page each; the FID is no array; the rows need a region.
  const std::string series =
      test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/inversionRecovery2D/inversionRecovery2D/1").string();
  auto rows = [&](const std::string& path, const char* kind, const fs::path& out, const char* region) {
    std::vector<std::string> args{"--home", home, "list", path, kind, "-o", out.string()};
    if (region) args.insert(args.end(), {"--region", region});
    return test::Run_Cli(args).exit_code;
  };
  ASSERT_EQ(rows(series, "--array", dir / "array.pdf", "0.9,0.8"), 0);
  EXPECT_EQ(pages(dir / "array.pdf"), 1);
  ASSERT_EQ(rows(series, "--t1", dir / "t1.pdf", "0.9,0.8"), 0);
  EXPECT_EQ(pages(dir / "t1.pdf"), 1);
  EXPECT_EQ(rows(fid, "--array", dir / "none.pdf", "0.9,0.8"), 1);
  EXPECT_EQ(rows(series, "--t1", dir / "none.pdf", nullptr), 2);

  // Unknown paper, or page options without --page: usage errors.
  EXPECT_EQ(render(fid, dir / "x.pdf", {"--paper", "Letter"}), 2);
  EXPECT_EQ(render(fid, dir / "x.pdf", {"--size", "800x600"}), 2);
  EXPECT_EQ(test::Run_Cli({"--home", home, "render", fid, "-o", (dir / "x.png").string(), "--dpi", "100"}).exit_code, 2);
  EXPECT_FALSE(fs::exists(dir / "x.pdf"));
}

}  // namespace
}  // namespace tevo
