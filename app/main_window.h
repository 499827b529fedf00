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
#include "spectrum_view.h"

class QAction;
class QLabel;

namespace tevo::app {

class Overlay_Window;
class Relax_Window;
class Line_Window;
class Image_Window;

class Main_Window : public QMainWindow {
  Q_OBJECT
 public:
  explicit Main_Window(Session& session, QWidget* parent = nullptr);

  // The action of a menu item by its name (nullptr when unknown).
  QAction* Action(const std::string& id) const;
  Plot_Widget* Plot() const { return view_->Plot(); }

  // Enables, checks and captions everything from the session state; called
  // after every command.
  void Refresh_State();
  // Repaints the plot and shows the view in the basic fields and the bar.
  void Refresh_View();
  Basic_Toolbar* Basic() const { return view_->Basic(); }
  Phase_Panel* Phase() const { return view_->Phase(); }
  Reference_Panel* Reference() const { return view_->Reference(); }
  Baseline_Panel* Baseline() const { return view_->Baseline(); }
  Peak_Panel* Peaks() const { return view_->Peaks(); }
  Integral_Panel* Integrals() const { return view_->Integrals(); }
  // NMR1D_Form6 once m27 has opened it.
  Overlay_Window* Overlays() const { return overlays_; }
  MultiView_Panel* Insets() const { return view_->Insets(); }
  // T1Cal_Form1 once m52 has opened it.
  Relax_Window* Relaxation() const { return relax_; }
  // SpecSim_Form1 once m51 has opened it.
  Line_Window* Lines() const { return lines_; }
  // Form110 once m39 (or the start with "STRUCTURE DISP" 1) has opened it.
  Image_Window* Images() const { return images_; }
  // m39: the image window, made once and shown again, on top.
  void Show_Image_Window();

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

  // A row of m273 or m28: SMulti_Form1 on the slot, modal, in the mode of
  // the command `mode` when one is given ("m21"); the slot and its row of
  // the overlay window show the edit afterwards.
  void Edit_Slot(int slot, const std::string& mode);

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
  void On_Range_Dialog();
  void On_Grid_Dialog();
  // A settings-group window by its form name (NMR1D_Form7_0, ...): the plot
  // repaints at each change.
  void On_Style(const std::string& name);
  void On_Instrument_Table();
  void On_Parameters();
  // m27: the overlay window, made once and shown again.
  void On_Overlays();
  void On_Relaxation();
  void On_Line_Separation();

  Session& session_;
  Qt_Ui ui_;
  std::map<std::string, QAction*> actions_;
  std::vector<QAction*> recent_actions_;
  Spectrum_View* view_ = nullptr;  // the plot and the mode panels
  QLabel* cursor_label_ = nullptr;
  QLabel* distance_label_ = nullptr;  // Picture3, the distance window
  Overlay_Window* overlays_ = nullptr;  // NMR1D_Form6
  Relax_Window* relax_ = nullptr;  // T1Cal_Form1
  Line_Window* lines_ = nullptr;  // SpecSim_Form1
  Image_Window* images_ = nullptr;  // Form110
  bool started_ = false;  // the start-up ran: the end writes settings and removes markers
};

}  // namespace tevo::app
