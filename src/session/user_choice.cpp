#include "session/user_choice.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>

#include "platform/ui.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/settings_files.h"
#include "session/startup.h"

namespace fs = std::filesystem;

namespace tevo::session {

namespace {

std::string Trim(const std::string& t) {
  const auto b = t.find_first_not_of(" \t");
  if (b == std::string::npos) return {};
  return t.substr(b, t.find_last_not_of(" \t") - b + 1);
}

std::string Upper(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

std::string Common_File(const Session& s) {
  // An installation may spell it in any case.
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(s.App_Path, ec))
    if (Upper(e.path().filename().string()) == "NMRCOL.INI") return e.path().string();
  return (fs::path(s.App_Path) / "NMRCOL.INI").string();
}

void Select(Session& s, const std::string& name, const std::string& read, const std::string& write) {
  s.User_Name = name;
  s.Settings_Read_Name = read;
  s.Settings_Write_Name = write;
  s.settings.Set("USER NAME", name);
}

}  // namespace

std::vector<User_Entry> List_Users(const Session& s) {
  std::vector<User_Entry> out;
  for (const auto& f : List_User_Files(s.App_Path)) out.push_back({User_Name_Of(f), f});
  out.push_back({kCommonUserName, Common_File(s)});
  return out;
}

void Use_Common_Settings(Session& s) {
  const std::string f = Common_File(s);
  Select(s, kCommonUserName, f, f);
}

bool Choose_User(Session& s, const std::string& typed) {
  const std::string name = Upper(Trim(typed));
  if (name.empty() || name == kCommonUserName) {
    Use_Common_Settings(s);
    return true;
  }
  for (const auto& f : List_User_Files(s.App_Path)) {
    if (Upper(Trim(User_Name_Of(f))) == name) {
      Select(s, name, f, f);
      return true;
    }
  }
  // A new user: the first free number; the settings start from the common file.
  for (int n = 1; n <= 1000; ++n) {
    char file[32];
    std::snprintf(file, sizeof file, "NMRCOL%04d.ini", n);
    bool taken = false;
    for (const auto& f : List_User_Files(s.App_Path))
      taken = taken || Upper(fs::path(f).filename().string()) == Upper(file);
    if (taken) continue;
    Select(s, name, Common_File(s), (fs::path(s.App_Path) / file).string());
    return true;
  }
  Use_Common_Settings(s);
  return false;
}

void Choose_Latest_User(Session& s) {
  const std::string latest = Upper(Trim(s.User_Name));
  if (s.User_Mode == 0 && !latest.empty() && latest != kCommonUserName) {
    for (const auto& f : List_User_Files(s.App_Path)) {
      if (Upper(Trim(User_Name_Of(f))) == latest) {
        Select(s, latest, f, f);
        return;
      }
    }
  }
  Use_Common_Settings(s);
}

bool Run_User_Dialog(Session& s) {
  // Each user once, however many files carry the name or its case.
  std::vector<std::string> names, seen;
  for (const auto& u : List_Users(s)) {
    const std::string key = Upper(Trim(u.name));
    if (key.empty() || std::find(seen.begin(), seen.end(), key) != seen.end()) continue;
    seen.push_back(key);
    names.push_back(Trim(u.name));
  }
  const std::string initial = s.User_Name.empty() ? kCommonUserName : s.User_Name;
  const auto answer = s.ui->Ask_User(names, initial);
  if (!answer) {
    Shutdown_Cleanup(s, /*all_markers=*/true);
    return false;
  }
  Choose_User(s, *answer);
  // The choice is offered first at the next start, even if this one ends
  // without its usual close.
  Write_Common(s);
  return true;
}

bool Operator_Add(Session& s, const std::string& name) {
  const std::string n = Trim(name);
  auto& list = s.settings.Operators;
  if (n.empty() || list.size() >= 100) return false;
  if (std::find(list.begin(), list.end(), n) != list.end()) {
    Show_Message(s, n + "はすでに存在します", Style_OK | Icon_Exclamation, "追加エラー");
    return false;
  }
  list.push_back(n);
  return true;
}

bool Operator_Delete(Session& s, int k) {
  auto& list = s.settings.Operators;
  if (k < 0 || k >= static_cast<int>(list.size())) return false;
  if (Show_Message(s, list[static_cast<std::size_t>(k)] + "を削除します", Style_Yes_No | Icon_Question, "削除") != Msg_Yes)
    return false;
  list.erase(list.begin() + k);
  return true;
}

}  // namespace tevo::session
