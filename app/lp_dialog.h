// "Linear Prediction パラメータ": the order, the rows of the equations, the
// first point of the forward equations, the points rebuilt backward and the
// stability check of the backward coefficients. A typed value the core
// refuses puts the previous one back into its field; キャンセル restores the
// values the window was opened with.
#pragma once

#include <QDialog>

#include "session/session.h"

class QCheckBox;
class QLineEdit;

namespace tevo::app {

class Lp_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Lp_Dialog(Session& session, QWidget* parent = nullptr);
  // キャンセル and closing: the values as they were on opening.
  void reject() override;

 private:
  // Hands the field's text to the core; a refused value is written back.
  void Take_Field(QLineEdit* field, bool (*set)(Session&, int32_t), int32_t Session::*value);
  void Show_Values();
  void Ok();

  Session& session_;
  QLineEdit* order_ = nullptr;  // Text4
  QLineEdit* points_ = nullptr;  // Text2
  QLineEdit* start_ = nullptr;  // Text3
  QLineEdit* back_ = nullptr;  // Text1
  QCheckBox* stability_ = nullptr;  // Check1
  int32_t old_order_, old_points_, old_start_, old_back_;
  int16_t old_stability_;
};

}  // namespace tevo::app
