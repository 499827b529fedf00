// The program's environment as kept in the settings file: one typed value per
// key, held in the order the file is written, plus the repeated entries.
//
// Every key of the file stands for one setting; code reads it by its key text
// ("DISPLAY MIN"), exactly as it is spelled in the file. The table of keys
// (settings_keys.cpp) gives each key its type, its default, its clamp and
// whether the reader takes it back.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tevo::session {

enum class Setting_Type : uint8_t {
  Int16,  // written and read as a whole number, stored 16-bit
  Int32,
  Real32,  // written in the number format with a leading blank
  Text,  // written behind "; "
  Real64,  // frequencies that need the full precision
  List,  // a repeated key; its lines live in the Settings members below
};

// What the reader does to a value after the whole file has been read.
enum class Setting_Rule : uint8_t {
  None,
  Clamp,  // into lo .. hi
  Negative_To_Default,  // a negative value takes the default
  Always_Default,  // whatever the file says, the default stands
  Positive_Or_One,  // a scaling factor: zero or negative becomes 1.0
  Colour,  // 0xBBGGRR; a negative value takes the default (0 or white)
  Font,  // a face name: one the system lacks falls back to the default face
};

// One row of the key table.
struct Setting_Def {
  const char* key;  // exact text, case included
  Setting_Type type;
  double def_num = 0;  // default of a numeric key
  const char* def_text = nullptr;  // default of a text key
  bool read_back = true;  // false: written, but the settings reader does not take it
  Setting_Rule rule = Setting_Rule::None;
  double lo = 0, hi = 0;  // bounds of Setting_Rule::Clamp

  constexpr Setting_Def Not_Read() const {
    Setting_Def d = *this;
    d.read_back = false;
    return d;
  }
  constexpr Setting_Def With_Rule(Setting_Rule r, double l = 0, double h = 0) const {
    Setting_Def d = *this;
    d.rule = r;
    d.lo = l;
    d.hi = h;
    return d;
  }
};

// The 683 keys of the settings file in their written order.
std::span<const Setting_Def> Setting_Keys();

// Keys the reader knows although the writer never writes them. Most set the
// field of a written key (`target`); the one with no target keeps a value of
// its own, reachable by its key text like any other.
struct Read_Only_Key {
  const char* key;
  const char* target;  // written key whose value it sets, or nullptr
};
std::span<const Read_Only_Key> Read_Only_Keys();

// Index of a key in Setting_Keys() (or, past its end, of a read-only key with
// a value of its own), or -1.
int Setting_Index(std::string_view key);
// The definition behind Setting_Index.
const Setting_Def& Setting_Def_Of(int index);
// Number of values a Settings holds: the written keys and the read-only keys
// with a value of their own.
int Setting_Value_Count();
// The index the settings reader stores a key's value at: a written key that
// is read back, a read-only key (at its target); -1 for a key the reader
// does not take.
int Reader_Index(std::string_view key);

// A number as the settings file writes it: whole numbers plainly, reals in
// the shortest form that reads back to the same value.
std::string Format_Setting_Number(Setting_Type type, double value);
// Converts a value text to the type of the field, rounding whole numbers to
// even like the reader; false when the text is no number or out of range.
bool Parse_Setting_Number(Setting_Type type, std::string_view text, double& out);

class Settings {
 public:
  Settings();  // every key at its default

  // Typed access by key text; an unknown key is a programming error and
  // throws std::out_of_range.
  int32_t Int(std::string_view key) const;
  double Real(std::string_view key) const;
  const std::string& Text(std::string_view key) const;
  void Set(std::string_view key, double value);
  void Set(std::string_view key, std::string value);

  // The value as text: a text key as it is, a number as the file writes it.
  // (Fields of the page are held in cm; the writer turns them into
  // fractions of the page itself.)
  std::string Value_Text(std::string_view key) const;

  // Sets every key back to its default and clears the repeated entries.
  void Reset();

  // ---- repeated entries ----
  std::vector<std::string> Instrument_Ids;  // "INSTRUMENT ID", upper case, at most 101
  std::array<std::string, 100> Instrument;  // "INSTRUMENT" rows 000..099
  std::array<std::string, 100> Fid_Shift_Val;  // "FID SHIFT VAL"
  std::array<std::string, 100> Ref_Center_Frq;  // "REF CENTER FRQ"
  std::array<std::string, 100> Ref_Center_Ex;  // "REF CENTER EX"
  std::vector<std::string> Recent_Files;  // "RECENT FILE", newest first, at most 20
  std::vector<std::string> Operators;  // "OPERATOR INDEX", at most 100
  std::string Para_Table;  // "PARA TABLE" lines joined with CR LF

 private:
  struct Value {
    double num = 0;
    std::string text;
  };
  const Value& At(std::string_view key) const;
  Value& At(std::string_view key);
  std::vector<Value> values_;
};

}  // namespace tevo::session
