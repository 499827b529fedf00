// Small pieces shared by the dialogs: named buttons and the OK / キャンセル row.
#pragma once

#include <QString>
#include <functional>

class QBoxLayout;
class QDialog;
class QHBoxLayout;
class QLineEdit;
class QObject;
class QPushButton;
class QToolButton;
class QWidget;

namespace tevo::app {

// A push button with its control name, for tests and the style sheet.
QPushButton* Named_Button(QWidget* parent, const char* name, const QString& caption);
// A tool-bar button with its control name; a checkable one arms a mouse
// tool and is released by a second click.
QToolButton* Named_Tool(QWidget* parent, const char* name, const QString& caption, bool checkable);
// A line edit with its control name.
QLineEdit* Named_Field(QWidget* parent, const char* name);
// Runs `take` when the operator has typed into `field` and leaves it or
// presses Enter. Leaving an untouched field, which also happens when its
// window closes or its panel is hidden, applies nothing.
void On_Typed(QLineEdit* field, QObject* context, std::function<void()> take);
// "OK" (Command1, default) and "キャンセル" (Command2, rejects),
// right-aligned, appended to `layout`. Returns the OK button.
QPushButton* Ok_Cancel_Row(QDialog* dialog, QBoxLayout* layout);

}  // namespace tevo::app
