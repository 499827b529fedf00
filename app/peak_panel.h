// The tool panel of the peak mode (PeakToolbar): the two searches, the add
// and delete tools for the mouse, the three levels in their boxes (and as
// lines in the plot that the mouse drags), 閉じる, ﾋﾟｰｸﾘｽﾄ and 全削除.
#pragma once

#include <QPoint>
#include <QWidget>

#include "session/session.h"

class QLineEdit;
class QToolButton;

namespace tevo::app {

class List_Window;
class Plot_Widget;

class Peak_Panel : public QWidget {
  Q_OBJECT
 public:
  Peak_Panel(Session& session, Plot_Widget* plot, QWidget* parent = nullptr);
  // Shows the levels, the tools' state and, when it is open, the list.
  void Refresh();
  // A click or drag in the plot: on a level line it moves that level,
  // otherwise the armed tool acts at the release.
  void Mouse_Up(QPoint press, QPoint release);
  QToolButton* Button(int index) const;
  List_Window* List() const { return list_; }

 signals:
  void changed();
  void finished();

 private:
  void Arm(int index, bool on);

  Session& session_;
  Plot_Widget* plot_;
  QLineEdit* levels_[3] = {};  // PeakText1 .. 3
  QToolButton* buttons_[7] = {};  // PeakToolbar_2 .. 6 by index
  int tool_ = 0;  // the armed button: 4 add nearest, 5 add at the cursor, 6 delete; 0 none
  List_Window* list_ = nullptr;
};

}  // namespace tevo::app
