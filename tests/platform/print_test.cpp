// The page printed through Qt's printer with a PDF output file: the same
// page routine, the paper check before it; pictures on the page, white-out
// and in black and white.
#include <QImage>
#include <QPageSize>
#include <QPrinter>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "datafiles/quiet_session.h"
#include "display/style.h"
#include "page/draw_page.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#include "support/picture_bytes.h"
#include "support/test_support.h"

namespace tevo::platform {
namespace {

namespace fs = std::filesystem;

TEST(Print, ThePagePrintsWhenThePrinterHoldsItsPaper) {
  Ensure_Gui_Application();
  Probe_Font_Table();
  test::Temp_Dir dir;
  test::Quiet_Session q;
  display::Store_Setting(q.s, "PAPER SIZE", 9);
  page::Standard_Page_Places(q.s);
  Text_Rec t;
  t.X = 0.1f;
  t.Y = 0.1f;
  t.Text = "アスピリン";
  q.s.Texts.push_back(t);

  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  const fs::path pdf = dir / "printed.pdf";
  printer.setOutputFileName(QString::fromStdString(pdf.string()));
  printer.setPageSize(QPageSize(QPageSize::A3));
  double w = 0, h = 0;
  Printer_Paper_mm(printer, w, h);
  EXPECT_NEAR(w, 297, 1);
  EXPECT_EQ(page::Check_Printer_Paper(q.s, w, h), 1);
  EXPECT_EQ(q.ui.shown.back().title, "ﾌﾟﾘﾝﾄｻｲｽﾞｴﾗｰ");

  printer.setPageSize(QPageSize(QPageSize::A4));
  Printer_Paper_mm(printer, w, h);
  ASSERT_EQ(page::Check_Printer_Paper(q.s, w, h), 0);
  ASSERT_EQ(Print_Page(printer, [&](Surface& surf) { page::Draw_Page(q.s, surf); }), 0);
  const std::string bytes = test::Read_Text(pdf);
  EXPECT_EQ(bytes.rfind("%PDF-", 0), 0u);
  for (const char* code : {"<30A2>", "<30B9>", "<30D4>", "<30EA>", "<30F3>", "<89B3>"})
    EXPECT_NE(bytes.find(code), std::string::npos) << code;
}

TEST(Print, APictureOnThePageLandsOnItsRectangle) {
  Ensure_Gui_Application();
  test::Quiet_Session q;
  display::Store_Setting(q.s, "PAPER SIZE", 9);
  display::Store_Setting(q.s, "PAPER ORIENT", 1);  // 29.7 x 21 cm
  display::Store_Setting(q.s, "X-LEFT MARGIN", 2);
  display::Store_Setting(q.s, "X-LENGTH", 25);
  display::Store_Setting(q.s, "Y-BOTTOM MARGIN", 2);
  display::Store_Setting(q.s, "Y-LENGTH", 15);
  // A red square as the bytes of a PNG file, a fifth of the frame wide and
  // high, its corner at (0.5, 0.4) of the frame: 14.5 .. 19.5 cm across,
  // 10 .. 13 cm down.
  Image_Rec picture;
  picture.Left = 0.5f, picture.Top = 0.4f, picture.Width = 0.2f, picture.Height = 0.2f;
  picture.Body = test::Png_Picture(QColor(255, 0, 0));
  q.s.Images.push_back(picture);
  Image_Rec broken = picture;
  broken.Left = 0.1f;
  broken.Body.resize(20);  // not an image: left out
  q.s.Images.push_back(broken);
  // A white-out metafile at 0.6 .. 0.8 x 0.4 .. 0.6 of the frame (17 .. 22
  // cm across): its white rectangle (20 .. 80 % across, 20 .. 60 % down:
  // 18 .. 21 cm, 10.6 .. 11.8 cm) leaves the square below it visible, its
  // blue line at 85 % (12.55 cm down) is drawn.
  Image_Rec white_out;
  white_out.Left = 0.6f, white_out.Top = 0.4f, white_out.Width = 0.2f, white_out.Height = 0.2f;
  white_out.Extra = 1;
  white_out.Body = test::Emf_Picture(0xFFFFFF, 0xFF0000);
  q.s.Images.push_back(white_out);

  // 10 px per cm.
  auto drawn = [&q] {
    QImage page(297, 210, QImage::Format_RGB32);
    QtSurface surf(page, 25.4);
    page::Draw_Page(q.s, surf);
    return page;
  };
  QImage page = drawn();
  auto is = [&](QRgb c, double x_cm, double y_cm) {
    const QRgb p = page.pixel(int(x_cm * 10), int(y_cm * 10));
    return std::abs(qRed(p) - qRed(c)) + std::abs(qGreen(p) - qGreen(c)) + std::abs(qBlue(p) - qBlue(c)) < 40;
  };
  const QRgb red_ink = qRgb(255, 0, 0);
  EXPECT_TRUE(is(red_ink, 14.6, 10.1));
  EXPECT_TRUE(is(red_ink, 19.4, 12.9));
  EXPECT_TRUE(is(red_ink, 19.2, 11.2));  // under the white-out rectangle
  EXPECT_FALSE(is(red_ink, 14.4, 11));
  EXPECT_FALSE(is(red_ink, 19.6, 11));
  EXPECT_FALSE(is(red_ink, 17, 9.9));
  EXPECT_FALSE(is(red_ink, 17, 13.1));
  EXPECT_FALSE(is(red_ink, 7, 11));
  EXPECT_TRUE(is(qRgb(0, 0, 255), 20, 12.55));
  // Without white-out its rectangle paints white; in black and white every
  // picture's ink is black.
  q.s.Images.back().Extra = 0;
  page = drawn();
  EXPECT_TRUE(is(qRgb(255, 255, 255), 19.2, 11.2));
  display::Store_Setting(q.s, "PRINTER TYPE", 1);
  page = drawn();
  EXPECT_TRUE(is(qRgb(0, 0, 0), 14.6, 10.1));
  EXPECT_TRUE(is(qRgb(0, 0, 0), 20, 12.55));
  EXPECT_TRUE(is(qRgb(255, 255, 255), 19.2, 11.2));
}

}  // namespace
}  // namespace tevo::platform
