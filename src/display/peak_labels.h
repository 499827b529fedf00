// Peak values written upright beside the spectrum, spread sideways so that
// neighbouring labels don't overlap, each joined to its peak by a bent
// leader.
#pragma once

#include <span>
#include <vector>

#include "display/plot_geometry.h"
#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Label positions for peaks at pixel columns x (peaks by ascending
// frequency, so x falls with the index) with labels `spacing` pixels wide,
// inside the frame x0..x1. A crowded label first pushes its right-hand
// neighbours (while there is slack to the right) and otherwise moves left;
// once labels reach x0 the pushes go right, once one passes x1 the labels
// simply stack `spacing` apart. Peaks outside the frame are pinned to its
// edges. `previous` holds the positions of the last pass (kept for a peak
// exactly on x0); it may be empty.
std::vector<double> Peak_Reduction_Pos(std::span<const int> x, double spacing, int x0, int x1,
                                       std::span<const double> previous = {});

// How a set of peak values is written: font, decimals, the unit of the
// values and of the axis below them (the unit is named beside the last
// label when they differ), above the spectrum or below the axis, colours
// and the leader pen width.
struct Peak_Label_Style {
  Font_Rec font;
  int digits = 2;
  int16_t unit = 0, axis_unit = 0;
  bool above = true;
  platform::Colour text_colour = 0, line_colour = 0;
  int line_width = 1;
};

// The main plot's peak values from the settings: "DISP PDFONT", "DISP PEAK
// DIGIT", "PEAK-VAL UNIT", "PEAK POSITION", "DISP PEAK NUMCOL", "DISP PEAK
// COL", "DISP PEAK WIDTH".
Peak_Label_Style Main_Peak_Label_Style(const Session& s);

// Draws the values of the peaks that fall strictly inside x0..x1 for the
// window left..right (ppm) with their leaders: above, the labels hang from
// `top` and the leaders end 4 % of top..base below them; below, they start
// `gap` pixels under `axis_bottom`.
void Draw_Peak_Values(Session& s, platform::Surface& surf, const Peak_Label_Style& style,
                      double left, double right, int x0, int x1, int top, int base,
                      int axis_bottom, int gap, double pixel_per_point);

// Draws the peak values and their leaders (below the axis or above the
// spectrum by "PEAK POSITION"); `axis_bottom` is the lowest y of the axis.
void Draw_Peak_Labels(Session& s, platform::Surface& surf, const Plot_Frame& f, int axis_bottom);

}  // namespace tevo::display
