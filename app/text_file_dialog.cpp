#include "text_file_dialog.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

Text_File_Dialog::Text_File_Dialog(const char* name, const QString& title, const std::string& text,
                                   std::function<int(const std::string&)> save, QWidget* parent)
    : QDialog(parent) {
  setObjectName(name);
  setWindowTitle(title);
  text_ = new QPlainTextEdit(this);
  text_->setObjectName("Text1");
  text_->setPlainText(QString::fromStdString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  auto* store = Named_Button(this, "Command1", QStringLiteral("保存"));
  auto* close = Named_Button(this, "Command2", QStringLiteral("閉じる"));
  connect(store, &QPushButton::clicked, this, [this, save = std::move(save)] {
    const QString typed = text_->toPlainText().replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    if (save(typed.toStdString()) == 0) accept();
  });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(store);
  row->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_, 1);
  layout->addLayout(row);
  resize(560, 420);
}

}  // namespace tevo::app
