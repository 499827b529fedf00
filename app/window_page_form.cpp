#include "window_page_form.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "page/window_pages.h"
#include "dialog_parts.h"
#include "page_form.h"
#include "printer_dialog.h"

namespace tevo::app {

namespace {
// Pixels per inch of the preview at "100%".
constexpr double Preview_Dpi = 60;
}  // namespace

Window_Page_Form::Window_Page_Form(Session& session, const char* name, const QString& title,
                                   std::function<page::Page_Content()> content, QWidget* parent)
    : QDialog(parent), session_(session), title_(title), content_(std::move(content)) {
  setObjectName(name);
  // The paper and the zoom, "印刷実行" and "閉じる" above the sheet.
  auto* layout = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  layout->addLayout(row);
  paper_ = new QLabel(this);
  paper_->setObjectName("Label_Paper");
  row->addWidget(paper_, 1);
  zoom_ = new QComboBox(this);
  zoom_->addItems({"100%", "150%", "200%", "300%", "400%"});
  row->addWidget(zoom_);
  connect(zoom_, &QComboBox::currentIndexChanged, this, &Window_Page_Form::Repaint_Sheet);
  QPushButton* print = Named_Button(this, "Command4", "印刷実行");
  row->addWidget(print);
  connect(print, &QPushButton::clicked, this, [this] {
    Print_Through_Dialog(session_, this, page::Printer_Group::Page, [this](QPrinter& p) { return Print_On(p); });
  });
  QPushButton* close = Named_Button(this, "Command1", "閉じる");
  row->addWidget(close);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* scroll = new QScrollArea(this);
  scroll->setAlignment(Qt::AlignCenter);
  scroll->setBackgroundRole(QPalette::Dark);
  sheet_ = new QLabel(scroll);
  sheet_->setObjectName("Picture1");
  scroll->setWidget(sheet_);
  layout->addWidget(scroll, 1);
  page::Keep_Page_On_Sheet(session_);
  Repaint_Sheet();
  resize(image_.width() + 60, std::min(image_.height(), 900) + 90);
}

QString Window_Page_Form::Paper_Caption() const { return paper_->text(); }

void Window_Page_Form::Repaint_Sheet() {
  // The caption names the paper and its turn, which a print may change.
  paper_->setText(QString::fromStdString(page::Window_Paper_Caption(session_)));
  setWindowTitle(title_ + "  " + paper_->text());
  const page::Page_Content content = content_();
  image_ = Page_Image(session_, Preview_Dpi * zoom_->currentText().chopped(1).toDouble() / 100, &content);
  sheet_->setPixmap(QPixmap::fromImage(image_));
  sheet_->resize(image_.size());
}

int Window_Page_Form::Print_On(QPrinter& printer) {
  const int orient = page::Read_Page_Setup(session_).Orient;
  const page::Page_Content content = content_();
  const int printed = Print_Sheet(session_, printer, &content);
  if (page::Read_Page_Setup(session_).Orient != orient) Repaint_Sheet();
  return printed;
}

}  // namespace tevo::app
