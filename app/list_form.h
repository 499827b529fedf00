// "プレビュー（... List）": a printed list page by page on its list paper,
// with page turning, the choice of the compact or the spectrometer's
// layout for peaks, the printer and list paper set-up, "実行" to print
// every page through that set-up, and "戻る（中止）".
#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

#include "page/print_lists.h"
#include "session/session.h"

class QLabel;
class QPrinter;
class QRadioButton;

namespace tevo::app {

class List_Form : public QDialog {
  Q_OBJECT
 public:
  // Paints one page of the list and says whether more follow.
  using Painter = std::function<bool(platform::Surface&, const page::List_Page&)>;

  // The list of `kind` from the session; `paint` replaces the session's
  // list (the line window's fitted lines).
  List_Form(Session& session, page::List_Kind kind, QWidget* parent = nullptr, Painter paint = {});

  int Page() const { return page_; }  // from 0
  int Pages() const { return pages_; }
  const QImage& Preview() const { return image_; }
  // Prints every page on `printer`: 0 printed, -1 the printer failed.
  int Print_On(QPrinter& printer);

 private:
  bool Paint(platform::Surface& surf, int n);
  void Render();
  void Turn(int page);
  void Print();

  Session& session_;
  page::List_Kind kind_;
  Painter paint_;
  int16_t form_ = 0;  // List_Form: 0 compact, 1 the spectrometer's
  int page_ = 0, pages_ = 1;
  QLabel* sheet_ = nullptr;  // Picture1
  QLabel* page_text_ = nullptr;  // f121
  QImage image_;
};

}  // namespace tevo::app
