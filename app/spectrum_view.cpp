#include "spectrum_view.h"

#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "baseline_panel.h"
#include "basic_toolbar.h"
#include "display/inset_mode.h"
#include "display/insets.h"
#include "display/view_commands.h"
#include "editing/baseline.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "editing/reference.h"
#include "integral_panel.h"
#include "multiview_panel.h"
#include "peak_panel.h"
#include "phase_panel.h"
#include "plot_widget.h"
#include "reference_panel.h"
#include "signal/phase_mode.h"

namespace tevo::app {

namespace {

// The view's thumb value (0 .. Scroll_Thumb_Max) on a bar running 0 .. maximum,
// and back. A bar without room (maximum 0) sits at the start.
int Bar_From_Thumb(int thumb, int maximum) {
  return static_cast<int>(std::lround(static_cast<double>(thumb) * maximum / display::Scroll_Thumb_Max));
}
int Thumb_From_Bar(int value, int maximum) {
  if (maximum <= 0) return 0;
  return static_cast<int>(std::lround(static_cast<double>(value) * display::Scroll_Thumb_Max / maximum));
}

}  // namespace

Spectrum_View::Spectrum_View(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  plot_ = new Plot_Widget(session_, this);
  scroll_ = new QScrollBar(Qt::Horizontal, this);
  scroll_->setObjectName("FlatScrollBar_H");
  connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
    if (setting_scroll_) return;  // the view itself moved the bar
    display::Scroll_To_View(session_, Thumb_From_Bar(value, scroll_->maximum()));
    emit view_changed();
  });
  connect(plot_, &Plot_Widget::view_changed, this, &Spectrum_View::view_changed);

  panels_ = new QStackedWidget(this);
  panels_->setObjectName("ToolPanels");
  // Mode 0: the basic tool-bar with the view buttons and the row field;
  // modes 1 .. 6 the panels of the subsystems that own them.
  basic_ = new Basic_Toolbar(session_, panels_);
  connect(basic_, &Basic_Toolbar::view_changed, this, &Spectrum_View::view_changed);
  connect(basic_, &Basic_Toolbar::range_requested, this, &Spectrum_View::range_requested);
  reference_ = new Reference_Panel(session_, panels_);
  connect(reference_, &Reference_Panel::changed, this, &Spectrum_View::view_changed);
  connect(reference_, &Reference_Panel::finished, this, &Spectrum_View::finished);
  connect(plot_, &Plot_Widget::range_dragged, reference_, &Reference_Panel::Range_Dragged);
  connect(plot_, &Plot_Widget::point_clicked, reference_, &Reference_Panel::Point_Clicked);
  phase_ = new Phase_Panel(session_, signal::Phase_Place::Main_Window, panels_);
  connect(phase_, &Phase_Panel::changed, this, &Spectrum_View::view_changed);
  connect(phase_, &Phase_Panel::finished, this, &Spectrum_View::finished);
  baseline_ = new Baseline_Panel(session_, plot_, panels_);
  peaks_ = new Peak_Panel(session_, plot_, panels_);
  integrals_ = new Integral_Panel(session_, plot_, panels_);
  multiview_ = new MultiView_Panel(session_, plot_, panels_);
  connect(baseline_, &Baseline_Panel::changed, this, &Spectrum_View::edited);
  connect(peaks_, &Peak_Panel::changed, this, &Spectrum_View::edited);
  connect(integrals_, &Integral_Panel::changed, this, &Spectrum_View::edited);
  connect(multiview_, &MultiView_Panel::changed, this, &Spectrum_View::edited);
  connect(baseline_, &Baseline_Panel::finished, this, &Spectrum_View::finished);
  connect(peaks_, &Peak_Panel::finished, this, &Spectrum_View::finished);
  connect(integrals_, &Integral_Panel::finished, this, &Spectrum_View::finished);
  connect(multiview_, &MultiView_Panel::finished, this, &Spectrum_View::finished);
  connect(plot_, &Plot_Widget::context_requested, multiview_, &MultiView_Panel::Context_Menu);
  // The plot's clicks and drags go to the panel of the current mode.
  connect(plot_, &Plot_Widget::edit_mouse, this, [this](QPoint press, QPoint release) {
    switch (session_.Mode.Edit_Mode) {
      case session::Mode_Baseline: return baseline_->Mouse_Up(press, release);
      case session::Mode_Peak: return peaks_->Mouse_Up(press, release);
      case session::Mode_Integral: return integrals_->Mouse_Up(press, release);
      case session::Mode_Inset: return multiview_->Mouse_Up(press, release);
      default: return;
    }
  });
  for (QWidget* panel : std::initializer_list<QWidget*>{basic_, reference_, phase_, baseline_, peaks_, integrals_,
                                                        multiview_})
    panels_->addWidget(panel);

  // "TOOL BAR POSIT": 0 puts the tool panel below the plot, 1 above it.
  if (session_.settings.Int("TOOL BAR POSIT") != 1) {
    layout->addWidget(plot_, 1);
    layout->addWidget(scroll_);
    layout->addWidget(panels_);
  } else {
    layout->addWidget(panels_);
    layout->addWidget(plot_, 1);
    layout->addWidget(scroll_);
  }
}

const std::vector<Spectrum_View::Mode_Command>& Spectrum_View::Mode_Commands() {
  static const std::vector<Mode_Command> table = {
      {"m21", session::Mode_Reference}, {"m22", session::Mode_Phase}, {"m23", session::Mode_Baseline},
      {"m24", session::Mode_Peak},      {"m25", session::Mode_Integral}, {"m26", session::Mode_Inset}};
  return table;
}

void Spectrum_View::Enter_Mode(const std::string& id) {
  if (id == "m21") {
    if (editing::m21_Click(session_)) reference_->Refresh();
  } else if (id == "m22") {
    if (signal::m22_Click(session_)) phase_->Refresh();
  } else if (id == "m23") {
    editing::m23_Click(session_);
  } else if (id == "m24") {
    editing::m24_Click(session_);
  } else if (id == "m25") {
    editing::m25_Click(session_);
  } else if (id == "m26") {
    display::m26_Click(session_);
  }
}

void Spectrum_View::Show_Mode() { panels_->setCurrentIndex(std::clamp<int>(session_.Mode.Edit_Mode, 0, 6)); }

void Spectrum_View::Refresh_Panels() {
  baseline_->Refresh();
  peaks_->Refresh();
  integrals_->Refresh();
  multiview_->Refresh();
}

void Spectrum_View::Refresh_View() {
  // The magnification under each inset follows the main X window.
  display::Refresh_Inset_Scale(session_);
  basic_->Refresh();
  const display::Scroll_State bar = display::Scroll_From_View(session_);
  setting_scroll_ = true;
  // The thumb is the shown share of the spectrum: Qt draws it as
  // pageStep / (maximum + pageStep), so the bar runs over 0 .. 10000 minus the
  // page and the view's thumb value 0 .. 10000 is scaled onto that.
  const int maximum = std::max(display::Scroll_Thumb_Max - bar.large_change, 0);
  scroll_->setEnabled(bar.enabled);
  scroll_->setRange(0, maximum);
  scroll_->setPageStep(bar.large_change);
  scroll_->setSingleStep(bar.small_change);
  scroll_->setValue(Bar_From_Thumb(bar.value, maximum));
  setting_scroll_ = false;
  plot_->Redraw();
}

}  // namespace tevo::app
