// NMR1D_Form1: the one main window. It shows the plot and one tool panel,
// builds its menus from the menu table, and hands every command to the
// core; what a command does is decided there.
#pragma once

#include <QMainWindow>
#include <map>
#include <string>

#include "datafiles/open_file.h"
#include "qt_ui.h"
#include "session/session.h"

class QAction;
class QLabel;
class QScrollBar;
class QStackedWidget;
class QVBoxLayout;

namespace tevo::app {

class Plot_Widget;
class Basic_Toolbar;
class Baseline_Panel;
class Integral_Panel;
class MultiView_Panel;
class Peak_Panel;
class Phase_Panel;
class Reference_Panel;
class Overlay_Window;
class Relax_Window;

class Main_Window : public QMainWindow {
  Q_OBJECT
 public:
  explicit Main_Window(Session& session, QWidget* parent = nullptr);

  // The action of a menu item by its name (nullptr when unknown).
  QAction* Action(const std::string& id) const;
  Plot_Widget* Plot() const { return plot_; }

  // Enables, checks and captions everything from the session state; called
  // after every command.
  void Refresh_State();
  // Repaints the plot and shows the view in the basic fields and the bar.
  void Refresh_View();
  Basic_Toolbar* Basic() const { return basic_; }
  Phase_Panel* Phase() const { return phase_; }
  Reference_Panel* Reference() const { return reference_; }
  Baseline_Panel* Baseline() const { return baseline_; }
  Peak_Panel* Peaks() const { return peaks_; }
  Integral_Panel* Integrals() const { return integrals_; }
  // NMR1D_Form6 once m27 has opened it.
  Overlay_Window* Overlays() const { return overlays_; }
  MultiView_Panel* Insets() const { return multiview_; }
  // T1Cal_Form1 once m52 has opened it.
  Relax_Window* Relaxation() const { return relax_; }

  // The start-up steps that need the window's Ui (settings, user choice,
  // work marker, command line); the window is not shown yet. Not
  // `interactive`: the latest user is taken without asking.
  void Start(const std::string& home, const std::string& exe_path, const std::string& command_line,
             bool interactive = true);
  // Opens the file named on the command line, if any.
  void Open_Command_Line();
  // The open command (NM1D_m11) on a path, or with the file dialog when the
  // path is empty; a FID goes through the processing window. Returns the
  // core status (0 loaded).
  int Open(const std::string& path);
  // NM1D_m111: several files as one array of individual delays, from their
  // joined form ("folder|name|name...") or, when empty, the file dialog.
  int Open_Individual(const std::string& joined);
  // The save command (m10) to a path, or with the file dialog.
  int Save(const std::string& path);
  // False when the start-up ended the program (file in use, 2D data handed
  // on, "終了" in the user window).
  bool Started() const { return started_; }

  // The end of the program through m19_Click; returns true when it may end.
  // The clean-up has been done then.
  bool Try_Exit();
  // The clean-up of the end (settings written, temporaries and markers).
  void Shut_Down();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void Build_Panels();
  // The panels of the baseline, peak and integral modes, and the plot's
  // clicks and drags handed to the one of the current mode.
  void Build_Edit_Panels();
  // Caption and state of m20 by the newest undo record, and the edit
  // panels' boxes; after every edit.
  void Refresh_Edits();
  // An open request whose FID goes through the processing window.
  datafiles::Open_Request Fid_Request(const std::string& path);
  void Connect_Commands();
  void Rebuild_Recent_Menu();
  void On_Files_Dropped(const QStringList& paths);
  void On_Clear_Recent();
  void On_Version();
  void On_History();
  void On_Power_Spectrum();
  void On_Reference_Mode();
  void On_Range_Dialog();
  void On_Grid_Dialog();
  void On_Instrument_Table();
  void On_Parameters();
  // m27: the overlay window, made once and shown again.
  void On_Overlays();
  void On_Relaxation();

  Session& session_;
  Qt_Ui ui_;
  std::map<std::string, QAction*> actions_;
  std::vector<QAction*> recent_actions_;
  Plot_Widget* plot_ = nullptr;
  QStackedWidget* panels_ = nullptr;
  QVBoxLayout* layout_ = nullptr;
  QLabel* cursor_label_ = nullptr;
  QLabel* distance_label_ = nullptr;  // Picture3, the distance window
  Basic_Toolbar* basic_ = nullptr;
  Phase_Panel* phase_ = nullptr;
  Reference_Panel* reference_ = nullptr;
  Baseline_Panel* baseline_ = nullptr;
  Peak_Panel* peaks_ = nullptr;
  Integral_Panel* integrals_ = nullptr;
  Overlay_Window* overlays_ = nullptr;  // NMR1D_Form6
  Relax_Window* relax_ = nullptr;  // T1Cal_Form1
  MultiView_Panel* multiview_ = nullptr;
  QScrollBar* scroll_ = nullptr;
  bool setting_scroll_ = false;
  bool started_ = false;  // the start-up ran: the end writes settings and removes markers
};

}  // namespace tevo::app
