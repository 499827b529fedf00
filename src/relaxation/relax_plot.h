// The plot of the T1/T2 window on any surface: the frame with the limits of
// delay and intensity at its corners, the zero line, the measured points
// (filled when in use, hollow when outside the fitted range) and the fitted
// curve; and the text of the fit beside it. The window draws it at screen
// pixels, its page in the page's frame with the print styles.
#pragma once

#include <string>
#include <vector>

#include "platform/surface.h"
#include "relaxation/relaxation_fit.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::relaxation {

struct Relax_Plot_Style {
  platform::Colour curve = platform::Rgb(255, 0, 0), points = platform::Rgb(0, 0, 255);
  platform::Colour circle = platform::Rgb(0, 0, 255), axis = 0;
  int axis_width = 1, curve_width = 1, radius = 3;  // pixels
  Font_Rec numbers, label;  // the limits' numbers; the axis label "t / s"
  double scale = 1;  // pixels per typographic point
};

// The display style ("CALD..." and the colours) at `scale` pixels per point,
// and the print style ("CAL ...", widths and radius in 0.1 mm at
// `px_per_cm`).
Relax_Plot_Style Relax_Display_Style(const Session& s, double scale);
Relax_Plot_Style Relax_Print_Style(const Session& s, double px_per_cm);

// Paints the plot with its frame at left .. right, top .. bottom (pixels);
// the numbers stand outside the frame. Points and curve outside the limits
// are left out.
void Draw_Relax_Plot(const Relax_Fit& fit, const Relax_Limits& limits, platform::Surface& surf, int left, int top,
                     int right, int bottom, const Relax_Plot_Style& style);

// The text of the fit from the last trial point: "A0 = ", "k = " with
// " s-1", "T = " in s (or "***"), "B = ", then "Start=" and "  End=" of the
// range in use. Empty before a fit.
std::vector<std::string> Relax_Result_Lines(const Relax_Fit& fit);

}  // namespace tevo::relaxation
