// The plot of the line separation on any surface: the spectrum over the
// calculation range, each line on its own, their sum, the range's edges,
// the residual in a band above the spectrum, the lines' numbers and the ppm
// of the plot's ends. The window draws it at screen pixels; its page draws
// it in the spectrum frame of the sheet with the print styles.
#pragma once

#include "deconvolution/line_edit.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::deconvolution {

struct Line_Plot_Style {
  platform::Colour spectrum = 0, model = platform::Rgb(255, 0, 0);
  platform::Colour frame = 0, residual_frame = 0, axis = 0;
  platform::Colour background = 0xFFFFFF, residual_background = 0xFFFFFF;
  int axis_width = 1, trace_width = 1;  // pixels
  Font_Rec numbers, peak_numbers;  // the axis numbers; the lines' numbers
  double scale = 1;  // pixels per typographic point
  bool residual = true;  // the residual band above the spectrum
  bool outline = true;  // the frames of the spectrum and the band
  bool line_numbers = true;  // each line's number above its top
  bool y_axis = false;  // the spectrum's lowest and highest value at the left
};

// The two bands of a plot in the box left .. right, top .. bottom (pixels):
// with the residual its band takes the top fifth, a gap of a fortieth
// follows, and the spectrum the rest; without it the spectrum takes all.
struct Line_Plot_Bands {
  int left = 0, right = 0, res_top = 0, res_bottom = 0, top = 0, bottom = 0;
};
Line_Plot_Bands Line_Bands(int left, int top, int right, int bottom, bool residual);

// The colours, widths, fonts and switches of the window's plot
// ("SIMD..." and the colours of the display style) at `scale` pixels per
// point, and of its print ("SIM PRNT ...", widths in 0.1 mm at `px_per_cm`).
Line_Plot_Style Line_Display_Style(const Session& s, double scale);
Line_Plot_Style Line_Print_Style(const Session& s, double px_per_cm);

// The lines' own colours, cycling.
platform::Colour Line_Colour(int k);

// Paints the plot inside the bands; `curve` is the model and residual of
// Calc_Simulation over the range, `y_mag` the vertical magnification (1:
// the spectrum's extremes over the range fill the band).
void Draw_Line_Plot(const Session& s, const Sim_State& st, const Sim_Curve& curve, float y_mag,
                    platform::Surface& surf, const Line_Plot_Bands& b, const Line_Plot_Style& style);

}  // namespace tevo::deconvolution
