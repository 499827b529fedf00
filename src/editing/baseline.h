// Baseline correction of the main window (mode 3): correction points on the
// raw transform Ft_*, joined by straight lines, and that polyline subtracted
// from it into Spec_*. Each toolbar action is one function here; each edit of
// the point list pushes its undo record first.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Straight-line least-squares fit of Ft_Re (Ft_Im) of the current row over
// p - n .. p + n, n = Base_Average, taking only the points inside the
// spectrum. x counts from p; `value` is the intercept (the value at p) and
// `slope` the change per point.
struct Line_Fit {
  double value = 0;
  double slope = 0;
};
Line_Fit Base_Fit_Re(const Session& s, int32_t p);
Line_Fit Base_Fit_Im(const Session& s, int32_t p);

// Spec_* of the current row = Ft_* minus the polyline through the points:
// constant Base_Re[0] below the first point, linear between points,
// constant Base_Re[last] from the last point to the end (the same for the
// imaginary part with Base_Im). With no point Spec_* = Ft_*. Then the
// display copy of the row is rebuilt.
void Apply_Baseline(Session& s);

// The turn of the data in the complex plane at each point: for i in
// 1 .. N - 2, turn = dR' * dI - dI' * dR with d the forward differences at
// i and d' those at i - 1. Flag 1 where turn >= 0, 0 elsewhere (and at both
// ends).
void Base_Turn_Flags(const Session& s, std::vector<float>& turn, std::vector<int16_t>& flag);

// Automatic points (toolbar button 2, undo kind 23): the points where the
// data look like noise rather than signal, by the ratio of the squared first
// differences to the squared residuals of the local line fit: a first pass
// over flagged points with the limit 1.4, and when it finds nothing a second
// one over every step without flags and the limit 1.2. Sets Base_Re only
// (Base_Im keeps what stood at each index), then applies. Returns the count.
int32_t Base_Auto_Points(Session& s);

// Adds a correction point at Spec_Re index `point` (undo kind 22) with the
// values of the two fits, in order. Nothing for a point already in the list,
// outside the spectrum, or with the list full. Applies when the preview is
// on. True when added.
bool Base_Add_Point(Session& s, int32_t point);

// Deletes point number k of the list (undo kind 21); applies when the preview
// is on. True when deleted.
bool Base_Delete_Point(Session& s, int32_t k);

// The list entry whose pixel lies within `tolerance` of the click, nearest
// first; -1 for none. `pixel_of_ppm` is the plot's mapping.
int32_t Base_Point_At(const Session& s, double click_x, const std::function<double(double)>& pixel_of_ppm,
                      double tolerance = 3);

// BaseCorCommand1: toggles the preview; the spectrum shows corrected with
// it on, raw with it off. Returns the caption the button then carries.
const char* Base_Toggle_Preview(Session& s);
const char* Base_Preview_Caption(const Session& s);

// m23_Click: enters the baseline mode (after the mode interlock), preview
// off, the average width from "AVERAGE POINT", Spec_* remembered for cancel.
bool m23_Click(Session& s);
// "O K": applies the points, marks the spectrum corrected (and the data
// changed when anything was), leaves the mode and empties the list.
void BaseCorCommand2_Click(Session& s);
// "ｷｬﾝｾﾙ": restores Spec_* as they were on entering, leaves the mode and
// empties the list.
void BaseCorCommand3_Click(Session& s);

}  // namespace tevo::editing
