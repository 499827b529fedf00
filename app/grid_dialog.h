// "グリッドの設定": grid on or off ("表示する" / "表示しない"), automatic or
// fixed steps of the vertical and horizontal lines, and their width. OK
// stores them in the settings; a value the settings refuse keeps the window
// open with the field marked.
#pragma once

#include <QDialog>

#include "session/session.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace tevo::app {

class Grid_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Grid_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  void Ok();

  Session& session_;
  QRadioButton* shown_ = nullptr;  // Option1
  QRadioButton* hidden_ = nullptr;  // Option2
  QCheckBox* x_auto_ = nullptr;  // Check1
  QLineEdit* x_step_ = nullptr;  // Text1
  QCheckBox* y_auto_ = nullptr;  // Check2
  QLineEdit* y_step_ = nullptr;  // Text2
  QLineEdit* width_ = nullptr;  // Text3
};

}  // namespace tevo::app
