#include "overlay_window.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <filesystem>

#include "dialog_parts.h"
#include "hold_button.h"
#include "overlay/difference.h"
#include "overlay/overlay_set.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

std::string Name(const char* stem, int slot) { return std::string(stem) + "_" + std::to_string(slot); }

QString Row_Number(double v) { return Q(Format_Number(v, "####0.0###")); }

// A colour 0xBBGGRR as Qt's.
QColor Colour_Of(int32_t bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

QSpinBox* Number_Box(QWidget* parent, const char* name, int low, int value) {
  auto* box = new QSpinBox(parent);
  box->setObjectName(name);
  box->setRange(low, overlay::Overlay_Rows);
  box->setValue(value);
  return box;
}

}  // namespace

Overlay_Window::Overlay_Window(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form6");
  setWindowTitle(QStringLiteral("Multi Spectrum"));
  setModal(false);
  auto* layout = new QVBoxLayout(this);
  auto* grid = new QGridLayout;
  int column = 0;
  for (const char* head : {"No.", "表示", "縦拡大率", "", "", "位置", "", "", "色", "ピーク", "積分", "ポイント数",
                           "コメント", "ファイル名", "", ""})
    grid->addWidget(new QLabel(QString::fromUtf8(head), this), 0, column++);
  for (int k = 0; k < overlay::Overlay_Rows; ++k) Build_Row(k, grid);
  layout->addLayout(grid);
  Build_Bottom(layout);
  Refresh();
}

void Overlay_Window::Build_Row(int k, QGridLayout* grid) {
  Row& r = rows_[static_cast<std::size_t>(k)];
  const int line = k + 1;
  grid->addWidget(new QLabel(Q(overlay::Slot_Number_Text(k)), this), line, 0);

  r.show = new QCheckBox(this);
  r.show->setObjectName(Q(Name("Check1", k)));
  connect(r.show, &QCheckBox::toggled, this, [this, k](bool on) {
    if (!init_) After(overlay::Set_Slot_Show(session_, k, on));
  });
  grid->addWidget(r.show, line, 1);

  r.mag = Named_Field(this, Name("Text1", k).c_str());
  r.mag->setMaximumWidth(70);
  On_Typed(r.mag, this, [this, k] {
    if (init_) return;
    const display::Typed_Result t = overlay::Type_Slot_Mag(session_, k, rows_[std::size_t(k)].mag->text().toStdString());
    After(t.taken);
  });
  grid->addWidget(r.mag, line, 2);
  // Hold-to-repeat: the first step at the press, then the timer's.
  const auto hold = [this, k, grid, line](const char* name, const char* caption, int column,
                                          std::function<bool(Session&, int)> step) -> QPushButton* {
    auto* b = new Hold_Button(
        QString::fromUtf8(caption), [this, k, step] { step(session_, k); },
        [this, k, step] { return step(session_, k); }, this);
    b->setObjectName(Q(Name(name, k)));
    b->setMaximumWidth(28);
    connect(b, &Hold_Button::stepped, this, [this] { After(true); });
    grid->addWidget(b, line, column);
    return b;
  };
  r.mag_buttons = {
      hold("YMag_Down", "▼", 3, [](Session& s, int slot) { return overlay::Slot_Mag_Step(s, slot, false); }),
      hold("Ymag_Up", "▲", 4, [](Session& s, int slot) { return overlay::Slot_Mag_Step(s, slot, true); })};

  r.offset = Named_Field(this, Name("Text2", k).c_str());
  r.offset->setMaximumWidth(70);
  On_Typed(r.offset, this, [this, k] {
    if (init_) return;
    const display::Typed_Result t =
        overlay::Type_Slot_Offset(session_, k, rows_[std::size_t(k)].offset->text().toStdString());
    After(t.taken);
  });
  grid->addWidget(r.offset, line, 5);
  hold("YLevel_Down", "▼", 6, [](Session& s, int slot) { return overlay::Slot_Offset_Step(s, slot, false); });
  hold("YLevel_Up", "▲", 7, [](Session& s, int slot) { return overlay::Slot_Offset_Step(s, slot, true); });

  r.colour = Named_Button(this, Name("Label_Colour", k).c_str(), QString());
  r.colour->setFlat(true);
  r.colour->setAutoFillBackground(true);
  r.colour->setMaximumWidth(40);
  r.colour->setEnabled(k > 0);
  connect(r.colour, &QPushButton::clicked, this, [this, k] { Pick_Colour(k); });
  grid->addWidget(r.colour, line, 8);

  r.peaks = new QCheckBox(this);
  r.peaks->setObjectName(Q(Name("Check4", k)));
  r.peaks->setToolTip(QStringLiteral("チェックを入れるとピーク位置を表示します"));
  connect(r.peaks, &QCheckBox::toggled, this, [this, k](bool on) {
    if (!init_) After(overlay::Set_Slot_Show_Peaks(session_, k, on));
  });
  grid->addWidget(r.peaks, line, 9);
  r.integrals = new QCheckBox(this);
  r.integrals->setObjectName(Q(Name("Check5", k)));
  r.integrals->setToolTip(QStringLiteral("チェックを入れると積分曲線を表示します"));
  connect(r.integrals, &QCheckBox::toggled, this, [this, k](bool on) {
    if (!init_) After(overlay::Set_Slot_Show_Integrals(session_, k, on));
  });
  grid->addWidget(r.integrals, line, 10);

  r.points = new QLabel(this);
  r.comment = new QLabel(this);
  r.file = new QLabel(this);
  r.file->setObjectName(Q(Name("Label_File", k)));
  r.file->setMinimumWidth(160);
  grid->addWidget(r.points, line, 11);
  grid->addWidget(r.comment, line, 12);
  grid->addWidget(r.file, line, 13);

  r.load = Named_Button(this, Name("Command1", k).c_str(), QStringLiteral("読込"));
  connect(r.load, &QPushButton::clicked, this, [this, k] { Load_Row(k); });
  grid->addWidget(r.load, line, 14);
  r.remove = Named_Button(this, Name("Command3", k).c_str(), QStringLiteral("削除"));
  connect(r.remove, &QPushButton::clicked, this, [this, k] { After(overlay::Delete_Slot(session_, k)); });
  grid->addWidget(r.remove, line, 15);
  // The main spectrum is scaled and shifted here, never replaced.
  for (QWidget* w : {static_cast<QWidget*>(r.show), static_cast<QWidget*>(r.peaks),
                     static_cast<QWidget*>(r.integrals), static_cast<QWidget*>(r.remove)})
    w->setEnabled(k > 0);
}

void Overlay_Window::Build_Bottom(QBoxLayout* layout) {
  auto* line = new QHBoxLayout;
  line->addWidget(new QLabel(QStringLiteral("横ずらし"), this));
  const auto shift_button = [this](const char* name, const QString& caption, bool to_right) {
    const auto step = [this, to_right] { return overlay::Overlay_Shift_Step(session_, to_right); };
    auto* b = new Hold_Button(caption, step, step, this);
    b->setObjectName(name);
    connect(b, &Hold_Button::stepped, this, [this] { After(true); });
    return b;
  };
  auto* left = shift_button("MultiX_Left", QStringLiteral("◀"), false);
  shift_ = Named_Field(this, "Text5");
  shift_->setMaximumWidth(70);
  shift_->setToolTip(QStringLiteral("「１」で表示範囲分ずらす"));
  On_Typed(shift_, this, [this] {
    if (!init_) After(overlay::Type_Overlay_Shift(session_, shift_->text().toStdString()).taken);
  });
  auto* right = shift_button("MultiX_Right", QStringLiteral("▶"), true);
  line->addWidget(left);
  line->addWidget(shift_);
  line->addWidget(right);
  line->addSpacing(16);

  compare_ = new QCheckBox(QStringLiteral("強度の比較を可能とする"), this);
  compare_->setObjectName("Check2");
  compare_->setToolTip(QStringLiteral("T1データの時に使います"));
  connect(compare_, &QCheckBox::toggled, this, [this](bool on) {
    if (init_) return;
    session_.Overlay_Compare = on ? 1 : 0;
    After(true);
  });
  line->addWidget(compare_);
  // The DEPT sub-spectra in place of slots 1, 2 and 3; needs all three.
  dept_ = new QCheckBox(QStringLiteral("DEPT表示"), this);
  dept_->setObjectName("Check3");
  connect(dept_, &QCheckBox::toggled, this, [this](bool on) {
    if (init_) return;
    After(overlay::Set_DEPT_Mode(session_, on));
  });
  line->addWidget(dept_);
  line->addStretch();

  undo_ = Named_Button(this, "Command6", QStringLiteral("取り消し"));
  connect(undo_, &QPushButton::clicked, this, [this] { After(overlay::Undo_Slot_Change(session_)); });
  auto* copy = Named_Button(this, "Command4", QStringLiteral("コピー"));
  connect(copy, &QPushButton::clicked, this, [this] {
    Slot_Pair_Dialog form(session_, Slot_Pair_Dialog::Kind::Copy, this);
    if (form.exec() == QDialog::Accepted) After(true);
  });
  auto* exchange = Named_Button(this, "Command5", QStringLiteral("交換"));
  connect(exchange, &QPushButton::clicked, this, [this] {
    Slot_Pair_Dialog form(session_, Slot_Pair_Dialog::Kind::Exchange, this);
    if (form.exec() == QDialog::Accepted) After(true);
  });
  auto* close = Named_Button(this, "Command2", QStringLiteral("閉じる"));
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  for (QPushButton* b : {undo_, copy, exchange, close}) line->addWidget(b);
  layout->addLayout(line);
}

void Overlay_Window::Refresh() {
  init_ = true;
  const Session& s = session_;
  for (int k = 0; k < overlay::Overlay_Rows; ++k) {
    Row& r = rows_[static_cast<std::size_t>(k)];
    const Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
    const bool used = overlay::Slot_In_Use(s, k);
    r.mag->setText(Row_Number(overlay::Slot_Mag(s, k)));
    r.offset->setText(Row_Number(overlay::Slot_Offset(s, k)));
    // Compared intensities share the main scale: the slots' own is greyed.
    const bool own_scale = s.Overlay_Compare == 0 || k == 0;
    r.mag->setEnabled(own_scale);
    for (QPushButton* b : r.mag_buttons) b->setEnabled(own_scale);
    if (k == 0) {
      r.show->setChecked(used);
      r.points->setText(used ? QString::number(s.Spec_Points) : QString());
      r.comment->setText(Q(s.Param.COMNT));
      r.file->setText(Q(std::filesystem::path(s.Open_Name).filename().string()));
      continue;
    }
    r.show->setChecked(used && o.Slot_Show == 1);
    r.peaks->setChecked(used && o.Slot_Show_Peaks == 1);
    r.integrals->setChecked(used && o.Slot_Show_Integrals == 1);
    r.points->setText(used ? QString::number(o.Slot_Points) : QString());
    r.comment->setText(used ? Q(o.Slot_Comment) : QString());
    r.file->setText(used ? Q(std::filesystem::path(o.Slot_File).filename().string()) : QString());
    r.file->setToolTip(used ? Q(o.Slot_File) : QString());
    QPalette p = r.colour->palette();
    p.setColor(QPalette::Button, Colour_Of(overlay::Slot_Colour(s, k)));
    r.colour->setPalette(p);
    r.remove->setEnabled(used);
  }
  shift_->setText(Row_Number(s.Overlay_Shift));
  compare_->setChecked(s.Overlay_Compare != 0);
  dept_->setEnabled(overlay::DEPT_Slots_Filled(s));
  dept_->setChecked(s.DEPT_Mode != 0);
  undo_->setEnabled(s.Overlay_Undo.Kind != 0);
  init_ = false;
}

void Overlay_Window::Load_Row(int slot) {
  const int status = overlay::Load_Slot(session_, slot);
  After(status == 0);
}

void Overlay_Window::After(bool did) {
  Refresh();
  if (did) emit changed();
}

void Overlay_Window::Take_Fields() {
  // Closing writes the typed texts back through the same checks.
  bool any = false;
  for (int k = 0; k < overlay::Overlay_Rows; ++k) {
    Row& r = rows_[static_cast<std::size_t>(k)];
    if (r.mag->isModified()) any |= overlay::Type_Slot_Mag(session_, k, r.mag->text().toStdString()).taken;
    if (r.offset->isModified()) any |= overlay::Type_Slot_Offset(session_, k, r.offset->text().toStdString()).taken;
  }
  if (shift_->isModified()) any |= overlay::Type_Overlay_Shift(session_, shift_->text().toStdString()).taken;
  After(any);
}

void Overlay_Window::done(int result) {
  Take_Fields();
  QDialog::done(result);
}

void Overlay_Window::Pick_Colour(int slot) {
  const QColor c = QColorDialog::getColor(Colour_Of(overlay::Slot_Colour(session_, slot)), this);
  if (!c.isValid()) return;
  overlay::Set_Slot_Colour(session_, slot, c.red() | (c.green() << 8) | (c.blue() << 16));
  After(true);
}

Slot_Pair_Dialog::Slot_Pair_Dialog(Session& session, Kind kind, QWidget* parent)
    : QDialog(parent), session_(session), kind_(kind) {
  const bool copy = kind == Kind::Copy;
  setObjectName(copy ? "NMR1D_Form18" : "NMR1D_Form19");
  setWindowTitle(copy ? QStringLiteral("スペクトルのコピー") : QStringLiteral("ｽﾍﾟｸﾄﾙの交換"));
  auto* layout = new QVBoxLayout(this);
  if (!copy) {
    layout->addWidget(new QLabel(QStringLiteral("ｽﾍﾟｸﾄﾙ1　は選択できません。"), this));
    layout->addWidget(new QLabel(QStringLiteral("片方は空でもかまいません。"), this));
  }
  first_ = Number_Box(this, "Text1", copy ? 1 : 2, copy ? 1 : 2);
  second_ = Number_Box(this, "Text2", 2, 3);
  auto* line = new QHBoxLayout;
  line->addWidget(new QLabel(copy ? QStringLiteral("コピー元") : QString(), this));
  line->addWidget(first_);
  line->addWidget(new QLabel(copy ? QStringLiteral("→ コピー先") : QStringLiteral("⇔"), this));
  line->addWidget(second_);
  layout->addLayout(line);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &QDialog::accept);
}

void Slot_Pair_Dialog::accept() {
  const int a = first_->value() - 1, b = second_->value() - 1;
  if (kind_ == Kind::Copy ? overlay::Copy_Slot(session_, a, b) : overlay::Exchange_Slots(session_, a, b))
    QDialog::accept();
}

}  // namespace tevo::app
