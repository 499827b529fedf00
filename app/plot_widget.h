// Picture1: the plot of the main window. It paints the session through the
// one paint routine and turns mouse actions into view commands.
#pragma once

#include <QWidget>
#include <functional>

#include "session/session.h"

namespace tevo::app {

class Plot_Widget : public QWidget {
  Q_OBJECT
 public:
  explicit Plot_Widget(Session& session, QWidget* parent = nullptr);

  // Ppm under a widget x, from the current view (X_Left at the left edge).
  double Ppm_At(int x) const;

 signals:
  void cursor_moved(double ppm, double height);
  void files_dropped(const QStringList& paths);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  Session& session_;
  int cursor_x_ = -1;  // cross-hair column, -1 when the mouse is outside
  int cursor_y_ = -1;
};

}  // namespace tevo::app
