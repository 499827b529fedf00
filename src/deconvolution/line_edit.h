// The line separation window's work on the session: its peak set, undo list
// and calculation range, the lines added where the operator clicks (height
// from the spectrum under the mouse), deleted, the range edges moved, the
// model curve and residual for the plot, and the fit set up from them.
// The window's spectrum is the current row divided by Max_Abs, so heights
// are in units of the largest magnitude (1 is the tallest point).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "deconvolution/line_fit.h"
#include "deconvolution/line_model.h"

namespace tevo {
struct Session;
}

namespace tevo::deconvolution {

struct Sim_State {
  Sim_Peaks Peaks;
  Sim_Undo_List Undo;
  // The calculation range at each undo record, newest first, so that undoing
  // a range move puts the edge back.
  std::array<std::array<int32_t, 2>, Sim_Undo_Depth> Undo_Range{};
  int32_t Range_First = 0, Range_Last = 0;  // calculation range, Spec_Re indices, First <= Last
  float Range_Left_Ppm = 0, Range_Right_Ppm = 0;  // the plot's range
  float Default_Width = 1.0f, Default_Gauss = 0.0f;  // a new line's width (Hz) and share
  bool Descending = true;  // lines sorted by falling ppm (the view runs high to low)
};

// A new state for the session: the plot and the calculation range are the
// main view's, the shared start values come from "SIM DEFAULT WID" and
// "SIM DEFAULT FUNC".
void Sim_Open(const Session& s, Sim_State& st);

// ppm of Spec_Re point 0, the origin of Peak_Pos.
float Sim_Axis0(const Session& s);
// The window's spectrum at Spec_Re point `point` of the current row.
float Sim_Spectrum_Value(const Session& s, int32_t point);

// Adds a line at `ppm` with the shared start values and the spectrum's
// height there (undo code 3). False (the caller beeps) at 100 lines.
bool Sim_Add_Peak(const Session& s, Sim_State& st, double ppm);
// Removes the first line within `reach` ppm of `ppm` (undo code 2); false
// when none is that near.
bool Sim_Delete_Near(const Session& s, Sim_State& st, double ppm, double reach);
// Asks "全ピークを削除しますか？" and on yes removes every line (undo code 1).
bool Sim_Delete_All(Session& s, Sim_State& st);
// Moves the edge of the calculation range drawn on the right of the plot
// (or the left one) to `ppm` (undo code 201 or 202, unless `keep_undo` is
// false: the later steps of one drag); edges that cross change places.
void Sim_Set_Range_Edge(const Session& s, Sim_State& st, double ppm, bool right_edge, bool keep_undo = true);
// Keeps the lines and the range under `code` before a change.
void Sim_Push(Sim_State& st, uint16_t code);
// Undoes the newest step; false when the list is empty.
bool Sim_Undo(Sim_State& st);
// One step of the manual setting on line k: the position by a tenth of a
// point's Hz or 0.002 of the plot's width, whichever is more (left: towards
// the plot's left end); width and height times or by 1.05 (width within
// 1e-4 .. 10000, height up to 1, the tallest point, and down to 1e-4); the
// share by 0.02 within 0 .. 1. False when a limit held the value.
enum class Sim_Step_Kind { Move_Left, Move_Right, Width_Inc, Width_Dec, Height_Inc, Height_Dec, Gauss_Inc, Gauss_Dec };
bool Sim_Step_Peak(const Session& s, Sim_State& st, int32_t k, Sim_Step_Kind kind);

// "Start=" and "End=" with the ppm of the range's ends, "####0.0### ppm".
std::string Sim_Range_Text(const Session& s, const Sim_State& st, bool start);

// The line set as the fit's parameter vector (ppm, width, height, share per line).
std::vector<float> Sim_Trial(const Session& s, const Sim_Peaks& peaks);

// The plotted model and residual: the sum of all lines at `limit` evenly
// spaced points between `left` and `right` ppm, or at each spectrum point
// when fewer lie in view; the residual over the calculation range in
// percent of the largest spectrum value there.
struct Sim_Curve {
  std::vector<float> x, y;  // ppm, model
  std::vector<float> range_x, residual;
  float limit = 0.0001f;  // the residual plot runs from -limit to limit
};
Sim_Curve Calc_Simulation(const Session& s, const Sim_State& st, double left, double right, int32_t limit);

// Steps and convergence widths of the fit (position ppm, width Hz, height,
// share) from the settings.
std::array<float, 4> Sim_Fit_Steps(const Session& s);
std::array<float, 4> Sim_Fit_Tols(const Session& s);

// The fit of the lines inside the calculation range against the window's
// spectrum over that range, with the steps and widths of the settings.
void Sim_Prepare_Fit(const Session& s, const Sim_State& st, Line_Fit& fit);

}  // namespace tevo::deconvolution
