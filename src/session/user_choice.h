// The choice of the user at start (the window NMR1D_Form01): which settings
// file is read and which is written. The window only shows the list and the
// name field; everything it does is here.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::session {

// The name that stands for the common settings ("NMRCOL.INI").
inline constexpr const char* kCommonUserName = "共通";

struct User_Entry {
  std::string name;  // "USER NAME" of the file, or "共通"
  std::string file;  // full path of its settings file
};

// Every per-user settings file with the user name found in it, in file
// order, then the common entry.
std::vector<User_Entry> List_Users(const Session& s);

// Selects the common settings: both names are App_Path/NMRCOL.INI.
void Use_Common_Settings(Session& s);

// The "右の使用者で実行" button: the typed name is trimmed and upper-cased.
// "共通" or an empty name select the common settings; a known name selects
// its file for reading and writing; a new name gets the first free
// "NMRCOL0001.ini" .. "NMRCOL1000.ini" to write, and its settings start from
// the common file. Sets User_Name, Settings_Read_Name, Settings_Write_Name
// and the "USER NAME" setting. Returns false when all 1000 numbers are taken
// (the common settings are used then).
bool Choose_User(Session& s, const std::string& typed);

// The user without a window: the latest user when that user still has a
// settings file, else the common settings.
void Choose_Latest_User(Session& s);

// Shows the user window through the session's Ui and applies the answer.
// Returns false when the operator chose "終了": all markers are removed then
// and the program is to end.
bool Run_User_Dialog(Session& s);

// The operator list ("OPERATOR INDEX", the window NMR1D_Form22). Adding a
// name (trimmed; empty does nothing) that is already listed shows the name
// with "はすでに存在します" under "追加エラー" and adds nothing; the list
// holds at most 100 names. Deleting entry k asks the name with
// "を削除します" under "削除" and deletes on Yes. Both return true when the
// list changed.
bool Operator_Add(Session& s, const std::string& name);
bool Operator_Delete(Session& s, int k);

}  // namespace tevo::session
