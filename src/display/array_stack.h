// The array stack: every row of an arrayed data set (T1, T2 or another
// varied parameter) in one frame, each row shifted a little sideways and
// upward from the one before, as a pseudo three-dimensional picture.
#pragma once

#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Draws rows 0 .. Array_Rows - 1 of Disp_Y (nothing below two rows). Row r
// of n stands between xr0 = round((x0 (n-1-r) + x0_last r) / (n-1)) and xr1
// (likewise from x1, x1_last), with the x scale of the first row, and is
// lifted by "Y AXIS RATIO" r / (n-1) of the frame height (negative: lowered).
// y is clamped to `top` and `bottom`. All rows go in `colour`, the select
// range again in "SELECT SPECT COL".
void Draw_Spec_Array(Session& s, platform::Surface& surf, double left, double right, int x0, int x1,
                     int x0_last, int x1_last, double full_scale, double offset, int base, int top,
                     int bottom, platform::Colour colour);

}  // namespace tevo::display
