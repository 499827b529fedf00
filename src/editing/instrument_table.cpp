#include "editing/instrument_table.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "datafiles/text_lines.h"
#include "editing/reference.h"
#include "session/messages.h"
#include "session/number_text.h"
#include "session/session.h"
#include "session/text_encoding.h"

namespace tevo::editing {

namespace {

std::string Upper(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

std::string Trim(const std::string& t) {
  const auto b = t.find_first_not_of(' ');
  if (b == std::string::npos) return {};
  return t.substr(b, t.find_last_not_of(' ') - b + 1);
}

// The text cut or padded with blanks to `width` Shift-JIS bytes; a
// two-byte character that would straddle the edge is left out.
std::string Fixed(const std::string& text, std::size_t width) {
  std::string out;
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    const auto b = static_cast<std::size_t>(Sjis_Char_Bytes(Next_Utf8(text, i)));
    if (bytes + b > width) break;
    out.append(text, start, i - start);
    bytes += b;
  }
  return out + std::string(width - bytes, ' ');
}

std::filesystem::path Instr_File(const Session& s) {
  return std::filesystem::path(s.App_Path) / Instr_File_Name;
}

float Nominal_Frequency(double mhz) { return static_cast<float>(std::nearbyint(mhz * 20.0) / 20.0); }

// The row text used in the lists and questions, at the given nucleus width.
std::string Row_Text(const Instr_Row& r, std::size_t nucleus_width) {
  return Fixed(r.Id, 32) + ";" + Fixed(r.Solvent, 16) + ";" + Fixed(r.Nucleus, nucleus_width) + "; " +
         Fixed(Format_Number(r.Zero_Freq, "####.##########"), 18);
}

}  // namespace

std::string Now_Text() {
  const std::time_t now = std::time(nullptr);
  std::tm tm{};
  localtime_r(&now, &tm);
  char buf[32];
  std::strftime(buf, sizeof buf, "%Y/%m/%d %H:%M:%S", &tm);
  return buf;
}

std::string Instr_Table_Line(const Instr_Row& r, const std::string& now) {
  const double obs = r.Obs_Freq != 0 ? r.Obs_Freq : Nominal_Frequency(r.Zero_Freq);
  return Row_Text(r, 8) + ";" + Fixed(r.Used_Date.empty() ? now : r.Used_Date, 20) + ";" +
         Fixed(r.Updated_Date.empty() ? now : r.Updated_Date, 20) + ";" +
         Fixed(Format_Number(obs, "###0.00"), 8);
}

bool Parse_Instr_Line(const std::string& line, Instr_Row& row) {
  std::string text = line;
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = ' ';
  std::vector<std::string> f;
  std::size_t start = 0;
  for (;;) {
    const auto semi = text.find(';', start);
    f.push_back(Trim(text.substr(start, semi == std::string::npos ? std::string::npos : semi - start)));
    if (semi == std::string::npos) break;
    start = semi + 1;
  }
  f.resize(std::max<std::size_t>(f.size(), 7));
  row = Instr_Row{};
  row.Id = f[0];
  row.Solvent = f[1];
  row.Nucleus = f[2];
  row.Zero_Freq = std::strtod(f[3].c_str(), nullptr);
  row.Used_Date = f[4];
  row.Updated_Date = f[5];
  row.Obs_Freq = static_cast<float>(std::strtod(f[6].c_str(), nullptr));
  return !row.Id.empty();
}

void Read_Instr_Table(Session& s) {
  s.Instr_Tab.clear();
  std::ifstream in(Instr_File(s), std::ios::binary);
  if (!in) return;
  std::string raw;
  while (datafiles::Read_Line_Any(in, raw) &&
         s.Instr_Tab.size() < static_cast<std::size_t>(Instrument_Rows_Max)) {
    Instr_Row row;
    if (!Parse_Instr_Line(Sjis_To_Utf8(raw), row)) continue;
    s.Instr_Tab.push_back(row);
    auto& ids = s.settings.Instrument_Ids;
    const std::string id = Upper(row.Id);
    if (std::find(ids.begin(), ids.end(), id) == ids.end() && ids.size() < 101) ids.push_back(id);
  }
}

int Write_Instr_Table(Session& s) {
  std::ofstream out(Instr_File(s), std::ios::binary | std::ios::trunc);
  const std::string now = Now_Text();
  for (const Instr_Row& r : s.Instr_Tab)
    if (!r.Id.empty()) out << Utf8_To_Sjis(Instr_Table_Line(r, now)) << "\r\n";
  out.flush();
  if (!out) {
    Disk_Error_Text(s, Error_Number_From_Errno(errno), Instr_File_Name);
    return -1;
  }
  return 0;
}

bool Instr_Row_Matches(const Session& s, const Instr_Row& r) {
  return !r.Id.empty() && Upper(r.Id) == Upper(s.Param.Instrument_Id) &&
         Upper(r.Solvent) == Upper(s.Param.SLVNT) && Upper(r.Nucleus) == Upper(s.Param.OBNUC) &&
         std::fabs(r.Obs_Freq - s.Observe_Frequency) < 0.05;
}

void Update_Instr_Row(Session& s) {
  if (s.Param.Instrument_Id.empty() || s.Observe_Frequency <= 0) return;
  const std::string now = Now_Text();
  for (Instr_Row& r : s.Instr_Tab)
    if (Instr_Row_Matches(s, r)) {
      r.Zero_Freq = s.Spectrum_Frequency;
      r.Used_Date = r.Updated_Date = now;
      return;
    }
  auto free = std::find_if(s.Instr_Tab.begin(), s.Instr_Tab.end(), [](const Instr_Row& r) { return r.Id.empty(); });
  if (free == s.Instr_Tab.end()) {
    if (s.Instr_Tab.size() >= static_cast<std::size_t>(Instrument_Rows_Max)) return;
    free = s.Instr_Tab.insert(s.Instr_Tab.end(), Instr_Row{});
  }
  *free = Instr_Row{s.Param.Instrument_Id, s.Param.SLVNT, s.Param.OBNUC, s.Spectrum_Frequency,
                    Nominal_Frequency(s.Observe_Frequency), "", now};
}

std::string Instr_List_Text(const Instr_Row& row) { return Row_Text(row, 5); }

int Form109_Preselect(const Session& s) {
  for (std::size_t k = 0; k < s.Instr_Tab.size(); ++k)
    if (Instr_Row_Matches(s, s.Instr_Tab[k])) return static_cast<int>(k);
  return -1;
}

int Form109_OK(Session& s, int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= s.Instr_Tab.size()) return 1;
  const Instr_Row& r = s.Instr_Tab[static_cast<std::size_t>(row)];
  if (r.Zero_Freq <= 0) return 1;
  if (Upper(r.Solvent) != Upper(s.Param.SLVNT) || Upper(r.Nucleus) != Upper(s.Param.OBNUC)) {
    if (Show_Message(s, "溶媒または核種が違っていますが、このまま設定しますか？", Style_Yes_No | Icon_Question,
                     "核種エラー") != Msg_Yes)
      return 1;
  }
  Reference_From_Frequency(s, r.Zero_Freq);
  return 0;
}

bool Delete_Instr_Id(Session& s, const std::string& id) {
  auto& ids = s.settings.Instrument_Ids;
  const auto it = std::find(ids.begin(), ids.end(), id);
  if (it == ids.end()) return false;
  if (Show_Message(s, id + "を削除します？", Style_Yes_No | Icon_Question, "装置IDの削除") != Msg_Yes) return false;
  ids.erase(it);
  return true;
}

bool Delete_Instr_Row(Session& s, int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= s.Instr_Tab.size()) return false;
  const std::string text = Trim(Instr_List_Text(s.Instr_Tab[static_cast<std::size_t>(row)]));
  if (Show_Message(s, text + "を削除します？", Style_Yes_No | Icon_Question, "装置 Dataの削除") != Msg_Yes)
    return false;
  s.Instr_Tab.erase(s.Instr_Tab.begin() + row);
  return true;
}

void Form107_OK(Session& s, const std::string& id) { s.Param.Instrument_Id = Upper(Trim(id)); }

}  // namespace tevo::editing
