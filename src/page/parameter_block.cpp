#include "page/parameter_block.h"

#include <algorithm>
#include <charconv>

#include "datafiles/vendor_text.h"
#include "editing/parameter_edit.h"
#include "session/file_replace.h"
#include "session/session.h"
#include "session/settings_files.h"

namespace tevo::page {

namespace {

// The list printed when neither the settings nor "1D.prt" give one.
constexpr const char* Built_In_Text =
    "DFILE|ファイル名\r\n"
    "COMNT|コメント\r\n"
    "DATIM|測定日時\r\n"
    "EXMOD|測定モード\r\n"
    "OBNUC|観測核\r\n"
    "OBFRQ|観測周波数| MHz\r\n"
    "FREQU|観測幅| Hz\r\n"
    "POINT|データ点数\r\n"
    "SCANS|積算回数\r\n"
    "SLVNT|溶媒\r\n"
    "CTEMP|温度| ℃";

std::string Shortest(double v) {
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, static_cast<float>(v));
  return std::string(buf, r.ptr);
}

std::vector<std::string> Split(const std::string& text, const std::string& sep) {
  std::vector<std::string> out;
  std::size_t from = 0;
  while (true) {
    const std::size_t at = text.find(sep, from);
    out.push_back(text.substr(from, at == std::string::npos ? std::string::npos : at - from));
    if (at == std::string::npos) return out;
    from = at + sep.size();
  }
}

}  // namespace

std::string Parameter_Text(const Session& s) {
  if (s.settings.Int("PARAMETER TABLE") == 1 && !s.Print_Text.empty()) return s.Print_Text;
  if (!s.settings.Para_Table.empty()) return s.settings.Para_Table;
  if (!s.Print_Text.empty()) return s.Print_Text;
  return Built_In_Text;
}

bool Parameter_Value(const Session& s, const std::string& tag, std::string& value) {
  const Data_Param& p = s.Param;
  if (tag == "DFILE") value = p.Data_File;
  else if (tag == "OBFRQ") value = Shortest(p.OBFRQ);
  else if (tag == "OBSET") value = Shortest(p.OBSET);
  else if (tag == "FREQU") value = Shortest(p.FREQU);
  else if (tag == "RESOL") value = Shortest(p.RESOL);
  else if (tag == "SMEXR") value = Shortest(p.SMEXR);
  else if (tag == "POINT") value = std::to_string(p.POINT);
  else {
    for (const editing::Param_Field& f : editing::Param_Edit_Fields()) {
      if (tag != f.tag) continue;
      value = editing::Param_Edit_Text(s, tag);
      return true;
    }
    return false;
  }
  return true;
}

std::vector<Parameter_Row> Parameter_Rows(const Session& s) {
  std::vector<Parameter_Row> rows;
  for (const std::string& line : Split(Parameter_Text(s), "\r\n")) {
    const std::vector<std::string> f = Split(line, "|");
    const std::string tag = datafiles::Trim(f[0]);
    std::string value;
    if (!Parameter_Value(s, tag, value)) {
      rows.push_back({line, {}});
      continue;
    }
    const std::string caption = f.size() > 1 ? datafiles::Trim(f[1]) : std::string();
    rows.push_back({caption.empty() ? tag : caption, value + (f.size() > 2 ? f[2] : std::string())});
  }
  return rows;
}

std::vector<Parameter_Line> Parameter_Lines(const std::string& text) {
  std::vector<Parameter_Line> lines;
  if (text.empty()) return lines;
  for (const std::string& l : Split(text, "\r\n")) {
    const std::vector<std::string> f = Split(l, "|");
    lines.push_back({f[0], f.size() > 1 ? f[1] : std::string(), f.size() > 2 ? f[2] : std::string()});
  }
  return lines;
}

std::string Parameter_Lines_Text(const std::vector<Parameter_Line>& lines) {
  std::string text;
  for (const Parameter_Line& l : lines) {
    std::string line = l.tag;
    if (!l.caption.empty() || !l.unit.empty()) line += "|" + l.caption;
    if (!l.unit.empty()) line += "|" + l.unit;
    if (datafiles::Trim(line).empty()) continue;
    if (!text.empty()) text += "\r\n";
    text += line;
  }
  return text;
}

std::vector<std::string> Parameter_Tags() {
  std::vector<std::string> tags = {"DFILE", "OBFRQ", "OBSET", "FREQU", "RESOL", "SMEXR", "POINT"};
  for (const editing::Param_Field& f : editing::Param_Edit_Fields())
    if (std::find(tags.begin(), tags.end(), f.tag) == tags.end()) tags.emplace_back(f.tag);
  return tags;
}

const std::vector<std::string>& Parameter_Units() {
  static const std::vector<std::string> units = {" %",  " Hz", " kHz", " MHz", " min",
                                                 " s",  " ms", " ppm", " K",   " \\g1 m\\g0 s"};
  return units;
}

std::string Parameter_File_Text(const Session& s) {
  std::string text;
  return session::Read_Text_File(session::Print_Text_File(s), text) ? text : Parameter_Text(s);
}

int Save_Parameter_File(Session& s, const std::string& text) {
  if (session::Save_Text_File(s, session::Print_Text_File(s), text, "PRT/SAV") != 0) return -1;
  session::Read_Print_Text(s);
  return 0;
}

}  // namespace tevo::page
