// The settings of the printed lists: "List印刷時のFont" (Form502), the
// list font alone, and "用紙の向き・Fontの設定" (NMR1D_Form8_L_1), the turn
// of the list paper with the font. Both store through Store_List_Setup,
// which writes the font only when it changed.
#pragma once

#include <QDialog>

#include "session/session.h"

class QCheckBox;
class QDoubleSpinBox;
class QFontComboBox;
class QRadioButton;

namespace tevo::app {

class List_Setup_Dialog : public QDialog {
  Q_OBJECT
 public:
  // `with_paper`: NMR1D_Form8_L_1 with the paper's turn; else Form502.
  List_Setup_Dialog(Session& session, bool with_paper, QWidget* parent = nullptr);

 private:
  void Store();

  Session& session_;
  QFontComboBox* face_ = nullptr;  // name
  QDoubleSpinBox* size_ = nullptr;
  QCheckBox* bold_ = nullptr;
  QCheckBox* italic_ = nullptr;
  QRadioButton* landscape_ = nullptr;  // "横置き"; null in Form502
};

}  // namespace tevo::app
