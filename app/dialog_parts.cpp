#include "dialog_parts.h"

#include <QBoxLayout>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace tevo::app {

QPushButton* Named_Button(QWidget* parent, const char* name, const QString& caption) {
  auto* b = new QPushButton(caption, parent);
  b->setObjectName(name);
  b->setAutoDefault(false);
  return b;
}

QToolButton* Named_Tool(QWidget* parent, const char* name, const QString& caption, bool checkable) {
  auto* b = new QToolButton(parent);
  b->setObjectName(name);
  b->setText(caption);
  b->setCheckable(checkable);
  return b;
}

QLineEdit* Named_Field(QWidget* parent, const char* name) {
  auto* e = new QLineEdit(parent);
  e->setObjectName(name);
  return e;
}

QPushButton* Ok_Cancel_Row(QDialog* dialog, QBoxLayout* layout) {
  auto* ok = Named_Button(dialog, "Command1", QStringLiteral("OK"));
  ok->setDefault(true);
  auto* cancel = Named_Button(dialog, "Command2", QStringLiteral("キャンセル"));
  QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(ok);
  row->addWidget(cancel);
  layout->addLayout(row);
  return ok;
}

void On_Typed(QLineEdit* field, QObject* context, std::function<void()> take) {
  QObject::connect(field, &QLineEdit::editingFinished, context, [field, take = std::move(take)] {
    if (!field->isModified()) return;
    field->setModified(false);
    take();
  });
}

}  // namespace tevo::app
