// The x axis of a plot with its ticks, numbers and unit, and the grid.
#pragma once

#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Limits of the view in the axis unit of the session (ppm, Hz, kHz).
struct Axis_Limits {
  double left = 0, right = 0;
};
Axis_Limits View_In_Axis_Unit(const Session& s);

// How one x axis is drawn: its font, colour and pen width, fixed ticks
// (step and minor step in the axis unit) or searched ones, the unit it
// counts in (0 ppm, 1 Hz, 2 kHz) and where its unit label stands
// (1 left, 2 right, 3 centred below, 0 none).
struct Axis_Style {
  Font_Rec font;
  platform::Colour colour = 0;
  int width = 1;
  bool fixed = false;
  double step = 0, minor = 0;
  int16_t unit = 0;
  int unit_pos = 3;
};

// The main plot's axis from the settings: "DISP AXFONT", "DISP X-AXIS COL",
// "DISP AXIS WIDTH", "DISP AXIS MODE" with "DISP TIC STEP"/"DISP TIC INC"
// (the "2" pair for Hz and kHz), "DISP UNIT POS".
Axis_Style Main_Axis_Style(const Session& s);

// Draws an axis at height y from x0 to x1 for the values left..right (in
// the style's unit): base line, major ticks with numbers, minor ticks, the
// unit label. Searched ticks are spaced so that the numbers don't collide.
// `bottom` receives the lowest y used.
void Draw_Axis_Styled(platform::Surface& surf, const Axis_Style& style, double left, double right,
                      int x0, int x1, int y, int& bottom, double pixel_per_point);

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
