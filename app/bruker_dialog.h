// "Bruker補正": whether a FID was recorded with a single analogue-digital
// converter and needs the half-dwell correction. Opened after reading a FID
// whose parameters ask for the correction, with "Single AD-Converter"
// preset; accepted (OK) sets Acq_Mode, rejected (キャンセル or closing)
// abandons the reading.
#pragma once

#include <QDialog>

#include "session/session.h"

class QRadioButton;

namespace tevo::app {

class Bruker_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Bruker_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  Session& session_;
  QRadioButton* single_ = nullptr;  // Option1
  QRadioButton* dual_ = nullptr;  // Option2
};

}  // namespace tevo::app
