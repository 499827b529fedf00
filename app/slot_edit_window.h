// SMulti_Form1: one overlay slot edited like the main spectrum, in a modal
// window. It shows the same plot and mode panels as the main window over a
// working session made from the slot; closing writes the working session
// back into the slot. Undo and the view history stay inside the window.
#pragma once

#include <QDialog>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "overlay/slot_edit.h"
#include "qt_ui.h"
#include "session/session.h"

class QAction;
class QCheckBox;
class QComboBox;
class QRadioButton;
class QSpinBox;
class QLabel;
class QLineEdit;
class QMenuBar;

namespace tevo::app {

class Spectrum_View;

class Slot_Edit_Window : public QDialog {
  Q_OBJECT
 public:
  Slot_Edit_Window(Session& main, int slot, QWidget* parent = nullptr);

  // The working session the window edits.
  Session& Working() { return working_; }
  Spectrum_View* View() const { return view_; }
  QAction* Action(const std::string& id) const;
  // Enables, checks and captions the menus and panels from the working session.
  void Refresh_State();

 protected:
  // Closing (BasicCommand1, the close box, Esc): a pending mode is closed
  // first, then the slot takes the working data.
  void done(int result) override;

 private:
  void Build_Menus();
  void Refresh_View();
  void On_Replace();
  void On_Comment();

  Session& main_;
  int slot_;
  Overlay_Slot row_;  // the slot's row fields, the comment and file as edited
  Session working_;
  Qt_Ui ui_;
  Spectrum_View* view_ = nullptr;
  QLabel* cursor_label_ = nullptr;
  QMenuBar* menu_bar_ = nullptr;
  std::map<std::string, QAction*> actions_;
};

// SMulti_Form4, "コメントの編集": the slot's comment in Text1, "確定"
// (Command1) and "キャンセル" (Command2).
class Slot_Comment_Dialog : public QDialog {
  Q_OBJECT
 public:
  Slot_Comment_Dialog(const std::string& comment, QWidget* parent = nullptr);
  std::string Text() const;

 private:
  QLineEdit* text_ = nullptr;
};

// SMulti_Form33, "表示/表示範囲の変更　印刷には反映されません": the editor's
// own display values (Check1 .. Check5, Option1/Option2, the digits in
// Text1/Text2, the peak unit in Combo1, the range in Text3/Text4); OK puts
// them into the working session.
class Slot_Display_Dialog : public QDialog {
  Q_OBJECT
 public:
  Slot_Display_Dialog(Session& working, QWidget* parent = nullptr);

 protected:
  void accept() override;

 private:
  Session& working_;
  overlay::Slot_Display values_;
  std::vector<std::pair<QCheckBox*, bool overlay::Slot_Display::*>> checks_;
  QRadioButton* above_ = nullptr;
  QSpinBox* peak_digits_ = nullptr;
  QSpinBox* integ_digits_ = nullptr;
  QComboBox* unit_ = nullptr;
  QLineEdit* upper_ = nullptr;
  QLineEdit* lower_ = nullptr;
};

}  // namespace tevo::app
