// How a stretch of spectrum maps to pixels: the frame inside a surface, the
// x and y transforms, the tick steps of an axis and the texts of its labels.
// Every plot (main window, overlay editor, printed page, insets) uses these
// with its own rectangle. Pure arithmetic: nothing here draws.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tevo::display {

// Pixel rectangle of a plot, recomputed at the head of each paint from the
// scale rectangle of the surface (left SL, width SW, top ST, height SH).
struct Plot_Frame {
  int32_t Frame_Left = 0, Frame_Right = 0;
  // Horizontal extent of the last row of an array stack; the same as
  // Frame_Left/Right for a single spectrum.
  int32_t Frame_Left_Last = 0, Frame_Right_Last = 0;
  int32_t Frame_Top = 0, Frame_Bottom = 0;
  int32_t Frame_Base = 0;  // y of signal 0 at offset 0
  int32_t Axis_Y = 0;  // the axis line
  int32_t Marker_Top = 0;  // upper end of the phase pivot markers
  int32_t Axis_Bottom = 0;  // lowest y used by the axis; written by the axis routine
  double Pixel_Per_Point = 1;  // device pixels per typographic point
};

// Frame of a single spectrum. The base sits at 950/1200 of the height, the
// axis 50/1200 below it, the pivot markers reach 200/1200 above the axis.
Plot_Frame Make_Plot_Frame(int32_t sl, int32_t sw, int32_t st, int32_t sh, double pixel_per_point);

// Frame of an array stack: the rows shift sideways by the ratio r ("X AXIS
// RATIO") of the width. With r <= 0 the first row stands right of the last
// one, with r > 0 left of it.
Plot_Frame Make_Array_Frame(int32_t sl, int32_t sw, int32_t st, int32_t sh, double pixel_per_point,
                            double r);

// Linear map of v from [left, right] to [x0, x1]; callers that store the
// result in an integer round it half to even (Round_Pixel).
double X_To_Pixel(double v, double left, double right, double x0, double x1);

// Signal s to y: s = 0 sits at base, s = full_scale at top, and the offset
// (0..1 of the frame height) lifts everything. top < base on a surface, so
// the factor is negative.
double Y_To_Pixel(double s, double base, double top, double full_scale, double offset);

// Round to nearest, ties to even, into a pixel.
int32_t Round_Pixel(double v);

// A tick step: the first tick at or after `left` (in the direction of the
// range), the range, the step (signed like the range) and its mantissa
// 1, 2, 5 or 10. `valid` is false when left = right.
struct Tick_Step {
  double first = 0, range = 0, step = 0, mantissa = 0;
  bool valid = false;
};

// About ten ticks over [left, right]: step = 10^(I-1) * m, with m picked
// from the mantissa f of the range (1 up to 1.5, 2 up to 2.5, 5 up to 5,
// else 10).
Tick_Step Nice_Tick_Step(double left, double right);

// First multiple of `step` at `left` or past it in the direction of the
// step (a value a hair before a multiple counts as on it); 0 when step is 0
// or left = right.
double Align_First_Tick(double left, double right, double step);

// Decimal exponent of x, floor(log10|x| + 1e-5); 0 for x = 0.
int Decimal_Exponent(double x);

// Picture pattern for a number with `decimals` decimals ("#####0",
// "#####0.0", "#####0.00", ...), as picked by "DISP PEAK DIGIT" and
// "DISP INTEG DIGIT".
std::string Number_Format(int decimals);

// Text of one tick label. `charset` is that of the axis font: 0 uses the
// multiplication and minus signs of that font, any other the plain "x" and
// "-". `d` is the decimal exponent of the step. Mode 1 prints plainly with
// as many decimals as the step needs; mode 2 prints mantissa x 10 with the
// exponent as a superscript in label markup. In mode 2 an exponent of 0
// with a negative flag gives the mantissa alone.
std::string Format_Tick_Label(double value, int charset, int d, int mode, int flag);

// Label format mode for a step and axis limits: 2 (scientific) when the
// largest limit is at least 10000 and the step is 10^4 or coarser, or when
// the largest limit rounds below 0.001; 1 otherwise.
int Tick_Label_Mode(double left, double right, double step);

// The complete label text of a tick at v on an axis of `step`, with the
// markup prefix that sets the label's font.
std::string Tick_Label_Text(double v, double left, double right, double step, int charset);

// Automatic tick search: starts from Nice_Tick_Step and widens the step
// (1, 2, 5, 10, 20, 50, ...) at most seven times until the widest of eleven
// labels fits 0.8 of the pixel distance between ticks. `label_width`
// measures a label text in pixels. Also gives the minor step: a quarter of
// a step with mantissa 2, a fifth otherwise.
struct Tick_Plan {
  double first = 0, step = 0, minor = 0, mantissa = 0;
  std::vector<double> tried;  // every step looked at, in order
};
Tick_Plan Auto_Tick_Plan(double left, double right, double x0, double x1, int charset,
                         const std::function<double(const std::string&)>& label_width);

// Fixed ticks: the signed step and minor step from the settings, first
// aligned on the step.
Tick_Plan Fixed_Tick_Plan(double left, double right, double step, double minor);

// The values a grid loop visits: first + n * step, n = 0, 1, ..., until the
// value passes `right` by more than 1e-4 of a step. With `stop_on_equal` the
// loop ends already when it reaches that point exactly, which is how the
// horizontal grid ends (one step earlier than the vertical one there).
std::vector<double> Grid_Values(double first, double step, double right, bool stop_on_equal);

}  // namespace tevo::display
