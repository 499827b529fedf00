// A plain text kept in a file, edited in a window: the parameter file
// ("パラメータファイル") and the notes ("メモ"). 保存 writes the text through
// the given routine and closes; 閉じる leaves the file as it was.
#pragma once

#include <QDialog>
#include <functional>
#include <string>

class QPlainTextEdit;

namespace tevo::app {

class Text_File_Dialog : public QDialog {
  Q_OBJECT
 public:
  // `text` has its lines joined by CR LF; `save` gets them so and returns 0
  // when the file was written.
  Text_File_Dialog(const char* name, const QString& title, const std::string& text,
                   std::function<int(const std::string&)> save, QWidget* parent = nullptr);

 private:
  QPlainTextEdit* text_ = nullptr;  // Text1
};

}  // namespace tevo::app
