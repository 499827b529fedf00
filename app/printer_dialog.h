// "プリンタの設定" (Form501): the printer, its paper, turn and bin, copies,
// printing on both sides, and colour or black-and-white pages. OK stores the
// printer keys of the settings; copies, duplex and bin are kept with the
// printer for the rest of the run, as a driver keeps them.
#pragma once

#include <QDialog>

#include "page/printer_setup.h"
#include "session/session.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QPrinter;
class QRadioButton;
class QSpinBox;

namespace tevo::app {

class Printer_Form : public QDialog {
 public:
  explicit Printer_Form(Session& session, QWidget* parent = nullptr);

 private:
  void Fill_Bins();
  void Store();

  Session& session_;
  QComboBox* printer_ = nullptr;
  QComboBox* paper_ = nullptr;
  QRadioButton* landscape_ = nullptr;
  QComboBox* bin_ = nullptr;
  QSpinBox* copies_ = nullptr;
  QCheckBox* duplex_ = nullptr;
  QRadioButton* bind_top_ = nullptr;
  QCheckBox* black_ = nullptr;
};

// Readies a printer for a print: when "CHANGE PRINTER" is non-zero the
// stored printer (when present), paper, turn, and the run's bin, copies and
// duplex are set on it.
void Apply_Printer_Setup(const Session& session, QPrinter& printer);

}  // namespace tevo::app
