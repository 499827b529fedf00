// NMR1D_Form01, the user window at start: the users that have a settings
// file and "共通" in a list, the chosen name in a field beside it.
// "右の使用者で実行" (Command1) runs with the name in the field; "終了"
// (Command2) or closing ends the program before it starts. What a name
// means (common settings, a known user's file, a new file) is decided by
// the start-up sequence, not here.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QLineEdit;
class QListWidget;

namespace tevo::app {

class User_Dialog : public QDialog {
  Q_OBJECT
 public:
  User_Dialog(const std::vector<std::string>& users, const std::string& initial, QWidget* parent = nullptr);
  // The name in the field as typed.
  std::string Name() const;

 private:
  QListWidget* list_ = nullptr;  // List1
  QLineEdit* name_ = nullptr;  // Text1
};

}  // namespace tevo::app
