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
};

// One row of the key table.
struct Setting_Def {
  const char* key;  // exact text, case included
  Setting_Type type;
  double def_num;  // default of a numeric key
  const char* def_text;  // default of a text key
  bool read_back;  // false: written, but the settings reader does not take it
};

// The 679 keys of the settings file in their written order.
std::span<const Setting_Def> Setting_Keys();
// Index of a key in Setting_Keys(), or -1.
int Setting_Index(std::string_view key);

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

  // Value as it appears behind the key in the file (numbers formatted).
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
