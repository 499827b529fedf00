// The picture of the main plot. A paint draws a base layer (grid, spectrum,
// overlays, axis) in copy mode and keeps it as the surface's picture; the
// marks that come and go (crosshair, level lines, peak marks, labels,
// integrals, cursors) go on top in XOR mode, so a drag can redraw them over
// the kept picture alone (Keep_Base_Layer). Screen, image files and
// printers all paint through Picture1_Paint; only the surface differs.
#pragma once

#include <string>
#include <vector>

#include "display/plot_geometry.h"
#include "display/view_commands.h"
#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// What a paint leaves for the window: the frame (for the mouse), the text of
// the magnification field, the scroll bar and the three lines of the
// distance window.
struct Paint_Result {
  Plot_Frame frame;
  std::string mag_text;
  Scroll_State scroll;
  std::vector<std::string> distance_text;
};

Paint_Result Picture1_Paint(Session& s, platform::Surface& surf);

// Text drawn in XOR over the picture with its top-left corner at (x, y);
// y_end receives the y below it.
void Draw_Xor_Text(platform::Surface& surf, int x, int y, int& y_end, const std::string& text,
                   platform::Colour colour, const Font_Rec& font, double pixel_per_point);
// The same turned by 90 degrees: the text runs upward from y with its top
// towards the left, its left edge 0.8 of the text height left of x; y_end
// receives the y above its end.
void Draw_Xor_Text_Rotated(platform::Surface& surf, int x, int y, int& y_end,
                           const std::string& text, platform::Colour colour,
                           double pixel_per_point, const Font_Rec& font);

// An integral region's curve (XOR): the running sum of the region with its
// baseline correction, foot at Curve_Y of the height above `bottom`, one
// vertex per pixel column, and its value turned upright above the end.
void Draw_Integral_Curve(Session& s, platform::Surface& surf, int index, platform::Colour colour,
                         double left, double right, int x0, int x1, int top, int bottom,
                         double pixel_per_point, bool in_mode);
// The region's baseline from its first to its last point, with end ticks
// (or squares in the integral mode).
void Draw_Integral_Base(Session& s, platform::Surface& surf, int index, platform::Colour colour,
                        double left, double right, int x0, int x1, double full_scale,
                        double offset, int base, int top, bool in_mode);

}  // namespace tevo::display
