// BasicToolbar: the panel of the basic mode. Tool buttons, back, whole
// spectrum, automatic scale, the hold-to-repeat step buttons and the typed
// fields BasicText1..3; every action is a view command of the core.
#pragma once

#include <QWidget>
#include <map>
#include <string>
#include <vector>

#include "display/view_commands.h"
#include "session/session.h"

class QLineEdit;
class QPushButton;
class QToolButton;

namespace tevo::app {

class Basic_Toolbar : public QWidget {
  Q_OBJECT
 public:
  explicit Basic_Toolbar(Session& session, QWidget* parent = nullptr);
  // Shows the session's values in the fields and the back button's state.
  void Refresh();
  QToolButton* Button(int index) const { return buttons_.at(index); }
  QLineEdit* Field(const std::string& name) const { return fields_.at(name); }

 signals:
  void view_changed();
  // Button 5: the range window (NMR1D_Form31) is wanted.
  void range_requested();

 private:
  void Add_Hold(const char* name, const QString& text, display::View_Button b);
  void Typed(const std::string& name, display::Typed_Result (*apply)(Session&, const std::string&));

  Session& session_;
  display::Hold_Repeat held_;
  std::map<int, QToolButton*> buttons_;
  std::map<std::string, QLineEdit*> fields_;
  std::vector<QPushButton*> row_steps_;  // UpDown1: next and former row
};

}  // namespace tevo::app
