// NMR1D_Form15: the list of parameters the page prints ("Listを使う"), one
// row per line: the parameter's tag, the caption printed before its value
// and the unit behind it. OK stores the list as the "PARA TABLE" lines of
// the settings; キャンセル leaves them.
#pragma once

#include <QDialog>

#include "page/parameter_block.h"
#include "session/session.h"

class QTableWidget;

namespace tevo::app {

class Parameter_List_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Parameter_List_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  void Add_Row(int at, const std::string& tag, const std::string& caption, const std::string& unit);
  void Move_Row(int by);
  page::Parameter_Line Row_Line(int row) const;
  void Ok();

  Session& session_;
  QTableWidget* grid_ = nullptr;  // Grid1
};

}  // namespace tevo::app
