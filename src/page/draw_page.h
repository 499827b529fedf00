// The page: one routine paints the whole sheet (spectrum frame with its
// axis, integrals, overlays, peak values and insets, the parameter block,
// the comment, pictures, free texts and lines) onto any surface. The surface's size
// and the window of the sheet it shows set the scale; preview, bitmap, PDF,
// SVG and printer all come through here.
#pragma once

#include <functional>
#include <vector>

#include "display/plot_geometry.h"
#include "page/page_model.h"
#include "page/parameter_block.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// The look of the parameter block: its outline (width in 0.1 mm), its
// fill unless transparent, its text's font and colour.
struct Block_Style {
  bool outline = false;
  double outline_width = 1;
  platform::Colour outline_colour = 0, text = 0, fill = 0xFFFFFF;
  bool opaque = true;
  Font_Rec font;
};

// A page whose frame shows another window's plot (the line separation's,
// the relaxation's): the sheet, the places of the frame and the block, and
// the comment are the page's; the window paints the frame's inside, gives
// the block's lines and its own print look for the sheet and the block.
struct Page_Content {
  std::function<void(platform::Surface&, const Page_Geometry&)> paint;
  std::vector<Parameter_Row> rows;
  double frame_width_cm = 0, frame_height_cm = 0;  // 0: "X-LENGTH", "Y-LENGTH"
  platform::Colour paper = 0xFFFFFF;
  bool block = true, comment = true;
  Block_Style block_style;
};

// Paints the part `window` of the sheet over the whole surface; nothing
// when the window is empty. Without content the frame shows the main
// spectrum with everything placed around it.
void Draw_Page(Session& s, platform::Surface& surf, const Page_Window& window,
               const Page_Content* content = nullptr);
// The whole sheet.
void Draw_Page(Session& s, platform::Surface& surf, const Page_Content* content = nullptr);

// Image_Rec.Extra bit of a white-out picture: its white stays transparent
// over the page.
inline constexpr int32_t Image_White_Out = 1;

// The font a free text of the page is drawn in: its face (the default face
// when empty), size (at least 3 points), bold, italic and colour.
Font_Rec Page_Text_Font(const Text_Rec& t);

// The spectrum frame of the page as the plot routines take it.
display::Plot_Frame Page_Frame(const Page_Geometry& g);

// The peak list's rectangle: "PEAK LIST LEFT", "... WIDTH" are parts of the
// frame's width from its left, "... TOP", "... HEIGHT" parts of its height
// counted up from its bottom.
Pixel_Rect Peak_List_Rect(const Session& s, const Page_Geometry& g);

// Where the page draws a peak's top mark: its stroke from Foot up to Top
// ("PEAK TOP HEIGHT" x 0.1 mm long, 3 mm when unset, standing "PEAK LIST
// TOP HE" x 0.4 mm above the peak) and its number's place, moved from the
// top by the peak's Label_Dx, Label_Dy in cm. Peaks outside the frame are
// left out; nothing without a spectrum.
struct Peak_Top_Place {
  int Index = 0, X = 0, Foot = 0, Top = 0, Label_X = 0, Label_Y = 0;
};
std::vector<Peak_Top_Place> Peak_Top_Places(Session& s, const Page_Geometry& g);

// A dashed line from the current position to (x, y) in the current pen.
// Style k >= 1 of the dash table draws the pen-down parts of a cycle of
// `period` pixels; style 0 or a period <= 0 is a plain line. `phase` (pixels
// into the cycle) comes in and goes out, so that a polyline carries its
// pattern on.
void Draw_Dash_Line(platform::Surface& surf, int x, int y, int style, double period,
                    double& phase);

// A line of the page with its arrow heads: the kind's body (thin line, line
// with solid heads, white-filled outline, hollow outline) and heads (none,
// at the second end, at the first end, both), width and head size in 0.1 mm.
void Draw_Page_Line(platform::Surface& surf, const Page_Geometry& g, const Line_Rec& line);

}  // namespace tevo::page
