// "表示範囲の変更": the two limits of the view in ppm, Hz or kHz, and the
// two stored preset pairs "Default値-1" and "Default値-2" of the data's
// nucleus group. A preset button fills the fields, 登録 stores the fields as
// that preset; OK applies the fields as the view (put in order, widened when
// equal) after remembering the old view for 戻る.
#pragma once

#include <QDialog>

#include "display/view_commands.h"
#include "session/session.h"

class QLineEdit;
class QRadioButton;

namespace tevo::app {

class Range_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Range_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  // The fields as they stand, in the unit checked.
  display::Range_Values Fields() const;
  void Show(const display::Range_Values& v);
  // A new unit: the fields are converted into it.
  void Unit_Changed(int16_t unit);

  Session& session_;
  QRadioButton* units_[3] = {};  // Option1 ppm, Option2 Hz, Option3 kHz
  QLineEdit* upper_ = nullptr;  // Text1, left limit
  QLineEdit* lower_ = nullptr;  // Text2, right limit
  int16_t unit_ = 0;
};

}  // namespace tevo::app
