#include "datafiles/user_extensions.h"

#include <cctype>

#include "session/session.h"

namespace tevo::datafiles {

const std::vector<std::string>& User_Pattern_List() {
  static const std::vector<std::string> list = {
      "*.gxd*",     "*.als",         "*.nmd*",     "*.nmf*",      "*.nmf*;*.nmd*", "fid;*.bruf",
      "1r;*.brud",  "*.fid*",        "*.dx;*.jdx", "fid;*.varf",  "data;*.vard",   "*.nmdata*",
      "*.nmfid*",   "*.nmdata*;*.nmfid*", "data;*.cmx", "*.fid*;*.h1*;*.c13*", "*.import*"};
  return list;
}

std::vector<std::string> User_Pattern_Choices(const std::string& current) {
  std::vector<std::string> out{current};
  const auto& list = User_Pattern_List();
  out.insert(out.end(), list.begin(), list.end());
  return out;
}

namespace {

struct Data_Type {
  const char* name;
  const char* file_class;
};

// Each data type and the class whose reader takes it.
constexpr Data_Type kTypes[] = {
    {"Bruker変換済", ".BRUD"}, {"Bruker未変換", ".BRUF"}, {"Bruker MSL", ".MSL"}, {"Varian変換済", ".VARD"},
    {"Varian未変換", ".VARF"}, {"JEOL GX/GSX/EX", ".GXD"}, {"JEOL Alice", ".ALS"}, {"JEOL Alpha", ".ALP"},
    {"JEOL Lambda", ".LAM"},   {"JEOL ECP", ".ECP"},      {"CMX", ".CMX"},        {"MacFID", ".IMPORT"},
    {"JCAMP", ".JDX"},         {"Nuts", ".NUT"}};

}  // namespace

const std::vector<std::string>& User_Data_Types() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> v;
    for (const auto& t : kTypes) v.emplace_back(t.name);
    return v;
  }();
  return names;
}

std::string User_Type_Class(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kTypes))) return {};
  return kTypes[index].file_class;
}

std::string Normalize_User_Extension(const std::string& text) {
  const size_t a = text.find_first_not_of(" \t");
  if (a == std::string::npos) return {};
  const size_t b = text.find_last_not_of(" \t");
  std::string e = text.substr(a, b - a + 1);
  for (char& c : e) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  if (e[0] != '.') e.insert(e.begin(), '.');
  return e;
}

std::vector<User_Extension> Read_User_Extensions(const std::vector<User_Extension>& rows, size_t keep) {
  std::vector<User_Extension> out;
  for (const auto& row : rows) {
    if (out.size() >= keep) break;
    User_Extension r{Normalize_User_Extension(row.ext), row.type};
    if (r.ext.empty()) continue;
    out.push_back(r);
  }
  return out;
}

std::vector<User_Extension> User_Extensions_Of(const Session& s) {
  std::vector<User_Extension> out;
  for (int k = 1; k <= 5; ++k) {
    const std::string ext_key = "USER EXTENSION " + std::to_string(k);
    const std::string num_key = "USER EXT NUM " + std::to_string(k);
    if (session::Setting_Index(ext_key) < 0 || session::Setting_Index(num_key) < 0) continue;
    User_Extension r{Normalize_User_Extension(s.settings.Text(ext_key)), s.settings.Int(num_key)};
    if (!r.ext.empty()) out.push_back(r);
  }
  return out;
}

std::string User_Extension_Class(const std::vector<User_Extension>& table, const std::string& ext_class) {
  for (const auto& row : table)
    if (!row.ext.empty() && row.ext == ext_class) return User_Type_Class(row.type);
  return {};
}

}  // namespace tevo::datafiles
