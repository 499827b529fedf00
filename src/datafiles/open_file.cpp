#include "datafiles/open_file.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "datafiles/ascii_export.h"
#include "datafiles/jcamp.h"
#include "datafiles/list_files.h"
#include "display/view_commands.h"
#include "editing/data_history.h"
#include "platform/ui.h"
#include "relaxation/array_data.h"
#include "session/command_flow.h"
#include "session/file_replace.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/startup.h"

namespace fs = std::filesystem;

namespace tevo::datafiles {

namespace {

// Settings that may be absent from the key table of an older settings file
// are read with a fallback.
int32_t Setting_Int(const Session& s, const char* key, int32_t fallback) {
  return session::Setting_Index(key) >= 0 ? s.settings.Int(key) : fallback;
}
std::string Setting_Text(const Session& s, const char* key) {
  return session::Setting_Index(key) >= 0 ? s.settings.Text(key) : std::string();
}
void Store_Setting(Session& s, const char* key, double value) {
  if (session::Setting_Index(key) >= 0) s.settings.Set(key, value);
}
void Store_Setting(Session& s, const char* key, std::string value) {
  if (session::Setting_Index(key) >= 0) s.settings.Set(key, std::move(value));
}

// Every refusal of a file: beep, the message, status 1.
int Refuse(Session& s, const std::string& text, const std::string& caption) {
  s.ui->Beep();
  Show_Message(s, text, Icon_Exclamation, caption);
  return 1;
}

const char* const Data_Error = "Dataエラー";

bool Has_Data(const Session& s) { return s.Spec_Points > 0 || s.Fid_Points > 0; }

// Where the current data set is kept while another is read: this copy's
// back-up file, or Temp.dat in the program folder.
std::string Work_Copy_Path(const Session& s) {
  if (!s.Backup_File.empty()) return s.Backup_File;
  return (fs::path(s.App_Path) / "Temp.dat").string();
}

// Writes the current data set as the work copy; returns its path, or empty
// when there was nothing to keep or the write failed. The data set's saved
// state is not touched.
std::string Write_Work_Copy(Session& s) {
  const std::string path = Work_Copy_Path(s);
  if (!Has_Data(s)) {
    // A copy left from an earlier read must not come back for this one.
    std::error_code ec;
    fs::remove(path, ec);
    return {};
  }
  const int16_t saved = s.Data_Saved;
  const int status = Write_Native(s, path);
  s.Data_Saved = saved;
  return status == 0 ? path : std::string();
}

// Reads the work copy back after a failed read, with the stored overlays,
// so that the operator keeps what he had. Without a work copy there was no
// data set: whatever the failed reader left (a row count, a few points) is
// cleared, so nothing half-read is shown or sized for display.
void Read_Back_Work_Copy(Session& s, const std::string& work_copy, const std::string& open_name) {
  const int16_t saved = s.Data_Saved;
  if (work_copy.empty()) {
    Reset_Session_Data(s, true);
    s.Open_Name = open_name;
    s.Data_Saved = saved;
    return;
  }
  Reset_Session_Data(s, false);
  s.Overlay_Read_Mode = 0;
  if (Read_Native(s, work_copy) == 0) {
    s.Open_Name = open_name;
    s.Param.Data_File = open_name;
  }
  s.Data_Saved = saved;
}

}  // namespace

void Reset_Session_Data(Session& s, bool keep_overlays) {
  Session fresh;
  // The running program: the window seam, paths and work files, settings
  // and tables, the mode and its handlers, the message values.
  fresh.ui = s.ui;
  fresh.App_Path = std::move(s.App_Path);
  fresh.Log_Dir = std::move(s.Log_Dir);
  fresh.Work_Id = s.Work_Id;
  fresh.Work_File = std::move(s.Work_File);
  fresh.Fid_Work_File = std::move(s.Fid_Work_File);
  fresh.Open_Name = std::move(s.Open_Name);
  fresh.File_Class = std::move(s.File_Class);
  fresh.Data_Folder = std::move(s.Data_Folder);
  fresh.Sniff_Tag = std::move(s.Sniff_Tag);
  fresh.Start_Folder = std::move(s.Start_Folder);
  fresh.Cmd_File = std::move(s.Cmd_File);
  fresh.Cmd_From_Sibling = s.Cmd_From_Sibling;
  fresh.Access_Count = s.Access_Count;
  fresh.Backup_File = std::move(s.Backup_File);
  fresh.Work_Lock_Fd = s.Work_Lock_Fd;
  fresh.settings = std::move(s.settings);
  fresh.Settings_Read_Name = std::move(s.Settings_Read_Name);
  fresh.Settings_Write_Name = std::move(s.Settings_Write_Name);
  fresh.User_Name = std::move(s.User_Name);
  fresh.User_Mode = s.User_Mode;
  fresh.Log_Mode = s.Log_Mode;
  fresh.Nuclei = std::move(s.Nuclei);
  fresh.Required_Files = std::move(s.Required_Files);
  fresh.Print_Text = std::move(s.Print_Text);
  fresh.Instr_Tab = std::move(s.Instr_Tab);
  fresh.Mode = std::move(s.Mode);
  fresh.Overlay_Read_Mode = s.Overlay_Read_Mode;
  fresh.Overlay_Shift = s.Overlay_Shift;
  fresh.Overlay_Compare = s.Overlay_Compare;
  if (keep_overlays) fresh.Overlay = std::move(s.Overlay);
  // The display scale the operator set survives a new data set.
  fresh.Y_Mag = s.Y_Mag;
  fresh.Param.SMEXR = s.Param.SMEXR;
  s = std::move(fresh);
}

int Overlay_Keep_Prompt(Session& s, bool keep) {
  bool any = false;
  for (int k = 1; k <= Overlay_Max; ++k) any = any || s.Overlay[static_cast<size_t>(k)].Slot_Points > 0;
  if (!any) return 0;
  const int choice = s.ui->Choose("重ね書きの削除", "",
                                  {"現在の「重ね書き」データを削除。", "現在の「重ね書き」データを残す。"}, keep ? 1 : 0);
  if (choice < 0) return -1;
  return choice == 1 ? 3 : 0;
}

std::string Observe_Text(double observe_mhz) {
  // To the nearest 0.05 MHz, cut toward zero as an integer conversion would;
  // std::trunc keeps a damaged header's huge value from overflowing.
  const double snapped = std::trunc(observe_mhz * 20 + 0.5) / 20;
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.2f", snapped);
  return buf;
}

int Read_Routed(Session& s, const Recognition& r, const Open_Route& route) {
  const std::string path = route.twin ? Pair_Twin_Files(r.path, r.file_class).data : r.path;
  if (route.in_use_test && session::File_In_Use(s, path))
    return Refuse(s, "このファイルは、他のアプリケーションで使用中です", "File Warning");

  Kind_Check kind{"", 0};
  if (route.check != nullptr) {
    kind = route.check(path);
    if (kind.status < 0) return Refuse(s, "Dataが違います", Data_Error);
    if (Is_2D(route, kind)) return Refuse(s, "2D Data !", Data_Error);
    if (Check_Failed(route, kind)) return Refuse(s, "Dataが違います", Data_Error);
  }
  if (route.read == nullptr) return Refuse(s, "Dataが違います", Data_Error);

  const std::string former_name = s.Open_Name;
  const std::string work_copy = Write_Work_Copy(s);
  const int overlay_mode = Overlay_Keep_Prompt(s);
  if (overlay_mode < 0) return 1;
  Reset_Session_Data(s, overlay_mode == 3);
  s.Overlay_Read_Mode = static_cast<int16_t>(overlay_mode);

  // A native file carries page settings that its reader copies into the
  // settings; a read that fails must not leave them behind.
  const session::Settings former_settings = s.settings;
  int status;
  try {
    status = route.read(s, path);
  } catch (const std::exception&) {
    Disk_Error_Text(s, 57, "RDM/DRW");
    status = -1;
  }
  s.Overlay_Read_Mode = 0;
  if (status == 0 && route.empty_kind_non_nmr && route.check != nullptr && kind.kind.empty()) {
    Refuse(s, "Non NMR Data !", Data_Error);
    status = 1;
  }
  if (status != 0) {
    s.settings = former_settings;
    Read_Back_Work_Copy(s, work_copy, former_name);
    return status;
  }
  s.Open_Name = path;
  s.Param.Data_File = path;
  // A file that carries no history of its own was measured under this name.
  if (s.Measured_Name.empty()) s.Measured_Name = path;
  return 0;
}

namespace {

// The filter of the open dialog and the pattern each index starts with.
std::string Open_Filter(const Session& s) {
  const std::string u1 = Setting_Text(s, "USER EXTENSION"), u2 = Setting_Text(s, "USER EXTENSION 2");
  // After the six filters of the program the three vendor families whose
  // files have fixed names or their own extension.
  return "標準設定(*.tv1;*.tvo1)|*.tv1;*.tvo*|ﾕｰｻﾞｰ設定(" + u1 + ")|" + u1 + "|ﾕｰｻﾞｰ設定2(" + u2 + ")|" + u2 +
         "|JCAMP-DX(*.dx,*.jdx)|*.dx;*.jdx|CSVデータ(*.csv)|*.csv|すべてのﾌｧｲﾙ|*.*" +
         "|Bruker (fid, 1r, acqus)|fid;1r;acqus|JEOL (*.jdf)|*.jdf|Varian (fid, procpar)|fid;procpar";
}

std::string Open_Pattern(const Session& s, int index) {
  switch (index) {
    case 1: return "*.tv1;*.tvo*";
    case 2: return Setting_Text(s, "USER EXTENSION");
    case 3: return Setting_Text(s, "USER EXTENSION 2");
    case 4: return "*.dx;*.jdx";
    case 5: return "*.csv";
    case 7: return "fid;1r;acqus";
    case 8: return "*.jdf";
    case 9: return "fid;procpar";
    default: return "*.*";
  }
}

// The filter of the CSV open.
constexpr int Csv_Filter_Index = 5;

}  // namespace

std::string Ask_Open_Path(Session& s, int forced, bool multiple) {
  platform::File_Request req;
  req.title = "読み込み";
  req.filter = Open_Filter(s);
  req.filter_index = forced > 0 ? forced : Setting_Int(s, "INITIATL FILE", 1);
  req.initial_name = Open_Pattern(s, req.filter_index);
  req.initial_dir = s.Data_Folder.empty() ? s.Start_Folder : s.Data_Folder;
  req.multiple = multiple;
  auto answer = s.ui->Open_File(req);
  if (!answer) return {};
  if (forced <= 0) Store_Setting(s, "INITIATL FILE", answer->filter_index);
  return answer->path;
}

// The view of the data set in memory after an open, good or failed: a
// spectrum without a stored view (X limits equal) is shown whole; a native
// file keeps the limits it stored. Then the display copy.
static void Show_Data_Set(Session& s) {
  Update_Scale_Values(s);
  if (s.Is_Spectrum == 1 && s.X_Left == s.X_Right) display::View_After_Load(s);
  if (s.Spec_Points > 0 && !s.Spec_Re.Empty()) Build_Disp_Arrays(s, 0);
}

namespace {

// The steps before any open: the mode interlock and, for changed data, the
// question whether to save them first. False stops the open.
bool Ready_For_Open(Session& s) {
  if (!session::Confirm_Mode_Exit(s)) return false;
  s.Undo_Stack[0].Kind = Undo_None;
  if (s.Data_Saved == 1) return true;
  s.ui->Beep();
  platform::Message_Box_Request box;
  box.title = "注意！";
  box.text = "データは変更されています";
  box.style = Style_Yes_No_Cancel | Icon_Exclamation;
  box.buttons = {"保存する", "保存しない", "キャンセル"};
  box.icon = 3;
  const int button = s.ui->Message_Box(box);
  if (button != 1 && button != 2) return false;
  // A save that was cancelled or failed stops the open: nothing is lost.
  return button != 1 || m10_Click(s) == 0;
}

// What the open of one file and the open of individual files differ in
// after the read.
struct Read_Done {
  std::string data_folder;  // remembered for the next dialog
  std::string former_work_copy, former_name;  // the data set before the read
  // The question for a FID of several rows: how its rows are kept, or
  // which row of individual files is phased. Anything but "OK", "START"
  // or "END" gives up the open.
  std::string (*array_question)(Session&) = nullptr;
  std::string recent;  // the entry of the recent-file list
};

// Gives up an open after the read: the former data set comes back as it was.
void Restore_Former(Session& s, const Read_Done& done) {
  std::error_code ec;
  if (fs::exists(done.former_work_copy, ec)) Read_Back_Work_Copy(s, done.former_work_copy, done.former_name);
  else Reset_Session_Data(s, true);
  Show_Data_Set(s);
}

// The steps after a good read: the remembered folder, FID or spectrum, the
// instrument ID, the array question and the processing window, then the
// marker, the log, the recent list and the display copy.
int Finish_Open(Session& s, const Open_Request& request, const Read_Done& done) {
  Store_Setting(s, "DATA  SET DIR", done.data_folder);
  if (s.Param.SMODE == 0) {
    s.Is_Spectrum = 0;
    s.Is_Fid = 1;
  } else {
    s.Is_Spectrum = 1;
    s.Is_Fid = 0;
  }
  if (Setting_Int(s, "INSTRUMENT ID IN", 0) != 0) {
    auto id = s.ui->Ask_Text("Instrument ID", "Instrument ID", s.Param.Instrument_Name);
    if (id) s.Param.Instrument_Id = *id;
  }
  s.Param.Observe_Text = Observe_Text(s.Observe_Frequency);

  // A FID of several rows: the question is asked once; how the rows are
  // kept is acted on when the transform is committed.
  bool array_cancelled = false;
  if (s.Is_Fid == 1 && s.Array_Rows >= 2) {
    const std::string answer = done.array_question(s);
    array_cancelled = answer != "OK" && answer != "START" && answer != "END";
  }
  if (s.Is_Fid == 1 && (array_cancelled || request.fid_window)) {
    // Cancelling the array question or discarding the processing window
    // ("CANCEL", or closing it) gives up the open: the former data set comes
    // back as it was.
    const std::string result = array_cancelled ? "CANCEL" : request.fid_window(s);
    if (result.empty() || result == "CANCEL") {
      Restore_Former(s, done);
      return 1;
    }
  }

  session::Mark_Open_File(s, s.Open_Name);
  session::Write_Log(s, "Read", s.Open_Name);
  session::Set_RecentFile_Menu(s, done.recent);
  Show_Data_Set(s);
  return 0;
}

}  // namespace

int NM1D_m11_Click(Session& s, const Open_Request& request) {
  if (!Ready_For_Open(s)) return 1;

  std::string path = request.path;
  Recognition r;
  for (;;) {
    if (path.empty()) path = Ask_Open_Path(s, request.filter_index);
    if (path.empty()) return 1;
    r = Classify_File(s, path);
    if (r.sniff.status < 0) return -1;
    if (Class_Accepted(r)) break;
    s.ui->Beep();
    const int16_t answer = Show_Message(s, "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙの拡張子が 正しくない",
                                        Style_Retry_Cancel | Icon_Exclamation, "ファイル名エラー");
    if (answer != Msg_Retry) return 1;
    path.clear();
  }
  const Open_Route* route = Find_Route(r);
  if (route == nullptr) return Refuse(s, "Dataが違います", Data_Error);

  Read_Done done;
  done.former_work_copy = Work_Copy_Path(s);
  done.former_name = s.Open_Name;
  const int status = Read_Routed(s, r, *route);
  if (status != 0) {
    Show_Data_Set(s);
    return status;
  }
  done.data_folder = r.data_folder;
  done.array_question = relaxation::NMR1D_Form20;
  done.recent = s.Open_Name;
  return Finish_Open(s, request, done);
}

Session Scratch_Session(const Session& s, const std::string& backup_name) {
  Session t;
  t.ui = s.ui;
  t.App_Path = s.App_Path;
  t.Backup_File = (fs::path(s.App_Path) / backup_name).string();
  t.settings = s.settings;
  t.User_Name = s.User_Name;
  t.Log_Mode = -1;
  t.Nuclei = s.Nuclei;
  t.Instr_Tab = s.Instr_Tab;
  t.Data_Saved = 1;
  return t;
}

int NM1D_m111_Click(Session& s, const Open_Request& request) {
  if (!Ready_For_Open(s)) return 1;
  std::string joined = request.path;
  if (joined.empty()) joined = Ask_Open_Path(s, 0, true);
  const std::vector<std::string> files = relaxation::Split_Individual_Paths(joined);
  if (files.empty()) return 1;

  // Each row is the main read of its file: the later files into sessions of
  // their own first, so that a file that cannot be read leaves the data set
  // in memory untouched, then the first into the session itself.
  std::vector<Recognition> found;
  for (const std::string& file : files) {
    found.push_back(Classify_File(s, file));
    if (found.back().sniff.status < 0) return -1;
    if (!Class_Accepted(found.back()) || Find_Route(found.back()) == nullptr)
      return Refuse(s, "Dataが違います", Data_Error);
  }
  std::vector<Session> others;
  for (std::size_t k = 1; k < files.size(); ++k) {
    others.push_back(Scratch_Session(s, "TempRow.dat"));
    const int status = Read_Routed(others.back(), found[k], *Find_Route(found[k]));
    if (status != 0) return status;
  }
  Read_Done done;
  done.former_work_copy = Work_Copy_Path(s);
  done.former_name = s.Open_Name;
  const int status = Read_Routed(s, found[0], *Find_Route(found[0]));
  if (status != 0) {
    Show_Data_Set(s);
    return status;
  }
  if (!relaxation::Join_Individual_Rows(s, others)) {
    Restore_Former(s, done);
    return Refuse(s, "Dataが違います", Data_Error);
  }
  // The rows stay an array in the order of the files.
  s.Array_Read_Dept = 0;
  s.Array_Read_Array = 1;
  s.Array_Sort = 0;
  for (std::size_t k = 1; k < files.size(); ++k) session::Write_Log(s, "Read", others[k - 1].Open_Name);
  done.data_folder = found[0].data_folder;
  done.array_question = relaxation::NMR1D_Form21;
  done.recent = relaxation::Join_Individual_Paths(files);
  return Finish_Open(s, request, done);
}

int NM1D_m112_Click(Session& s, Open_Request request) {
  request.filter_index = Csv_Filter_Index;
  return NM1D_m11_Click(s, request);
}

Resolved_File Resolve_Data_File(Session& s, std::string& path) {
  Resolved_File out;
  out.recognition = Classify_File(s, path);
  const Recognition& r = out.recognition;
  path = r.path;
  if (r.sniff.status < 0) return out;
  const Open_Route* route = Find_Route(r);
  if (route == nullptr) return out;
  const std::string data = route->twin ? Pair_Twin_Files(r.path, r.file_class).data : r.path;
  if (route->resolve != nullptr) {
    if (route->check != nullptr) out.kind = route->check(data).kind;
    out.tag = route->resolve(data, out.status);
    return out;
  }
  if (route->check == nullptr) {
    // No check for this class yet: a 1D data set as far as can be told.
    out.tag = route->tag_1d;
    out.status = route->status_1d;
    return out;
  }
  const Kind_Check k = route->check(data);
  out.kind = k.kind;
  if (Check_Failed(*route, k)) return out;
  const bool two_d = Is_2D(*route, k);
  out.tag = two_d ? route->tag_2d : route->tag_1d;
  out.status = two_d ? route->status_2d : route->status_1d;
  return out;
}

namespace {

// What the save commands differ in. The native formats are the record of
// the work: saving one marks the data saved and enters the recent list. The
// JCAMP-DX files are exports that take any name and leave those alone.
struct Save_Kind {
  const char* title;
  const char* file_class;  // ".TV1", ".ALS" or a "|"-separated list; nullptr takes any name
  const char* ext;  // extension given to a new name, without the dot
  const char* filter;
  const char* wrong_ext;  // message for a name with another extension
  bool native;
  const List_File_Kind* list = nullptr;  // a list file: its title follows the data name, its name a tail
};
constexpr Save_Kind Main_Save{"データの保存", ".TV1", "tv1", "通常形式|*.tv1*|",
                              "ファイルが不正です。または,\rファイルの拡張子が tv1 でない", true};
constexpr Save_Kind Older_Save{"データの保存", ".ALS", "als", "ｱﾘｽ形式|*.als*|",
                               "ファイルが不正です。または,\rファイルの拡張子が als でない", true};
constexpr const char* Jcamp_Filter = "JCAMP形式(*.dx)|*.dx|全てのファイル|*.*|";
constexpr Save_Kind Jcamp_Extended_Save{"データの保存(JCAMP(拡張))", nullptr, "dx", Jcamp_Filter, "", false};
constexpr Save_Kind Jcamp_Compact_Save{"データの保存(JCAMP(縮小))", nullptr, "dx", Jcamp_Filter, "", false};
constexpr Save_Kind Ascii_Save{"データの保存(ASCII)", ".TXT|.DAT|.ASC", "txt",
                               "ASCII形式(*.txt)|*.txt|ASCII形式(*.dat)|*.dat|ASCII形式(*.asc)|*.asc|全てのファイル|*.*|",
                               "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙ名の拡張子が不適切", false};
constexpr Save_Kind Peak_List_Save{"", nullptr, Peak_List_File.ext, "ピークリスト(*.red)|*.red|全てのファイル|*.*|", "",
                                   false, &Peak_List_File};
constexpr Save_Kind Integral_List_Save{"", nullptr, Integral_List_File.ext,
                                       "積分リスト(*.Ilist)|*.Ilist|全てのファイル|*.*|", "", false, &Integral_List_File};
constexpr Save_Kind Integral_Curve_Save{
    "", ".INT|.TXT|.DAT|.ASC", Integral_Curve_File.ext,
    "積分曲線(*.int)|*.int|ASCII形式(*.txt)|*.txt|ASCII形式(*.dat)|*.dat|ASCII形式(*.asc)|*.asc|全てのファイル|*.*|",
    "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙ名の拡張子が不適切", false, &Integral_Curve_File};

// True when the path's extension is one of the "|"-separated classes.
bool Extension_In(const std::string& path, std::string_view classes) {
  const std::string ext = Extension_Class(path);
  while (!classes.empty()) {
    const std::size_t bar = classes.find('|');
    if (classes.substr(0, bar) == ext) return true;
    classes = bar == std::string_view::npos ? std::string_view() : classes.substr(bar + 1);
  }
  return false;
}

// The name offered in the save dialog: the open file's name with the
// format's extension.
std::string Save_Name_Offered(const Session& s, const Save_Kind& kind) {
  if (kind.list != nullptr) return fs::path(List_Default_Name(s.Open_Name, *kind.list)).filename().string();
  if (s.Open_Name.empty()) return std::string("*.") + kind.ext;
  fs::path p(s.Open_Name);
  return p.stem().string() + "." + kind.ext;
}

// The save frame shared by every format: name, in-use check, the write that
// keeps an old file until it succeeds, and for the native formats the marks
// of a saved data set.
int Save_As(Session& s, const std::string& given, const std::function<int(Session&, const std::string&)>& writer,
            const Save_Kind& kind) {
  if (!session::Confirm_Mode_Exit(s)) return 1;
  std::string path = given;
  for (;;) {
    if (given.empty()) {
      platform::File_Request req;
      req.title = kind.list != nullptr ? fs::path(s.Open_Name).filename().string() + kind.list->title : kind.title;
      req.filter = kind.filter;
      req.default_ext = kind.ext;
      req.initial_name = Save_Name_Offered(s, kind);
      req.initial_dir = s.Data_Folder;
      auto answer = s.ui->Save_File(req);
      if (!answer) return 1;
      path = answer->path;
    }
    if (kind.file_class != nullptr && !Extension_In(path, kind.file_class)) {
      const int16_t a = Show_Message(s, kind.wrong_ext, Style_Yes_No | Icon_Exclamation, "ファイル名エラー");
      if (a == Msg_Yes && given.empty()) continue;
      return 1;
    }
    if (session::File_In_Use(s, path)) {
      const int16_t a = Show_Message(s, "このファイル名は、他のアプリケーションで使用中です",
                                     Style_Retry_Cancel | Icon_Exclamation, "File Warning");
      if (a == Msg_Retry && given.empty()) continue;
      return 1;
    }
    break;
  }
  if (s.Param.EXMOD.empty()) s.Param.EXMOD = "NON";

  const int status = session::Write_Keeping_Old(
      s, path, [&](const std::string& name) { return writer(s, name); }, false, "SAV/REN");
  if (status != 0 || !kind.native) return status;
  s.Data_Saved = 1;
  s.Param.Data_File = path;
  session::Mark_Open_File(s, path);
  session::Set_RecentFile_Menu(s, path);
  return 0;
}

}  // namespace

int m10_Click(Session& s, const std::string& path, Write_Fn writer) {
  // The save is in the history of the file it writes; a save that did not
  // happen leaves no entry.
  editing::Record_Save(s);
  const int status = Save_As(s, path, writer, Main_Save);
  if (status != 0) editing::Record_Save_Failed(s);
  return status;
}

int m13_Click(Session& s, const std::string& path, Write_Fn writer) {
  return Save_As(s, path, writer, Older_Save);
}

int m181_Click(Session& s, const std::string& path) {
  return Save_As(s, path, Write_Jcamp_Extended, Jcamp_Extended_Save);
}

int m183_Click(Session& s, const std::string& path) {
  return Save_As(s, path, Write_Jcamp_Compact, Jcamp_Compact_Save);
}

int m182_Click(Session& s, int spectrum, const std::string& path) {
  if (spectrum < 0 || spectrum > Overlay_Max) return 1;
  const int choice = s.ui->Choose("ASCIIデータの設定", "", Ascii_Mode_Captions(), 0);
  if (choice < 0) return 1;
  const std::string mode = Ascii_Modes[choice];
  return Save_As(
      s, path, [mode, spectrum](Session& t, const std::string& p) { return Write_Ascii(t, p, spectrum, mode); },
      Ascii_Save);
}

int m18_Click(Session& s, const std::string& path) { return m182_Click(s, 0, path); }

int m172_Click(Session& s, const std::string& path, int layout) {
  if (layout < 0) layout = s.ui->Choose("ピークリストの保存", "", {"Compact(通常)", "JEOL形式"}, 0);
  if (layout < 0) return 1;
  const Peak_List_Layout chosen = layout == 0 ? Peak_List_Layout::Comma : Peak_List_Layout::Report;
  return Save_As(
      s, path, [chosen](Session& t, const std::string& p) { return Write_Peak_List(t, p, chosen); }, Peak_List_Save);
}

int m173_Click(Session& s, const std::string& path) { return Save_As(s, path, Write_Integral_List, Integral_List_Save); }

int m131_Click(Session& s, const std::string& path) {
  return Save_As(s, path, Write_Integral_Curve, Integral_Curve_Save);
}

}  // namespace tevo::datafiles
