// A settings-group window built from its table (display/style_forms.h): one
// tab per page of rows, one field per row, and an optional preview. Every
// change is applied to the session at once and announced by `changed`, so
// the plot repaints while the window is open; OK stores, キャンセル puts back
// the values the window opened with.
#pragma once

#include <QDialog>
#include <QImage>
#include <functional>

#include "display/style_forms.h"
#include "session/session.h"

class QLabel;
class QMenu;

namespace tevo::app {

// Pixels per inch of the sheet beside the print styles.
inline constexpr double Style_Preview_Dpi = 24;

class Style_Dialog : public QDialog {
  Q_OBJECT
 public:
  // `preview`, when given, paints the picture shown beside the fields.
  Style_Dialog(Session& session, const display::Style_Form& form, QWidget* parent = nullptr,
               std::function<QImage()> preview = {});

  void reject() override;

 signals:
  void changed();

 private:
  QWidget* Field(const display::Style_Row& row);
  void Show_Preview();
  void Applied();
  void Ok();

  Session& session_;
  const display::Style_Form& form_;
  display::Style_Saved saved_;
  std::function<QImage()> preview_;
  QLabel* picture_ = nullptr;  // Picture1, the preview
};

// The style items of a window's settings menu: `display_id` opens the
// display style `display_form`, `print_id` the print style `print_form`
// with `print_preview` beside its fields; each repaints `plot` at every
// change.
void Add_Style_Items(QMenu* menu, Session& session, QWidget* plot, const char* display_id,
                     const char* display_form, const char* print_id, const char* print_form,
                     std::function<QImage()> print_preview);

}  // namespace tevo::app
