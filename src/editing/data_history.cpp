#include "editing/data_history.h"

#include <cstdio>

#include "datafiles/date_text.h"
#include "session/command_flow.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

std::string Stamp(int year, int month, int day, int hour, int minute, int second) {
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d  %02d:%02d:%02d", year, month, day, hour, minute, second);
  return text;
}

// Who did it and when: the session's user, the time now.
void Now_By(const Session& s, std::string& by, std::string& date) {
  by = s.User_Name;
  date = History_Stamp(std::time(nullptr));
}

}  // namespace

std::string History_Stamp(std::time_t t) {
  std::tm local{};
  localtime_r(&t, &local);
  return Stamp(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

std::string Measured_Date(const Session& s) {
  const datafiles::Date_Text d = datafiles::Parse_Date_Text(s.Param.DATIM);
  const bool after_1960 = d.Year > 1960 || (d.Year == 1960 && (d.Month > 1 || d.Day > 1));
  if (!d.ok() || !after_1960) return {};
  return Stamp(d.Year, d.Month, d.Day, d.Hour, d.Minute, d.Second);
}

void Record_Save(Session& s) {
  Now_By(s, s.Save_By.emplace_back(), s.Save_Date.emplace_back());
}

void Record_Save_Failed(Session& s) {
  if (s.Save_By.empty() || s.Save_Date.empty()) return;
  s.Save_By.pop_back();
  s.Save_Date.pop_back();
}

void Record_Transform(Session& s) { Now_By(s, s.Transformed_By, s.Transformed_Date); }

List_Table Data_History_Table(const Session& s) {
  List_Table t;
  t.heads = {"事項", "実行者", "日付"};
  t.rows.push_back({"Measured", s.Measured_By.empty() ? "Unknown" : s.Measured_By, Measured_Date(s)});
  if (!s.Transformed_Date.empty()) t.rows.push_back({"FFT", s.Transformed_By, s.Transformed_Date});
  for (std::size_t k = 0; k < s.Save_By.size() && k < s.Save_Date.size(); ++k)
    t.rows.push_back({"Saved ", s.Save_By[k], s.Save_Date[k]});
  return t;
}

std::string Measured_Name_Shown(const Session& s) { return session::Shorten_Path(s.Measured_Name, 35); }

}  // namespace tevo::editing
