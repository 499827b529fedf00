// Small pieces shared by the dialogs: named buttons and the OK / キャンセル row.
#pragma once

#include <QString>

class QBoxLayout;
class QDialog;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QWidget;

namespace tevo::app {

// A push button with its control name, for tests and the style sheet.
QPushButton* Named_Button(QWidget* parent, const char* name, const QString& caption);
// A line edit with its control name.
QLineEdit* Named_Field(QWidget* parent, const char* name);
// "OK" (Command1, default) and "キャンセル" (Command2, rejects),
// right-aligned, appended to `layout`. Returns the OK button.
QPushButton* Ok_Cancel_Row(QDialog* dialog, QBoxLayout* layout);

}  // namespace tevo::app
