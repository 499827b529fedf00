#include "reference_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "dialog_parts.h"
#include "editing/reference.h"
#include "instrument_dialogs.h"

namespace tevo::app {

Reference_Panel::Reference_Panel(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName("RefToolbar");
  auto* caption = new QLabel(QStringLiteral("Ref値"), this);
  value_ = Named_Field(this, "RefText1");
  auto* confirm = Named_Button(this, "RefCommand1", QStringLiteral("確定"));
  auto* cancel = Named_Button(this, "RefCommand2", QStringLiteral("ｷｬﾝｾﾙ"));
  auto* table = Named_Button(this, "RefCommand3", QStringLiteral("装置データで設定"));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(caption);
  layout->addWidget(value_);
  layout->addWidget(confirm);
  layout->addWidget(cancel);
  layout->addWidget(table);
  layout->addStretch();

  // A value that is not a number puts the last good one back.
  On_Typed(value_, this, [this] {
    if (!editing::RefText1_Typed(session_, value_->text().toStdString())) Refresh();
  });
  connect(confirm, &QPushButton::clicked, this, [this] {
    editing::RefCommand1_Click(session_);
    emit changed();
    emit finished();
  });
  connect(cancel, &QPushButton::clicked, this, [this] {
    editing::RefCommand2_Click(session_);
    emit changed();
    emit finished();
  });
  connect(table, &QPushButton::clicked, this, [this] {
    Instrument_Pick_Dialog pick(session_, this);
    if (pick.exec() == QDialog::Accepted) emit changed();
  });
  Refresh();
}

void Reference_Panel::Refresh() { value_->setText(QString::fromStdString(editing::Ref_Text(session_.Reference_Value))); }

void Reference_Panel::Take_Typed_Value() {
  // A value typed but not yet left counts.
  if (!editing::RefText1_Typed(session_, value_->text().toStdString())) Refresh();
}

void Reference_Panel::Range_Dragged(int a, int b) {
  Take_Typed_Value();
  editing::Set_Reference_On_Range(session_, a, b);
  emit changed();
}

void Reference_Panel::Point_Clicked(int index) {
  Take_Typed_Value();
  editing::Set_Reference_On_Click(session_, index);
  emit changed();
}

}  // namespace tevo::app
