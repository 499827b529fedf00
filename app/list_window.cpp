#include "list_window.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

List_Window::List_Window(const char* name, const QString& title, QWidget* parent) : QDialog(parent) {
  setObjectName(name);
  setWindowTitle(title);
  table_ = new QTableWidget(this);
  table_->setObjectName("ListTable");
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->verticalHeader()->setVisible(false);
  // The texts are padded for right alignment; a fixed-width font keeps the
  // digits in columns.
  table_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(table_);
  auto* close = Named_Button(this, "Command1", QStringLiteral("閉じる"));
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  layout->addWidget(close, 0, Qt::AlignRight);
  resize(520, 360);
}

void List_Window::Show_Heading(const QString& caption, const QString& text) {
  if (heading_ == nullptr) {
    heading_ = new QLabel(this);
    heading_->setObjectName("ListHeading");
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, heading_);
  }
  heading_->setText(caption + QStringLiteral("  ") + text);
}

void List_Window::Show_Table(const editing::List_Table& table) {
  table_->clear();
  table_->setColumnCount(static_cast<int>(table.heads.size()));
  table_->setRowCount(static_cast<int>(table.rows.size()));
  QStringList heads;
  for (const std::string& h : table.heads) heads << QString::fromStdString(h);
  table_->setHorizontalHeaderLabels(heads);
  for (int r = 0; r < table_->rowCount(); ++r) {
    const auto& row = table.rows[static_cast<std::size_t>(r)];
    for (int c = 0; c < table_->columnCount() && c < static_cast<int>(row.size()); ++c) {
      auto* item = new QTableWidgetItem(QString::fromStdString(row[static_cast<std::size_t>(c)]));
      item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table_->setItem(r, c, item);
    }
  }
  table_->resizeColumnsToContents();
}

}  // namespace tevo::app
