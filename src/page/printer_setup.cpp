#include "page/printer_setup.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "display/style.h"
#include "session/session.h"

namespace tevo::page {

namespace {
constexpr std::array<int, 7> Paper_List = {8, 9, 11, 12, 13, 101, 102};
}  // namespace

int Paper_Code_Of_Index(int index) {
  if (index < 0 || index >= static_cast<int>(Paper_List.size())) return 9;
  return Paper_List[static_cast<std::size_t>(index)];
}

int Paper_Index_Of_Code(int code) {
  const auto it = std::find(Paper_List.begin(), Paper_List.end(), code);
  return it == Paper_List.end() ? 1 : static_cast<int>(it - Paper_List.begin());
}

int Print_Colour_Mode(const Session& s) {
  return display::Setting_Int(s, "PRINTER TYPE", 0) == 1 ? 1 : 0;
}

int List_Paper_Value(const Session& s, const char* key, int def) {
  const std::string v = display::Setting_Text(s, key, "");
  return v.empty() ? def : std::atoi(v.c_str());
}

Printer_Dialog Read_Printer_Setup(const Session& s, Printer_Group group) {
  Printer_Dialog d;
  d.Printer = display::Setting_Text(s, "USER PRINTER", "");
  d.Colour_Mode = Print_Colour_Mode(s);
  if (group == Printer_Group::List) {
    d.Paper_Index = Paper_Index_Of_Code(List_Paper_Value(s, "PAPER SIZE LIST", 9));
    d.Orient = List_Paper_Value(s, "PAPER ORIENTLIST", 0) == 1 ? 1 : 0;
    d.Bin = std::max(0, List_Paper_Value(s, "PAPER BIN LIST", 0));
    d.Duplex = std::clamp(List_Paper_Value(s, "PAPER DUPL LIST", 0), 0, 2);
    return d;
  }
  d.Paper_Index = Paper_Index_Of_Code(display::Setting_Int(s, "PAPER SIZE", 9));
  d.Orient = display::Setting_Int(s, "PAPER ORIENT", 0) == 1 ? 1 : 0;
  d.Bin = std::max(0, display::Setting_Int(s, "PAPER BIN", 0));
  return d;
}

Printer_Dialog Store_Printer_Setup(Session& s, Printer_Dialog d, Printer_Group group) {
  d.Copies = std::max(1, d.Copies);
  s.settings.Set("USER PRINTER", d.Printer);
  display::Store_Setting(s, "PRINTER TYPE", d.Colour_Mode);
  if (group == Printer_Group::List) {
    s.settings.Set("PAPER SIZE LIST", std::to_string(Paper_Code_Of_Index(d.Paper_Index)));
    s.settings.Set("PAPER ORIENTLIST", std::to_string(d.Orient));
    s.settings.Set("PAPER BIN LIST", std::to_string(d.Bin));
    s.settings.Set("PAPER DUPL LIST", std::to_string(d.Duplex));
    return d;
  }
  display::Store_Setting(s, "PAPER SIZE", Paper_Code_Of_Index(d.Paper_Index));
  display::Store_Setting(s, "PAPER ORIENT", d.Orient);
  display::Store_Setting(s, "PAPER BIN", d.Bin);
  return d;
}

}  // namespace tevo::page
