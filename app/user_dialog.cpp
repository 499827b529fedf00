#include "user_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

User_Dialog::User_Dialog(const std::vector<std::string>& users, const std::string& initial, QWidget* parent)
    : QDialog(parent) {
  setObjectName("NMR1D_Form01");
  setWindowTitle(QString::fromUtf8("NMR 1D  使用者の選択"));
  list_ = new QListWidget(this);
  list_->setObjectName("List1");
  list_->addItem(QString::fromUtf8("共通"));
  for (const std::string& u : users) list_->addItem(QString::fromStdString(u));
  name_ = Named_Field(this, "Text1");
  name_->setText(QString::fromStdString(initial));
  name_->setMinimumWidth(name_->fontMetrics().horizontalAdvance(QStringLiteral("MMMMMMMMMMMMMMMM")));

  // A click in the list puts that name into the field; a double click runs.
  connect(list_, &QListWidget::currentTextChanged, name_, &QLineEdit::setText);
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  for (int i = 0; i < list_->count(); ++i)
    if (list_->item(i)->text().compare(name_->text(), Qt::CaseInsensitive) == 0) list_->setCurrentRow(i);

  QPushButton* run = Named_Button(this, "Command1", QString::fromUtf8("右の使用者で実行"));
  QPushButton* end = Named_Button(this, "Command2", QString::fromUtf8("終了"));
  run->setDefault(true);
  connect(run, &QPushButton::clicked, this, &QDialog::accept);
  connect(end, &QPushButton::clicked, this, &QDialog::reject);

  auto* right = new QVBoxLayout;
  right->addWidget(new QLabel(QString::fromUtf8("使用者"), this));
  right->addWidget(name_);
  right->addStretch();
  right->addWidget(run);
  right->addWidget(end);
  auto* row = new QHBoxLayout(this);
  row->addWidget(list_, 1);
  row->addLayout(right);
}

std::string User_Dialog::Name() const { return name_->text().toStdString(); }

}  // namespace tevo::app
