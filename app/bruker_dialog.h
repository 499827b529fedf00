// "Bruker補正": whether a FID was recorded with a single analogue-digital
// converter and needs the half-dwell correction. The Bruker reader asks
// through Ui::Choose with this title, the options "Single AD-Converter" and
// "Dual AD-Converter" and the one its parameters found; the desktop Ui
// shows this window for it. OK answers the option checked; キャンセル or
// closing abandons the reading.
#pragma once

#include <QDialog>

class QRadioButton;

namespace tevo::app {

class Bruker_Dialog : public QDialog {
  Q_OBJECT
 public:
  // The title the reader asks under.
  static const char* const Title;

  // `initial`: 0 checks Option1 (single), 1 Option2 (dual).
  explicit Bruker_Dialog(int initial, QWidget* parent = nullptr);
  // 0 single converter, 1 dual.
  int Choice() const;

 private:
  QRadioButton* single_ = nullptr;  // Option1
  QRadioButton* dual_ = nullptr;  // Option2
};

}  // namespace tevo::app
