#include "list_form.h"

#include <QButtonGroup>
#include <algorithm>
#include <tuple>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "list_dialogs.h"
#include "printer_dialog.h"
#include "page/page_model.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"

namespace tevo::app {

namespace {
// Pixels per inch of the preview sheet.
constexpr double Preview_Dpi = 60;
// A runaway list stops at a thousand pages, as the printer does.
constexpr int Page_Limit = 1000;
}  // namespace

List_Form::List_Form(Session& session, page::List_Kind kind, QWidget* parent, Painter paint)
    : QDialog(parent), session_(session), kind_(kind), paint_(std::move(paint)) {
  setObjectName("NMR1D_Form8List");
  sheet_ = new QLabel(this);
  sheet_->setObjectName("Picture1");
  page_text_ = new QLabel(this);
  page_text_->setObjectName("f121");
  auto* row = new QHBoxLayout;
  const auto button = [this, row](const char* name, const char* caption) {
    auto* b = new QPushButton(QString::fromUtf8(caption), this);
    b->setObjectName(name);
    row->addWidget(b);
    return b;
  };
  connect(button("f11", "<<最初へ"), &QPushButton::clicked, this, [this] { Turn(0); });
  connect(button("f12", "<<前へ"), &QPushButton::clicked, this, [this] { Turn(page_ - 1); });
  row->addWidget(page_text_);
  connect(button("f13", "次へ>>"), &QPushButton::clicked, this, [this] { Turn(page_ + 1); });
  connect(button("f131", "最後へ>>"), &QPushButton::clicked, this, [this] { Turn(pages_ - 1); });
  row->addStretch();
  // The layout choice of the peak list re-renders from the first page.
  if (kind_ == page::List_Kind::Peaks && !paint_) {
    auto* group = new QButtonGroup(this);
    int id = 0;
    for (const char* caption : {"Compact(通常)形式表示", "JEOL形式表示"}) {
      auto* option = new QRadioButton(QString::fromUtf8(caption), this);
      option->setObjectName(QString("Option%1").arg(id + 1));
      option->setChecked(id == form_);
      group->addButton(option, id++);
      row->addWidget(option);
    }
    connect(group, &QButtonGroup::idClicked, this, [this](int form) {
      form_ = static_cast<int16_t>(form);
      page_ = 0;
      Render();
    });
  }
  // The paper's turn and the list font; the pages are laid out anew.
  for (const auto& [name, caption, with_paper] :
       {std::tuple{"f31", "用紙の向き・Fontの設定", true}, std::tuple{"f32", "List印刷時のFont", false}})
    connect(button(name, caption), &QPushButton::clicked, this, [this, with_paper = with_paper] {
      List_Setup_Dialog dialog(session_, with_paper, this);
      if (dialog.exec() == QDialog::Accepted) Render();
    });
  // The printer and the list paper (Form501 for lists).
  connect(button("f33", "ﾌﾟﾘﾝﾀｰの設定"), &QPushButton::clicked, this, [this] {
    Printer_Form dialog(session_, this, page::Printer_Group::List);
    if (dialog.exec() == QDialog::Accepted) Render();
  });
  connect(button("f21", "実行"), &QPushButton::clicked, this, &List_Form::Print);
  connect(button("f00", "戻る（中止）"), &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(sheet_, 1, Qt::AlignCenter);
  Render();
}

bool List_Form::Paint(platform::Surface& surf, int n) {
  const page::List_Page pg = page::List_Page_At(n, surf.Pixels_Per_Inch());
  return paint_ ? paint_(surf, pg) : page::Print_List(session_, kind_, form_, surf, pg);
}

void List_Form::Render() {
  double width = 0, height = 0;
  page::List_Paper_Cm(session_, 0, width, height);
  const QSize size(page::Sheet_Pixels(width, Preview_Dpi), page::Sheet_Pixels(height, Preview_Dpi));
  // The pages: painted one after the other until the list says it ends.
  QImage scratch(size, QImage::Format_RGB32);
  pages_ = 1;
  for (int n = 0; n + 1 < Page_Limit; ++n) {
    platform::QtSurface surf(scratch, Preview_Dpi);
    if (!Paint(surf, n)) break;
    pages_ = n + 2;
  }
  page_ = std::clamp(page_, 0, pages_ - 1);
  image_ = QImage(size, QImage::Format_RGB32);
  image_.fill(Qt::white);
  {
    platform::QtSurface surf(image_, Preview_Dpi);
    Paint(surf, page_);
  }
  sheet_->setPixmap(QPixmap::fromImage(image_));
  // The window follows the sheet when the paper turns.
  if (sheet_->size() != image_.size()) {
    sheet_->setFixedSize(image_.size());
    adjustSize();
  }
  const QString text = QString("%1/%2").arg(page_ + 1).arg(pages_);
  page_text_->setText(text);
  setWindowTitle(QString::fromUtf8(page::List_Caption(kind_)) + text + ")");
}

void List_Form::Turn(int page) {
  if (page < 0 || page >= pages_ || page == page_) return;
  page_ = page;
  Render();
}

int List_Form::Print_On(QPrinter& printer) {
  return platform::Print_Pages(printer, [this](platform::Surface& surf, int n) { return Paint(surf, n); });
}

void List_Form::Print() {
  if (Print_Through_Dialog(session_, this, page::Printer_Group::List, [this](QPrinter& p) { return Print_On(p); }) == 0)
    accept();
}

}  // namespace tevo::app
