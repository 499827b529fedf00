#include "range_dialog.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Number_Text(double v) { return QString::fromStdString(Format_Number(v, "####0.0###")); }

}  // namespace

Range_Dialog::Range_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form31");
  setWindowTitle(QStringLiteral("表示範囲の変更"));
  static const char* const kUnitNames[3] = {"Option1", "Option2", "Option3"};
  static const char* const kUnitCaptions[3] = {"ppm", "Hz", "kHz"};
  auto* unit_row = new QHBoxLayout;
  for (int16_t u = 0; u < 3; ++u) {
    units_[u] = new QRadioButton(QString::fromLatin1(kUnitCaptions[u]), this);
    units_[u]->setObjectName(kUnitNames[u]);
    unit_row->addWidget(units_[u]);
    connect(units_[u], &QRadioButton::toggled, this, [this, u](bool on) {
      if (on) Unit_Changed(u);
    });
  }
  upper_ = Named_Field(this, "Text1");
  lower_ = Named_Field(this, "Text2");
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("左端"), upper_);
  form->addRow(QStringLiteral("右端"), lower_);

  // Preset pair k: one button loads it, one stores the fields into it.
  auto* presets = new QGridLayout;
  static const char* const kLoadNames[2] = {"Command3", "Command4"};
  static const char* const kStoreNames[2] = {"Command5", "Command6"};
  for (int k = 0; k < 2; ++k) {
    const int pair = k + 1;
    auto* load = Named_Button(this, kLoadNames[k], QStringLiteral("Default値-%1").arg(pair));
    auto* store = Named_Button(this, kStoreNames[k], QStringLiteral("登録"));
    presets->addWidget(load, k, 0);
    presets->addWidget(store, k, 1);
    connect(load, &QPushButton::clicked, this, [this, pair] { Show(display::Range_Preset(session_, pair, unit_)); });
    connect(store, &QPushButton::clicked, this, [this, pair] { display::Store_Range_Preset(session_, pair, Fields()); });
  }

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(unit_row);
  layout->addLayout(form);
  layout->addLayout(presets);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, [this] {
    display::Range_Dialog_OK(session_, Fields());
    accept();
  });

  unit_ = session_.Axis_Unit >= 0 && session_.Axis_Unit <= 2 ? session_.Axis_Unit : 0;
  Show(display::Range_Dialog_Values(session_, unit_));
  units_[unit_]->setChecked(true);
}

display::Range_Values Range_Dialog::Fields() const {
  display::Range_Values v;
  v.unit = unit_;
  v.upper = upper_->text().trimmed().toDouble();
  v.lower = lower_->text().trimmed().toDouble();
  return v;
}

void Range_Dialog::Show(const display::Range_Values& v) {
  upper_->setText(Number_Text(v.upper));
  lower_->setText(Number_Text(v.lower));
}

void Range_Dialog::Unit_Changed(int16_t unit) {
  if (unit == unit_) return;
  display::Range_Values v = Fields();
  // The units are proportional: the factor is that of 1 ppm in each.
  const double from = display::Ppm_To_Unit(session_, 1.0, unit_);
  const double to = display::Ppm_To_Unit(session_, 1.0, unit);
  unit_ = unit;
  if (from != 0) {
    v.upper *= to / from;
    v.lower *= to / from;
  }
  v.unit = unit;
  Show(v);
}

}  // namespace tevo::app
