#include "lp_dialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QVBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "dialog_parts.h"
#include "signal/linear_prediction.h"

namespace tevo::app {

Lp_Dialog::Lp_Dialog(Session& session, QWidget* parent)
    : QDialog(parent),
      session_(session),
      old_order_(session.LP_Order),
      old_points_(session.LP_Points),
      old_start_(session.LP_Start),
      old_back_(session.LP_Back_Points),
      old_stability_(session.LP_Stability) {
  setObjectName("NMR1D_Form13");
  setWindowTitle(QStringLiteral("Linear Prediction パラメータ"));
  order_ = Named_Field(this, "Text4");
  points_ = Named_Field(this, "Text2");
  start_ = Named_Field(this, "Text3");
  back_ = Named_Field(this, "Text1");
  stability_ = new QCheckBox(QStringLiteral("Stability Check"), this);
  stability_->setObjectName("Check1");

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Prediction Order"), order_);
  form->addRow(QStringLiteral("Points for Calculation"), points_);
  form->addRow(QStringLiteral("計算データ開始点"), start_);
  form->addRow(QStringLiteral("Backward"), back_);
  form->addRow(stability_);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  QPushButton* ok = Ok_Cancel_Row(this, layout);

  connect(order_, &QLineEdit::editingFinished, this,
          [this] { Take_Field(order_, signal::Set_LP_Order, &Session::LP_Order); });
  connect(points_, &QLineEdit::editingFinished, this,
          [this] { Take_Field(points_, signal::Set_LP_Points, &Session::LP_Points); });
  connect(start_, &QLineEdit::editingFinished, this,
          [this] { Take_Field(start_, signal::Set_LP_Start, &Session::LP_Start); });
  connect(back_, &QLineEdit::editingFinished, this,
          [this] { Take_Field(back_, signal::Set_LP_Back_Points, &Session::LP_Back_Points); });
  connect(ok, &QPushButton::clicked, this, &Lp_Dialog::Ok);
  Show_Values();
}

void Lp_Dialog::Take_Field(QLineEdit* field, bool (*set)(Session&, int32_t), int32_t Session::*value) {
  bool ok = false;
  const int v = field->text().trimmed().toInt(&ok);
  if (!ok || !set(session_, v)) field->setText(QString::number(session_.*value));
}

void Lp_Dialog::Show_Values() {
  order_->setText(QString::number(session_.LP_Order));
  points_->setText(QString::number(session_.LP_Points));
  start_->setText(QString::number(session_.LP_Start));
  back_->setText(QString::number(session_.LP_Back_Points));
  stability_->setChecked(session_.LP_Stability != 0);
}

void Lp_Dialog::Ok() {
  // The order first, so that the points are checked against the new order.
  Take_Field(order_, signal::Set_LP_Order, &Session::LP_Order);
  Take_Field(points_, signal::Set_LP_Points, &Session::LP_Points);
  Take_Field(start_, signal::Set_LP_Start, &Session::LP_Start);
  Take_Field(back_, signal::Set_LP_Back_Points, &Session::LP_Back_Points);
  session_.LP_Stability = stability_->isChecked() ? 1 : 0;
  accept();
}

void Lp_Dialog::reject() {
  session_.LP_Order = old_order_;
  session_.LP_Points = old_points_;
  session_.LP_Start = old_start_;
  session_.LP_Back_Points = old_back_;
  session_.LP_Stability = old_stability_;
  Show_Values();
  QDialog::reject();
}

}  // namespace tevo::app
