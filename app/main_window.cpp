#include "main_window.h"

#include <QAction>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <QApplication>
#include <QCloseEvent>
#include <QKeySequence>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include "array_span_dialog.h"
#include "dept_dialog.h"
#include "difference_dialog.h"
#include "editing/baseline.h"
#include "editing/data_history.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "editing/undo.h"
#include "display/style.h"
#include "datafiles/open_file.h"
#include "display/view_commands.h"
#include "relaxation/array_data.h"
#include "editing/mirror.h"
#include "editing/reference.h"
#include "fid_window.h"
#include "grid_dialog.h"
#include "instrument_dialogs.h"
#include "list_window.h"
#include "menu_tree.h"
#include "operator_dialog.h"
#include "overlay_window.h"
#include "image_window.h"
#include "line_window.h"
#include "list_form.h"
#include "page_form.h"
#include "page/page_model.h"
#include "page/parameter_block.h"
#include "relax_window.h"
#include "parameter_dialog.h"
#include "plot_widget.h"
#include "printer_dialog.h"
#include "range_dialog.h"
#include "required_files_dialog.h"
#include "overlay/slot_edit.h"
#include "signal/phase_mode.h"
#include "slot_edit_window.h"
#include "spectrum_view.h"
#include "style_dialog.h"
#include "session/command_flow.h"
#include "session/messages.h"
#include "session/settings_files.h"
#include "session/startup.h"
#include "session/user_notes.h"
#include "text_file_dialog.h"
#include "title_window.h"

namespace tevo::app {

namespace {

// The older format's save with its own writer, shaped like the exports.
int Save_Older(Session& s, const std::string& path) { return datafiles::m13_Click(s, path); }
// The peak list in the layout the operator chooses.
int Save_Peak_List(Session& s, const std::string& path) { return datafiles::m172_Click(s, path); }

QString Q(const std::string& s) { return QString::fromStdString(s); }

// The difference and DEPT windows: modal, the plot repainted at each change.
template <class Form>
void Run_Derived_Form(Main_Window& w, Session& s) {
  if (!session::Confirm_Mode_Exit(s)) return;
  Form form(s, &w);
  QObject::connect(&form, &Form::changed, &w, &Main_Window::Refresh_View);
  w.Refresh_View();
  form.exec();
  w.Refresh_State();
}

}  // namespace

Main_Window::Main_Window(Session& session, QWidget* parent)
    : QMainWindow(parent), session_(session), ui_(this) {
  setObjectName("NMR1D_Form1");
  session_.ui = &ui_;
  ui_.Set_Session(&session_);
  setAcceptDrops(true);
  actions_ = Build_Menus(menuBar());

  view_ = new Spectrum_View(session_, this);
  connect(view_, &Spectrum_View::view_changed, this, &Main_Window::Refresh_View);
  connect(view_, &Spectrum_View::range_requested, this, &Main_Window::On_Range_Dialog);
  connect(view_, &Spectrum_View::finished, this, &Main_Window::Refresh_State);
  connect(view_, &Spectrum_View::edited, this, [this] {
    Refresh_Edits();
    Refresh_View();
  });
  setCentralWidget(view_);
  cursor_label_ = new QLabel(this);
  statusBar()->addPermanentWidget(cursor_label_);
  // Picture3: the distance window's three lines, while it is open.
  distance_label_ = new QLabel(this);
  distance_label_->setObjectName("Picture3");
  distance_label_->setVisible(false);
  statusBar()->addWidget(distance_label_, 1);
  connect(view_->Plot(), &Plot_Widget::cursor_moved, this, [this](double ppm, double height) {
    cursor_label_->setText(QString::asprintf("%.4f ppm   %.4g", ppm, height));
  });
  connect(view_->Plot(), &Plot_Widget::files_dropped, this, &Main_Window::On_Files_Dropped);
  Connect_Commands();
  resize(1024, 720);
  Refresh_State();
}

QAction* Main_Window::Action(const std::string& id) const {
  auto it = actions_.find(id);
  return it == actions_.end() ? nullptr : it->second;
}

void Main_Window::Refresh_Edits() {
  const editing::Undo_Menu undo = editing::Undo_Caption(session_);
  Action("m20")->setText(Q(undo.caption));
  // Undo and the list prints follow every edit of the peaks and integrals.
  auto enabled = session::Menu_Enabled(session_);
  for (const char* id : {"m20", "m15", "m17"}) Action(id)->setEnabled(enabled[id]);
  view_->Refresh_Panels();
}

void Main_Window::Connect_Commands() {
  Action("NM1D_m11")->setShortcut(QKeySequence::Open);
  Action("m10")->setShortcut(QKeySequence::Save);
  connect(Action("NM1D_m11"), &QAction::triggered, this, [this] { Open({}); });
  connect(Action("NM1D_m111"), &QAction::triggered, this, [this] { Open_Individual({}); });
  connect(Action("NM1D_m112"), &QAction::triggered, this, [this] {
    datafiles::NM1D_m112_Click(session_, Fid_Request({}));
    Refresh_State();
  });
  connect(Action("m47"), &QAction::triggered, this, [this] {
    Required_Files_Dialog form(session_, this);
    form.exec();
  });
  connect(Action("m10"), &QAction::triggered, this, [this] { Save({}); });
  // The other formats: the older native one, the two JCAMP-DX and the ASCII
  // exports, the peak and integral lists and the integral curves.
  for (const auto& [id, command] :
       {std::pair{"m13", &Save_Older}, std::pair{"m181", &datafiles::m181_Click},
        std::pair{"m183", &datafiles::m183_Click}, std::pair{"m18", &datafiles::m18_Click},
        std::pair{"m172", &Save_Peak_List}, std::pair{"m173", &datafiles::m173_Click},
        std::pair{"m131", &datafiles::m131_Click}}) {
    connect(Action(id), &QAction::triggered, this, [this, command = command] {
      command(session_, {});
      Refresh_State();
    });
  }
  for (int k = 1; k <= 9; ++k)
    connect(Action("m182_" + std::to_string(k)), &QAction::triggered, this, [this, k] {
      datafiles::m182_Click(session_, k);
      Refresh_State();
    });
  connect(Action("m19"), &QAction::triggered, this, [this] {
    if (Try_Exit()) QApplication::quit();
  });
  connect(Action("m102"), &QAction::triggered, this, &Main_Window::On_Clear_Recent);
  connect(Action("m41"), &QAction::triggered, this, &Main_Window::On_Version);
  connect(Action("m209"), &QAction::triggered, this, &Main_Window::On_History);
  connect(Action("m34"), &QAction::triggered, this, &Main_Window::On_Power_Spectrum);
  connect(Action("m31"), &QAction::triggered, this, &Main_Window::On_Range_Dialog);
  connect(Action("m30"), &QAction::triggered, this, &Main_Window::On_Grid_Dialog);
  // The style windows of the edit view and of printing, and the environment.
  for (const auto& [id, form] : {std::pair{"m331", "NMR1D_Form7_0"}, std::pair{"m332", "NMR1D_Form7_1"},
                                 std::pair{"m32", "NMR1D_Form3"}})
    connect(Action(id), &QAction::triggered, this, [this, form = form] { On_Style(form); });
  connect(Action("m44"), &QAction::triggered, this, &Main_Window::On_Instrument_Table);
  connect(Action("m43"), &QAction::triggered, this, [this] {
    Operator_Dialog form(session_, this);
    form.exec();
  });
  // その他: the parameter file, the user, the notes.
  connect(Action("m42"), &QAction::triggered, this, [this] {
    Text_File_Dialog form("m42", Q("パラメータファイル  " + session::Print_Text_File(session_)),
                          page::Parameter_File_Text(session_),
                          [this](const std::string& text) { return page::Save_Parameter_File(session_, text); }, this);
    if (form.exec() == QDialog::Accepted) Refresh_View();
  });
  connect(Action("m45"), &QAction::triggered, this, [this] {
    Show_Message(session_, session::User_Info_Text(session_), Icon_Information, "ユーザー情報");
  });
  connect(Action("m46"), &QAction::triggered, this, [this] {
    Text_File_Dialog form("m46", QStringLiteral("メモ"), session::Read_Memo(session_),
                          [this](const std::string& text) { return session::Save_Memo(session_, text); }, this);
    form.exec();
  });
  connect(Action("m291"), &QAction::triggered, this, [this] {
    editing::m291_Click(session_);
    Refresh_State();
  });
  connect(Action("m292"), &QAction::triggered, this, &Main_Window::On_Parameters);
  connect(Action("m27"), &QAction::triggered, this, &Main_Window::On_Overlays);
  connect(Action("m52"), &QAction::triggered, this, &Main_Window::On_Relaxation);
  connect(Action("m51"), &QAction::triggered, this, &Main_Window::On_Line_Separation);
  // The rows of m273 open the overlay editor, those of m28 open it in the
  // reference mode.
  for (int n = 1; n <= 9; ++n) {
    connect(Action("m2731_" + std::to_string(n)), &QAction::triggered, this,
            [this, n] { Edit_Slot(overlay::Edit_Menu_Slot(n), {}); });
    connect(Action("m2101_" + std::to_string(n)), &QAction::triggered, this,
            [this, n] { Edit_Slot(overlay::Edit_Menu_Slot(n), "m21"); });
  }
  connect(Action("m16"), &QAction::triggered, this, [this] {
    Printer_Form form(session_, this);
    form.exec();
  });
  connect(Action("m14_1"), &QAction::triggered, this, [this] {
    Page_Form form(session_, this, [this](int slot) { Edit_Slot(slot, {}); });
    form.exec();
    Refresh_View();
  });
  // The printed lists: the peaks, the integrals, the array's rows.
  for (const auto& [id, kind] : {std::pair{"m15", page::List_Kind::Peaks}, std::pair{"m17", page::List_Kind::Integrals},
                                 std::pair{"m171", page::List_Kind::Array}})
    connect(Action(id), &QAction::triggered, this, [this, kind = kind] {
      List_Form form(session_, kind, this);
      form.exec();
    });
  for (const session::Layer_Switch& l : session::Layer_Switches()) {
    Action(l.id)->setCheckable(true);
    connect(Action(l.id), &QAction::triggered, this, [this, l] {
      session::Layer_Chosen(session_, l);
      Refresh_State();
    });
  }
  connect(Action("m38"), &QAction::triggered, this, [this] {
    // The distance window opens with the cursor-pair tool armed, or closes.
    const bool open = session_.Show_Distance != 1;
    session_.Show_Distance = open ? 1 : 0;
    session_.Mouse_Tool = open ? display::Tool_Cursor_Pair : display::Tool_None;
    Refresh_State();
  });
  connect(Action("m39"), &QAction::triggered, this, &Main_Window::Show_Image_Window);
  connect(Action("m35"), &QAction::triggered, this, [this] {
    display::Save_Mag(session_);
    display::View_After_Load(session_);
    Refresh_View();
  });
  // The editing modes, and undo of their list edits.
  for (const Spectrum_View::Mode_Command& c : Spectrum_View::Mode_Commands())
    connect(Action(c.id), &QAction::triggered, this, [this, id = std::string(c.id)] {
      view_->Enter_Mode(id);
      Refresh_State();
    });
  // The array view: all rows stacked in one frame, or the current row alone.
  Action("m341")->setCheckable(true);
  connect(Action("m341"), &QAction::triggered, this, [this] {
    const bool on = display::Setting_Int(session_, "DISP ARRAY MODE", 0) != 0;
    display::Store_Setting(session_, "DISP ARRAY MODE", on ? 0 : 1);
    Refresh_State();
  });
  // The lean and rise of the stack; the view is reset and repainted on OK.
  connect(Action("m342"), &QAction::triggered, this, [this] {
    Array_Span_Dialog form(session_, this);
    if (form.exec() == QDialog::Accepted) Refresh_View();
  });
  Action("m20")->setShortcut(QKeySequence::Undo);
  connect(Action("m20"), &QAction::triggered, this, [this] {
    editing::Undo_Step(session_);
    Refresh_Edits();
    Refresh_View();
  });
  connect(Action("m271"), &QAction::triggered, this, [this] { Run_Derived_Form<Difference_Dialog>(*this, session_); });
  connect(Action("m272"), &QAction::triggered, this, [this] { Run_Derived_Form<DEPT_Dialog>(*this, session_); });
}

void Main_Window::Refresh_State() {
  // Every item of the tree: enabled only where the session's rules say so,
  // so that a command without its code is never enabled and silent.
  const auto enabled = session::Menu_Enabled(session_);
  for (const Menu_Item& item : Menu_Tree()) {
    if (std::string(item.caption) == "-") continue;
    const auto it = enabled.find(item.id);
    if (QAction* a = Action(item.id)) a->setEnabled(it != enabled.end() && it->second);
  }
  for (const Spectrum_View::Mode_Command& c : Spectrum_View::Mode_Commands())
    Action(c.id)->setChecked(session_.Mode.Edit_Mode == c.mode);
  Action("m34")->setChecked(session_.Show_Magnitude != 0);
  Action("NM1D_m111")->setVisible(display::Setting_Int(session_, "T1 INDIV FILE", 0) != 0);
  Action("m341")->setChecked(display::Setting_Int(session_, "DISP ARRAY MODE", 0) != 0);
  Action("m38")->setCheckable(true);
  Action("m38")->setChecked(session_.Show_Distance == 1);
  for (const session::Layer_Switch& l : session::Layer_Switches())
    Action(l.id)->setChecked(session::Layer_Checked(session_, l));
  view_->Show_Mode();
  Refresh_Edits();
  setWindowTitle(Q(session::Window_Caption(session_.Open_Name)));
  if (overlays_ != nullptr) overlays_->Refresh();
  if (images_ != nullptr) images_->Picture()->update();  // another data set's picture
  Rebuild_Recent_Menu();
  Refresh_View();
}

void Main_Window::Refresh_View() {
  view_->Refresh_View();
  QStringList distance;
  for (const std::string& line : display::Distance_Text(session_)) distance << Q(line);
  distance_label_->setText(distance.join(QStringLiteral("    ")));
  distance_label_->setVisible(!distance.isEmpty());
}

void Main_Window::Rebuild_Recent_Menu() {
  QAction* anchor = Action("RecentFile");
  QMenu* menu = qobject_cast<QMenu*>(anchor->parent());
  for (QAction* a : recent_actions_) {
    menu->removeAction(a);
    a->deleteLater();
  }
  recent_actions_.clear();
  anchor->setVisible(false);
  const auto& list = session_.settings.Recent_Files;
  for (std::size_t k = 0; k < list.size(); ++k) {
    auto* a = new QAction(Q(session::Recent_Caption(int(k) + 1, list[k])), menu);
    a->setObjectName(QStringLiteral("RecentFile%1").arg(k));
    const std::string path = list[k];
    connect(a, &QAction::triggered, this, [this, path] {
      // Several files joined with "|" are an array of individual files; a
      // single file that no longer exists does nothing.
      if (path.find('|') != std::string::npos) Open_Individual(path);
      else if (std::filesystem::exists(path)) Open(path);
    });
    menu->insertAction(anchor, a);
    recent_actions_.push_back(a);
  }
  Action("m1003")->setVisible(!list.empty());
  Action("m102")->setVisible(!list.empty());
}

void Main_Window::On_Clear_Recent() {
  if (!session::Confirm_Mode_Exit(session_)) return;
  if (Show_Message(session_, "履歴を削除しますか", Style_Yes_No + Icon_Question, "") != Msg_Yes) return;
  session_.settings.Recent_Files.clear();
  Refresh_State();
}

void Main_Window::On_History() {
  // Form111: the history of the data set as the core words it, read-only.
  auto* form = findChild<List_Window*>("Form111");
  if (form == nullptr) form = new List_Window("Form111", QStringLiteral("データの履歴"), this);
  form->Show_Heading(QStringLiteral("測定時ファイル名"),
                     QString::fromStdString(editing::Measured_Name_Shown(session_)));
  form->Show_Table(editing::Data_History_Table(session_));
  form->show();
  form->raise();
}

void Main_Window::On_Version() {
  Show_Message(session_, "tevo1d  " + Version_Caption(), Icon_Information, "バージョン情報");
}

void Main_Window::On_Power_Spectrum() {
  signal::m34_Click(session_);
  Refresh_State();
}

void Main_Window::On_Range_Dialog() {
  Range_Dialog form(session_, this);
  if (form.exec() == QDialog::Accepted) Refresh_View();
}

void Main_Window::On_Grid_Dialog() {
  Grid_Dialog form(session_, this);
  if (form.exec() == QDialog::Accepted) Refresh_View();
}

void Main_Window::On_Style(const std::string& name) {
  const display::Style_Form* form = display::Find_Style_Form(name);
  if (form == nullptr) return;
  // The print styles show the sheet beside their fields; the edit view's
  // show in the plot itself.
  std::function<QImage()> preview;
  // The sheet is laid out as the page window lays it out.
  if (name == "NMR1D_Form7_1") {
    page::Keep_Page_On_Sheet(session_);
    preview = [this] { return Page_Image(session_, Style_Preview_Dpi); };
  }
  Style_Dialog dialog(session_, *form, this, preview);
  connect(&dialog, &Style_Dialog::changed, this, &Main_Window::Refresh_View);
  dialog.exec();
  Refresh_State();
}

void Main_Window::On_Instrument_Table() {
  if (!session::Confirm_Mode_Exit(session_)) return;
  Refresh_State();
  Instrument_Table_Dialog form(session_, this);
  form.exec();
}

void Main_Window::On_Parameters() {
  if (!session::Confirm_Mode_Exit(session_)) return;
  Refresh_State();
  Parameter_Dialog form(session_, this);
  if (form.exec() == QDialog::Accepted) Refresh_View();
}

void Main_Window::On_Overlays() {
  if (overlays_ == nullptr) {
    overlays_ = new Overlay_Window(session_, this);
    connect(overlays_, &Overlay_Window::changed, this, &Main_Window::Refresh_View);
  }
  overlays_->Refresh();
  overlays_->show();
  overlays_->raise();
}

void Main_Window::Edit_Slot(int slot, const std::string& mode) {
  if (!overlay::Slot_Editable(session_, slot) || !session::Confirm_Mode_Exit(session_)) return;
  Refresh_State();
  Slot_Edit_Window form(session_, slot, this);
  if (!mode.empty()) form.Action(mode)->trigger();
  form.exec();
  Refresh_State();
}

void Main_Window::On_Relaxation() {
  if (session_.Array_Rows < 2 || (relax_ != nullptr && relax_->Running()) || !session::Confirm_Mode_Exit(session_))
    return;
  Refresh_State();
  if (!Relax_Window::Can_Open(session_, session_.Select_Start, session_.Select_End)) return;
  // A new window measures the peak list and region of the moment.
  delete relax_;
  relax_ = new Relax_Window(session_, session_.Select_Start, session_.Select_End, this);
  relax_->show();
  relax_->Select(0, true);
}

void Main_Window::On_Line_Separation() {
  if (session_.Spec_Points <= 0 || (lines_ != nullptr && lines_->Fitting()) || !session::Confirm_Mode_Exit(session_))
    return;
  Refresh_State();
  // A new window takes the view of the moment as its plot and range.
  delete lines_;
  lines_ = new Line_Window(session_, this);
  lines_->show();
}

void Main_Window::Show_Image_Window() {
  if (images_ == nullptr) {
    images_ = new Image_Window(session_, this);
    connect(images_, &Image_Window::changed, this, &Main_Window::Refresh_State);
  }
  images_->show();
  images_->raise();
}

void Main_Window::On_Files_Dropped(const QStringList& paths) {
  // One file opens; several make one array of individual files.
  std::vector<std::string> files;
  for (const QString& p : paths) files.push_back(p.toStdString());
  if (files.size() == 1) Open(files.front());
  else Open_Individual(relaxation::Join_Individual_Paths(files));
}

void Main_Window::Start(const std::string& home, const std::string& exe_path, const std::string& command_line,
                        bool interactive) {
  session::Start_Options o;
  o.home = home;
  o.exe_path = exe_path;
  o.command_line = command_line;
  o.interactive = interactive;
  o.data_kind = [this](const std::string& path) {
    std::string p = path;
    return datafiles::Resolve_Data_File(session_, p).status;
  };
  const session::Start_Result r = session::Start_Up(session_, o);
  started_ = r.go_on;
  // "START MODE" 1 opens the environment window once the main window runs.
  if (r.go_on && r.show_environment && interactive)
    QTimer::singleShot(0, this, [this] { On_Style("NMR1D_Form3"); });
  // "STRUCTURE DISP" 1: the image window comes up on top of the main window.
  if (r.go_on && r.show_structure)
    QTimer::singleShot(0, this, &Main_Window::Show_Image_Window);
  if (Action("m12")) Action("m12")->setVisible(r.jeol_disk_reader);
  Refresh_State();
}

datafiles::Open_Request Main_Window::Fid_Request(const std::string& path) {
  datafiles::Open_Request request;
  request.path = path;
  request.fid_window = [this](Session&) {
    Fid_Window window(session_, this);
    window.exec();
    return window.Result();
  };
  return request;
}

int Main_Window::Open(const std::string& path) {
  const int status = datafiles::NM1D_m11_Click(session_, Fid_Request(path));
  Refresh_State();
  return status;
}

int Main_Window::Open_Individual(const std::string& joined) {
  const int status = datafiles::NM1D_m111_Click(session_, Fid_Request(joined));
  Refresh_State();
  return status;
}

int Main_Window::Save(const std::string& path) {
  const int status = datafiles::m10_Click(session_, path);
  Refresh_State();
  return status;
}

void Main_Window::Open_Command_Line() {
  if (session_.Cmd_File.empty()) return;
  Open(session_.Cmd_File);
}

void Main_Window::Shut_Down() {
  if (started_) session::Shutdown_Cleanup(session_);
  started_ = false;
}

bool Main_Window::Try_Exit() {
  if (!started_) return true;
  const bool end = session::m19_Click(session_, [this](Session&) { return Save({}) == 0; });
  if (end) started_ = false;
  Refresh_State();
  return end;
}

void Main_Window::closeEvent(QCloseEvent* event) {
  // The close box goes through the one way out.
  if (Try_Exit()) {
    event->accept();
    QApplication::quit();
  } else {
    event->ignore();
  }
}

void Main_Window::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void Main_Window::dropEvent(QDropEvent* event) {
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) paths << url.toLocalFile();
  if (!paths.isEmpty()) On_Files_Dropped(paths);
}

}  // namespace tevo::app
