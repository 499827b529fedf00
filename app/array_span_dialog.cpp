#include "array_span_dialog.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "relaxation/array_data.h"
#include "session/number_text.h"

namespace tevo::app {

Array_Span_Dialog::Array_Span_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form32");
  setWindowTitle(QStringLiteral("Array(T1/T2)データ表示の配置"));
  span_x_ = Named_Field(this, "Text1");
  span_y_ = Named_Field(this, "Text2");
  span_x_->setText(QString::fromStdString(Format_Number(session_.settings.Real("X AXIS RATIO"), "0.0###")));
  span_y_->setText(QString::fromStdString(Format_Number(session_.settings.Real("Y AXIS RATIO"), "0.0###")));
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Xf/(Xf+Xs)"), span_x_);
  form->addRow(QStringLiteral("Yf/(Yf+Ys)"), span_y_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, [this] {
    relaxation::NMR1D_Form32_OK(session_, span_x_->text().toStdString(), span_y_->text().toStdString());
    accept();
  });
}

}  // namespace tevo::app
