// Labels of the plot: texts in the program's label markup, measured and
// drawn with a font record on a surface at the surface's own point size.
#pragma once

#include <string_view>

#include "platform/surface.h"
#include "session/records.h"

namespace tevo::display {

struct Label_Size {
  int width = 0;
  int height = 0;  // line height
};

// Character height in pixels of a font on a surface with `pixel_per_point`.
double Font_Pixels(const Font_Rec& font, double pixel_per_point);

// Height of a plain text run (no markup) in the font, as "X" gives the
// axis its tick lengths.
int Text_Height(platform::Surface& surf, std::string_view text, const Font_Rec& font,
                double pixel_per_point);

// Width of a label and the height of its line.
Label_Size Measure_Label(platform::Surface& surf, std::string_view text, const Font_Rec& font,
                         double pixel_per_point);

// Draws a label with its top-left corner at (x, y), turned counter-clockwise
// by angle_degrees about that corner, in `colour`.
void Draw_Label(platform::Surface& surf, int x, int y, std::string_view text, const Font_Rec& font,
                platform::Colour colour, double pixel_per_point, int angle_degrees = 0);

}  // namespace tevo::display
