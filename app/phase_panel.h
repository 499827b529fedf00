// The phase controls, shared by the main window's phase mode
// (PhaseToolbar) and the processing window: per order a scroll bar in
// tenths of a degree, a typed field and the step labels; the automatic
// buttons; in the main window also 確定 and ｷｬﾝｾﾙ.
#pragma once

#include <QWidget>

#include "session/session.h"
#include "signal/phase_auto.h"

class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tevo::app {

class Phase_Panel : public QWidget {
  Q_OBJECT
 public:
  Phase_Panel(Session& session, signal::Phase_Place place, QWidget* parent = nullptr);
  // Shows the place's current values.
  void Refresh();
  QLineEdit* Field(int order) const { return fields_[order]; }
  QScrollBar* Bar(int order) const { return bars_[order]; }

 signals:
  // The spectrum changed (repaint).
  void changed();
  // 確定 or ｷｬﾝｾﾙ ended the mode (main window only).
  void finished();

 private:
  void Build_Order(int order, const QString& caption);

  Session& session_;
  signal::Phase_Place place_;
  QLineEdit* fields_[2] = {};
  QScrollBar* bars_[2] = {};
  bool refreshing_ = false;
};

}  // namespace tevo::app
