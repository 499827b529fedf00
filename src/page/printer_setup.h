// The printer keys of the settings: the paper, its turn and bin, the
// printer chosen by the operator, and whether pages print in colour or in
// black and white. Pages and lists have a paper of their own: "PAPER
// SIZE", "PAPER ORIENT", "PAPER BIN" for pages, "PAPER SIZE LIST", "PAPER
// ORIENTLIST", "PAPER BIN LIST" and "PAPER DUPL LIST" for lists. The
// printer dialog edits them; Draw_Page reads the colour mode.
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::page {

// Whose paper the printer dialog sets: the page's or the lists'.
enum class Printer_Group { Page, List };

// The values of the printer dialog. Copies belong to the printer itself,
// not to the settings, and so does the page's duplex; the lists keep
// theirs in "PAPER DUPL LIST".
struct Printer_Dialog {
  std::string Printer;   // "USER PRINTER"; empty: the system's default
  int Paper_Index = 1;   // row of the paper list, see Paper_Code_Of_Index
  int Orient = 0;        // 0 portrait, 1 landscape
  int Bin = 0;           // row of the driver's bin names
  int Copies = 1;
  int Duplex = 0;        // 0 one side, 1 both sides bound at the left "左", 2 at the top "上"
  int Colour_Mode = 0;   // "PRINTER TYPE": 0 colour, 1 black and white
};

// The paper code that row `index` of the dialog's paper list stands for:
// A3, A4, A5, B4, B5, A4 Half, A4 Full; any other row is A4.
int Paper_Code_Of_Index(int index);
// The row that shows a paper code; 1 (A4) for a code not in the list.
int Paper_Index_Of_Code(int code);

// 0 colour, 1 black and white ("PRINTER TYPE").
int Print_Colour_Mode(const Session& s);

// The dialog's values as the settings hold them for the group (copies 1;
// a page one side).
Printer_Dialog Read_Printer_Setup(const Session& s, Printer_Group group = Printer_Group::Page);
// Stores the keys of the dialog's values for the group; returns them as
// stored, with copies below 1 counted as 1.
Printer_Dialog Store_Printer_Setup(Session& s, Printer_Dialog d, Printer_Group group = Printer_Group::Page);

// A number of the lists' paper keys, which hold text; empty is `def`.
int List_Paper_Value(const Session& s, const char* key, int def);

}  // namespace tevo::page
