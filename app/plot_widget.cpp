#include "plot_widget.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>

namespace tevo::app {

Plot_Widget::Plot_Widget(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName("Picture1");
  setMouseTracking(true);
  setAcceptDrops(true);
  setAutoFillBackground(false);
  setMinimumSize(320, 200);
}

double Plot_Widget::Ppm_At(int x) const {
  if (width() <= 1) return session_.X_Left;
  return session_.X_Left + (session_.X_Right - session_.X_Left) * double(x) / double(width() - 1);
}

void Plot_Widget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const Session& s = session_;
  if (s.Disp_Points > 1 && s.X_Left != s.X_Right) {
    // Simple trace of the display copy over the current view.
    const int row = std::clamp(s.Array_Row, 0, std::max(0, s.Array_Rows - 1));
    const double full = s.Y_Full_Scale > 0 ? s.Y_Full_Scale : 1.0;
    QPolygonF line;
    const int w = width(), h = height();
    for (int i = 0; i < s.Disp_Points; ++i) {
      const double ppm = s.Disp_X[i];
      const double fx = (ppm - s.X_Left) / (s.X_Right - s.X_Left);
      if (fx < 0 || fx > 1) continue;
      const double fy = s.Y_Offset + s.Disp_Y(i, row) / full;
      line << QPointF(fx * (w - 1), (1.0 - fy) * (h - 1));
    }
    painter.setPen(QPen(Qt::black, 0));
    painter.drawPolyline(line);
  }
  if (cursor_x_ >= 0) {
    painter.setPen(QPen(QColor(128, 128, 128), 0, Qt::DotLine));
    painter.drawLine(cursor_x_, 0, cursor_x_, height());
    painter.drawLine(0, cursor_y_, width(), cursor_y_);
  }
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
