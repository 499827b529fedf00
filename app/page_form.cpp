#include "page_form.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "display/style.h"
#include "page_menus.h"
#include "printer_dialog.h"
#include "page/draw_page.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#include "session/messages.h"

namespace tevo::app {

namespace {
// Pixels per inch of the preview at "100%".
constexpr double Preview_Dpi = 60;
}  // namespace

Page_Form::Page_Form(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form8");
  setWindowTitle(QStringLiteral("印刷プレビュー/文字・Image入力"));
  sheet_ = new QLabel(this);
  sheet_->setObjectName("Picture1");
  auto* scroll = new QScrollArea(this);
  scroll->setWidget(sheet_);
  scroll->setAlignment(Qt::AlignCenter);
  scroll->setBackgroundRole(QPalette::Dark);
  paper_ = new QLabel(this);
  zoom_ = new QComboBox(this);
  for (const char* z : {"100%", "150%", "200%", "300%", "400%"}) zoom_->addItem(QString::fromUtf8(z));
  auto* print = new QPushButton(QStringLiteral("印刷実行"), this);
  print->setObjectName("Command4");
  auto* close = new QPushButton(QStringLiteral("閉じる"), this);
  auto* row = new QHBoxLayout;
  row->addWidget(paper_);
  row->addStretch();
  row->addWidget(zoom_);
  Add_Page_Menus(session_, this, row, [this] { Repaint_Sheet(); }, Preview_Dpi);
  row->addWidget(print);
  row->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(scroll, 1);
  connect(zoom_, &QComboBox::currentIndexChanged, this, &Page_Form::Repaint_Sheet);
  connect(print, &QPushButton::clicked, this, &Page_Form::Print);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  page::Keep_Page_On_Sheet(session_);
  Repaint_Sheet();
  resize(image_.width() + 60, std::min(image_.height(), 900) + 90);
}

QImage Page_Image(Session& s, double dpi) {
  const page::Page_Setup p = page::Read_Page_Setup(s);
  QImage image(page::Sheet_Pixels(p.Paper_Width, dpi), page::Sheet_Pixels(p.Paper_Height, dpi), QImage::Format_RGB32);
  {
    platform::QtSurface surf(image, dpi);
    page::Draw_Page(s, surf);
  }
  return image;
}

void Page_Form::Repaint_Sheet() {
  const page::Page_Setup p = page::Read_Page_Setup(session_);
  paper_->setText(QString::fromStdString(page::Paper_Text(p.Paper_Code, p.Orient, true)));
  image_ = Page_Image(session_, Preview_Dpi * zoom_->currentText().chopped(1).toDouble() / 100);
  sheet_->setPixmap(QPixmap::fromImage(image_));
  sheet_->resize(image_.size());
}

int Page_Form::Print_On(QPrinter& printer) {
  const page::Page_Setup before = page::Read_Page_Setup(session_);
  const int orient = page::Choose_Print_Orientation(
      session_, printer.pageLayout().orientation() == QPageLayout::Landscape ? 1 : 0);
  if (orient < 0) return 1;
  printer.setPageOrientation(orient == 1 ? QPageLayout::Landscape : QPageLayout::Portrait);
  if (orient != before.Orient) Repaint_Sheet();
  double w = 0, h = 0;
  platform::Printer_Paper_mm(printer, w, h);
  if (page::Check_Printer_Paper(session_, w, h) != 0) return 1;
  return platform::Print_Page(printer, [this](platform::Surface& surf) { page::Draw_Page(session_, surf); });
}

void Page_Form::Print() {
  QPrinter printer(QPrinter::HighResolution);
  Apply_Printer_Setup(session_, printer);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (Print_On(printer) < 0)
    Show_Message(session_, "印刷できませんでした", Style_OK | Icon_Exclamation, "プリンターエラー");
}

}  // namespace tevo::app
