// The inset mode of the main window (Edit_Mode 6, menu m26, panel
// MultiViewToolbar): making insets, their magnification, offset and window
// by the panel's controls, and moving, resizing and deleting them with the
// mouse. Every change first takes an undo record of the whole inset list.
#pragma once

#include <cstdint>
#include <string>

#include "display/insets.h"
#include "display/plot_geometry.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Mouse tools of the mode (Mouse_Tool): the window of a new inset, a new
// window for the current one, and moving, resizing and deleting an inset.
inline constexpr int16_t Tool_Inset_New = 2, Tool_Inset_Range = 9, Tool_Inset_Move = 25,
                         Tool_Inset_Resize = 26, Tool_Inset_Delete = 27;

// The smallest magnification of the X and Y controls.
inline constexpr double Inset_Mag_Min = 0.1;

// One step of a magnification control: 0.1 below 2, 1 from 2 up, never
// below Inset_Mag_Min (2.0 steps down to 1.9 and up to 3.0).
double Inset_Mag_Step(double mag, bool up);

// m26_Click: enters the mode after the interlock. Inset_Cur becomes
// Inset_Count (the controls show a new inset's defaults) and no tool is
// armed. False when the interlock was cancelled or the mode is on already.
bool m26_Click(Session& s);
// MultiViewCommand1_Click (閉じる): leaves the mode.
void MultiViewCommand1_Click(Session& s);

// Button 1: arms the window of a new inset; refused with a beep when the
// list is full.
bool MultiView_New(Session& s);
// Button 3: deletes the current inset after "この拡大図を削除しますか".
bool MultiView_Delete(Session& s);
// Button 5: gives every inset the height (top and bottom) of the current one.
bool MultiView_Align(Session& s);
// Button 9: arms picking a new window for the current inset.
bool MultiView_Pick(Session& s);

// A new inset over the window ppm_a .. ppm_b of the plot: its frame is
// centred over the window at MULTI EXPAND X times its width (at most 0.9 of
// the frame) in the upper half of the plot, its Y magnification MULTI
// EXPAND Y relative to the main plot. It becomes the current one.
bool Inset_Add(Session& s, double ppm_a, double ppm_b);
// A new window for the current inset; its frame stays.
bool Inset_Set_Window(Session& s, double ppm_a, double ppm_b);

// Index of the inset under a pixel (the topmost, that is the last drawn),
// -1 for none; `corner` tells a hit within a few pixels of its lower right
// corner, where a drag resizes it.
int Inset_Hit(const Session& s, const Plot_Frame& f, int x, int y, bool& corner);

// Moves an inset by a pixel offset, or puts its lower right corner at a
// pixel; the fractions of the frame are renewed from the pixels.
bool Inset_Move(Session& s, const Plot_Frame& f, int index, int dx, int dy);
bool Inset_Resize(Session& s, const Plot_Frame& f, int index, int x, int y);
// Deletes an inset after the question.
bool Inset_Delete(Session& s, int index);

// A press and release of the mouse in the mode, by the armed tool: the new
// inset's or the current one's window (a drag over the spectrum), delete on
// a click, otherwise select the inset under the press and move it, or
// resize it from its corner. True when the list changed.
bool Inset_Mouse(Session& s, const Plot_Frame& f, int press_x, int press_y, int release_x,
                 int release_y);
// The outline a drag from (press_x, press_y) to (x, y) shows: the inset
// under the press moved, or resized from its corner, as Inset_Mouse would
// leave it. False when the drag picks a window or starts on no inset.
bool Inset_Drag_Box(const Session& s, const Plot_Frame& f, int press_x, int press_y, int x, int y,
                    Inset_Box& out);
// The status and context-menu text of an inset tool ("拡大図の移動" ...);
// empty for the others.
std::string Inset_Tool_Text(int16_t tool);

// The controls of the current inset; each takes its undo record first and
// returns false (changing nothing) without a current inset or for a value
// out of its limits.
// X magnification (MultiViewText1): the window keeps its centre and becomes
// (X_Right - X_Left) / mag wide.
bool Set_Inset_X_Mag(Session& s, double mag);
// Y magnification relative to Y_Mag (MultiViewText2).
bool Set_Inset_Y_Mag(Session& s, double mag);
// Vertical offset (MultiViewText3), -1 .. 1.
bool Set_Inset_Offset(Session& s, double offset);
// One press-and-hold step of the offset: 0.002 / Inset_Y_Full (0.002 when
// that is not positive), kept inside -1 .. 1.
bool Step_Inset_Offset(Session& s, bool up);
// Moves the window by 1 % of its width per step, to higher ppm for
// MultiView_X_Left (left = true).
bool Shift_Inset_Window(Session& s, bool left);

// An inset's magnifications as the fields show them: the main view's width
// over its window's, and Inset_Y_Full over Y_Mag (0 where undefined).
double Inset_X_Magnification(const Session& s, const Inset_Rec& r);
double Inset_Y_Magnification(const Session& s, const Inset_Rec& r);

// Texts of the three fields for the current inset, or a new one's defaults.
struct Inset_Fields {
  std::string x_mag, y_mag, offset;
};
Inset_Fields Inset_Field_Texts(const Session& s);

}  // namespace tevo::display
