// Insets (the multi-view): rectangles on the plot, each showing its own
// window of the spectrum magnified, with its own scale, axis, peak values
// and integrals. This file places and draws them; the mode that edits them
// is in inset_mode.h.
#pragma once

#include "display/plot_geometry.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// An inset's rectangle in pixels. Its fractions count from Frame_Left over
// the frame width and upward from Frame_Base over the height d = Frame_Base
// - Frame_Top; the signal base line lies 0.06/1.06 d and the axis line
// 0.04/1.06 d above the bottom edge.
struct Inset_Box {
  int left = 0, right = 0, top = 0, base = 0, axis = 0, bottom = 0;
};
Inset_Box Inset_Rectangle(const Plot_Frame& f, const Inset_Rec& r);

// The inset's y scale: with q = Frame_Y1 - Frame_Y0 - 0.06, full scale
// Max_Abs / Inset_Y_Full * q and offset Inset_Y_Offset / q * Inset_Y_Full.
// False (and not drawn) when the full scale is not positive.
bool Inset_Y_Scale(const Session& s, const Inset_Rec& r, double& full, double& offset);

// A new inset's record from the inset keys of the settings ("MULTI AXIS
// FONT", "MULTI SCALE DISP", "MULTI COLOR", "MUL WAKU COL", ...), with its
// magnifications "MULTI EXPAND X" and "MULTI EXPAND Y".
Inset_Rec New_Inset_Record(const Session& s);

// Inset_X_Scale of every inset, after a change of the main X window: the
// magnification (Frame_X1 - Frame_X0)(X_Left - X_Right) / (Inset_Left -
// Inset_Right) to three significant figures.
void Refresh_Inset_Scale(Session& s);

// The inset's trace of the current row in Line_Colour, copy pen.
void Draw_Multiview(Session& s, platform::Surface& surf, const Plot_Frame& f, int index);

// The inset's axis at height y: the main axis drawing with pen width 1, the
// inset's axis font (or, with Font_Mag_Mode set, the main axis font times
// Font_Mag), its fixed ticks when Tick_Mode is set, its unit, and the unit
// label only where the main one stands centred below.
void MultiView_Axis_X(Session& s, platform::Surface& surf, double left, double right, int x0, int x1,
                      int y, int& bottom, int index, double pixel_per_point);

// The peak values of the peaks inside the inset's window, in its peak font,
// above its trace or below its axis (Peak_Pos).
void Draw_Inset_Peak_Labels(Session& s, platform::Surface& surf, const Plot_Frame& f, int index,
                            int axis_bottom);

// Every inset over the picture: fill (Opaque), border (Show_Border, or a
// thin one in "DISP MULTWAKUCOL" in the inset mode), a second box around
// the current one in the mode, the trace, integrals, axis, peak values, top
// marks and peak numbers by the inset's switches.
void Draw_Insets(Session& s, platform::Surface& surf, const Plot_Frame& f,
                 platform::Colour background);

}  // namespace tevo::display
