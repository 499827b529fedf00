// NMR1D_Form22: the operator list ("OPERATOR INDEX") with a name field,
// 追加 and 削除. What adding and deleting do is in the session.
#pragma once

#include <QDialog>

#include "session/session.h"

class QLineEdit;
class QListWidget;

namespace tevo::app {

class Operator_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Operator_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  void Refresh();

  Session& session_;
  QListWidget* list_ = nullptr;
  QLineEdit* name_ = nullptr;
};

}  // namespace tevo::app
