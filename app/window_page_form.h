// The print previews of the line separation ("印刷プレビュー(ピーク分離)",
// SpecSim_Form8) and of the T1/T2 window (T1Cal_Form8): the page of the
// main window with the window's plot as its content, shown at a zoom, with
// the paper's caption and "印刷実行" through the printer set-up.
#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

#include "page/draw_page.h"
#include "session/session.h"

class QComboBox;
class QLabel;
class QPrinter;

namespace tevo::app {

class Window_Page_Form : public QDialog {
  Q_OBJECT
 public:
  // `title` is followed by the paper's caption; `content` makes the page's
  // content afresh for each painting.
  Window_Page_Form(Session& session, const char* name, const QString& title,
                   std::function<page::Page_Content()> content, QWidget* parent = nullptr);

  // The print of "印刷実行" on `printer`, after its dialog.
  int Print_On(QPrinter& printer);
  const QImage& Preview() const { return image_; }
  QString Paper_Caption() const;

 private:
  void Repaint_Sheet();

  Session& session_;
  QString title_;
  std::function<page::Page_Content()> content_;
  QLabel* sheet_ = nullptr;  // Picture1
  QLabel* paper_ = nullptr;  // the paper and its turn
  QComboBox* zoom_ = nullptr;
  QImage image_;
};

}  // namespace tevo::app
