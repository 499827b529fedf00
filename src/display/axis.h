// The x axis of a plot with its ticks, numbers and unit, and the grid.
#pragma once

#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Limits of the view in the axis unit of the session (ppm, Hz, kHz).
struct Axis_Limits {
  double left = 0, right = 0;
};
Axis_Limits View_In_Axis_Unit(const Session& s);

// Draws the main axis at height y from x0 to x1 for the values left..right
// (in the axis unit): base line, major ticks with numbers, minor ticks, the
// unit label at "DISP UNIT POS". Ticks are fixed ("DISP AXIS MODE" != 0,
// "DISP TIC STEP"/"DISP TIC INC", the "2" pair for Hz and kHz) or searched
// so that the numbers don't collide. `bottom` receives the lowest y used.
void Draw_Axis_X(Session& s, platform::Surface& surf, double left, double right, int x0, int x1,
                 int y, int& bottom, double pixel_per_point);

// Dotted grid: vertical lines over xleft..xright (axis unit) between base
// and top, horizontal lines over ylow..yhigh (units of Max_Abs) between x0
// and x1; lines on the frame edges are left out. Steps are automatic ("GRID
// X AUTO", "GRID Y AUTO") or "GRID X INC", "GRID Y INC".
void Draw_Grid(Session& s, platform::Surface& surf, double xleft, double xright, double ylow,
               double yhigh, int x0, int x1, int base, int top);

}  // namespace tevo::display
