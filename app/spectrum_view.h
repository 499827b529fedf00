// The plot of a spectrum with its scroll bar and the tool panels of the
// editing modes (basic, reference, phase, baseline, peaks, integrals,
// insets), all over one session. The main window shows the session's
// spectrum in one; the overlay editor shows the working session of a slot
// in another, so both run the same mode panels.
#pragma once

#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

#include "session/session.h"

class QScrollBar;
class QStackedWidget;

namespace tevo::app {

class Plot_Widget;
class Basic_Toolbar;
class Baseline_Panel;
class Integral_Panel;
class MultiView_Panel;
class Peak_Panel;
class Phase_Panel;
class Reference_Panel;

class Spectrum_View : public QWidget {
  Q_OBJECT
 public:
  explicit Spectrum_View(Session& session, QWidget* parent = nullptr);

  Plot_Widget* Plot() const { return plot_; }
  Basic_Toolbar* Basic() const { return basic_; }
  Phase_Panel* Phase() const { return phase_; }
  Reference_Panel* Reference() const { return reference_; }
  Baseline_Panel* Baseline() const { return baseline_; }
  Peak_Panel* Peaks() const { return peaks_; }
  Integral_Panel* Integrals() const { return integrals_; }
  MultiView_Panel* Insets() const { return multiview_; }

  // The mode commands of the edit menu and the mode each enters.
  struct Mode_Command {
    const char* id;
    int16_t mode;
  };
  static const std::vector<Mode_Command>& Mode_Commands();
  // Runs a mode command ("m21" .. "m26") on the session; the panel of a
  // mode entered is filled. The owner refreshes its state after.
  void Enter_Mode(const std::string& id);
  // Shows the panel of the session's mode.
  void Show_Mode();
  // The boxes of the baseline, peak, integral and inset panels.
  void Refresh_Panels();
  // The basic fields, the scroll bar and the plot from the view.
  void Refresh_View();

 signals:
  // The view moved (plot, basic fields, scroll bar, a mode's preview).
  void view_changed();
  // A list or the data changed in an edit panel.
  void edited();
  // A mode ended.
  void finished();
  // The basic panel asks for the range dialog.
  void range_requested();

 private:
  Session& session_;
  Plot_Widget* plot_ = nullptr;
  QScrollBar* scroll_ = nullptr;
  QStackedWidget* panels_ = nullptr;
  Basic_Toolbar* basic_ = nullptr;
  Phase_Panel* phase_ = nullptr;
  Reference_Panel* reference_ = nullptr;
  Baseline_Panel* baseline_ = nullptr;
  Peak_Panel* peaks_ = nullptr;
  Integral_Panel* integrals_ = nullptr;
  MultiView_Panel* multiview_ = nullptr;
  bool setting_scroll_ = false;
};

}  // namespace tevo::app
