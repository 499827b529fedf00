#include "plot_widget.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWheelEvent>

#include "display/inset_mode.h"
#include "display/paint.h"
#include "display/view_commands.h"
#include "platform/qt/qt_surface.h"
#include "session/command_flow.h"
#include "signal/phase_mode.h"

namespace tevo::app {

namespace {

// The spectrum point under a display index.
int32_t Spec_Point(const Session& s, int32_t index) {
  return s.Disp_Points > 0 ? int32_t(int64_t(index) * s.Spec_Points / s.Disp_Points) : index;
}

// A release this many pixels from the press still counts as a click.
constexpr int kClickSlack = 2;

}  // namespace

Plot_Widget::Plot_Widget(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName("Picture1");
  setMouseTracking(true);
  setAcceptDrops(true);
  setAutoFillBackground(false);
  // Every pixel comes from the kept picture: nothing below needs painting.
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(320, 200);
}

double Plot_Widget::Ppm_At(int x) const {
  const double x0 = frame_.Frame_Left, x1 = frame_.Frame_Right;
  if (x1 <= x0) return session_.X_Left;
  return session_.X_Left + (session_.X_Right - session_.X_Left) * (x - x0) / (x1 - x0);
}

double Plot_Widget::Pixel_Of_Ppm(double ppm) const {
  return display::X_To_Pixel(ppm, session_.X_Left, session_.X_Right, frame_.Frame_Left, frame_.Frame_Right);
}

void Plot_Widget::Redraw() {
  base_stale_ = true;
  update();
}

void Plot_Widget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // The plot is painted into the kept picture by the one paint routine
  // (exact XOR there) only when something but the mouse changed; the
  // cross-hair and the rubber band go over the kept picture.
  if (base_stale_ || base_.size() != size()) {
    // The former image's memory is reused while the size stays.
    if (base_.size() != size()) base_ = QImage(size(), QImage::Format_RGB32);
    base_.fill(Qt::white);
    platform::QtSurface surface(base_, logicalDpiY());
    const display::Paint_Result result = display::Picture1_Paint(session_, surface);
    frame_ = result.frame;
    base_stale_ = false;
  }
  painter.drawImage(0, 0, base_);
  if (drag_start_.x() >= 0 && cursor_x_ >= 0) {
    painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    painter.setPen(QPen(Qt::white, 0, Qt::DotLine));
    // An inset being moved or resized shows where it goes; other drags a band.
    display::Inset_Box box;
    if (session_.Mode.Edit_Mode == session::Mode_Inset &&
        display::Inset_Drag_Box(session_, frame_, drag_start_.x(), drag_start_.y(), cursor_x_, cursor_y_, box))
      painter.drawRect(QRect(QPoint(box.left, box.top), QPoint(box.right, box.bottom)).normalized());
    else
      painter.drawRect(QRect(drag_start_, QPoint(cursor_x_, cursor_y_)).normalized());
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  }
  if (cursor_x_ >= 0) {
    painter.setPen(QPen(QColor(128, 128, 128), 0, Qt::DotLine));
    painter.drawLine(cursor_x_, 0, cursor_x_, height());
    painter.drawLine(0, cursor_y_, width(), cursor_y_);
  }
}

void Plot_Widget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton && session_.Mode.Edit_Mode == session::Mode_Inset) {
    emit context_requested(event->position().toPoint(), event->globalPosition().toPoint());
    return;
  }
  if (session_.Mode.Edit_Mode == session::Mode_Phase && session_.Mouse_Tool == display::Tool_None &&
      session_.Disp_Points > 0) {
    // Phase mode: a click places the pivot "pp" (left) or "p2" (right).
    const QPoint p = event->position().toPoint();
    const display::Data_Point d = display::Pixel_To_Data(session_, frame_, p.x(), p.y());
    signal::Phase_Set_Marker(session_, event->button() == Qt::RightButton ? 1 : 0, Spec_Point(session_, d.index));
    emit view_changed();
    return;
  }
  // A drag arms with a zoom tool, and in the reference and editing modes
  // without one.
  const int16_t mode = session_.Mode.Edit_Mode;
  const bool marks = (mode == session::Mode_Reference || mode == session::Mode_Baseline ||
                      mode == session::Mode_Peak || mode == session::Mode_Integral ||
                      mode == session::Mode_Inset) &&
                     session_.Disp_Points > 0;
  if (event->button() == Qt::LeftButton && (session_.Mouse_Tool != display::Tool_None || marks))
    drag_start_ = event->position().toPoint();
}

void Plot_Widget::mouseReleaseEvent(QMouseEvent* event) {
  if (drag_start_.x() < 0 || event->button() != Qt::LeftButton) return;
  const QPoint end = event->position().toPoint();
  const display::Data_Point a = display::Pixel_To_Data(session_, frame_, drag_start_.x(), drag_start_.y());
  const display::Data_Point b = display::Pixel_To_Data(session_, frame_, end.x(), end.y());
  const bool click = (end - drag_start_).manhattanLength() <= kClickSlack;
  const QPoint press = drag_start_;
  drag_start_ = QPoint(-1, -1);
  // The inset mode's tools are its own: it takes every press and release.
  if ((session_.Mouse_Tool == display::Tool_None || session_.Mode.Edit_Mode == session::Mode_Inset) &&
      session_.Mode.Edit_Mode != session::Mode_Reference) {
    emit edit_mouse(press, click ? press : end);
    return;
  }
  if (session_.Mouse_Tool == display::Tool_None) {
    if (click)
      emit point_clicked(a.index);
    else
      emit range_dragged(Spec_Point(session_, a.index), Spec_Point(session_, b.index));
    return;
  }
  display::Mouse_Zoom(session_, session_.Mouse_Tool, a, b);
  emit view_changed();
}

void Plot_Widget::wheelEvent(QWheelEvent* event) {
  // Scrolling and Ctrl+zoom belong to the basic mode; the editing modes keep
  // the view still under the operator's marks.
  if (session_.Mode.Edit_Mode != 0) return QWidget::wheelEvent(event);
  const double notches = event->angleDelta().y() / 120.0;
  const bool zoom = event->modifiers() & Qt::ControlModifier;
  display::Wheel_View(session_, Ppm_At(static_cast<int>(event->position().x())), notches, zoom);
  event->accept();
  emit view_changed();
}

void Plot_Widget::mouseMoveEvent(QMouseEvent* event) {
  cursor_x_ = int(event->position().x());
  cursor_y_ = int(event->position().y());
  const double ppm = Ppm_At(cursor_x_);
  double height = 0;
  if (session_.Disp_Points > 0) height = Point_From_Ppm(session_, float(ppm), session_.Array_Row).height;
  emit cursor_moved(ppm, height);
  update();
}

void Plot_Widget::leaveEvent(QEvent*) {
  cursor_x_ = cursor_y_ = -1;
  update();
}

void Plot_Widget::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void Plot_Widget::dropEvent(QDropEvent* event) {
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) paths << url.toLocalFile();
  if (!paths.isEmpty()) emit files_dropped(paths);
}

}  // namespace tevo::app
