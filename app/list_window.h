// The list windows of the peak and integral modes: a read-only table of the
// texts the core formats. The window stays open beside the plot and is
// filled again after every edit.
#pragma once

#include <QDialog>

#include "editing/list_tables.h"

class QLabel;
class QTableWidget;

namespace tevo::app {

class List_Window : public QDialog {
  Q_OBJECT
 public:
  List_Window(const char* name, const QString& title, QWidget* parent = nullptr);
  void Show_Table(const editing::List_Table& table);
  // A caption and its text above the table (made on first use).
  void Show_Heading(const QString& caption, const QString& text);
  QTableWidget* Table() const { return table_; }

 private:
  QTableWidget* table_ = nullptr;
  QLabel* heading_ = nullptr;
};

}  // namespace tevo::app
