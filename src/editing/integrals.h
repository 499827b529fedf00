// Integration of the main window (mode 5): regions with their own straight
// baselines, edited by mouse and by the trim buttons, all values relative to
// one reference region. Each toolbar action is one function here and pushes
// its undo record. The sum itself is Calc_Integral (integral_sum.h).
#pragma once

#include <cstdint>

namespace tevo {
struct Session;
struct Integ_Rec;
}

namespace tevo::editing {

// Levels a region from its ends: m1, m2 are the means of Spec_Re over
// End_Point - 2 .. End_Point + 2 and Start_Point - 2 .. Start_Point + 2
// (points inside the spectrum only); B0 = -m1 / Max_Abs and
// B1 = N * (m2 / Max_Abs + B0) / (Start_Point - End_Point), so the corrected
// data are 0 at both ends.
void Level_Region(const Session& s, Integ_Rec& r);

// Adds the region Start_Point .. End_Point (Spec_Re indices; undo kind 55)
// with its foot at 0.1, levelled from its ends; a positive sum lowers
// Integ_Scale so the curve stays below 0.8 of the plot. Nothing when
// End_Point <= Start_Point or the list is full. The new index, or -1.
int32_t Integ_Add(Session& s, int32_t end_point, int32_t start_point);

// The Spec_Re index nearest to `ppm` on the axis, clamped into the spectrum.
int32_t Spec_Point_Of_Ppm(const Session& s, double ppm);

// The region whose range holds Spec_Re index `point`; -1 for none.
int32_t Integ_Region_At(const Session& s, int32_t point);

// Deletes region i (undo kind 51); the reference and selected indices are
// moved to stay inside the list.
bool Integ_Delete(Session& s, int32_t i);

// "全削除" (undo kind 56). False when the list was empty.
bool IntegralCommand2_Click(Session& s);

// Splits region i at Spec_Re index `point` (undo kind 52): the upper part
// point + 1 .. End_Point keeps the record, the lower part Start_Point ..
// point is inserted behind it. Both keep the same baseline line, so their
// sums add up to the old one.
bool Integ_Split(Session& s, int32_t i, int32_t point);

// Moves region i by `shift` points, both ends, inside the spectrum (undo
// kind 53). B0 and B1 are kept.
bool Integ_Move(Session& s, int32_t i, int32_t shift);

// Sets one end of region i to `point` (undo kind 54): the end nearer to it
// moves; the baseline line under the region stays where it was.
bool Integ_Widen(Session& s, int32_t i, int32_t point);

// Toolbar 13: region i becomes the reference, worth `value` (undo kind 58).
bool Integ_Set_Reference(Session& s, int32_t i, float value);

// Toolbar 15 (undo kind 57): Integ_Scale = 100, then lowered so that every
// curve with a positive sum tops out at 0.8 of the plot.
void Integ_Rescale(Session& s);

// The value shown for region i: Value[i] / Value[ref] * Integ_Ref, or the raw
// value when the reference region sums to 0.
double Integ_Shown_Value(const Session& s, int32_t i);

// The eight press-and-hold buttons. Press: Integ_Trim_Begin (undo kind 59,
// mode changed). Each repeat: Integ_Trim_Step moves B0 or B1 of the selected
// region by 2e-6 / Integ_Scale (fine) or 2e-5 / Integ_Scale (coarse), sums
// the region again and returns the new value of the box.
enum class Trim_Button { B0_Up, B0_Down, B0_Up_Coarse, B0_Down_Coarse, B1_Up, B1_Down, B1_Up_Coarse, B1_Down_Coarse };
void Integ_Trim_Begin(Session& s);
float Integ_Trim_Step(Session& s, Trim_Button b);

// m25_Click: enters the integral mode (after the interlock), region 0
// selected. IntegralCommand1_Click ("閉じる") leaves it; the list stays.
bool m25_Click(Session& s);
void IntegralCommand1_Click(Session& s);

}  // namespace tevo::editing
