// The parameter table windows NMR1D_Form103 and NMR1D_Form103_CSV: a grid
// of "Parameter Name" and "Data" in which only the data are typed. The
// rows and their check come from the core: a typed value the check refuses
// goes back to the one before, and OK waits until no row is refused.
#pragma once

#include <QDialog>
#include <vector>

#include "platform/ui.h"

class QTableWidget;

namespace tevo::app {

class Parameter_Table_Dialog : public QDialog {
  Q_OBJECT
 public:
  Parameter_Table_Dialog(const std::string& form, const std::string& title, std::vector<platform::Param_Row> rows,
                         platform::Param_Check check, QWidget* parent);
  // The rows as typed and accepted.
  const std::vector<platform::Param_Row>& Rows() const { return shown_; }

 private:
  void On_Ok();

  std::vector<platform::Param_Row> shown_;  // the rows as last accepted
  platform::Param_Check check_;
  QTableWidget* grid_;
};

}  // namespace tevo::app
