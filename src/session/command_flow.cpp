#include "session/command_flow.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "overlay/difference.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/text_encoding.h"

namespace tevo::session {

namespace {

std::string Upper(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

void Run(const std::function<void(Session&)>& f, Session& s) {
  if (f) f(s);
}

// A confirmed edit of the spectrum is a change the operator must be asked
// to save before it can be lost.
void Confirm_Edits(Session& s, const Mode_Handlers& h) {
  Run(h.confirm, s);
  if (!s.Mode.Mode_Unchanged) s.Data_Saved = 0;
}


// Splits UTF-8 text into characters.
std::vector<std::string> Characters(const std::string& text) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < text.size();) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    std::size_t n = c < 0x80 ? 1 : c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
    n = std::min(n, text.size() - i);
    out.push_back(text.substr(i, n));
    i += n;
  }
  return out;
}

int Columns_Of(const std::string& ch) { return static_cast<int>(std::min<std::size_t>(2, Sjis_Length(ch))); }

// Back to the basic mode with the mouse tools disarmed.
void Reset_To_Basic(Mode_State& m) {
  m.Edit_Mode = Mode_Basic;
  m.Tool_Drag = 0;
  m.Tool_Add = 2;
  m.Tool_Del = 0;
  m.Zoom_Armed = 0;
}

}  // namespace

std::string Mode_Exit_Question(int16_t mode) {
  switch (mode) {
    case Mode_Reference: return "Reference設定を実行しますか";
    case Mode_Phase: return "位相補正を実行しますか";
    case Mode_Baseline: return "ベースライン補正を実行しますか";
    default: return {};
  }
}

bool Confirm_Mode_Exit(Session& s) {
  s.ui->Wait_Cursor(false);
  Mode_State& m = s.Mode;
  const int16_t mode = m.Edit_Mode;
  const Mode_Handlers& h = m.handlers[mode];
  if (mode >= Mode_Reference && mode <= Mode_Baseline) {
    if (m.Mode_Unchanged) {
      Run(h.cancel, s);
    } else {
      s.ui->Beep();
      switch (Show_Message(s, Mode_Exit_Question(mode), Style_Yes_No_Cancel | Icon_Question, "")) {
        case Msg_Yes: Confirm_Edits(s, h); break;
        case Msg_No: Run(h.cancel, s); break;
        default: return false;
      }
    }
  } else if (mode >= Mode_Peak && mode <= Mode_Inset) {
    Run(h.close, s);
  }
  Reset_To_Basic(m);
  return true;
}

void Finish_Mode(Session& s, bool confirm) {
  const Mode_Handlers& h = s.Mode.handlers[s.Mode.Edit_Mode];
  if (confirm) Confirm_Edits(s, h);
  else Run(h.cancel, s);
  Reset_To_Basic(s.Mode);
}

bool Enter_Mode(Session& s, int16_t mode) {
  if (s.Mode.Edit_Mode == mode) return true;
  if (!Confirm_Mode_Exit(s)) return false;
  s.Mode.Mode_Unchanged = 1;
  s.Mode.Edit_Mode = mode;
  s.Undo_Stack[0].Kind = Undo_None;  // undo is not carried across a mode boundary
  return true;
}

void Mode_Edited(Session& s) { s.Mode.Mode_Unchanged = 0; }

void Set_RecentFile_Menu(Session& s, const std::string& path) {
  auto& list = s.settings.Recent_Files;
  const std::string key = Upper(path);
  auto hit = std::find_if(list.begin(), list.end(), [&](const std::string& p) { return Upper(p) == key; });
  if (hit != list.end()) list.erase(hit);
  list.insert(list.begin(), path);
  if (list.size() > static_cast<std::size_t>(Recent_Max)) list.resize(Recent_Max);
}

int Display_Columns(const std::string& text) {
  int n = 0;
  for (const auto& ch : Characters(text)) n += Columns_Of(ch);
  return n;
}

std::string Shorten_Path(const std::string& path, int columns) {
  if (Display_Columns(path) <= columns) return path;
  const auto chars = Characters(path);
  // Keep the file name whole when it fits beside the head; the middle gives way.
  const auto slash = path.find_last_of('/');
  std::string tail = slash == std::string::npos ? std::string() : path.substr(slash + 1);
  std::string marker = "..../";
  if (tail.empty() || Display_Columns(tail) + 5 + 3 > columns) {
    marker = ".....";
    tail.clear();
  }
  const int tail_room = tail.empty() ? (columns - 5) / 2 : Display_Columns(tail);
  // Tail from the end when no file name is kept.
  if (tail.empty()) {
    int w = 0;
    for (auto it = chars.rbegin(); it != chars.rend(); ++it) {
      if (w + Columns_Of(*it) > tail_room) break;
      w += Columns_Of(*it);
      tail.insert(0, *it);
    }
  }
  const int head_room = columns - 5 - Display_Columns(tail);
  std::string head;
  int w = 0;
  for (const auto& ch : chars) {
    if (w + Columns_Of(ch) > head_room) break;
    w += Columns_Of(ch);
    head += ch;
  }
  return head + marker + tail;
}

std::string Recent_Caption(int k, const std::string& path) {
  const std::string num = std::to_string(k);
  return (k < 10 ? "  &" + num + ". " : "  " + num + ". ") + Shorten_Path(path, 30);
}

std::map<std::string, bool> Menu_Enabled(const Session& s) {
  const bool loaded = s.Is_Spectrum != 0 || s.Spec_Points > 0;
  const bool array = loaded && s.Array_Rows > 1;
  std::map<std::string, bool> m;
  // Always: the open commands, the settings and the end.
  for (const char* id : {"NM1D_m1", "NM1D_m11", "NM1D_m112", "NM1D_m111", "m12", "m121", "m122", "m47",
                         "m16", "m19", "m32", "m40", "m42", "m43", "m44", "m41", "m45", "m46", "RecentFile"})
    m[id] = true;
  for (const char* id : {"m2", "m3", "m5", "m10", "m13", "m18", "m181", "m183", "m131", "m14_1", "m15",
                         "m17", "m171", "m172", "m173", "m20", "m22", "m21", "m23", "m24", "m25", "m26",
                         "m27", "m271", "m272", "m291", "m292", "m209", "m31", "m35", "m36", "m37",
                         "m38", "m39", "m34", "m51", "m331", "m332", "m30"})
    m[id] = loaded;
  for (const char* id : {"m6", "m341", "m342", "m293", "m61", "m52"}) m[id] = array;
  m["m13"] = loaded && s.settings.Int("ALS SAVE OK") != 0;
  m["m102"] = !s.settings.Recent_Files.empty();
  m["m20"] = loaded && s.Undo_Stack[0].Kind > 0;  // a record to undo
  // The printed lists need something to list; the array list an array.
  m["m15"] = loaded && !s.Peaks.empty();
  m["m17"] = loaded && !s.Integrals.empty();
  m["m171"] = array;
  // The difference needs a slot with data, the DEPT sums slots 1, 2 and 3.
  bool slot = false;
  for (int k = 1; k <= Overlay_Max; ++k) slot = slot || overlay::Slot_Filled(s, k);
  m["m271"] = loaded && slot;
  m["m272"] = loaded && overlay::DEPT_Slots_Filled(s);
  for (const Layer_Switch& l : Layer_Switches()) m[l.id] = true;
  for (auto& [id, enabled] : m) enabled = enabled && Command_Built(id);
  // The ASCII export of an overlay: a row per slot, enabled while the slot
  // holds a spectrum, and the menu while any does.
  bool any_slot = false;
  for (int k = 1; k <= 9; ++k) {
    const bool used = loaded && s.Overlay[static_cast<std::size_t>(k)].Slot_Points > 0;
    m["m182_" + std::to_string(k)] = used;
    any_slot = any_slot || used;
  }
  m["m18X"] = any_slot;
  // The overlay editor, and its reference mode: row n edits slot 10 - n
  // while it holds a spectrum.
  m["m273"] = m["m28"] = any_slot;
  for (int n = 1; n <= 9; ++n)
    m["m2731_" + std::to_string(n)] = m["m2101_" + std::to_string(n)] = m["m182_" + std::to_string(Overlay_Max - n)];
  return m;
}

const std::vector<Layer_Switch>& Layer_Switches() {
  static const std::vector<Layer_Switch> table = {
      {"m361", "INTEGRAL DISP", 1, true},  {"m368", "INTEG BASE DISP", 1, true},
      {"m362", "PEAK PICK DISP", 1, true}, {"m365", "PEAK TOP DISP", 1, true},
      {"m366", "PEAK NUM DISP", 1, true},  {"m363", "MULTI VIEW DISP", 1, true},
      {"m364", "MULTI SPEC DISP", 1, true}, {"m367", "DISPLAY GRID", 1, true},
      {"m371", "PEAK POSITION", 1, false}, {"m372", "PEAK POSITION", 0, false}};
  return table;
}

bool Layer_Checked(const Session& s, const Layer_Switch& l) { return s.settings.Int(l.key) == l.on; }

void Layer_Chosen(Session& s, const Layer_Switch& l) {
  const int value = l.toggles && Layer_Checked(s, l) ? 1 - l.on : l.on;
  s.settings.Set(l.key, static_cast<double>(value));
}

bool Command_Built(const std::string& id) {
  static const std::set<std::string> built = {
      // the menus themselves
      "NM1D_m1", "m2", "m3", "m40",
      // file
      "NM1D_m11", "NM1D_m111", "NM1D_m112", "m47", "m10", "m13", "m18", "m181", "m183", "m131", "m172", "m173", "RecentFile",
      "m102", "m19", "m14_1", "m15", "m17", "m171", "m16",
      // edit
      "m20", "m21", "m22", "m23", "m24", "m25", "m26", "m27", "m273", "m28", "m209", "m291", "m292", "m271", "m272",
      // array data
      "m6", "m341", "m342", "m52",
      // line separation
      "m5", "m51",
      // view and settings
      "m31", "m30", "m35", "m38", "m39", "m34", "m44", "m43", "m41", "m42", "m45", "m46", "m36", "m37", "m361", "m368", "m362", "m365", "m366",
      "m363",
      "m364", "m367", "m371", "m372", "m331", "m332", "m32"};
  return built.count(id) != 0;
}

std::string Window_Caption(const std::string& path) {
  std::string head = "NMR 1D";
  head.resize(20, ' ');
  return head + Upper(path);
}

}  // namespace tevo::session
