// The printed page as files: a page with every kind of object saved in the
// native file, read back by the render command and written as PNG, PDF and
// SVG. The PDF and the SVG are rasterised here at the PNG's size and
// compared with it; the objects are looked for where the settings put them
// in centimetres; the PDF's text is read back.
#include <QImage>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "datafiles/native.h"
#include "datafiles/open_file.h"
#include "datafiles/quiet_session.h"
#include "display/insets.h"
#include "display/style.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "overlay/overlay_set.h"
#include "page/page_model.h"
#include "platform/qt/qt_output.h"
#include "support/picture_bytes.h"
#include "support/test_support.h"

namespace tevo::page {
namespace {

namespace fs = std::filesystem;

constexpr double Dpi = 100;
constexpr double Px_Per_Cm = Dpi / 2.54;

TEST(PageFiles, EveryObjectKindThroughTheNativeFileLooksTheSameInPngPdfAndSvg) {
  platform::Ensure_Gui_Application();
  test::Temp_Dir dir;
  test::Quiet_Session q;
  Session& s = q.s;
  s.App_Path = dir.path().string();
  s.Log_Mode = -1;
  ASSERT_EQ(datafiles::NM1D_m11_Click(
                s, {test::Test_Data_File("jcamp-data-test@0.2.1/data/aspirin-1h.dx").string(), {}}),
            0);
  ASSERT_GT(s.Spec_Points, 0);
  editing::Peak_Search_All(s);
  ASSERT_FALSE(s.Peaks.empty());
  for (const auto& [a, b] : {std::pair{7.9, 8.2}, {2.2, 2.5}}) {
    const int32_t i = editing::Spec_Point_Of_Ppm(s, a), j = editing::Spec_Point_Of_Ppm(s, b);
    editing::Integ_Add(s, std::max(i, j), std::min(i, j));
  }
  ASSERT_EQ(s.Integrals.size(), 2u);
  Inset_Rec inset = display::New_Inset_Record(s);
  inset.Frame_X0 = 0.05f, inset.Frame_X1 = 0.35f, inset.Frame_Y0 = 0.45f, inset.Frame_Y1 = 0.85f;
  inset.Inset_Left = 8.2f, inset.Inset_Right = 6.9f, inset.Inset_Y_Full = inset.Inset_Y_Mag * s.Y_Mag;
  inset.Show_Border = 1, inset.Line_Colour = 0x800000;
  s.Insets.push_back(inset);
  ASSERT_TRUE(overlay::Copy_Slot(s, 0, 1));
  s.Overlay[1].Slot_Show = 1;
  s.Overlay[1].Slot_Y_Offset = 0.3f;

  Text_Rec caption;
  caption.X = 0.4f, caption.Y = 0.3f, caption.Font_Size = 16;
  caption.Font_Name = "ＭＳ ゴシック";
  caption.Text = "アスピリン C\\-(9)H\\-(8)O\\-(4) 10\\+(-3)";
  s.Texts.push_back(caption);
  Line_Rec arrow;
  arrow.X1 = 0.4f, arrow.Y1 = 0.4f, arrow.X2 = 0.5f, arrow.Y2 = 0.55f;
  arrow.Kind = 6, arrow.Width = 5, arrow.Colour = 0x800000;  // right arrow, solid
  s.Lines.push_back(arrow);
  // A green PNG square at 0.8 .. 0.9 of the frame across, 0.05 .. 0.15
  // down; the EMF (red rectangle over 20..80 x 20..60 of its 100 units,
  // blue line at 85) at 0.55 .. 0.75 across, 0.05 .. 0.25 down.
  Image_Rec png_picture;
  png_picture.Left = 0.8f, png_picture.Top = 0.05f, png_picture.Width = 0.1f, png_picture.Height = 0.1f;
  png_picture.Body = test::Png_Picture(QColor(0, 255, 0));
  Image_Rec emf_picture;
  emf_picture.Left = 0.55f, emf_picture.Top = 0.05f, emf_picture.Width = 0.2f, emf_picture.Height = 0.2f;
  emf_picture.Body = test::Emf_Picture(0x0000FF, 0xFF0000);
  s.Images = {png_picture, emf_picture};

  display::Store_Setting(s, "PAPER SIZE", 9);
  Standard_Page_Places(s);
  // Frame 1.5 .. 19.5 cm across; its bottom 2.5 cm above the sheet's
  // bottom, 12 cm high.
  for (const auto& [key, v] :
       {std::pair{"X-LEFT MARGIN", 1.5}, {"X-LENGTH", 18.0}, {"Y-BOTTOM MARGIN", 2.5}, {"Y-LENGTH", 12.0},
        {"DRAW WAKU ON", 1.0}, {"DRAW SCALE ON", 1.0}, {"DRAW PARAM ON", 1.0}, {"DRAW PEAK PICK", 1.0},
        {"DRAW INTEG ON", 1.0}, {"DRAW MULTI VIEW", 1.0}, {"DRAW MULTI SPEC", 1.0}, {"PRINT TEXT", 1.0}})
    display::Store_Setting(s, key, v);
  const fs::path tv1 = dir / "page.tv1";
  ASSERT_EQ(datafiles::Write_Native(s, tv1.string()), 0);

  // The command reads the file back and paints its page three ways.
  const fs::path cli = test::Cli_Program();
  ASSERT_TRUE(fs::exists(cli)) << "build the tevo1d-cli target first: " << cli;
  auto render = [&](const char* name) {
    return test::Run_Command("QT_QPA_PLATFORM=offscreen " + test::Quoted(cli) + " --home " +
                             test::Quoted(dir / "home") + " render " + test::Quoted(tv1) + " --page --dpi 100 -o " +
                             test::Quoted(dir / name) + " 2>/dev/null");
  };
  for (const char* name : {"page.png", "page.pdf", "page.svg"}) ASSERT_EQ(render(name), 0) << name;
  const QImage png = QImage(QString::fromStdString((dir / "page.png").string())).convertToFormat(QImage::Format_RGB32);
  // A4 at 100 per inch: 21 x 29.7 cm.
  ASSERT_EQ(png.size(), QSize(827, 1169));
  QPdfDocument pdf_document;
  ASSERT_EQ(pdf_document.load(QString::fromStdString((dir / "page.pdf").string())), QPdfDocument::Error::None);
  ASSERT_EQ(pdf_document.pageCount(), 1);
  const QImage pdf = pdf_document.render(0, png.size()).convertToFormat(QImage::Format_RGB32);
  QImage svg(png.size(), QImage::Format_RGB32);
  svg.fill(Qt::white);
  {
    QSvgRenderer renderer(QString::fromStdString((dir / "page.svg").string()));
    ASSERT_TRUE(renderer.isValid());
    QPainter painter(&svg);
    renderer.render(&painter);
  }

  // Mean difference on 0 .. 255 of the colours averaged over blocks of 4 x 4
  // pixels (1 mm): the vector files are drawn smoothed where the PNG is not,
  // which moves ink by a pixel along strokes and glyphs (about 3 levels
  // pixel by pixel, under 1 in blocks); a missing or shifted block of text
  // costs more than the limit.
  auto mean_difference = [&png](const QImage& other) {
    double sum = 0;
    int n = 0;
    for (int y0 = 0; y0 + 4 <= png.height(); y0 += 4)
      for (int x0 = 0; x0 + 4 <= png.width(); x0 += 4) {
        int d[3] = {0, 0, 0};
        for (int y = y0; y < y0 + 4; ++y)
          for (int x = x0; x < x0 + 4; ++x) {
            const QRgb a = png.pixel(x, y), b = other.pixel(x, y);
            d[0] += qRed(a) - qRed(b), d[1] += qGreen(a) - qGreen(b), d[2] += qBlue(a) - qBlue(b);
          }
        sum += (std::abs(d[0]) + std::abs(d[1]) + std::abs(d[2])) / 16.0;
        n += 3;
      }
    return sum / n;
  };
  EXPECT_LT(mean_difference(pdf), 1.5);
  EXPECT_LT(mean_difference(svg), 1.5);

  // Objects where the centimetres put them, in all three.
  const double left = 1.5 * Px_Per_Cm, right = 19.5 * Px_Per_Cm;
  const double bottom = 1169 - 2.5 * Px_Per_Cm, top = bottom - 12 * Px_Per_Cm;
  auto frame_x = [&](double f) { return static_cast<int>(std::lround(left + f * (right - left))); };
  auto frame_y = [&](double f) { return static_cast<int>(std::lround(top + f * (bottom - top))); };
  auto near = [](QRgb p, QRgb want) {
    return std::abs(qRed(p) - qRed(want)) + std::abs(qGreen(p) - qGreen(want)) + std::abs(qBlue(p) - qBlue(want)) < 60;
  };
  auto dark = [](QRgb p) { return qGray(p) < 128; };
  for (const auto& [name, image] : {std::pair{"png", &png}, {"pdf", &pdf}, {"svg", &svg}}) {
    SCOPED_TRACE(name);
    // The frame outline: dark within a pixel of its edges, white 4 px inside.
    const int mid_y = frame_y(0.6), mid_x = frame_x(0.3);
    auto dark_near = [&](int x, int y, bool across) {
      for (int d = -1; d <= 1; ++d)
        if (dark(image->pixel(across ? x + d : x, across ? y : y + d))) return true;
      return false;
    };
    EXPECT_TRUE(dark_near(static_cast<int>(std::lround(left)), mid_y, true));
    EXPECT_TRUE(dark_near(static_cast<int>(std::lround(right)), mid_y, true));
    EXPECT_TRUE(dark_near(mid_x, static_cast<int>(std::lround(top)), false));
    EXPECT_FALSE(dark(image->pixel(static_cast<int>(left) + 4, frame_y(0.02))));
    // The inset's border: a dark run down its left edge (0.05 of the frame).
    int inset_edge = 0;
    for (int y = frame_y(0); y < frame_y(1); ++y) inset_edge += dark_near(frame_x(0.05), y, true);
    EXPECT_GT(inset_edge, 100);
    // The PNG picture's middle, and the EMF's rectangle and line.
    EXPECT_TRUE(near(image->pixel(frame_x(0.85), frame_y(0.1)), qRgb(0, 255, 0)));
    EXPECT_TRUE(near(image->pixel(frame_x(0.55 + 0.2 * 0.5), frame_y(0.05 + 0.2 * 0.4)), qRgb(255, 0, 0)));
    EXPECT_TRUE(near(image->pixel(frame_x(0.55 + 0.2 * 0.5), frame_y(0.05 + 0.2 * 0.85)), qRgb(0, 0, 255)));
    EXPECT_FALSE(near(image->pixel(frame_x(0.55 + 0.2 * 0.1), frame_y(0.05 + 0.2 * 0.4)), qRgb(255, 0, 0)));
  }

  // The PDF's text is text: the caption and the markup's scripts come back.
  const QString text = pdf_document.getAllText(0).text();
  EXPECT_TRUE(text.contains(QString::fromUtf8("アスピリン"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("C9H8O4")) || text.contains(QStringLiteral("C 9 H 8 O 4")))
      << text.toStdString();

  // All three beside the test program, in "page_files", to be looked at.
  const fs::path keep = fs::read_symlink("/proc/self/exe").parent_path() / "page_files";
  fs::create_directories(keep);
  png.save(QString::fromStdString((keep / "page.png").string()));
  pdf.save(QString::fromStdString((keep / "page_pdf.png").string()));
  svg.save(QString::fromStdString((keep / "page_svg.png").string()));
}

}  // namespace
}  // namespace tevo::page
