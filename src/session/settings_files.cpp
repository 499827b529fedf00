#include "session/settings_files.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "page/fonts.h"
#include "session/session.h"
#include "session/settings.h"
#include "session/startup.h"
#include "session/text_encoding.h"

namespace fs = std::filesystem;

namespace tevo::session {

namespace {

constexpr const char* kCommonTitle = "1D Common Setting";
constexpr const char* kSettingsTitle = "1D Initial setting";
constexpr int kSettingsKeyWidth = 16;
constexpr int kCommonKeyWidth = 20;
constexpr std::size_t kMaxInstrumentIds = 101;
constexpr std::size_t kMaxRecentFiles = 20;
constexpr std::size_t kMaxOperators = 100;
constexpr std::size_t kMaxNuclei = 141;

// Blanks only, as the files were written: a tab is part of the value.
std::string Trim_Blanks(std::string_view t) {
  const auto b = t.find_first_not_of(' ');
  if (b == std::string_view::npos) return {};
  const auto e = t.find_last_not_of(' ');
  return std::string(t.substr(b, e - b + 1));
}

std::string Upper_Ascii(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

// Byte offset of the n-th character of a UTF-8 text (columns count
// characters, not bytes); the length when the text is shorter.
std::size_t Char_Offset(std::string_view t, std::size_t n) {
  std::size_t i = 0;
  while (i < t.size() && n > 0) {
    ++i;
    while (i < t.size() && (static_cast<unsigned char>(t[i]) & 0xC0) == 0x80) ++i;
    --n;
  }
  return i;
}

std::size_t Char_Count(std::string_view t) {
  return static_cast<std::size_t>(
      std::count_if(t.begin(), t.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Columns 1..n and n+1.. of a line.
std::string_view Left(std::string_view t, std::size_t n) { return t.substr(0, Char_Offset(t, n)); }
std::string_view Mid(std::string_view t, std::size_t from_column) {
  return t.substr(Char_Offset(t, from_column - 1));
}

std::string Pad(const std::string& key, int width) {
  std::string out = key;
  const auto n = Char_Count(key);
  if (n < static_cast<std::size_t>(width)) out.append(static_cast<std::size_t>(width) - n, ' ');
  return out;
}

// A file of the installation, found whatever the case of its name (the files
// come from a system whose names ignore case). The exact name when absent.
fs::path Find_File(const std::string& dir, const std::string& name) {
  const fs::path exact = fs::path(dir) / name;
  std::error_code ec;
  if (fs::exists(exact, ec)) return exact;
  const std::string wanted = Upper_Ascii(name);
  for (const auto& e : fs::directory_iterator(dir, ec))
    if (Upper_Ascii(e.path().filename().string()) == wanted) return e.path();
  return exact;
}

std::string Now_Text() {
  const std::time_t now = std::time(nullptr);
  std::tm t{};
  localtime_r(&now, &t);
  char buf[80];
  std::snprintf(buf, sizeof buf, "%04d/%02d/%02d %02d:%02d:%02d", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,
                t.tm_hour, t.tm_min, t.tm_sec);
  return buf;
}

// The parameter-text fields of the page are kept in cm and written as
// fractions of the page frame.
enum Page_Field { Para_Left, Para_Top, Para_Height, Para_Width, Page_Field_Count };
constexpr std::array<const char*, Page_Field_Count> kPageKeys = {"PARA LEFT", "PARA TOP", "PARA HEIGHT",
                                                                 "PARA WIDTH"};

int Page_Field_Of(std::string_view key) {
  for (int i = 0; i < Page_Field_Count; ++i)
    if (key == kPageKeys[static_cast<std::size_t>(i)]) return i;
  return -1;
}

double Ratio(double a, double b) { return b == 0 ? 0 : a / b; }

double Page_To_File(const Settings& set, int field, double cm) {
  const double xl = set.Real("X-LENGTH"), yl = set.Real("Y-LENGTH");
  switch (field) {
    case Para_Left: return Ratio(cm - set.Real("X-LEFT MARGIN"), xl);
    case Para_Width: return Ratio(cm, xl);
    case Para_Top: return 1.0 - Ratio(cm - set.Real("Y-BOTTOM MARGIN"), yl);
    default: return Ratio(cm, yl);
  }
}

double Page_From_File(const Settings& set, int field, double fraction) {
  const double xl = set.Real("X-LENGTH"), yl = set.Real("Y-LENGTH");
  switch (field) {
    case Para_Left: return fraction * xl + set.Real("X-LEFT MARGIN");
    case Para_Width: return fraction * xl;
    case Para_Top: return (1.0 - fraction) * yl + set.Real("Y-BOTTOM MARGIN");
    default: return fraction * yl;
  }
}

// The four tables of 100 numbered rows ("000" .. "099" in front of the value).
template <class Set>
auto Row_Table(Set& set, std::string_view key) -> decltype(&set.Instrument) {
  if (key == "INSTRUMENT") return &set.Instrument;
  if (key == "FID SHIFT VAL") return &set.Fid_Shift_Val;
  if (key == "REF CENTER FRQ") return &set.Ref_Center_Frq;
  if (key == "REF CENTER EX") return &set.Ref_Center_Ex;
  return nullptr;
}

// One line of a repeated key. False when the line is lost.
bool Take_Repeated(Settings& set, const std::string& key, const std::string& value) {
  if (key == "INSTRUMENT ID") {
    if (!value.empty() && set.Instrument_Ids.size() < kMaxInstrumentIds)
      set.Instrument_Ids.push_back(Upper_Ascii(value));
    return true;
  }
  if (auto* table = Row_Table(set, key)) {
    double row = 0;
    if (!Parse_Setting_Number(Setting_Type::Int16, std::string_view(value).substr(0, 3), row)) return false;
    if (row < 0 || row >= 100) return true;
    (*table)[static_cast<std::size_t>(row)] = value.size() > 3 ? value.substr(3) : std::string();
    return true;
  }
  if (key == "RECENT FILE") {
    if (set.Recent_Files.size() < kMaxRecentFiles) set.Recent_Files.push_back(value);
    return true;
  }
  if (key == "OPERATOR INDEX") {
    if (set.Operators.size() < kMaxOperators) set.Operators.push_back(value);
    return true;
  }
  if (key == "PARA TABLE") {
    if (!set.Para_Table.empty()) set.Para_Table += "\r\n";
    set.Para_Table += value;
    return true;
  }
  return false;
}

void Emit(std::vector<std::string>& out, const std::string& key, const std::string& value) {
  out.push_back(Pad(key, kSettingsKeyWidth) + "; " + value);
}

// The lines of a repeated key, as the writer puts them in place of the key.
void Emit_Repeated(const Settings& set, const std::string& key, std::vector<std::string>& out) {
  if (key == "INSTRUMENT ID") {
    for (const auto& id : set.Instrument_Ids)
      if (!id.empty()) Emit(out, key, id);
  } else if (const auto* table = Row_Table(set, key)) {
    for (std::size_t r = 0; r < table->size(); ++r) {
      if ((*table)[r].empty()) continue;
      char num[24];
      std::snprintf(num, sizeof num, "%03zu", r);
      Emit(out, key, num + (*table)[r]);
    }
  } else if (key == "RECENT FILE") {
    for (const auto& f : set.Recent_Files) Emit(out, key, f);
  } else if (key == "OPERATOR INDEX") {
    for (const auto& o : set.Operators) Emit(out, key, o);
  } else if (key == "PARA TABLE") {
    std::size_t from = 0;
    const std::string& t = set.Para_Table;
    while (from <= t.size()) {
      auto end = t.find('\n', from);
      if (end == std::string::npos) end = t.size();
      std::string line = t.substr(from, end - from);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      line = Trim_Blanks(line);
      if (!line.empty()) Emit(out, key, line);
      from = end + 1;
    }
  }
}

// The rules of the reader that look at the whole file once it is read.
void Validate_Read_Values(Settings& set) {
  for (int i = 0; i < Setting_Value_Count(); ++i) {
    const Setting_Def& def = Setting_Def_Of(i);
    const std::string_view key = def.key;
    if (def.rule == Setting_Rule::Font) {
      // A face the system lacks gives way to the default of its kind: the
      // Japanese default for a name with double-byte characters, else the
      // Latin one. An empty name takes the whole default font where it is used.
      const std::string& face = set.Text(key);
      if (!face.empty() && !page::Find_Face(face)) {
        const bool japanese = std::any_of(face.begin(), face.end(), [](char c) { return (c & 0x80) != 0; });
        set.Set(key, japanese ? page::Fonts().Default_Font : page::Fonts().Latin_Font);
      }
      continue;
    }
    if (def.type == Setting_Type::Text || def.type == Setting_Type::List) continue;
    double v = set.Real(key);
    switch (def.rule) {
      case Setting_Rule::Clamp: v = std::clamp(v, def.lo, def.hi); break;
      case Setting_Rule::Negative_To_Default:
      case Setting_Rule::Colour:
        if (v < 0) v = def.def_num;
        break;
      case Setting_Rule::Always_Default: v = def.def_num; break;
      case Setting_Rule::Positive_Or_One:
        if (v <= 0) v = 1.0;
        break;
      case Setting_Rule::None:
      case Setting_Rule::Font: break;
    }
    set.Set(key, v);
  }
  // A slot with no extension has no automatic instrument ID.
  for (int n = 1; n <= 5; ++n) {
    const std::string k = std::to_string(n);
    if (set.Text("USER EXTENSION " + k).empty()) set.Set("ID AUTO MODE " + k, -1.0);
  }
  // The bottom leader of the peak labels, when not set, is taken from the
  // older margin key.
  if (set.Real("PEAK BOTTOM HEIG") <= 0) set.Set("PEAK BOTTOM HEIG", set.Real("PEAK BOTTOM MARG"));
  // An identifier met a second time is cleared.
  for (std::size_t i = 0; i < set.Instrument_Ids.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (!set.Instrument_Ids[i].empty() && set.Instrument_Ids[i] == set.Instrument_Ids[j]) {
        set.Instrument_Ids[i].clear();
        break;
      }
}

// The fields of a line between separators, each trimmed.
std::vector<std::string> Split_Fields(std::string_view line, char separator) {
  std::vector<std::string> f;
  std::size_t from = 0;
  for (;;) {
    const auto at = line.find(separator, from);
    f.push_back(Trim_Blanks(line.substr(from, at == std::string_view::npos ? at : at - from)));
    if (at == std::string_view::npos) return f;
    from = at + 1;
  }
}

std::string Common_Settings_Path(const Session& s) { return Find_File(s.App_Path, "NMRCOL.INI").string(); }

}  // namespace

// ---- text files ----

bool Read_Text_Lines(const std::string& path, std::vector<std::string>& lines) {
  lines.clear();
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::size_t start = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '\r' && bytes[i] != '\n') continue;
    lines.push_back(Sjis_To_Utf8(std::string_view(bytes).substr(start, i - start)));
    if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
    start = i + 1;
  }
  if (start < bytes.size()) lines.push_back(Sjis_To_Utf8(std::string_view(bytes).substr(start)));
  return true;
}

bool Write_Text_Lines(const std::string& path, const std::vector<std::string>& lines) {
  std::string bytes;
  for (const auto& l : lines) bytes += Utf8_To_Sjis(l) + "\r\n";
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return static_cast<bool>(out);
}

// ---- settings file ----

bool Split_Settings_Line(const std::string& line, std::string& key, std::string& value) {
  if (line.compare(0, 10, "PARA TABLE") == 0) {
    key = "PARA TABLE";
    value = Trim_Blanks(Mid(line, 11));
    if (!value.empty() && value.front() == ';') value = Trim_Blanks(std::string_view(value).substr(1));
    return true;
  }
  const auto semi = line.find(';');
  if (semi == std::string::npos || semi == 0) {
    if (Char_Count(line) < 17) return false;
    key = Trim_Blanks(Left(line, 16));
    value = Trim_Blanks(Mid(line, 17));
    return !key.empty();
  }
  key = Trim_Blanks(std::string_view(line).substr(0, semi));
  const std::string_view rest = std::string_view(line).substr(semi + 1);
  const auto tab = rest.find('\t');
  if (tab != std::string_view::npos && tab + 1 < rest.size())
    value = Trim_Blanks(rest.substr(tab + 1));
  else
    value = Trim_Blanks(rest);
  return true;
}

void Read_Settings_From(Settings& set, const std::string& path) {
  std::vector<std::string> lines;
  if (!Read_Text_Lines(path, lines) || lines.empty()) return;
  if (Upper_Ascii(Trim_Blanks(lines[0])) != "1D INITIAL SETTING") return;

  set.Instrument_Ids.clear();
  for (auto* t : {&set.Instrument, &set.Fid_Shift_Val, &set.Ref_Center_Frq, &set.Ref_Center_Ex}) t->fill({});
  set.Recent_Files.clear();
  set.Operators.clear();
  set.Para_Table.clear();

  std::array<std::optional<double>, Page_Field_Count> page{};
  std::string key, value;
  for (std::size_t n = 1; n < lines.size(); ++n) {
    if (!Split_Settings_Line(lines[n], key, value)) continue;
    if (Take_Repeated(set, key, value)) continue;
    const int index = Reader_Index(key);
    if (index < 0) continue;
    const Setting_Def& def = Setting_Def_Of(index);
    if (def.type == Setting_Type::Text) {
      set.Set(def.key, value);
      continue;
    }
    double v = 0;
    if (!Parse_Setting_Number(def.type, value, v)) continue;  // the line is lost
    if (const int f = Page_Field_Of(def.key); f >= 0)
      page[static_cast<std::size_t>(f)] = v;
    else
      set.Set(def.key, v);
  }
  // The page lengths may come after the fields that are fractions of them.
  for (int f = 0; f < Page_Field_Count; ++f)
    if (page[static_cast<std::size_t>(f)])
      set.Set(kPageKeys[static_cast<std::size_t>(f)], Page_From_File(set, f, *page[static_cast<std::size_t>(f)]));
  Validate_Read_Values(set);
}

std::vector<std::string> Settings_Lines(const Settings& set) {
  std::vector<std::string> out{kSettingsTitle};
  for (const auto& def : Setting_Keys()) {
    switch (def.type) {
      case Setting_Type::List:
        Emit_Repeated(set, def.key, out);
        break;
      case Setting_Type::Text:
        Emit(out, def.key, std::string_view(def.key) == "LATEST ACCESS" ? Now_Text() : set.Text(def.key));
        break;
      default: {
        double v = set.Real(def.key);
        if (const int f = Page_Field_Of(def.key); f >= 0) v = Page_To_File(set, f, v);
        // Numbers carry a blank in place of a plus sign.
        const std::string num = Format_Setting_Number(def.type, v);
        out.push_back(Pad(def.key, kSettingsKeyWidth) + ";" + (num.front() == '-' ? "" : " ") + num);
      }
    }
  }
  return out;
}

void Read_Settings(Session& s) {
  if (s.Settings_Read_Name.empty()) s.Settings_Read_Name = Common_Settings_Path(s);
  if (s.Settings_Write_Name.empty()) s.Settings_Write_Name = s.Settings_Read_Name;
  Settings& set = s.settings;
  Read_Settings_From(set, s.Settings_Read_Name);
  if (set.Para_Table.empty()) set.Para_Table = s.Print_Text;
  // A new user starts counting from 1; everybody else counts this start.
  if (fs::path(s.Settings_Write_Name) != fs::path(s.Settings_Read_Name))
    set.Set("ACCESS COUNT", 1.0);
  else
    set.Set("ACCESS COUNT", set.Real("ACCESS COUNT") + 1);
  Write_Settings(s);
}

void Write_Settings(const Session& s) {
  const std::string path = s.Settings_Write_Name.empty() ? Common_Settings_Path(s) : s.Settings_Write_Name;
  Write_Text_Lines(path, Settings_Lines(s.settings));
}

std::string User_Name_Of(const std::string& file) {
  std::vector<std::string> lines;
  if (!Read_Text_Lines(file, lines) || lines.empty()) return {};
  if (Upper_Ascii(Trim_Blanks(lines[0])) != "1D INITIAL SETTING") return {};
  std::string key, value;
  for (std::size_t n = 1; n < lines.size(); ++n)
    if (Split_Settings_Line(lines[n], key, value) && key == "USER NAME") return value;
  return {};
}

// ---- 1DCommon.ini ----

bool Read_Common(Session& s) {
  std::vector<std::string> lines;
  bool title_ok = false;
  if (Read_Text_Lines(Find_File(s.App_Path, "1DCommon.ini").string(), lines) && !lines.empty() &&
      Trim_Blanks(lines[0]) == kCommonTitle) {
    title_ok = true;
    for (std::size_t n = 1; n < lines.size(); ++n) {
      const std::string key = Trim_Blanks(Left(lines[n], kCommonKeyWidth));
      std::string value = Trim_Blanks(Mid(lines[n], kCommonKeyWidth + 1));
      double v = 0;
      if (key == "ACCESS COUNT") {
        value = Trim_Blanks(value.substr(0, value.find(';')));
        if (Parse_Setting_Number(Setting_Type::Int32, value, v)) s.Access_Count = static_cast<int32_t>(v);
      } else if (key == "USER MODE") {
        if (Parse_Setting_Number(Setting_Type::Int16, value, v)) s.User_Mode = static_cast<int16_t>(v);
      } else if (key == "LOG DIR") {
        s.Log_Dir = value;
      } else if (key == "LOG MODE") {
        if (Parse_Setting_Number(Setting_Type::Int16, value, v)) s.Log_Mode = static_cast<int16_t>(v);
      } else if (key == "LATEST USER") {
        s.User_Name = value;
      }
    }
  }
  // The back-up of this start is named by the count as read.
  s.Backup_File = (fs::path(s.App_Path) / ("BackUp1_" + std::to_string(s.Access_Count) + ".tv1")).string();
  ++s.Access_Count;
  Write_Common(s);
  return title_ok;
}

void Write_Common(const Session& s) {
  const Settings& set = s.settings;
  auto line = [](const std::string& key, const std::string& value) { return Pad(key, kCommonKeyWidth) + value; };
  std::vector<std::string> out{kCommonTitle};
  out.push_back(line("LOG DIR", s.Log_Dir));
  out.push_back(line("LOG MODE", std::to_string(s.Log_Mode)));
  out.push_back(line("ACCESS COUNT", std::to_string(s.Access_Count)));
  out.push_back(line("LATEST ACCESS", Now_Text()));
  out.push_back(line("USER MODE", std::to_string(s.User_Mode)));
  out.push_back(line("LATEST USER", s.User_Name));
  for (int n = 1; n <= 5; ++n) out.push_back(line("USER EXTENSION " + std::to_string(n), set.Text("USER EXTENSION " + std::to_string(n))));
  for (int n = 1; n <= 5; ++n)
    out.push_back(line("USER EXT NUM " + std::to_string(n), set.Value_Text("USER EXT NUM " + std::to_string(n))));
  out.push_back(line("USER COUNT", std::to_string(List_User_Files(s.App_Path).size())));
  Write_Text_Lines((fs::path(s.App_Path) / "1DCommon.ini").string(), out);
}

// ---- small tables ----

void Read_Nuclear(Session& s) {
  s.Nuclei.clear();
  std::vector<std::string> lines;
  if (!Read_Text_Lines(Find_File(s.App_Path, "Nuclear.dat").string(), lines)) return;
  for (const auto& l : lines) {
    if (s.Nuclei.size() >= kMaxNuclei) break;
    Nucleus_Row row;
    const auto f = Split_Fields(l, ';');
    double ratio = 0;
    // An empty name, or a row that does not convert, leaves its number free.
    if (f.size() >= 3 && !f[0].empty() && Parse_Setting_Number(Setting_Type::Real64, f[2], ratio)) {
      row.name = Upper_Ascii(f[0]);
      row.text = f[1];
      row.ratio = ratio;
    }
    s.Nuclei.push_back(row);
  }
}

void Read_Required_Files(Session& s) {
  s.Required_Files.clear();
  std::vector<std::string> lines;
  if (!Read_Text_Lines(Find_File(s.App_Path, "RequiredFile1D.txt").string(), lines)) return;
  for (const auto& l : lines) {
    Required_Row row;
    if (Char_Count(l) >= 3) {
      const auto f = Split_Fields(l, ',');
      row.format = f[0];
      if (f.size() > 1) row.description = f[1];
      for (std::size_t i = 2; i < f.size(); ++i) {
        if (f[i].empty()) continue;
        if (!row.files.empty()) row.files += "\r\n";
        row.files += f[i];
      }
    }
    s.Required_Files.push_back(row);
  }
}

std::string Print_Text_File(const Session& s) {
  const fs::path place = Map_Windows_Path(s.settings.Text("PRINT TABLE DIR"));
  std::error_code ec;
  // A name with an extension is the parameter file itself, always ".prt";
  // anything else is the folder of "1D.prt".
  if (place.has_extension() && !fs::is_directory(place, ec)) {
    fs::path file = place;
    file.replace_extension(".prt");
    const std::string dir = file.has_parent_path() ? file.parent_path().string() : s.App_Path;
    return Find_File(dir, file.filename().string()).string();
  }
  const bool folder = !place.empty() && fs::is_directory(place, ec);
  return Find_File(folder ? place.string() : s.App_Path, "1D.prt").string();
}

void Read_Print_Text(Session& s) {
  std::vector<std::string> lines;
  if (!Read_Text_Lines(Print_Text_File(s), lines)) return;
  s.Print_Text.clear();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i) s.Print_Text += "\r\n";
    s.Print_Text += Trim_Blanks(lines[i]);
  }
}

// ---- users ----

std::vector<std::string> List_User_Files(const std::string& app_path) {
  std::vector<std::string> out;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(app_path, ec)) {
    const std::string name = Upper_Ascii(e.path().filename().string());
    if (name.size() != 14 || name.rfind("NMRCOL", 0) != 0 || name.substr(10) != ".INI") continue;
    if (!std::all_of(name.begin() + 6, name.begin() + 10, [](char c) { return std::isdigit(static_cast<unsigned char>(c)); }))
      continue;
    out.push_back(e.path().string());
  }
  std::sort(out.begin(), out.end());
  return out;
}

}  // namespace tevo::session
