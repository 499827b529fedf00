#include "grid_dialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "display/grid_settings.h"

namespace tevo::app {

Grid_Dialog::Grid_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form33");
  setWindowTitle(QStringLiteral("グリッドの設定"));
  shown_ = new QRadioButton(QStringLiteral("表示する"), this);
  shown_->setObjectName("Option1");
  hidden_ = new QRadioButton(QStringLiteral("表示しない"), this);
  hidden_->setObjectName("Option2");
  x_auto_ = new QCheckBox(QStringLiteral("自動"), this);
  x_auto_->setObjectName("Check1");
  x_step_ = Named_Field(this, "Text1");
  y_auto_ = new QCheckBox(QStringLiteral("自動"), this);
  y_auto_->setObjectName("Check2");
  y_step_ = Named_Field(this, "Text2");
  width_ = Named_Field(this, "Text3");

  auto* show_row = new QHBoxLayout;
  show_row->addWidget(shown_);
  show_row->addWidget(hidden_);
  auto* x_row = new QHBoxLayout;
  x_row->addWidget(x_auto_);
  x_row->addWidget(x_step_);
  auto* y_row = new QHBoxLayout;
  y_row->addWidget(y_auto_);
  y_row->addWidget(y_step_);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("X 間隔"), x_row);
  form->addRow(QStringLiteral("Y 間隔"), y_row);
  form->addRow(QStringLiteral("線の幅"), width_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(show_row);
  layout->addLayout(form);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &Grid_Dialog::Ok);
  // A fixed step is typed only when the automatic step is off.
  connect(x_auto_, &QCheckBox::toggled, x_step_, &QLineEdit::setDisabled);
  connect(y_auto_, &QCheckBox::toggled, y_step_, &QLineEdit::setDisabled);

  const display::Grid_Values v = display::Grid_Dialog_Values(session_);
  (v.shown ? shown_ : hidden_)->setChecked(true);
  x_auto_->setChecked(v.x_auto);
  x_step_->setText(QString::number(v.x_step));
  x_step_->setDisabled(v.x_auto);
  y_auto_->setChecked(v.y_auto);
  y_step_->setText(QString::number(v.y_step));
  y_step_->setDisabled(v.y_auto);
  width_->setText(QString::number(v.width));
}

void Grid_Dialog::Ok() {
  display::Grid_Values v;
  v.shown = shown_->isChecked();
  v.x_auto = x_auto_->isChecked();
  v.y_auto = y_auto_->isChecked();
  bool ok_x = false, ok_y = false, ok_w = false;
  v.x_step = x_step_->text().trimmed().toDouble(&ok_x);
  v.y_step = y_step_->text().trimmed().toDouble(&ok_y);
  v.width = width_->text().trimmed().toDouble(&ok_w);
  if (!ok_x) v.x_step = 0;
  if (!ok_y) v.y_step = 0;
  if (!ok_w) v.width = 0;
  if (!display::Grid_Dialog_OK(session_, v)) {
    // The first field the settings refused takes the focus; the window stays.
    QLineEdit* bad = (!v.x_auto && !(v.x_step > 0)) ? x_step_ : (!v.y_auto && !(v.y_step > 0)) ? y_step_ : width_;
    bad->setFocus();
    bad->selectAll();
    return;
  }
  accept();
}

}  // namespace tevo::app
