// "DEPTの微調整": the five coefficients of the DEPT sums, each in a field
// with an Up and a Down button that step it by 0.01 (held, they repeat),
// within −9.9 .. 9.9. The window shows the DEPT display while it is open;
// every change computes the sub-spectra again and asks for a repaint.
// 完了 keeps the values; キャンセル brings back those the window was opened
// with, and the display as it was.
#pragma once

#include <QDialog>
#include <array>

#include "session/session.h"

class QLineEdit;

namespace tevo::app {

class DEPT_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit DEPT_Dialog(Session& session, QWidget* parent = nullptr);

 signals:
  void changed();  // the sub-spectra were computed again

 public slots:
  void reject() override;

 private:
  void Show_Values();
  void Recompute();

  Session& session_;
  std::array<QLineEdit*, 5> fields_{};  // Text1 .. Text5
  std::array<float, 5> old_{};  // the coefficients as they were
  int16_t old_mode_ = 0;
};

}  // namespace tevo::app
