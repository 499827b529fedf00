// "プリンタの設定" (Form501): the printer, its paper, turn and bin, copies,
// printing on both sides, and colour or black-and-white pages. OK stores the
// printer keys of the settings; copies, duplex and bin are kept with the
// printer for the rest of the run, as a driver keeps them.
#pragma once

#include <QDialog>
#include <functional>

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
  // `group`: the paper of the pages, or of the lists when opened from a
  // list preview.
  explicit Printer_Form(Session& session, QWidget* parent = nullptr,
                        page::Printer_Group group = page::Printer_Group::Page);

 private:
  void Fill_Bins();
  void Store();

  Session& session_;
  page::Printer_Group group_;
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
// stored printer (when present), the group's paper and turn, the run's
// copies, and the bin and duplex (the run's for pages, the settings' for
// lists) are set on it.
void Apply_Printer_Setup(const Session& session, QPrinter& printer,
                         page::Printer_Group group = page::Printer_Group::Page);

// "印刷実行" of the previews: "使用出来るプリンターがありません" (title
// "プリンターエラー") when the system has no printer; otherwise the printer
// readied for the group, the print dialog, then `print_on` (0 printed, 1
// refused after its message, -1 failed: "印刷できませんでした").
// Returns what print_on returned, or 1 when nothing was printed.
int Print_Through_Dialog(Session& session, QWidget* parent, page::Printer_Group group,
                         const std::function<int(QPrinter&)>& print_on);

}  // namespace tevo::app
