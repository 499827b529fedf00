#include "required_files_dialog.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

Required_Files_Dialog::Required_Files_Dialog(const Session& session, QWidget* parent) : QDialog(parent) {
  setObjectName("m47");
  setWindowTitle(QStringLiteral("解析出来るファイルについて"));
  auto* formats = new QListWidget(this);
  formats->setObjectName("List1");
  auto* files = new QPlainTextEdit(this);
  files->setObjectName("Text1");
  files->setReadOnly(true);
  std::vector<QString> needed;
  for (const session::Required_Row& r : session.Required_Files) {
    const QString description = QString::fromStdString(r.description);
    formats->addItem(QString::fromStdString(r.format) + (description.isEmpty() ? "" : "  " + description));
    needed.push_back(QString::fromStdString(r.files).replace("\r\n", "\n"));
  }
  connect(formats, &QListWidget::currentRowChanged, this, [files, needed](int row) {
    files->setPlainText(row >= 0 && row < static_cast<int>(needed.size()) ? needed[static_cast<std::size_t>(row)]
                                                                          : QString());
  });
  if (formats->count() > 0) formats->setCurrentRow(0);
  auto* close = Named_Button(this, "Command1", QStringLiteral("閉じる"));
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* panes = new QHBoxLayout;
  panes->addWidget(formats, 1);
  panes->addWidget(files, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(panes);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(close);
  layout->addLayout(row);
  resize(640, 360);
}

}  // namespace tevo::app
