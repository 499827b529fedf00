#include "page_form.h"

#include <QApplication>
#include <QBuffer>
#include <QButtonGroup>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include "display/style.h"
#include "page_menus.h"
#include "page/draw_page.h"
#include "page/fonts.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#include "printer_dialog.h"
#include "session/messages.h"

namespace tevo::app {

namespace {

// Pixels per inch of the preview at "100%".
constexpr double Preview_Dpi = 60;
// The clipboard format that carries a page picture's own bytes (metafiles too).
constexpr char Picture_Mime[] = "application/x-tevo1d-picture";
// Size of a placed metafile, whose own size the page does not read: cm.
constexpr double Metafile_Cm = 5;

QString Q(const std::string& t) { return QString::fromStdString(t); }

std::vector<uint8_t> Bytes(const QByteArray& a) { return {a.begin(), a.end()}; }

// The text editor ("Text1") opened at the pointer: the grouped notation
// typed as is, with the toolbar's groups, a face and a size put around the
// selection.
class Text_Editor : public QDialog {
 public:
  Text_Editor(QWidget* parent, const QString& text) : QDialog(parent) {
    setObjectName("NMR1D_Form8_Text");
    setWindowTitle(QStringLiteral("文字入力"));
    edit_ = new QPlainTextEdit(text, this);
    edit_->setObjectName("Text1");
    auto* tools = new QHBoxLayout;
    tools->setObjectName("Toolbar2");
    const std::pair<const char*, const char*> groups[] = {
        {"I", "\\i("}, {"B", "\\b("}, {"U", "\\u("}, {"S", "\\s("}, {"α", "\\g("}, {"x²", "\\+("}, {"x₂", "\\-("}};
    for (const auto& [caption, opening] : groups) {
      auto* b = new QToolButton(this);
      b->setText(QString::fromUtf8(caption));
      const QString o = QString::fromUtf8(opening);
      connect(b, &QToolButton::clicked, this, [this, o] { Wrap(o + Selected() + ")"); });
      tools->addWidget(b);
    }
    auto* face = new QComboBox(this);
    face->setObjectName("Combo3");
    face->addItem(QString());
    for (const page::Font_Face& f : page::Fonts().Font_Table) face->addItem(Q(f.Name));
    connect(face, &QComboBox::activated, this, [this, face](int i) {
      if (i > 0) Wrap(Q(page::Font_Group(face->itemText(i).toStdString(), Selected().toStdString())));
    });
    auto* size = new QComboBox(this);
    size->setObjectName("Combo4");
    size->addItem(QString());
    for (int pt : {6, 8, 9, 10, 11, 12, 14, 16, 18, 20, 24, 28, 36, 48, 72}) size->addItem(QString::number(pt));
    connect(size, &QComboBox::activated, this, [this, size](int i) {
      if (i > 0) Wrap(Q(page::Size_Group(size->itemText(i).toDouble(), Selected().toStdString())));
    });
    tools->addWidget(face);
    tools->addWidget(size);
    tools->addStretch();
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName("Command1");
    auto* cancel = new QPushButton(QStringLiteral("キャンセル"), this);
    cancel->setObjectName("Command2");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(tools);
    layout->addWidget(edit_, 1);
    layout->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    resize(420, 180);
  }
  std::string Text() const { return edit_->toPlainText().toStdString(); }

 private:
  QString Selected() const { return edit_->textCursor().selectedText(); }
  void Wrap(const QString& grouped) {
    edit_->textCursor().insertText(grouped);
    edit_->setFocus();
  }
  QPlainTextEdit* edit_;
};

}  // namespace

QImage Page_Image(Session& s, double dpi, const page::Page_Content* content) {
  const page::Page_Setup p = page::Read_Page_Setup(s);
  QImage image(page::Sheet_Pixels(p.Paper_Width, dpi), page::Sheet_Pixels(p.Paper_Height, dpi), QImage::Format_RGB32);
  {
    platform::QtSurface surf(image, dpi);
    page::Draw_Page(s, surf, content);
  }
  return image;
}

Page_Form::Page_Form(Session& session, QWidget* parent, std::function<void(int)> edit_overlay)
    : QDialog(parent), session_(session), edit_overlay_(std::move(edit_overlay)) {
  setObjectName("NMR1D_Form8");
  setWindowTitle(QStringLiteral("印刷プレビュー/文字・Image入力"));
  setAcceptDrops(true);
  sheet_ = new QLabel(this);
  sheet_->setObjectName("Picture1");
  sheet_->setMouseTracking(true);
  sheet_->installEventFilter(this);
  auto* scroll = new QScrollArea(this);
  scroll->setWidget(sheet_);
  scroll->setAlignment(Qt::AlignCenter);
  scroll->setBackgroundRole(QPalette::Dark);
  paper_ = new QLabel(this);
  status_ = new QLabel(this);
  status_->setObjectName("StatusBar1");
  zoom_ = new QComboBox(this);
  for (const char* z : {"100%", "150%", "200%", "300%", "400%", "任意"}) zoom_->addItem(QString::fromUtf8(z));
  // The editing modes: take and drag, write a text, draw a line.
  auto* modes = new QButtonGroup(this);
  const char* captions[] = {"選択", "文字", "線"};
  for (int i = 0; i < 3; ++i) {
    mode_buttons_[i] = new QToolButton(this);
    mode_buttons_[i]->setText(QString::fromUtf8(captions[i]));
    mode_buttons_[i]->setObjectName(QStringLiteral("Mode%1").arg(i + 1));
    mode_buttons_[i]->setCheckable(true);
    modes->addButton(mode_buttons_[i], i);
  }
  mode_buttons_[0]->setChecked(true);
  connect(modes, &QButtonGroup::idClicked, this, [this](int id) { Set_Mode(static_cast<Mode>(id)); });
  line_kind_ = new QComboBox(this);
  line_kind_->setObjectName("Combo1");
  for (const std::string& k : page::Line_Kind_Table()) line_kind_->addItem(Q(k));
  line_kind_->setCurrentIndex(1);
  line_dash_ = new QComboBox(this);
  line_dash_->setObjectName("Combo2");
  for (const std::string& d : page::Dash_Table()) line_dash_->addItem(Q(d));
  // A kind chosen with a line taken changes that line.
  auto restyle = [this] {
    if (hit_.Kind == page::Hit_Kind::Line &&
        page::Set_Line_Kind(session_, undo_, hit_.Index, line_kind_->currentIndex(), line_dash_->currentIndex()))
      Repaint_Sheet();
  };
  connect(line_kind_, &QComboBox::activated, this, restyle);
  connect(line_dash_, &QComboBox::activated, this, restyle);
  auto* print = new QPushButton(QStringLiteral("印刷実行"), this);
  print->setObjectName("Command4");
  auto* close = new QPushButton(QStringLiteral("閉じる"), this);
  auto* row = new QHBoxLayout;
  row->addWidget(paper_);
  for (QToolButton* b : mode_buttons_) row->addWidget(b);
  row->addWidget(line_kind_);
  row->addWidget(line_dash_);
  row->addStretch();
  row->addWidget(zoom_);
  Add_Page_Menus(session_, this, row, [this] { Repaint_Sheet(); }, Preview_Dpi);
  row->addWidget(print);
  row->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  Build_Menus();
  layout->addLayout(row);
  layout->addWidget(scroll, 1);
  layout->addWidget(status_);
  // The zoom of the last session.
  const double magnif = display::Setting_Num(session_, "PREVIEW MAGNIF", 1.0) * 100;
  const int listed = zoom_->findText(QStringLiteral("%1%").arg(std::lround(magnif)));
  if (listed >= 0) {
    zoom_->setCurrentIndex(listed);
  } else {
    custom_zoom_ = magnif;
    zoom_->setCurrentIndex(zoom_->count() - 1);
  }
  connect(zoom_, &QComboBox::activated, this, &Page_Form::Zoom_Chosen);
  connect(print, &QPushButton::clicked, this, &Page_Form::Print);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  page::Keep_Page_On_Sheet(session_);
  Repaint_Sheet();
  resize(std::max(image_.width() + 60, 720), std::min(image_.height(), 900) + 120);
}

QWidget* Page_Form::Sheet() const { return sheet_; }

QAction* Page_Form::Action(const QString& name) const { return findChild<QAction*>(name); }

void Page_Form::Build_Menus() {
  auto* bar = new QMenuBar(this);
  layout()->setMenuBar(bar);
  auto add = [this](QMenu* menu, const char* name, const char* caption, auto slot) {
    QAction* a = menu->addAction(QString::fromUtf8(caption));
    a->setObjectName(name);
    connect(a, &QAction::triggered, this, slot);
    return a;
  };
  QMenu* file = bar->addMenu(QStringLiteral("ファイル"));
  add(file, "m_print", "印刷実行", [this] { Print(); });
  // Built elsewhere or not yet: kept visible and disabled.
  for (const auto& [name, caption] : {std::pair{"m_copy_range", "コピー範囲"}, {"m_export", "書き出すものの変更"},
                                      {"m_print_props", "印刷のプロパティ"}}) {
    QAction* a = file->addAction(QString::fromUtf8(caption));
    a->setObjectName(name);
    a->setEnabled(false);
  }

  QMenu* edit = bar->addMenu(QStringLiteral("編集"));
  add(edit, "m_undo", "取り消し", [this] {
    if (page::Undo_Pop(undo_, session_)) {
      hit_ = {};
      Repaint_Sheet();
    }
  });
  edit->addSeparator();
  add(edit, "m_delete", "削除", [this] { Delete_Selected(); });
  add(edit, "m_image_cut", "Image切り取り", [this] {
    Copy_Picture();
    Delete_Selected();
  });
  add(edit, "m_image_copy", "Imageコピー", [this] { Copy_Picture(); });
  add(edit, "m_image_paste", "Imageの貼り付け", [this] { Paste_Picture(); });
  add(edit, "m_image_file", "ファイルからImageを読込む", [this] {
    platform::File_Request r;
    r.title = "ファイルからImageを読込む";
    r.filter = "Image(*.emf;*.wmf;*.jpg;*.jpeg;*.bmp;*.ico;*.png)|*.emf;*.wmf;*.jpg;*.jpeg;*.bmp;*.ico;*.png|全てのファイル|*.*|";
    if (const auto answer = session_.ui->Open_File(r))
      Load_Picture(Q(answer->path), QPoint(g_.Frame.Left, g_.Frame.Top));
  });
  add(edit, "m_image_white", "白抜きImage", [this] {
    if (page::Toggle_White_Out(session_, Selected_Image())) Repaint_Sheet();
  })->setCheckable(true);
  add(edit, "m_image_front", "最前面に移動", [this] {
    hit_.Index = page::Image_To_Front(session_, undo_, Selected_Image());
    Repaint_Sheet();
  });
  add(edit, "m_image_back", "一番後に移動", [this] {
    hit_.Index = page::Image_To_Back(session_, undo_, Selected_Image());
    Repaint_Sheet();
  });
  edit->addSeparator();
  add(edit, "m_overlay_edit", "重ね書きの編集", [this] {
    const int slot = page::Overlay_Under(session_, g_, pointer_.x(), pointer_.y());
    if (slot > 0 && edit_overlay_) {
      edit_overlay_(slot);
      Repaint_Sheet();
    }
  });

  QMenu* view = bar->addMenu(QStringLiteral("表示"));
  for (int i = 0; i < 6; ++i) {
    const char* captions[] = {"100%", "150%", "200%", "300%", "400%", "任意"};
    QAction* a = view->addAction(QString::fromUtf8(captions[i]));
    a->setObjectName(QStringLiteral("m_zoom_%1").arg(i));
    connect(a, &QAction::triggered, this, [this, i] {
      zoom_->setCurrentIndex(i);
      Zoom_Chosen();
    });
  }
  view->addSeparator();
  add(view, "m_image_frames", "Image枠の表示", [this](bool on) {
    display::Store_Setting(session_, "IMAGE WAKU", on ? 1 : 0);
    Repaint_Sheet();
  })->setCheckable(true);
  // The page has no back side of its own yet.
  view->addAction(QStringLiteral("裏面を表示"))->setObjectName("m_back_side");
  Action("m_back_side")->setEnabled(false);
  connect(edit, &QMenu::aboutToShow, this, &Page_Form::Refresh_Menus);
}

void Page_Form::Refresh_Menus() {
  const page::Undo_Caption c = page::Page_Undo_Caption(undo_.Slots[0].Kind, false);
  Action("m_undo")->setText(Q(c.Text));
  Action("m_undo")->setEnabled(c.Enabled);
  const int image = Selected_Image();
  for (const char* name : {"m_image_cut", "m_image_copy", "m_image_white", "m_image_front", "m_image_back"})
    Action(name)->setEnabled(image >= 0);
  if (image >= 0)
    Action("m_image_white")->setChecked((session_.Images[static_cast<std::size_t>(image)].Extra & page::Image_White_Out) != 0);
  const QMimeData* clip = QApplication::clipboard()->mimeData();
  Action("m_image_paste")->setEnabled(clip && (clip->hasImage() || clip->hasFormat(Picture_Mime)) &&
                                      static_cast<int>(session_.Images.size()) < page::Image_Max);
  const auto kind = hit_.Kind;
  Action("m_delete")->setEnabled(kind == page::Hit_Kind::Text || kind == page::Hit_Kind::Line || image >= 0);
  Action("m_overlay_edit")->setEnabled(edit_overlay_ && page::Overlay_Under(session_, g_, pointer_.x(), pointer_.y()) > 0);
  Action("m_image_frames")->setChecked(display::Setting_Int(session_, "IMAGE WAKU", 0) == 1);
}

double Page_Form::Zoom_Percent() const {
  if (zoom_->currentIndex() == zoom_->count() - 1) return custom_zoom_;
  return zoom_->currentText().chopped(1).toDouble();
}

void Page_Form::Zoom_Chosen() {
  if (zoom_->currentIndex() == zoom_->count() - 1) {
    // "任意": any magnification in per cent.
    QDialog ask(this);
    ask.setObjectName("NMR1D_Form81");
    ask.setWindowTitle(QStringLiteral("拡大率"));
    auto* value = new QSpinBox(&ask);
    value->setObjectName("Text1");
    value->setRange(25, 800);
    value->setValue(static_cast<int>(std::lround(custom_zoom_)));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &ask);
    connect(buttons, &QDialogButtonBox::accepted, &ask, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &ask, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("倍率(%)"), &ask));
    row->addWidget(value);
    auto* layout = new QVBoxLayout(&ask);
    layout->addLayout(row);
    layout->addWidget(buttons);
    if (ask.exec() == QDialog::Accepted) custom_zoom_ = value->value();
  }
  display::Store_Setting(session_, "PREVIEW MAGNIF", Zoom_Percent() / 100);
  Repaint_Sheet();
}

void Page_Form::Repaint_Sheet() {
  const page::Page_Setup p = page::Read_Page_Setup(session_);
  paper_->setText(Q(page::Paper_Text(p.Paper_Code, p.Orient, true)));
  image_ = Page_Image(session_, Preview_Dpi * Zoom_Percent() / 100);
  page::Page_Layout(p, image_.width(), image_.height(), page::Whole_Sheet(p), g_);
  Show_Sheet(image_);
  Refresh_Menus();
}

// The sheet with the editor's marks over it: picture frames when asked
// for, and the outline of what is taken.
void Page_Form::Show_Sheet(const QImage& shown) {
  QImage marked = shown;
  {
    QPainter painter(&marked);
    painter.setPen(QPen(Qt::gray, 1, Qt::DashLine));
    if (display::Setting_Int(session_, "IMAGE WAKU", 0) == 1)
      for (const Image_Rec& p : session_.Images)
        painter.drawRect(g_.Frame_X(p.Left), g_.Frame_Y(p.Top), std::lround(p.Width * (g_.Frame.Right - g_.Frame.Left)),
                         std::lround(p.Height * (g_.Frame.Bottom - g_.Frame.Top)));
  }
  sheet_->setPixmap(QPixmap::fromImage(marked));
  sheet_->resize(marked.size());
}

bool Page_Form::eventFilter(QObject* watched, QEvent* event) {
  if (watched != sheet_) return QDialog::eventFilter(watched, event);
  auto* m = dynamic_cast<QMouseEvent*>(event);
  if (m == nullptr) return QDialog::eventFilter(watched, event);
  const QPoint p = m->position().toPoint();
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      if (m->button() == Qt::LeftButton) Mouse_Press(p);
      return true;
    case QEvent::MouseMove:
      Mouse_Move(p);
      return true;
    case QEvent::MouseButtonRelease:
      if (m->button() == Qt::LeftButton) Mouse_Release(p);
      return true;
    case QEvent::MouseButtonDblClick:
      Double_Click(p);
      return true;
    default:
      return QDialog::eventFilter(watched, event);
  }
}

void Page_Form::Set_Mode(Mode m) {
  mode_ = m;
  mode_buttons_[static_cast<int>(m)]->setChecked(true);
  sheet_->setCursor(m == Mode::Select ? Qt::ArrowCursor : Qt::CrossCursor);
}

void Page_Form::Mouse_Press(QPoint p) {
  pointer_ = press_ = p;
  pressed_ = true;
  if (mode_ == Mode::Line) return;
  platform::QtSurface measure(image_, Preview_Dpi * Zoom_Percent() / 100);
  hit_ = page::Hit_Test(session_, measure, g_, p.x(), p.y());
  if (hit_.Kind == page::Hit_Kind::Line) {
    const Line_Rec& l = session_.Lines[static_cast<std::size_t>(hit_.Index)];
    line_kind_->setCurrentIndex(l.Kind);
    line_dash_->setCurrentIndex(l.Style);
  }
  if (hit_.Kind != page::Hit_Kind::None)
    status_->setText(Q(page::Drag_Status(g_, page::Read_Page_Setup(session_), hit_.Box)));
}

void Page_Form::Mouse_Move(QPoint p) {
  pointer_ = p;
  if (!pressed_) return;
  const QPoint d = p - press_;
  QImage shown = image_;
  QPainter painter(&shown);
  // The outline is drawn inverting what lies below, so it shows on any ground.
  painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
  painter.setPen(QPen(Qt::white, 1, Qt::DashLine));
  if (mode_ == Mode::Line) {
    painter.drawLine(press_, p);
  } else if (hit_.Kind == page::Hit_Kind::Line) {
    const page::Pixel_Rect r = page::Drag_Box(hit_, d.x(), d.y());
    painter.drawLine(r.Left, r.Top, r.Right, r.Bottom);
    status_->setText(Q(page::Drag_Status(g_, page::Read_Page_Setup(session_), r)));
  } else if (hit_.Kind != page::Hit_Kind::None) {
    const page::Pixel_Rect r = page::Drag_Box(hit_, d.x(), d.y());
    painter.drawRect(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top);
    status_->setText(Q(page::Drag_Status(g_, page::Read_Page_Setup(session_), r)));
  }
  painter.end();
  Show_Sheet(shown);
}

void Page_Form::Mouse_Release(QPoint p) {
  if (!pressed_) return;
  pressed_ = false;
  pointer_ = p;
  const QPoint d = p - press_;
  switch (mode_) {
    case Mode::Line:
      if (d.manhattanLength() >= 3 &&
          page::Add_Line(session_, undo_,
                         page::Line_Between(g_, press_.x(), press_.y(), p.x(), p.y(), line_kind_->currentIndex(),
                                            line_dash_->currentIndex())) >= 0)
        Repaint_Sheet();
      return;
    case Mode::Text:
      if (d.manhattanLength() < 3) {
        Edit_Text(hit_.Kind == page::Hit_Kind::Text ? hit_.Index : -1, press_);
        return;
      }
      break;
    case Mode::Select:
      break;
  }
  if (page::Drop_Drag(session_, undo_, g_, hit_, d.x(), d.y())) {
    hit_.Box = page::Drag_Box(hit_, d.x(), d.y());
    Repaint_Sheet();
    status_->setText(Q(page::Drag_Status(g_, page::Read_Page_Setup(session_), hit_.Box)));
  } else {
    Show_Sheet(image_);
  }
}

void Page_Form::Double_Click(QPoint p) {
  platform::QtSurface measure(image_, Preview_Dpi * Zoom_Percent() / 100);
  const page::Page_Hit h = page::Hit_Test(session_, measure, g_, p.x(), p.y());
  if (h.Kind == page::Hit_Kind::Text) Edit_Text(h.Index, p);
}

void Page_Form::Edit_Text(int index, QPoint at) {
  const bool existing = index >= 0 && index < static_cast<int>(session_.Texts.size());
  Text_Editor editor(this, existing ? Q(session_.Texts[static_cast<std::size_t>(index)].Text) : QString());
  editor.move(sheet_->mapToGlobal(at));
  if (editor.exec() != QDialog::Accepted) return;
  const std::string text = editor.Text();
  if (existing) {
    Text_Rec t = session_.Texts[static_cast<std::size_t>(index)];
    t.Text = text;
    // A text emptied is removed.
    if (text.empty() ? page::Delete_Text(session_, undo_, index) : page::Change_Text(session_, undo_, index, t))
      Repaint_Sheet();
  } else if (!text.empty()) {
    if (page::Add_Text(session_, undo_, page::Text_At(g_, at.x(), at.y(), text)) >= 0) Repaint_Sheet();
  }
}

int Page_Form::Selected_Image() const {
  return hit_.Kind == page::Hit_Kind::Image && hit_.Index < static_cast<int>(session_.Images.size()) ? hit_.Index
                                                                                                     : -1;
}

void Page_Form::Delete_Selected() {
  bool done = false;
  if (hit_.Kind == page::Hit_Kind::Text) done = page::Delete_Text(session_, undo_, hit_.Index);
  if (hit_.Kind == page::Hit_Kind::Line) done = page::Delete_Line(session_, undo_, hit_.Index);
  if (hit_.Kind == page::Hit_Kind::Image) done = page::Delete_Image(session_, undo_, hit_.Index);
  if (!done) return;
  hit_ = {};
  Repaint_Sheet();
}

void Page_Form::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete) return Delete_Selected();
  QDialog::keyPressEvent(event);
}

bool Page_Form::Add_Picture(std::vector<uint8_t> bytes, bool metafile, QPoint at, QSize natural) {
  // A raster picture takes its own size at 96 pixels per inch, held within
  // the frame; a metafile a square of Metafile_Cm.
  double w = metafile ? Metafile_Cm * g_.Kx : natural.width() / 96.0 * 2.54 * g_.Kx;
  double h = metafile ? Metafile_Cm * g_.Ky : natural.height() / 96.0 * 2.54 * g_.Ky;
  const double room = 0.5 * (g_.Frame.Right - g_.Frame.Left);
  if (w > room) h *= room / w, w = room;
  const int index = page::Add_Image(session_, undo_, g_, std::move(bytes), at.x(), at.y(), static_cast<int>(std::lround(w)),
                                    static_cast<int>(std::lround(h)));
  if (index < 0) return false;
  hit_ = {page::Hit_Kind::Image, index, page::Hit_Part::Body, {}};
  Repaint_Sheet();
  return true;
}

bool Page_Form::Load_Picture(const QString& path, QPoint at) {
  QFile file(path);
  std::vector<uint8_t> bytes;
  if (page::Picture_Kind_Known(path.toStdString()) && file.open(QIODevice::ReadOnly)) bytes = Bytes(file.readAll());
  QImage picture;
  const bool metafile = page::Is_Metafile_Bytes(bytes);
  if (bytes.empty() || (!metafile && !picture.loadFromData(QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                                                      static_cast<qsizetype>(bytes.size()))))) {
    Show_Message(session_, page::Picture_Refused_Text(path.toStdString()), Style_OK | Icon_Exclamation, "Image");
    return false;
  }
  return Add_Picture(std::move(bytes), metafile, at, picture.size());
}

void Page_Form::Copy_Picture() {
  const int i = Selected_Image();
  if (i < 0) return;
  const std::vector<uint8_t>& body = session_.Images[static_cast<std::size_t>(i)].Body;
  const QByteArray bytes(reinterpret_cast<const char*>(body.data()), static_cast<qsizetype>(body.size()));
  auto* data = new QMimeData;
  data->setData(Picture_Mime, bytes);
  if (QImage picture; picture.loadFromData(bytes)) data->setImageData(picture);
  QApplication::clipboard()->setMimeData(data);
}

void Page_Form::Paste_Picture() {
  const QMimeData* clip = QApplication::clipboard()->mimeData();
  if (clip == nullptr) return;
  const QPoint at(g_.Frame.Left, g_.Frame.Top);
  if (clip->hasFormat(Picture_Mime)) {
    std::vector<uint8_t> bytes = Bytes(clip->data(Picture_Mime));
    QImage picture;
    picture.loadFromData(clip->data(Picture_Mime));
    const bool metafile = page::Is_Metafile_Bytes(bytes);
    Add_Picture(std::move(bytes), metafile, at, picture.size());
  } else if (clip->hasImage()) {
    // A bitmap from elsewhere is kept as PNG.
    const QImage picture = qvariant_cast<QImage>(clip->imageData());
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    Add_Picture(Bytes(png), false, at, picture.size());
  }
}

void Page_Form::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void Page_Form::dropEvent(QDropEvent* event) {
  const QPoint at = sheet_->mapFrom(this, event->position().toPoint());
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) Load_Picture(url.toLocalFile(), at);
  event->acceptProposedAction();
}

int Print_Sheet(Session& s, QPrinter& printer, const page::Page_Content* content) {
  const int orient = page::Choose_Print_Orientation(
      s, printer.pageLayout().orientation() == QPageLayout::Landscape ? 1 : 0);
  if (orient < 0) return 1;
  printer.setPageOrientation(orient == 1 ? QPageLayout::Landscape : QPageLayout::Portrait);
  double w = 0, h = 0;
  platform::Printer_Paper_mm(printer, w, h);
  if (page::Check_Printer_Paper(s, w, h) != 0) return 1;
  return platform::Print_Page(printer, [&s, content](platform::Surface& surf) { page::Draw_Page(s, surf, content); });
}

int Page_Form::Print_On(QPrinter& printer) {
  const page::Page_Setup before = page::Read_Page_Setup(session_);
  const int printed = Print_Sheet(session_, printer);
  // The operator may have taken the printer's turn for the sheet.
  if (page::Read_Page_Setup(session_).Orient != before.Orient) Repaint_Sheet();
  return printed;
}

void Page_Form::Print() {
  Print_Through_Dialog(session_, this, page::Printer_Group::Page, [this](QPrinter& p) { return Print_On(p); });
}

}  // namespace tevo::app
