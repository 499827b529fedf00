// The page printed through Qt's printer with a PDF output file: the same
// page routine, the paper check before it; a picture on the page.
#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPrinter>
#include <gtest/gtest.h>

#include <filesystem>

#include "datafiles/quiet_session.h"
#include "display/style.h"
#include "page/draw_page.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
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
  QImage red(8, 8, QImage::Format_RGB32);
  red.fill(QColor(255, 0, 0));
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  ASSERT_TRUE(red.save(&buffer, "PNG"));
  Image_Rec picture;
  picture.Left = 0.5f, picture.Top = 0.4f, picture.Width = 0.2f, picture.Height = 0.2f;
  picture.Body.assign(png.begin(), png.end());
  q.s.Images.push_back(picture);
  Image_Rec broken = picture;
  broken.Left = 0.1f;
  broken.Body.resize(20);  // not an image: left out
  q.s.Images.push_back(broken);

  // 10 px per cm.
  QImage page(297, 210, QImage::Format_RGB32);
  {
    QtSurface surf(page, 25.4);
    page::Draw_Page(q.s, surf);
  }
  auto is_red = [&](double x_cm, double y_cm) { return page.pixel(int(x_cm * 10), int(y_cm * 10)) == qRgb(255, 0, 0); };
  EXPECT_TRUE(is_red(14.6, 10.1));
  EXPECT_TRUE(is_red(19.4, 12.9));
  EXPECT_FALSE(is_red(14.4, 11));
  EXPECT_FALSE(is_red(19.6, 11));
  EXPECT_FALSE(is_red(17, 9.9));
  EXPECT_FALSE(is_red(17, 13.1));
  EXPECT_FALSE(is_red(7, 11));
}

}  // namespace
}  // namespace tevo::platform
