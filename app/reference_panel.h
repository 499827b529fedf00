// The tool panel of the reference mode: "Ref値" (the ppm the peak under a
// dragged range or a clicked point gets), 確定, ｷｬﾝｾﾙ and "装置データで設定".
// The plot hands finished drags to Range_Dragged and clicks to Point_Clicked.
#pragma once

#include <QWidget>

#include "session/session.h"

class QLineEdit;

namespace tevo::app {

class Reference_Panel : public QWidget {
  Q_OBJECT
 public:
  explicit Reference_Panel(Session& session, QWidget* parent = nullptr);
  // Shows the current "Ref値".
  void Refresh();
  // A range a .. b (spectrum points, either order) dragged over a peak: the
  // peak takes the value of "Ref値".
  void Range_Dragged(int a, int b);
  // A click on the spectrum at display point `index`: that point takes the
  // value of "Ref値".
  void Point_Clicked(int index);

 signals:
  // The axis changed (repaint).
  void changed();
  // 確定 or ｷｬﾝｾﾙ ended the mode.
  void finished();

 private:
  void Take_Typed_Value();

  Session& session_;
  QLineEdit* value_ = nullptr;  // RefText1
};

}  // namespace tevo::app
