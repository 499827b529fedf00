// The tool panel of the baseline mode (BaselineToolbar): automatic points,
// the add and delete tools for the mouse, "Point数" (BaselineText1), the
// preview toggle, "O K" and "ｷｬﾝｾﾙ".
#pragma once

#include <QPoint>
#include <QWidget>

#include "session/session.h"

class QLineEdit;
class QPushButton;
class QToolButton;

namespace tevo::app {

class Plot_Widget;

class Baseline_Panel : public QWidget {
  Q_OBJECT
 public:
  Baseline_Panel(Session& session, Plot_Widget* plot, QWidget* parent = nullptr);
  // Shows the average width and the preview caption.
  void Refresh();
  // A click in the plot: the armed tool adds or deletes a point there.
  void Mouse_Up(QPoint press, QPoint release);
  QToolButton* Button(int index) const;

 signals:
  void changed();
  void finished();

 private:
  void Arm(int index, bool on);
  void Take_Average();

  Session& session_;
  Plot_Widget* plot_;
  QToolButton* buttons_[5] = {};  // BaselineToolbar_2 .. 4 by index
  QLineEdit* average_ = nullptr;  // BaselineText1
  QPushButton* preview_ = nullptr;  // BaseCorCommand1
  int tool_ = 0;  // 3 add, 4 delete, 0 none
};

}  // namespace tevo::app
