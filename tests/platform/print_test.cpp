// The page printed through Qt's printer with a PDF output file: the same
// page routine, the paper check before it.
#include <QPageSize>
#include <QPrinter>
#include <gtest/gtest.h>

#include <filesystem>

#include "datafiles/quiet_session.h"
#include "display/style.h"
#include "page/draw_page.h"
#include "platform/qt/qt_output.h"
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

}  // namespace
}  // namespace tevo::platform
