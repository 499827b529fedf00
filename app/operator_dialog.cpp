#include "operator_dialog.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "session/user_choice.h"

namespace tevo::app {

Operator_Dialog::Operator_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form22");
  setWindowTitle(QStringLiteral("操作者"));
  list_ = new QListWidget(this);
  list_->setObjectName("List1");
  name_ = Named_Field(this, "Text1");
  auto* add = Named_Button(this, "Command1", QStringLiteral("追加"));
  auto* remove = Named_Button(this, "Command2", QStringLiteral("削除"));
  auto* close = Named_Button(this, "Command3", QStringLiteral("閉じる"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_);
  auto* row = new QHBoxLayout;
  row->addWidget(name_);
  row->addWidget(add);
  row->addWidget(remove);
  row->addWidget(close);
  layout->addLayout(row);
  connect(add, &QPushButton::clicked, this, [this] {
    if (session::Operator_Add(session_, name_->text().toStdString())) name_->clear();
    Refresh();
  });
  connect(remove, &QPushButton::clicked, this, [this] {
    session::Operator_Delete(session_, list_->currentRow());
    Refresh();
  });
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  Refresh();
}

void Operator_Dialog::Refresh() {
  list_->clear();
  for (const std::string& name : session_.settings.Operators) list_->addItem(QString::fromStdString(name));
}

}  // namespace tevo::app
