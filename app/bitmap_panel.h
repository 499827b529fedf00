// S_Frame: a part of the sheet as a picture of chosen size, to the
// clipboard, a BMP file or a PNG file. Two size fields keep the range's
// aspect within the limit of the panel (2048 pixels for bitmaps, 5000 for
// PNG); the picture is painted by the page routine with the paper window
// set to the range.
#pragma once

#include <QDialog>
#include <QImage>

#include "page/bitmap_export.h"
#include "session/session.h"

class QComboBox;
class QLabel;

namespace tevo::app {

class Bitmap_Panel : public QDialog {
  Q_OBJECT
 public:
  // `offered` is the size first shown, `aspect` the range's height / width
  // in preview pixels.
  Bitmap_Panel(Session& session, const page::Copy_Range& range, page::Bitmap_Size offered, float aspect,
               page::Export_Kind kind, QWidget* parent = nullptr);

  // Opens the panel for `range` as the preview at `preview_dpi` shows it;
  // a range under 2 x 2 preview pixels is refused with its message.
  static void Open(Session& session, const page::Copy_Range& range, double preview_dpi, page::Export_Kind kind,
                   QWidget* parent);

  page::Bitmap_Size Size() const { return size_; }
  // The range painted at the size of the fields.
  QImage Picture() const;
  // Command51 / Command53: the save of the panel's kind under `given`, or
  // under a name asked for. Returns 0 written, 1 cancelled or refused, -1
  // the write failed.
  int Save(const std::string& given = {});

 private:
  void Typed(QComboBox* field);
  void Show_Size();
  void Copy_To_Clipboard();

  Session& session_;
  page::Copy_Range range_;
  float aspect_;
  page::Export_Kind kind_;
  page::Bitmap_Size size_;
  QComboBox* width_ = nullptr;  // Combo51
  QComboBox* height_ = nullptr;  // Combo52
  QLabel* estimate_ = nullptr;
  bool updating_ = false;  // the two fields set each other
};

}  // namespace tevo::app
