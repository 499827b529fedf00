#include "session/user_notes.h"

#include <filesystem>

#include "session/file_replace.h"
#include "session/session.h"

namespace tevo::session {

std::string Memo_File(const Session& s) { return (std::filesystem::path(s.App_Path) / "Memo1D.txt").string(); }

std::string Read_Memo(const Session& s) {
  std::string text;
  return Read_Text_File(Memo_File(s), text) ? text : std::string();
}

int Save_Memo(Session& s, const std::string& text) { return Save_Text_File(s, Memo_File(s), text, "MEMO/SAV"); }

std::string User_Info_Text(const Session& s) {
  const std::string& file = s.Settings_Write_Name.empty() ? s.Settings_Read_Name : s.Settings_Write_Name;
  return "使用者 : " + (s.User_Name.empty() ? std::string("共通") : s.User_Name) + "\n設定ファイル : " +
         (file.empty() ? std::string("NMRCOL.INI") : file) + "\n起動回数 : " + std::to_string(s.Access_Count) +
         "\nこの設定での起動回数 : " + std::to_string(s.settings.Int("ACCESS COUNT"));
}

}  // namespace tevo::session
