// "印刷プレビュー/文字・Image入力": the sheet as it will print, painted by the
// page routine at the window's scale, with the paper caption, the zoom, and
// "印刷実行", which prints through the platform's print dialog after the
// paper check. Placing objects by mouse comes later; this window shows them.
#pragma once

#include <QDialog>
#include <QImage>

#include "page/draw_page.h"
#include "session/session.h"

class QComboBox;
class QLabel;
class QPrinter;
class QScrollArea;

namespace tevo::app {

// The sheet painted by the page routine at `dpi` pixels per inch; with
// `content`, a window's page (its plot in the frame).
QImage Page_Image(Session& s, double dpi, const page::Page_Content* content = nullptr);

// Prints the sheet on `printer` as "印刷実行" does after its dialog: the
// printer turned as the operator chooses, the paper checked, then the
// page. 0 printed, 1 refused after the message, -1 the printer failed.
int Print_Sheet(Session& s, QPrinter& printer, const page::Page_Content* content = nullptr);

class Page_Form : public QDialog {
  Q_OBJECT
 public:
  explicit Page_Form(Session& session, QWidget* parent = nullptr);

  // Prints on `printer` as "印刷実行" does after its dialog: 0 printed, 1
  // refused after the paper message, -1 the printer failed.
  int Print_On(QPrinter& printer);
  const QImage& Preview() const { return image_; }

 private:
  void Repaint_Sheet();
  void Print();

  Session& session_;
  QLabel* sheet_ = nullptr;  // Picture1
  QLabel* paper_ = nullptr;  // the paper caption
  QComboBox* zoom_ = nullptr;
  QImage image_;
};

}  // namespace tevo::app
