#include "page/printer_setup.h"

#include <algorithm>
#include <array>

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

Printer_Dialog Read_Printer_Setup(const Session& s) {
  Printer_Dialog d;
  d.Printer = display::Setting_Text(s, "USER PRINTER", "");
  d.Paper_Index = Paper_Index_Of_Code(display::Setting_Int(s, "PAPER SIZE", 9));
  d.Orient = display::Setting_Int(s, "PAPER ORIENT", 0) == 1 ? 1 : 0;
  d.Bin = std::max(0, display::Setting_Int(s, "PAPER BIN", 0));
  d.Colour_Mode = Print_Colour_Mode(s);
  return d;
}

Printer_Dialog Store_Printer_Setup(Session& s, Printer_Dialog d) {
  d.Copies = std::max(1, d.Copies);
  s.settings.Set("USER PRINTER", d.Printer);
  display::Store_Setting(s, "PAPER SIZE", Paper_Code_Of_Index(d.Paper_Index));
  display::Store_Setting(s, "PAPER ORIENT", d.Orient);
  display::Store_Setting(s, "PAPER BIN", d.Bin);
  display::Store_Setting(s, "PRINTER TYPE", d.Colour_Mode);
  return d;
}

}  // namespace tevo::page
