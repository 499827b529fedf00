#include "difference_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "dialog_parts.h"
#include "hold_button.h"
#include "overlay/difference.h"
#include "session/messages.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

// The step buttons: a coarse and a fine pair for the shift (ppm added) and
// for the scale (factor).
struct Step_Button {
  const char* name;
  const char* caption;
  double shift, factor;
  int row, column;
};
constexpr Step_Button Steps[] = {
    {"ShiftLeft", "← 0.01", 0.01, 1, 0, 0},          {"ShiftRight", "0.01 →", -0.01, 1, 0, 1},
    {"ShiftLeftFine", "← 0.0001", 0.0001, 1, 1, 0},  {"ShiftRightFine", "0.0001 →", -0.0001, 1, 1, 1},
    {"MagUP", "× 1.1", 0, 1.1, 2, 0},                {"MagDn", "÷ 1.1", 0, 1 / 1.1, 2, 1},
    {"MagUpFine", "× 1.001", 0, 1.001, 3, 0},        {"MagDnFine", "÷ 1.001", 0, 1 / 1.001, 3, 1},
};

QString Number_Text(double v) { return QString::fromStdString(Format_Number(v, "#0.0000")); }

}  // namespace

Difference_Dialog::Difference_Dialog(Session& session, QWidget* parent)
    : QDialog(parent),
      session_(session),
      old_slot_(session.Diff_Slot),
      old_on_(session.Diff_On),
      old_shift_(session.Diff_Shift),
      old_mag_(session.Diff_Mag) {
  setObjectName("NMR1D_Form61");
  setWindowTitle(QStringLiteral("差スペクトルの設定"));

  slots_ = new QComboBox(this);
  slots_->setObjectName("Combo1");
  for (int k = 1; k <= Overlay_Max; ++k)
    if (overlay::Slot_Filled(session_, k)) slots_->addItem(QString::number(k + 1), k);  // the user counts from 1
  slots_->addItem(QStringLiteral("なし"), 0);
  shift_ = Named_Field(this, "Text1");
  mag_ = Named_Field(this, "Text2");
  show_ = new QCheckBox(QStringLiteral("差スペクトルの表示"), this);
  show_->setObjectName("Check1");
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("引くスペクトル"), slots_);
  form->addRow(QStringLiteral("シフト (ppm)"), shift_);
  form->addRow(QStringLiteral("倍率"), mag_);
  form->addRow(show_);

  auto* steps = new QGridLayout;
  for (const Step_Button& b : Steps) {
    auto step = [this, b] { overlay::Step_Difference(session_, b.shift, b.factor); };
    auto* h = new Hold_Button(QString::fromUtf8(b.caption), step, [step] {
                                   step();
                                   return true;
                                 }, this);
    h->setObjectName(b.name);
    h->setAutoDefault(false);
    connect(h, &Hold_Button::stepped, this, [this] {
      Show_Values();
      emit changed();
    });
    steps->addWidget(h, b.row, b.column);
  }

  // A slot chosen is shown at once; "なし" turns the difference off.
  connect(slots_, &QComboBox::currentIndexChanged, this, [this] {
    if (filling_) return;
    const int k = slots_->currentData().toInt();
    if (k > 0) session_.Diff_Slot = static_cast<int16_t>(k);
    session_.Diff_On = k > 0 ? 1 : 0;
    Recompute();
  });
  connect(show_, &QCheckBox::toggled, this, [this](bool on) {
    if (filling_) return;
    // Turned on with no slot chosen yet: the first one offered.
    if (on && !overlay::Slot_Filled(session_, session_.Diff_Slot) && slots_->count() > 1)
      session_.Diff_Slot = static_cast<int16_t>(slots_->itemData(0).toInt());
    session_.Diff_On = on && overlay::Slot_Filled(session_, session_.Diff_Slot) ? 1 : 0;
    Recompute();
  });
  On_Typed(shift_, this, [this] {
    bool ok = false;
    const double v = shift_->text().trimmed().toDouble(&ok);
    if (ok && std::isfinite(v)) session_.Diff_Shift = static_cast<float>(v);
    Recompute();
  });
  On_Typed(mag_, this, [this] {
    bool ok = false;
    const double v = mag_->text().trimmed().toDouble(&ok);
    if (ok && std::isfinite(v)) session_.Diff_Mag = static_cast<float>(v);
    Recompute();
  });

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addLayout(steps);
  QPushButton* done = Ok_Cancel_Row(this, layout);
  done->setText(QStringLiteral("完了"));
  connect(done, &QPushButton::clicked, this, [this] {
    session_.Data_Saved = 0;
    accept();
  });

  // A slot that has lost its data is not offered again.
  if (!overlay::Slot_Filled(session_, session_.Diff_Slot)) session_.Diff_On = 0;
  Show_Values();
}

void Difference_Dialog::Show_Values() {
  filling_ = true;
  const int at = slots_->findData(session_.Diff_On ? session_.Diff_Slot : 0);
  slots_->setCurrentIndex(at >= 0 ? at : slots_->count() - 1);
  show_->setChecked(session_.Diff_On != 0);
  shift_->setText(Number_Text(session_.Diff_Shift));
  mag_->setText(Number_Text(session_.Diff_Mag));
  filling_ = false;
}

void Difference_Dialog::Recompute() {
  overlay::Show_Difference(session_);
  Show_Values();
  emit changed();
}

void Difference_Dialog::reject() {
  if (Show_Message(session_, "差スペクトルの変更を元に戻しますか？", Style_Yes_No | Icon_Question,
                   "差スペクトルの設定") != Msg_Yes)
    return;
  session_.Diff_Slot = old_slot_;
  session_.Diff_On = old_on_;
  session_.Diff_Shift = old_shift_;
  session_.Diff_Mag = old_mag_;
  overlay::Show_Difference(session_);
  emit changed();
  QDialog::reject();
}

}  // namespace tevo::app
