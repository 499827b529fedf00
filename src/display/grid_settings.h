// The grid of the edit view as the grid window sets it: shown or not, the
// step of the vertical lines (axis unit) and of the horizontal lines (units
// of Max_Abs), each automatic or fixed, and the line width.
#pragma once

namespace tevo {
struct Session;
}

namespace tevo::display {

struct Grid_Values {
  bool shown = false;  // "DISPLAY GRID"
  bool x_auto = true;  // "GRID X AUTO": nice steps from the range
  double x_step = 1;  // "GRID X INC"
  bool y_auto = true;  // "GRID Y AUTO"
  double y_step = 1;  // "GRID Y INC"
  double width = 1;  // "DISP GRID WIDTH", pixels
};

Grid_Values Grid_Dialog_Values(const Session& s);

// Stores the values. A fixed step must be positive and the width at least
// 1; otherwise nothing is stored and false is returned.
bool Grid_Dialog_OK(Session& s, const Grid_Values& v);

}  // namespace tevo::display
