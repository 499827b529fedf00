// The commands that change the view of the main plot: hold-to-repeat step
// buttons, typed values, the scroll bar, the basic tool-bar, mouse zoom,
// the view history and the range dialog. The window only forwards its
// events here and repaints.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "display/plot_geometry.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Mouse_Tool values.
inline constexpr int16_t Tool_None = 0, Tool_Box_Zoom = 1, Tool_H_Zoom = 2, Tool_V_Zoom = 3,
                         Tool_Cursor_Pair = 4;

// ---- view history ----

// Pushes the current view (limits as point positions, full scale, Y
// magnification, offset) unless it equals the newest entry; keeps 50.
void Save_Mag(Session& s);
// Tool-bar button 4: restores the newest entry and drops it. Returns false
// (and changes nothing) when the history is empty.
bool View_Back(Session& s);
// The back button is enabled while the history holds an entry.
bool Back_Enabled(const Session& s);

// The view after a data set was loaded: the whole spectrum, offset 0, the
// Y magnification back to 0.95 when it lies outside 0 .. 10000, and the
// full scale renewed.
void View_After_Load(Session& s);

// The mouse wheel over the plot in the basic mode: each notch (positive
// away from the operator) moves the view a tenth of its width toward
// higher ppm, or with `zoom` narrows it by 1.25 about `at_ppm` (negative
// notches widen it). The view stays within the spectrum.
void Wheel_View(Session& s, double at_ppm, double notches, bool zoom);

// ---- magnification ----

// Horizontal magnification |FREQU / (X_Right - X_Left) / Spectrum_Frequency|;
// 0 when it can't be computed.
double X_Mag(const Session& s);
// The magnification as shown in its field ("####0.0###"); empty when the
// limits are equal or the frequency is not positive.
std::string X_Mag_Text(const Session& s);
// Sets the limits for magnification z around the current centre.
void Set_X_Mag(Session& s, double z);
// Y_Full_Scale = Max_Abs / Y_Mag.
void Renew_Full_Scale(Session& s);

// ---- hold-to-repeat buttons ----

enum class View_Button {
  X_Left,  // shift the window towards the right-hand limit
  X_Right,
  X_Mag_Up,
  X_Mag_Down,
  Y_Level_Up,
  Y_Level_Down,
  Y_Mag_Up,
  Y_Mag_Down,
};

// One press of a step button: the step of the shift buttons is fixed at the
// press, 1 % of the window.
struct Hold_Repeat {
  View_Button button = View_Button::X_Left;
  double shift = 0;  // ppm per step of the shift buttons
  int steps = 0;  // steps applied so far
};

// Press: takes the step and applies the first one. The window then repeats
// View_Repeat from a timer (Repeat_Interval_Ms) while the button is held.
Hold_Repeat View_Press(Session& s, View_Button b);
// One more step; false when the limit is reached (the repeat ends, nothing
// changed).
bool View_Repeat(Session& s, Hold_Repeat& r);
// Timer interval before step n (n = 1 is the first repeat): 500 ms, then 50.
int Repeat_Interval_Ms(int n);

// ---- typed values ----

// Result of leaving a typed field: whether the value was taken, and the
// text the field shows afterwards ("####0.0###").
struct Typed_Result {
  bool taken = false;
  std::string text;
};
// A typed number: the whole text (trailing blanks aside) must be one finite
// number.
bool Parse_Number(const std::string& text, double& out);
Typed_Result Type_Y_Mag(Session& s, const std::string& text);  // BasicText1
Typed_Result Type_Y_Level(Session& s, const std::string& text);  // BasicText2
Typed_Result Type_X_Mag(Session& s, const std::string& text);  // BasicText3

// ---- array rows (DataText, UpDown1) ----

// Makes `row` (0-based, clamped to the data set's rows) the shown row of an
// array data set. Open baseline points belong to the row they were set on:
// the baseline question of the mode interlock comes first, and its
// "Cancel" keeps the row. True when the row changed.
bool Set_Array_Row(Session& s, int32_t row);
// DataText: a row number from 1; the field shows the row in force after it.
Typed_Result Type_Array_Row(Session& s, const std::string& text);

// ---- scroll bar (thumb 0 .. 10000) ----

inline constexpr int Scroll_Thumb_Max = 10000;

struct Scroll_State {
  bool enabled = false;
  int value = 0;
  int large_change = 10000;
  int small_change = 100;
};
// The bar as the view sets it at the end of a paint.
Scroll_State Scroll_From_View(const Session& s);
// The operator moved the bar: Save_Mag, then the window keeps its width and
// moves to the position. The window ignores its own setting of the bar.
void Scroll_To_View(Session& s, int value);

// ---- basic tool-bar ----

// Button by its 1-based index: 1, 2, 3, 10 arm a mouse tool, 4 goes back,
// 6 shows everything and resets Y, 7 the whole width only, 8 scales Y to the
// highest point shown. Returns true when the view changed.
bool Basic_Toolbar(Session& s, int index);
// Button 8 alone.
bool Auto_Y_Scale(Session& s);

// ---- mouse zoom ----

// Display index and signal value under a pixel of the frame.
struct Data_Point {
  int32_t index = 0;
  double value = 0;
};
Data_Point Pixel_To_Data(const Session& s, const Plot_Frame& f, int32_t px, int32_t py);
// A finished drag of the armed tool from corner a to corner b. Returns true
// when the view changed; the tool is disarmed then.
// The cursor-pair tool places the two distance cursors at the ends instead
// and stays armed.
bool Mouse_Zoom(Session& s, int16_t tool, Data_Point a, Data_Point b);

// ---- distance cursors ----

// The three lines of the distance window: the two positions ("###0.0### ppm",
// or "#####0.0# Hz" with the axis in Hz or kHz) and their distance in Hz
// and ppm.
std::vector<std::string> Distance_Text(const Session& s, double ppm1, double ppm2);
// The same for the session's two distance cursors (display indices); empty
// while the distance window is closed or without display data.
std::vector<std::string> Distance_Text(const Session& s);

// ---- range dialog ----

// One row of the dialog: the unit and the two limits in that unit, upper
// (left, the larger at normal view) and lower.
struct Range_Values {
  int16_t unit = 0;  // 0 ppm, 1 Hz, 2 kHz
  double upper = 0, lower = 0;
};
// The current limits in `unit`.
Range_Values Range_Dialog_Values(const Session& s, int16_t unit);
// OK: Save_Mag, set Axis_Unit and the limits. Equal limits are widened (1
// ppm or 10 Hz) and swapped limits put in order.
void Range_Dialog_OK(Session& s, const Range_Values& v);
// Preset pair k (1..4) of the nucleus group of the data in `unit`.
Range_Values Range_Preset(const Session& s, int pair, int16_t unit);
void Store_Range_Preset(Session& s, int pair, const Range_Values& v);

// Converts ppm to the axis unit of the session (ppm, Hz, kHz).
double Ppm_To_Unit(const Session& s, double ppm, int16_t unit);

}  // namespace tevo::display
