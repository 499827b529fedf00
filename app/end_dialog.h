// NMR1D_Form9: asked at the end of the program while a spectrum is in
// memory: end without saving, save first, or do not end.
#pragma once

#include <QDialog>

namespace tevo::app {

class End_Dialog : public QDialog {
  Q_OBJECT
 public:
  enum Choice { Cancel, End, Save };
  explicit End_Dialog(QWidget* parent = nullptr);
  Choice Result() const { return choice_; }

 private:
  Choice choice_ = Cancel;
};

}  // namespace tevo::app
