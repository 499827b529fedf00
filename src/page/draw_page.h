// The page: one routine paints the whole sheet (spectrum frame with its
// axis, integrals, overlays, peak values and insets, the parameter block,
// the comment, pictures, free texts and lines) onto any surface. The surface's size
// and the window of the sheet it shows set the scale; preview, bitmap, PDF,
// SVG and printer all come through here.
#pragma once

#include "page/page_model.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// Paints the part `window` of the sheet over the whole surface; nothing
// when the window is empty.
void Draw_Page(Session& s, platform::Surface& surf, const Page_Window& window);
// The whole sheet.
void Draw_Page(Session& s, platform::Surface& surf);

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
