// NMR1D_Form11 "FT-Phase": the processing window of a FID. Every change of
// a parameter runs window, transform and phase on the current row again and
// repaints; 完 了 commits all rows. The work is the core's; this window only
// shows the fields and the two plots.
#pragma once

#include <QDialog>
#include <map>
#include <string>

#include "session/session.h"
#include "signal/fid_processing.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace tevo::app {

class Phase_Panel;

class Fid_Window : public QDialog {
  Q_OBJECT
 public:
  explicit Fid_Window(Session& session, QWidget* parent = nullptr);
  // "OK" after 完 了, "CANCEL" after discarding, "" when closed otherwise.
  const std::string& Result() const { return state_.Result; }
  const signal::Ft_Form_State& State() const { return state_; }
  QLineEdit* Field(const std::string& name) const { return fields_.at(name); }
  QPushButton* Button(const std::string& name) const { return buttons_.at(name); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  void Refresh();
  // Runs the preview (window, transform, phase) of the current parameters
  // once the event loop is free: however many steps of a held button come
  // before it, one transform runs, and never one of a stale value.
  void Request_Preview();
  void Add_Field(const std::string& name, const QString& caption, std::function<bool(const QString&)> take);
  QPushButton* Add_Button(const std::string& name, const QString& caption);

  Session& session_;
  signal::Ft_Form_State state_;
  std::map<std::string, QLineEdit*> fields_;
  std::map<std::string, QPushButton*> buttons_;
  QComboBox* window_kind_ = nullptr;
  QCheckBox* auto_phase_ = nullptr;
  QCheckBox* imaginary_ = nullptr;
  Phase_Panel* phase_ = nullptr;
  QWidget* fid_plot_ = nullptr;
  QWidget* spec_plot_ = nullptr;
  bool preview_due_ = false;  // a preview is requested and has not run yet
};

}  // namespace tevo::app
