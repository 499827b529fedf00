// "印刷プレビュー/文字・Image入力": the sheet as it will print, painted by the
// page routine at the window's zoom, and edited by mouse: the frame, the
// parameter block, the peak list, insets, peak numbers, free texts, lines
// and pictures are moved and resized by a drag; a click in the text mode
// writes a text, a drag in the line mode draws a line; pictures come from
// files, the clipboard or a drop. The work itself is the core's page
// editing; this window turns mouse and menus into its calls and repaints.
#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

#include "page/draw_page.h"
#include "page/page_edit.h"
#include "page/page_model.h"
#include "session/session.h"

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QPrinter;
class QToolButton;

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
  // `edit_overlay` opens the overlay editor on a slot ("重ね書きの編集");
  // without it the item stays disabled.
  explicit Page_Form(Session& session, QWidget* parent = nullptr,
                     std::function<void(int slot)> edit_overlay = {});

  // Prints on `printer` as "印刷実行" does after its dialog: 0 printed, 1
  // refused after the paper message, -1 the printer failed.
  int Print_On(QPrinter& printer);
  const QImage& Preview() const { return image_; }
  const page::Page_Geometry& Geometry() const { return g_; }
  QWidget* Sheet() const;
  QAction* Action(const QString& name) const;

  // The editing modes of the sheet.
  enum class Mode { Select, Text, Line };
  void Set_Mode(Mode m);
  // Places a picture file at a pixel of the sheet (file dialog and drop);
  // false after the message when it cannot be loaded.
  bool Load_Picture(const QString& path, QPoint at);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Build_Menus();
  void Repaint_Sheet();
  void Show_Sheet(const QImage& shown);
  void Refresh_Menus();
  void Print();
  double Zoom_Percent() const;
  void Zoom_Chosen();

  void Mouse_Press(QPoint p);
  void Mouse_Move(QPoint p);
  void Mouse_Release(QPoint p);
  void Double_Click(QPoint p);
  // Opens the text editor at a pixel of the sheet on a text (index) or a new one (-1).
  void Edit_Text(int index, QPoint at);

  bool Add_Picture(std::vector<uint8_t> bytes, bool metafile, QPoint at, QSize natural);
  void Copy_Picture();
  void Paste_Picture();
  void Delete_Selected();
  int Selected_Image() const;

  Session& session_;
  std::function<void(int)> edit_overlay_;
  page::Page_Undo_List undo_;
  page::Page_Geometry g_;
  QLabel* sheet_ = nullptr;  // Picture1
  QLabel* paper_ = nullptr;  // the paper caption
  QLabel* status_ = nullptr;  // the position and size of what is dragged
  QComboBox* zoom_ = nullptr;
  QComboBox* line_kind_ = nullptr;
  QComboBox* line_dash_ = nullptr;
  QToolButton* mode_buttons_[3] = {};
  QImage image_;
  double custom_zoom_ = 100;

  Mode mode_ = Mode::Select;
  page::Page_Hit hit_;  // what the press took; also the selection
  QPoint press_;
  bool pressed_ = false;
  QPoint pointer_;  // the last pointer place, for the overlay under it
};

}  // namespace tevo::app
