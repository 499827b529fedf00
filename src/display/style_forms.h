// The settings-group windows (fonts, colours, lines, axis styles, the
// environment) as tables: each window is a list of rows, each row a caption,
// a kind and the settings keys it edits. One window routine builds any of
// them from its table. A change is applied to the session at once, so the
// plot and the preview repaint with it; OK writes the settings file and
// キャンセル puts back the values the window opened with.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::display {

enum class Style_Kind {
  Page,  // no value: the rows below it form one page (tab) of the window
  Font,  // four keys: face, size in points, bold, italic
  Colour,  // 0xBBGGRR
  Width,  // a line width in the unit of its key (pixels on screen, 0.1 mm on paper)
  Number,  // a number within lo .. hi
  Switch,  // 0 off, 1 on
  Choice,  // 0 .. count - 1, one caption each
  Text,  // a folder or a name
  File,  // a file's path, chosen through a file dialog with the row's filter
};

struct Style_Row {
  const char* caption;
  Style_Kind kind;
  // The key of the value; a font's face, size, bold and italic keys.
  std::array<const char*, 4> keys{};
  double lo = 0, hi = 0;  // limits of a Width or Number
  const char* choices = nullptr;  // a Choice's captions, or a File's filter, separated by "|"
};

struct Style_Form {
  const char* name;  // "NMR1D_Form7_0"
  const char* title;
  std::vector<Style_Row> rows;
};

// Every window of the kind: NMR1D_Form7_0 (edit view), NMR1D_Form7_1
// (printing), NMR1D_Form3 (environment), SpecSim_Form3_0/3_1 (line
// separation display and print), T1Cal_Form3_0/3_1 (relaxation display and
// print), and the page's NMR1D_Form84 (frame size and colours), NMR1D_Form82
// (peak list) and NMR1D_Form88 (parameter block).
std::span<const Style_Form> Style_Forms();
// The form by its name; nullptr when there is none.
const Style_Form* Find_Style_Form(std::string_view name);

// The keys a row edits (none for a Page row).
std::vector<std::string_view> Row_Keys(const Style_Row& row);
// The captions of a Choice row.
std::vector<std::string> Row_Choices(const Style_Row& row);

// The value of a key as the window shows it. Besides the settings file's
// keys, "USER MODE", "LOG MODE" and "LOG DIR" of the common file are known.
double Style_Number(const Session& s, std::string_view key);
std::string Style_Text(const Session& s, std::string_view key);

// Applies a value typed or chosen for `key` of `row` to the session at once.
// A number is held within the row's limits (a colour within 0 .. 0xFFFFFF,
// a switch or a font's bold and italic 0 or 1, a choice within its
// captions, a font size within 1 .. 200 points); a value that is no number,
// or an empty face, is refused and false is returned with nothing changed.
bool Style_Set_Number(Session& s, const Style_Row& row, std::string_view key, double value);
bool Style_Set_Text(Session& s, const Style_Row& row, std::string_view key, std::string text);

// The values a window opens with, to be put back by キャンセル.
struct Style_Saved {
  struct Value {
    std::string key;
    double num = 0;
    std::string text;
  };
  std::vector<Value> values;
};
Style_Saved Style_Open(const Session& s, const Style_Form& form);
void Style_Cancel(Session& s, const Style_Saved& saved);
// OK: the settings file (and the common file, for the environment) is
// written now, so the values hold after a restart whatever happens.
void Style_OK(Session& s, const Style_Form& form);

}  // namespace tevo::display
