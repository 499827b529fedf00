// "Array(T1/T2)データ表示の配置": how far the array stack leans sideways
// (Text1, a part of the frame width, negative to the left) and rises
// (Text2, a part of the frame height) from the first row to the last.
#pragma once

#include <QDialog>

#include "session/session.h"

class QLineEdit;

namespace tevo::app {

class Array_Span_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Array_Span_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  Session& session_;
  QLineEdit* span_x_ = nullptr;  // Text1
  QLineEdit* span_y_ = nullptr;  // Text2
};

}  // namespace tevo::app
