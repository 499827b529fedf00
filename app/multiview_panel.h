// The tool panel of the inset mode (MultiViewToolbar): new inset, delete,
// align, pick a window, the X and Y magnification fields with their up and
// down buttons, the offset field with its hold buttons, the window's left
// and right steps, and 閉じる. The plot's presses and releases in the mode
// come here and go to the core's inset mouse routine.
#pragma once

#include <QPoint>
#include <QWidget>

#include "session/session.h"

class QLabel;
class QLineEdit;
class QToolButton;

namespace tevo::app {

class Plot_Widget;

class MultiView_Panel : public QWidget {
  Q_OBJECT
 public:
  MultiView_Panel(Session& session, Plot_Widget* plot, QWidget* parent = nullptr);
  // Shows the current inset's values (or a new one's) and the tools' state.
  void Refresh();
  void Mouse_Up(QPoint press, QPoint release);
  // The context menu of the inset under a right click: "拡大図の移動",
  // "拡大図の大きさ変更", "拡大図の削除"; and what a choice does (the tool
  // of Mouse_Tool 25, 26 armed for that inset, or its deletion).
  void Context_Menu(QPoint at, QPoint global);
  void Context_Chosen(int index, int16_t tool);
  QToolButton* Button(int index) const;

 signals:
  void changed();
  void finished();

 private:
  void Mag_Field(int k, const char* name, const char* up_name, const char* down_name,
                 bool (*apply)(Session&, double), double (*shown)(const Session&, const Inset_Rec&));

  Session& session_;
  Plot_Widget* plot_;
  QToolButton* buttons_[10] = {};  // MultiViewToolbar_1 .. 9 by index
  QLineEdit* fields_[3] = {};  // MultiViewText1 .. 3
  QLabel* status_ = nullptr;  // the armed inset tool's text
};

}  // namespace tevo::app
