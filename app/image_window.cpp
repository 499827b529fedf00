#include "image_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenuBar>
#include <QMimeData>
#include <QBuffer>
#include <QPainter>
#include <QVBoxLayout>

#include "display/style.h"
#include "platform/qt/qt_picture.h"
#include "session/messages.h"

namespace tevo::app {

namespace {

// Clipboard formats of metafiles; the first of each pair is the one written.
const char* const Emf_Mime[] = {"image/x-emf", "image/emf"};
const char* const Wmf_Mime[] = {"image/x-wmf", "image/wmf"};

std::span<const uint8_t> Bytes_Of(const QByteArray& a) {
  return {reinterpret_cast<const uint8_t*>(a.constData()), static_cast<std::size_t>(a.size())};
}

// Bytes that the picture service can draw.
bool Drawable(std::span<const uint8_t> bytes) {
  return !platform::Picture_Image(bytes, QSize(8, 8)).isNull();
}

}  // namespace

Structure_Picture::Structure_Picture(const Session& s, QWidget* parent)
    : QWidget(parent), session_(s) {
  setObjectName("Picture1");
  setMinimumSize(80, 60);
  setAutoFillBackground(true);
  QPalette p = palette();
  p.setColor(QPalette::Window, Qt::white);
  setPalette(p);
}

void Structure_Picture::paintEvent(QPaintEvent*) {
  if (session_.Structure.Body.empty()) return;
  QPainter painter(this);
  platform::Paint_Picture(painter, rect(), session_.Structure.Body);
}

Image_Window::Image_Window(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("Form110");
  setWindowTitle("構造式・イメージの表示");
  setWindowFlag(Qt::WindowStaysOnTopHint);
  setModal(false);
  resize(320, 260);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* bar = new QMenuBar(this);
  layout->setMenuBar(bar);
  QMenu* image = bar->addMenu("Image");
  auto add = [&](const char* name, const char* caption, auto slot) {
    QAction* a = image->addAction(caption);
    a->setObjectName(name);
    connect(a, &QAction::triggered, this, slot);
  };
  add("Menu_Load", "メタファイルの読み込み", [this] { Load_File({}); });
  add("Menu_Paste", "クリップボードからの貼り付け", [this] { Paste(); });
  add("Menu_Copy", "クリップボードへコピー", [this] { Copy(); });
  picture_ = new Structure_Picture(session_, this);
  layout->addWidget(picture_, 1);
}

QAction* Image_Window::Action(const char* name) const { return findChild<QAction*>(name); }

void Image_Window::Take(std::vector<uint8_t> bytes) {
  session_.Structure.Body = std::move(bytes);
  session_.Data_Saved = 0;
  picture_->update();
  emit changed();
}

bool Image_Window::Load_File(const std::string& path) {
  std::string file = path;
  if (file.empty()) {
    platform::File_Request request;
    request.title = "メタファイルの読み込み";
    request.filter =
        "メタファイル(*.emf;*.wmf)|*.emf;*.wmf|"
        "イメージ(*.bmp;*.jpg;*.jpeg;*.png;*.ico)|*.bmp;*.jpg;*.jpeg;*.png;*.ico|全てのファイル|*.*|";
    const auto answer = session_.ui->Open_File(request);
    if (!answer) return false;
    file = answer->path;
  }
  QFile f(QString::fromStdString(file));
  const QByteArray bytes = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  if (!Drawable(Bytes_Of(bytes))) {
    session_.ui->Beep();
    Show_Message(session_, "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙの拡張子が 正しくない",
                 Style_OK | Icon_Exclamation, "ファイル名エラー");
    return false;
  }
  Take({bytes.begin(), bytes.end()});
  return true;
}

bool Image_Window::Paste() {
  const QMimeData* data = QApplication::clipboard()->mimeData();
  if (data == nullptr) return false;
  for (const char* mime : {Emf_Mime[0], Emf_Mime[1], Wmf_Mime[0], Wmf_Mime[1]}) {
    const QByteArray bytes = data->data(mime);
    if (!bytes.isEmpty() && Drawable(Bytes_Of(bytes))) {
      Take({bytes.begin(), bytes.end()});
      return true;
    }
  }
  if (!data->hasImage()) return false;
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (!qvariant_cast<QImage>(data->imageData()).save(&buffer, "PNG")) return false;
  Take({png.begin(), png.end()});
  return true;
}

void Image_Window::Copy() const {
  const std::vector<uint8_t>& body = session_.Structure.Body;
  const QImage image = platform::Picture_Image(body, picture_->size());
  if (image.isNull()) return;
  auto* data = new QMimeData;
  data->setImageData(image);
  const platform::Picture_Kind kind = platform::Kind_Of_Picture(body);
  if (kind == platform::Picture_Kind::Emf || kind == platform::Picture_Kind::Wmf)
    data->setData(kind == platform::Picture_Kind::Emf ? Emf_Mime[0] : Wmf_Mime[0],
                  QByteArray(reinterpret_cast<const char*>(body.data()), static_cast<qsizetype>(body.size())));
  QApplication::clipboard()->setMimeData(data);
}

void Image_Window::showEvent(QShowEvent* event) {
  display::Store_Setting(session_, "STRUCTURE DISP", 1);
  QDialog::showEvent(event);
}

void Image_Window::done(int result) {
  display::Store_Setting(session_, "STRUCTURE DISP", 0);
  QDialog::done(result);
}

}  // namespace tevo::app
