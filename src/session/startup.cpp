#include "session/startup.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>

#include "page/fonts.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/settings_files.h"
#include "session/text_encoding.h"
#include "session/user_choice.h"
#include "signal/sine_table.h"

namespace fs = std::filesystem;

namespace tevo::session {

namespace {

constexpr const char* kMarkerPrefix = "Work_File_1D";
constexpr const char* kMarkerExt = ".wkf";

std::string Trim(const std::string& t) {
  const auto b = t.find_first_not_of(" \t\r\n");
  if (b == std::string::npos) return {};
  const auto e = t.find_last_not_of(" \t\r\n");
  return t.substr(b, e - b + 1);
}

std::string Upper(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

bool Is_Writable_Dir(const fs::path& dir) {
  std::error_code ec;
  return fs::is_directory(dir, ec) && ::access(dir.c_str(), W_OK) == 0;
}

std::string Home() {
  const char* h = std::getenv("HOME");
  return h && *h ? h : "/tmp";
}

// Every marker file of the program folder with its number.
std::vector<std::pair<int, fs::path>> List_Markers(const std::string& app_path) {
  std::vector<std::pair<int, fs::path>> out;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(app_path, ec)) {
    const std::string name = e.path().filename().string();
    const std::string prefix = kMarkerPrefix;
    if (name.size() != prefix.size() + 4 + 4 || name.compare(0, prefix.size(), prefix) != 0) continue;
    if (Upper(name.substr(prefix.size() + 4)) != Upper(kMarkerExt)) continue;
    const std::string digits = name.substr(prefix.size(), 4);
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); }))
      continue;
    out.emplace_back(std::stoi(digits), e.path());
  }
  return out;
}

bool Same_File_Name(const fs::path& a, const std::string& b) {
  return Upper(a.filename().string()) == Upper(fs::path(b).filename().string());
}

// True when some process holds the lock of this marker.
bool Marker_Locked(const fs::path& p) {
  const int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool locked = ::flock(fd, LOCK_SH | LOCK_NB) != 0;
  ::close(fd);
  return locked;
}

void Remove_Quietly(const fs::path& p) {
  std::error_code ec;
  fs::remove(p, ec);
}

const char* const kMonthShort[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

std::string Resolve_App_Path(const std::string& home, const std::string& exe_path) {
  fs::path p;
  if (!home.empty()) {
    p = fs::absolute(home);
    std::error_code ec;
    fs::create_directories(p, ec);
  } else {
    fs::path exe_dir = fs::path(exe_path).parent_path();
    if (!exe_dir.empty() && Is_Writable_Dir(exe_dir)) {
      p = fs::absolute(exe_dir);
    } else {
      const char* xdg = std::getenv("XDG_DATA_HOME");
      p = fs::path(xdg && *xdg ? xdg : Home() + "/.local/share") / "tevo1d";
      std::error_code ec;
      fs::create_directories(p, ec);
    }
  }
  std::string s = p.lexically_normal().string();
  while (s.size() > 1 && s.back() == '/') s.pop_back();
  return s;
}

std::string Map_Windows_Path(const std::string& path) {
  if (path.size() < 2 || path[1] != ':' || !std::isalpha(static_cast<unsigned char>(path[0])))
    return path;
  std::string rest = path.substr(2);
  std::replace(rest.begin(), rest.end(), '\\', '/');
  while (!rest.empty() && rest.front() == '/') rest.erase(rest.begin());
  if (rest.empty()) return Home();
  // A bare file in the root of the drive goes to the temp folder; a folder
  // of the root goes to the home folder.
  if (rest.find('/') == std::string::npos && fs::path(rest).has_extension())
    return (fs::temp_directory_path() / rest).string();
  return (fs::path(Home()) / rest).string();
}

fs::path Handover_File() { return Map_Windows_Path("C:\\filename.txt"); }

void Remove_Stale_Backups(const Session& s) {
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(s.App_Path, ec)) {
    const std::string name = e.path().filename().string();
    if (name.rfind("BackUp1_", 0) == 0) Remove_Quietly(e.path());
  }
}

Command_Line Parse_Command_Line(const std::string& raw) {
  Command_Line out;
  std::string t = Trim(raw);
  if (t.size() < 3) return out;
  if (t.front() == '"') {
    t.erase(t.begin());
    // The closing quote sits at the position of the old length.
    if (!t.empty() && t.back() == '"') t.pop_back();
  } else {
    const auto blank = t.find(' ');
    if (blank != std::string::npos) t.resize(blank);
  }
  if (!t.empty() && t.front() == '$') {
    out.from_sibling = true;
    t.erase(t.begin());
  }
  out.file = t;
  return out;
}

void Write_Handover(const std::string& raw_command_line) {
  std::ofstream out(Handover_File(), std::ios::binary | std::ios::trunc);
  if (out) out << Utf8_To_Sjis(Trim(raw_command_line)) << "\r\n";
}

bool Claim_Work_Marker(Session& s) {
  std::set<int> taken;
  for (const auto& [n, p] : List_Markers(s.App_Path)) taken.insert(n);
  for (int n = 0; n <= 9999; ++n) {
    if (taken.count(n)) continue;
    char digits[8];
    std::snprintf(digits, sizeof digits, "%04d", n);
    const fs::path marker = fs::path(s.App_Path) / (std::string(kMarkerPrefix) + digits + kMarkerExt);
    // O_EXCL: a copy starting at the same moment cannot take the same number.
    const int fd = ::open(marker.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) {
      if (errno == EEXIST) continue;
      return false;
    }
    ::flock(fd, LOCK_EX | LOCK_NB);
    s.Work_Lock_Fd = fd;
    s.Work_Id = static_cast<int16_t>(n);
    s.Work_File = marker.string();
    s.Fid_Work_File = (fs::path(s.App_Path) / (std::string("FID_Work_File_1D") + digits + ".dat")).string();
    return true;
  }
  s.Work_File.clear();
  s.Fid_Work_File.clear();
  return false;
}

void Mark_Open_File(Session& s, const std::string& path) {
  s.Open_Name = path;
  if (s.Work_File.empty()) return;
  // Rewrite in place through the locked descriptor so the lock stays.
  const std::string line = Utf8_To_Sjis(path) + "\r\n";
  if (s.Work_Lock_Fd >= 0) {
    if (::ftruncate(s.Work_Lock_Fd, 0) == 0 && ::pwrite(s.Work_Lock_Fd, line.data(), line.size(), 0) >= 0)
      return;
  }
  std::ofstream out(s.Work_File, std::ios::binary | std::ios::trunc);
  out << line;
}

bool File_In_Use(const Session& s, const std::string& path) {
  const std::string wanted = Upper(path);
  for (const auto& [n, p] : List_Markers(s.App_Path)) {
    if (!s.Work_File.empty() && Same_File_Name(p, s.Work_File)) continue;
    std::ifstream in(p, std::ios::binary);
    if (!in) continue;
    std::string first;
    std::getline(in, first);
    if (Upper(Trim(Sjis_To_Utf8(first))) == wanted && !wanted.empty()) return true;
  }
  return false;
}

bool Other_Copy_Running(const Session& s) {
  for (const auto& [n, p] : List_Markers(s.App_Path)) {
    if (!s.Work_File.empty() && Same_File_Name(p, s.Work_File)) continue;
    if (Marker_Locked(p)) return true;
  }
  return false;
}

std::string Log_File_Name(const Session& s, const std::tm& when) {
  char stamp[32];
  if (s.Log_Mode == 1)
    std::snprintf(stamp, sizeof stamp, "%04d_%02d_%02d", when.tm_year + 1900, when.tm_mon + 1, when.tm_mday);
  else
    std::snprintf(stamp, sizeof stamp, "%04d_%02d", when.tm_year + 1900, when.tm_mon + 1);
  return (fs::path(Map_Windows_Path(s.Log_Dir)) / (std::string("1D") + stamp + ".log")).string();
}

void Write_Log_At(Session& s, const std::string& operation, const std::string& path, const std::tm& when) {
  if (s.Log_Mode < 0) return;
  std::error_code ec;
  if (!fs::is_directory(Map_Windows_Path(s.Log_Dir), ec)) {
    Show_Message(s, "Logのフォルダー名が不適切です(WL)", Style_OK | Icon_Exclamation, "Folderエラー");
    return;
  }
  char stamp[64];
  std::snprintf(stamp, sizeof stamp, "%04d/%s/%02d,%02d:%02d:%02d", when.tm_year + 1900,
                kMonthShort[std::clamp(when.tm_mon, 0, 11)], when.tm_mday, when.tm_hour, when.tm_min,
                when.tm_sec);
  std::ofstream out(Log_File_Name(s, when), std::ios::binary | std::ios::app);
  if (!out) {
    Show_Message(s, "Logのフォルダー名が不適切です(WL)", Style_OK | Icon_Exclamation, "Folderエラー");
    return;
  }
  out << Utf8_To_Sjis(s.User_Name + ", " + stamp + ", " + operation + ", " + path) << "\r\n";
}

void Write_Log(Session& s, const std::string& operation, const std::string& path) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  Write_Log_At(s, operation, path, local);
}

void Release_Work_Marker(Session& s) {
  if (s.Work_Lock_Fd >= 0) ::close(s.Work_Lock_Fd);
  s.Work_Lock_Fd = -1;
}

void Shutdown_Cleanup(Session& s, bool all_markers) {
  const fs::path app(s.App_Path);
  Remove_Quietly(app / "Temp.dat");
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(app, ec)) {
    const std::string name = Upper(e.path().filename().string());
    if (name.rfind("TEMP", 0) == 0 && e.path().extension().string().size() == 4 &&
        Upper(e.path().extension().string()) == ".WMF")
      Remove_Quietly(e.path());
  }
  if (!s.Backup_File.empty()) Remove_Quietly(s.Backup_File);
  if (!s.Fid_Work_File.empty()) Remove_Quietly(s.Fid_Work_File);
  const bool others = !all_markers && Other_Copy_Running(s);
  if (!s.Work_File.empty()) Remove_Quietly(s.Work_File);
  if (!others) {
    for (const auto& [n, p] : List_Markers(s.App_Path)) Remove_Quietly(p);
  }
  Release_Work_Marker(s);
}

namespace {

// Ends the start early: the cursor back to normal, nothing read or written.
Start_Result Stop_Start(Session& s) {
  s.ui->Wait_Cursor(false);
  Start_Result r;
  r.go_on = false;
  return r;
}

bool Exists(const fs::path& p) {
  std::error_code ec;
  return fs::exists(p, ec);
}

// The installation provides the default log folder; here the program makes
// its mapped place on first start, so that reads and saves are logged
// without a folder message. A folder the operator typed is left alone.
void Make_Default_Log_Folder(const Session& s) {
  if (s.Log_Dir != "C:\\NMRLog" || s.Log_Mode < 0) return;
  std::error_code ec;
  fs::create_directories(Map_Windows_Path(s.Log_Dir), ec);
}

}  // namespace

Start_Result Start_Up(Session& s, const Start_Options& o) {
  s.ui->Wait_Cursor(true);
  s.App_Path = Resolve_App_Path(o.home, o.exe_path);
  s.Log_Dir = "C:\\NMRLog";
  Remove_Stale_Backups(s);

  // The command line names at most one file.
  Write_Handover(o.command_line);
  const Command_Line cmd = Parse_Command_Line(o.command_line);
  s.Cmd_File = cmd.file;
  s.Cmd_From_Sibling = cmd.from_sibling;
  if (!s.Cmd_File.empty()) {
    if (File_In_Use(s, s.Cmd_File)) {
      s.ui->Wait_Cursor(false);
      s.ui->Beep();
      Show_Message(s, "このファイルは、他のアプリケーションで使用中です", Style_OK | Icon_Exclamation, "File Warning");
      return Stop_Start(s);
    }
    // 2D data goes to the sibling program, marked with "$" so that it is not
    // sent back.
    if (!s.Cmd_From_Sibling && o.data_kind && o.start_sibling) {
      const int kind = o.data_kind(s.Cmd_File);
      if (kind == 2 || kind == 6) {
        o.start_sibling((fs::path(s.App_Path) / "tevo2d").string(), "\"$" + s.Cmd_File + "\"");
        return Stop_Start(s);
      }
    }
  }

  Claim_Work_Marker(s);
  s.ui->Do_Events();

  s.settings.Reset();
  Read_Common(s);
  Make_Default_Log_Folder(s);
  if (s.User_Mode != 0) {
    Use_Common_Settings(s);
  } else if (o.interactive) {
    s.ui->Beep();
    if (!Run_User_Dialog(s)) return Stop_Start(s);
  } else {
    Choose_Latest_User(s);
  }

  signal::Fft_Sine();
  Alloc_Point_Arrays(s, 8192);

  std::error_code ec;
  s.Start_Folder = fs::current_path(ec).string();
  Read_Print_Text(s);
  Read_Settings(s);
  // Double-byte text inside a Latin font is set in the operator's Japanese
  // face, if the system has it as one with Japanese characters.
  if (const page::Font_Face* face = page::Find_Face(s.settings.Text("DEFAULT FONT"));
      face != nullptr && face->Charset == page::Charset_Shift_Jis)
    page::Fonts().Default_Font = face->Name;
  s.Param.SMEXR = static_cast<float>(s.settings.Real("REF INITITAL"));
  // The overlays' slant as the operator last left it.
  s.Overlay_Shift = static_cast<float>(std::clamp(s.settings.Real("MULTI SPEC SHIFT"), -1.0, 1.0));
  Read_Nuclear(s);
  Read_Required_Files(s);

  Start_Result r;
  r.window_state = static_cast<int16_t>(s.settings.Int("WINDOW STATE"));
  r.jeol_disk_reader = Exists(fs::path(s.App_Path) / "ALIDIR.EXE") && Exists(fs::path(s.App_Path) / "ALIDATA.EXE");
  s.Data_Saved = 1;
  s.ui->Wait_Cursor(false);
  r.show_environment = s.settings.Int("START MODE") == 1;
  r.show_structure = s.settings.Int("STRUCTURE DISP") == 1;
  return r;
}

void Finish_Session(Session& s) {
  Write_Settings(s);
  Write_Common(s);
  Shutdown_Cleanup(s);
}

bool m19_Click(Session& s, const std::function<bool(Session&)>& save_as) {
  if (!Confirm_Mode_Exit(s)) return false;
  // "EXIT ASK UNSAVED" 1 spares the question when everything is saved.
  const bool ask = s.Data_Saved != 1 || s.settings.Int("EXIT ASK UNSAVED") == 0;
  if ((s.Spec_Points > 0 || s.Fid_Points > 0) && ask) {
    platform::Message_Box_Request box;
    box.title = "1D NMRの終了";
    box.text = "終了前にデータを";
    box.buttons = {"保存しない", "保存する", "終了をｷｬﾝｾﾙ"};
    box.default_button = 1;
    const int pressed = s.ui->Message_Box(box);
    if (pressed == 2) {
      if (!save_as || !save_as(s)) return false;
    } else if (pressed != 1) {
      return false;
    }
  }
  Finish_Session(s);
  return true;
}

}  // namespace tevo::session
