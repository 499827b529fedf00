// The tool panel of the integral mode (IntegralToolbar): the mouse tools
// (add by drag, split, delete, select and move, move a boundary, widen, set
// the reference), re-scale, the eight press-and-hold trim buttons of B0 and B1,
// the boxes "Ref", B0 and B1, 閉じる, 全削除 and 積分ﾘｽﾄ.
#pragma once

#include <QPoint>
#include <QWidget>

#include "session/session.h"

class QLineEdit;
class QToolButton;

namespace tevo::app {

class Hold_Button;
class List_Window;
class Plot_Widget;

class Integral_Panel : public QWidget {
  Q_OBJECT
 public:
  Integral_Panel(Session& session, Plot_Widget* plot, QWidget* parent = nullptr);
  // Shows the reference value, B0 and B1 of the selected region and, when
  // it is open, the list.
  void Refresh();
  // A click or drag in the plot for the armed tool.
  void Mouse_Up(QPoint press, QPoint release);
  QToolButton* Button(int index) const;
  // The trim buttons by name ("Integ_B0_Up" ...).
  Hold_Button* Trim(const char* name) const;
  List_Window* List() const { return list_; }

 signals:
  void changed();
  void finished();

 private:
  void Arm(int index);
  void Take_Reference();

  Session& session_;
  Plot_Widget* plot_;
  QToolButton* buttons_[16] = {};  // IntegralToolbar_3 .. 15 by index
  QLineEdit* ref_ = nullptr;  // IntegralText1
  QLineEdit* b_[2] = {};  // IntegralText2, IntegralText3
  // The armed button: 3 add, 5 split, 7 delete, 9 select and move, 10 boundary, 11 widen, 13 reference.
  int tool_ = 9;
  List_Window* list_ = nullptr;
};

}  // namespace tevo::app
