// Picture1: the plot of the main window. It paints the session through the
// one paint routine and turns mouse actions into view commands.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>

#include "display/plot_geometry.h"
#include "session/session.h"

namespace tevo::app {

class Plot_Widget : public QWidget {
  Q_OBJECT
 public:
  explicit Plot_Widget(Session& session, QWidget* parent = nullptr);

  // Ppm under a widget x, from the current view and frame, and back.
  double Ppm_At(int x) const;
  double Pixel_Of_Ppm(double ppm) const;
  // The frame of the last paint.
  const display::Plot_Frame& Frame() const { return frame_; }
  // Paints the plot anew at the next paint: data, view or style changed.
  // Without it a paint shows the kept picture with the cross-hair and the
  // rubber band over it (a mouse move repaints nothing else).
  void Redraw();

 signals:
  void cursor_moved(double ppm, double height);
  void files_dropped(const QStringList& paths);
  void view_changed();
  // A range dragged in the reference mode, its ends in spectrum points.
  void range_dragged(int a, int b);
  // A click (press and release on the same spot) in the reference mode, at
  // a display point (index into Disp_X).
  void point_clicked(int index);
  // A press and its release in the baseline, peak or integral mode, in
  // widget pixels (the same spot for a click).
  void edit_mouse(QPoint press, QPoint release);
  // A right click in the inset mode, for the inset's context menu.
  void context_requested(QPoint at, QPoint global);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  Session& session_;
  int cursor_x_ = -1;  // cross-hair column, -1 when the mouse is outside
  int cursor_y_ = -1;
  display::Plot_Frame frame_;
  QImage base_;  // the kept picture of the last full paint
  bool base_stale_ = true;
  QPoint drag_start_{-1, -1};  // corner of a zoom drag, (-1, -1) when none
};

}  // namespace tevo::app
