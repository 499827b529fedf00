#include "datafiles/nucleus.h"

#include <cctype>
#include <cmath>

namespace tevo::datafiles {

namespace {

constexpr double Nominal_Mhz[] = {22.5, 25,  50,  60,  67.5, 75,  90,  100, 125, 150,
                                  200,  250, 270, 300, 400,  500, 600, 800, 900, 1000};
constexpr double Proton_Mhz[] = {60, 90, 270, 300, 400, 500, 600, 800, 900, 1000};

bool Within_One_Percent(double mhz, double nominal) { return std::fabs(mhz - nominal) <= 0.01 * nominal; }

std::string Trim_Upper(const std::string& text) {
  size_t a = text.find_first_not_of(" \t\r\n");
  if (a == std::string::npos) return {};
  size_t b = text.find_last_not_of(" \t\r\n");
  std::string out = text.substr(a, b - a + 1);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

}  // namespace

double Snap_Frequency(double mhz) {
  for (double nominal : Nominal_Mhz)
    if (Within_One_Percent(mhz, nominal)) return nominal;
  return mhz;
}

std::string Nucleus_From_Frequency(double mhz) {
  for (double nominal : Proton_Mhz)
    if (Within_One_Percent(mhz, nominal)) return "1H";
  return {};
}

Nucleus_Name Normalize_Nucleus(const std::string& text, const std::vector<session::Nucleus_Row>& table) {
  std::string t = Trim_Upper(text);
  auto same = [](const std::string& v) { return Nucleus_Name{v, v}; };
  if (t.empty() || t == "NUL") return same("NUL");
  if (t == "OFF") return same("OFF");
  if (t == "PROTON" || t == "1H") return same("1H");
  if (t == "D" || t == "2D" || t == "DEUTERIUM" || t == "2H") return same("2H");
  if (t == "CARBON" || t == "CARBON13" || t == "13C") return same("13C");
  std::string digits, letters;
  for (char c : t) {
    if (std::isdigit(static_cast<unsigned char>(c))) digits += c;
    else if (std::isalpha(static_cast<unsigned char>(c))) letters += c;
  }
  std::string name = digits + letters;
  for (const auto& row : table)
    if (Trim_Upper(row.name) == name) return same(name);
  return {"??", text};
}

}  // namespace tevo::datafiles
