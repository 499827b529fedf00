// platform::Ui for the desktop: the message window FormMsg, the file
// pickers and the small choice dialogs, as Qt widgets.
#pragma once

#include <QDialog>
#include <QWidget>

#include "platform/ui.h"
#include "session/session.h"

namespace tevo::app {

// The one message window: caption, text, one to three buttons spaced across,
// an icon, the default button focused, and the key table of its style.
class FormMsg : public QDialog {
  Q_OBJECT
 public:
  FormMsg(const platform::Message_Box_Request& box, QWidget* parent);
  int pressed() const { return pressed_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  platform::Message_Box_Request box_;
  int pressed_ = 0;
};

class Qt_Ui : public platform::Ui {
 public:
  explicit Qt_Ui(QWidget* parent = nullptr) : parent_(parent) {}
  void Set_Parent(QWidget* parent) { parent_ = parent; }
  // The session whose questions have windows of their own (the instrument
  // ID entry); without it they are plain text questions.
  void Set_Session(Session* session) { session_ = session; }

  int Message_Box(const platform::Message_Box_Request& box) override;
  void Beep() override;
  void Wait_Cursor(bool on) override;
  void Do_Events() override;
  std::optional<platform::File_Answer> Open_File(const platform::File_Request& request) override;
  std::optional<platform::File_Answer> Save_File(const platform::File_Request& request) override;
  // "Bruker補正" shows NMR1D_Form14; other titles a plain choice window.
  int Choose(const std::string& title, const std::string& prompt, const std::vector<std::string>& options,
             int initial) override;
  // "Instrument ID" shows Form107 when a session is set.
  std::optional<std::string> Ask_Text(const std::string& title, const std::string& prompt,
                                      const std::string& initial) override;
  // The user window NMR1D_Form01.
  std::optional<std::string> Ask_User(const std::vector<std::string>& users, const std::string& initial) override;
  // NMR1D_Form103 and NMR1D_Form103_CSV.
  std::optional<std::vector<platform::Param_Row>> Edit_Parameters(const std::string& form, const std::string& title,
                                                                  const std::vector<platform::Param_Row>& rows,
                                                                  const platform::Param_Check& check) override;

 private:
  QWidget* parent_;
  Session* session_ = nullptr;
  int wait_depth_ = 0;
};

// "caption|pattern|caption|pattern" to Qt's "caption (pattern);;..." with
// the patterns' ";" turned into blanks.
QStringList Qt_Filters(const std::string& filter);

}  // namespace tevo::app
