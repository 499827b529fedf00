#include "bitmap_panel.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "page/draw_page.h"
#include "platform/qt/qt_surface.h"
#include "platform/ui.h"

namespace tevo::app {

namespace {

QComboBox* Size_Field(QWidget* parent, const char* name, int limit) {
  auto* c = new QComboBox(parent);
  c->setObjectName(name);
  c->setEditable(true);
  c->setInsertPolicy(QComboBox::NoInsert);
  for (int n : {500, 1000, 1500, 2000, 3000, 4000, 5000})
    if (n <= limit) c->addItem(QString::number(n));
  c->lineEdit()->setValidator(new QIntValidator(1, 99999, c));
  return c;
}

}  // namespace

Bitmap_Panel::Bitmap_Panel(Session& session, const page::Copy_Range& range, page::Bitmap_Size offered, float aspect,
                           page::Export_Kind kind, QWidget* parent)
    : QDialog(parent), session_(session), range_(range), aspect_(aspect), kind_(kind), size_(offered) {
  setObjectName("S_Frame");
  const bool png = kind == page::Export_Kind::Png;
  setWindowTitle(png ? QStringLiteral("画面の保存(PNG)") : QStringLiteral("画面のコピー"));
  const int limit = page::Pixel_Limit(kind);
  width_ = Size_Field(this, "Combo51", limit);
  height_ = Size_Field(this, "Combo52", limit);
  estimate_ = new QLabel(this);
  estimate_->setObjectName("Label_Size");
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(QStringLiteral("横"), this), 0, 0);
  grid->addWidget(width_, 0, 1);
  grid->addWidget(new QLabel(QStringLiteral("印刷等に使用するときは横1000～2000に設定"), this), 0, 2);
  grid->addWidget(new QLabel(QStringLiteral("縦"), this), 1, 0);
  grid->addWidget(height_, 1, 1);
  grid->addWidget(new QLabel(QStringLiteral("縦横比は固定"), this), 1, 2);
  grid->addWidget(estimate_, 2, 1);
  if (png) grid->addWidget(new QLabel(QStringLiteral("BMPの1/20程度"), this), 2, 2);
  auto* buttons = new QHBoxLayout;
  if (png) {
    connect(Named_Button(this, "Command51", QStringLiteral("PNG形式で保存")), &QPushButton::clicked, this,
            [this] { Save(); });
  } else {
    connect(Named_Button(this, "Command54", QStringLiteral("クリップボードへコピー")), &QPushButton::clicked, this,
            &Bitmap_Panel::Copy_To_Clipboard);
    connect(Named_Button(this, "Command53", QStringLiteral("BMP形式で保存")), &QPushButton::clicked, this,
            [this] { Save(); });
  }
  auto* close = Named_Button(this, "Command52", QStringLiteral("閉じる"));
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  for (QPushButton* b : findChildren<QPushButton*>()) buttons->addWidget(b);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addLayout(buttons);
  for (QComboBox* field : {width_, height_}) {
    connect(field->lineEdit(), &QLineEdit::editingFinished, this, [this, field] { Typed(field); });
    connect(field, &QComboBox::textActivated, this, [this, field] { Typed(field); });
  }
  Show_Size();
}

void Bitmap_Panel::Open(Session& session, const page::Copy_Range& range, double preview_dpi, page::Export_Kind kind,
                        QWidget* parent) {
  // The range in pixels of the preview at full size.
  const page::Page_Setup p = page::Read_Page_Setup(session);
  const page::Page_Window win = page::Copy_Window(p, range);
  const int w = page::Sheet_Pixels(win.Right - win.Left, preview_dpi);
  const int h = page::Sheet_Pixels(win.Bottom - win.Top, preview_dpi);
  const page::Bitmap_Size offered = page::Open_Copy_Range(session, w, h);
  if (offered.width == 0) return;
  Bitmap_Panel panel(session, range, offered, static_cast<float>(h) / static_cast<float>(w), kind, parent);
  panel.exec();
}

void Bitmap_Panel::Typed(QComboBox* field) {
  if (updating_) return;
  bool ok = false;
  const int n = field->currentText().trimmed().toInt(&ok);
  if (ok && n > 0) {
    const int limit = page::Pixel_Limit(kind_);
    size_ = field == width_ ? page::Size_From_Width(n, aspect_, limit) : page::Size_From_Height(n, aspect_, limit);
  }
  Show_Size();
}

void Bitmap_Panel::Show_Size() {
  updating_ = true;
  width_->setCurrentText(QString::number(size_.width));
  height_->setCurrentText(QString::number(size_.height));
  estimate_->setText(QString::fromStdString(page::Size_Estimate_Text(size_)));
  updating_ = false;
}

QImage Bitmap_Panel::Picture() const {
  const page::Page_Window win = page::Copy_Window(page::Read_Page_Setup(session_), range_);
  QImage image(size_.width, size_.height, QImage::Format_RGB32);
  {
    platform::QtSurface surf(image, size_.width / (win.Right - win.Left) * 2.54);
    page::Draw_Page(session_, surf, win);
  }
  return image;
}

int Bitmap_Panel::Save(const std::string& given) {
  const bool png = kind_ == page::Export_Kind::Png;
  setEnabled(false);
  session_.ui->Wait_Cursor(true);
  const int status = page::Save_Export(session_, kind_, given, [this, png](const std::string& name) {
    return Picture().save(QString::fromStdString(name), png ? "PNG" : "BMP") ? 0 : -1;
  });
  session_.ui->Wait_Cursor(false);
  setEnabled(true);
  return status;
}

void Bitmap_Panel::Copy_To_Clipboard() {
  session_.ui->Wait_Cursor(true);
  QApplication::clipboard()->setImage(Picture());
  session_.ui->Wait_Cursor(false);
}

}  // namespace tevo::app
