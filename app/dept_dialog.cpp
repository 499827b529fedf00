#include "dept_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "dialog_parts.h"
#include "hold_button.h"
#include "overlay/difference.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

// One row: the coefficient, its field, its two buttons and its ideal value.
struct Row {
  float Session::*field;
  const char* text;
  const char* up;
  const char* down;
  const char* ideal;
};
constexpr Row Rows[] = {
    {&Session::DEPT_CH_135, "Text1", "CH_DEPT135_UP", "CH_DEPT135_Down", "CH - DEPT135 = 1.0"},
    {&Session::DEPT_CH_MUL, "Text2", "CH_DEPTMUL_UP", "CH_DEPTMUL_Down", "CH - Multi= 0"},
    {&Session::DEPT_CH2_45, "Text3", "CH2_DEPT45_UP", "CH2_DEPT45_Down", "CH2 - DEPT45 = 1.0"},
    {&Session::DEPT_CH3_90, "Text4", "CH3_DEPT90_UP", "CH3_DEPT90_Down", "CH3 - DEPT90 = 1.414"},
    {&Session::DEPT_CH3_135, "Text5", "CH3_DEPT135_UP", "CH3_DEPT135_Down", "CH3 - DEPT135 = 1.0"},
};

}  // namespace

DEPT_Dialog::DEPT_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form62");
  setWindowTitle(QStringLiteral("DEPTの微調整"));
  old_mode_ = session_.DEPT_Mode;
  auto* grid = new QGridLayout;
  for (std::size_t r = 0; r < std::size(Rows); ++r) {
    const Row& row = Rows[r];
    float& value = session_.*row.field;
    old_[r] = value;
    fields_[r] = Named_Field(this, row.text);
    grid->addWidget(new QLabel(QString::fromLatin1(row.ideal), this), static_cast<int>(r), 0);
    grid->addWidget(fields_[r], static_cast<int>(r), 1);
    for (const int dir : {1, -1}) {
      // A step that the limit stops ends the repeat.
      auto step = [this, &value, dir] {
        const float next = overlay::Step_DEPT_Coefficient(value, dir);
        const bool moved = next != value;
        value = next;
        return moved;
      };
      auto* h = new Hold_Button(dir > 0 ? QStringLiteral("▲") : QStringLiteral("▼"), step, step, this);
      h->setObjectName(dir > 0 ? row.up : row.down);
      h->setAutoDefault(false);
      connect(h, &Hold_Button::stepped, this, &DEPT_Dialog::Recompute);
      grid->addWidget(h, static_cast<int>(r), dir > 0 ? 2 : 3);
    }
    On_Typed(fields_[r], this, [this, &value, r] {
      bool ok = false;
      const double v = fields_[r]->text().trimmed().toDouble(&ok);
      if (ok && std::isfinite(v)) value = overlay::Step_DEPT_Coefficient(static_cast<float>(v), 0);
      Recompute();
    });
  }

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  QPushButton* done = Ok_Cancel_Row(this, layout);
  done->setText(QStringLiteral("完了"));
  connect(done, &QPushButton::clicked, this, [this] {
    overlay::Store_DEPT_Settings(session_);
    for (std::size_t r = 0; r < std::size(Rows); ++r)
      if (session_.*Rows[r].field != old_[r]) session_.Data_Saved = 0;
    accept();
  });

  overlay::Set_DEPT_Mode(session_, true);
  Show_Values();
}

void DEPT_Dialog::Show_Values() {
  for (std::size_t r = 0; r < std::size(Rows); ++r)
    fields_[r]->setText(QString::fromStdString(Format_Number(session_.*Rows[r].field, "#0.000")));
}

void DEPT_Dialog::Recompute() {
  overlay::Calc_DEPT_Spec(session_);
  Show_Values();
  emit changed();
}

void DEPT_Dialog::reject() {
  for (std::size_t r = 0; r < std::size(Rows); ++r) session_.*Rows[r].field = old_[r];
  overlay::Calc_DEPT_Spec(session_);
  overlay::Set_DEPT_Mode(session_, old_mode_ != 0);
  emit changed();
  QDialog::reject();
}

}  // namespace tevo::app
