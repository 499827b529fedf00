// The main window's command flow without widgets: the edit modes and their
// one interlock, the recent-file list, and which menu items are enabled.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::session {

// Edit modes of the main window; only one at a time.
enum Edit_Mode_Kind : int16_t {
  Mode_Basic = 0,
  Mode_Reference = 1,
  Mode_Phase = 2,
  Mode_Baseline = 3,
  Mode_Peak = 4,
  Mode_Integral = 5,
  Mode_Inset = 6,
};

// What a mode does when it is left: confirm (apply), cancel (restore) or,
// for modes 4 to 6, close. The subsystems that own a mode register these.
struct Mode_Handlers {
  std::function<void(Session&)> confirm;
  std::function<void(Session&)> cancel;
  std::function<void(Session&)> close;
};

struct Mode_State {
  int16_t Edit_Mode = Mode_Basic;
  int16_t Mode_Unchanged = 1;  // set on entering a mode, cleared by any edit
  int16_t Tool_Drag = 0, Tool_Add = 2, Tool_Del = 0, Zoom_Armed = 0;
  int16_t Quick_Paint = 0;
  std::map<int16_t, Mode_Handlers> handlers;
};

// The question asked when leaving modes 1 to 3 with changes.
std::string Mode_Exit_Question(int16_t mode);

// The one interlock run first by nearly every command. Modes 1-3 left with
// changes ask Yes/No/Cancel and confirm or cancel; unchanged they cancel
// quietly; modes 4-6 close. Returns false when the operator cancelled
// (nothing changed then); otherwise the session is back in the basic mode.
bool Confirm_Mode_Exit(Session& s);

// Enters a mode: nothing when it is the current one; otherwise the
// interlock, then the mode with Mode_Unchanged set and undo cleared.
// Returns false when the interlock was cancelled.
bool Enter_Mode(Session& s, int16_t mode);

// Leaves the current mode by its own button: runs the mode's confirm or
// cancel handler without a question, then returns to the basic mode.
void Finish_Mode(Session& s, bool confirm);

// Marks an edit inside the current mode.
void Mode_Edited(Session& s);

// ---- recent files ----

// Moves `path` to the top of the recent list (case-insensitive match), or
// pushes it in front and drops the 21st.
void Set_RecentFile_Menu(Session& s, const std::string& path);

// Caption of recent entry k (1-based): "  &k. " below 10, "  k. " from 10,
// then the path shortened to 30 columns.
std::string Recent_Caption(int k, const std::string& path);

// Shortens a path to `columns` display columns (double-width characters
// count twice) by replacing its middle with "..../" (keeping the file name)
// or ".....".
std::string Shorten_Path(const std::string& path, int columns);

// Display width of a UTF-8 text: characters of two Shift-JIS bytes count 2.
int Display_Columns(const std::string& text);

// ---- menu enabling ----

// Enabled state of the main menu items by the state of the session ("no
// data", loaded, array), and only for commands that have their code: an
// item missing from the map is disabled.
std::map<std::string, bool> Menu_Enabled(const Session& s);

// The display switches of "表示するもの" (m361 .. m368) and "ピーク位置の
// 表示場所" (m371 above, m372 below): the settings key each one shows, and
// the value that checks it (the m36x items are on at 1 and toggle).
struct Layer_Switch {
  const char* id;
  const char* key;
  int on;  // the key's value that checks the item
  bool toggles;  // m36x; the two m37x set their value
};
const std::vector<Layer_Switch>& Layer_Switches();
// The item's check state from the settings.
bool Layer_Checked(const Session& s, const Layer_Switch& l);
// The item chosen: a m36x switch turns its layer over, a m37x one sets the
// place of the peak labels.
void Layer_Chosen(Session& s, const Layer_Switch& l);

// True for the menu commands the program carries out today. An issue that
// builds a command adds it here; every other item stays disabled.
bool Command_Built(const std::string& id);

// The caption of the main window: "NMR 1D" padded to 20 characters, then the
// path in upper case.
std::string Window_Caption(const std::string& path);

}  // namespace tevo::session
