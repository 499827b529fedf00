// "パラメータの修正": the descriptive parameters of the data set in a table
// of tags and values. A value that does not fit its field goes back to what
// it was; OK takes the table, キャンセル leaves the data set as it is.
#pragma once

#include <QDialog>

#include "session/session.h"

class QTableWidget;
class QTableWidgetItem;

namespace tevo::app {

class Parameter_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Parameter_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  void Value_Edited(QTableWidgetItem* item);
  void Ok();

  Session& session_;
  QTableWidget* table_ = nullptr;  // Grid1: tag, value
  bool filling_ = false;
};

}  // namespace tevo::app
