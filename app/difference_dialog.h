// "差スペクトルの設定": the slot taken away from the main spectrum, its shift
// (ppm) and scale, and whether the difference is shown. Every change, typed
// or stepped with the hold-to-repeat buttons, computes the spectrum again
// and asks for a repaint. 完了 keeps the result and marks the data changed;
// キャンセル, after asking, brings back the values the window was opened
// with.
#pragma once

#include <QDialog>

#include "session/session.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace tevo::app {

class Difference_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Difference_Dialog(Session& session, QWidget* parent = nullptr);

 signals:
  void changed();  // the spectrum was computed again

 public slots:
  void reject() override;

 private:
  void Show_Values();
  void Recompute();

  Session& session_;
  QComboBox* slots_ = nullptr;  // Combo1: the slots in use, then "なし"
  QLineEdit* shift_ = nullptr;  // Text1, Diff_Shift
  QLineEdit* mag_ = nullptr;  // Text2, Diff_Mag
  QCheckBox* show_ = nullptr;  // Check1
  int16_t old_slot_, old_on_;
  float old_shift_, old_mag_;
  bool filling_ = false;
};

}  // namespace tevo::app
